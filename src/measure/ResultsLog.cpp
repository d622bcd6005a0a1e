#include "measure/ResultsLog.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <system_error>

#include "catalogue/FileNames.h"
#include "catalogue/Text.h"

namespace vantor {

namespace {

namespace fs = std::filesystem;

struct ItemText {
    std::string operator()(const std::string& text) const { return '"' + text + '"'; }
    std::string operator()(int number) const { return std::to_string(number); }
    std::string operator()(float number) const {
        if (!std::isfinite(number)) return "0";
        std::array<char, 64> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                       std::chars_format::fixed)
                             .ptr;
        return {digits.data(), end};
    }
};

[[noreturn]] void refuse(const fs::path& file) {
    const int reason = errno != 0 ? errno : EIO;
    throw std::system_error(reason, std::generic_category(), shownFileName(file));
}

LogLine statisticsLine(const char* head, const Ranged<float, 0, kMaxParameters>& values,
                       int paramCount) {
    LogLine line{head};
    for (int p = 1; p <= paramCount; ++p) {
        line.emplace_back(values[p]);
        line.insert(line.end(), 3, LogItem{""});
    }
    line.emplace_back("");
    return line;
}

}  // namespace

std::string formatLogLine(const LogLine& line) {
    std::string text;
    for (const LogItem& item : line) {
        if (!text.empty()) text += ',';
        text += std::visit(ItemText{}, item);
    }
    return text;
}

LogLine emptyLogLine() {
    return {""};
}

std::vector<LogLine> itemHeaderLines(const std::string& code, const std::string& description,
                                     const MechTypeInfo& info) {
    LogLine names{""};
    for (int p = 1; p <= info.paramCount; ++p) {
        names.emplace_back(info.paramNames.at(static_cast<std::size_t>(p - 1)));
        names.emplace_back("");
    }
    names.emplace_back("");
    return {{description, code}, names};
}

LogLine readingLine(const Ranged<int, 0, 10>& latestReading, int paramCount) {
    LogLine line{""};
    for (int p = 1; p <= paramCount; ++p) {
        line.emplace_back(latestReading[p - 1]);
        line.emplace_back("");
    }
    line.emplace_back("");
    return line;
}

std::vector<LogLine> logLimits(const MeasurementSession& item, int paramCount) {
    LogLine limits{"Limits : "};
    for (int i = 1; i <= 2 * paramCount; ++i) {
        limits.emplace_back(item.limits[i]);
        limits.emplace_back("");
    }
    limits.emplace_back("");
    return {statisticsLine("Mean", item.mean, paramCount),
            statisticsLine("SD Lower", item.sdLower, paramCount),
            statisticsLine("SD Upper", item.sdUpper, paramCount), limits, emptyLogLine()};
}

LogLine idlesLine(const Ranged<int, 0, 3>& idleReading) {
    return {"Idles", idleReading[0], idleReading[1], idleReading[2]};
}

ResultsLog::~ResultsLog() {
    try {
        close();
    } catch (const std::exception&) {
        // The lines are still in the temporary file, and nobody is left to be told.
    }
}

fs::path ResultsLog::temporaryName(const fs::path& file) {
    fs::path name = file;
    name += ".tmp";
    return name;
}

void ResultsLog::open(const fs::path& file) {
    close();
    errno = 0;
    out_.clear();
    out_.open(temporaryName(file), std::ios::binary | std::ios::trunc);
    if (!out_) refuse(file);
    file_ = file;
}

void ResultsLog::write(const LogLine& line) {
    if (!isOpen()) return;
    errno = 0;
    out_ << formatLogLine(line) << kCrLf << std::flush;
    if (out_) return;
    const int reason = errno;
    out_.close();
    errno = reason;
    refuse(file_);
}

void ResultsLog::close() {
    if (!isOpen()) return;
    errno = 0;
    out_.close();
    if (!out_) refuse(file_);
    std::error_code error;
    fs::rename(temporaryName(file_), file_, error);
    if (error) throw std::system_error(error, shownFileName(file_));
}

}  // namespace vantor
