#pragma once

#include <optional>
#include <string_view>

#include "cc/CcCoinData.h"
#include "cc/CcUtilities.h"
#include "link/MechFamily.h"

namespace vantor {

/// Coin Controls mechs: coin data as frames or text in serial mode, limits in an EEPROM.
class CcFamily final : public MechFamily {
  public:
    /// `sinks`: where readings and the reject sound of a Sentinel go.
    CcFamily(SessionState& state, ProgrammerLink& link, MechCheck& check, Prompts& prompts,
             ErrorReporter& errors, ProgressDisplay& progress, const MessageSinks& sinks);

    [[nodiscard]] std::string_view code() const override { return kCoinControls; }
    [[nodiscard]] FamilyLook look() const override;
    [[nodiscard]] LimitRules limitRules() const override;
    [[nodiscard]] CoinsetRules coinsetRules() const override;

    void probeMech() override;

    void enableCoinData(int channel) override;
    void disableCoinData() override;
    void abandonCoinData() override { memory_.abandonSession(); }

    bool programmeFromFile() override;
    bool readMemory() override { return memory_.readMemory(); }
    void readOldMemory() override;
    /// Reads the mech again first when its last read was not whole.
    void copyOldMemoryData() override;
    void rebuildImage() override;
    bool programAndVerify() override;

    [[nodiscard]] CcMemory& memory() { return memory_; }
    [[nodiscard]] CcUtilities& utilities() { return utilities_; }
    [[nodiscard]] CcCoinData& coinData() { return coinData_; }

  private:
    [[nodiscard]] CcShape shape() const { return ccShape(state_.mech.mechType); }
    void takeChannelsOver();

    /// The transfer count of a Sentinel with this coinset's routing; nothing before it was sent.
    std::optional<int> transfers_;
    SessionState& state_;
    ProgrammerLink& link_;
    MechCheck& check_;
    ErrorReporter& errors_;
    CcMemory memory_;
    CcUtilities utilities_;
    CcCoinData coinData_;
};

}  // namespace vantor
