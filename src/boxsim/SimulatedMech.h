#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "boxsim/Random.h"
#include "platform/EventLoop.h"

namespace vantor::boxsim {

class FaultInjector;

/// The mech's side of the box while serial mode passes bytes through.
class MechLine {
  public:
    virtual ~MechLine() = default;
    /// Bytes for the PC, after `ownTime` of the mech's own work; one call is one reply. Outside
    /// serial mode they go nowhere.
    virtual void reply(std::span<const std::uint8_t> bytes, Micros ownTime) = 0;
    /// For what a mech does by itself, later.
    [[nodiscard]] virtual EventLoop& loop() = 0;
    /// What goes wrong in the mech itself.
    [[nodiscard]] virtual FaultInjector& faults() = 0;
};

/// The readings of one parameter that a channel takes, ends included; 0..0 takes any.
struct ByteWindow {
    int low = 0;
    int high = 0;
};

/// What the sensors say of one coin: parameter p (1-based) at p - 1.
using CoinReading = std::vector<int>;

/// One cell of a mech's own memory: a 16-bit word as four hexadecimal digits, or a block of text.
struct MemoryCell {
    int number = 0;  ///< as the family counts: words from 0, blocks from 1
    std::string content;
};

/// The validator plugged into the box. A family overrides what it knows; the rest behaves like a
/// mech that is there and says nothing.
class SimulatedMech {
  public:
    virtual ~SimulatedMech() = default;

    // --- command mode
    /// The status line says that a validator is connected.
    [[nodiscard]] virtual bool seen() const { return true; }
    /// The answer to "Y": sensor values with no coin.
    [[nodiscard]] virtual std::array<int, 3> idleValues() const { return {}; }
    /// The box answers "*".
    [[nodiscard]] virtual bool offersBinaryOutput() const { return false; }
    /// Every known command, when the box has acted on it ("N", "I", "C08", "#80", ...).
    virtual void commandSeen(std::string_view command) { (void)command; }
    /// The lines that a coin gives while coin data is on.
    [[nodiscard]] virtual std::vector<std::string> coinLines(const CoinReading& reading) const {
        (void)reading;
        return {};
    }
    /// The channel (0-based) that takes a coin in the validator test, or nothing for a coin that
    /// is rejected. `prom` is what lies in the box's socket, address by address; may be empty.
    [[nodiscard]] virtual std::optional<int> channelFor(const CoinReading& reading,
                                                        std::span<const std::uint8_t> prom) const {
        (void)reading;
        (void)prom;
        return std::nullopt;
    }
    /// The letter with which the box reports a coin of that channel.
    [[nodiscard]] virtual char coinLetter(int channel) const {
        return static_cast<char>('A' + channel);
    }

    // --- serial mode
    /// The box has entered serial mode with `modeCommand` ("$05").
    virtual void serialOpened(std::string_view modeCommand) { (void)modeCommand; }
    virtual void serialClosed() {}
    virtual void fromPc(std::uint8_t byte) { (void)byte; }
    /// A coin falls while the box is in serial mode.
    virtual void coinInSerialMode(const CoinReading& reading) { (void)reading; }

    // --- the bench
    /// Names of the coins and slugs that can be dropped.
    [[nodiscard]] virtual std::vector<std::string> coins() const { return {}; }
    /// One piece of a coin or slug, drawn from its population; nothing for an unknown name.
    [[nodiscard]] virtual std::optional<CoinReading> draw(std::string_view coin,
                                                          Random& random) const {
        (void)coin;
        (void)random;
        return std::nullopt;
    }
    /// The mech's own memory; empty when it has none.
    [[nodiscard]] virtual std::vector<MemoryCell> memory() const { return {}; }
    /// The coin windows of a channel (from 1), parameter by parameter, as the mech itself takes
    /// them from its memory; empty for a mech that has none.
    [[nodiscard]] virtual std::vector<ByteWindow> windows(int channel) const {
        (void)channel;
        return {};
    }
    /// Cells that the PC has changed and not read since, of a mech that keeps account of it.
    [[nodiscard]] virtual std::set<int> changedSinceRead() const { return {}; }
    /// Puts a cell's content in place, past all protection; false, and nothing changes, for a cell
    /// that is not there or a content that it cannot hold.
    virtual bool setMemory(int number, std::string_view content) {
        (void)number;
        (void)content;
        return false;
    }
    /// The memory as technicians save it, a cell a line, ended by CR LF.
    [[nodiscard]] virtual std::string savedMemory() const { return {}; }
    /// Variants of a model that differ in how they speak; false for what this mech does not know.
    virtual bool setOption(std::string_view name, std::string_view value) {
        (void)name;
        (void)value;
        return false;
    }
};

/// Words eight to a line behind the number of the first, blocks one to a line.
[[nodiscard]] std::string memoryText(std::span<const MemoryCell> cells);

/// The mech of a catalogue model; nullptr when the maker's catalogue has no such model.
[[nodiscard]] std::unique_ptr<SimulatedMech> makeMech(std::string_view maker,
                                                      std::string_view model, MechLine& line);

}  // namespace vantor::boxsim
