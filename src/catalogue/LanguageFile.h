#pragma once

#include <filesystem>

#include "catalogue/ErrorReporter.h"
#include "catalogue/MessageTable.h"

namespace vantor {

/// Reads the file of the chosen language from `folder` into the table. English reads nothing. A
/// missing file is told in a box and leaves the table as it was; a line that cannot be stored is
/// reported and reading goes on.
void loadLanguage(MessageTable& messages, const std::filesystem::path& folder, Prompts& prompts,
                  ErrorReporter& errors);

}  // namespace vantor
