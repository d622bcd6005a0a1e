#include "measure/LimitSource.h"

#include <algorithm>
#include <array>

#include "catalogue/Text.h"

namespace vantor {

namespace {

constexpr std::string_view kReferenceHead = "Ref ";

struct SourceRow {
    LimitSource source;
    std::string_view code;
    int message;
};

constexpr std::array kSources = {
    SourceRow{LimitSource::threeSd, "3", 151}, SourceRow{LimitSource::twoSd, "2", 152},
    SourceRow{LimitSource::mean, "M", 153},    SourceRow{LimitSource::low, "L", 154},
    SourceRow{LimitSource::high, "H", 155},    SourceRow{LimitSource::fixed, "F", 156},
};

}  // namespace

LimitSource limitSourceOf(std::string_view code) {
    const auto row = std::ranges::find(kSources, code, &SourceRow::code);
    return row == kSources.end() ? LimitSource::unknown : row->source;
}

LimitOrigin referenceOrigin(std::string_view code) {
    const std::string label = std::string(kReferenceHead) + std::string(code);
    return {LimitSource::reference,
            lenientInteger(std::string_view(label).substr(label.size() - 2)), std::string(code)};
}

std::string limitSourceText(const MessageTable& messages, const LimitOrigin& origin) {
    if (origin.source == LimitSource::reference) {
        return std::string(kReferenceHead) + origin.referenceCode;
    }
    const auto row = std::ranges::find(kSources, origin.source, &SourceRow::source);
    return row == kSources.end() ? "" : messages.msgText(row->message);
}

std::string limitSourceText(const MessageTable& messages, std::string_view code) {
    return limitSourceText(messages, LimitOrigin{limitSourceOf(code), 0, {}});
}

}  // namespace vantor
