#include "link/Receiver.h"

#include "Core.h"
#include "FuzzTarget.h"
#include "platform/VirtualEventLoop.h"

// Any bytes in any mode, with any mech. The first four bytes choose model, modes, coins and how
// the rest is cut into pieces; the rest arrives from the box, whole and in pieces, which must come
// to the same.

namespace {

using namespace vantor;

/// Takes down what it is told.
class NotingPrompts final : public Prompts {
  public:
    explicit NotingPrompts(std::string& heard) : heard_(heard) {}
    Answer ask(const Prompt&) override {
        fuzz::require(false, "the receive path asks nothing");
        return Answer::ok;
    }
    void notice(const Prompt& prompt) override { heard_ += "notice " + prompt.text + "\n"; }
    std::optional<std::filesystem::path> askFile(const FileQuestion&) override { return {}; }
    void beep() override {}

  private:
    std::string& heard_;
};

class NotingPort final : public SerialPort {
  public:
    explicit NotingPort(std::string& heard) : heard_(heard) {}
    void deliver(std::span<const std::uint8_t> bytes) { receiver_(bytes); }

    OpenResult open(int) override { return {.open = true, .reason = {}}; }
    void close() override {}
    [[nodiscard]] bool isOpen() const override { return true; }
    [[nodiscard]] bool write(std::span<const std::uint8_t> bytes) override {
        heard_ += "sent " + std::string(bytes.begin(), bytes.end()) + "\n";
        return true;
    }
    void setBreak(bool) override {}
    void discardInput() override {}
    void setReceiver(Receiver receiver) override {
        receiver_ = receiver ? std::move(receiver) : [](std::span<const std::uint8_t>) {};
    }
    void setFailureHandler(FailureHandler) override {}

  private:
    std::string& heard_;
    Receiver receiver_;
};

class NotingTest final : public ValtestDisplay {
  public:
    explicit NotingTest(std::string& heard) : heard_(heard) {}
    void resetValtestDisplay() override { heard_ += "reset\n"; }
    void markAccepted(int position) override { note("accepted", position, 15); }
    void markRejected(int position) override { note("rejected", position, 15); }
    void markPosition(int position) override { note("position", position, 15); }
    void countPosition(int position) override { note("count", position, 15); }
    void markBinary(int bit) override { note("bit", bit, 4); }

  private:
    void note(const char* what, int position, int last) {
        fuzz::require(position >= 0 && position <= last, "the test window has that position");
        heard_ += what + std::to_string(position) + "\n";
    }
    std::string& heard_;
};

/// What the bytes left behind, and what they caused on the way.
std::string told(const SessionState& state) {
    std::string text;
    const auto add = [&text](auto value) { text += std::to_string(value) + " "; };
    const BoxReplies& box = state.box;
    for (const bool flag :
         {box.serialModeFlag, box.commandModeFlag, box.statusReceived, box.mechPresent,
          box.promLineAck, box.promReadDone, box.i2cAckFlag, box.i2cNakFlag, box.wordReadyFlag,
          box.wordChecksumError, box.sentinelOpen, box.linesComplete, box.nriAckFlag,
          box.nriQueryFlag, state.link.replyFlag, state.link.keepAliveOn}) {
        add(flag);
    }
    for (const int value :
         {box.timing1, box.timing2, box.timing3, box.timing4, box.wordValue, box.linesExpected,
          state.gather.coinsRemaining, state.item.readingCount, state.link.frameCount}) {
        add(value);
    }
    for (int i = 0; i < state.link.frameCount; ++i) {
        add(state.link.frameBuffer.at(static_cast<std::size_t>(i)));
    }
    for (const int value : state.gather.latestReading) add(value);
    for (const int value : state.gather.idleReading) add(value);
    for (const int cell : state.images.old) add(cell);
    for (const std::string& part :
         {box.boxVersion, box.sentinelBuffer, box.replyText, state.link.lineBuffer}) {
        text += "[" + part + "]";
    }
    return text;
}

void checkRanges(const SessionState& state) {
    using fuzz::require;
    require(state.link.frameCount >= 0 && state.link.frameCount <= 10, "a frame has its length");
    require(state.box.wordValue >= -1 && state.box.wordValue <= 65535, "a word is a word");
    require(state.gather.coinsRemaining >= 0, "no coin is counted below 0");
    for (const int cell : state.images.old) require(cell >= 0 && cell <= 15, "a cell is a nibble");
    for (const char c : state.link.lineBuffer) {
        require(static_cast<unsigned char>(c) >= 32, "lines are text");
    }
}

/// Hears the bytes in pieces of 1 to `longest`.
std::string hear(std::span<const std::uint8_t> choices, std::span<const std::uint8_t> bytes,
                 std::size_t longest) {
    std::string heard;
    VirtualEventLoop loop;
    NotingPort port(heard);
    NotingPrompts prompts(heard);
    NotingTest valtest(heard);
    fuzz::Core core(loop, port, prompts);
    core.receiver.sinks.valtest = &valtest;
    core.link.openPort(1);

    const auto models = mechModels();
    const MechModel& model = models[choices[0] % models.size()];
    core.select(model.maker, model.code);
    SessionState& state = core.state;
    const auto chosen = [&](int bit) { return (choices[1] >> bit) % 2 == 1; };
    state.box.serialModeFlag = chosen(0);
    state.box.nriG10Mode = chosen(1);
    state.gather.gatherActive = state.gather.runActive = chosen(2);
    state.gather.coinsRemaining = choices[2];
    state.valtest.tubeCount = choices[1] >> 4;

    std::uint32_t dice = choices[3] + 1U;
    while (!bytes.empty()) {
        dice = dice * 1664525U + 1013904223U;
        const std::size_t count = std::min(1 + (dice >> 16) % longest, bytes.size());
        port.deliver(bytes.first(count));
        bytes = bytes.subspan(count);
        loop.advance(Micros{0});
    }
    checkRanges(state);
    return heard + told(state);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kChoices = 4;
    if (size < kChoices) return 0;
    const std::span choices(data, kChoices);
    const std::span bytes(data + kChoices, size - kChoices);
    const std::string whole = hear(choices, bytes, std::max<std::size_t>(bytes.size(), 1));
    fuzz::require(whole == hear(choices, bytes, 5), "pieces come to the same as the whole");
    return 0;
}
