#include "boxsim/Attention.h"

#include <utility>

#include "boxsim/Wire.h"

namespace vantor::boxsim {

namespace {

constexpr int kEscapes = 20;
/// Anything shorter is noise on the line.
constexpr Micros kShortestBreak{20'000};

}  // namespace

void AttentionDetector::breakEnded(Micros length) {
    if (length < kShortestBreak) return;
    escapes_ = 0;
    pending_ = length >= kLongBreak ? Attention::leave : Attention::wake;
}

Attention AttentionDetector::take(std::uint8_t byte) {
    if (byte != kEscape) {
        escapes_ = 0;
        pending_ = Attention::none;
        return Attention::none;
    }
    if (++escapes_ != kEscapes) return Attention::none;
    const Attention got = std::exchange(pending_, Attention::none);
    return got == Attention::none && escapesAlone_ ? Attention::leave : got;
}

}  // namespace vantor::boxsim
