#pragma once

#include <string>
#include <string_view>

#include "catalogue/SessionState.h"

namespace vantor {

// An EEPROM data file: one line per word, its index and its value in decimal with a comma between
// them and CR LF behind, for example "5,4660".

/// Words 0 .. words - 1 of an image as a file's text.
[[nodiscard]] std::string eepromFileText(const MechImage& image, int words);

struct EepromFile {
    MechImage image{};  ///< words that the file lacks are 0; values are cut to 16 bits
    int given = 0;      ///< how many of the memory's words the file has a line for
    int skipped = 0;    ///< lines that are no such line; blank lines are none and do not count
};

/// Reads a file's text for a memory of `words` words. The last line of an index counts.
[[nodiscard]] EepromFile parseEepromFile(std::string_view text, int words);

}  // namespace vantor
