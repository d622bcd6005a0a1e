#include "boxsim/MechVoice.h"

#include <memory>

#include "boxsim/FaultInjector.h"
#include "boxsim/Wire.h"

namespace vantor::boxsim {

void MechVoice::say(std::string_view bytes, Micros ownTime) {
    line_.reply({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, ownTime);
}

void MechVoice::echo(std::uint8_t byte) {
    line_.reply({&byte, 1}, Micros{0});
}

void MechVoice::answer(std::string_view bytes, Micros ownTime) {
    FaultInjector& faults = line_.faults();
    if (faults.silencesMech()) return;
    std::string said(bytes);
    if (const auto left = faults.cutsAnswer(); left && *left < said.size()) {
        const bool line = said.back() == static_cast<char>(kCarriageReturn);
        said.resize(*left);
        if (line) said += static_cast<char>(kCarriageReturn);
    }
    const auto lateness = faults.delaysAnswer();
    if (!lateness) {
        say(said, ownTime);
        return;
    }
    // Not on the line, where it would hold up what the box itself says meanwhile.
    const auto id = std::make_shared<EventLoop::TimerId>(0);
    *id = line_.loop().callAfter(*lateness, [this, id, said, ownTime] {
        late_.erase(*id);
        say(said, ownTime);
    });
    late_.insert(*id);
}

void MechVoice::hush() {
    for (const EventLoop::TimerId timer : late_) line_.loop().cancel(timer);
    late_.clear();
}

}  // namespace vantor::boxsim
