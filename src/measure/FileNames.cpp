#include "measure/FileNames.h"

#include "catalogue/Text.h"

namespace vantor {

namespace {

namespace fs = std::filesystem;
using Native = fs::path::string_type;

std::size_t lastComponentStart(const Native& name) {
    std::size_t start = name.size();
    while (start > 0 && name[start - 1] != '/' && name[start - 1] != '\\') --start;
    return start;
}

fs::path cutAndExtend(Native name, std::size_t cut, const char* extension) {
    if (cut != Native::npos) name.resize(cut);
    return fs::path(std::move(name)) += extension;
}

}  // namespace

fs::path coinsetFileName(const fs::path& chosen) {
    const Native& name = chosen.native();
    const std::size_t stop = name.rfind('.');
    if (stop == Native::npos || stop < lastComponentStart(name)) return chosen;
    return cutAndExtend(name, stop, ".cst");
}

fs::path logFileName(const fs::path& chosen) {
    const Native& name = chosen.native();
    return cutAndExtend(name, name.find('.', lastComponentStart(name)), ".csv");
}

std::string shownFileName(const fs::path& path) {
    const std::string whole = shownPath(path);
    return whole.substr(whole.find_last_of("/\\") + 1);
}

std::string shownPath(const fs::path& path) {
    const std::u8string text = path.u8string();
    return fromUtf8({reinterpret_cast<const char*>(text.data()), text.size()});
}

}  // namespace vantor
