#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "catalogue/SessionState.h"
#include "platform/Prompts.h"

namespace vantor {

/// Message numbers of what is said about the data files of a memory.
struct MemoryFileTexts {
    int saveTitle = 0;
    int overwrite = 0;
    int warning = 0;  ///< title
    int noSuchFile = 0;
    int error = 0;  ///< title
};

/// The dialogs about data files of a memory: ".txt", in the folder of the coinsets.
class MemoryFiles {
  public:
    MemoryFiles(const SessionState& state, Prompts& prompts, const MemoryFileTexts& texts)
        : state_(state), prompts_(prompts), texts_(texts) {}

    /// Asks for a name and writes `text` there; an existing file only after asking. Throws when
    /// the file cannot be written.
    void save(const std::function<std::string()>& text) const;

    struct Opened {
        std::filesystem::path path;
        std::string text;  ///< Windows-1252
    };
    /// Asks for a file and reads it; nothing when none was chosen, or none was there and told so.
    [[nodiscard]] std::optional<Opened> open(const std::string& title) const;
    /// Tells of lines that could not be read, if there are any; `what` says what they are not.
    void tellSkipped(const std::filesystem::path& path, int lines, std::string_view what) const;

  private:
    [[nodiscard]] std::filesystem::path folder() const;

    const SessionState& state_;
    Prompts& prompts_;
    const MemoryFileTexts& texts_;
};

}  // namespace vantor
