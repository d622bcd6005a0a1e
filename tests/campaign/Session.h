#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Plan.h"

namespace vantor::campaign {

/// How a session went.
struct Outcome {
    int struck = 0;                 ///< how often the fault struck
    int pressed = 0;                ///< presses that found something to press
    bool done = false;              ///< the program said that the disturbed job was done
    bool ended = false;             ///< the user ended the program in it
    int verdicts = 0;               ///< "OK" verdicts that were compared with the mech
    int usedPercent = 0;            ///< of the computed worst case
    std::uint64_t fingerprint = 0;  ///< of everything on the line and in the boxes
    std::vector<std::string> violations;
    std::vector<std::string> story;  ///< for people
};

/// One session in a world of its own: the disturbed job, what must hold after it, and a clean run
/// of the same job.
[[nodiscard]] Outcome runSession(const Plan& plan);

}  // namespace vantor::campaign
