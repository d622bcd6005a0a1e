#include "Oracle.h"

#include <algorithm>
#include <array>
#include <map>

#include "Jobs.h"
#include "boxsim/SimulatedMech.h"
#include "cc/EepromFile.h"
#include "link/ProgrammerLink.h"
#include "nri/NriDataFile.h"
#include "nri/NriWrites.h"
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

struct Segment {
    int first, last;
};

/// The cells of a Mars segment, as the mech's maker lays them out.
Segment segmentOf(bool me181, int segment) {
    const int size = me181 ? 256 : 128;
    return {segment * size, segment * size + size - 1};
}

/// Words that a verified Coin Controls mech answers for.
int verifiedWords(std::string_view model) {
    if (model == "Sentinel") return 64;
    return model == "435" ? 201 : 128;
}

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

// --- (a) and (d): verdicts -------------------------------------------------------------------

void Oracle::mars() {
    ++verdicts_;
    const SessionState& state = world_.state();
    const auto cells = world_.box.promCells();
    const bool me181 = state.mech.mechType == "ME181";
    const int segments = me181 ? 2 : state.prom.promSizeCode == 1 ? 4 : 2;
    int compared = 0;
    for (int segment = 0; segment < segments; ++segment) {
        if (!state.prom.segmentSelected[segment]) continue;
        const Segment range = segmentOf(me181, segment);
        for (int at = range.first; at <= range.last; ++at, ++compared) {
            const auto index = static_cast<std::size_t>(at);
            if (index < cells.size() && cells[index] == state.images.next[at]) continue;
            violation("(a) verified, but cell " + std::to_string(at) + " differs");
            return;
        }
    }
    if (compared == 0) violation("(a) verified, but nothing was compared");
    for (const int cell : world_.box.promChangedSinceRead()) {
        violation("(d) verified, but changed cell " + std::to_string(cell) + " was not read back");
        return;
    }
}

void Oracle::coinControls() {
    ++verdicts_;
    const SessionState& state = world_.state();
    const auto memory = world_.box.mech()->memory();
    const JobKind job = world_.plan.job;
    const bool file = healthy_ && (job == JobKind::clone || job == JobKind::fromFile);
    const MechImage intended = file ? parseEepromFile(readFile(world_.hand.memoryFile).value_or(""),
                                                      world_.plan.model->memorySize)
                                          .image
                                    : state.images.next;
    for (const boxsim::MemoryCell& cell : memory) {
        // The check word of a Sentinel is reckoned anew.
        if (file && state.mech.mechType == "Sentinel" && cell.number == 63) break;
        if (cell.number >= verifiedWords(state.mech.mechType)) break;
        if (std::stoi(cell.content, nullptr, 16) == intended[cell.number]) continue;
        violation("(a) verified, but word " + std::to_string(cell.number) + " is " + cell.content +
                  " and not " + std::to_string(intended[cell.number]));
        return;
    }
    for (const int word : world_.box.mechChangedSinceRead()) {
        violation("(d) verified, but changed word " + std::to_string(word) + " was not read back");
        return;
    }
    dump();
}

bool Oracle::beyondKnowledge(bool handshake) const {
    using Kind = boxsim::Fault::Kind;
    if (healthy_ || !world_.plan.row().kind) return false;
    const boxsim::Fault& fault = world_.plan.armed;
    const bool lineDead = fault.kind == Kind::unplug || fault.kind == Kind::stall;
    if (world_.plan.row().bytes && !lineDead) {
        // What the mech answers does not change what it stores.
        return fault.where == boxsim::Fault::Where::fromPc;
    }
    if (fault.kind == Kind::lyingWrite || fault.kind == Kind::stuckCell) return true;
    // Without acknowledgements nobody learns of the rest either.
    return !handshake && (fault.kind == Kind::mechRefuses || fault.kind == Kind::powerLoss);
}

void Oracle::nri(bool fromFile) {
    ++verdicts_;
    SessionState& state = world_.state();
    const NriShape shape = nriShape(state.mech.mechType);
    std::vector<NriWrite> writes;
    if (fromFile) {
        const std::string bytes = readFile(world_.hand.memoryFile).value_or("");
        const auto planned = nriFileWrites(shape, parseNriFile(bytes).blocks);
        if (!planned) {
            violation("(a) programmed from a file that gives no writes");
            return;
        }
        writes = *planned;
    } else {
        writes = nriWrites(shape, state.limits.channelLimits, state.nri.next,
                           {.year = 2026, .month = 3, .day = 9});
    }
    std::vector<std::string> sent;
    std::vector<std::pair<int, std::string>> blocks;
    for (const NriWrite& write : writes) {
        sent.push_back(write.command + write.data);
        std::string text = write.data;
        int number = 0;
        if (shape.model.handshake) {
            number = std::stoi(write.command.substr(1), nullptr, 16) + 1;
        } else if (write.command == "D") {
            number = text.front() - '0';
            std::erase(text, '\r');
            text.erase(0, 1);
        } else {
            number = shape.channels + (write.command == "E" ? 2 : 1);
            std::erase(text, '\r');
            if (text.ends_with("::")) text.resize(text.size() - 2);
        }
        blocks.emplace_back(number, text);
    }
    nriTranscript(sent, shape.model.handshake);
    if (!beyondKnowledge(shape.model.handshake)) nriMemory(blocks);
}

void Oracle::nriMemory(const std::vector<std::pair<int, std::string>>& blocks) {
    std::map<int, std::string> memory;
    for (const boxsim::MemoryCell& cell : world_.box.mech()->memory()) {
        memory[cell.number] = cell.content;
    }
    for (const auto& [number, text] : blocks) {
        // A mech takes no more of a block than it has room for.
        const std::string& held = memory[number];
        if (held == text.substr(0, held.size()) && !text.empty()) continue;
        violation("(a) programmed, but block " + std::to_string(number) + " is " + held +
                  " and not " + text);
        return;
    }
}

void Oracle::nriTranscript(const std::vector<std::string>& writes, bool handshake) {
    const auto& wire = world_.box.transcript();
    std::string sent;
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < wire.size(); ++i) {
        if (wire[i].fromBox) continue;
        sent += static_cast<char>(wire[i].byte);
        places.push_back(i);
    }
    std::string all;
    std::size_t acknowledgements = 0;
    for (const std::string& write : writes) {
        all += write;
        // The letter, and every pair behind the number of the block.
        acknowledgements += 1 + (write.size() - 3) / 2;
    }
    const std::size_t at = sent.rfind(all);
    if (at == std::string::npos) {
        violation("(a) programmed, but not every write was sent");
        return;
    }
    if (!handshake) return;
    const auto heard = static_cast<std::size_t>(
        std::count_if(wire.begin() + static_cast<std::ptrdiff_t>(places[at]), wire.end(),
                      [](const boxsim::WireByte& byte) { return byte.fromBox && byte.byte == 6; }));
    if (heard < acknowledgements) {
        violation("(a) programmed, but " + std::to_string(acknowledgements - heard) +
                  " acknowledgements are missing");
    }
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
