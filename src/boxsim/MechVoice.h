#pragma once

#include <set>
#include <string>
#include <string_view>

#include "boxsim/SimulatedMech.h"

namespace vantor::boxsim {

/// How a mech speaks to the PC, with the faults of its answers: one may not come, come late or
/// come cut short.
class MechVoice {
  public:
    explicit MechVoice(MechLine& line) : line_(line) {}
    ~MechVoice() { hush(); }
    MechVoice(const MechVoice&) = delete;
    MechVoice& operator=(const MechVoice&) = delete;

    /// An answer to a request, after the mech's own time; one call is one answer.
    void answer(std::string_view bytes, Micros ownTime);
    /// A character handed back as it came; no fault of answers concerns it.
    void echo(std::uint8_t byte);
    /// Late answers that are still due will not come (serial mode was left).
    void hush();

  private:
    void say(std::string_view bytes, Micros ownTime);

    MechLine& line_;
    std::set<EventLoop::TimerId> late_;
};

}  // namespace vantor::boxsim
