#include "platform/Files.h"

#include <cerrno>
#include <fstream>
#include <system_error>

namespace vantor {

namespace fs = std::filesystem;

std::optional<std::string> readFile(const fs::path& path) {
    std::error_code ignored;
    if (!fs::is_regular_file(path, ignored)) return std::nullopt;
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::nullopt;
    std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (in.bad()) return std::nullopt;
    return bytes;
}

void writeFileWhole(const fs::path& path, std::string_view bytes) {
    fs::path beside = path;
    beside += ".tmp";
    errno = 0;
    std::ofstream out(beside, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    std::error_code error;
    if (!out) {
        error.assign(errno != 0 ? errno : EIO, std::generic_category());
    } else {
        fs::rename(beside, path, error);
    }
    if (!error) return;
    std::error_code ignored;
    fs::remove(beside, ignored);
    throw std::system_error(error, path.filename().string());
}

}  // namespace vantor
