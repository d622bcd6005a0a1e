#pragma once

#include <string>

#include "World.h"

namespace vantor::campaign {

/// How many steps a job has.
[[nodiscard]] int stepsOf(JobKind job);

/// What the technician sets out to do, step by step, through the windows. Each step runs until the
/// program rests again.
class Job {
  public:
    explicit Job(World& world) : world_(world) {}

    /// What is laid out on the bench and on the disc before; once per session.
    void prepare();
    /// False when its button cannot be pressed, so that the job is over.
    bool perform(int step);
    /// All steps were performed and the program said, or showed, that the job is done.
    [[nodiscard]] bool done() const { return done_; }

  private:
    bool openMain(const char* action);
    bool runCoinset();
    bool runWizard();
    bool program();
    bool openTest();
    bool testCoins();
    bool openUtilities();
    bool readAndSave();
    bool programFile();
    bool programRouting();
    void makeMemoryFile();
    /// Presses a button that is there to be pressed.
    [[nodiscard]] static bool press(const std::string& name);
    static void choose(const std::string& name, int row);
    [[nodiscard]] bool saidSince(std::size_t from, const char* text) const;
    [[nodiscard]] std::string utilities() const;

    World& world_;
    bool done_ = false;
};

/// The texts with which the program says that a mech was programmed.
inline constexpr const char* kMarsVerdict = "Verify PROM OK";
inline constexpr const char* kCcVerdict = "EEPROM Verified OK";
inline constexpr const char* kNriVerdict = "NRI Memory Programmed OK";
inline constexpr const char* kNriFileVerdict = "Data Written OK";

/// A control that a technician could press now: visible, enabled, and no question before it.
[[nodiscard]] bool pressable(const QWidget* control);

}  // namespace vantor::campaign
