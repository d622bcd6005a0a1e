#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "FixedCalendar.h"
#include "LinkWorld.h"
#include "RecordedProgress.h"
#include "ScratchFolder.h"
#include "catalogue/Text.h"
#include "nri/NriFamily.h"

namespace vantor::test {

/// An NRI mech behind the box, in answers by command. Knobs at the top.
class ScriptedMech {
  public:
    bool handshake = true;
    std::string identity;                        ///< answer to "I"; empty = silence
    std::map<std::string, std::string> answers;  ///< by whole command; '|' stands for CR
    std::set<std::string> silentTo;              ///< commands without an answer
    std::set<std::string> lateTo;                ///< commands answered 560 ms late
    int refusedPair = 0;                         ///< the n-th pair of a write gets "?"
    int lostPair = 0;                            ///< the n-th pair of a write gets nothing
    std::string modeWanted;                      ///< only this mode command brings an answer
    std::vector<std::string> coins;              ///< answers to "T", one after the other
    /// What the writes stored, by command.
    std::map<std::string, std::string> stored;
    int delayMs = 5;  ///< of the reply just given

    std::string reply(std::string_view request, std::string_view mode) {
        delayMs = 5;
        const std::string text(request);
        if (!modeWanted.empty() && mode != modeWanted) return "";
        if (text == "\x1B" || text == "C00" || text == "W" || text.starts_with("$")) return "";
        if (text == "I") return command_.empty() && !identity.empty() ? identity + "\r" : "";
        if (text == "T") return nextCoin();
        return handshake ? handshakeReply(text) : plainReply(text);
    }

  private:
    std::string nextCoin() {
        if (coins.empty()) return "";
        const std::string coin = coins.front();
        coins.erase(coins.begin());
        return lines(coin);
    }
    static std::string lines(std::string text) {
        for (char& c : text) c = c == '|' ? '\r' : c;
        return text + "\r";
    }
    std::string answer(const std::string& command) {
        if (silentTo.contains(command)) return "";
        if (lateTo.contains(command)) delayMs = 560;
        return answers.contains(command) ? lines(answers.at(command)) : "";
    }
    std::string handshakeReply(const std::string& text) {
        if (text == "X" || text == "Z") {
            command_ = text;
            return silentTo.contains(text) ? "" : "\x06";
        }
        if (command_ == "X") {
            command_.clear();
            return answer("X" + text);
        }
        if (command_ == "Z") {
            command_ = "Z" + text;
            pairs_ = 0;
            return "";
        }
        ++pairs_;
        if (pairs_ == lostPair) return "";
        if (pairs_ == refusedPair) return "?";
        stored[command_] += text;
        return "\x06";
    }
    std::string plainReply(const std::string& text) {
        if (text.size() == 1 && std::string("DBEF").find(text) != std::string::npos) {
            command_ = text;
            return "";
        }
        if (!command_.empty()) {
            stored[command_] += text == "\r" ? "|" : text;
            if (text == "\r" && (command_ != "D" || ++returns_ % 2 == 0)) command_.clear();
            return "";
        }
        return answer(text);
    }

    std::string command_;
    int pairs_ = 0;
    int returns_ = 0;
};

/// The NRI family on a fake port in virtual time, with a mech behind the box.
struct NriWorld : LinkWorld {
    RecordedProgress progress;
    FixedCalendar calendar{{2026, 11, 9}};
    ScriptedMech mech;
    int probes = 0;
    bool interfaceAnswers = false;
    std::string interfaceVersion = "I0.0";
    std::string readings;  ///< handed over, "1 2 3;"
    ScratchFolder scratch;
    std::filesystem::path folder = scratch.path;
    NriFamily nri{
        state,
        link,
        check,
        prompts,
        errors,
        progress,
        calendar,
        receiver.sinks,
        {.open = [this] { return probe(); }, .close = [this] { check.leaveSerialMode(); }}};

    explicit NriWorld(std::string_view model) {
        select(kNri, model);
        families.add(nri);
        std::filesystem::create_directories(folder / "CoinSets");
        state.app.folder = folder;
        mech.handshake = nriModel(model).handshake;
        mech.identity = nriModel(model).answers[0];
        fillMech();
        port.responder = [this](std::string_view request) { return box(request); };
        receiver.sinks.reading = [this] {
            for (int p = 0; p < state.n(); ++p) {
                readings += std::to_string(state.gather.latestReading[p]) + " ";
            }
            readings += ";";
        };
    }
    /// What was sent, runs of ESC as <n esc>.
    [[nodiscard]] std::string transcript() const {
        std::string text;
        int run = 0;
        for (const char c : port.sent + " ") {
            if (c == '\x1B') {
                ++run;
                continue;
            }
            if (run > 0) text += "<" + std::to_string(run) + " esc>";
            run = 0;
            text += c == '\r' ? '|' : c;
        }
        text.pop_back();
        return text;
    }
    [[nodiscard]] bool inCommandMode() const { return !state.box.serialModeFlag && !serial_; }

    static constexpr const char* kLeave = "<break></break><20 esc>";
    static constexpr const char* kReadFailure =
        "Error: No Communication with the NRI Coin Mech\r\n or Wrong Mech Type\r\n"
        "Check Coin Mech Type and Connections\n";

  private:
    bool probe() {
        ++probes;
        EXPECT_EQ(state.mech.manufacturer + "." + state.mech.mechType, "CC.Sentinel");
        state.box.sentinelVersion = interfaceVersion;
        return interfaceAnswers;
    }
    std::string box(std::string_view request) {
        if (port.sent.ends_with("<break></break>" + escapes(20))) {
            serial_ = false;
            return "*R\r";
        }
        if (!serial_) {
            if (request == "S") return "N00000 00000 00000 00000 00 V1.95\r";
            if (!request.starts_with("$")) return "";
            serial_ = true;
            mode_ = request;
            return "*S\r";
        }
        const std::string reply = mech.reply(request, mode_);
        if (reply.empty()) return "";
        port.receive(reply, mech.delayMs);
        return "";
    }
    void fillMech() {
        const NriShape shape = nriShape(state.mech.mechType);
        for (const NriReadStep& step : nriReadSteps(shape)) {
            mech.answers[step.command] = sampleBlock(shape, step);
        }
    }
    static std::string sampleBlock(const NriShape& shape, const NriReadStep& step);

    bool serial_ = false;
    std::string mode_;
};

inline std::string NriWorld::sampleBlock(const NriShape& shape, const NriReadStep& step) {
    const auto times = [](int count, std::string_view text) {
        std::string all;
        for (int i = 0; i < count; ++i) all += text;
        return all;
    };
    const std::string& command = step.command;
    if (!shape.model.handshake) {
        if (command == "Z") return std::string(28, '.') + "07/03/09" + "....";
        if (command == "Y") return "005|060|050|040|030|020|010";
        if (command == "X") {
            return "HEADER 1234" + std::string("0001000200030004") +
                   "00050010002000500100020005001000";
        }
        const std::string c = command.substr(1);
        return "20" + c + "|202|203|204|10" + c + "|102|103|104";
    }
    if (command == "X02") return "070309";
    if (command == "X0F" && shape.model.blocks == NriBlocks::routedTubes) {
        return "ABCDEF01" + std::string("0001000200030004") + "00050010002000500100020000000000";
    }
    if (command == "X0F") return "0102040810200102040810FF";
    if (command == "X10" && shape.model.blocks == NriBlocks::outputs) {
        return "83" + std::string("05060708090A0B0C0D0E0F10");
    }
    if (command == "X10" || command == "X11") return "123456789ABC";
    if (command == "X12") return "0102040810200344810000C1";
    if (command == "X13") return times(12, "412056");
    if (command == "X19") return "0A141E28323C";
    if (command == "X1A" || command == "X1B") return command == "X1A" ? "46" : "50";
    if (step.block >= 4 && step.block <= 15) {
        return times(6, hex(static_cast<unsigned>(0xA0 + step.block), 2) + "10");
    }
    return "AB" + command.substr(1);
}

}  // namespace vantor::test
