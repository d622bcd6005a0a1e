#pragma once

#include <string_view>

#include "link/MechFamily.h"
#include "mars/MarsProm.h"

namespace vantor {

/// Mars mechs: coin data as text lines of the box, limits in a PROM in the box's socket.
class MarsFamily final : public MechFamily {
  public:
    MarsFamily(SessionState& state, ProgrammerLink& link, Prompts& prompts, ErrorReporter& errors,
               ProgressDisplay& progress);

    [[nodiscard]] std::string_view code() const override { return kMars; }
    [[nodiscard]] FamilyLook look() const override;
    [[nodiscard]] LimitRules limitRules() const override;
    [[nodiscard]] CoinsetRules coinsetRules() const override;

    void beforeStatus() override;
    void afterStatus(bool detect) override;

    [[nodiscard]] bool prepareValidatorTest() override;

    void enableCoinData(int channel) override;
    void disableCoinData() override;
    void abandonCoinData() override { disableCoinData(); }
    [[nodiscard]] bool readingValid() const override;
    void startMeasuring() override;
    void startRun() override;
    [[nodiscard]] bool hasCoinValue() const override;
    [[nodiscard]] bool twoSegmentProm() const override;
    /// Sets the sensor timings that a model wants, in up to six attempts; a box that does not take
    /// them is told, and the caller goes on either way.
    void setupMarsTimings(std::string_view mechType);

    [[nodiscard]] WizardPanel wizardPanel() const override;
    [[nodiscard]] bool keepsChannel(int channel) const override;
    [[nodiscard]] bool startWizard(const WizardInputs& inputs) override;

    bool readMemory() override { return prom_.readMemory(); }
    void readOldMemory() override;
    void copyOldMemoryData() override;
    void rebuildImage() override;
    bool programAndVerify() override;
    /// Takes the box's PROM data lines ("R").
    void parsePromLine(std::string_view line) { prom_.parsePromLine(line); }

  private:
    [[nodiscard]] const MarsModel& model() const;
    bool timingsAttempt(const MarsModel& wanted);
    void bracketCfd();
    bool readOldMarsProm();
    void copyChannel(int channel, int source);
    void copyCoinValues();
    [[nodiscard]] bool takesChannelsOver() const;

    SessionState& state_;
    ProgrammerLink& link_;
    Prompts& prompts_;
    ErrorReporter& errors_;
    MarsProm prom_;
};

}  // namespace vantor
