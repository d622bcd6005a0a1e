#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace vantor {

enum class PromptIcon { none, information, question, exclamation, critical };
enum class PromptButtons { ok, okCancel, yesNoCancel };
enum class Answer { ok, cancel, yes, no };

/// One message box. Texts are Windows-1252 and plain; lines end in CR LF or LF.
struct Prompt {
    std::string title;
    std::string text;
    PromptIcon icon = PromptIcon::none;
    PromptButtons buttons = PromptButtons::ok;
};

/// What a notice is about, whatever the values in it: its title and the first line of its text.
[[nodiscard]] inline std::string noticeKind(const Prompt& notice) {
    return notice.title + '\n' + notice.text.substr(0, notice.text.find_first_of("\r\n"));
}

/// An open or save dialog for one kind of file.
struct FileQuestion {
    std::string title;
    std::string pattern;  ///< for example "*.cst"
    std::filesystem::path startFolder;
    bool saving = false;
};

/// Questions and notices to the technician.
class Prompts {
  public:
    virtual ~Prompts() = default;

    /// Shows a box and waits for the answer while events go on. Escape and the frame's X answer OK
    /// or, of OK and Cancel, Cancel; a Yes/No/Cancel box, whose Cancel is a choice of its own,
    /// wants one of its buttons. The default button is OK or Yes. Throws ProgramEnded when the
    /// program ends meanwhile.
    virtual Answer ask(const Prompt& prompt) = 0;

    /// Shows a box that nobody waits for. At most one notice of a kind is open at a time; a second
    /// one is dropped. Safe from inside the receive path.
    virtual void notice(const Prompt& prompt) = 0;

    /// The chosen file; nothing when the dialog was cancelled. As `ask` for waiting and ending.
    /// The save dialog does not ask about overwriting: the caller does.
    virtual std::optional<std::filesystem::path> askFile(const FileQuestion& question) = 0;

    virtual void beep() = 0;

    /// How a waiting question learns that the program ends; set by the wiring.
    virtual void setEnding(const std::function<bool()>& ending) { (void)ending; }

    /// What a button says in the technician's language; an empty text leaves the toolkit's word.
    /// Set by the wiring and asked for every box.
    using Captions = std::function<std::string(Answer)>;
    virtual void setCaptions(const Captions& captions) { (void)captions; }
};

}  // namespace vantor
