#include "platform/PortMap.h"

#include <array>
#include <charconv>

#include "platform/Files.h"

namespace vantor {

namespace {

struct Range {
    int first;
    int last;
    std::string_view stem;  ///< of the device; its number counts from 0
};

// Where a Linux machine has its ports: on the board, USB adapters, and boxes that are themselves
// a USB modem device.
constexpr std::array<Range, 3> kUnixPorts = {{
    {1, 4, "/dev/ttyS"},
    {5, 12, "/dev/ttyUSB"},
    {13, 20, "/dev/ttyACM"},
}};

std::string_view withoutBlanks(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r";
    const auto from = text.find_first_not_of(kBlanks);
    if (from == std::string_view::npos) return {};
    return text.substr(from, text.find_last_not_of(kBlanks) - from + 1);
}

}  // namespace

std::optional<std::pair<int, std::string>> PortMap::parse(std::string_view text, char separator) {
    const auto at = text.find(separator);
    if (at == std::string_view::npos) return std::nullopt;
    const std::string_view number = withoutBlanks(text.substr(0, at));
    const std::string_view device = withoutBlanks(text.substr(at + 1));
    int n = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), n);
    if (error != std::errc{} || end != number.data() + number.size()) return std::nullopt;
    if (n < 1 || n > kPorts || device.empty()) return std::nullopt;
    return std::pair{n, std::string(device)};
}

void PortMap::readFile(const std::filesystem::path& file) {
    if (const auto bytes = vantor::readFile(file)) readLines(*bytes);
}

void PortMap::readLines(std::string_view text) {
    while (!text.empty()) {
        const auto end = text.find('\n');
        if (auto line = parse(text.substr(0, end), ',')) {
            fromFile_[line->first] = std::move(line->second);
        }
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
}

void PortMap::assign(int portNumber, std::string device) {
    assigned_[portNumber] = std::move(device);
}

std::string PortMap::device(int portNumber) const {
    for (const auto* table : {&assigned_, &fromFile_}) {
        if (const auto found = table->find(portNumber); found != table->end()) return found->second;
    }
    return usual(portNumber);
}

std::string PortMap::usual(int portNumber) const {
    if (portNumber < 1 || portNumber > kPorts) return {};
    if (system_ == System::windows) return "COM" + std::to_string(portNumber);
    for (const Range& range : kUnixPorts) {
        if (portNumber >= range.first && portNumber <= range.last) {
            return std::string(range.stem) + std::to_string(portNumber - range.first);
        }
    }
    return {};
}

}  // namespace vantor
