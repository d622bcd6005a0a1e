#include "measure/RunLog.h"

#include "catalogue/FileNames.h"
#include "catalogue/Text.h"

namespace vantor {

namespace fs = std::filesystem;

bool RunLog::openLog() {
    const auto text = [this](int id) { return parts_.state.msgText(id); };
    const auto chosen = parts_.prompts.askFile({.title = text(551),
                                                .pattern = "*.csv",
                                                .startFolder = parts_.state.app.folder / "CoinSets",
                                                .saving = true});
    if (!chosen || chosen->empty()) return false;
    const fs::path name = logFileName(*chosen);
    // A temporary file is what a broken-off run left of its readings: as precious as a log.
    std::error_code ignored;
    if (fs::exists(name, ignored) || fs::exists(ResultsLog::temporaryName(name), ignored)) {
        const Answer answer = parts_.prompts.ask({.title = text(449),
                                                  .text = text(448),
                                                  .icon = PromptIcon::exclamation,
                                                  .buttons = PromptButtons::okCancel});
        if (answer != Answer::ok) return false;
    }
    try {
        file_.open(name);
    } catch (const std::system_error& error) {
        parts_.prompts.ask({.title = text(406),
                            .text = text(405) + std::string(kCrLf) + shownPath(name) +
                                    std::string(kCrLf) + error.code().message(),
                            .icon = PromptIcon::critical});
        return false;
    }
    return true;
}

void RunLog::write(const LogLine& line) {
    bool& enabled = parts_.state.gather.logEnabled;
    if (!enabled) return;
    enabled = parts_.errors.attempt(495, [&] { file_.write(line); });
}

void RunLog::writeAll(const std::vector<LogLine>& lines) {
    for (const LogLine& line : lines) write(line);
}

void RunLog::close() {
    parts_.state.gather.logEnabled = false;
    parts_.errors.attempt(495, [this] { file_.close(); });
}

}  // namespace vantor
