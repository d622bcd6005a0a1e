#include "cc/CcMemory.h"

#include <algorithm>

#include "catalogue/Text.h"
#include "cc/EepromFile.h"
#include "platform/Files.h"

namespace vantor {

// Packets of an I2C session (the sum is that of the bytes before it, modulo 256):
//
//   open      78 78                        ->  05
//   close     79 79                        ->  05
//   read      7B address sum               ->  3B high low sum
//   write     7A address high low sum      ->  05, or 06 when refused

namespace {

constexpr std::string_view kBegin = "\x78\x78";
constexpr std::string_view kEnd = "\x79\x79";
constexpr int kReadPacket = 0x7B;
constexpr int kWritePacket = 0x7A;
constexpr int kChannelMs = 500;
constexpr int kWordMs = 2000;
constexpr int kAfterModeMs = 100;
constexpr int kReadOpenings = 3;
constexpr int kBetweenOpeningsMs = 500;
constexpr int kImageCells = 512;

/// A packet with its sum.
std::string packet(std::initializer_list<int> bytes) {
    std::string text;
    int sum = 0;
    for (const int byte : bytes) {
        text.push_back(static_cast<char>(static_cast<unsigned char>(byte)));
        sum += byte;
    }
    text.push_back(static_cast<char>(static_cast<unsigned char>(sum % 256)));
    return text;
}

}  // namespace

// --- the bracket of a flow -----------------------------------------------------------------

CcFlow::CcFlow(SessionState& state, ProgrammerLink& link, CcMemory& memory)
    : state_(state), link_(link), memory_(memory) {
    link_.sendJ();
}

CcFlow::~CcFlow() {
    // In serial mode nobody would understand it.
    if (finished_ || state_.box.serialModeFlag) return;
    try {
        link_.sendW();
    } catch (...) {  // NOLINT(bugprone-empty-catch): already unwinding to the program's end
    }
}

void CcFlow::finish() {
    memory_.settle();
    finished_ = true;
    link_.sendW();
}

// --- sessions ------------------------------------------------------------------------------

bool CcMemory::beginI2c() {
    BoxReplies& box = state_.box;
    box.i2cAckFlag = false;
    link_.sendString(kBegin);
    link_.waitFor(kChannelMs, [&] { return box.i2cAckFlag || state_.gather.abortFlag; });
    return box.i2cAckFlag;
}

bool CcMemory::openEepromSession() {
    for (const std::string_view command : model().setUp) {
        if (!command.empty()) link_.sendString(command);
    }
    if (!usesI2c()) return sentinel_.openSentinelSession();
    if (!check_.enterSerialMode(model().modeCommand)) return false;
    link_.waitTicks(kAfterModeMs);
    return beginI2c();
}

void CcMemory::closeEepromSession() {
    link_.setKeepAlive(false);
    if (!usesI2c()) {
        sentinel_.closeSentinelSession();
        return;
    }
    if (state_.box.serialModeFlag) {  // a box in command mode takes the closing for commands
        state_.box.i2cAckFlag = false;
        link_.sendString(kEnd);
        link_.waitFor(kChannelMs, state_.box.i2cAckFlag);
    }
    check_.leaveSerialMode();
    // A spoilt coin frame meanwhile was asked for again, which has set it going.
    link_.setKeepAlive(false);
}

void CcMemory::settle() {
    if (state_.box.serialModeFlag) check_.leaveSerialMode();
}

void CcMemory::abandonSession() {
    try {
        link_.setKeepAlive(false);
        if (!usesI2c()) {
            sentinel_.abandonSession();
        } else if (state_.box.serialModeFlag) {
            link_.sendString(kEnd);
        }
    } catch (...) {  // NOLINT(bugprone-empty-catch): already unwinding to the program's end
    }
}

// --- words ---------------------------------------------------------------------------------

int CcMemory::readEepromWord(int address) {
    int word = -1;
    errors_.attempt(149, [&] { word = requestWord(address); });
    return word;
}

int CcMemory::requestWord(int address) {
    // Cancelled while the session opened: the box may be in command mode.
    if (state_.gather.abortFlag) return -1;
    BoxReplies& box = state_.box;
    box.wordReadyFlag = false;
    box.wordChecksumError = false;
    box.wordValue = -1;
    link_.sendString(packet({kReadPacket, address % 256}));
    // A coin frame also sets the ready flag; only a word's reply brings a value or a wrong sum.
    const auto replied = [&] {
        return box.wordReadyFlag && (box.wordValue >= 0 || box.wordChecksumError);
    };
    link_.waitFor(kWordMs, [&] { return replied() || state_.gather.abortFlag; });
    if (!replied()) {
        if (!state_.gather.abortFlag) tell(102, state_.msgText(147));
        return -1;
    }
    if (box.wordChecksumError) {
        tell(102, state_.msgText(148) + spacedNumber(address));
        return -1;
    }
    return box.wordValue;
}

bool CcMemory::writeEepromWord(int address, int value) {
    BoxReplies& box = state_.box;
    bool written = false;
    errors_.attempt(150, [&] {
        if (state_.images.old[address] == value) {
            written = true;
            return;
        }
        box.i2cAckFlag = false;
        box.i2cNakFlag = false;
        link_.sendString(packet({kWritePacket, address % 256, highByte(value), lowByte(value)}));
        link_.waitFor(kWordMs, [&] { return box.i2cAckFlag || box.i2cNakFlag; });
        written = box.i2cAckFlag;
    });
    return written;
}

bool CcMemory::storeWord(int address, int value) {
    return usesI2c() ? writeEepromWord(address, value)
                     : sentinel_.writeSentinelWord(address, value);
}

void CcMemory::showProgress(int word) {
    progress_.showProgress(ProgressDisplay::kRange * word / words());
}

void CcMemory::tell(int title, const std::string& text) {
    prompts_.ask({.title = state_.msgText(title), .text = text, .icon = PromptIcon::critical});
}

void CcMemory::tellIncomplete() {
    tell(102, state_.msgText(146));
}

// --- reading -------------------------------------------------------------------------------

bool CcMemory::readMemory() {
    state_.noteOldImage(false);
    errors_.attempt(103, [this] {
        for (int i = 0; i < kImageCells; ++i) state_.images.old[i] = 0;
    });
    readCcEeprom();
    return state_.oldImageWhole();
}

void CcMemory::readCcEeprom() {
    state_.noteOldImage(false);
    errors_.attempt(130, [this] {
        const ProgressScope window(progress_, state_.msgText(127), state_.msgText(128), false);
        SessionGuard session(*this);
        if (!openForReading()) {
            session.dismiss();
            if (!state_.gather.abortFlag) tell(102, state_.msgText(129));
            return;
        }
        bool complete = false;
        errors_.attempt(130, [&] { complete = readWords(); });
        errors_.attempt(130, [&] { session.close(); });
        state_.noteOldImage(complete);
        errors_.attempt(130, [this] { writeDump(); });
    });
}

bool CcMemory::openForReading() {
    if (!usesI2c()) return openEepromSession();
    const bool& cancelled = state_.gather.abortFlag;
    for (int i = 0; i < kReadOpenings && !cancelled; ++i) {
        if (openEepromSession()) return true;
        if (!cancelled) link_.waitTicks(kBetweenOpeningsMs);
    }
    // A dead channel shows on the first word.
    return true;
}

bool CcMemory::readWords() {
    for (int i = 0; i < words(); ++i) {
        const int word = usesI2c() ? readEepromWord(i) : sentinel_.readSentinelWord(i);
        if (word < 0) return false;
        state_.images.old[i] = word;
        showProgress(i);
    }
    return true;
}

void CcMemory::writeDump() {
    writeFileWhole(state_.app.folder / (state_.mech.mechType + "temp.txt"),
                   eepromFileText(state_.images.old, words()));
}

// --- writing -------------------------------------------------------------------------------

void CcMemory::writeCcEeprom() {
    if (state_.mech.manufacturer != kCoinControls) return;
    errors_.attempt(311, [this] {
        const ProgressScope window(progress_, state_.msgText(305), state_.msgText(306), false);
        SessionGuard session(*this);
        if (!openEepromSession()) {
            session.dismiss();
            if (usesI2c()) check_.leaveSerialMode();
            return;
        }
        errors_.attempt(311, [this] { writeWords(); });
        errors_.attempt(311, [&] { session.close(); });
    });
}

void CcMemory::writeWords() {
    const int count = words();
    const bool ownCheckWord = model().check == CcCheck::sentinelWord63;
    for (int i = 0; i < count; ++i) {
        int& value = state_.images.next[i];
        if (ownCheckWord && i == count - 1) value = sentinelCheckWord(state_.images.next);
        const bool stored = storeWord(i, value);
        showProgress(i);
        if (stored) continue;
        const int message = usesI2c() ? 307 : 309;
        tell(message + 1, state_.msgText(message) + spacedNumber(i));
        return;
    }
}

// --- verifying -----------------------------------------------------------------------------

bool CcMemory::verifyCcEeprom() {
    bool good = false;
    errors_.attempt(318, [&] {
        CcFlow flow(state_, link_, *this);
        const bool whole = readMemory();
        flow.finish();
        good = whole && matchesNewImage();
        if (good) {
            prompts_.ask({.title = state_.msgText(317), .text = state_.msgText(316)});
        } else {
            tell(319, state_.msgText(318));
        }
    });
    return good;
}

bool CcMemory::matchesNewImage() const {
    for (int i = 0; i < model().verifiedWords; ++i) {
        if (state_.images.old[i] != state_.images.next[i]) return false;
    }
    return true;
}

bool CcMemory::programme() {
    bool good = false;
    if (state_.oldImageWhole()) {
        // Until it has been verified, however it ends.
        unfinished_ = Unfinished{.model = state_.mech.mechType,
                                 .sound = soundImage(),
                                 .held = state_.images.old,
                                 .meant = state_.images.next};
    }
    errors_.attempt(311, [&] {
        CcFlow flow(state_, link_, *this);
        writeCcEeprom();
        settle();
        good = verifyCcEeprom();
        flow.finish();
    });
    if (good) unfinished_.reset();
    return good;
}

MechImage CcMemory::soundImage() const {
    // The word in which the mech lost its power may be anything. Where more words are of neither
    // image, another mech is plugged in.
    constexpr int kHalfWritten = 1;
    const MechImage& old = state_.images.old;
    if (!unfinished_ || unfinished_->model != state_.mech.mechType) return old;
    const auto& [model, sound, held, meant] = *unfinished_;
    MechImage base = sound;
    bool finished = true;  // only the reading failed
    int strange = 0;
    for (int i = 0; i <= std::min(words() - 1, kCcCheckWord); ++i) {
        const bool changed = held[i] != meant[i];
        finished = finished && (!changed || old[i] == meant[i]);
        if (old[i] == held[i] || old[i] == meant[i]) continue;
        ++strange;
        // Nobody wrote there: the word was misread, then or now.
        if (!changed && sound[i] == held[i]) base[i] = old[i];
    }
    if (finished || strange > kHalfWritten) return old;
    // The low byte of the check word is the mech's own, unless that word is the spoilt one.
    const int check = highByte(old[kCcCheckWord]);
    if (check == highByte(held[kCcCheckWord]) || check == highByte(meant[kCcCheckWord])) {
        base[kCcCheckWord] = wordOf(highByte(sound[kCcCheckWord]), lowByte(old[kCcCheckWord]));
    }
    return base;
}

}  // namespace vantor
