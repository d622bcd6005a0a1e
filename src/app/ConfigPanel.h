#pragma once

#include "app/frmMain.h"
#include "catalogue/ErrorReporter.h"
#include "catalogue/SessionState.h"
#include "platform/Prompts.h"

namespace vantor {

/// The configuration and the panel that edits it.
class ConfigPanel {
  public:
    ConfigPanel(SessionState& state, Prompts& prompts, ErrorReporter& errors, FrmMain& window)
        : state_(state), prompts_(prompts), errors_(errors), window_(window) {}

    /// Reads the file, if there is one, into the state and loads the language; the panel stays in
    /// front when there is none.
    void readAtStart();

    void save();    ///< Save Config
    void cancel();  ///< Cancel
    void change();  ///< Change Config

    /// Writes the stored port and language; a failure is told (832) and the program goes on.
    void writeConfig();
    /// Change Config is offered (not during the first run, which cannot be left without saving).
    void offerChange(bool offered);

  private:
    void showStored();

    SessionState& state_;
    Prompts& prompts_;
    ErrorReporter& errors_;
    FrmMain& window_;
    bool changeOffered_ = false;
    bool cancelOffered_ = false;
};

}  // namespace vantor
