#pragma once

#include <set>
#include <string>
#include <vector>

#include "World.h"

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
    void expectHealthy() { healthy_ = true; }
    /// What a program at rest leaves behind: no box, no open file, the box in command mode.
    void atRest();
    /// The files in the program's folder; `clean` after an undisturbed job.
    void files(bool clean);
    void violation(const std::string& what);

    std::vector<std::string> violations;
    /// The technician was told that the box or the line failed, so that the box may be stuck.
    [[nodiscard]] bool toldOfBox() const;
    [[nodiscard]] int verdicts() const { return verdicts_; }

  private:
    void seen(const Prompt& prompt);
    void turn();
    void errorReport(const std::string& text);
    void mars();
    void coinControls();
    void nri(bool fromFile);
    void nriMemory(const std::vector<std::pair<int, std::string>>& blocks);
    void nriTranscript(const std::vector<std::string>& writes, bool handshake);
    [[nodiscard]] bool beyondKnowledge(bool handshake) const;
    void dump();
    void log();
    void savedMemory();

    World& world_;
    bool healthy_ = false;
    int verdicts_ = 0;
    // spinning
    Micros lastTurn_{-1};
    int turnsAtOnce_ = 0;
    // the log
    bool logging_ = false;
    int readings_ = 0;
    std::vector<std::string> measured_;  ///< reading lines as the log should have them
};

}  // namespace vantor::campaign
