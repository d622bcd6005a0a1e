#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vantor::test {

// An old Mars PROM as the mech knows it, written and read by the tests' own rules, so that a
// mistake in the program's shows.

/// The addresses of an ME181's coin values, channels 1 to 12: one bit of the address each.
inline constexpr int kValueCells[] = {64, 32, 16, 8, 4, 2, 320, 288, 272, 264, 260, 258};

/// A limit of the old PROM; `column` 1 to 6.
inline int oldLimit(int channel, int column) {
    return 150 * channel + 11 * column;
}
inline int oldCoinValue(int channel) {
    return 100 + channel;
}

/// Where the first cell of a limit stands; channels from 1.
inline std::size_t limitCell(bool me181, int channel, int column) {
    const int segment = (channel - 1) / 6;
    const int coin = (channel - 1) % 6;
    const int base = me181 ? 128 + 256 * segment : 128 * segment;
    const int at = base + 1 + 36 * ((column - 1) / 2) + 6 * coin + 3 * ((column - 1) % 2);
    return static_cast<std::size_t>(at);
}

/// `cellCount` 256 or 512.
inline std::vector<std::uint8_t> oldProm(bool me181, int cellCount) {
    std::vector<std::uint8_t> cells(static_cast<std::size_t>(cellCount), 0);
    const int channels = me181 ? 12 : cellCount / 128 * 6;
    for (int channel = 1; channel <= channels; ++channel) {
        for (int column = 1; column <= 6; ++column) {
            int value = oldLimit(channel, column);
            for (std::size_t digit = 0; digit < 3; ++digit, value /= 16) {
                cells.at(limitCell(me181, channel, column) + digit) =
                    static_cast<std::uint8_t>(value % 16);
            }
        }
    }
    for (int channel = 1; me181 && channel <= 12; ++channel) {
        const auto at = static_cast<std::size_t>(kValueCells[channel - 1]);
        cells.at(at) = static_cast<std::uint8_t>(oldCoinValue(channel) % 16);
        cells.at(at + 1) = static_cast<std::uint8_t>(oldCoinValue(channel) / 16);
    }
    return cells;
}

}  // namespace vantor::test
