#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "boxsim/Fault.h"
#include "platform/EventLoop.h"
#include "platform/SerialPort.h"

namespace vantor::boxsim {

class SimulatedMech;

/// What is in the PROM socket. An E+1 device has two switches (on the bench: switch 1 on and
/// switch 2 off at the start, and they keep their place when another device is put in).
enum class PromKind { none, bipolar, e1 };

/// One byte on the wire, for transcripts.
struct WireByte {
    Micros at{};  ///< when its stop bit ended
    bool fromBox = false;
    std::uint8_t byte = 0;
};

/// The simulated programmer box with a mech plugged in. It speaks byte by byte at the pace of
/// 9600 baud (10 bits a byte) on the event loop it is given, and answers literal bytes of its
/// own; it shares no encoder or decoder with the program.
class SimulatedBox {
  public:
    using Output = std::function<void(std::uint8_t)>;
    using Unplugged = std::function<void(const std::string& reason)>;

    SimulatedBox(EventLoop& loop, std::uint64_t seed);
    ~SimulatedBox();
    SimulatedBox(const SimulatedBox&) = delete;
    SimulatedBox& operator=(const SimulatedBox&) = delete;

    // --- the line: what a port adapter calls
    /// Bytes written by the PC, queued on the line behind what is still leaving.
    void fromPc(std::span<const std::uint8_t> bytes);
    void setBreak(bool on);
    void setOutput(Output output, Unplugged unplugged);
    /// When the last byte written so far will have left the PC.
    [[nodiscard]] Micros lineFreeAt() const;
    [[nodiscard]] bool pluggedIn() const;

    // --- the bench: what a technician's hands do
    /// Plugs a validator of a catalogue model in (any family; the mech behaves as its family does);
    /// false, and nothing changes, for a model that the catalogue does not list.
    bool plugValidator(std::string_view maker, std::string_view model);
    /// Plugs the last one in again, with the memory that it has; false when there never was one.
    bool replugValidator();
    void unplugValidator();
    [[nodiscard]] std::string validator() const;  ///< model code; empty when none
    /// The mech behind the box; nullptr when none is plugged in.
    [[nodiscard]] SimulatedMech* mech();
    /// `words` 256 (1K) or 512 (2K).
    void insertProm(PromKind kind, int words, std::span<const std::uint8_t> contents = {});
    [[nodiscard]] PromKind promKind() const;
    [[nodiscard]] std::span<const std::uint8_t> promCells() const;  ///< nibbles; empty = no PROM
    void setSwitch(int number, bool on);                            ///< 1 or 2, of the E+1 device
    [[nodiscard]] bool switchOn(int number) const;
    /// Cells of the PROM, and words of the mech, that the PC has changed and not read since.
    [[nodiscard]] std::set<int> promChangedSinceRead() const;
    [[nodiscard]] std::set<int> mechChangedSinceRead() const;
    /// Names of the coins and slugs that the plugged model's bench has.
    [[nodiscard]] std::vector<std::string> coins() const;
    /// Drops `count` pieces of a coin or slug, one every `everyMs`; false for an unknown name. Each
    /// piece is drawn from the population of that coin in the plugged mech. Letter case of the name
    /// is ignored.
    bool drop(std::string_view coin, int count = 1, int everyMs = 400);
    /// Drops one coin with these readings, one per sensor; a sensor without one reads 0.
    void dropRaw(std::span<const int> values);
    void dropRaw(int v1, int v2, int v3);
    /// Reports an event of the validator test: "A" to "I" for an accepted coin, "R" for a rejected
    /// one, "X" and two hexadecimal digits for a pattern of the outputs. False, and nothing
    /// happens, unless a validator is plugged in and being tested.
    bool reportTestEvent(std::string_view event);
    /// A silent box neither hears nor says anything.
    void setSilent(bool silent);
    /// The box sends its battery warning; in serial mode it waits until that is left.
    void batteryLow();
    void setVersion(std::string_view version);  ///< five characters, "V1.95" at the start
    void setBinaryOutput(bool offered);
    void setLineFeeds(bool on);        ///< lines end in CR LF
    void setReadyAtBreakEnd(bool on);  ///< "*R" comes at the end of the break
    /// For a line that cannot carry a break: 20 ESC in a row count as a long one.
    void setEscapesAloneAsBreak(bool on);
    void addFault(const Fault& fault);
    void clearFaults();
    /// How often a fault has struck since they were cleared last.
    [[nodiscard]] int faultsStruck() const;
    /// How many events of its sort each fault let through before it struck, in the order in which
    /// they were added: with faults that never strike, how often they could have.
    [[nodiscard]] std::vector<int> faultsLetThrough() const;
    void unplug();  ///< the port reports an error; nothing passes until replugged
    void replug();

    // --- what happened
    [[nodiscard]] bool inSerialMode() const;
    [[nodiscard]] bool coinDataOn() const;
    /// The box was told to test the validator: coins come as test events.
    [[nodiscard]] bool testing() const;
    [[nodiscard]] int unknownBytes() const;
    /// Every byte that left the PC or reached it since `clearTranscript` (of a very long session,
    /// the later part).
    [[nodiscard]] const std::vector<WireByte>& transcript() const;
    void clearTranscript();
    /// What the PC sent since `clearTranscript`, as one string, whatever faults did to it.
    [[nodiscard]] std::string sentByPc() const;
    /// Processing time of the box itself (not line time), summed since `clearTranscript`.
    [[nodiscard]] Micros ownTime() const;

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

/// The simulated box as the program's serial port, in the same process. One port to a box.
class SimulatedPort final : public SerialPort {
  public:
    /// `portNumber`: the only one that opens (COM1 by default).
    SimulatedPort(EventLoop& loop, SimulatedBox& box, int portNumber = 1);
    ~SimulatedPort() override;

    OpenResult open(int portNumber) override;
    void close() override;
    [[nodiscard]] bool isOpen() const override;
    [[nodiscard]] bool write(std::span<const std::uint8_t> bytes) override;
    void setBreak(bool on) override;
    void discardInput() override;
    void setReceiver(Receiver receiver) override;
    void setFailureHandler(FailureHandler handler) override;

  private:
    void failed(const std::string& reason);

    EventLoop& loop_;
    SimulatedBox& box_;
    int portNumber_;
    bool open_ = false;
    bool breaking_ = false;
    EventLoop::TimerId failureReport_ = 0;
    Receiver receiver_;
    FailureHandler failureHandler_;
};

}  // namespace vantor::boxsim
