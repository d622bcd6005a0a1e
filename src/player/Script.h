#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vantor::player {

/// What a line of a session script asks for. The grammar stands in docs/player.md.
enum class Verb {
    remark,   ///< a comment line: shown, so that a session reads like its script
    include,  ///< the lines of another script stand here; never among a script's commands
    click,
    close,
    choose,
    type,
    tick,
    tab,
    expect,
    expectPart,
    expectEnabled,
    expectVisible,
    expectColour,
    print,
    await,
    awaitVisible,
    awaitIdle,
    awaitPrompt,
    answer,
    file,
    sleep,
    shot,
    bench,
};

/// One command, its arguments checked for number and form.
struct Command {
    int line = 0;  ///< 1-based line of the script
    Verb verb = Verb::sleep;
    std::vector<std::string> words;  ///< the arguments, quotes removed, UTF-8; of a remark none
    std::string written;             ///< the command as it stands in the script, values put in
    std::string file{};              ///< name of the included script that it comes from; else empty

    /// "7", or "coin.vps:7" in an included script.
    [[nodiscard]] std::string place() const;
};

/// A blank line.
struct NoCommand {};

struct ScriptError {
    int line = 0;
    std::string text;    ///< what is wrong, without the line number
    std::string file{};  ///< path of the included script that it is in; else empty
};

using ParsedLine = std::variant<NoCommand, Command, ScriptError>;
using ParsedScript = std::variant<std::vector<Command>, std::vector<ScriptError>>;

inline constexpr std::size_t kLongestScriptLine = 4096;
/// The longest time a command may name: one day.
inline constexpr int kLongestMs = 86'400'000;

/// What the line that includes a script gives to it: ${NAME} stands for the value there.
using Values = std::map<std::string, std::string, std::less<>>;

/// Where the lines of a script come from.
struct ScriptPlace {
    /// The text of a file; nothing when it cannot be read. Without it nothing can be included.
    std::function<std::optional<std::string>(const std::string& path)> read{};
    /// Path of the script, then of those that include it, from within. What it includes is looked
    /// for beside it. Empty: standard input, which includes from the current folder.
    std::vector<std::string> files{};
    Values values{};
    int firstLine = 1;  ///< number of the text's first line
};

/// Words with a shell's quotes: '...' is literal, in "..." a backslash protects " and \, outside
/// quotes it protects any character, $'...' knows \n, \r, \t, \' and \\. A "#" that begins the
/// line, or a word of its own, begins a comment.
[[nodiscard]] std::variant<std::vector<std::string>, std::string> splitWords(std::string_view line);

/// Any bytes may be given; `number` is only noted. An end of line (CR, LF) is ignored. Values are
/// put in before the line is split into words.
[[nodiscard]] ParsedLine parseLine(std::string_view line, int number, const Values& values = {});

/// A whole script: its commands, those of the scripts that it includes in their places, or
/// everything that is wrong with it. An `include` itself becomes a remark.
[[nodiscard]] ParsedScript parseScript(std::string_view text, const ScriptPlace& place = {});

/// A number of milliseconds as scripts write it; -1 when it is none or out of range.
[[nodiscard]] int parseMs(std::string_view word);

}  // namespace vantor::player
