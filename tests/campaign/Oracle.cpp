#include "Oracle.h"

#include <QPlainTextEdit>
#include <algorithm>
#include <array>
#include <sstream>

#include "Jobs.h"
#include "boxsim/SimulatedMech.h"
#include "catalogue/Text.h"
#include "link/ProgrammerLink.h"
#include "platform/Files.h"

namespace vantor::campaign {

namespace fs = std::filesystem;

namespace {

/// Far more than happens at one moment, far less than a flow that spins.
constexpr int kMostTurnsAtOnce = 20'000;

/// What an error report may say behind its numbered message: what happened on the bench. Whatever
/// else is thrown is a mistake of the program, and no technician can make sense of it.
constexpr std::array kReports = {"PROM line damaged: ", "PROM address too high: ",
                                 "The device was removed", "The port takes no data"};

std::size_t lines(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count(text, '\n'));
}

/// An empty text and a number: every other line begins with a text of its own or with another one.
bool isReading(std::string_view line) {
    return line.size() > 3 && line.starts_with("\"\",") && line[3] >= '0' && line[3] <= '9';
}

bool endsWhole(std::string_view text) {
    return text.ends_with("\r\n");
}

}  // namespace

Oracle::Oracle(World& world) : world_(world) {
    world_.prompts.watcher = [this](const Prompt& prompt) { seen(prompt); };
    world_.onTurn = [this] { turn(); };
    world_.hand.complain = [this](const std::string& what) { violation(what); };
    world_.prompts.onSave = [this] {
        if (!world_.state().oldImageWhole()) savedIncomplete_ = true;
    };
    world_.onRead = [this] { readWhole(); };
    world_.onTested = [this](int dropped) { tested(dropped); };
}

Oracle::~Oracle() {
    world_.prompts.watcher = {};
    world_.onTurn = {};
    world_.hand.complain = {};
    world_.prompts.onSave = {};
    world_.onRead = {};
    world_.onTested = {};
}

void Oracle::expectHealthy() {
    healthy_ = true;
    measuredBefore_ = world_.box.coinDataOn();
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
    if (memoryFirst_.empty()) memoryFirst_ = memoryBefore_;
    for (int channel = 1; channel <= world_.plan.model->channelCount; ++channel) {
        windowsBefore_.push_back(mech->windows(channel));
    }
}

void Oracle::violation(const std::string& what) {
    constexpr std::size_t kEnough = 20;
    if (violations.size() < kEnough) violations.push_back(what);
}

/// A fault has struck that can keep the box from hearing what it is told.
bool Oracle::boxMayBeDeaf() const {
    using Kind = boxsim::Fault::Kind;
    if (healthy_ || !struck_) return false;
    const boxsim::Fault& fault = world_.plan.armed;
    if (fault.kind == Kind::unplug || fault.kind == Kind::breakLost) return true;
    return world_.plan.row().bytes && fault.where == boxsim::Fault::Where::fromPc;
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
    for (const char* text : {"Stuck in Serial", "No Response", "Serial Mode Not", "removed"}) {
        toldOfBox_ = toldOfBox_ || has(text);
    }
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
    // Behind the numbered message stands, on a line of its own, what the failure itself says.
    const std::size_t line = text.find("\r\n");
    const std::string said = text.substr(line == std::string::npos ? text.size() : line + 2);
    if (std::ranges::none_of(kReports, [&](const char* part) { return said.starts_with(part); })) {
        violation("(f) an error report for programmers: " + text);
        return;
    }
    if (healthy_) violation("(c) an error report in a clean run: " + text);
}

// --- at rest ---------------------------------------------------------------------------------

void Oracle::atRest() {
    struck_ = struck_ || world_.box.faultsStruck() > 0;
    if (world_.prompts.open != 0) violation("(f) a box is left open");
    if (world_.ended()) {
        if (world_.port.isOpen()) violation("(c) the program ended and left the port open");
        if (world_.box.inSerialMode() && !boxMayBeDeaf()) {
            violation("(c) the program ended and left the box in serial mode");
        }
        return;
    }
    if (test::visible("frmProgramming")) violation("(c) the progress window is left open");
    const bool testing = test::visible("frmValtest") && world_.state().box.nriG10Mode;
    if (world_.box.inSerialMode() && !testing && !(boxMayBeDeaf() && toldOfBox_)) {
        violation("(c) the box is left in serial mode");
    }
}

void Oracle::atHome() {
    atRest();
    // A validator test is not switched off when its window closes, only when the next work begins.
    const bool tested = world_.plan.job == JobKind::validatorTest || !world_.plan.presses.empty();
    if (world_.ended() || tested) return;
    // A box that answers no command does not act on any either.
    const bool ignored = !healthy_ && world_.plan.armed.kind == boxsim::Fault::Kind::silentBox;
    if (boxMayBeDeaf() || ignored) return;
    if (world_.box.testing()) violation("(c) the box is left in its test");
    if (world_.box.coinDataOn() && !measuredBefore_) {
        violation("(c) the box is left with coin data on");
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
    savedMemory(clean);
    log();
}

/// A fault that no sum covers: what was read may differ from what is there, and nobody knows.
bool Oracle::linesUnchecked() const {
    using Kind = boxsim::Fault::Kind;
    if (healthy_ || world_.box.faultsStruck() == 0) return false;
    const Kind kind = world_.plan.armed.kind;
    // No answer says what it is the answer to.
    if (kind == Kind::previousReply) return true;
    // A block of an NRI mech has the length that it has, and one that is refused is not there.
    if (world_.plan.is(kNri) && (kind == Kind::mechCut || kind == Kind::mechRefuses)) return true;
    const bool summed = world_.plan.is(kCoinControls) && world_.plan.model->code != "Sentinel";
    return !summed && (world_.plan.row().bytes || kind == Kind::longReply);
}

/// A read was reported whole: the window, and the dump, have what there is.
void Oracle::readWhole() {
    if (linesUnchecked()) return;
    if (!world_.plan.is(kMars)) {
        dump();
        return;
    }
    const auto cells = world_.box.promCells();
    std::istringstream pane(
        test::widget<QPlainTextEdit>("frmPROMdata.lblPROM")->toPlainText().toStdString());
    std::size_t at = 0;
    for (std::string line; std::getline(pane, line);) {
        // The address, then the digits of sixteen cells.
        std::istringstream words(line);
        std::string address, digit;
        words >> address;
        for (; words >> digit; ++at) {
            if (at < cells.size() && std::stoi(digit, nullptr, 16) == cells[at]) continue;
            violation("(e) the window shows cell " + std::to_string(at) + " as " + digit);
            return;
        }
    }
    constexpr std::size_t kShown = 256;
    if (at != kShown) violation("(e) the window shows " + std::to_string(at) + " cells");
    const int last = world_.state().prom.promSizeCode == 1 ? 511 : 255;
    for (int cell = 0; cell <= last; ++cell) {
        const auto place = static_cast<std::size_t>(cell);
        if (place < cells.size() && world_.state().images.old[cell] == cells[place]) continue;
        violation("(e) read whole, but cell " + std::to_string(cell) + " differs");
        return;
    }
}

/// The counts of a validator test are the coins that the box has reported since the step began.
void Oracle::tested(int dropped) {
    const std::vector<int> reported = reportedCoins();
    std::vector<int> shown;
    for (std::size_t i = 0; i < reported.size(); ++i) {
        shown.push_back(std::stoi(test::label("frmValtest.lblCount_" + std::to_string(i))));
    }
    // A stray press may clear them, and a spoilt line may be read in more than one way; a box whose
    // version was spoilt passes for one that reports no rejected coins.
    const bool quiet = healthy_ || (world_.box.faultsStruck() == 0 && world_.plan.presses.empty());
    if (quiet && shown != reported) violation("(e) the counts are not the coins reported");
    // The bench's coins are those that a new mech takes, but for the washer.
    if (healthy_ && std::ranges::count(reported, 0) == std::ssize(reported)) {
        violation("(e) no coin was reported");
    }
    if (std::ranges::any_of(shown, [&](int count) { return count > dropped; })) {
        violation("(e) more coins are counted than were dropped");
    }
}

/// Coins per position, by what the box sent.
std::vector<int> Oracle::reportedCoins() {
    constexpr std::size_t kPositions = 16;
    std::vector<int> counts(kPositions);
    // What noise has made of a line may name a position that no mech has.
    const auto count = [&counts](std::size_t place) {
        if (place < counts.size()) ++counts[place];
    };
    const std::string code(world_.plan.model->code);
    const auto& wire = world_.box.transcript();
    std::string line;
    for (std::size_t i = wireFrom_; i < wire.size(); ++i) {
        if (!wire[i].fromBox || wire[i].byte == '\n') continue;
        if (wire[i].byte != '\r') {
            line += static_cast<char>(wire[i].byte);
            continue;
        }
        if (code.starts_with("G10")) {
            // 80, then the channel above the bits of its tube: left, middle, right, or the cash
            // box.
            const int record = line.size() == 2 ? static_cast<unsigned char>(line[1]) : 0;
            if (record / 8 > 0) count(static_cast<std::size_t>(record / 8 - 1));
            if (record != 0) {
                count((record & 4) ? 8 : (record & 2) ? 9 : (record & 1) ? 10 : 11);
            }
        } else if (line == "V R") {
            const std::size_t rejected = code == "MS1000" ? 9 : 6;
            if (world_.plan.is(kMars)) count(rejected);
        } else if (line.size() == 3 && line.starts_with("V ")) {
            constexpr std::array<std::size_t, 4> kTubes = {0, 2, 3, 1};
            const bool tubes = code == "450" || code.starts_with("G18") || code.starts_with("G40");
            const auto place = static_cast<std::size_t>(line[2] - 'A');
            count(tubes && place < kTubes.size() ? kTubes.at(place) : place);
        }
        line.clear();
    }
    return counts;
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

/// The saved memory is that of the mech or, before it is saved, what was there. What a stray press
/// saves amid a read is as incomplete as what was read.
void Oracle::savedMemory(bool clean) {
    if (world_.plan.job != JobKind::utilitiesRead || world_.plan.is(kMars)) return;
    const std::string text = readFile(world_.file("saved.txt")).value_or("");
    const std::string memory = world_.box.mech()->savedMemory();
    if (text == memory || (!clean && text == world_.oldText)) return;
    if (!clean && (savedIncomplete_ || linesUnchecked())) return;
    violation("(e) the saved memory is neither the old one nor the mech's");
}

void Oracle::log() {
    if (logging_ || world_.prompts.open != 0) return;
    const auto text = readFile(world_.file("results.csv"));
    if (!text) {
        if (!measured_.empty()) violation("(e) readings were logged and there is no log");
        return;
    }
    if (!text->empty() && !endsWhole(*text)) violation("(e) the log is torn");
    std::vector<std::string> written;
    const auto flier = [&](const std::string& line) {
        const std::string own = fromFileBytes(line);
        return own.starts_with("\"" + world_.state().msgText(456)) ||
               own.starts_with("\"" + world_.state().msgText(460));
    };
    bool behindReading = false;
    std::istringstream file(*text);
    for (std::string line; std::getline(file, line);) {
        if (line.ends_with('\r')) line.pop_back();
        // With a flier found at once, the last coin's count was gone before anybody saw it.
        const std::size_t count = written.size();
        const bool unseen = behindReading && flier(line) &&
                            (count > measured_.size() || written.back() != measured_[count - 1]);
        if (unseen) written.pop_back();
        behindReading = isReading(line);
        if (behindReading) written.push_back(line);
    }
    if (written != measured_) {
        violation("(e) the log has " + std::to_string(written.size()) + " readings, counted were " +
                  std::to_string(measured_.size()));
    }
}

}  // namespace vantor::campaign
