#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vantor::boxsim {

/// PROM cells as text, 16 to a line, address and digits in hexadecimal:
///
///     000 F12D43C32100...
///     010 ...
[[nodiscard]] std::string promText(std::span<const std::uint8_t> cells);

/// Reads that form back; empty lines are skipped. Nothing when a line is out of order or not of
/// this form, or when there is none.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> promCellsOf(std::string_view text);

}  // namespace vantor::boxsim
