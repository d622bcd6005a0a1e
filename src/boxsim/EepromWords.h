#pragma once

#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "boxsim/Sensors.h"

namespace vantor::boxsim {

/// A word that a new mech holds.
struct FactoryWord {
    int index = 0;
    std::uint16_t value = 0;
};

/// Where the coin windows lie: channel c (from 1), parameter p (from 0) at
/// base + (c - 1) + p x stride; low byte = low limit, high byte = high limit.
struct WindowPlan {
    int base = 0;
    int stride = 0;
    int channels = 0;
    int mirror = 0;  ///< each window is there again so many words further on; 0 = it is not
};

/// The EEPROM of a mech: 16-bit words from 0.
class EepromWords {
  public:
    /// An erased EEPROM: every word FFFF.
    explicit EepromWords(int count) : words_(static_cast<std::size_t>(count), 0xFFFF) {}

    [[nodiscard]] int size() const { return static_cast<int>(words_.size()); }
    [[nodiscard]] bool has(int index) const { return index >= 0 && index < size(); }
    [[nodiscard]] std::uint16_t get(int index) const;
    void set(int index, std::uint16_t value);
    /// As the PC does it: what changes has not been read back yet.
    void write(int index, std::uint16_t value);
    [[nodiscard]] std::uint16_t read(int index);
    /// Words that have changed since the PC read them last.
    [[nodiscard]] const std::set<int>& changedSinceRead() const { return changed_; }
    void put(std::span<const FactoryWord> words);
    /// Sets the windows of all channels: the factory's coins, then empty ones.
    void putWindows(const WindowPlan& plan, std::span<const Sensor> sensors);
    [[nodiscard]] ByteWindow window(const WindowPlan& plan, int channel,
                                    std::size_t parameter) const;
    /// The windows of a channel (from 1), parameter by parameter.
    [[nodiscard]] std::vector<ByteWindow> windows(const WindowPlan& plan, int channel,
                                                  std::size_t parameters) const;
    /// The first channel (0-based) whose windows take the reading.
    [[nodiscard]] std::optional<int> channelOf(const WindowPlan& plan, std::size_t parameters,
                                               const CoinReading& reading) const;
    /// Sum of the bytes of the words from `first` to before `end`, cut to a byte.
    [[nodiscard]] std::uint8_t byteSum(int first, int end) const;

    [[nodiscard]] std::vector<MemoryCell> cells() const;
    /// False for a word that is not there or anything but one to four hexadecimal digits.
    bool setHex(int index, std::string_view digits);
    /// "5,4660" a line: index and value in decimal, CR LF.
    [[nodiscard]] std::string fileText() const;

  private:
    std::vector<std::uint16_t> words_;
    std::set<int> changed_;
};

}  // namespace vantor::boxsim
