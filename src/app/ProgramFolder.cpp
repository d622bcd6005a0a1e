#include "app/ProgramFolder.h"

#include <fstream>
#include <system_error>

#include "app/Configuration.h"

namespace vantor {

namespace fs = std::filesystem;

namespace {

// Every program of the machine lies there; our files do not belong among them.
bool systemFolder(const FolderPlaces& places) {
    std::error_code ignored;
    return places.besideProgram.filename() == "bin" &&
           fs::is_directory(places.installedData, ignored);
}

fs::path choose(const FolderPlaces& places) {
    if (places.given) return *places.given;
    if (!systemFolder(places) && writable(places.besideProgram)) return places.besideProgram;
    return places.perUser;
}

}  // namespace

bool writable(const fs::path& folder) {
    const fs::path probe = folder / ".vantor-write-test";
    const bool made = std::ofstream(probe).is_open();
    std::error_code ignored;
    if (made) fs::remove(probe, ignored);
    return made;
}

void seedFolder(const fs::path& folder, const fs::path& data) {
    std::error_code ignored;
    if (fs::exists(folder / Configuration::kFileName, ignored) ||
        fs::exists(folder / "CoinSets", ignored) || !fs::is_directory(data, ignored)) {
        return;
    }
    for (const auto& entry : fs::directory_iterator(data, ignored)) {
        // A source tree keeps its tools beside the data that they make.
        if (entry.path().extension() == ".py") continue;
        fs::copy(entry.path(), folder / entry.path().filename(),
                 fs::copy_options::recursive | fs::copy_options::skip_existing, ignored);
    }
}

fs::path chooseProgramFolder(const FolderPlaces& places) {
    const fs::path folder = choose(places);
    std::error_code ignored;
    fs::create_directories(folder, ignored);
    seedFolder(folder, places.installedData);
    return fs::absolute(folder, ignored);
}

}  // namespace vantor
