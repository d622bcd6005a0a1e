#pragma once

#include <array>

#include "boxsim/EchoTerminal.h"
#include "boxsim/NriVariants.h"
#include "boxsim/SerialMech.h"

namespace vantor::boxsim {

/// What all NRI mechs have in common: blocks of text, an answer to "I", "T" for the next coin, and
/// under their own mode command only. In the mode of the box's interface that answers instead.
class NriMech : public SerialMech {
  public:
    void serialOpened(std::string_view modeCommand) override;
    void serialClosed() override;
    void fromPc(std::uint8_t byte) override;
    void coinInSerialMode(const CoinReading& reading) override;

    [[nodiscard]] std::optional<int> channelFor(const CoinReading& reading,
                                                std::span<const std::uint8_t> prom) const override;
    [[nodiscard]] std::vector<MemoryCell> memory() const override;
    [[nodiscard]] std::vector<ByteWindow> windows(int channel) const override = 0;
    bool setMemory(int number, std::string_view content) override;
    /// 28 lines, number and quoted text.
    [[nodiscard]] std::string savedMemory() const override;
    /// "mode" $01|$05|$23|$25: the mode command under which it hears; "identity" TEXT: its answer
    /// to "I"; "interface" TEXT: the version of the box's interface ("I1.2");
    /// "variant" G40-x0xx and so on, of a mech that has variants.
    bool setOption(std::string_view name, std::string_view value) override;

  protected:
    NriMech(const MechModel& model, MechLine& line);

    /// A byte in the mech's own mode.
    virtual void heard(std::uint8_t byte) = 0;
    /// A new session: whatever was half said is forgotten.
    virtual void forget() = 0;
    /// The answer to "T", line ends included.
    [[nodiscard]] virtual std::string readingText(const CoinReading& reading) const = 0;
    /// Bits of the tube that takes a channel's coins in a coin record: 4, 2, 1, or 0 = cash box.
    [[nodiscard]] virtual int route(int channel) const = 0;

    void identify();
    void armCoin();
    void disarmCoin() { coinAsked_ = false; }
    /// Says lines, each ended here; a block that is not there or a refused request is "?".
    void sayLine(std::string_view line);
    void sayLines(std::string_view text, std::size_t width);
    [[nodiscard]] const NriVariant& variant() const { return variant_; }
    [[nodiscard]] bool hasBlock(int number) const {
        return number >= 1 && number <= variant_.blocks;
    }
    [[nodiscard]] const std::string& block(int number) const;
    void setBlock(int number, std::string_view text);
    /// The values of a channel's parameters among those of the sensors.
    [[nodiscard]] std::vector<int> parameterValues(int channel, const CoinReading& reading) const;
    /// The windows of a new mech's channel, parameter by parameter.
    [[nodiscard]] std::vector<ByteWindow> factoryWindows(int channel) const;

  private:
    [[nodiscard]] std::size_t sensorOf(int channel, int parameter) const;
    void sendRecord(const CoinReading& reading);

    static constexpr std::size_t kFileBlocks = 28;
    const NriVariant& variant_;
    std::array<std::string, kFileBlocks + 1> blocks_{};
    EchoTerminal interface_;
    std::string ownMode_;
    std::string identity_;
    bool hasVariants_;
    bool barred_ = false;  ///< a fault keeps it silent until serial mode is left
    bool coinAsked_ = false;
    bool measuring_ = false;  ///< "T" was given since serial mode was entered
};

/// A number as two hexadecimal digits.
[[nodiscard]] std::string hexPair(int value);

}  // namespace vantor::boxsim
