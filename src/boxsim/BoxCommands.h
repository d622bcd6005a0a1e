#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "boxsim/FaultInjector.h"
#include "boxsim/PromSocket.h"
#include "boxsim/SimulatedMech.h"

namespace vantor::boxsim {

/// What a command leads to.
struct Outcome {
    bool known = true;
    std::vector<std::string> lines{};  ///< the answer, without line ends
    Micros ownTime{};                  ///< until the answer begins; the box hears nothing meanwhile
    bool entersSerialMode = false;
};

/// The box's command mode: what it remembers and what it does about each command.
class BoxCommands {
  public:
    BoxCommands(PromSocket& socket, FaultInjector& faults) : socket_(socket), faults_(faults) {}

    /// Runs one command as the parser cuts it; `mech` is nullptr while none is plugged in.
    [[nodiscard]] Outcome run(std::string_view command, const SimulatedMech* mech);
    /// Drops what a half-given command has prepared (ESC).
    void reset() { readArmed_ = false; }

    void setVersion(std::string_view version);
    void setBinaryOutput(bool offered) { binaryOutput_ = offered; }
    [[nodiscard]] bool coinDataOn() const { return coinDataOn_; }
    /// The validator is being tested: coins are reported as what the mech makes of them.
    [[nodiscard]] bool testing() const { return testing_; }
    /// The outputs drive a code: a coin is reported as its pattern.
    [[nodiscard]] bool codedOutputs() const { return codedOutputs_; }

  private:
    [[nodiscard]] std::string statusLine(const SimulatedMech* mech) const;
    [[nodiscard]] Outcome runLetter(char letter, const SimulatedMech* mech);
    [[nodiscard]] Outcome readProm(int words);
    [[nodiscard]] Outcome programLine(std::string_view command);
    [[nodiscard]] Outcome storeTimings(std::string_view command);

    PromSocket& socket_;
    FaultInjector& faults_;
    std::array<int, 4> timings_{};  ///< of the last Z command
    std::string version_ = "V1.95";
    std::optional<bool> binaryOutput_;  ///< set on the bench; else the mech decides
    bool coinDataOn_ = false;
    bool testing_ = false;
    bool binaryOffered_ = false;  ///< by the last "*" of this test mode
    bool codedOutputs_ = false;
    bool readArmed_ = false;  ///< "E" has come: "A" or "K" reads
};

}  // namespace vantor::boxsim
