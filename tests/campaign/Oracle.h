#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "World.h"
#include "boxsim/SimulatedMech.h"

namespace vantor::campaign {

/// Watches a session from outside: what the boxes claim is compared with what the simulated mech
/// holds, what was measured with what stands in the files. The program is never asked whether it
/// was right; of its state only what it meant to write is read.
class Oracle {
  public:
    explicit Oracle(World& world);
    ~Oracle();
    Oracle(const Oracle&) = delete;
    Oracle& operator=(const Oracle&) = delete;

    /// The fault is over: from now on everything has to be right.
    void expectHealthy();
    /// A step of the job begins: what is claimed from now on is said of what happens from now on.
    void stepBegins();
    /// Another mech of the model is plugged in: what the old one held counts no more.
    void anotherMech() { memoryFirst_.clear(); }
    /// What a program at rest leaves behind: no box, no open file, the box in command mode.
    void atRest();
    /// The same with the main window in front: the box measures and tests nothing either.
    void atHome();
    /// The files in the program's folder; `clean` after an undisturbed job.
    void files(bool clean);
    void violation(const std::string& what);

    std::vector<std::string> violations;
    [[nodiscard]] int verdicts() const { return verdicts_; }

  private:
    [[nodiscard]] bool boxMayBeDeaf() const;
    void seen(const Prompt& prompt);
    void turn();
    void errorReport(const std::string& text);

    // What is claimed of a mech, in Verdicts.cpp.
    void mars();
    void marsLimits(int segment, std::span<const std::uint8_t> cells);
    void marsKept(std::span<const std::uint8_t> cells);
    void coinControls();
    void routing(const std::vector<boxsim::MemoryCell>& memory);
    void windows();
    void keptWindows();
    void nri(bool fromFile);
    void nriMemory(const std::vector<boxsim::MemoryCell>& intended, bool fromFile);
    void nriTranscript(const std::vector<std::string>& writes, bool handshake);
    void acknowledgements(const std::vector<std::string>& writes, std::size_t firstByte,
                          const std::vector<std::size_t>& places);
    [[nodiscard]] int limit(int channel, int column);
    [[nodiscard]] bool fileAsLaidOut() const;
    [[nodiscard]] int struckInStep() const;
    [[nodiscard]] int spoiltBlocks(bool handshake) const;

    void dump();
    void log();
    void savedMemory(bool clean);
    void readWhole();
    [[nodiscard]] bool linesUnchecked() const;
    void tested(int dropped);
    [[nodiscard]] std::vector<int> reportedCoins();

    World& world_;
    bool healthy_ = false;
    bool measuredBefore_ = false;  ///< the box did when the clean run began: it was told so
    bool struck_ = false;          ///< the fault has, at some time
    int verdicts_ = 0;
    bool toldOfBox_ = false;        ///< the box or the line failed, so that the box may be stuck
    bool savedIncomplete_ = false;  ///< a memory that was not whole
    bool fromFile_ = false;         ///< what was confirmed last was a file
    // when the step began
    std::size_t wireFrom_ = 0;  ///< of the transcript
    int struckBefore_ = 0;
    std::vector<boxsim::MemoryCell> memoryFirst_;  ///< when it was plugged in
    std::vector<boxsim::MemoryCell> memoryBefore_;
    std::vector<std::vector<boxsim::ByteWindow>> windowsBefore_;  ///< channel 1 first
    // spinning
    Micros lastTurn_{-1};
    int turnsAtOnce_ = 0;
    // the log
    bool logging_ = false;
    int readings_ = 0;
    std::vector<std::string> measured_;  ///< reading lines as the log should have them
};

}  // namespace vantor::campaign
