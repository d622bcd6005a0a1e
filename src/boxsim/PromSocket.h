#pragma once

#include <cstdint>
#include <set>
#include <span>
#include <vector>

#include "boxsim/SimulatedBox.h"

namespace vantor::boxsim {

/// The PROM socket and what is in it. Cells are nibbles, the address is the index.
class PromSocket {
  public:
    static constexpr int kSmall = 256;  ///< words of a 1K PROM
    static constexpr int kLarge = 512;  ///< words of a 2K PROM

    void insert(PromKind kind, int words, std::span<const std::uint8_t> contents);
    [[nodiscard]] PromKind kind() const { return kind_; }
    [[nodiscard]] bool empty() const { return kind_ == PromKind::none; }
    [[nodiscard]] std::span<const std::uint8_t> cells() const { return cells_; }
    void setSwitch(int number, bool on);
    [[nodiscard]] bool switchOn(int number) const;

    /// What the data lines show; 15 where nothing drives them (an E+1 device with switch 2 on, an
    /// address beyond a small PROM).
    [[nodiscard]] int read(int address) const;
    /// One programming pulse: a bipolar cell gains the bits, an E+1 device takes the nibble when
    /// both switches are on. Addresses beyond the PROM are ignored.
    void program(int address, int nibble);
    /// Cells were read out to the PC.
    void noteRead(int first, int count);
    /// Addresses whose content has changed since they were read out last.
    [[nodiscard]] const std::set<int>& changedSinceRead() const { return changed_; }
    /// How long one cell takes.
    [[nodiscard]] Micros cellTime() const;

  private:
    PromKind kind_ = PromKind::none;
    std::vector<std::uint8_t> cells_;
    std::set<int> changed_;
    // The switches are the bench's: they keep their place when another device is put in.
    bool switch1_ = true;
    bool switch2_ = false;
};

}  // namespace vantor::boxsim
