#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace vantor {

inline constexpr int kPorts = 30;  ///< COM1..COM30

/// Which device of the system each COM port stands for.
class PortMap {
  public:
    enum class System { windows, unixLike };
#ifdef _WIN32
    static constexpr System kHere = System::windows;
#else
    static constexpr System kHere = System::unixLike;
#endif

    explicit PortMap(System system = kHere) : system_(system) {}

    /// Takes the lines `number,device` of a `ports.txt` over; lines that are none, and numbers
    /// outside 1..30, are ignored. A missing file changes nothing.
    void readFile(const std::filesystem::path& file);
    void readLines(std::string_view text);
    /// One assignment from the command line; stronger than any file.
    void assign(int portNumber, std::string device);

    /// The device behind COMn; empty where nothing stands behind it.
    [[nodiscard]] std::string device(int portNumber) const;

    /// The two halves of "n=device" (or with another separator); nothing when the number is
    /// outside 1..30 or the device is empty.
    [[nodiscard]] static std::optional<std::pair<int, std::string>> parse(std::string_view text,
                                                                          char separator);

  private:
    [[nodiscard]] std::string usual(int portNumber) const;

    System system_;
    std::map<int, std::string> fromFile_;
    std::map<int, std::string> assigned_;
};

}  // namespace vantor
