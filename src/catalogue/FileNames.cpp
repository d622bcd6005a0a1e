#include "catalogue/FileNames.h"

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

fs::path withNewExtension(const fs::path& chosen, const char* extension) {
    const Native& name = chosen.native();
    const std::size_t stop = name.rfind('.');
    if (stop == Native::npos || stop < lastComponentStart(name)) return chosen;
    return cutAndExtend(name, stop, extension);
}

fs::path withExtension(const fs::path& chosen, const char* extension) {
    const fs::path replaced = withNewExtension(chosen, extension);
    const Native& name = chosen.native();
    const bool none = name.find('.', lastComponentStart(name)) == Native::npos;
    return none ? cutAndExtend(name, Native::npos, extension) : replaced;
}

fs::path coinsetFileName(const fs::path& chosen) {
    return withNewExtension(chosen, ".cst");
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
