#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "link/ProgrammerLink.h"

namespace vantor {

/// What the validator test shows; positions are 0-based (0..15), output bits 0..4.
class ValtestDisplay {
  public:
    virtual ~ValtestDisplay() = default;
    virtual void resetValtestDisplay() = 0;
    virtual void markAccepted(int position) = 0;   ///< green, count up by one
    virtual void markRejected(int position) = 0;   ///< red, count up by one
    virtual void markPosition(int position) = 0;   ///< green, not counted
    virtual void countPosition(int position) = 0;  ///< count up by one
    virtual void markBinary(int bit) = 0;          ///< output-bit indicator green
};

/// Where decoded messages go. An unset one means that nobody wants it.
struct MessageSinks {
    std::function<void(const std::string& line)> lastLine;       ///< `txtMessage`
    std::function<void(const std::string& version)> boxVersion;  ///< `lblProgrammer`
    std::function<void(std::string_view line)> promLine;         ///< "R": mars/
    std::function<void(std::string_view line)> marsMeasurement;  ///< "M" while gathering: measure/
    /// A CC or Sentinel reading stands in `latestReading`: measure/ logs it (if the log is on).
    std::function<void()> logReading;
    std::function<void()> reading;            ///< updateStats(0): measure/
    std::function<void()> requestCoinData;    ///< asks a CC mech for the next coin: cc/
    std::function<void(int kind)> makeSound;  ///< 0 = accept, 1 = reject: app/
    ValtestDisplay* valtest = nullptr;        ///< while a test window is open
};

/// Assembles received bytes into lines and frames and decodes them into the session's state.
class Receiver {
  public:
    Receiver(SessionState& state, ProgrammerLink& link, Prompts& prompts, ErrorReporter& errors);

    MessageSinks sinks;

    /// One byte, in the mode, maker and model of this moment.
    void handleByte(std::uint8_t byte);

    /// One complete text line, without its carriage return; not empty.
    void dispatchLine(std::string_view line);
    void parseCoinAccepted(std::string_view line);
    void parseIdles(std::string_view line);
    void parsetimings(std::string_view line);
    /// An NRI G10's coin record; an empty one is ignored.
    void parseG10CoinAccepted(std::string_view record);
    /// ";", high, low, sum.
    void decodeWordReply(std::span<const std::uint8_t> frame);
    /// "?", n - 1 data bytes, then the sum of the n bytes before it. Without a gather the reading
    /// is decoded and dropped.
    void decodeCoinFrame(std::span<const std::uint8_t> frame, int n);

    /// Light grey indicators; the 100 ms tick calls it when a coin was shown long enough.
    void resetValtestDisplay();

  private:
    void textByte(std::uint8_t byte);
    void nriByte(std::uint8_t byte);
    void sentinelByte(std::uint8_t byte);
    void ccByte(std::uint8_t byte, const MechModel& model);
    void closeCoinFrame(int n);
    void binaryPattern(int pattern);
    void acceptedLetter(char letter);
    void rejected();
    void playSound(int kind);
    void showCoin();

    SessionState& state_;
    ProgrammerLink& link_;
    Prompts& prompts_;
    ErrorReporter& errors_;
};

}  // namespace vantor
