#pragma once

#include <array>
#include <span>
#include <string_view>

namespace vantor {

/// How the words of a mech are reached through the box.
enum class CcSession {
    i2c,       ///< short binary packets
    sentinel,  ///< echoed text commands to the mech's own serial EEPROM
};

/// What keeps an image consistent.
enum class CcCheck {
    byteInWord127,   ///< high byte of word 127, adjusted by what changed
    sentinelWord63,  ///< the whole last word, from the sum of all others
};

/// Which routing words a model has.
enum class CcRouting { none, c435, c450, sentinel };

/// Where the acceptance windows stand: parameter p of channel c (both 1-based) is word
/// base + (c - 1) + (p - 1) x stride, and again `mirror` words further on unless that is 0.
struct CcLimitBlock {
    int base = 0;
    int stride = 0;
    int mirror = 0;
};

/// What sets one CC model apart from the others; the counts of words, channels and parameters
/// stand in the catalogue.
struct CcModel {
    std::string_view code;
    CcSession session = CcSession::i2c;
    /// Sent one by one, in command mode, before the serial mode; empty = nothing.
    std::array<std::string_view, 2> setUp{};
    std::string_view modeCommand = "$05";  ///< the box's serial mode
    CcLimitBlock limits{};
    CcCheck check = CcCheck::byteInWord127;
    int verifiedWords = 0;   ///< the verification compares words 0 .. verifiedWords - 1
    bool outputMap = false;  ///< a coinset may map the channels to outputs
    CcRouting routing = CcRouting::none;
    std::string_view coinRequest{};  ///< asks for the next coin; empty: the Sentinel's command
    /// Parameter (0-based) that a channel may leave switched off; -1 = none.
    int optionalParameter = -1;
};

[[nodiscard]] std::span<const CcModel> ccModels();

/// The row of a code, matched exactly; throws std::out_of_range for an unknown one.
[[nodiscard]] const CcModel& ccModel(std::string_view code);

}  // namespace vantor
