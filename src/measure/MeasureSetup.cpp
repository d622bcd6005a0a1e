#include "measure/MeasureSetup.h"

namespace vantor {

void MeasureSetup::CoinInitialise(int mode) {
    const bool fresh = mode == 0;
    SessionState& state = parts_.state;
    const auto step = [this](auto&& work) { parts_.errors.attempt(447, work); };
    step([&] { parts_.display.hideMeasureWindow(); });
    if (fresh) freshStart();
    step([&] { showCleared(); });
    if (fresh) step([&] { startBox(); });
    readings_.updateStats(1);
    state.item.isCoin = true;
    readings_.updateDisplay(state.item.measureKind);
    if (fresh) state.gather.gatherActive = false;
    step([&] { parts_.display.showMeasureWindow(); });
}

void MeasureSetup::freshStart() {
    SessionState& state = parts_.state;
    MeasureDisplay& display = parts_.display;
    const auto step = [this](auto&& work) { parts_.errors.attempt(447, work); };
    step([&] {
        display.enableRunButtons(true);
        display.showWizardPanel(false);
        display.setCaption(state.msgText(444));
        display.setBackButton(445, true);
    });
    step([&] {
        state.item.measureKind = 1;
        state.item.limitOrigins.fill({});
        display.showLimitSources();
        for (int p = 1; p <= state.n(); ++p) display.showReading(p, "0");
    });
    step([&] {
        if (parts_.families.selected().twoSegmentProm()) state.prom.promSizeCode = 1;
    });
    parts_.errors.attempt(441, [&] { display.showTargetLists(); });
}

void MeasureSetup::showCleared() {
    SessionState& state = parts_.state;
    MeasureDisplay& display = parts_.display;
    state.item.itemCode.clear();
    state.item.itemDescription.clear();
    state.coinset.title.clear();
    state.coinset.referenceCode.clear();
    state.coinset.version.clear();
    display.showItem("", "");
    display.showCoinset();
    display.showNumber("");
    display.showMech();
    parts_.errors.attempt(438, [&] { display.showStatistics(true); });
    display.showNumberCaption(state.msgText(446));
}

void MeasureSetup::startBox() {
    MechFamily& family = parts_.families.selected();
    parts_.display.enableRunButtons(true);
    family.startMeasuring();
    if (!family.look().promSocket) return;
    parts_.display.enablePromChoices(true);
    choosePromSize(parts_.state.prom.promSizeCode);
}

void MeasureSetup::choosePromSize(int promSizeCode) {
    PromState& prom = parts_.state.prom;
    prom.promSizeCode = promSizeCode;
    prom.segmentSelected.fill(false);
    prom.segmentSelected[0] = true;
    parts_.errors.attempt(promSizeCode == 0 ? 439 : 440, [&] { parts_.display.showPromChoices(); });
    parts_.errors.attempt(443, [&] { parts_.display.showTargetLists(); });
}

void MeasureSetup::chooseSegments(const std::array<bool, 4>& checked) {
    parts_.errors.attempt(400, [&] {
        for (int s = 0; s < kMarsSegments; ++s) {
            parts_.state.prom.segmentSelected[s] = checked.at(static_cast<std::size_t>(s));
        }
    });
    parts_.errors.attempt(441, [&] { parts_.display.showTargetLists(); });
}

}  // namespace vantor
