#include "app/ConfigPanel.h"

#include "app/Configuration.h"
#include "catalogue/LanguageFile.h"

namespace vantor {

namespace {

constexpr int kWriteError = 832;
constexpr int kCaptionError = 815;

}  // namespace

void ConfigPanel::readAtStart() {
    window_.showConfigPanel(true);
    window_.enableConfigButtons(changeOffered_, cancelOffered_);
    const auto stored = readConfiguration(state_.app.folder);
    if (!stored) return;
    window_.showConfigPanel(false);
    cancelOffered_ = true;
    window_.enableConfigButtons(changeOffered_, cancelOffered_);
    state_.link.portNumber = stored->portNumber;
    state_.messages.language = stored->language;
    state_.app.reserved1 = stored->reserved1;
    state_.app.reserved2 = stored->reserved2;
    loadLanguage(state_.messages, state_.app.folder, prompts_, errors_);
    errors_.attempt(kCaptionError, [this] { window_.setMainCaptions(); });
    state_.app.configLoaded = true;
}

void ConfigPanel::writeConfig() {
    errors_.attempt(kWriteError, [this] {
        writeConfiguration(state_.app.folder,
                           {.portNumber = state_.link.portNumber,
                            .language = state_.messages.language,
                            .reserved1 = state_.app.reserved1,
                            .reserved2 = state_.app.reserved2},
                           state_.box.replyText);
    });
    cancelOffered_ = true;
    window_.enableConfigButtons(changeOffered_, cancelOffered_);
}

void ConfigPanel::save() {
    state_.link.portNumber = window_.chosenPort();
    state_.messages.language = window_.chosenLanguage();
    writeConfig();
    loadLanguage(state_.messages, state_.app.folder, prompts_, errors_);
    errors_.attempt(kCaptionError, [this] { window_.setMainCaptions(); });
    window_.showConfigPanel(false);
    state_.app.configLoaded = true;
}

void ConfigPanel::cancel() {
    showStored();
    window_.showConfigPanel(false);
}

void ConfigPanel::change() {
    showStored();
    window_.showConfigPanel(true);
}

void ConfigPanel::offerChange(bool offered) {
    changeOffered_ = offered;
    window_.enableConfigButtons(changeOffered_, cancelOffered_);
}

void ConfigPanel::showStored() {
    window_.showPort(state_.link.portNumber);
    window_.showLanguage(state_.messages.language);
}

}  // namespace vantor
