#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>

#include "boxsim/pty/RealTimeLoop.h"

namespace vantor::boxsim {

/// A pseudo-terminal that stands for the box's serial connector. The program opens `path()` as
/// its serial port.
class PseudoTerminal {
  public:
    using Receiver = std::function<void(std::span<const std::uint8_t>)>;

    PseudoTerminal(RealTimeLoop& loop, Receiver receiver);
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    /// Opens a new one, in raw mode; throws std::system_error when the system has none. With a
    /// link, that symbolic link is made to point to it.
    void open(const std::filesystem::path& link);
    /// Whoever has it open sees the line hung up. The link goes too.
    void close();
    [[nodiscard]] bool isOpen() const { return master_ >= 0; }
    [[nodiscard]] const std::string& path() const { return path_; }
    /// Bytes that nobody fetches in time are lost, as on a line.
    void write(std::uint8_t byte) const;

  private:
    void readable();
    void makeLink(const std::filesystem::path& link);

    RealTimeLoop& loop_;
    Receiver receiver_;
    int master_ = -1;
    int keeper_ = -1;  ///< our own end of the program's side: the line stays up without a program
    std::string path_;
    std::filesystem::path link_;
};

}  // namespace vantor::boxsim
