#pragma once

#include <bitset>
#include <string_view>

#include "link/ProgrammerLink.h"
#include "link/ProgressDisplay.h"
#include "mars/MarsImage.h"

namespace vantor {

class MarsBracket;

/// The PROM in the box's socket: reading, programming and verifying it, with the prompts that go
/// with the two kinds of PROM.
class MarsProm {
  public:
    MarsProm(SessionState& state, ProgrammerLink& link, Prompts& prompts, ErrorReporter& errors,
             ProgressDisplay& progress)
        : state_(state), link_(link), prompts_(prompts), errors_(errors), progress_(progress) {}

    /// Reads the PROM, 1K or 2K as `prom.promSizeCode` says, into the old image. True when every
    /// cell came; otherwise the technician was told and the old image keeps what came.
    bool readMemory();
    /// One data line of the box: "R", three hexadecimal digits of the address, then 16 digits, each
    /// after a separator. A damaged line is reported and leaves the old image alone.
    void parsePromLine(std::string_view line);

    /// Programs a range from the new image. Acknowledgements are waited for but not judged: only
    /// the verification tells.
    void writeMarsPromRange(CellRange range);
    /// Reads the PROM again; true, and told so, when every selected segment was read and equals
    /// the new image.
    bool verifyMarsProm();
    /// The whole way from the duplicated segment to the verified PROM; true only for that.
    bool programAndVerify();

    /// Tells that the PROM could not be read.
    void tellReadFailure();

  private:
    void storePromLine(std::string_view line);
    void waitForBox(int ms, const bool& flag);
    void duplicateFirstSegment();
    bool offerBipolarProm(MarsBracket& bracket);
    bool offerE1();
    bool acceptsUsedProm();
    void programSegments();
    bool matchesNewImage() const;
    [[nodiscard]] const MarsLayout& layout() const;
    [[nodiscard]] int highestSegment() const;
    [[nodiscard]] bool bipolar() const { return state_.prom.target == TargetProm::bipolar; }

    SessionState& state_;
    ProgrammerLink& link_;
    Prompts& prompts_;
    ErrorReporter& errors_;
    ProgressDisplay& progress_;
    std::bitset<kMarsPromCells> cellsRead_;  ///< since the read command was sent
};

/// Switches the validator away ("J") for a flow, and back ("W") at the flow's end, however it ends;
/// a flow that did not get so far sends neither.
class MarsBracket {
  public:
    explicit MarsBracket(ProgrammerLink& link) : link_(link) {}
    ~MarsBracket();
    MarsBracket(const MarsBracket&) = delete;
    MarsBracket& operator=(const MarsBracket&) = delete;

    void sendJ();

  private:
    ProgrammerLink& link_;
    bool open_ = false;
};

}  // namespace vantor
