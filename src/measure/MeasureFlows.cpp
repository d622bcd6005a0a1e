#include "measure/MeasureFlows.h"

#include "measure/CoinsetRun.h"
#include "measure/Wizard.h"

namespace vantor {

struct MeasureFlows::Impl {
    explicit Impl(const Parts& p)
        : parts(p),
          log(p),
          readings(p, log),
          setup(p, readings),
          gather(p, log, readings),
          frame(p, log, readings, setup),
          transfer(p),
          coinset(p, frame, log, readings, setup, gather, transfer),
          wizard(p, frame, log, readings, gather, transfer) {}

    void cancelRun() {
        GatherState& gatherState = parts.state.gather;
        gatherState.abortFlag = true;
        parts.display.setBackButton(gatherState.wizardRun ? 472 : 407, false);
        parts.display.enablePromChoices(true);
    }

    void leaveWindow() {
        const auto step = [this](auto&& work) { parts.errors.attempt(401, work); };
        step([this] { parts.link.sendW(); });
        step([this] { parts.display.backToMainWindow(); });
        parts.state.gather.gatherActive = false;
        log.close();
    }

    Parts parts;
    RunLog log;
    Readings readings;
    MeasureSetup setup;
    Gather gather;
    RunFrame frame;
    Transfer transfer;
    CoinsetRun coinset;
    Wizard wizard;
    bool busy = false;  ///< a flow of this window is under way
};

namespace {

class BusyScope {
  public:
    explicit BusyScope(bool& busy) : busy_(busy), before_(busy) { busy_ = true; }
    ~BusyScope() { busy_ = before_; }
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;

  private:
    bool& busy_;
    bool before_;
};

}  // namespace

MeasureFlows::MeasureFlows(const Parts& parts) : impl_(std::make_unique<Impl>(parts)) {}
MeasureFlows::~MeasureFlows() = default;

void MeasureFlows::CoinInitialise(int mode) {
    const BusyScope scope(impl_->busy);
    impl_->setup.CoinInitialise(mode);
}

void MeasureFlows::runCoinsetFile() {
    if (impl_->busy) return;
    const BusyScope scope(impl_->busy);
    impl_->coinset.run();
}

void MeasureFlows::openWizards() {
    if (!impl_->busy) impl_->wizard.open();
}

void MeasureFlows::cancelWizards() {
    if (!impl_->busy) impl_->wizard.cancel();
}

void MeasureFlows::runWizard(WizardMode mode) {
    if (impl_->busy) return;
    const BusyScope scope(impl_->busy);
    impl_->wizard.run(mode);
}

void MeasureFlows::backButton() {
    if (impl_->parts.state.gather.runActive) {
        impl_->parts.errors.attempt(401, [this] { impl_->cancelRun(); });
    } else if (!impl_->busy) {
        impl_->leaveWindow();
    }
}

void MeasureFlows::choosePromSize(int promSizeCode) {
    impl_->setup.choosePromSize(promSizeCode);
}

void MeasureFlows::chooseSegments(const std::array<bool, 4>& checked) {
    impl_->setup.chooseSegments(checked);
}

void MeasureFlows::loadMeasurement(std::string_view line) {
    impl_->readings.loadMeasurement(line);
}

void MeasureFlows::updateStats(int mode) {
    impl_->readings.updateStats(mode);
}

void MeasureFlows::logReading() {
    impl_->readings.logReading();
}

void MeasureFlows::PROMxfr() {
    const BusyScope scope(impl_->busy);
    impl_->transfer.PROMxfr();
}

void MeasureFlows::closeFiles() {
    impl_->log.close();
}

}  // namespace vantor
