#pragma once

#include "boxsim/EchoTerminal.h"
#include "boxsim/EepromWords.h"
#include "boxsim/SerialMech.h"

namespace vantor::boxsim {

/// The Sentinel: text commands for a serial EEPROM of 64 words and for its sensors. What follows
/// the echo:
///
///     M00 aa 0102 CR          reads word aa - 80            ZZR low ZZ high CR
///     W00 30 CR               write enable                  ZZW CR
///     W00 aa CR               erases word aa - C0
///     W00 aa low high CR      writes word aa - 40
///     W00 00 CR               write disable
///     M02070306 CR            the next coin, please         a pair of digits per sensor, CR
///
/// All numbers are hexadecimal. A refused command is answered by ZZE CR.
class SentinelMech final : public SerialMech {
  public:
    SentinelMech(const MechModel& model, MechLine& line);

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
    /// "version" TEXT: what "TKI" gives ("I1.2"; "E1" for stuck lines); "end-mark" on|off: "%"
    /// follows "#".
    bool setOption(std::string_view name, std::string_view value) override;

  private:
    void run(std::string_view command);
    void read(int instruction);
    void write(std::string_view digits);
    void change(int instruction, std::string_view data);
    void say(std::string_view line, Micros ownTime);

    EepromWords words_;
    EchoTerminal terminal_;
    bool writeEnabled_ = false;
    bool coinAsked_ = false;
    int stuck_ = -1;  ///< the word that an erase has left as it was
};

}  // namespace vantor::boxsim
