#pragma once

namespace vantor {

/// The standard normal cumulative probability at index / 10, to four decimals. Clamps the caller's
/// index to 0..29.
[[nodiscard]] float normalTable(int& index);

/// The standard normal cumulative probability of z, by linear interpolation in the table; 0 below
/// -3 and 1 above 3. Not a number gives 0.
[[nodiscard]] float normalCdf(float z);

}  // namespace vantor
