#pragma once

#include <QWidget>
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "boxsim/SimulatedBox.h"
#include "platform/EventLoop.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace vantor::boxsim {

/// The bench beside the program while it works on the simulated box: what a technician's hands
/// would do there, and what a service engineer's instruments would show.
class BenchWindow final : public QWidget {
  public:
    /// Runs one bench command, as session scripts write them; the result says what went wrong
    /// (UTF-8, empty = nothing).
    using RunBench = std::function<std::string(const std::vector<std::string>& words)>;

    BenchWindow(EventLoop& loop, SimulatedBox& box, RunBench runBench);

  protected:
    /// The frame's X only minimises: there would be no way back.
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    QGroupBox* makeMechGroup();
    QGroupBox* makePromGroup();
    QGroupBox* makeSwitches();
    QGroupBox* makeCoinGroup();
    QGroupBox* makeBoxGroup();
    QGroupBox* makeFaultGroup();
    QGroupBox* makeTrafficGroup();
    QPushButton* button(const char* name, const QString& caption, std::function<void()> clicked);
    QSpinBox* number(const char* name, int low, int high, int value);

    void bench(const std::vector<std::string>& words);
    void plugIn();
    void insertProm(const std::string& contents);
    void chooseFile(bool saving, std::function<void(const QString&)> chosen);
    void addFault();
    void refresh();
    void refreshMech();
    void refreshProm();
    void refreshMemory();
    void refreshTraffic();

    SimulatedBox& box_;
    RunBench runBench_;
    RepeatingTimer timer_;

    QComboBox* mechs_ = nullptr;
    QLabel* mech_ = nullptr;
    QRadioButton *noProm_ = nullptr, *bipolar_ = nullptr, *e1_ = nullptr;
    QComboBox* promSize_ = nullptr;
    QLabel* prom_ = nullptr;
    std::array<QCheckBox*, 2> switches_{};
    QPlainTextEdit* cells_ = nullptr;
    QPlainTextEdit* memory_ = nullptr;
    QComboBox* coins_ = nullptr;
    QSpinBox *count_ = nullptr, *every_ = nullptr;
    std::array<QSpinBox*, 3> raw_{};
    QCheckBox *silent_ = nullptr, *cable_ = nullptr;
    QLineEdit* version_ = nullptr;
    QComboBox *faultKind_ = nullptr, *faultWhere_ = nullptr;
    QSpinBox *faultAfter_ = nullptr, *faultTimes_ = nullptr, *faultValue_ = nullptr;
    QPlainTextEdit* traffic_ = nullptr;
    QLabel* said_ = nullptr;

    std::string shownMech_ = "?";
    std::vector<std::uint8_t> shownCells_;
    std::string shownMemory_;
    PromKind shownKind_ = PromKind::none;
    bool promShown_ = false;
    Micros shownUntil_{-2};
};

/// 16 cells a line, the address in front, as the limits of a PROM are looked up on paper.
[[nodiscard]] std::string hexDump(std::span<const std::uint8_t> cells);

/// What went over the line, one line for each change of direction; control characters by name.
[[nodiscard]] std::string trafficText(std::span<const WireByte> bytes);

}  // namespace vantor::boxsim
