#include "app/Configuration.h"

#include <algorithm>
#include <vector>

#include "catalogue/MessageTable.h"
#include "catalogue/Text.h"
#include "platform/Files.h"
#include "platform/PortMap.h"

namespace vantor {

namespace {

constexpr unsigned char kFirstPrintable = 32;
constexpr unsigned char kDelete = 127;

std::string harmless(std::string_view text) {
    std::string kept;
    std::copy_if(text.begin(), text.end(), std::back_inserter(kept), [](char c) {
        const auto code = static_cast<unsigned char>(c);
        return code >= kFirstPrintable && code != kDelete && c != '"';
    });
    return kept;
}

bool known(std::string_view language) {
    return std::any_of(kLanguages.begin(), kLanguages.end(),
                       [&](const Language& row) { return row.name == language; });
}

}  // namespace

Configuration parseConfiguration(std::string_view bytes) {
    Configuration configuration;
    const std::string text = fromFileBytes(bytes);
    const auto lines = splitLines(text);
    if (lines.empty()) return configuration;
    const std::vector<std::string> fields = quotedFields(lines.front());
    const auto field = [&](std::size_t index) -> std::string_view {
        return index < fields.size() ? std::string_view(fields[index]) : std::string_view{};
    };
    const int port = lenientInteger(field(0));
    configuration.portNumber = port >= 1 && port <= kPorts ? port : 1;
    if (known(field(1))) configuration.language = field(1);
    if (fields.size() > 2) configuration.reserved1 = harmless(field(2));
    if (fields.size() > 3) configuration.reserved2 = harmless(field(3));
    return configuration;
}

std::optional<Configuration> readConfiguration(const std::filesystem::path& folder) {
    const auto bytes = readFile(folder / Configuration::kFileName);
    if (!bytes) return std::nullopt;
    return parseConfiguration(*bytes);
}

std::string configurationLine(const Configuration& configuration, std::string_view replyText) {
    const auto quoted = [](std::string_view text) { return '"' + std::string(text) + '"'; };
    return quoted(spacedNumber(configuration.portNumber)) + ',' + quoted(configuration.language) +
           ',' + quoted(configuration.reserved1) + ',' + quoted(configuration.reserved2) + ',' +
           quoted(harmless(replyText)) + std::string(kCrLf);
}

void writeConfiguration(const std::filesystem::path& folder, const Configuration& configuration,
                        std::string_view replyText) {
    writeFileWhole(folder / Configuration::kFileName, configurationLine(configuration, replyText));
}

}  // namespace vantor
