#pragma once

#include "boxsim/NriMech.h"

namespace vantor::boxsim {

/// G13-0000, G18-0000 and G10-4000: decimal digits and no acknowledgements.
///
///     I                               identity, CR
///     V c                             8 lines of three digits: highs, then lows of channel c
///     Y                               7 lines of three: multiplier, values of channels 6 to 1
///     X                               (G10-4000) one line: header, tubes, values
///     Z                               one line with the date of the last adjustment
///     T                               after the next coin: four lines of three digits
///     D c highs CR lows CR            sets the windows of channel c
///     B multiplier values CR          as Y has them
///     F header, tubes, values :: CR   as X has them
///     E dd/mm/yy CR                   sets the date
///
/// What is not of this form is not stored; what belongs to no command is skipped.
class NriPlainMech final : public NriMech {
  public:
    NriPlainMech(const MechModel& model, MechLine& line);
    [[nodiscard]] std::vector<ByteWindow> windows(int channel) const override;

  protected:
    void heard(std::uint8_t byte) override;
    void forget() override;
    [[nodiscard]] std::string readingText(const CoinReading& reading) const override;
    [[nodiscard]] int route(int channel) const override;

  private:
    void begin(char letter);
    void give(char letter);
    void giveWindows(char channel);
    [[nodiscard]] bool complete() const;
    void store();
    void storeWindows(std::string_view data);
    void put(int number, std::string_view text, bool wellFormed);
    [[nodiscard]] int valuesBlock() const { return variant().channels + 1; }
    [[nodiscard]] int dateBlock() const { return variant().channels + 2; }
    [[nodiscard]] char valuesCommand() const { return variant().coinRecords ? 'X' : 'Y'; }

    char command_ = 0;  ///< that is being given: V, D, B, E, F
    std::string data_;  ///< behind its letter
};

}  // namespace vantor::boxsim
