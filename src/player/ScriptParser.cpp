#include <algorithm>
#include <filesystem>
#include <utility>

#include "catalogue/Text.h"
#include "player/Script.h"

namespace vantor::player {

namespace {

/// Gathers the commands and the mistakes of a script and of all that it includes.
class ScriptParser {
  public:
    explicit ScriptParser(ScriptPlace place) : place_(std::move(place)) {}

    ParsedScript parse(std::string_view text) {
        parseLines(text);
        if (!errors_.empty()) return std::move(errors_);
        return std::move(commands_);
    }

  private:
    void parseLines(std::string_view text) {
        int number = place_.firstLine;
        for (const std::string_view line : splitLines(text)) {
            ParsedLine parsed = parseLine(line, number++, place_.values);
            if (auto* command = std::get_if<Command>(&parsed)) take(std::move(*command));
            if (auto* error = std::get_if<ScriptError>(&parsed))
                errors_.push_back(std::move(*error));
        }
    }

    void take(Command command) {
        if (command.verb != Verb::include) return commands_.push_back(std::move(command));
        const std::vector<std::string> words = std::exchange(command.words, {});
        command.verb = Verb::remark;
        commands_.push_back(command);

        const std::string path = beside(words.front());
        if (std::ranges::find(place_.files, path) != place_.files.end()) {
            return errors_.push_back({command.line, path + " includes itself"});
        }
        const auto text = place_.read ? place_.read(path) : std::nullopt;
        if (!text) return errors_.push_back({command.line, "cannot read " + path});
        ScriptPlace inner{place_.read, place_.files, {}, 1};
        inner.files.insert(inner.files.begin(), path);
        for (std::size_t i = 1; i < words.size(); ++i) {
            const std::size_t equals = words[i].find('=');
            inner.values[words[i].substr(0, equals)] = words[i].substr(equals + 1);
        }
        append(ScriptParser(std::move(inner)).parse(*text), path);
    }

    void append(ParsedScript inner, const std::string& path) {
        if (auto* errors = std::get_if<std::vector<ScriptError>>(&inner)) {
            for (ScriptError& error : *errors) {
                if (error.file.empty()) error.file = path;
                errors_.push_back(std::move(error));
            }
            return;
        }
        for (Command& command : std::get<std::vector<Command>>(inner)) {
            if (command.file.empty()) command.file = path.substr(path.find_last_of("/\\") + 1);
            commands_.push_back(std::move(command));
        }
    }

    [[nodiscard]] std::string beside(const std::string& name) const {
        std::filesystem::path path(std::u8string(name.begin(), name.end()));
        if (!place_.files.empty()) {
            const std::string& here = place_.files.front();
            const auto folder =
                std::filesystem::path(std::u8string(here.begin(), here.end())).parent_path();
            path = folder / path;
        }
        const std::u8string normal = path.lexically_normal().generic_u8string();
        return {normal.begin(), normal.end()};
    }

    ScriptPlace place_;
    std::vector<Command> commands_;
    std::vector<ScriptError> errors_;
};

}  // namespace

std::string Command::place() const {
    return (file.empty() ? std::string() : file + ':') + std::to_string(line);
}

ParsedScript parseScript(std::string_view text, const ScriptPlace& place) {
    return ScriptParser(place).parse(text);
}

}  // namespace vantor::player
