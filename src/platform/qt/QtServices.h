#pragma once

#include <QLockFile>
#include <memory>

#include "platform/Services.h"

namespace vantor {

/// Windows plays through the multimedia library, other systems through the player program that
/// is installed (waited for at most 5 s). No player, no file, no device: silence.
class QtSoundPlayer final : public SoundPlayer {
  public:
    void play(const std::filesystem::path& file) override;

  private:
    bool hangs_ = false;  ///< a player did not end in time: it is not waited for again
};

class QtCalendar final : public Calendar {
  public:
    [[nodiscard]] Date today() const override;
};

/// A lock file in the program's folder. One whose owner died is taken over; a folder in which
/// none can be made keeps nobody off.
class QtInstanceGuard final : public InstanceGuard {
  public:
    explicit QtInstanceGuard(const std::filesystem::path& folder);
    ~QtInstanceGuard() override;
    [[nodiscard]] bool acquire() override;

  private:
    std::unique_ptr<QLockFile> lock_;
};

}  // namespace vantor
