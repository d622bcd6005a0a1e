#include "boxsim/NriMech.h"

#include <algorithm>

#include "boxsim/FaultInjector.h"
#include "boxsim/Wire.h"

namespace vantor::boxsim {

namespace {

constexpr std::string_view kInterfaceMode = "$06";
constexpr std::string_view kSelect = "C00";
constexpr std::array<std::string_view, 4> kModes = {"$01", "$05", "$23", "$25"};
constexpr int kMapBlock = 20;
constexpr char kRecordStart = static_cast<char>(0x80);
constexpr int kChannelBits = 3;  // the channel stands above the bits of the route
constexpr Micros kAnswerTime{3000};

}  // namespace

std::string hexPair(int value) {
    return {hexDigit(value >> 4), hexDigit(value)};
}

NriMech::NriMech(const MechModel& model, MechLine& line)
    : SerialMech(model, line, nriVariant(model.code).sensors),
      variant_(nriVariant(model.code)),
      interface_(voice()),
      ownMode_(variant_.mode),
      identity_(variant_.identity),
      hasVariants_(model.g40Variants) {
    for (const FactoryBlock& made : variant_.factory) setBlock(made.number, made.text);
}

void NriMech::serialOpened(std::string_view modeCommand) {
    SerialMech::serialOpened(modeCommand);
    interface_.reset();
    barred_ = false;
    coinAsked_ = false;
    measuring_ = false;
    forget();
}

void NriMech::serialClosed() {
    SerialMech::serialClosed();
    coinAsked_ = false;
}

void NriMech::fromPc(std::uint8_t byte) {
    if (openedBy(kInterfaceMode)) {
        // The interface itself has no commands but its own.
        (void)interface_.take(byte, faults());
    } else if (openedBy(ownMode_) && selectedBy(kSelect) && !barred_ && powered()) {
        heard(byte);
    }
}

void NriMech::identify() {
    barred_ = faults().barsSession();
    if (!barred_) sayLine(identity_);
}

void NriMech::armCoin() {
    coinAsked_ = true;
    measuring_ = true;
}

void NriMech::sayLine(std::string_view line) {
    voice().answer(std::string(line) + static_cast<char>(kCarriageReturn), kAnswerTime);
}

void NriMech::sayLines(std::string_view text, std::size_t width) {
    std::string lines;
    for (std::size_t at = 0; at < text.size(); at += width) {
        lines += std::string(text.substr(at, width)) + static_cast<char>(kCarriageReturn);
    }
    voice().answer(lines, kAnswerTime);
}

void NriMech::coinInSerialMode(const CoinReading& reading) {
    if (!openedBy(ownMode_) || !selectedBy(kSelect) || barred_ || !powered()) return;
    if (coinAsked_) {
        coinAsked_ = false;
        voice().answer(readingText(reading), kCoinTime);
    } else if (variant_.coinRecords && !measuring_) {
        sendRecord(reading);
    }
}

void NriMech::sendRecord(const CoinReading& reading) {
    const auto channel = channelFor(reading, {});
    if (!channel) return;
    const int code = ((*channel + 1) << kChannelBits) + route(*channel + 1);
    const std::string record = {kRecordStart, static_cast<char>(code),
                                static_cast<char>(kCarriageReturn)};
    voice().answer(record, kCoinTime);
}

std::size_t NriMech::sensorOf(int channel, int parameter) const {
    if (!variant_.mapped) return static_cast<std::size_t>(parameter);
    const int before = (channel - 1) * variant_.parameters;
    const auto digit = static_cast<std::size_t>(before + parameter);
    const std::string& map = block(kMapBlock);
    return digit < map.size() ? static_cast<std::size_t>(
                                    hexValue(std::string_view(map).substr(digit, 1)).value_or(0))
                              : 0;
}

std::vector<int> NriMech::parameterValues(int channel, const CoinReading& reading) const {
    std::vector<int> values;
    for (int p = 0; p < variant_.parameters; ++p) {
        values.push_back(byteOf(reading, sensorOf(channel, p)));
    }
    return values;
}

std::vector<ByteWindow> NriMech::factoryWindows(int channel) const {
    std::vector<ByteWindow> made(static_cast<std::size_t>(variant_.parameters));
    const auto position = static_cast<std::size_t>(channel - 1);
    if (position >= factoryCoins().size()) return made;
    const auto readings = byteReadings(sensors(), *findCoin(factoryCoins()[position]));
    for (int p = 0; p < variant_.parameters; ++p) {
        made[static_cast<std::size_t>(p)] = windowAround(readings.at(sensorOf(channel, p)));
    }
    return made;
}

std::optional<int> NriMech::channelFor(const CoinReading& reading,
                                       std::span<const std::uint8_t>) const {
    for (int channel = 1; channel <= variant_.channels; ++channel) {
        if (takesCoin(windows(channel), parameterValues(channel, reading))) return channel - 1;
    }
    return std::nullopt;
}

const std::string& NriMech::block(int number) const {
    return blocks_.at(static_cast<std::size_t>(number));
}

void NriMech::setBlock(int number, std::string_view text) {
    blocks_.at(static_cast<std::size_t>(number)) = text;
}

std::vector<MemoryCell> NriMech::memory() const {
    std::vector<MemoryCell> cells;
    for (int number = 1; number <= variant_.blocks; ++number) {
        cells.push_back({number, block(number)});
    }
    return cells;
}

bool NriMech::setMemory(int number, std::string_view content) {
    if (!hasBlock(number) || content.size() != block(number).size()) return false;
    setBlock(number, content);
    return true;
}

std::string NriMech::savedMemory() const {
    std::string text;
    for (std::size_t number = 1; number <= kFileBlocks; ++number) {
        text += std::to_string(number) + ",\"" + blocks_.at(number) + "\"\r\n";
    }
    return text;
}

bool NriMech::setOption(std::string_view name, std::string_view value) {
    if (name == "mode") {
        for (const std::string_view mode : kModes) {
            if (value == mode) ownMode_ = mode;
        }
        return value == ownMode_;
    }
    if (name == "variant" && hasVariants_) {
        const auto found = std::ranges::find(kG40Variants, value, &G40Variant::code);
        if (found == kG40Variants.end()) return false;
        wireTubes(!found->letterOrder);
        return true;
    }
    if (value.empty()) return false;
    if (name == "identity") {
        identity_ = value;
    } else if (name == "interface") {
        interface_.setVersion(value);
    } else {
        return false;
    }
    return true;
}

}  // namespace vantor::boxsim
