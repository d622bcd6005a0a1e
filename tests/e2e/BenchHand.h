#pragma once

#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <array>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Screen.h"
#include "boxsim/SimulatedBox.h"
#include "platform/EventLoop.h"

namespace vantor::test {

/// Does what a technician with a full bench does: answers every box as the work asks for it,
/// drops the coins that the window names, swaps PROMs and turns switches. What is to be done
/// otherwise is said with `instead`.
class BenchHand {
  public:
    BenchHand(EventLoop& loop, boxsim::SimulatedBox& box) : box_(box), loop_(loop), timer_(loop) {
        timer_.start(std::chrono::milliseconds(20), [this] { look(); });
    }

    // --- knobs
    boxsim::PromKind prom = boxsim::PromKind::e1;
    int promWords = 512;
    std::filesystem::path coinset;
    std::filesystem::path log;
    /// The memory file that is opened or saved.
    std::filesystem::path memoryFile;
    /// Cells of the PROM that is inserted when the old one is asked for.
    std::vector<std::uint8_t> oldProm;
    /// To "Data Gather": Yes to measure, No to keep the existing coin, Cancel to clear.
    QMessageBox::StandardButton onGather = QMessageBox::Yes;
    /// A coin that is measured all the same, because others refer to it.
    std::string measuredAnyway;
    /// What falls when a wizard asks for coins, and when it asks for slugs; empty = nothing.
    std::string wizardCoin, wizardSlug;
    /// Whether anything is asked now; looking for it oneself is slow.
    std::function<bool()> asked = [] { return true; };
    /// The English of a text on the screen, for a program that speaks another language.
    std::function<std::string(std::string)> english = [](std::string text) { return text; };
    /// Told what the program asks for and the bench cannot do.
    std::function<void(const std::string&)> complain;

    /// The next box whose title or text contains `part` gets `answer`, after `before` has run.
    void instead(std::string part, QMessageBox::StandardButton answer,
                 std::function<void()> before = {}) {
        exceptions_.push_back({std::move(part), answer, std::move(before)});
    }

    /// The `number`th box or dialog from now (the first is 1) is declined as far as it can be.
    void declineBox(std::size_t number) { declineAt_ = seen.size() + number; }

    // --- what happened
    std::vector<std::string> seen;  ///< "title|text" of every box, in order
    [[nodiscard]] bool saw(const std::string& part) const {
        for (const std::string& box : seen) {
            if (box.find(part) != std::string::npos) return true;
        }
        return false;
    }
    [[nodiscard]] bool allExceptionsUsed() const { return exceptions_.empty(); }

  private:
    struct Exception {
        std::string part;
        QMessageBox::StandardButton answer;
        std::function<void()> before;
    };

    void look() {
        if (!asked()) {
            dropWhileAsked();
        } else if (auto* dialog = openDialog()) {
            chooseFile(*dialog);
        } else if (QMessageBox* open = ::vantor::test::box("")) {
            answerBox(*open);
        } else {
            dropWhileAsked();
        }
    }

    static QFileDialog* openDialog() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* dialog = dynamic_cast<QFileDialog*>(window);
            if (dialog != nullptr && dialog->isVisible()) return dialog;
        }
        return nullptr;
    }

    void chooseFile(QFileDialog& dialog) {
        const std::string title = english(dialog.windowTitle().toStdString());
        const bool memory = title == "Open File" || title == "File Open" || title == "File Save";
        const auto& file = memory                                           ? memoryFile
                           : dialog.acceptMode() == QFileDialog::AcceptSave ? log
                                                                            : coinset;
        seen.push_back(title + "|" + file.string());
        if (file.empty() || declines()) {
            dialog.reject();
            return;
        }
        dialog.findChild<QLineEdit*>()->setText(QString::fromStdString(file.string()));
        // The dialog's own accept looks at its button, which follows the text a turn later.
        static_cast<QDialog&>(dialog).done(QDialog::Accepted);
    }

    void answerBox(QMessageBox& open) {
        const std::string title = english(open.windowTitle().toStdString());
        const std::string text = english(open.text().toStdString());
        seen.push_back(title + "|" + text);
        if (declines()) {
            auto* cancel = open.button(QMessageBox::Cancel);
            (cancel != nullptr ? cancel : open.buttons().constLast())->click();
            return;
        }
        for (auto it = exceptions_.begin(); it != exceptions_.end(); ++it) {
            if (seen.back().find(it->part) == std::string::npos) continue;
            const Exception exception = *it;
            exceptions_.erase(it);
            if (exception.before) exception.before();
            answer(open, exception.answer);
            return;
        }
        work(open, title, text);
    }

    void work(QMessageBox& open, const std::string& title, const std::string& text) {
        const auto has = [&](const char* part) { return text.find(part) != std::string::npos; };
        const std::string gather = "Data Gather: ";
        QMessageBox::StandardButton button = QMessageBox::Ok;
        if (title.starts_with(gather)) {
            item_ = title.substr(gather.size());
            button = item_ == measuredAnyway ? QMessageBox::Yes : onGather;
        } else if (has("Start Coin Drop")) {
            item_ = wizardCoin;
        } else if (has("Start Slug Drop")) {
            item_ = wizardSlug;
        } else if (has("Insert Old PROM to COPY")) {
            box_.insertProm(boxsim::PromKind::e1, static_cast<int>(oldProm.size()), oldProm);
            setSwitches(true, false);
        } else if (has("BOTH SWITCHES ON")) {
            box_.insertProm(boxsim::PromKind::e1, promWords);
            setSwitches(true, true);
        } else if (has("TURN SWITCH 2 OFF")) {
            setSwitches(true, false);
        } else if (has("Bipolar PROM") && title == "Load PROM") {
            box_.insertProm(boxsim::PromKind::bipolar, promWords);
            // A box that reads none of them is not worth a fifth.
            if (++promOffers_ == kMostPromOffers) button = QMessageBox::Cancel;
        }
        const bool offersAnother = title == "Load PROM" || has("Unable to Read PROM");
        if (!offersAnother || promOffers_ == kMostPromOffers) promOffers_ = 0;
        answer(open, button);
    }

    void answer(QMessageBox& open, QMessageBox::StandardButton button) {
        if (QAbstractButton* found = open.button(button)) {
            found->click();
        } else if (complain) {
            complain("no such button in the box " + seen.back());
        }
    }

    [[nodiscard]] bool declines() {
        if (declineAt_ == 0 || seen.size() != declineAt_) return false;
        declineAt_ = 0;
        return true;
    }

    void setSwitches(bool one, bool two) {
        box_.setSwitch(1, one);
        box_.setSwitch(2, two);
    }

    /// One coin after the other, as long as somebody hears them and the window asks for more.
    void dropWhileAsked() {
        const bool heard = box_.coinDataOn() || box_.inSerialMode();
        if (!heard || item_.empty() || loop_.now() < nextDrop_) return;
        if (std::atoi(label("frmCoinMeasure1.lblNumber").c_str()) < 1) return;
        if (!box_.drop(item_) && complain) complain("no such coin on the bench: " + item_);
        nextDrop_ = loop_.now() + std::chrono::milliseconds(300);
    }

    boxsim::SimulatedBox& box_;
    EventLoop& loop_;
    RepeatingTimer timer_;
    std::vector<Exception> exceptions_;
    std::string item_;
    std::size_t declineAt_ = 0;  ///< 0 = none
    static constexpr int kMostPromOffers = 5;
    int promOffers_ = 0;  ///< one after the other
    Micros nextDrop_{};
};

}  // namespace vantor::test
