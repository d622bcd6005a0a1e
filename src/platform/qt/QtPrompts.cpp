#include "platform/qt/QtPrompts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <algorithm>

#include "platform/ProgramEnded.h"
#include "platform/qt/QtText.h"

namespace vantor {

namespace {

constexpr const char* kKindProperty = "noticeKind";

QMessageBox::Icon iconOf(PromptIcon icon) {
    switch (icon) {
        case PromptIcon::information:
            return QMessageBox::Information;
        case PromptIcon::question:
            return QMessageBox::Question;
        case PromptIcon::exclamation:
            return QMessageBox::Warning;
        case PromptIcon::critical:
            return QMessageBox::Critical;
        case PromptIcon::none:
            break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons buttonsOf(PromptButtons buttons) {
    switch (buttons) {
        case PromptButtons::okCancel:
            return QMessageBox::Ok | QMessageBox::Cancel;
        case PromptButtons::yesNoCancel:
            return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        case PromptButtons::ok:
            break;
    }
    return QMessageBox::Ok;
}

/// The program's window that a question belongs to. Windows of the bench are none: the bench must
/// stay usable while a question about its PROM socket is open.
QWidget* owner() {
    const auto ours = [](const QWidget* window) {
        return window && window->isVisible() &&
               window->objectName().startsWith(QLatin1String("frm")) &&
               window->objectName() != QLatin1String("frmBench");
    };
    if (QWidget* active = QApplication::activeWindow(); ours(active)) return active;
    const auto windows = QApplication::topLevelWidgets();
    const auto found = std::find_if(windows.begin(), windows.end(), ours);
    return found == windows.end() ? nullptr : *found;
}

/// The toolkit takes Escape and the frame's X for any Cancel button, wanted or not.
class ChoiceBox final : public QMessageBox {
  public:
    using QMessageBox::QMessageBox;

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (choiceNeeded() && event->matches(QKeySequence::Cancel)) return;
        QMessageBox::keyPressEvent(event);
    }
    void closeEvent(QCloseEvent* event) override {
        if (choiceNeeded()) {
            event->ignore();
        } else {
            QMessageBox::closeEvent(event);
        }
    }

  private:
    [[nodiscard]] bool choiceNeeded() const { return standardButtons().testFlag(Yes); }
};

void fill(QMessageBox& box, const Prompt& prompt) {
    box.setWindowTitle(toQt(prompt.title));
    box.setTextFormat(Qt::PlainText);
    box.setText(toBoxText(prompt.text));
    box.setIcon(iconOf(prompt.icon));
    box.setStandardButtons(buttonsOf(prompt.buttons));
    const bool yesNo = prompt.buttons == PromptButtons::yesNoCancel;
    box.setDefaultButton(yesNo ? QMessageBox::Yes : QMessageBox::Ok);
    if (yesNo) {
        box.setWindowFlag(Qt::WindowCloseButtonHint, false);
    } else {
        box.setEscapeButton(prompt.buttons == PromptButtons::ok ? QMessageBox::Ok
                                                                : QMessageBox::Cancel);
    }
}

/// The folder itself or, where it is missing, the nearest one above it: of a missing folder the
/// toolkit would make the name of a file, and Save would take it.
std::filesystem::path existing(std::filesystem::path folder) {
    std::error_code ignored;
    while (!std::filesystem::is_directory(folder, ignored) && folder.has_relative_path()) {
        folder = folder.parent_path();
    }
    return folder;
}

Answer answerOf(QMessageBox::StandardButton button) {
    switch (button) {
        case QMessageBox::Yes:
            return Answer::yes;
        case QMessageBox::No:
            return Answer::no;
        case QMessageBox::Cancel:
            return Answer::cancel;
        default:
            return Answer::ok;
    }
}

}  // namespace

QtPrompts::~QtPrompts() {
    for (const auto& box : notices_) delete box.data();
}

void QtPrompts::waitFor(QDialog& dialog) {
    bool finished = false;
    // The toolkit calls this inside the click; nothing but the note happens there.
    QObject::connect(&dialog, &QDialog::finished, &dialog, [&finished] { finished = true; });
    dialog.setWindowModality(Qt::WindowModal);
    dialog.show();
    while (!finished) {
        if (ending_ && ending_()) throw ProgramEnded{};
        loop_.pump();
    }
    if (ending_ && ending_()) throw ProgramEnded{};
}

void QtPrompts::captionButtons(QMessageBox& box) const {
    if (!captions_) return;
    for (QAbstractButton* button : box.buttons()) {
        const QString text = toQt(captions_(answerOf(box.standardButton(button))));
        // The toolkit's own word keeps its underlined letter.
        if (text.isEmpty() || button->text().remove(QLatin1Char('&')) == text) continue;
        button->setText(QString(text).replace(QLatin1Char('&'), QLatin1String("&&")));
    }
}

Answer QtPrompts::ask(const Prompt& prompt) {
    ChoiceBox box(owner());
    box.setObjectName(QStringLiteral("prompt"));
    fill(box, prompt);
    // The language files have no Yes and No, and the text that names them is English everywhere: so
    // is the Cancel beside them.
    if (prompt.buttons != PromptButtons::yesNoCancel) captionButtons(box);
    waitFor(box);
    return answerOf(box.standardButton(box.clickedButton()));
}

void QtPrompts::notice(const Prompt& prompt) {
    std::erase_if(notices_, [](const auto& box) { return box.isNull(); });
    const QString kind = toQt(noticeKind(prompt));
    for (const auto& box : notices_) {
        if (box->property(kKindProperty) == kind && box->isVisible()) return;
    }
    auto* box = new QMessageBox;
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setObjectName(QStringLiteral("notice"));
    box->setProperty(kKindProperty, kind);
    // It belongs to no window (the windows come and go under it), so it has to keep itself in
    // sight.
    box->setWindowFlag(Qt::WindowStaysOnTopHint);
    box->setWindowModality(Qt::NonModal);
    fill(*box, prompt);
    captionButtons(*box);
    notices_.emplace_back(box);
    box->show();
}

std::optional<std::filesystem::path> QtPrompts::askFile(const FileQuestion& question) {
    QFileDialog dialog(owner(), toQt(question.title), pathToQt(existing(question.startFolder)),
                       toQt(question.pattern));
    dialog.setObjectName(QStringLiteral("filePrompt"));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.setAcceptMode(question.saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    // A name that does not exist is the caller's to judge: the dialog's own refusal would be a
    // box that nobody can answer while the program ends.
    dialog.setFileMode(QFileDialog::AnyFile);
    waitFor(dialog);
    if (dialog.result() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    return pathFromQt(dialog.selectedFiles().constFirst());
}

void QtPrompts::beep() {
    QApplication::beep();
}

}  // namespace vantor
