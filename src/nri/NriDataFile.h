#pragma once

#include <string>
#include <string_view>

#include "nri/NriLayout.h"

namespace vantor {

// The blocks of an NRI mech as a file: a line each, 1..28, ended by CR LF.
//
//   number,"text"

/// Always 28 lines.
[[nodiscard]] std::string nriFileText(const NriBlockTexts& blocks);

struct NriDataFile {
    NriBlockTexts blocks;  ///< blocks that the file lacks are empty
    int skipped = 0;       ///< lines that are no block
};
[[nodiscard]] NriDataFile parseNriFile(std::string_view text);

/// "G10-4000-5temp.txt": the dump of a model's last read.
[[nodiscard]] std::string nriDumpName(std::string_view mechType);

}  // namespace vantor
