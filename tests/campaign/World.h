#pragma once

#include <QTemporaryDir>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "BenchHand.h"
#include "Plan.h"
#include "Surroundings.h"
#include "WatchedPrompts.h"
#include "app/Program.h"
#include "boxsim/SimulatedBox.h"
#include "boxsim/SimulatedMech.h"
#include "platform/VirtualEventLoop.h"

namespace vantor::campaign {

/// The whole program with its windows in virtual time, a box with a mech, and a hand at the bench.
class World {
  public:
    explicit World(const Plan& plan);
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    /// A mech fresh from the factory.
    void plugMech();
    /// Starts the program, anew after an end; true when its main window is ready.
    bool start();
    [[nodiscard]] bool ended() const { return program == nullptr || program->ended(); }
    [[nodiscard]] bool idle() const { return program != nullptr && program->idle(); }
    [[nodiscard]] SessionState& state() { return program->state(); }
    [[nodiscard]] std::filesystem::path file(const std::string& name) const {
        return folder / name;
    }

    const Plan& plan;
    VirtualEventLoop loop;
    QTemporaryDir directory;
    std::filesystem::path folder;
    boxsim::SimulatedBox box;
    boxsim::SimulatedPort port{loop, box, 1};
    WatchedPrompts prompts{loop};
    std::unique_ptr<Program> program;
    test::BenchHand hand{loop, box};
    std::vector<boxsim::MemoryCell> fileCells;  ///< the memory that the memory file was made of
    std::string fileText;                       ///< as it was laid out
    std::string oldText;                        ///< what the file that is saved held before
    std::function<void()> onRead;               ///< the job has read a memory whole
    std::function<void(int dropped)> onTested;  ///< the job has dropped coins in a validator test
    bool startedAgain = false;                  ///< the program was ended and started anew
    std::function<void()> onTurn;               ///< every turn of the event loop

  private:
    void chooseLanguage();
    [[nodiscard]] std::string toEnglish(std::string text);

    std::vector<std::pair<std::string, std::string>>
        texts_;  ///< foreign, English; the longest first
    test::FakeDirectory ports_;
    test::RecordedSounds sounds_;
    test::FixedCalendar calendar_;
    test::FakeGuard guard_;
};

}  // namespace vantor::campaign
