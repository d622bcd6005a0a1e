#pragma once

#include <span>
#include <string>
#include <string_view>

#include "boxsim/MechVoice.h"
#include "boxsim/Sensors.h"
#include "boxsim/SimulatedMech.h"
#include "catalogue/MechCatalogue.h"

namespace vantor::boxsim {

/// A mech that speaks for itself while the box is in serial mode. It is on the line only when the
/// box was set up for it: the mech's own "C" command before, and its own mode command.
class SerialMech : public SimulatedMech {
  public:
    [[nodiscard]] std::vector<std::string> coins() const override;
    [[nodiscard]] std::optional<CoinReading> draw(std::string_view coin,
                                                  Random& random) const override;
    [[nodiscard]] bool offersBinaryOutput() const override { return binaryOutput_; }
    void commandSeen(std::string_view command) override;
    [[nodiscard]] char coinLetter(int channel) const override;
    void serialOpened(std::string_view modeCommand) override;
    void serialClosed() override;

  protected:
    SerialMech(const MechModel& model, MechLine& line, std::span<const Sensor> sensors)
        : line_(line),
          voice_(line),
          sensors_(sensors),
          binaryOutput_(model.binaryOutput),
          tubeOrder_(model.tubeOrder) {}

    /// The tubes behind channels 1 to 3 (0-based) are wired one further on.
    void wireTubes(bool wired) { tubeOrder_ = wired; }
    /// The last "C" command was this one.
    [[nodiscard]] bool selectedBy(std::string_view command) const { return select_ == command; }
    /// Serial mode is on, by this command.
    [[nodiscard]] bool openedBy(std::string_view command) const { return mode_ == command; }
    [[nodiscard]] FaultInjector& faults() { return line_.faults(); }
    /// Without power the mech neither hears nor says anything.
    void losePower(Micros span) { deadUntil_ = now() + span; }
    [[nodiscard]] bool powered() { return now() >= deadUntil_; }
    [[nodiscard]] Micros now() { return line_.loop().now(); }
    [[nodiscard]] MechVoice& voice() { return voice_; }
    [[nodiscard]] std::span<const Sensor> sensors() const { return sensors_; }

  private:
    MechLine& line_;
    MechVoice voice_;
    std::span<const Sensor> sensors_;
    bool binaryOutput_;
    bool tubeOrder_;
    std::string select_;
    Micros deadUntil_{};
    std::string mode_;  ///< empty outside serial mode
};

/// A sensor's value as a byte; 0 for a sensor that the reading lacks.
[[nodiscard]] std::uint8_t byteOf(const CoinReading& reading, std::size_t sensor);

}  // namespace vantor::boxsim
