#pragma once

#include <optional>
#include <string>

#include "cc/CcLayout.h"
#include "cc/SentinelMemory.h"
#include "link/ProgressDisplay.h"

namespace vantor {

/// The conversation with the EEPROM of the selected CC mech: sessions, words, and the three
/// operations on the whole memory. Every operation that opens a session closes it again.
class CcMemory {
  public:
    CcMemory(SessionState& state, ProgrammerLink& link, MechCheck& check, Prompts& prompts,
             ErrorReporter& errors, ProgressDisplay& progress)
        : state_(state),
          link_(link),
          check_(check),
          prompts_(prompts),
          errors_(errors),
          progress_(progress),
          sentinel_(state, link, check, prompts, errors) {}

    class SessionGuard;

    // --- sessions

    /// "x x"; true when the channel acknowledged within 500 ms.
    bool beginI2c();
    /// The model's set-up strings, serial mode, channel. False leaves the box as the attempt left
    /// it: whoever gives up leaves serial mode.
    bool openEepromSession();
    /// Closes the channel, leaves serial mode and ends the keep-alive.
    void closeEepromSession();
    /// Says good-bye without waiting, for when the program ends.
    void abandonSession();

    // --- words of an I2C session

    /// Word 0..65535 of an address 0..255; -1 when it could not be read, which was told unless the
    /// run was cancelled.
    int readEepromWord(int address);
    /// True when the mech acknowledged, or when the old image says that the word already holds
    /// `value`; refusal and silence are false.
    bool writeEepromWord(int address, int value);

    // --- the whole memory

    /// Clears the old image (0..511) and reads. True when every word was stored.
    bool readMemory();
    /// Reads into the old image and writes what it holds to `<model>temp.txt` in the program's
    /// folder. Ends at the first word that fails; `oldImageWhole` tells.
    void readCcEeprom();
    /// Writes the words of the new image that differ from the old one; ends at the first that
    /// fails, which is told.
    void writeCcEeprom();
    /// Reads again and compares with the new image; true, and told so, only after a whole read.
    bool verifyCcEeprom();
    /// "J", write, verify, "W"; true for a verified mech.
    bool programme();
    /// The image from which the next check byte is reckoned: the old one or, when that is what a
    /// programming that failed has left half done in the mech, the memory before it.
    [[nodiscard]] MechImage soundImage() const;

    /// Command mode again, where a session that did not open left the box in serial mode. Whoever
    /// calls for reading or writing outside a `CcFlow` ends with this.
    void settle();

    /// Tells that the old image was not read whole, so that nothing may be built on it.
    void tellIncomplete();

    [[nodiscard]] SentinelMemory& sentinel() { return sentinel_; }
    [[nodiscard]] const CcModel& model() const { return ccModel(state_.mech.mechType); }

  private:
    [[nodiscard]] bool usesI2c() const { return model().session == CcSession::i2c; }
    [[nodiscard]] int words() const { return ccShape(state_.mech.mechType).words; }
    bool openForReading();
    bool readWords();
    void writeWords();
    int requestWord(int address);
    bool storeWord(int address, int value);
    void showProgress(int word);
    void writeDump();
    [[nodiscard]] bool matchesNewImage() const;
    void tell(int title, const std::string& text);

    /// A programming that failed: the mech holds some words of `held` and some of `meant`, and a
    /// check byte that belongs to neither.
    struct Unfinished {
        std::string model;
        MechImage sound, held, meant;
    };

    SessionState& state_;
    ProgrammerLink& link_;
    MechCheck& check_;
    Prompts& prompts_;
    ErrorReporter& errors_;
    ProgressDisplay& progress_;
    SentinelMemory sentinel_;
    std::optional<Unfinished> unfinished_;
};

/// Keeps a session from being left open when the program ends inside it.
class CcMemory::SessionGuard {
  public:
    explicit SessionGuard(CcMemory& memory) : memory_(memory) {}
    ~SessionGuard() {
        if (!over_) memory_.abandonSession();
    }
    SessionGuard(const SessionGuard&) = delete;
    SessionGuard& operator=(const SessionGuard&) = delete;

    void close() {
        over_ = true;
        memory_.closeEepromSession();
    }
    /// There is no session, or it goes on after this frame.
    void dismiss() { over_ = true; }

  private:
    CcMemory& memory_;
    bool over_ = false;
};

/// The bracket of a flow on a CC mech: "J" before, command mode and "W" behind.
class CcFlow {
  public:
    CcFlow(SessionState& state, ProgrammerLink& link, CcMemory& memory);
    /// Without `finish` the program is ending: "W" at once, if the box can take it.
    ~CcFlow();
    CcFlow(const CcFlow&) = delete;
    CcFlow& operator=(const CcFlow&) = delete;

    void finish();

  private:
    SessionState& state_;
    ProgrammerLink& link_;
    CcMemory& memory_;
    bool finished_ = false;
};

}  // namespace vantor
