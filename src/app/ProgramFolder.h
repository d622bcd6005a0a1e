#pragma once

#include <filesystem>
#include <optional>

namespace vantor {

/// Where the program's files lie.
struct FolderPlaces {
    std::filesystem::path besideProgram;         ///< the folder of the executable
    std::filesystem::path installedData;         ///< what was installed to copy from; may not exist
    std::filesystem::path perUser;               ///< made when it is needed
    std::optional<std::filesystem::path> given;  ///< --folder
};

/// The program's folder: the given one, else the one beside the program where that can be written
/// and is not a system's folder of programs, else the per-user one. It exists afterwards if that
/// was possible; a new one gets a copy of the installed data.
[[nodiscard]] std::filesystem::path chooseProgramFolder(const FolderPlaces& places);

/// Copies the installed data into a folder that holds neither a configuration nor coinsets yet.
/// What is there is never overwritten; what cannot be copied is left out.
void seedFolder(const std::filesystem::path& folder, const std::filesystem::path& data);

/// Whether a file can be made in it.
[[nodiscard]] bool writable(const std::filesystem::path& folder);

}  // namespace vantor
