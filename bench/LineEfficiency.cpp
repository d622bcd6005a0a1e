#include <algorithm>
#include <array>
#include <functional>
#include <iomanip>
#include <iostream>
#include <numeric>

#include "boxsim/SimulatedBox.h"
#include "catalogue/ErrorReporter.h"
#include "link/MechCheck.h"
#include "link/Receiver.h"
#include "mars/MarsFamily.h"
#include "platform/VirtualEventLoop.h"

// How much of the time of each conversation with the box is explained: a byte on the line, a
// wait that had to run its whole time, or the box's own work. What is left over is a wait that
// nobody needs; the goal is an efficiency of 1.00.

namespace vantor {
namespace {

constexpr Micros kByteTime{1042};
constexpr int kSwitches = 2;

class AnsweringPrompts final : public Prompts {
  public:
    Answer ask(const Prompt& prompt) override {
        if (onAsk) onAsk(prompt.text);
        verdict = prompt.text;
        return Answer::ok;
    }
    void notice(const Prompt& prompt) override { std::cerr << prompt.text << '\n'; }
    std::optional<std::filesystem::path> askFile(const FileQuestion&) override { return {}; }
    void beep() override {}

    std::function<void(const std::string&)> onAsk;
    std::string verdict;
};

class NoProgress final : public ProgressDisplay {
  public:
    void openProgress(const std::string&, const std::string&, bool) override {}
    void showProgress(int) override {}
    void showSegment(int) override {}
    void closeProgress() override {}
};

struct Bench {
    VirtualEventLoop loop;
    boxsim::SimulatedBox box{loop, 1};
    boxsim::SimulatedPort port{loop, box};
    AnsweringPrompts prompts;
    SessionState state;
    ErrorReporter errors{state.messages, prompts};
    ProgrammerLink link{state, loop, port, prompts, errors};
    Receiver receiver{state, link, prompts, errors};
    Families families{state};
    MechCheck check{state, link, families, prompts, errors};
    NoProgress progress;
    MarsFamily mars{state, link, prompts, errors, progress};

    explicit Bench(std::string_view model) {
        link.setByteHandler([this](std::uint8_t byte) { receiver.handleByte(byte); });
        receiver.sinks.promLine = [this](std::string_view line) { mars.parsePromLine(line); };
        families.add(mars);
        box.plugValidator(kMars, model);
        state.mech.manufacturer = kMars;
        state.mech.mechType = model;
        applyMechType(state.mech, state.messages);
        link.startTicks();
        link.openPort(1);
    }
    void setSwitches(bool one, bool two) {
        const std::array<bool, kSwitches> wanted = {one, two};
        for (int i = 0; i < kSwitches; ++i)
            box.setSwitch(i + 1, wanted.at(static_cast<std::size_t>(i)));
    }
};

struct Span {
    Micros from{}, to{};
};

Micros covered(std::vector<Span> spans) {
    std::sort(spans.begin(), spans.end(),
              [](const Span& a, const Span& b) { return a.from < b.from; });
    Micros sum{0};
    Micros end{0};
    for (const Span& span : spans) {
        const Micros from = std::max(span.from, end);
        if (span.to > from) sum += span.to - from;
        end = std::max(end, span.to);
    }
    return sum;
}

bool report(const char* name, std::string_view model, const std::function<void(Bench&)>& prepare,
            const std::function<void(Bench&)>& flow) {
    Bench bench(model);
    prepare(bench);
    bench.loop.advance(std::chrono::seconds(1));
    bench.box.clearTranscript();
    std::vector<ProgrammerLink::SpentWait> waits;
    bench.link.noteSpentWaits(&waits);
    const Micros start = bench.loop.now();
    flow(bench);
    const Micros end = bench.loop.now();

    std::vector<Span> spans;
    for (const boxsim::WireByte& byte : bench.box.transcript()) {
        spans.push_back(
            {std::clamp(byte.at - kByteTime, start, end), std::clamp(byte.at, start, end)});
    }
    for (const auto& wait : waits) spans.push_back({wait.from, wait.to});
    const Micros elapsed = end - start;
    const Micros explained = covered(spans);
    const Micros own = std::min(bench.box.ownTime(), elapsed - explained);
    const double efficiency =
        elapsed.count() == 0
            ? 1.0
            : static_cast<double>((explained + own).count()) / static_cast<double>(elapsed.count());
    std::cout << std::left << std::setw(34) << name << std::right << std::fixed
              << std::setprecision(3) << std::setw(9) << static_cast<double>(elapsed.count()) / 1e6
              << " s  " << std::setw(6) << bench.box.transcript().size() << " bytes  efficiency "
              << efficiency << "  " << bench.prompts.verdict << '\n';
    return efficiency >= 0.995;
}

void selectAll(Bench& bench, int promSizeCode) {
    bench.state.prom.promSizeCode = promSizeCode;
    bench.state.prom.segmentSelected.fill(true);
    for (auto& columns : bench.state.limits.channelLimits) columns.fill(1234);
    bench.mars.rebuildImage();
}

int run() {
    using boxsim::PromKind;
    const auto nothing = [](Bench&) {};
    bool good = true;
    good &= report("box probe", "ME111", nothing, [](Bench& b) { (void)b.check.probeBox(); });
    good &= report("mech check", "ME111", nothing, [](Bench& b) { (void)b.check.checkMech(true); });
    good &= report("sensor timings", "ME111", nothing,
                   [](Bench& b) { b.mars.setupMarsTimings("ME111"); });
    const auto withE1 = [](int words) {
        return [words](Bench& b) {
            b.box.insertProm(PromKind::e1, words);
            b.setSwitches(true, false);
            b.state.prom.promSizeCode = words == 512 ? 1 : 0;
        };
    };
    good &=
        report("read 1K PROM", "ME111", withE1(256), [](Bench& b) { (void)b.mars.readMemory(); });
    good &=
        report("read 2K PROM", "ME111", withE1(512), [](Bench& b) { (void)b.mars.readMemory(); });
    const auto programE1 = [](Bench& b) {
        b.prompts.onAsk = [&b](const std::string& text) {
            if (text.find("BOTH SWITCHES ON") != std::string::npos) b.setSwitches(true, true);
            if (text.find("TURN SWITCH 2 OFF") != std::string::npos) b.setSwitches(true, false);
        };
        (void)b.mars.programAndVerify();
    };
    const auto readyE1 = [&](Bench& b) {
        withE1(512)(b);
        selectAll(b, 1);
    };
    good &= report("program and verify E+1, 2K", "ME111", readyE1, programE1);
    good &= report("program and verify E+1, ME181", "ME181", readyE1, programE1);
    good &= report(
        "program and verify bipolar, 2K", "ME111",
        [](Bench& b) {
            b.box.insertProm(PromKind::bipolar, 512);
            selectAll(b, 1);
            b.state.prom.target = TargetProm::bipolar;
        },
        [](Bench& b) { (void)b.mars.programAndVerify(); });
    return good ? 0 : 1;
}

}  // namespace
}  // namespace vantor

int main() {
    return vantor::run();
}
