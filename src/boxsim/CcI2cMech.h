#pragma once

#include <vector>

#include "boxsim/EepromWords.h"
#include "boxsim/SerialMech.h"

namespace vantor::boxsim {

struct I2cModel;

/// A Coin Controls mech on the box's I2C channel. It cuts what the PC sends into packets by the
/// first byte:
///
///     78 78              opens the channel            05
///     79 79              closes it                    05
///     7B a s             reads word a                 3B hi lo s
///     7A a hi lo s       writes word a                05, or 06 = refused
///     7F 1F 9E           C120, 435, 450: a coin, please
///     FF FF              220B, 335: a coin, please    3F data s, when the next one falls
///
/// A sum s is that of the bytes before it; a packet with a wrong one is not answered. Any other
/// byte is skipped, and so is the beginning of a packet that stops coming.
class CcI2cMech final : public SerialMech {
  public:
    CcI2cMech(const MechModel& model, MechLine& line);

    void commandSeen(std::string_view command) override;
    void serialOpened(std::string_view modeCommand) override;
    void serialClosed() override;
    void fromPc(std::uint8_t byte) override;
    void coinInSerialMode(const CoinReading& reading) override;

    [[nodiscard]] std::optional<int> channelFor(const CoinReading& reading,
                                                std::span<const std::uint8_t> prom) const override;
    [[nodiscard]] std::vector<MemoryCell> memory() const override { return words_.cells(); }
    [[nodiscard]] std::set<int> changedSinceRead() const override {
        return words_.changedSinceRead();
    }
    [[nodiscard]] std::vector<ByteWindow> windows(int channel) const override;
    bool setMemory(int number, std::string_view content) override;
    [[nodiscard]] std::string savedMemory() const override { return words_.fileText(); }
    /// "long-frames" on|off: C120 and 435 send their coin frame with one more data byte.
    bool setOption(std::string_view name, std::string_view value) override;

  private:
    void act();
    void switchChannel(bool open);
    void readWord();
    void writeWord();
    void armCoin();
    void acknowledge(Micros ownTime);
    void refuse();
    void sendSummed(std::string bytes, Micros ownTime);
    [[nodiscard]] std::size_t packetLength() const;
    [[nodiscard]] bool sumHolds() const;

    const I2cModel& model_;
    EepromWords words_;
    bool interfaceOn_ = false;  ///< "#80" was sent
    bool channelOpen_ = false;
    bool barred_ = false;  ///< a fault keeps the channel shut
    bool longFrames_ = false;
    bool armed_ = false;
    Micros armedUntil_{0};
    std::vector<std::uint8_t> packet_;
    Micros lastByte_{0};
};

}  // namespace vantor::boxsim
