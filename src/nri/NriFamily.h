#pragma once

#include <string_view>

#include "link/MechFamily.h"
#include "nri/NriCoinData.h"
#include "nri/NriUtilities.h"

namespace vantor {

/// NRI mechs: the mech's own text commands in serial mode, memory in blocks of text.
class NriFamily final : public MechFamily {
  public:
    /// `sinks`: where readings go. `probe`: how the box's interface board is asked.
    NriFamily(SessionState& state, ProgrammerLink& link, MechCheck& check, Prompts& prompts,
              ErrorReporter& errors, ProgressDisplay& progress, const Calendar& calendar,
              const MessageSinks& sinks, InterfaceProbe probe);

    [[nodiscard]] std::string_view code() const override { return kNri; }
    [[nodiscard]] FamilyLook look() const override;
    [[nodiscard]] LimitRules limitRules() const override;
    [[nodiscard]] CoinsetRules coinsetRules() const override;

    void probeMech() override;
    /// The serial mode stays open: the mech sends its coins there.
    [[nodiscard]] bool prepareValidatorTest() override;

    /// A mech that does not answer, or a memory that is needed first and does not come, is told
    /// and ends the run.
    void enableCoinData(int channel) override;
    void disableCoinData() override;

    [[nodiscard]] WizardPanel wizardPanel() const override;
    [[nodiscard]] bool startWizard(const WizardInputs& inputs) override;

    bool programmeFromFile() override { return utilities_.NRIprogramme(); }
    bool readMemory() override { return memory_.readNriMemory(); }
    void readOldMemory() override;
    void copyOldMemoryData() override;
    /// The new fields are complete when the old memory has been taken over; the limits are encoded
    /// as they are sent.
    void rebuildImage() override {}
    /// An NRI mech is not read back: true when every write was sent and none refused.
    bool programAndVerify() override;

    [[nodiscard]] NriComms& comms() { return comms_; }
    [[nodiscard]] NriMemory& memory() { return memory_; }
    [[nodiscard]] NriUtilities& utilities() { return utilities_; }
    [[nodiscard]] NriCoinData& coinData() { return coinData_; }

  private:
    [[nodiscard]] NriShape shape() const { return memory_.shape(); }
    bool mapsReady(int channel);
    void keepOldMemory();
    void seedFields();
    void takeLimitsOver();
    void takeFieldsOver();
    bool takeCoinValue(const WizardInputs& inputs);
    void takeOutputs(const WizardInputs& inputs);

    SessionState& state_;
    ProgrammerLink& link_;
    MechCheck& check_;
    Prompts& prompts_;
    ErrorReporter& errors_;
    NriComms comms_;
    NriMemory memory_;
    NriUtilities utilities_;
    NriCoinData coinData_;
};

}  // namespace vantor
