#include "boxsim/SimulatedMech.h"

#include <algorithm>

#include "boxsim/CcI2cMech.h"
#include "boxsim/MarsMech.h"
#include "boxsim/NriHandshakeMech.h"
#include "boxsim/NriPlainMech.h"
#include "boxsim/SentinelMech.h"
#include "catalogue/MechCatalogue.h"

namespace vantor::boxsim {

namespace {

struct FamilyRow {
    std::string_view maker;
    std::unique_ptr<SimulatedMech> (*make)(const MechModel& model, MechLine& line);
};

constexpr std::array kFamilies = {
    FamilyRow{kMars,
              [](const MechModel& model, MechLine&) -> std::unique_ptr<SimulatedMech> {
                  return std::make_unique<MarsMech>(model.code);
              }},
    FamilyRow{kCoinControls,
              [](const MechModel& model, MechLine& line) -> std::unique_ptr<SimulatedMech> {
                  if (model.serialForm == SerialForm::sentinel) {
                      return std::make_unique<SentinelMech>(model, line);
                  }
                  return std::make_unique<CcI2cMech>(model, line);
              }},
    FamilyRow{kNri,
              [](const MechModel& model, MechLine& line) -> std::unique_ptr<SimulatedMech> {
                  if (nriVariant(model.code).plain) {
                      return std::make_unique<NriPlainMech>(model, line);
                  }
                  return std::make_unique<NriHandshakeMech>(model, line);
              }},
};

}  // namespace

std::string memoryText(std::span<const MemoryCell> cells) {
    constexpr std::size_t kWordsPerLine = 8;
    const bool blocks = !cells.empty() && cells.front().number != 0;
    std::string text;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (blocks || i % kWordsPerLine == 0) {
            text += (i == 0 ? "" : "\n") + std::to_string(cells[i].number) + ':';
        }
        text += ' ' + cells[i].content;
    }
    return text;
}

std::unique_ptr<SimulatedMech> makeMech(std::string_view maker, std::string_view model,
                                        MechLine& line) {
    // The catalogue's own search takes any code for a Mars mech; a bench holds known models only.
    const auto models = mechModels();
    const auto found = std::find_if(models.begin(), models.end(), [&](const MechModel& row) {
        return row.maker == maker && row.code == model;
    });
    if (found == models.end()) return nullptr;
    for (const FamilyRow& family : kFamilies) {
        if (family.maker == maker) return family.make(*found, line);
    }
    return nullptr;
}

}  // namespace vantor::boxsim
