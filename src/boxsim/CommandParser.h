#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vantor::boxsim {

/// Cuts the PC's bytes into commands:
///
///     C x x      $ x x      # x x        three characters
///     Z ... CR   P ... CR                up to the carriage return, which is dropped
///     anything else                      one character
class CommandParser {
  public:
    /// The command that this byte completes.
    [[nodiscard]] std::optional<std::string> take(std::uint8_t byte);
    /// Drops a partial command (ESC).
    void reset() { partial_.clear(); }

  private:
    std::string partial_;
};

}  // namespace vantor::boxsim
