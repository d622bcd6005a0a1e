#pragma once

#include <cstdint>

namespace vantor::boxsim {

/// What goes wrong, where, how often and after how many.
struct Fault {
    enum class Kind {
        dropByte,       ///< a byte is lost
        repeatByte,     ///< a byte comes twice
        flipBit,        ///< one bit of a byte is inverted
        insertByte,     ///< a stray byte comes before a byte
        delayByte,      ///< a byte (and what follows) comes `value` ms late
        stall,          ///< nothing more comes, for ever
        cutLine,        ///< the rest of a line, its end included, is lost
        previousReply,  ///< the reply to the command before is sent instead
        lostAck,        ///< a "Z" acknowledgement is not sent
        stuckCell,      ///< PROM cell, or word or block of the mech, `value` keeps its content
        silentBox,      ///< no command is answered
        unplug,         ///< the port reports an error
        batteryLow,     ///< a battery warning comes in between
        mechSilent,     ///< the mech does not answer
        mechLate,       ///< the mech answers `value` ms late
        mechCut,        ///< of the mech's answer come `value` characters and its line end
        mechRefuses,    ///< the mech refuses what it is asked, and does not do it
        wrongSum,       ///< the sum of the mech's word or coin frame is wrong
        noSession,      ///< the mech does not answer the opening of a session, nor anything in it
        longReply,      ///< an answer comes with `value` characters too many before its end
        lyingWrite,     ///< a write is acknowledged and not done
        powerLoss,      ///< the mech loses power amid a write: half is done, `value` ms it is dead
        breakLost,      ///< the box does not see a break
    };
    enum class Where { fromBox, fromPc };

    Kind kind = Kind::dropByte;
    Where where = Where::fromBox;  ///< for the byte faults
    int after = 0;  ///< bytes (or lines, answers, sums: what the kind counts) let through first
    int times = 1;  ///< how often; -1 = always
    int value = 0;  ///< ms, cell or bit, as the kind says
};

}  // namespace vantor::boxsim
