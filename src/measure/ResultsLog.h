#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <variant>
#include <vector>

#include "catalogue/SessionState.h"

namespace vantor {

/// One item of a log line: quoted text, a decimal integer, or a single in its shortest decimal.
using LogItem = std::variant<std::string, int, float>;
using LogLine = std::vector<LogItem>;

/// The line as it is written, without its end.
[[nodiscard]] std::string formatLogLine(const LogLine& line);

[[nodiscard]] LogLine emptyLogLine();
/// Description and code, then the names of the parameters.
[[nodiscard]] std::vector<LogLine> itemHeaderLines(const std::string& code,
                                                   const std::string& description,
                                                   const MechTypeInfo& info);
[[nodiscard]] LogLine readingLine(const Ranged<int, 0, 10>& latestReading, int paramCount);
/// Means, spreads and limits of an item, and the line that ends it.
[[nodiscard]] std::vector<LogLine> logLimits(const MeasurementSession& item, int paramCount);
[[nodiscard]] LogLine idlesLine(const Ranged<int, 0, 3>& idleReading);

/// The results log. It grows line by line in NAME.csv.tmp beside its place and becomes NAME.csv
/// when it is closed, so that an older log stays whole until then, and a run that breaks off
/// leaves all its lines.
class ResultsLog {
  public:
    ResultsLog() = default;
    /// Closes; a failure is silent here.
    ~ResultsLog();
    ResultsLog(const ResultsLog&) = delete;
    ResultsLog& operator=(const ResultsLog&) = delete;

    /// Throws std::system_error when the file cannot be made.
    void open(const std::filesystem::path& file);
    [[nodiscard]] bool isOpen() const { return out_.is_open(); }
    /// Writes through to the disk; nothing happens while the log is closed. Throws
    /// std::system_error when the disk refuses; the log is closed then and what it holds stays in
    /// the temporary file.
    void write(const LogLine& line);
    /// Throws std::system_error when the finished file cannot take its name.
    void close();

    /// Where a log is written before it has its name.
    [[nodiscard]] static std::filesystem::path temporaryName(const std::filesystem::path& file);

  private:
    std::filesystem::path file_;
    std::ofstream out_;
};

}  // namespace vantor
