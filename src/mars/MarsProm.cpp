#include "mars/MarsProm.h"

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>

#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr int kCellsPerLine = 16;
constexpr int kReadMs = 10000;
constexpr int kLineAckMs = 5000;
constexpr int kSettleMs = 200;
/// A bipolar cell is burnt in three passes; an E+1 device stores at once.
constexpr int kBipolarPasses = 3;
constexpr std::string_view kReadHalf = "A";
constexpr std::string_view kReadWhole = "K";

constexpr int kLineAddress = 2;    // 1-based positions in a data line
constexpr int kLineFirstCell = 6;  // then every second character

std::optional<int> hexDigit(std::string_view line, int position) {
    const std::string_view character = field(line, position, 1);
    constexpr std::string_view kDigits = "0123456789ABCDEFabcdef";
    const std::size_t digit = character.empty() ? std::string_view::npos : kDigits.find(character);
    if (digit == std::string_view::npos) return std::nullopt;
    return static_cast<int>(digit < 16 ? digit : digit - 6);
}

/// One digit of a data line; throws std::invalid_argument where there is none.
int digitValue(std::string_view line, int position) {
    const std::optional<int> digit = hexDigit(line, position);
    if (!digit) throw std::invalid_argument("PROM line damaged: " + std::string(line));
    return *digit;
}

/// The digit of a cell, which no other digit may precede: a lost or doubled character must not
/// shift the cells behind it.
int cellValue(std::string_view line, int position) {
    if (hexDigit(line, position - 1)) {
        throw std::invalid_argument("PROM line damaged: " + std::string(line));
    }
    return digitValue(line, position);
}

char nibbleDigit(int nibble) {
    if (nibble < 0 || nibble > 15) throw std::out_of_range("No nibble: " + std::to_string(nibble));
    return "0123456789ABCDEF"[nibble];
}

int lineAddress(std::string_view line) {
    return 256 * digitValue(line, kLineAddress) + 16 * digitValue(line, kLineAddress + 1) +
           digitValue(line, kLineAddress + 2);
}

}  // namespace

void MarsBracket::sendJ() {
    open_ = true;
    link_.sendJ();
}

MarsBracket::~MarsBracket() {
    if (!open_) return;
    try {
        link_.sendW();
    } catch (...) {
        // The program is ending, or the port is gone: there is nobody left to switch back.
    }
}

const MarsLayout& MarsProm::layout() const {
    return marsModel(state_.mech.mechType).layout;
}

int MarsProm::highestSegment() const {
    return highestMarsSegment(layout(), state_.prom.promSizeCode);
}

void MarsProm::waitForBox(int ms, const bool& flag) {
    // A pulled adapter answers nothing any more, and a PROM has up to 96 lines to wait for.
    link_.waitFor(ms, [&] { return flag || !state_.link.portOpen; });
}

// --- reading -------------------------------------------------------------------------------

bool MarsProm::readMemory() {
    ImagesState& images = state_.images;
    state_.noteOldImage(false);
    errors_.attempt(103, [&] {
        link_.sendAndWait("E");
        // Only now, so that late lines of an earlier read do not count for this one.
        state_.box.promReadDone = false;
        cellsRead_.reset();
        for (int cell = 0; cell < kMarsPromCells; ++cell) images.old[cell] = 0;
        link_.sendString(state_.prom.promSizeCode == 1 ? kReadWhole : kReadHalf);
        waitForBox(kReadMs, state_.box.promReadDone);

        images.oldComplete = true;
        for (int cell = 0; cell <= lastPromCell(state_.prom.promSizeCode); ++cell) {
            if (!cellsRead_[static_cast<std::size_t>(cell)]) images.oldComplete = false;
        }
        if (!images.oldComplete) tellReadFailure();
    });
    return images.oldComplete;
}

void MarsProm::tellReadFailure() {
    prompts_.ask(
        {.title = state_.msgText(102), .text = state_.msgText(101), .icon = PromptIcon::critical});
}

void MarsProm::parsePromLine(std::string_view line) {
    errors_.attempt(107, [&] { storePromLine(line); });
}

void MarsProm::storePromLine(std::string_view line) {
    const int start = lineAddress(line);
    if (start + kCellsPerLine > kMarsPromCells) {
        throw std::out_of_range("PROM address too high: " + std::string(line));
    }
    // All of the line before any of it is stored.
    std::array<int, kCellsPerLine> nibbles{};
    for (int i = 0; i < kCellsPerLine; ++i) {
        nibbles.at(static_cast<std::size_t>(i)) = cellValue(line, kLineFirstCell + 2 * i);
    }
    for (int i = 0; i < kCellsPerLine; ++i) {
        const int cell = start + i;
        state_.images.old[cell] = nibbles.at(static_cast<std::size_t>(i));
        cellsRead_.set(static_cast<std::size_t>(cell));
    }
    if (start + kCellsPerLine > lastPromCell(state_.prom.promSizeCode)) {
        state_.box.promReadDone = true;
    }
}

// --- programming ---------------------------------------------------------------------------

void MarsProm::writeMarsPromRange(CellRange range) {
    errors_.attempt(106, [&] {
        const ProgressScope window(progress_, state_.msgText(104), state_.msgText(105), true);
        const int passes = bipolar() ? kBipolarPasses : 1;
        const int span = std::max(range.last - range.first, 1);
        for (int cell = range.first; cell <= range.last;) {
            std::string command = "P" + hex(static_cast<unsigned>(cell), 3);
            const int end = std::min(cell + kCellsPerLine - 1, range.last);
            for (; cell <= end; ++cell) command += nibbleDigit(state_.images.next[cell]);
            command += '\r';
            for (int pass = 0; pass < passes; ++pass) {
                state_.box.promLineAck = false;
                link_.sendString(command);
                progress_.showSegment(state_.prom.programmingSegment);
                progress_.showProgress(
                    std::min(ProgressDisplay::kRange * (cell - range.first) / span,
                             ProgressDisplay::kRange));
                waitForBox(kLineAckMs, state_.box.promLineAck);
            }
        }
    });
}

bool MarsProm::programAndVerify() {
    MarsBracket bracket(link_);
    // Whatever the coinset said: half a PROM would leave such a mech without its second segment.
    if (marsModel(state_.mech.mechType).alwaysTwoK) state_.prom.promSizeCode = 1;
    duplicateFirstSegment();
    if (!(bipolar() ? offerBipolarProm(bracket) : offerE1())) return false;
    bracket.sendJ();
    link_.waitTicks(kSettleMs);
    programSegments();
    if (!bipolar()) prompts_.ask({.title = state_.msgText(1218), .text = state_.msgText(1217)});
    return verifyMarsProm();
}

void MarsProm::duplicateFirstSegment() {
    PromState& prom = state_.prom;
    if (!prom.segmentSelected[0] || !prom.duplicateSegments) return;
    if (!marsModel(state_.mech.mechType).duplicates) return;
    const CellRange first = marsSegmentRange(layout(), 0);
    const CellRange second = marsSegmentRange(layout(), 1);
    for (int i = 0; i <= first.last; ++i) {
        state_.images.next[second.first + i] = state_.images.next[first.first + i];
    }
    for (int channel = 1; channel <= kMarsCoinsPerSegment; ++channel) {
        for (int column = 1; column <= kMarsLimitColumns; ++column) {
            auto& limits = state_.limits.channelLimits;
            limits[channel + kMarsCoinsPerSegment][column] = limits[channel][column];
        }
    }
    prom.segmentSelected[1] = true;
}

bool MarsProm::offerBipolarProm(MarsBracket& bracket) {
    const auto text = [this](int id) { return state_.msgText(id); };
    const std::string size = state_.prom.promSizeCode == 1 ? "2K" : "1K";
    bool accepted = false;
    while (!accepted) {
        const Answer answer = prompts_.ask({.title = text(1210),
                                            .text = text(1208) + size + text(1209),
                                            .buttons = PromptButtons::okCancel});
        if (answer == Answer::cancel) break;
        bracket.sendJ();
        // A PROM that could not be read is not a blank one.
        accepted = readMemory() && acceptsUsedProm();
        // No other PROM helps a box whose adapter was pulled.
        if (!accepted && !state_.link.portOpen) break;
    }
    link_.sendAndWait("B");
    return accepted;
}

bool MarsProm::acceptsUsedProm() {
    bool blank = true;
    for (int segment = 0; segment <= highestSegment(); ++segment) {
        if (!state_.prom.segmentSelected[segment]) continue;
        const CellRange range = marsSegmentRange(layout(), segment);
        for (int cell = range.first; cell <= range.last; ++cell) {
            if (state_.images.old[cell] != 0) blank = false;
        }
    }
    if (blank) return true;
    const auto text = [this](int id) { return state_.msgText(id); };
    const std::string line(kCrLf);
    return prompts_.ask({.title = text(1214),
                         .text = text(1211) + line + line + text(1212) + line + text(1213),
                         .buttons = PromptButtons::okCancel}) == Answer::ok;
}

bool MarsProm::offerE1() {
    link_.sendAndWait("E");
    return prompts_.ask({.title = state_.msgText(1216),
                         .text = state_.msgText(1215),
                         .buttons = PromptButtons::okCancel}) == Answer::ok;
}

void MarsProm::programSegments() {
    for (int segment = 0; segment <= highestSegment(); ++segment) {
        state_.prom.programmingSegment = segment + 1;
        if (state_.prom.segmentSelected[segment]) {
            writeMarsPromRange(marsSegmentRange(layout(), segment));
        }
    }
}

// --- verifying -----------------------------------------------------------------------------

bool MarsProm::verifyMarsProm() {
    bool good = false;
    errors_.attempt(215, [&] {
        good = readMemory() && matchesNewImage();
        if (good) {
            prompts_.ask({.title = state_.msgText(214), .text = state_.msgText(213)});
        } else {
            prompts_.ask({.title = state_.msgText(214),
                          .text = state_.msgText(215),
                          .icon = PromptIcon::exclamation});
        }
    });
    return good;
}

bool MarsProm::matchesNewImage() const {
    // A PROM of which nothing was compared is not a verified one.
    bool compared = false;
    for (int segment = 0; segment <= highestSegment(); ++segment) {
        if (!state_.prom.segmentSelected[segment]) continue;
        const CellRange range = marsSegmentRange(layout(), segment);
        for (int cell = range.first; cell <= range.last; ++cell) {
            if (!cellsRead_[static_cast<std::size_t>(cell)] ||
                state_.images.old[cell] != state_.images.next[cell]) {
                return false;
            }
        }
        compared = true;
    }
    return compared;
}

}  // namespace vantor
