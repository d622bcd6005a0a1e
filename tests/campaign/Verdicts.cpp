// What the program says of a mech, held against the mech: by what the windows show, what the bench
// laid out and what the simulated mech reads from its own memory, so that a mistake in the
// program's encoders and decoders shows as well as a fault that it overlooked.

#include <QLineEdit>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <map>
#include <set>

#include "OldProm.h"
#include "Oracle.h"
#include "boxsim/SimulatedMech.h"
#include "nri/NriDataFile.h"
#include "nri/NriWrites.h"
#include "platform/Files.h"

namespace vantor::campaign {

namespace {

using Kind = boxsim::Fault::Kind;
using Where = boxsim::Fault::Where;

constexpr int kMarsCoins = 6;  ///< channels of a segment
constexpr int kMarsColumns = 6;

struct Segment {
    int first, last;
};

/// The cells of a Mars segment, as the mech's maker lays them out.
Segment segmentOf(bool me181, int segment) {
    const int size = me181 ? 256 : 128;
    return {segment * size, segment * size + size - 1};
}

int limitAt(std::span<const std::uint8_t> cells, std::size_t at) {
    return cells[at] + 16 * cells[at + 1] + 256 * cells[at + 2];
}

/// Words that a verified Coin Controls mech answers for.
int verifiedWords(std::string_view model) {
    if (model == "Sentinel") return 64;
    return model == "435" ? 201 : 128;
}

int wordOf(const boxsim::MemoryCell& cell) {
    return std::stoi(cell.content, nullptr, 16);
}

int byteSum(const std::vector<boxsim::MemoryCell>& cells, std::size_t first, std::size_t end) {
    int sum = 0;
    for (std::size_t i = first; i < end; ++i) {
        const int word = wordOf(cells.at(i));
        sum += word / 256 + word % 256;
    }
    return sum % 256;
}

/// The check byte (Sentinel: the check word) that belongs to these words.
int checkOf(const std::vector<boxsim::MemoryCell>& cells, bool sentinel) {
    return 256 - byteSum(cells, 0, sentinel ? 63 : 127);
}

std::string pairOf(int number) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const auto digit = [&](int value) { return kDigits[static_cast<std::size_t>(value % 16)]; };
    return {digit(number / 16), digit(number)};
}

/// What brings blocks into an NRI mech, in the mech's own words.
std::vector<std::string> writesOf(const std::vector<boxsim::MemoryCell>& blocks, bool handshake,
                                  int channels, bool tubes) {
    std::vector<std::string> writes;
    for (const boxsim::MemoryCell& block : blocks) {
        const std::string& text = block.content;
        const std::size_t half = text.size() / 2;
        if (handshake) {
            writes.push_back("Z" + pairOf(block.number - 1) + text);
        } else if (block.number <= channels) {
            writes.push_back("D" + std::to_string(block.number) + text.substr(0, half) + "\r" +
                             text.substr(half) + "\r");
        } else if (block.number == channels + 1) {
            writes.push_back(tubes ? "F" + text + "::\r" : "B" + text + "\r");
        } else {
            writes.push_back("E" + text + "\r");
        }
    }
    return writes;
}

/// The block that a write fills, and with what.
boxsim::MemoryCell blockOf(const NriWrite& write, bool handshake, int channels) {
    std::string text = write.data;
    if (handshake) return {std::stoi(write.command.substr(1), nullptr, 16) + 1, text};
    std::erase(text, '\r');
    if (write.command == "D") return {text.front() - '0', text.substr(1)};
    if (text.ends_with("::")) text.resize(text.size() - 2);
    return {channels + (write.command == "E" ? 2 : 1), text};
}

}  // namespace

// --- what was intended ----------------------------------------------------------------------

/// A limit as the limits window shows it; for a segment that is not displayed, as it would.
int Oracle::limit(int channel, int column) {
    const SessionState& state = world_.state();
    const int rows = state.mech.info.channelsPerSegment;
    const int row = channel - 1 - rows * state.limits.selectedSegment;
    const int stored = state.limits.channelLimits[channel][column];
    // A segment that is duplicated is redisplayed when it is programmed.
    if (row < 0 || row >= rows || state.prom.duplicateSegments) return stored;
    const int box = row * 2 * state.n() + column - 1;
    const auto* shown = test::widget<QLineEdit>("frmPROM.txtProm_" + std::to_string(box));
    if (shown->text() != QString::number(stored)) {
        violation("(a) the limits window shows " + shown->text().toStdString() + " and not " +
                  std::to_string(stored) + " for channel " + std::to_string(channel));
    }
    return shown->text().toInt();
}

/// The file that was programmed is the one that the bench laid out.
bool Oracle::fileAsLaidOut() const {
    return !world_.fileText.empty() && readFile(world_.hand.memoryFile) == world_.fileText;
}

int Oracle::struckInStep() const {
    return healthy_ ? 0 : world_.box.faultsStruck() - struckBefore_;
}

// --- Mars -----------------------------------------------------------------------------------

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
        marsLimits(segment, cells);
    }
    if (compared == 0) violation("(a) verified, but nothing was compared");
    marsKept(cells);
    for (const int cell : world_.box.promChangedSinceRead()) {
        violation("(d) verified, but changed cell " + std::to_string(cell) + " was not read back");
        return;
    }
}

void Oracle::marsLimits(int segment, std::span<const std::uint8_t> cells) {
    const bool me181 = world_.state().mech.mechType == "ME181";
    for (int channel = kMarsCoins * segment + 1; channel <= kMarsCoins * (segment + 1); ++channel) {
        for (int column = 1; column <= kMarsColumns; ++column) {
            const int held = limitAt(cells, test::limitCell(me181, channel, column));
            if (held == limit(channel, column)) continue;
            violation("(a) verified, but limit " + std::to_string(column) + " of channel " +
                      std::to_string(channel) + " is " + std::to_string(held));
            return;
        }
    }
}

/// Coins that are kept have the limits of the old PROM.
void Oracle::marsKept(std::span<const std::uint8_t> cells) {
    const SessionState& state = world_.state();
    // A PROM's lines have no sum: a digit that has changed on its way is taken for what it is.
    if (!healthy_ && world_.plan.row().bytes && world_.box.faultsStruck() > 0) return;
    const bool me181 = state.mech.mechType == "ME181";
    for (int channel = 1; channel <= kChannels; ++channel) {
        const int source = state.coinset.oldChannelSource[channel];
        const bool selected = channel <= kMarsCoins * kMarsSegments &&
                              state.prom.segmentSelected[(channel - 1) / kMarsCoins];
        if (source < 1 || !selected) continue;
        for (int column = 1; column <= kMarsColumns; ++column) {
            const std::size_t at = test::limitCell(me181, channel, column);
            const std::size_t from = test::limitCell(me181, source, column);
            if (limitAt(cells, at) == limitAt(world_.hand.oldProm, from)) continue;
            violation("(a) verified, but channel " + std::to_string(channel) +
                      " is not that of the old PROM");
            return;
        }
    }
}

// --- Coin Controls --------------------------------------------------------------------------

void Oracle::coinControls() {
    ++verdicts_;
    const SessionState& state = world_.state();
    const auto memory = world_.box.mech()->memory();
    const bool sentinel = state.mech.mechType == "Sentinel";
    const bool limits = test::visible("frmPROM");
    const bool file = !limits && fromFile_ && fileAsLaidOut();
    const int words = verifiedWords(state.mech.mechType);
    for (const boxsim::MemoryCell& cell : memory) {
        if (cell.number >= words) break;
        const auto place = static_cast<std::size_t>(cell.number);
        // The check word of a Sentinel is reckoned anew.
        const bool own = sentinel && cell.number == words - 1;
        const int intended =
            file && !own ? wordOf(world_.fileCells.at(place)) : state.images.next[cell.number];
        if (wordOf(cell) == intended) continue;
        violation("(a) verified, but word " + std::to_string(cell.number) + " is " + cell.content +
                  " and not " + std::to_string(intended));
        return;
    }
    if (sentinel && wordOf(memory.back()) != checkOf(memory, sentinel)) {
        violation("(a) verified, but the check word is " + memory.back().content);
    }
    if (limits) {
        windows();
    } else if (!fromFile_) {
        routing(memory);
    }
    for (const int word : world_.box.mechChangedSinceRead()) {
        violation("(d) verified, but changed word " + std::to_string(word) + " was not read back");
        return;
    }
    // What lies behind the verified words may have been misread.
    if (!linesUnchecked()) dump();
}

/// A programmed routing has the paths of the window, and the rest of the memory is as it was.
void Oracle::routing(const std::vector<boxsim::MemoryCell>& memory) {
    constexpr int kSortTable = 128;
    constexpr int kPaths = 4;  ///< of a row, the first one in the lowest digit
    constexpr std::string_view kPathCodes = "DCBAabcd";
    constexpr std::array<std::pair<int, int>, 6> kRouting = {
        {{11, 11}, {110, 113}, {127, 127}, {128, 143}, {204, 204}, {228, 228}}};
    for (const boxsim::MemoryCell& cell : memory) {
        const bool meant = std::ranges::any_of(kRouting, [&](const std::pair<int, int>& range) {
            return cell.number >= range.first && cell.number <= range.second;
        });
        const auto place = static_cast<std::size_t>(cell.number);
        if (meant || !healthy_ || cell.content == memoryBefore_.at(place).content) continue;
        violation("(a) routing changed word " + std::to_string(cell.number));
        return;
    }
    for (int path = 0; path < 16 * kPaths; ++path) {
        const auto* box = test::widget<QLineEdit>("frmEEPROMdata.txtSort_" + std::to_string(path));
        const auto row = static_cast<std::size_t>(kSortTable + path / kPaths);
        const int code = wordOf(memory.at(row)) >> (4 * (path % kPaths)) & 15;
        const std::string letter = box->text().toStdString();
        const std::size_t wanted = letter.size() == 1 ? kPathCodes.find(letter) : letter.npos;
        if (wanted == static_cast<std::size_t>(code)) continue;
        violation("(a) verified, but path " + std::to_string(path) + " is " + std::to_string(code) +
                  " and not " + letter);
        return;
    }
}

/// The mech decodes what the window shows.
void Oracle::windows() {
    const SessionState& state = world_.state();
    const auto memory = world_.box.mech()->memory();
    constexpr std::size_t kCheckWord = 127;
    if (memory.size() > kCheckWord) {
        // The sum is as right as it was in the new mech, whatever failed meanwhile. A program that
        // knows nothing of a failure before it, or of a file's words, goes on from what it finds.
        const auto off = [](const std::vector<boxsim::MemoryCell>& cells) {
            return (checkOf(cells, false) - wordOf(cells.at(kCheckWord)) / 256 + 256) % 256;
        };
        const JobKind job = world_.plan.job;
        const bool found = world_.startedAgain || job == JobKind::clone || job == JobKind::fromFile;
        if (linesUnchecked()) {
            // The change was reckoned from what the box said; later ones go on from there.
            memoryFirst_ = memory;
        } else if (off(memory) != off(found ? memoryBefore_ : memoryFirst_)) {
            violation("(a) verified, but the check byte is not");
        }
    }
    for (int channel = 1; channel <= state.mech.info.channelCount; ++channel) {
        const auto held = world_.box.mech()->windows(channel);
        for (int p = 1; p <= state.n(); ++p) {
            const auto place = static_cast<std::size_t>(p - 1);
            if (place < held.size() && held[place].low == limit(channel, 2 * p - 1) &&
                held[place].high == limit(channel, 2 * p)) {
                continue;
            }
            violation("(a) verified, but the mech takes other coins in channel " +
                      std::to_string(channel));
            return;
        }
    }
    keptWindows();
}

/// Coins that are kept have the windows that they had.
void Oracle::keptWindows() {
    if (!healthy_) return;
    const SessionState& state = world_.state();
    const auto same = [](const boxsim::ByteWindow& a, const boxsim::ByteWindow& b) {
        return a.low == b.low && a.high == b.high;
    };
    for (int channel = 1; channel <= state.mech.info.channelCount; ++channel) {
        const int source = state.coinset.oldChannelSource[channel];
        if (source < 1) continue;
        const auto& before = windowsBefore_.at(static_cast<std::size_t>(source - 1));
        if (std::ranges::equal(world_.box.mech()->windows(channel), before, same)) continue;
        violation("(a) programmed, but channel " + std::to_string(channel) + " was not kept");
        return;
    }
}

// --- NRI ------------------------------------------------------------------------------------

/// How many blocks may be wrong although every step was acknowledged, or needed no acknowledgement:
/// what spoils them is beyond anybody's knowledge.
int Oracle::spoiltBlocks(bool handshake) const {
    const int struck = struckInStep();
    if (struck == 0) return 0;
    const boxsim::Fault& fault = world_.plan.armed;
    const bool lineDead = fault.kind == Kind::unplug || fault.kind == Kind::stall;
    // A lost end of a block takes the next one with it. What the mech answers changes nothing.
    if (world_.plan.row().bytes && !lineDead) return fault.where == Where::fromPc ? 2 * struck : 0;
    if (fault.kind == Kind::lyingWrite) return struck;
    if (fault.kind == Kind::stuckCell) return 1;
    // Without acknowledgements nobody learns of the rest either.
    if (!handshake && fault.kind == Kind::mechRefuses) return struck;
    if (!handshake && fault.kind == Kind::powerLoss) return std::numeric_limits<int>::max();
    return 0;
}

void Oracle::nri(bool fromFile) {
    ++verdicts_;
    SessionState& state = world_.state();
    const NriShape shape = nriShape(state.mech.mechType);
    const bool handshake = shape.model.handshake;
    std::vector<std::string> sent;
    std::vector<boxsim::MemoryCell> blocks;
    if (fromFile && fileAsLaidOut()) {
        blocks = world_.fileCells;
        sent = writesOf(blocks, handshake, shape.channels, state.mech.mechType == "G10-4000");
    } else {
        const auto parsed = parseNriFile(readFile(world_.hand.memoryFile).value_or(""));
        const auto writes = fromFile ? nriFileWrites(shape, parsed.blocks)
                                     : nriWrites(shape, state.limits.channelLimits, state.nri.next,
                                                 {.year = 2026, .month = 3, .day = 9});
        for (const NriWrite& write : writes.value_or(std::vector<NriWrite>{})) {
            sent.push_back(write.command + write.data);
            blocks.push_back(blockOf(write, handshake, shape.channels));
        }
    }
    if (sent.empty()) {
        violation("(a) programmed, but there was nothing to send");
        return;
    }
    nriTranscript(sent, handshake);
    // A mech need not take what was misread into a file.
    if (fromFile && !fileAsLaidOut() && linesUnchecked()) return;
    nriMemory(blocks, fromFile);
}

void Oracle::nriMemory(const std::vector<boxsim::MemoryCell>& intended, bool fromFile) {
    const SessionState& state = world_.state();
    const bool handshake = nriShape(state.mech.mechType).model.handshake;
    std::map<int, std::string> memory;
    for (const boxsim::MemoryCell& cell : world_.box.mech()->memory()) {
        memory[cell.number] = cell.content;
    }
    std::set<int> wrong;
    for (const boxsim::MemoryCell& block : intended) {
        // A mech takes no more of a block than it has room for.
        const std::string& held = memory[block.number];
        if (held.empty() || held != block.content.substr(0, held.size())) {
            wrong.insert(block.number);
        }
    }
    for (int channel = 1; channel <= state.mech.info.channelCount && !fromFile; ++channel) {
        const auto held = world_.box.mech()->windows(channel);
        for (int p = 1; p <= state.n(); ++p) {
            const auto place = static_cast<std::size_t>(p - 1);
            if (place < held.size() && held[place].low == limit(channel, 2 * p - 1) &&
                held[place].high == limit(channel, 2 * p)) {
                continue;
            }
            wrong.insert(handshake ? channel + 3 : channel);
        }
    }
    if (static_cast<long>(wrong.size()) > spoiltBlocks(handshake)) {
        violation("(a) programmed, but block " + std::to_string(*wrong.begin()) + " is " +
                  memory[*wrong.begin()]);
        return;
    }
    if (!fromFile) keptWindows();
}

void Oracle::nriTranscript(const std::vector<std::string>& writes, bool handshake) {
    const auto& wire = world_.box.transcript();
    std::string sent;
    std::vector<std::size_t> places;
    for (std::size_t i = wireFrom_; i < wire.size(); ++i) {
        if (wire[i].fromBox) continue;
        sent += static_cast<char>(wire[i].byte);
        places.push_back(i);
    }
    std::string all;
    for (const std::string& write : writes) all += write;
    const std::size_t at = sent.rfind(all);
    if (at == std::string::npos) {
        violation("(a) programmed, but not every write was sent");
        return;
    }
    if (handshake) {
        acknowledgements(writes, at, places);
        return;
    }
    // Nothing was acknowledged; at least the box still answers.
    std::string answer;
    for (std::size_t i = places[at + all.size() - 1]; i < wire.size(); ++i) {
        // A byte of noise in the line is skipped when it is no character.
        if (wire[i].fromBox && wire[i].byte >= ' ') answer += static_cast<char>(wire[i].byte);
    }
    const bool ready = answer.find("*R") != std::string::npos;
    const bool status = answer.find("C0") != std::string::npos || answer.find("N0") != answer.npos;
    if (!ready && !status) violation("(a) programmed, but the box did not answer afterwards");
}

/// The letter of a write and every pair of its data are acknowledged before the next byte; the
/// number of the block between them is not.
void Oracle::acknowledgements(const std::vector<std::string>& writes, std::size_t firstByte,
                              const std::vector<std::size_t>& places) {
    const auto& wire = world_.box.transcript();
    const auto acknowledged = [&](std::size_t byte) {
        const std::size_t end = byte + 1 < places.size() ? places[byte + 1] : wire.size();
        for (std::size_t i = places[byte]; i < end; ++i) {
            if (wire[i].fromBox && wire[i].byte == 6) return true;
        }
        return false;
    };
    // A byte that was lost or doubled on its way shifts what the mech takes for a pair, or what is
    // taken for its answer: then there are at least as many as are owed.
    const bool shifted = struckInStep() > 0 && world_.plan.row().bytes;
    auto heard =
        std::count_if(wire.begin() + static_cast<std::ptrdiff_t>(places[firstByte]), wire.end(),
                      [](const boxsim::WireByte& byte) { return byte.fromBox && byte.byte == 6; });
    std::size_t at = firstByte;
    for (const std::string& write : writes) {
        constexpr std::size_t kData = 3;
        for (std::size_t i = 0; i < write.size(); ++i) {
            const bool owed = i == 0 || (i > kData && (i - kData) % 2 == 1);
            if (!owed) continue;
            if (shifted ? heard-- > 0 : acknowledged(at + i)) continue;
            violation("(a) programmed, but byte " + std::to_string(i) + " of " + write +
                      " was not acknowledged");
            return;
        }
        at += write.size();
    }
}

}  // namespace vantor::campaign
