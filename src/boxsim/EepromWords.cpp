#include "boxsim/EepromWords.h"

#include "boxsim/Wire.h"

namespace vantor::boxsim {

std::uint16_t EepromWords::get(int index) const {
    return words_.at(static_cast<std::size_t>(index));
}

void EepromWords::set(int index, std::uint16_t value) {
    words_.at(static_cast<std::size_t>(index)) = value;
}

void EepromWords::write(int index, std::uint16_t value) {
    if (get(index) != value) changed_.insert(index);
    set(index, value);
}

std::uint16_t EepromWords::read(int index) {
    changed_.erase(index);
    return get(index);
}

void EepromWords::put(std::span<const FactoryWord> words) {
    for (const FactoryWord& word : words) set(word.index, word.value);
}

void EepromWords::putWindows(const WindowPlan& plan, std::span<const Sensor> sensors) {
    for (int channel = 1; channel <= plan.channels; ++channel) {
        const auto position = static_cast<std::size_t>(channel - 1);
        std::vector<Quantity> readings;
        if (position < factoryCoins().size()) {
            readings = byteReadings(sensors, *findCoin(factoryCoins()[position]));
        }
        for (std::size_t p = 0; p < sensors.size(); ++p) {
            const ByteWindow window =
                p < readings.size() ? windowAround(readings[p]) : ByteWindow{};
            const int index = plan.base + channel - 1 + static_cast<int>(p) * plan.stride;
            const auto word = static_cast<std::uint16_t>(window.high * 256 + window.low);
            set(index, word);
            if (plan.mirror != 0) set(index + plan.mirror, word);
        }
    }
}

ByteWindow EepromWords::window(const WindowPlan& plan, int channel, std::size_t parameter) const {
    const int word = get(plan.base + channel - 1 + static_cast<int>(parameter) * plan.stride);
    return {word & 0xFF, word >> 8};
}

std::vector<ByteWindow> EepromWords::windows(const WindowPlan& plan, int channel,
                                             std::size_t parameters) const {
    std::vector<ByteWindow> windows;
    for (std::size_t p = 0; p < parameters; ++p) windows.push_back(window(plan, channel, p));
    return windows;
}

std::optional<int> EepromWords::channelOf(const WindowPlan& plan, std::size_t parameters,
                                          const CoinReading& reading) const {
    for (int channel = 1; channel <= plan.channels; ++channel) {
        if (takesCoin(windows(plan, channel, parameters), reading)) return channel - 1;
    }
    return std::nullopt;
}

std::uint8_t EepromWords::byteSum(int first, int end) const {
    int sum = 0;
    for (int i = first; i < end; ++i) sum += (get(i) >> 8) + (get(i) & 0xFF);
    return static_cast<std::uint8_t>(sum);
}

std::vector<MemoryCell> EepromWords::cells() const {
    std::vector<MemoryCell> cells;
    for (int i = 0; i < size(); ++i) {
        const int word = get(i);
        cells.push_back(
            {i, {hexDigit(word >> 12), hexDigit(word >> 8), hexDigit(word >> 4), hexDigit(word)}});
    }
    return cells;
}

bool EepromWords::setHex(int index, std::string_view digits) {
    const auto value = hexValue(digits);
    if (!has(index) || !value || digits.size() > 4) return false;
    set(index, static_cast<std::uint16_t>(*value));
    return true;
}

std::string EepromWords::fileText() const {
    std::string text;
    for (int i = 0; i < size(); ++i) {
        text += std::to_string(i) + ',' + std::to_string(get(i)) + "\r\n";
    }
    return text;
}

}  // namespace vantor::boxsim
