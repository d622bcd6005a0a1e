#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string_view>
#include <vector>

#include "catalogue/ErrorReporter.h"
#include "catalogue/SessionState.h"
#include "platform/EventLoop.h"
#include "platform/Prompts.h"
#include "platform/SerialPort.h"

namespace vantor {

/// What leads the box out of serial mode: a break and this many ESC.
inline constexpr int kLeaveBreakMs = 150;
inline constexpr int kLeaveEscapes = 20;

/// Owns the one serial port, the ticks and every wait. Received bytes are only queued when they
/// come; the waits and an idle timer drain the queue, byte by byte, into the byte handler.
class ProgrammerLink {
  public:
    /// Handles one received byte in the mode, maker and model of this moment.
    using ByteHandler = std::function<void(std::uint8_t)>;

    ProgrammerLink(SessionState& state, EventLoop& loop, SerialPort& port, Prompts& prompts,
                   ErrorReporter& errors);
    ~ProgrammerLink();
    ProgrammerLink(const ProgrammerLink&) = delete;
    ProgrammerLink& operator=(const ProgrammerLink&) = delete;

    void setByteHandler(ByteHandler handler) { handler_ = std::move(handler); }
    /// Called when the program's end was met outside every action (the idle drain).
    void setEndedHandler(std::function<void()> ended) { ended_ = std::move(ended); }
    /// What the 100 ms tick does when the coin display hold has run out.
    void setCoinDisplayReset(std::function<void()> reset) { coinDisplayReset_ = std::move(reset); }

    /// Timer1 (20 ms) and Timer2 (100 ms), from start-up to exit.
    void startTicks();
    /// Timer3, the keep-alive of some CC mechs (1000 ms); off at start.
    void setKeepAlive(bool on);

    // --- the port

    /// Opens `portNumber` (1..30) unless a port is open; false when it cannot be opened.
    bool openPort(int portNumber);
    /// Start of every main-window action: opens `state.link.portNumber` if needed, 100 ms break, 25
    /// ESC. A port that cannot be opened is told and ends the program (throws ProgramEnded).
    void startupPort();
    /// Break, 25 ESC, "_".
    void resetBox();
    void closePort();

    // --- sending

    void sendString(std::string_view bytes);
    /// Clears `replyFlag`, sends, waits up to 800 ms for a text line of any kind.
    void sendAndWait(std::string_view bytes);
    /// The same for a run that can be cancelled: sends nothing once `stop` is set, and stops
    /// waiting when it becomes so.
    void sendAndWait(std::string_view bytes, const bool& stop);
    void sendJ() { sendString("J"); }
    void sendW() { sendString("W"); }
    /// ESC, `count` times, each its own send.
    void sendEscapes(int count);
    /// Holds the line in break for `ms`.
    void sendBreak(int ms);
    /// Discards everything received that was not yet handled.
    void flushInput();

    // --- waiting: the only places that pump the event loop

    /// Waits up to `ms` for `done`; true when it holds. Throws ProgramEnded when the program ends.
    bool waitFor(int ms, const std::function<bool()>& done);
    bool waitFor(int ms, const bool& flag) {
        return waitFor(ms, [&flag] { return flag; });
    }
    /// Waits out `ms` milliseconds on the reply counter.
    void waitOut(int ms);
    /// Waits as long as it takes (a coin to drop, a configuration to be saved).
    void waitUntil(const std::function<bool()>& done);
    /// About `ms` milliseconds on the 20 ms tick: at least 10, rounded down to a multiple of 10.
    void waitTicks(int ms);
    /// The same for a decoder, which no action of the technician may overtake.
    void waitTicksHoldingInput(int ms);
    /// Such a wait is running.
    [[nodiscard]] bool holdingInput() const { return holdDepth_ > 0; }

    /// Asks the program to end: the innermost wait throws.
    void endProgram() { state_.link.ending = true; }
    /// The same from inside a flow, which unwinds at once.
    [[noreturn]] void endProgramNow();
    /// The last word, when every flow has unwound: a box that may still be in serial mode is led
    /// back to command mode first, then the port is closed and `closed` called.
    void hangUp(std::function<void()> closed);
    /// A flow is waiting.
    [[nodiscard]] bool waiting() const { return waitDepth_ > 0; }

    [[nodiscard]] EventLoop& loop() { return loop_; }

    /// A wait that ran its whole time: nothing it waited for came, or it was a plain delay.
    struct SpentWait {
        Micros from{};
        Micros to{};
    };
    /// Notes every wait that ran its whole time, for measurements; nullptr notes nothing.
    void noteSpentWaits(std::vector<SpentWait>* notes) { spentWaits_ = notes; }

  private:
    class CounterScope;

    void received(std::span<const std::uint8_t> bytes);
    bool transmit(std::string_view bytes);
    void countDown(int& counter, int ms, const std::function<bool()>& done);
    void drain();
    void idleDrain();
    void armIdleDrain();
    void pumpOnce();
    void portFailed(const std::string& reason);
    void tick20();
    void wakeTick20();
    void tick100();
    void tick1000();
    void resetReceiver();

    SessionState& state_;
    EventLoop& loop_;
    SerialPort& port_;
    Prompts& prompts_;
    ErrorReporter& errors_;
    ByteHandler handler_;
    std::function<void()> ended_;
    std::function<void()> coinDisplayReset_;
    std::deque<std::uint8_t> queue_;
    RepeatingTimer timer1_, timer2_, timer3_;
    EventLoop::TimerId idleDrainId_ = 0;
    EventLoop::TimerId closeId_ = 0;
    EventLoop::TimerId hangUpId_ = 0;
    std::vector<SpentWait>* spentWaits_ = nullptr;
    bool ticking_ = false;
    int waitDepth_ = 0;
    int holdDepth_ = 0;
    long long ticks_ = 0;
};

}  // namespace vantor
