#pragma once

#include "measure/MeasureFlows.h"
#include "measure/ResultsLog.h"

namespace vantor {

/// The results log of a run. While `gather.logEnabled` is clear every write is nothing; a disk
/// that refuses a line is reported once and ends the log, not the run.
class RunLog {
  public:
    explicit RunLog(const MeasureFlows::Parts& parts) : parts_(parts) {}

    /// Asks for the file and opens it. False when the technician thought better of it or the file
    /// cannot be made (which was told).
    [[nodiscard]] bool openLog();
    void write(const LogLine& line);
    void writeAll(const std::vector<LogLine>& lines);
    /// Gives the finished log its name and switches logging off.
    void close();

  private:
    MeasureFlows::Parts parts_;
    ResultsLog file_;
};

}  // namespace vantor
