#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "LinkWorld.h"
#include "RecordedProgress.h"
#include "mars/MarsFamily.h"

namespace vantor::test {

/// The socket of the box with a PROM in it. Knobs at the top.
class PromSocket {
  public:
    std::string cells = std::string(512, '0');  ///< one hexadecimal digit per address
    bool burns = true;                          ///< false: programming lines change nothing
    bool acknowledges = true;
    bool answersReads = true;
    int missingLine = -1;      ///< data line (0..31) that never comes
    std::string replacedLine;  ///< comes in its place when not empty
    int reads = 0;

    std::string reply(std::string_view request) {
        if (request == "A") return dataLines(16);
        if (request == "K") return dataLines(32);
        if (request.starts_with("P") && request.ends_with("\r")) {
            const auto address = std::stoul(std::string(request.substr(1, 3)), nullptr, 16);
            const std::string_view digits = request.substr(4, request.size() - 5);
            if (burns) cells.replace(address, digits.size(), digits);
            return acknowledges ? "Z\r" : "";
        }
        return "";
    }

  private:
    std::string dataLines(int count) {
        ++reads;
        if (!answersReads) return "";
        std::string all;
        for (int line = 0; line < count; ++line) {
            if (line == missingLine) {
                all += replacedLine;
                continue;
            }
            all += std::string("R") + "01"[line / 16] + "0123456789ABCDEF"[line % 16] + "0";
            for (int i = 0; i < 16; ++i) {
                all += ' ';
                all += cells[static_cast<std::size_t>(16 * line + i)];
            }
            all += '\r';
        }
        return all;
    }
};

/// The Mars family on a fake port in virtual time, with a PROM in the socket.
struct MarsWorld : LinkWorld {
    RecordedProgress progress;
    PromSocket socket;
    MarsFamily mars{state, link, prompts, errors, progress};

    explicit MarsWorld(std::string_view model = "ME111", int promSizeCode = 0) {
        select(kMars, model);
        families.add(mars);
        receiver.sinks.promLine = [this](std::string_view line) { mars.parsePromLine(line); };
        port.responder = [this](std::string_view request) { return socket.reply(request); };
        state.prom.promSizeCode = promSizeCode;
        state.prom.segmentSelected[0] = true;
    }

    /// Six limits of one channel, in column order.
    void setLimits(int channel, const std::array<int, 6>& limits) {
        for (int column = 1; column <= 6; ++column) {
            state.limits.channelLimits[channel][column] =
                limits.at(static_cast<std::size_t>(column - 1));
        }
    }
    [[nodiscard]] std::array<int, 6> limitsOf(int channel) const {
        std::array<int, 6> limits{};
        for (int column = 1; column <= 6; ++column) {
            limits.at(static_cast<std::size_t>(column - 1)) =
                state.limits.channelLimits[channel][column];
        }
        return limits;
    }
    /// The sample segment whose programming lines stand in the tests as literals.
    void setSampleSegment(int firstChannel = 1) {
        setLimits(firstChannel, {300, 4095, 1000, 1100, 2000, 2100});
        setLimits(firstChannel + 1, {301, 320, 1001, 1101, 2001, 2101});
        setLimits(firstChannel + 3, {400, 420, 1200, 1250, 2300, 2350});
        setLimits(firstChannel + 4, {1, 2, 3, 4, 5, 6});
        setLimits(firstChannel + 5, {500, 600, 700, 800, 900, 1023});
        state.coinset.referenceCode = "GBP01";
        state.coinset.version = "1.2";
        mars.rebuildImage();
    }
};

/// Cells first..last of an image as hexadecimal digits; "?" for what is no nibble.
inline std::string digits(const MechImage& image, int first, int last) {
    std::string text;
    for (int cell = first; cell <= last; ++cell) {
        const int value = image[cell];
        text += value >= 0 && value <= 15 ? "0123456789ABCDEF"[value] : '?';
    }
    return text;
}

}  // namespace vantor::test
