#pragma once

#include <QWidget>
#include <memory>

#include "catalogue/SessionState.h"
#include "link/ProgressDisplay.h"

namespace Ui {
class frmProgramming;
}

namespace vantor {

/// The progress window of memory flows. Its X does nothing: the flow closes it.
class FrmProgramming final : public QWidget, public ProgressDisplay {
  public:
    explicit FrmProgramming(SessionState& state);
    ~FrmProgramming() override;

    void applyCaptions();

    void openProgress(const std::string& caption, const std::string& title,
                      bool withSegment) override;
    void showProgress(int value) override;
    void showSegment(int segment) override;
    void closeProgress() override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void resetToDesign();

    SessionState& state_;
    std::unique_ptr<Ui::frmProgramming> ui_;
};

}  // namespace vantor
