#pragma once

#include <span>
#include <string_view>

#include "boxsim/Sensors.h"

namespace vantor::boxsim {

/// A block that a new mech holds.
struct FactoryBlock {
    int number = 0;  ///< from 1
    std::string_view text;
};

/// How an NRI model differs from the others.
struct NriVariant {
    std::string_view code;
    std::string_view mode;      ///< the mode command under which it hears
    std::string_view identity;  ///< what it answers to "I"
    int channels = 6;
    int parameters = 4;
    int blocks = 0;  ///< how many it has
    std::span<const Sensor> sensors{};
    /// Each channel says which of the sensors its parameters are (block 20); else parameter p is
    /// sensor p.
    bool mapped = false;
    bool plain = false;  ///< decimal digits, no acknowledgements
    /// Outside a measurement every accepted coin gives a record.
    bool coinRecords = false;
    /// What the blocks hold beside the coin windows.
    std::span<const FactoryBlock> factory{};
};

/// The row of a catalogue model.
[[nodiscard]] const NriVariant& nriVariant(std::string_view code);

}  // namespace vantor::boxsim
