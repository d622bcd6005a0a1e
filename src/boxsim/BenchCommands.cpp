#include "boxsim/BenchCommands.h"

#include <algorithm>
#include <array>
#include <exception>
#include <functional>
#include <optional>

#include "boxsim/PromFile.h"
#include "boxsim/PromSocket.h"
#include "boxsim/SimulatedMech.h"
#include "boxsim/Wire.h"
#include "catalogue/MechCatalogue.h"
#include "catalogue/Text.h"
#include "platform/Files.h"

namespace vantor::boxsim {

namespace {

using Words = std::span<const std::string>;

constexpr int kMostDrops = 1000;
constexpr int kLongestPause = 600'000;  // ms
constexpr std::size_t kVersionLength = 5;
constexpr std::size_t kMostSensors = 16;

BenchResult wrong(std::string why) {
    return {.error = std::move(why), .reply = {}};
}

BenchResult shows(std::string what) {
    return {.error = {}, .reply = std::move(what)};
}

std::string lowered(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return result;
}

std::string inQuotes(std::string_view text) {
    return '"' + std::string(text) + '"';
}

std::optional<int> number(const std::string& word, int low, int high) {
    const auto value = decimalValue(word);
    if (!value || *value < low || *value > high) return std::nullopt;
    return value;
}

std::optional<bool> onOff(const std::string& word, std::string_view on = "on",
                          std::string_view off = "off") {
    const std::string which = lowered(word);
    if (which == on) return true;
    if (which == off) return false;
    return std::nullopt;
}

/// A word that switches something.
BenchResult switched(Words words, const std::function<void(bool)>& action) {
    const auto on = words.size() == 2 ? onOff(words[1]) : std::nullopt;
    if (!on) return wrong(words[0] + " needs on or off");
    action(*on);
    return {};
}

BenchResult drop(SimulatedBox& box, Words words) {
    // drop COIN [COUNT] [[every] MS]
    if (words.size() < 2) return wrong("drop needs a coin; \"coins\" lists them");
    int count = 1;
    int every = 400;
    std::size_t next = 2;
    if (next < words.size() && lowered(words[next]) != "every") {
        const auto given = number(words[next++], 1, kMostDrops);
        if (!given) return wrong("how many coins? A number from 1 to 1000");
        count = *given;
    }
    if (next < words.size()) {
        if (lowered(words[next]) == "every") ++next;
        const bool last = next + 1 == words.size();
        const auto given = last ? number(words[next], 1, kLongestPause) : std::nullopt;
        if (!given) return wrong("drop COIN [COUNT] [[every] MS]");
        every = *given;
    }
    if (box.validator().empty()) return wrong("no validator is plugged in");
    if (!box.drop(words[1], count, every)) {
        return wrong("there is no coin " + inQuotes(words[1]) + "; \"coins\" lists them");
    }
    return {};
}

BenchResult dropRaw(SimulatedBox& box, Words words) {
    if (words.size() < 4 || words.size() > 1 + kMostSensors) {
        return wrong("drop-raw needs three values, or as many as the mech has sensors");
    }
    std::vector<int> values;
    for (const std::string& word : words.subspan(1)) {
        const auto value = number(word, 0, 99999);
        if (!value) return wrong("a value is a number from 0 to 99999");
        values.push_back(*value);
    }
    if (box.validator().empty()) return wrong("no validator is plugged in");
    box.dropRaw(values);
    return {};
}

BenchResult report(SimulatedBox& box, const std::string& event) {
    if (box.reportTestEvent(event)) return {};
    return wrong("no validator is being tested");
}

BenchResult coin(SimulatedBox& box, Words words) {
    const std::string letter = words.size() == 2 ? upperCase(words[1]) : std::string();
    if (letter.size() != 1 || letter[0] < 'A' || letter[0] > 'I') {
        return wrong("coin needs a letter from A to I");
    }
    return report(box, letter);
}

BenchResult reject(SimulatedBox& box, Words words) {
    if (words.size() != 1) return wrong("reject stands alone");
    return report(box, "R");
}

BenchResult pattern(SimulatedBox& box, Words words) {
    const std::string digits = words.size() == 2 ? upperCase(words[1]) : std::string();
    if (digits.size() != 2 || !hexValue(digits)) {
        return wrong("pattern needs two hexadecimal digits");
    }
    return report(box, "X" + digits);
}

BenchResult coins(SimulatedBox& box, Words) {
    std::string list;
    for (const std::string& name : box.coins()) list += (list.empty() ? "" : ", ") + inQuotes(name);
    return shows(list.empty() ? "none" : list);
}

std::optional<std::vector<std::uint8_t>> savedProm(const std::string& file, std::string& error) {
    const auto text = readFile(file);
    if (!text) {
        error = "cannot read " + file;
        return std::nullopt;
    }
    auto cells = promCellsOf(*text);
    if (!cells) error = file + " is no saved PROM";
    return cells;
}

BenchResult insert(SimulatedBox& box, Words words) {
    // insert none | insert bipolar|e1 1K|2K [blank|FILE]
    constexpr std::string_view kUsage = "insert bipolar|e1|none 1K|2K [blank|FILE]";
    if (words.size() < 2 || words.size() > 4) return wrong(std::string(kUsage));
    const std::string kind = lowered(words[1]);
    if (kind == "none") {
        box.insertProm(PromKind::none, 0);
        return {};
    }
    const auto bipolar = onOff(kind, "bipolar", "e1");
    const auto small = words.size() >= 3 ? onOff(words[2], "1k", "2k") : std::nullopt;
    if (!bipolar || !small) return wrong(std::string(kUsage));
    const int size = *small ? PromSocket::kSmall : PromSocket::kLarge;
    std::vector<std::uint8_t> contents;
    if (words.size() == 4 && lowered(words[3]) != "blank") {
        std::string error;
        auto saved = savedProm(words[3], error);
        if (!saved) return wrong(error);
        if (saved->size() > static_cast<std::size_t>(size)) {
            return wrong(words[3] + " holds more than a 1K PROM takes");
        }
        contents = std::move(*saved);
    }
    box.insertProm(*bipolar ? PromKind::bipolar : PromKind::e1, size, contents);
    return {};
}

BenchResult turnSwitch(SimulatedBox& box, Words words) {
    const auto which = words.size() == 3 ? number(words[1], 1, 2) : std::nullopt;
    const auto on = which ? onOff(words[2]) : std::nullopt;
    if (!on) return wrong("switch 1|2 on|off");
    box.setSwitch(*which, *on);
    return {};
}

BenchResult validator(SimulatedBox& box, Words words) {
    // validator in [MODEL] | validator out
    const auto in = words.size() >= 2 ? onOff(words[1], "in", "out") : std::nullopt;
    if (!in || words.size() > (*in ? 3U : 2U)) return wrong("validator in [MODEL] | validator out");
    if (!*in) {
        box.unplugValidator();
        return {};
    }
    if (words.size() == 2) {
        return box.replugValidator() ? BenchResult{} : wrong("no model was plugged in before");
    }
    const auto models = mechModels();
    const auto found = std::find_if(models.begin(), models.end(),
                                    [&](const MechModel& row) { return row.code == words[2]; });
    if (found == models.end() || !box.plugValidator(found->maker, found->code)) {
        return wrong("there is no model " + inQuotes(words[2]));
    }
    return {};
}

BenchResult battery(SimulatedBox& box, Words words) {
    if (words.size() != 2 || lowered(words[1]) != "low") return wrong("battery low");
    box.batteryLow();
    return {};
}

BenchResult version(SimulatedBox& box, Words words) {
    if (words.size() != 2 || words[1].empty() || words[1].size() > kVersionLength) {
        return wrong("version needs a text of at most 5 characters");
    }
    box.setVersion(words[1]);
    return {};
}

BenchResult saveProm(SimulatedBox& box, Words words) {
    if (words.size() != 2) return wrong("save-prom needs a file name");
    if (box.promKind() == PromKind::none) return wrong("the socket is empty");
    try {
        writeFileWhole(words[1], promText(box.promCells()));
    } catch (const std::exception& error) {
        return wrong("cannot write " + words[1] + ": " + error.what());
    }
    return {};
}

BenchResult showProm(SimulatedBox& box, Words) {
    if (box.promKind() == PromKind::none) return shows("the socket is empty");
    return shows(promText(box.promCells()));
}

std::string firstDifference(std::span<const std::uint8_t> cells, std::size_t from,
                            std::span<const std::uint8_t> expected) {
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const std::size_t address = from + i;
        const auto shown = static_cast<int>(address);
        const std::string where = {
            'c', 'e', 'l', 'l', ' ', hexDigit(shown >> 8), hexDigit(shown >> 4), hexDigit(shown),
            ' '};
        if (address >= cells.size()) return where + "is not in the PROM";
        if (cells[address] != expected[i]) {
            return where + "holds " + hexDigit(cells[address]) + ", not " + hexDigit(expected[i]);
        }
    }
    return {};
}

BenchResult expectProm(SimulatedBox& box, Words words) {
    // expect-prom FILE | expect-prom ADDRESS DIGITS
    if (words.size() < 2 || words.size() > 3) return wrong("expect-prom FILE | ADDRESS DIGITS");
    std::size_t from = 0;
    std::vector<std::uint8_t> expected;
    if (words.size() == 2) {
        std::string error;
        auto saved = savedProm(words[1], error);
        if (!saved) return wrong(error);
        if (saved->size() != box.promCells().size()) return wrong("the PROM is of another size");
        expected = std::move(*saved);
    } else {
        const auto address = hexValue(words[1]);
        if (!address) return wrong("the address is a hexadecimal number");
        from = static_cast<std::size_t>(*address);
        for (const char c : words[2]) {
            const auto nibble = hexValue(std::string_view(&c, 1));
            if (!nibble) return wrong("the digits are hexadecimal");
            expected.push_back(static_cast<std::uint8_t>(*nibble));
        }
    }
    return wrong(firstDifference(box.promCells(), from, expected));
}

/// The cells of the plugged mech; none with the reason.
std::vector<MemoryCell> mechCells(SimulatedBox& box, std::string& error) {
    std::vector<MemoryCell> cells;
    if (box.mech() == nullptr) {
        error = "no validator is plugged in";
    } else if (cells = box.mech()->memory(); cells.empty()) {
        error = box.validator() + " keeps no memory of its own";
    }
    return cells;
}

BenchResult showMemory(SimulatedBox& box, Words) {
    std::string error;
    const auto cells = mechCells(box, error);
    return cells.empty() ? wrong(error) : shows(memoryText(cells));
}

BenchResult saveMemory(SimulatedBox& box, Words words) {
    if (words.size() != 2) return wrong("save-memory needs a file name");
    std::string error;
    if (mechCells(box, error).empty()) return wrong(error);
    try {
        writeFileWhole(words[1], box.mech()->savedMemory());
    } catch (const std::exception& failure) {
        return wrong("cannot write " + words[1] + ": " + failure.what());
    }
    return {};
}

BenchResult setMemory(SimulatedBox& box, Words words) {
    const auto cell = words.size() == 3 ? number(words[1], 0, 9999) : std::nullopt;
    if (!cell) return wrong("set-memory NUMBER CONTENT");
    std::string error;
    if (mechCells(box, error).empty()) return wrong(error);
    if (box.mech()->setMemory(*cell, words[2])) return {};
    return wrong("cell " + words[1] + " cannot hold " + inQuotes(words[2]));
}

BenchResult expectMemory(SimulatedBox& box, Words words) {
    // expect-memory FILE | expect-memory NUMBER CONTENT
    if (words.size() < 2 || words.size() > 3) return wrong("expect-memory FILE | NUMBER CONTENT");
    std::string error;
    const auto cells = mechCells(box, error);
    if (cells.empty()) return wrong(error);
    if (words.size() == 2) {
        const auto text = readFile(words[1]);
        if (!text) return wrong("cannot read " + words[1]);
        return wrong(*text == box.mech()->savedMemory() ? "" : "the memory is not " + words[1]);
    }
    const auto wanted = number(words[1], 0, 9999);
    const auto found = std::find_if(cells.begin(), cells.end(), [&](const MemoryCell& cell) {
        return wanted && cell.number == *wanted;
    });
    if (found == cells.end()) return wrong("there is no cell " + words[1]);
    if (found->content == words[2]) return {};
    return wrong("cell " + words[1] + " holds " + inQuotes(found->content) + ", not " +
                 inQuotes(words[2]));
}

BenchResult option(SimulatedBox& box, Words words) {
    if (words.size() != 3) return wrong("option NAME VALUE");
    if (box.mech() == nullptr) return wrong("no validator is plugged in");
    if (box.mech()->setOption(lowered(words[1]), words[2])) return {};
    return wrong(box.validator() + " has no option " + inQuotes(words[1]) + " " +
                 inQuotes(words[2]));
}

struct FaultName {
    std::string_view name;
    Fault::Kind kind;
};

constexpr std::array kFaultNames = {FaultName{"drop", Fault::Kind::dropByte},
                                    FaultName{"repeat", Fault::Kind::repeatByte},
                                    FaultName{"flip", Fault::Kind::flipBit},
                                    FaultName{"insert", Fault::Kind::insertByte},
                                    FaultName{"delay", Fault::Kind::delayByte},
                                    FaultName{"stall", Fault::Kind::stall},
                                    FaultName{"cut", Fault::Kind::cutLine},
                                    FaultName{"previous", Fault::Kind::previousReply},
                                    FaultName{"lost-ack", Fault::Kind::lostAck},
                                    FaultName{"stuck", Fault::Kind::stuckCell},
                                    FaultName{"silent", Fault::Kind::silentBox},
                                    FaultName{"unplug", Fault::Kind::unplug},
                                    FaultName{"battery", Fault::Kind::batteryLow},
                                    FaultName{"mech-silent", Fault::Kind::mechSilent},
                                    FaultName{"mech-late", Fault::Kind::mechLate},
                                    FaultName{"mech-cut", Fault::Kind::mechCut},
                                    FaultName{"refuse", Fault::Kind::mechRefuses},
                                    FaultName{"wrong-sum", Fault::Kind::wrongSum},
                                    FaultName{"no-session", Fault::Kind::noSession},
                                    FaultName{"long", Fault::Kind::longReply},
                                    FaultName{"lie", Fault::Kind::lyingWrite},
                                    FaultName{"power-loss", Fault::Kind::powerLoss},
                                    FaultName{"break-lost", Fault::Kind::breakLost}};

/// The options behind the kind; an error text, empty when all is well.
std::string readFaultOptions(Words words, Fault& fault) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string word = lowered(words[i]);
        if (word == "pc" || word == "box") {
            fault.where = word == "pc" ? Fault::Where::fromPc : Fault::Where::fromBox;
        } else if (word == "always") {
            fault.times = -1;
        } else if (word == "after" || word == "times" || word == "value") {
            const auto value =
                i + 1 < words.size() ? number(words[++i], 0, 1'000'000) : std::nullopt;
            if (!value) return word + " needs a number";
            (word == "after" ? fault.after : word == "times" ? fault.times : fault.value) = *value;
        } else {
            return "what is " + inQuotes(words[i]) + "?";
        }
    }
    return {};
}

BenchResult fault(SimulatedBox& box, Words words) {
    // fault KIND [pc|box] [after N] [times N|always] [value N] | fault clear
    if (words.size() == 2 && lowered(words[1]) == "clear") {
        box.clearFaults();
        return {};
    }
    const auto found =
        words.size() < 2
            ? kFaultNames.end()
            : std::find_if(kFaultNames.begin(), kFaultNames.end(),
                           [&](const FaultName& row) { return row.name == lowered(words[1]); });
    if (found == kFaultNames.end()) {
        std::string kinds;
        for (const FaultName& row : kFaultNames) kinds += std::string(row.name) + ' ';
        return wrong("the kinds of fault are: " + kinds + "(and clear)");
    }
    Fault given{.kind = found->kind};
    const std::string error = readFaultOptions(words.subspan(2), given);
    if (!error.empty()) return wrong(error);
    box.addFault(given);
    return {};
}

struct BenchCommand {
    std::string_view name;
    std::string_view usage;
    BenchResult (*run)(SimulatedBox& box, Words words);
};

constexpr std::array kCommands = {
    BenchCommand{"drop", "drop COIN [COUNT] [[every] MS]", drop},
    BenchCommand{"drop-raw", "drop-raw V1 V2 V3 ...", dropRaw},
    BenchCommand{"coins", "coins", coins},
    BenchCommand{"coin", "coin A..I", coin},
    BenchCommand{"reject", "reject", reject},
    BenchCommand{"pattern", "pattern HH", pattern},
    BenchCommand{"insert", "insert bipolar|e1|none 1K|2K [blank|FILE]", insert},
    BenchCommand{"switch", "switch 1|2 on|off", turnSwitch},
    BenchCommand{"validator", "validator in [MODEL]|out", validator},
    BenchCommand{"silent", "silent on|off",
                 [](SimulatedBox& box, Words words) {
                     return switched(words, [&](bool on) { box.setSilent(on); });
                 }},
    BenchCommand{"binary", "binary on|off",
                 [](SimulatedBox& box, Words words) {
                     return switched(words, [&](bool on) { box.setBinaryOutput(on); });
                 }},
    BenchCommand{"linefeeds", "linefeeds on|off",
                 [](SimulatedBox& box, Words words) {
                     return switched(words, [&](bool on) { box.setLineFeeds(on); });
                 }},
    BenchCommand{"early-ready", "early-ready on|off",
                 [](SimulatedBox& box, Words words) {
                     return switched(words, [&](bool on) { box.setReadyAtBreakEnd(on); });
                 }},
    BenchCommand{"battery", "battery low", battery},
    BenchCommand{"version", "version TEXT", version},
    BenchCommand{"fault", "fault KIND [pc|box] [after N] [times N|always] [value N] | fault clear",
                 fault},
    BenchCommand{"unplug", "unplug",
                 [](SimulatedBox& box, Words) {
                     box.unplug();
                     return BenchResult{};
                 }},
    BenchCommand{"replug", "replug",
                 [](SimulatedBox& box, Words) {
                     box.replug();
                     return BenchResult{};
                 }},
    BenchCommand{"save-prom", "save-prom FILE", saveProm},
    BenchCommand{"show-prom", "show-prom", showProm},
    BenchCommand{"expect-prom", "expect-prom FILE | expect-prom ADDRESS DIGITS", expectProm},
    BenchCommand{"show-memory", "show-memory", showMemory},
    BenchCommand{"save-memory", "save-memory FILE", saveMemory},
    BenchCommand{"set-memory", "set-memory NUMBER CONTENT", setMemory},
    BenchCommand{"expect-memory", "expect-memory FILE | expect-memory NUMBER CONTENT",
                 expectMemory},
    BenchCommand{"option", "option NAME VALUE", option},
    BenchCommand{"help", "help", [](SimulatedBox&, Words) { return shows(benchHelp()); }},
};

/// Splits as a shell does; false when a quote is left open.
bool splitWords(std::string_view line, std::vector<std::string>& words) {
    bool inWord = false;
    char quote = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quote == 0 && (c == ' ' || c == '\t' || c == '\r' || c == '\n')) {
            inWord = false;
            continue;
        }
        if (!inWord) words.emplace_back();
        inWord = true;
        if (c == quote) {
            quote = 0;
        } else if (quote == 0 && (c == '"' || c == '\'')) {
            quote = c;
        } else if (c == '\\' && quote != '\'' && i + 1 < line.size()) {
            words.back() += line[++i];
        } else {
            words.back() += c;
        }
    }
    return quote == 0;
}

}  // namespace

std::string benchHelp() {
    std::string text;
    for (const BenchCommand& command : kCommands) {
        text += (text.empty() ? "" : "\n") + std::string(command.usage);
    }
    return text;
}

BenchResult runBenchCommand(SimulatedBox& box, std::span<const std::string> words) {
    if (words.empty()) return {};
    const std::string name = lowered(words[0]);
    const auto found =
        std::find_if(kCommands.begin(), kCommands.end(),
                     [&](const BenchCommand& command) { return command.name == name; });
    if (found == kCommands.end()) {
        return wrong("the bench does not know " + inQuotes(words[0]) +
                     "; \"help\" lists what it does");
    }
    return found->run(box, words);
}

BenchResult runBenchLine(SimulatedBox& box, std::string_view line) {
    std::vector<std::string> words;
    if (!splitWords(line, words)) return wrong("a quote is left open");
    if (!words.empty() && words[0].starts_with('#')) return {};
    return runBenchCommand(box, words);
}

}  // namespace vantor::boxsim
