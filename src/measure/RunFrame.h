#pragma once

#include <string>

#include "measure/MeasureSetup.h"

namespace vantor {

/// What a coinset run and a wizard have in common: how they begin and how they end.
class RunFrame {
  public:
    RunFrame(const MeasureFlows::Parts& parts, RunLog& log, Readings& readings, MeasureSetup& setup)
        : parts_(parts), log_(log), readings_(readings), setup_(setup) {}

    /// Clears the flags of the run before and the memory images; nothing measured is lost yet.
    void clearForRun();
    /// Clears everything that belongs to a run: items, limits, what a coinset says, the old
    /// memory. The title, reference code and version stay: a wizard sets its own before.
    void beginRun(bool wizard);
    /// The run owns the window from here on: Back becomes Cancel Operation, and every way out is
    /// `endRun`.
    void takeWindow(const std::string& caption, int cancelMessage);

    /// Opens the log where the technician wants one; false when the run is not to go on.
    [[nodiscard]] bool openLog();

    /// Asks the box for the sensors' idle values, into `idleReading`; all 0 without an answer.
    void askIdles();

    /// After the last item: files closed, the item's fields emptied.
    void itemsDone();
    /// Every exit of a run, however it came about, goes through here: serial mode left, "W", files
    /// closed, controls enabled, flags cleared.
    void endRun();

    /// Puts the files and flags right when the program ends in the middle of a run; the box is
    /// not talked to any more.
    class Guard {
      public:
        explicit Guard(RunFrame& frame) : frame_(frame) {}
        ~Guard();
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;

      private:
        RunFrame& frame_;
    };

  private:
    void clearFlags();
    void leaveSerialMode();

    MeasureFlows::Parts parts_;
    RunLog& log_;
    Readings& readings_;
    MeasureSetup& setup_;
};

}  // namespace vantor
