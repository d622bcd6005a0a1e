#pragma once

#include "boxsim/NriMech.h"

namespace vantor::boxsim {

/// G13-6000, G18-3000, G40-0000 and G10-4000/5: blocks in hexadecimal, every step acknowledged.
///
///     I                  identity, CR
///     X  06  nn          block nn (from 00), CR
///     Z  06  nn          then pairs of digits into block nn, 06 after each, "?" = refused
///     T                  after the next coin: a pair per sensor, CR
///
/// A letter that is no hexadecimal digit begins a new command; what belongs to none is skipped.
class NriHandshakeMech final : public NriMech {
  public:
    NriHandshakeMech(const MechModel& model, MechLine& line);
    [[nodiscard]] std::vector<ByteWindow> windows(int channel) const override;

  protected:
    void heard(std::uint8_t byte) override;
    void forget() override;
    [[nodiscard]] std::string readingText(const CoinReading& reading) const override;
    [[nodiscard]] int route(int channel) const override;

  private:
    void begin(char letter);
    void act(int value);
    void store(int value);
    void acknowledge();

    char command_ = 0;     ///< 'X' or 'Z' while its number is awaited or its data come
    int target_ = 0;       ///< block that "Z" writes; 0 = its number has not come yet
    std::size_t at_ = 0;   ///< how much of it is written
    bool sticks_ = false;  ///< it keeps its content
    std::string digits_;   ///< of the pair that is coming
};

}  // namespace vantor::boxsim
