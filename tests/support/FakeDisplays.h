#pragma once

#include <map>
#include <string>
#include <vector>

#include "limits/LimitsDisplay.h"
#include "link/ProgressDisplay.h"
#include "measure/MeasureDisplay.h"

namespace vantor::test {

class NoProgress final : public ProgressDisplay {
  public:
    void openProgress(const std::string&, const std::string&, bool) override {}
    void showProgress(int) override {}
    void showSegment(int) override {}
    void closeProgress() override {}
};

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

class FakeLimitsDisplay final : public LimitsDisplay {
  public:
    bool visible = false;
    int segment = -1;
    std::string firstRow;                   ///< the limits of the first channel
    std::map<int, std::string> acceptance;  ///< by row, from 0
    std::string firstSlug;                  ///< the limits of the first slug

    void layOut(const LimitsLayout&) override { firstRow = firstSlug = ""; }
    void showLimitsWindow() override { visible = true; }
    void hideLimitsWindow() override { visible = false; }
    void chooseSegment(int index) override { segment = index; }
    void setRowHead(int, const std::string&) override {}
    void setLimit(int row, int column, const std::string& text) override {
        if (row == 0 && column == 1) firstRow.clear();
        if (row == 0) firstRow += text + ";";
    }
    [[nodiscard]] std::string limitText(int, int) const override { return ""; }
    void setSlugLimit(int slug, int, const std::string& text) override {
        if (slug == 1) firstSlug += text + ";";
    }
    void clearColours() override {}
    void colourRow(int, std::uint32_t) override {}
    void colourSlug(int, std::uint32_t) override {}
    void setAcceptance(int row, const std::string& text) override { acceptance[row] = text; }
    void setRejection(int, const std::string&) override {}
    void enableValidatorTest(bool) override {}
};

}  // namespace vantor::test
