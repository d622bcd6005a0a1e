#pragma once

#include <filesystem>
#include <string>

namespace vantor {

/// Plays a sound file to its end; events wait meanwhile. A missing file or device is silence.
class SoundPlayer {
  public:
    virtual ~SoundPlayer() = default;
    virtual void play(const std::filesystem::path& file) = 0;
};

/// A day of the calendar; `year` in full (2026), `month` and `day` from 1.
struct Date {
    int year = 2000;
    int month = 1;
    int day = 1;
};

class Calendar {
  public:
    virtual ~Calendar() = default;
    [[nodiscard]] virtual Date today() const = 0;
};

/// Keeps a second copy of the program off the same folder.
class InstanceGuard {
  public:
    virtual ~InstanceGuard() = default;
    /// True when this copy is the only one; holds the place until destroyed.
    [[nodiscard]] virtual bool acquire() = 0;
};

}  // namespace vantor
