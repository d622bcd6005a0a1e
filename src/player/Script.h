#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vantor::player {

/// What a line of a session script asks for. The grammar stands in docs/player.md.
enum class Verb {
    remark,  ///< a comment line: shown, so that a session reads like its script
    click,
    close,
    choose,
    type,
    tick,
    tab,
    expect,
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
    std::string written;             ///< the command as it stands in the script
};

/// A blank line.
struct NoCommand {};

struct ScriptError {
    int line = 0;
    std::string text;  ///< what is wrong, without the line number
};

using ParsedLine = std::variant<NoCommand, Command, ScriptError>;
using ParsedScript = std::variant<std::vector<Command>, std::vector<ScriptError>>;

inline constexpr std::size_t kLongestScriptLine = 4096;
/// The longest time a command may name: one day.
inline constexpr int kLongestMs = 86'400'000;

/// Words with a shell's quotes: '...' is literal, in "..." a backslash protects " and \, outside
/// quotes it protects any character, $'...' knows \n, \r, \t, \' and \\. A "#" that begins the
/// line, or a word of its own, begins a comment.
[[nodiscard]] std::variant<std::vector<std::string>, std::string> splitWords(std::string_view line);

/// Any bytes may be given; `number` is only noted. An end of line (CR, LF) is ignored.
[[nodiscard]] ParsedLine parseLine(std::string_view line, int number);

/// A whole script: its commands, or everything that is wrong with it.
[[nodiscard]] ParsedScript parseScript(std::string_view text);

/// A number of milliseconds as scripts write it; -1 when it is none or out of range.
[[nodiscard]] int parseMs(std::string_view word);

}  // namespace vantor::player
