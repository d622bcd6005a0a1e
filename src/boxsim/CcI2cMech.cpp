#include "boxsim/CcI2cMech.h"

#include <algorithm>
#include <array>

#include "boxsim/FaultInjector.h"
#include "boxsim/Wire.h"

namespace vantor::boxsim {

/// How a model differs on the I2C channel.
struct I2cModel {
    std::string_view code;
    std::string_view select;  ///< the box command that puts the mech on the channel
    int words = 128;
    WindowPlan windows;
    std::array<Sensor, 5> sensors;
    std::size_t parameters = 3;
    std::size_t coinData = 3;     ///< bytes between "?" and the sum
    bool longForm = false;        ///< coin frames with one byte more exist
    bool repeatedAsking = false;  ///< asked for a coin with FF FF, and forgets it after a while
    std::span<const FactoryWord> factory;
};

namespace {

constexpr std::uint8_t kOpen = 0x78;
constexpr std::uint8_t kClose = 0x79;
constexpr std::uint8_t kWrite = 0x7A;
constexpr std::uint8_t kRead = 0x7B;
constexpr std::uint8_t kAskCoin = 0x7F;
constexpr std::array<std::uint8_t, 3> kCoinRequest = {0x7F, 0x1F, 0x9E};
constexpr std::uint8_t kAskCoinAgain = 0xFF;
constexpr char kDone = 0x05;
constexpr char kRefused = 0x06;
constexpr char kWordReply = ';';
constexpr char kCoinReply = '?';
constexpr int kCheckWord = 127;
/// Coin data behind the last sensor.
constexpr std::uint8_t kFiller = 0x40;

constexpr Micros kReadTime{1000};
constexpr Micros kWriteTime{8000};
constexpr Micros kRefusalTime{500};
/// The bytes of a packet come in one go; what stops for longer was no packet.
constexpr Micros kPacketGap{100'000};
/// How long a 220B or 335 waits for a coin that it was asked for.
constexpr Micros kCoinPatience{20'000'000};

// Words beside the coin windows, as a new mech has them: number, series and state at the start,
// then what each model keeps for itself. The low byte of the check word is the mech's own.
constexpr std::array kC120 = {
    FactoryWord{0, 0x0120}, FactoryWord{1, 0x4C01}, FactoryWord{2, 0x93B7}, FactoryWord{3, 0x0207},
    FactoryWord{4, 0x0A32}, FactoryWord{5, 0x1C1C}, FactoryWord{6, 0x0000}, FactoryWord{7, 0x0000},
    FactoryWord{8, 0x00C8}, FactoryWord{9, 0x6401},
    // outputs 1 to 6 for channels 1 to 6, for either loom
    FactoryWord{82, 0x0100}, FactoryWord{83, 0x0402}, FactoryWord{84, 0x1008},
    FactoryWord{85, 0x0020}, FactoryWord{86, 0x0000}, FactoryWord{87, 0x0000},
    FactoryWord{88, 0x0000}, FactoryWord{109, 0x0201}, FactoryWord{110, 0x0804},
    FactoryWord{111, 0x2010}, FactoryWord{112, 0x0000}, FactoryWord{113, 0x0000},
    FactoryWord{114, 0x0000}, FactoryWord{127, 0x005A}};
constexpr std::array k220B = {
    FactoryWord{0, 0x220B}, FactoryWord{1, 0x1187},  FactoryWord{2, 0x0C44}, FactoryWord{3, 0x0103},
    FactoryWord{4, 0x0814}, FactoryWord{5, 0x0000},  FactoryWord{6, 0x8001}, FactoryWord{7, 0x0000},
    FactoryWord{8, 0x0032}, FactoryWord{127, 0x00A5}};
constexpr std::array k335 = {
    FactoryWord{0, 0x0335}, FactoryWord{1, 0x2210},  FactoryWord{2, 0x77E3}, FactoryWord{3, 0x0104},
    FactoryWord{4, 0x1014}, FactoryWord{5, 0x0000},  FactoryWord{6, 0x8003}, FactoryWord{7, 0x0000},
    FactoryWord{8, 0x0041}, FactoryWord{127, 0x0033}};
constexpr std::array k450 = {FactoryWord{0, 0x0450}, FactoryWord{1, 0x5109}, FactoryWord{2, 0x2D06},
                             FactoryWord{3, 0x0301}, FactoryWord{4, 0x0C19},
                             FactoryWord{11, 0x0017}, FactoryWord{15, 0x2468},
                             // routes A, B, C, D, then E and A throughout
                             FactoryWord{121, 0x3210}, FactoryWord{122, 0x0004},
                             FactoryWord{123, 0x0000}, FactoryWord{127, 0x003C}};
constexpr std::array k435 = {
    FactoryWord{0, 0x0435}, FactoryWord{1, 0x6702}, FactoryWord{2, 0x1B90}, FactoryWord{3, 0x0402},
    FactoryWord{4, 0x1019}, FactoryWord{11, 0x014A}, FactoryWord{15, 0x1357},
    // the binary codes count up with the channels
    FactoryWord{110, 0x3210}, FactoryWord{111, 0x7654}, FactoryWord{112, 0xBA98},
    FactoryWord{113, 0xFEDC}, FactoryWord{127, 0x0069},
    // A B C D, the same lower path first, then D throughout
    FactoryWord{128, 0x0123}, FactoryWord{129, 0x0123}, FactoryWord{130, 0x1032},
    FactoryWord{131, 0x2301}, FactoryWord{132, 0x4567}, FactoryWord{133, 0x7654},
    FactoryWord{134, 0x0000}, FactoryWord{135, 0x0000}, FactoryWord{136, 0x0000},
    FactoryWord{137, 0x0000}, FactoryWord{138, 0x0000}, FactoryWord{139, 0x0000},
    FactoryWord{140, 0x0000}, FactoryWord{141, 0x0000}, FactoryWord{142, 0x0000},
    FactoryWord{143, 0x0000},
    // plug default route A, in both of its codes
    FactoryWord{204, 0x0311}, FactoryWord{228, 0x0242}};

constexpr std::array kModels = {
    I2cModel{.code = "C120",
             .select = "C00",
             .windows = {10, 12, 12},
             .sensors = {{{45, 150, 0, 0}, {45, 0, 14.5, 0}, {45, 0, 0, 2.7}}},
             .coinData = 5,
             .longForm = true,
             .factory = kC120},
    I2cModel{.code = "220B",
             .select = "C08",
             .windows = {9, 16, 8, 8},
             .sensors = {{{38, 0, 0, 2.6}, {52, 0, 15.5, 0}, {40, 138, 0, 0.2}}},
             .repeatedAsking = true,
             .factory = k220B},
    I2cModel{.code = "335",
             .select = "C08",
             .windows = {9, 16, 16},
             .sensors = {{{40, 0, 0, 2.8}, {48, 0, 15, 0}, {42, 145, 0, 0.15}}},
             .repeatedAsking = true,
             .factory = k335},
    I2cModel{.code = "435",
             .select = "C08",
             .words = 256,
             .windows = {16, 16, 16},
             .sensors = {{{44, 0, 0, 2.75},
                          {46, 0, 15.5, 0},
                          {41, 156, 0, 0},
                          {60, 0, 8, 1.1},
                          {12, 0, 0.4, 0, 1.2}}},
             .parameters = 5,
             .coinData = 5,
             .longForm = true,
             .factory = k435},
    I2cModel{.code = "450",
             .select = "C08",
             .windows = {16, 12, 12},
             .sensors = {{{46, 0, 0, 2.6}, {44, 0, 14, 0}, {43, 148, 0, 0}, {50, 20, 7, 1}}},
             .parameters = 4,
             .coinData = 8,
             .factory = k450},
};

const I2cModel& modelOf(std::string_view code) {
    return *std::find_if(kModels.begin(), kModels.end(),
                         [&](const I2cModel& row) { return row.code == code; });
}

std::uint8_t sumOf(std::span<const std::uint8_t> bytes) {
    int sum = 0;
    for (const std::uint8_t byte : bytes) sum += byte;
    return static_cast<std::uint8_t>(sum);
}

std::uint8_t sumOf(std::string_view bytes) {
    return sumOf({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

/// The whole memory sums up to nothing: words 0 to 126 and the high byte of the check word.
std::uint8_t checkByte(const EepromWords& words) {
    return static_cast<std::uint8_t>(256 - words.byteSum(0, kCheckWord));
}

}  // namespace

CcI2cMech::CcI2cMech(const MechModel& model, MechLine& line)
    : SerialMech(model, line,
                 std::span(modelOf(model.code).sensors).first(modelOf(model.code).parameters)),
      model_(modelOf(model.code)),
      words_(model_.words) {
    words_.putWindows(model_.windows, sensors());
    words_.put(model_.factory);
    const int own = words_.get(kCheckWord) & 0xFF;
    words_.set(kCheckWord, static_cast<std::uint16_t>(checkByte(words_) * 256 + own));
}

void CcI2cMech::commandSeen(std::string_view command) {
    SerialMech::commandSeen(command);
    if (command.starts_with('#')) interfaceOn_ = command == "#80";
}

void CcI2cMech::serialOpened(std::string_view modeCommand) {
    SerialMech::serialOpened(modeCommand);
    packet_.clear();
    barred_ = false;
}

void CcI2cMech::serialClosed() {
    SerialMech::serialClosed();
    channelOpen_ = false;
    armed_ = false;
}

std::size_t CcI2cMech::packetLength() const {
    switch (packet_.front()) {
        case kOpen:
        case kClose:
            return 2;
        case kAskCoinAgain:
            return model_.repeatedAsking ? 2 : 0;
        case kAskCoin:
            return model_.repeatedAsking ? 0 : kCoinRequest.size();
        case kRead:
            return 3;
        case kWrite:
            return 5;
        default:
            return 0;
    }
}

void CcI2cMech::fromPc(std::uint8_t byte) {
    if (!openedBy("$05") || !selectedBy(model_.select) || !interfaceOn_ || !powered()) return;
    if (now() - lastByte_ > kPacketGap) packet_.clear();
    lastByte_ = now();
    packet_.push_back(byte);
    const std::size_t length = packetLength();
    if (length == 2 && packet_.size() == 2 && packet_[0] != packet_[1]) {
        // A lone first byte was no packet; the second may begin one.
        packet_.erase(packet_.begin());
        if (packetLength() == 0) packet_.clear();
        return;
    }
    if (packet_.size() < length) return;
    if (length != 0) act();
    packet_.clear();
}

void CcI2cMech::act() {
    const std::uint8_t first = packet_.front();
    if (first == kOpen || first == kClose) {
        switchChannel(first == kOpen);
        return;
    }
    if (!channelOpen_) return;
    switch (first) {
        case kRead:
            if (sumHolds()) readWord();
            return;
        case kWrite:
            if (sumHolds()) writeWord();
            return;
        case kAskCoin:
            if (std::ranges::equal(packet_, kCoinRequest)) armCoin();
            return;
        default:
            armCoin();
            return;
    }
}

bool CcI2cMech::sumHolds() const {
    return sumOf(std::span(packet_).first(packet_.size() - 1)) == packet_.back();
}

void CcI2cMech::switchChannel(bool open) {
    if (open) barred_ = faults().barsSession();
    channelOpen_ = open && !barred_;
    armed_ = false;
    if (!barred_) acknowledge(kReadTime);
}

void CcI2cMech::acknowledge(Micros ownTime) {
    voice().answer(std::string_view(&kDone, 1), ownTime);
}

void CcI2cMech::refuse() {
    voice().answer(std::string_view(&kRefused, 1), kRefusalTime);
}

void CcI2cMech::sendSummed(std::string bytes, Micros ownTime) {
    const int spoilt = faults().spoilsSum() ? 1 : 0;
    bytes += static_cast<char>(sumOf(bytes) + spoilt);
    voice().answer(bytes, ownTime);
}

void CcI2cMech::readWord() {
    const int address = packet_[1];
    if (!words_.has(address)) return;
    const int word = words_.read(address);
    sendSummed({kWordReply, static_cast<char>(word >> 8), static_cast<char>(word & 0xFF)},
               kReadTime);
}

void CcI2cMech::writeWord() {
    const int address = packet_[1];
    if (!words_.has(address) || faults().refuses()) {
        refuse();
        return;
    }
    const auto dead = faults().losesPower();
    // The high byte is stored first.
    const int low = dead ? words_.get(address) & 0xFF : packet_[3];
    if (!faults().liesAboutWrite() && !faults().cellSticks(address)) {
        words_.write(address, static_cast<std::uint16_t>(packet_[2] * 256 + low));
    }
    if (dead) {
        channelOpen_ = false;
        losePower(*dead);
        return;
    }
    acknowledge(kWriteTime);
}

void CcI2cMech::armCoin() {
    if (faults().refuses()) {
        refuse();
        return;
    }
    armed_ = true;
    armedUntil_ = now() + kCoinPatience;
}

void CcI2cMech::coinInSerialMode(const CoinReading& reading) {
    if (!armed_ || !powered() || (model_.repeatedAsking && now() > armedUntil_)) return;
    armed_ = false;
    std::string frame(1, kCoinReply);
    for (std::size_t i = 0; i < model_.coinData; ++i) {
        const bool sensed = i < model_.parameters;
        frame += static_cast<char>(sensed ? byteOf(reading, i) : kFiller + i);
    }
    if (longFrames_) {
        // Where the shorter frame has its sum; a byte equal to it would end the frame there.
        frame += static_cast<char>(sumOf(frame) == kFiller ? kFiller + 1 : kFiller);
    }
    sendSummed(frame, kCoinTime);
}

std::optional<int> CcI2cMech::channelFor(const CoinReading& reading,
                                         std::span<const std::uint8_t>) const {
    if (words_.get(kCheckWord) >> 8 != checkByte(words_)) return std::nullopt;
    return words_.channelOf(model_.windows, model_.parameters, reading);
}

std::vector<ByteWindow> CcI2cMech::windows(int channel) const {
    return words_.windows(model_.windows, channel, model_.parameters);
}

bool CcI2cMech::setMemory(int number, std::string_view content) {
    return words_.setHex(number, content);
}

bool CcI2cMech::setOption(std::string_view name, std::string_view value) {
    if (name != "long-frames" || !model_.longForm || (value != "on" && value != "off")) {
        return false;
    }
    longFrames_ = value == "on";
    return true;
}

}  // namespace vantor::boxsim
