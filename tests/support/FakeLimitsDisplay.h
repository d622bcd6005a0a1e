#pragma once

#include <map>
#include <string>
#include <utility>

#include "limits/LimitsDisplay.h"

namespace vantor::test {

/// The limits window as a table of texts. Like the real one it tells the state about the
/// technician's edits only.
class FakeLimitsDisplay final : public LimitsDisplay {
  public:
    LimitsLayout layout;
    bool visible = false, validatorTest = false;
    int chosen = -1;  ///< segment, from 0
    std::map<int, std::string> heads;
    std::map<std::pair<int, int>, std::string> limits, slugLimits;
    std::map<int, std::uint32_t> rowColours, slugColours;
    std::map<int, std::string> acceptance, rejection;

    /// The limits of the first channel, and of the first slug.
    [[nodiscard]] std::string firstRow() const { return joined(limits, 0); }
    [[nodiscard]] std::string firstSlug() const { return joined(slugLimits, 1); }

    void layOut(const LimitsLayout& given) override {
        const bool shown = visible;
        *this = FakeLimitsDisplay();
        visible = shown;
        layout = given;
    }
    void showLimitsWindow() override { visible = true; }
    void hideLimitsWindow() override { visible = false; }
    void chooseSegment(int segment) override { chosen = segment; }
    void setRowHead(int row, const std::string& text) override { heads[row] = text; }
    void setLimit(int row, int column, const std::string& text) override {
        limits[{row, column}] = text;
    }
    [[nodiscard]] std::string limitText(int row, int column) const override {
        const auto text = limits.find({row, column});
        return text == limits.end() ? "" : text->second;
    }
    void setSlugLimit(int slug, int column, const std::string& text) override {
        slugLimits[{slug, column}] = text;
    }
    void clearColours() override {
        rowColours.clear();
        slugColours.clear();
    }
    void colourRow(int row, std::uint32_t rgb) override { rowColours[row] = rgb; }
    void colourSlug(int slug, std::uint32_t rgb) override { slugColours[slug] = rgb; }
    void setAcceptance(int row, const std::string& text) override { acceptance[row] = text; }
    void setRejection(int slug, const std::string& text) override { rejection[slug] = text; }
    void enableValidatorTest(bool enabled) override { validatorTest = enabled; }

  private:
    static std::string joined(const std::map<std::pair<int, int>, std::string>& table, int row) {
        std::string all;
        for (const auto& [at, text] : table) {
            if (at.first == row) all += text + ";";
        }
        return all;
    }
};

}  // namespace vantor::test
