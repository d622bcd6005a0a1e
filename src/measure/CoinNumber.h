#pragma once

#include <string_view>

namespace vantor {

/// The code of a slug that is measured for no channel.
inline constexpr std::string_view kSlugCode = "Slug";

/// The channel number of a coin code: "R05" 5, "Coin 12" 12, "7" 7, "C2" 9 (Mars coin letter and
/// segment digit); 0 for "Slug" and the empty code. Anything else gives some number that need not
/// be a channel: whoever uses it checks.
[[nodiscard]] int coinnumber(std::string_view code);

[[nodiscard]] bool isChannel(int number);  ///< 1..24

}  // namespace vantor
