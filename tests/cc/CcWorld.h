#pragma once

#include <array>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "LinkWorld.h"
#include "RecordedProgress.h"
#include "ScratchFolder.h"
#include "catalogue/Text.h"
#include "cc/CcFamily.h"

namespace vantor::test {

/// Bytes of a packet or a frame as text.
inline std::string bytes(std::initializer_list<int> values) {
    std::string text;
    for (const int value : values) {
        text.push_back(static_cast<char>(static_cast<unsigned char>(value)));
    }
    return text;
}

/// The box with a CC mech behind it, for one port. Knobs at the top; `-1` means never.
class CcBox {
  public:
    explicit CcBox(FakePort& port) : port_(port) {}

    std::map<int, int> words;  ///< the EEPROM; a missing word is 0
    bool serialMode = true;    ///< false: the box never confirms it
    int openingsIgnored = 0;   ///< so many sessions do not open
    int brokenSum = -1;        ///< word whose reply has a wrong sum
    int silentRead = -1, silentWrite = -1;
    int refusedWrite = -1;
    int stuckWord = -1;                        ///< acknowledged, but keeps its old value
    std::string identity = "I1.2\r";           ///< a Sentinel's answer to "TKI"
    std::map<int, std::string> replacedReply;  ///< a Sentinel's reply to the read of a word
    std::deque<std::string> coins;             ///< a Sentinel's coin replies, then silence
    bool sentinel = false;
    int wordWrites = 0;
    std::vector<std::string> commands;  ///< a Sentinel's, whole

    std::string reply(std::string_view request) {
        if (port_.sent.ends_with("</break>" + std::string(20, '\x1B'))) {
            serial_ = false;
            return "*R\r";
        }
        if (!serial_) {
            const bool enters = serialMode && (request == "$05" || request == "$06");
            serial_ = enters;
            return enters ? "*S\r" : "";
        }
        if (request == "\x1B") return "";
        return sentinel ? character(request) : packet(request);
    }
    [[nodiscard]] bool inSerialMode() const { return serial_; }

  private:
    std::string packet(std::string_view request) {
        const auto at = [&](std::size_t i) { return static_cast<unsigned char>(request[i]); };
        if (request == "xx") return openingsIgnored-- > 0 ? "" : "\x05";
        if (request == "yy") return "\x05";
        if (request.size() == 3 && at(0) == 0x7B) {
            if (at(1) == silentRead) return "";
            const int word = words[at(1)];
            const int sum = 0x3B + word / 256 + word % 256 + (at(1) == brokenSum ? 1 : 0);
            return bytes({0x3B, word / 256, word % 256, sum % 256});
        }
        if (request.size() == 5 && at(0) == 0x7A) {
            if (at(1) == silentWrite) return "";
            if ((at(0) + at(1) + at(2) + at(3)) % 256 != at(4)) return "";
            if (at(1) == refusedWrite) return "\x06";
            ++wordWrites;
            if (at(1) != stuckWord) words[at(1)] = at(2) * 256 + at(3);
            return "\x05";
        }
        return "";
    }

    std::string character(std::string_view request) {
        if (request.size() != 1) return request == "\r#" ? "%" : "";
        command_ += request;
        if (command_ == "TKI") {
            command_.clear();
            return openingsIgnored-- > 0 ? "" : identity;
        }
        if (command_ == "\r" || command_ == "\r#") {
            if (command_ == "\r#") command_.clear();
            return std::string(request);
        }
        if (request != "\r") return std::string(request);
        commands.push_back(command_);
        const std::string command = std::exchange(command_, {});
        return "\r" + answerTo(command);
    }

    std::string answerTo(const std::string& command) {
        if (command == "M02070306\r") {
            if (coins.empty()) return "";
            const std::string coin = coins.front();
            coins.pop_front();
            return coin;
        }
        const int instruction = std::stoi(command.substr(3, 2), nullptr, 16);
        const int address = instruction % 64;
        if (command[0] == 'M') {
            if (address == silentRead) return "";
            if (replacedReply.contains(address)) return replacedReply[address];
            const auto word = static_cast<unsigned>(words[address]);
            return "ZZR" + hex(word % 256, 2) + "  " + hex(word / 256, 2) + "\r";
        }
        if (instruction / 64 == 1) {
            ++wordWrites;
            const int low = std::stoi(command.substr(5, 2), nullptr, 16);
            const int high = std::stoi(command.substr(7, 2), nullptr, 16);
            if (address != stuckWord) words[address] = high * 256 + low;
            written_ = address;
        }
        if (command == "W0000\r" && written_ == silentWrite && silentWrite >= 0) return "";
        return "ZZ\r";
    }

    FakePort& port_;
    bool serial_ = false;
    std::string command_;
    int written_ = -1;
};

/// The Coin Controls family on a fake port in virtual time, with a mech behind the box.
struct CcWorld : LinkWorld {
    ScratchFolder scratch;
    std::filesystem::path folder = scratch.path;
    RecordedProgress progress;
    CcBox box{port};
    CcFamily cc{state, link, check, prompts, errors, progress, receiver.sinks};

    explicit CcWorld(std::string_view model) {
        state.app.folder = folder;
        select(kCoinControls, model);
        families.add(cc);
        box.sentinel = model == "Sentinel";
        for (int i = 0; i < state.mech.info.memorySize; ++i) box.words[i] = (i * 40503) % 65536;
        port.responder = [this](std::string_view request) { return box.reply(request); };
        // What the check of a stuck box would ask.
        port.answer("S", "N00000 00000 00000 00000 00 V1.95\r");
        receiver.sinks.requestCoinData = [this] { cc.coinData().requestCcCoinData(); };
    }

    /// Everything told so far, a line each: title, text and icon of a critical box.
    [[nodiscard]] std::string told() const {
        std::string all;
        for (const Prompt& prompt : prompts.asked) {
            all += (prompt.icon == PromptIcon::critical ? "! " : "") + prompt.title + ": " +
                   prompt.text + "\n";
        }
        return all;
    }
    [[nodiscard]] bool inCommandMode() const {
        return !state.box.serialModeFlag && !box.inSerialMode();
    }
    /// The old image as if it had been read from the mech just now.
    void takeMemoryAsRead() {
        for (int i = 0; i < state.mech.info.memorySize; ++i) state.images.old[i] = box.words[i];
        state.noteOldImage(true);
    }
};

inline std::string opening(std::string_view setUp) {
    return "#80" + std::string(setUp) + escapes(25) + "$05xx";
}
inline std::string leaving() {
    return "<break></break>" + escapes(20);
}

/// The read of words first..last of an I2C mech.
inline std::string readPackets(int first, int last) {
    std::string all;
    for (int i = first; i <= last; ++i) all += bytes({0x7B, i, (i + 0x7B) % 256});
    return all;
}

}  // namespace vantor::test
