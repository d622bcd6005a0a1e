#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/SessionState.h"

namespace vantor {

/// How a family is shown. Message numbers are of the message table.
struct FamilyLook {
    std::string_view name;       ///< "Mars", "Coin Controls", "NRI"
    std::uint32_t colour = 0;    ///< 0xRRGGBB of the maker label
    int duplicateCaption = 549;  ///< caption of the check box `chkduplicate`
    int displayCaption = 1230;   ///< limits window: frame of the segment choice
    int programCaption = 1231;
    int utilitiesCaption = 1232;
    bool promSocket = false;  ///< PROM size, PROM type and segment choices are shown
};

/// What the overlap check and the estimates need to know of a family and model.
struct LimitRules {
    int capacity = 255;                 ///< highest limit; a high limit at it means no upper limit
    bool displayedSegmentOnly = false;  ///< segments are alternative coin sets
    bool reversedIsEmpty = false;       ///< coin against coin: a window with low >= high is 0..0
    /// Parameter (0-based) that a channel may leave switched off without being empty; -1 = none.
    int optionalParameter = -1;
};

/// How a coinset of this family is read and run.
struct CoinsetRules {
    bool promLine = false;  ///< header line 2 holds PROM size, segments and idle limits
    bool slugCode = false;  ///< "S" records end with a coin code
    int idleWaitMs = 0;     ///< wait before the sensors are asked for their idle values
    bool alwaysReadsOldMemory = true;
};

enum class WizardMode { editLimits = 1, addReplace = 2, slugFix = 3 };

/// What the wizard panel asks for beside the coin channel, for the selected model.
struct WizardPanel {
    int coinCaption = 427;   ///< message number: head of the coin list
    bool coinValue = false;  ///< the coin's value
    bool lines = false;      ///< output line and inhibit line, preset by the coin that is picked
};

/// What the technician chose on the wizard panel.
struct WizardInputs {
    WizardMode mode = WizardMode::editLimits;
    int channel = 0;      ///< 1..24
    int coinValue = 0;    ///< as typed; 0 when no number was
    int outputLine = 0;   ///< 1..6; 0 = none chosen
    int inhibitLine = 0;  ///< 1..6; 0 = none chosen
};

/// Everything that differs per maker. One implementation per maker, in its own folder.
class MechFamily {
  public:
    virtual ~MechFamily() = default;

    /// kMars, kCoinControls or kNri.
    [[nodiscard]] virtual std::string_view code() const = 0;
    [[nodiscard]] virtual FamilyLook look() const = 0;
    [[nodiscard]] virtual LimitRules limitRules() const = 0;
    [[nodiscard]] virtual CoinsetRules coinsetRules() const = 0;

    // --- connection check

    /// Between "J" and "S" of the check.
    virtual void beforeStatus() {}
    /// After the wait for the status line; `detect` as given to the check.
    virtual void afterStatus(bool detect) { (void)detect; }
    /// Asks the mech itself whether it is there, where the status line does not tell; sets
    /// `mechPresent`.
    virtual void probeMech() {}

    // --- validator test

    /// What the mech needs beyond the box's test mode, for models whose test says so: sensor
    /// timings, or the mech's own serial mode in which it sends coin records. False when the mech
    /// did not answer.
    [[nodiscard]] virtual bool prepareValidatorTest() { return false; }

    // --- measuring

    /// The mech reports coins from now on. Families with their own reading loop (CC, NRI) run it
    /// to its end inside. `channel` is 1..24, or 0 for a slug without a channel.
    virtual void enableCoinData(int channel) = 0;
    virtual void disableCoinData() = 0;
    /// In place of `disableCoinData` when the program ends amid a gather: what the mech must hear
    /// so that no coin moves it any more, without waiting.
    virtual void abandonCoinData() {}
    /// Whether `latestReading` may be counted; a refused one is told by the measurement session.
    [[nodiscard]] virtual bool readingValid() const { return true; }
    /// A fresh measurement window: what the box is told.
    virtual void startMeasuring() {}
    /// A run begins for the selected model: sensor timings and coin data off.
    virtual void startRun() {}
    /// Whether coin values are entered for this model, and the value first shown.
    [[nodiscard]] virtual bool hasCoinValue() const { return false; }
    /// Whether the model's PROM is always 2K (the ME181).
    [[nodiscard]] virtual bool twoSegmentProm() const { return false; }

    // --- wizards

    [[nodiscard]] virtual WizardPanel wizardPanel() const { return {}; }
    /// Whether a wizard keeps what the mech's memory holds of `channel` (1..24), because the memory
    /// can hold it.
    [[nodiscard]] virtual bool keepsChannel(int channel) const {
        (void)channel;
        return true;
    }
    /// Prepares what a wizard changes beside limits, from the panel's inputs and, where the family
    /// needs that first, the mech's memory. False ends the wizard; the reason was told.
    [[nodiscard]] virtual bool startWizard(const WizardInputs& inputs) {
        (void)inputs;
        return true;
    }
    /// After a wizard's last drop, before the transfer.
    virtual void finishWizard() {}

    // --- memory

    /// Before a run with the clone box ticked: programs the mech from a saved memory file that the
    /// technician picks. False ends the run; the reason was told. Families whose box means
    /// something else have nothing to do.
    virtual bool programmeFromFile() { return true; }
    /// Clears the old image and reads the mech's memory into it. True when it was read whole
    /// (`images.oldComplete` says the same); a failure was told.
    virtual bool readMemory() = 0;
    /// Reads the old memory for channels that are taken over: prompts where the family has a
    /// socket, copies to the carry-over image, takes the channels over, and sets
    /// `images.oldMemoryRead` when the read was complete.
    virtual void readOldMemory() = 0;
    /// Takes the limits of channels with an OldChannelSource from the memory read before.
    virtual void copyOldMemoryData() = 0;
    /// Builds the new image from `limits.channelLimits`, the coinset's data and
    /// `limits.changeFlag`. Serves the transfer, Change Limits and the moment before programming.
    virtual void rebuildImage() = 0;
    /// Programs the new image and verifies it, with all prompts. True only for a verified mech.
    virtual bool programAndVerify() = 0;
};

/// The families that exist, by maker code.
class Families {
  public:
    explicit Families(const SessionState& state) : state_(state) {}
    void add(MechFamily& family) { all_.push_back(&family); }
    /// The family of the selected maker; nullptr before the first action or without a family.
    [[nodiscard]] MechFamily* current() const { return find(state_.mech.manufacturer); }
    [[nodiscard]] MechFamily* find(std::string_view maker) const {
        for (MechFamily* family : all_) {
            if (family->code() == maker) return family;
        }
        return nullptr;
    }
    /// As `current`; throws std::logic_error without one.
    [[nodiscard]] MechFamily& selected() const;

  private:
    const SessionState& state_;
    std::vector<MechFamily*> all_;
};

}  // namespace vantor
