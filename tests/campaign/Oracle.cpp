#include "Oracle.h"

#include <algorithm>
#include <array>

#include "Jobs.h"
#include "boxsim/SimulatedMech.h"
#include "link/ProgrammerLink.h"
#include "platform/Files.h"

namespace vantor::campaign {

namespace fs = std::filesystem;

namespace {

/// Far more than happens at one moment, far less than a flow that spins.
constexpr int kMostTurnsAtOnce = 20'000;

/// What no technician can make sense of: words of the language that the program is written in.
constexpr std::array<const char*, 10> kProgrammersWords = {
    "Subscript", "vector", "map::",    "basic_string", "bad_",
    "std::",     "stoi",   "optional", "array::",      "No nibble"};

std::size_t lines(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count(text, '\n'));
}

bool endsWhole(std::string_view text) {
    return text.ends_with("\r\n");
}

}  // namespace

Oracle::Oracle(World& world) : world_(world) {
    world_.prompts.watcher = [this](const Prompt& prompt) { seen(prompt); };
    world_.onTurn = [this] { turn(); };
    world_.hand.complain = [this](const std::string& what) { violation(what); };
}

Oracle::~Oracle() {
    world_.prompts.watcher = {};
    world_.onTurn = {};
    world_.hand.complain = {};
}

void Oracle::stepBegins() {
    wireFrom_ = world_.box.transcript().size();
    struckBefore_ = world_.box.faultsStruck();
    world_.prompts.fileOpenedAt = WatchedPrompts::kNever;
    memoryBefore_.clear();
    windowsBefore_.clear();
    const boxsim::SimulatedMech* mech = world_.box.mech();
    if (mech == nullptr) return;
    memoryBefore_ = mech->memory();
    for (int channel = 1; channel <= world_.plan.model->channelCount; ++channel) {
        windowsBefore_.push_back(mech->windows(channel));
    }
}

void Oracle::violation(const std::string& what) {
    constexpr std::size_t kEnough = 20;
    if (violations.size() < kEnough) violations.push_back(what);
}

bool Oracle::toldOfBox() const {
    return std::ranges::any_of(world_.prompts.seen, [](const std::string& box) {
        for (const char* text : {"Stuck in Serial", "No Response", "Serial Mode Not", "removed"}) {
            if (box.find(text) != std::string::npos) return true;
        }
        return false;
    });
}

// --- while it runs -------------------------------------------------------------------------

void Oracle::turn() {
    if (world_.loop.now() != lastTurn_) {
        lastTurn_ = world_.loop.now();
        turnsAtOnce_ = 0;
    } else if (++turnsAtOnce_ == kMostTurnsAtOnce) {
        violation("(b) spins: time stands still");
        if (world_.program) world_.program->link().endProgram();
    }
    if (world_.ended()) return;
    const SessionState& state = world_.state();
    if (state.gather.logEnabled && !logging_) measured_.clear();
    logging_ = state.gather.logEnabled;
    const int count = state.item.readingCount;
    if (count > readings_ && state.gather.runActive && logging_) {
        std::string line;
        for (int p = 0; p < state.n(); ++p) {
            line += "," + std::to_string(state.gather.latestReading[p]) + ",\"\"";
        }
        measured_.push_back("\"\"" + line + ",\"\"");
    }
    readings_ = count;
}

void Oracle::seen(const Prompt& prompt) {
    const auto has = [&](const char* part) { return prompt.text.find(part) != std::string::npos; };
    if (prompt.title == "Error detected") errorReport(prompt.text);
    // The question stands right behind the dialog in which the file was picked.
    if (has("Confirm overwrite")) {
        fromFile_ = world_.prompts.seen.size() == world_.prompts.fileOpenedAt + 1;
    }
    if (has(kMarsVerdict)) mars();
    if (has(kCcVerdict)) coinControls();
    if (has(kNriVerdict)) nri(false);
    if (has(kNriFileVerdict)) nri(true);
}

void Oracle::errorReport(const std::string& text) {
    // Behind the numbered message stands what the failure itself says.
    const std::string said = text.substr(std::min(text.find("\r\n"), text.size()));
    for (const char* word : kProgrammersWords) {
        if (said.find(word) != std::string::npos) {
            violation("(f) an error report for programmers: " + text);
            return;
        }
    }
    if (healthy_) violation("(c) an error report in a clean run: " + text);
}

// --- at rest ---------------------------------------------------------------------------------

void Oracle::atRest() {
    if (world_.prompts.open != 0) violation("(f) a box is left open");
    if (world_.ended()) {
        if (world_.port.isOpen()) violation("(c) the program ended and left the port open");
        return;
    }
    if (test::visible("frmProgramming")) violation("(c) the progress window is left open");
    const bool struck = !healthy_ && world_.box.faultsStruck() > 0;
    if (world_.box.inSerialMode() && !(struck && toldOfBox())) {
        violation("(c) the box is left in serial mode");
    }
}

// --- (e): files ------------------------------------------------------------------------------

void Oracle::files(bool clean) {
    for (const auto& entry : fs::recursive_directory_iterator(world_.folder)) {
        if (entry.path().extension() == ".tmp") {
            violation("(e) left behind: " + entry.path().filename().string());
        }
    }
    const std::string config = readFile(world_.file("config0000.txt")).value_or("");
    if (!endsWhole(config) || std::ranges::count(config, ',') != 4 || lines(config) != 1) {
        violation("(e) the configuration is torn: " + config);
    }
    if (clean && world_.plan.job == JobKind::utilitiesRead) dump();
    savedMemory();
    log();
}

/// The dump of the last read holds what the mech holds.
void Oracle::dump() {
    if (world_.plan.is(kMars) || world_.box.mech() == nullptr) return;
    std::string model(world_.plan.model->code);
    std::ranges::replace(model, '/', '-');
    const std::string text = readFile(world_.file(model + "temp.txt")).value_or("(none)");
    if (text != world_.box.mech()->savedMemory())
        violation("(e) the dump is not the mech's memory");
}

void Oracle::savedMemory() {
    if (world_.plan.job != JobKind::utilitiesRead || world_.plan.is(kMars)) return;
    const auto text = readFile(world_.file("saved.txt"));
    if (!text) return;
    const std::size_t count =
        world_.plan.is(kNri) ? 28 : static_cast<std::size_t>(world_.plan.model->memorySize);
    if (!endsWhole(*text) || lines(*text) != count) violation("(e) the saved memory is torn");
}

void Oracle::log() {
    if (logging_ || world_.prompts.open != 0) return;
    const auto text = readFile(world_.file("results.csv"));
    if (!text) {
        if (!measured_.empty()) violation("(e) readings were logged and there is no log");
        return;
    }
    if (!text->empty() && !endsWhole(*text)) violation("(e) the log is torn");
    std::size_t at = 0;
    for (const std::string& line : measured_) {
        at = text->find("\r\n" + line + "\r\n", at);
        if (at == std::string::npos) {
            violation("(e) a reading is missing in the log: " + line);
            return;
        }
        at += 2;
    }
}

}  // namespace vantor::campaign
