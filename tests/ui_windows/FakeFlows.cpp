#include "FakeFlows.h"

// The windows are linked with these in place of the real flows, so that a test sees which call a
// click makes and nothing else.

namespace vantor {

namespace test {

FlowCalls& flowCalls() {
    static FlowCalls calls;
    return calls;
}

void FlowCalls::add(std::string call) {
    made.push_back(std::move(call));
    if (duringCall) duringCall();
}

std::string FlowCalls::take() {
    std::string joined;
    for (const std::string& call : made) joined += (joined.empty() ? "" : " ") + call;
    made.clear();
    return joined;
}

}  // namespace test

using test::flowCalls;

struct MeasureFlows::Impl {
    MeasureDisplay& display;
};

MeasureFlows::MeasureFlows(const Parts& parts) : impl_(new Impl{parts.display}) {}
MeasureFlows::~MeasureFlows() = default;

void MeasureFlows::CoinInitialise(int mode) {
    flowCalls().add("initialise" + std::to_string(mode));
    impl_->display.showMeasureWindow();
}
void MeasureFlows::runCoinsetFile() {
    flowCalls().add("run");
}
void MeasureFlows::openWizards() {
    flowCalls().add("wizards");
}
void MeasureFlows::cancelWizards() {
    flowCalls().add("cancelWizards");
}
void MeasureFlows::runWizard(WizardMode mode) {
    flowCalls().add("wizard" + std::to_string(static_cast<int>(mode)));
}
void MeasureFlows::backButton() {
    flowCalls().add("back");
}
void MeasureFlows::choosePromSize(int promSizeCode) {
    flowCalls().add("size" + std::to_string(promSizeCode));
}
void MeasureFlows::chooseSegments(const std::array<bool, 4>& checked) {
    std::string call = "segments";
    for (const bool box : checked) call += box ? '1' : '0';
    flowCalls().add(call);
}

LimitsReview::LimitsReview(SessionState& state, ProgrammerLink&, const Families& families,
                           Prompts& prompts, ErrorReporter& errors, LimitsDisplay& display)
    : state_(state), families_(families), prompts_(prompts), errors_(errors), display_(display) {}

void LimitsReview::selectSegment(int index) {
    flowCalls().add("segment" + std::to_string(index));
}
void LimitsReview::changeLimits() {
    flowCalls().add("change");
}
void LimitsReview::restoreLimits() {
    flowCalls().add("restore");
}
void LimitsReview::programNew() {
    flowCalls().add("program");
}

}  // namespace vantor
