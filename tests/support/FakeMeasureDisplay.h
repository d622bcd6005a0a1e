#pragma once

#include <string>
#include <vector>

#include "measure/MeasureDisplay.h"

namespace vantor::test {

class FakeMeasureDisplay final : public MeasureDisplay {
  public:
    bool log = false;
    bool duplicate = false;
    std::vector<std::string> events;
    std::string caption, number, readings;
    int backCaption = 0;
    bool backEnabled = false, runEnabled = false, coinLayout = true, visible = false;
    bool promChoicesEnabled = false, wizardPanel = false;
    WizardPanel shownPanel;
    std::string target = "C2", coinValue = "10", code, description;

    void showMeasureWindow() override { visible = true; }
    void hideMeasureWindow() override { visible = false; }
    void hideMainWindow() override { events.emplace_back("hide main"); }
    void backToMainWindow() override { events.emplace_back("main"); }
    void setCaption(const std::string& text) override { caption = text; }
    void setBackButton(int message, bool enabled) override {
        backCaption = message;
        backEnabled = enabled;
    }
    void enableRunButtons(bool enabled) override { runEnabled = enabled; }
    void enablePromChoices(bool enabled) override { promChoicesEnabled = enabled; }
    void showWizardPanel(bool wizard) override { wizardPanel = wizard; }
    void showMech() override {}
    void showPromChoices() override { events.emplace_back("prom"); }
    void showTargetLists() override { events.emplace_back("lists"); }
    void showStatistics(bool coin) override { coinLayout = coin; }
    void showLimitSources() override {}
    void showReading(int parameter, const std::string& text) override {
        if (parameter == 1) readings.clear();
        readings += text + ";";
    }
    void showNumber(const std::string& text) override { number = text; }
    void showNumberCaption(const std::string&) override {}
    void showItem(const std::string& itemCode, const std::string& itemDescription) override {
        code = itemCode;
        description = itemDescription;
    }
    void showCoinset() override {}
    [[nodiscard]] bool logResultsTicked() const override { return log; }
    [[nodiscard]] bool duplicateTicked() const override { return duplicate; }
    [[nodiscard]] std::string coinValueText() const override { return coinValue; }
    void showWizardChoices(const WizardPanel& panel) override { shownPanel = panel; }
    [[nodiscard]] std::string chosenCoin() const override { return target; }
    [[nodiscard]] int chosenOutputLine() const override { return 3; }
    [[nodiscard]] int chosenInhibitLine() const override { return 4; }
};

}  // namespace vantor::test
