#include "player/Script.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "catalogue/Text.h"

namespace vantor::player {

namespace {

/// What an argument must look like.
enum class Form { window, control, target, text, ms, onOff, yesNo, colour, answer, path, value };

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct Grammar {
    std::string_view name;
    Verb verb;
    std::vector<Form> forms;
    std::string_view usage;
};

const std::vector<Grammar>& grammars() {
    using enum Form;
    static const std::vector<Grammar> table = {
        {"click", Verb::click, {control}, "click W.C"},
        {"close", Verb::close, {window}, "close W"},
        {"choose", Verb::choose, {control, text}, "choose W.C \"entry\""},
        {"type", Verb::type, {control, text}, "type W.C \"text\""},
        {"tick", Verb::tick, {control, onOff}, "tick W.C on|off"},
        {"tab", Verb::tab, {control, text}, "tab W.C \"label\""},
        {"expect", Verb::expect, {target, text}, "expect W.C \"text\""},
        {"expect-part", Verb::expectPart, {target, text}, "expect-part W.C \"part of the text\""},
        {"expect-enabled", Verb::expectEnabled, {control, yesNo}, "expect-enabled W.C yes|no"},
        {"expect-visible", Verb::expectVisible, {target, yesNo}, "expect-visible W.C yes|no"},
        {"expect-colour", Verb::expectColour, {control, colour}, "expect-colour W.C #rrggbb"},
        {"print", Verb::print, {target}, "print W or print W.C"},
        {"await", Verb::await, {target, text, ms}, "await W.C \"text\" MS"},
        {"await-visible", Verb::awaitVisible, {target, ms}, "await-visible W MS"},
        {"await-idle", Verb::awaitIdle, {ms}, "await-idle MS"},
        {"await-prompt", Verb::awaitPrompt, {text, ms}, "await-prompt \"part of the text\" MS"},
        {"answer", Verb::answer, {answer, text}, "answer ok|cancel|yes|no \"part of the text\""},
        {"file", Verb::file, {path}, "file \"path\" or file cancel"},
        {"sleep", Verb::sleep, {ms}, "sleep MS"},
        {"shot", Verb::shot, {path}, "shot FILE.png or shot W FILE.png"},
        {"bench", Verb::bench, {}, "bench ..."},
        {"include", Verb::include, {path}, "include \"FILE\" NAME=VALUE ..."},
    };
    return table;
}

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

/// Reads words off one line; never looks past its end.
class WordReader {
  public:
    explicit WordReader(std::string_view line) : line_(line) {}

    /// The next word; nothing at the end, at a comment and after a mistake (`problem`).
    std::optional<std::string> next() {
        while (!atEnd() && isBlank(peek())) ++position_;
        if (atEnd() || startsComment()) return std::nullopt;
        std::string word;
        while (!atEnd() && !isBlank(peek())) {
            if (!readPiece(word)) return std::nullopt;
        }
        return word;
    }
    [[nodiscard]] const std::string& problem() const { return problem_; }

  private:
    [[nodiscard]] bool atEnd() const { return position_ >= line_.size(); }
    [[nodiscard]] char peek() const { return line_[position_]; }
    [[nodiscard]] bool nextIs(char c) const {
        return position_ + 1 < line_.size() && line_[position_ + 1] == c;
    }

    /// A colour is written #rrggbb, so inside a line only a "#" by itself begins a comment.
    [[nodiscard]] bool startsComment() const {
        if (peek() != '#') return false;
        const bool first = line_.substr(0, position_).find_first_not_of(" \t") == line_.npos;
        return first || position_ + 1 == line_.size() || isBlank(line_[position_ + 1]);
    }

    bool readPiece(std::string& word) {
        const char c = peek();
        if (c == '\'') return readLiteral(word);
        if (c == '"') return readQuoted(word);
        if (c == '$' && nextIs('\'')) return readEscaped(word);
        ++position_;
        if (c != '\\') {
            word += c;
            return true;
        }
        if (atEnd()) return fail("the line ends in a backslash");
        word += line_[position_++];
        return true;
    }

    bool readLiteral(std::string& word) {
        const std::size_t close = line_.find('\'', position_ + 1);
        if (close == line_.npos) return fail("a ' is not closed");
        word += line_.substr(position_ + 1, close - position_ - 1);
        position_ = close + 1;
        return true;
    }

    bool readQuoted(std::string& word) {
        for (++position_; !atEnd(); ++position_) {
            char c = peek();
            if (c == '"') {
                ++position_;
                return true;
            }
            if (c == '\\' && (nextIs('"') || nextIs('\\'))) c = line_[++position_];
            word += c;
        }
        return fail("a \" is not closed");
    }

    bool readEscaped(std::string& word) {
        for (position_ += 2; !atEnd(); ++position_) {
            char c = peek();
            if (c == '\'') {
                ++position_;
                return true;
            }
            if (c == '\\') {
                if (++position_ >= line_.size()) break;
                const std::size_t which = std::string_view("nrt'\\").find(peek());
                if (which == std::string_view::npos) return fail("an unknown \\ in $'...'");
                c = "\n\r\t'\\"[which];
            }
            word += c;
        }
        return fail("a $' is not closed");
    }

    bool fail(std::string problem) {
        problem_ = std::move(problem);
        return false;
    }

    std::string_view line_;
    std::size_t position_ = 0;
    std::string problem_;
};

bool isName(std::string_view word) {
    const auto part = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_';
    };
    return !word.empty() && std::ranges::all_of(word, part);
}

bool isControl(std::string_view word) {
    const std::size_t stop = word.find('.');
    return stop != word.npos && isName(word.substr(0, stop)) && isName(word.substr(stop + 1));
}

bool isColour(std::string_view word) {
    return word.size() == 7 && word[0] == '#' &&
           word.substr(1).find_first_not_of("0123456789abcdefABCDEF") == word.npos;
}

bool isOneOf(std::string_view word, std::initializer_list<std::string_view> choices) {
    return std::ranges::find(choices, word) != choices.end();
}

bool fits(std::string_view word, Form form) {
    switch (form) {
        case Form::window:
            return isName(word);
        case Form::control:
            return isControl(word);
        case Form::target:
            return isName(word) || isControl(word);
        case Form::text:
            return true;
        case Form::ms:
            return parseMs(word) >= 0;
        case Form::onOff:
            return isOneOf(word, {"on", "off"});
        case Form::yesNo:
            return isOneOf(word, {"yes", "no"});
        case Form::colour:
            return isColour(word);
        case Form::answer:
            return isOneOf(word, {"ok", "cancel", "yes", "no"});
        case Form::path:
            return !word.empty();
        case Form::value:
            return isName(word.substr(0, word.find('='))) && word.find('=') != word.npos;
    }
    return false;
}

/// Empty when the arguments are what the verb wants.
std::string argumentProblem(const Grammar& grammar, const std::vector<std::string>& words) {
    std::vector<Form> forms = grammar.forms;
    if (grammar.verb == Verb::bench) {
        return words.empty() ? "bench needs a command of its own" : std::string();
    }
    if (grammar.verb == Verb::shot && words.size() == 2) forms.insert(forms.begin(), Form::window);
    if (grammar.verb == Verb::include && words.size() > 1) forms.resize(words.size(), Form::value);
    if (words.size() != forms.size()) {
        return std::to_string(forms.size()) + " argument(s) wanted, " +
               std::to_string(words.size()) + " given: " + std::string(grammar.usage);
    }
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (!fits(words[i], forms[i])) {
            return "\"" + words[i] + "\" does not fit: " + std::string(grammar.usage);
        }
    }
    return {};
}

std::string_view withoutLineEnd(std::string_view line) {
    while (!line.empty() && (line.back() == '\r' || line.back() == '\n')) line.remove_suffix(1);
    return line;
}

/// `missing` is the name of a value that is not given.
std::string withValues(std::string_view line, const Values& values, std::string& missing) {
    std::string filled;
    for (;;) {
        const std::size_t start = line.find("${");
        const std::size_t end = line.find('}', std::min(start, line.size()));
        filled += line.substr(0, end == line.npos ? line.npos : start);
        if (end == line.npos) return filled;
        const std::string_view name = line.substr(start + 2, end - start - 2);
        const auto value = values.find(name);
        if (value == values.end()) missing = name;
        filled += value == values.end() ? std::string() : value->second;
        line.remove_prefix(end + 1);
    }
}

bool hasControlByte(std::string_view line) {
    return std::ranges::any_of(line, [](char c) {
        const auto code = static_cast<unsigned char>(c);
        return (code < 32 && code != '\t') || code == 127;
    });
}

}  // namespace

std::variant<std::vector<std::string>, std::string> splitWords(std::string_view line) {
    WordReader reader(line);
    std::vector<std::string> words;
    while (auto word = reader.next()) words.push_back(std::move(*word));
    if (!reader.problem().empty()) return reader.problem();
    return words;
}

int parseMs(std::string_view word) {
    int value = -1;
    const char* end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    if (error != std::errc() || stop != end || value < 0 || value > kLongestMs) return -1;
    return value;
}

namespace {

/// A blank that ends the line behind a backslash is part of its last word.
std::string_view withoutBlanksAround(std::string_view line) {
    const std::string_view text = trimmed(line);
    if (text.empty()) return text;
    const std::size_t end = static_cast<std::size_t>(text.data() - line.data()) + text.size();
    const std::size_t other = text.find_last_not_of('\\');
    const std::size_t backslashes = text.size() - (other == text.npos ? 0 : other + 1);
    const bool escaped = backslashes % 2 == 1 && end < line.size();
    return {text.data(), text.size() + (escaped ? 1 : 0)};
}

}  // namespace

ParsedLine parseLine(std::string_view text, int number, const Values& values) {
    text = withoutLineEnd(text);
    if (number == 1 && text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    std::string missing;
    const std::string line = withValues(text, values, missing);
    if (!missing.empty()) return ScriptError{number, "nothing is given for ${" + missing + "}"};
    if (line.size() > kLongestScriptLine) return ScriptError{number, "the line is too long"};
    if (hasControlByte(line))
        return ScriptError{number, "not a text line: it holds a control byte"};

    auto split = splitWords(line);
    if (const auto* problem = std::get_if<std::string>(&split)) {
        return ScriptError{number, *problem};
    }
    auto words = std::get<std::vector<std::string>>(std::move(split));
    const std::string_view written = withoutBlanksAround(line);
    if (words.empty() && written.empty()) return NoCommand{};
    if (words.empty()) return Command{number, Verb::remark, {}, std::string(written)};

    const auto grammar = std::ranges::find(grammars(), words.front(), &Grammar::name);
    if (grammar == grammars().end()) {
        return ScriptError{number, "unknown command \"" + words.front() + "\""};
    }
    words.erase(words.begin());
    std::string problem = argumentProblem(*grammar, words);
    if (!problem.empty()) return ScriptError{number, std::move(problem)};
    return Command{number, grammar->verb, std::move(words), std::string(written)};
}

}  // namespace vantor::player
