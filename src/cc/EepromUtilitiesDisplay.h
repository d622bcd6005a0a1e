#pragma once

#include <string>
#include <vector>

#include "cc/CcLayout.h"

namespace vantor {

/// The EEPROM utilities window as cc/ sees it.
class EepromUtilitiesDisplay {
  public:
    virtual ~EepromUtilitiesDisplay() = default;

    /// Captions in the language of now, text and boxes empty.
    virtual void loadEepromWindow() = 0;
    virtual void showEepromWindow() = 0;
    /// Hides the window and resets it to the design state.
    virtual void closeEepromWindow() = 0;

    virtual void showEepromMechType(const std::string& mechType) = 0;
    /// Fills the list of views and chooses its first entry.
    virtual void listEepromViews(const std::vector<std::string>& entries) = 0;
    [[nodiscard]] virtual int chosenEepromView() const = 0;  ///< 0-based; -1 = the list is empty
    /// Shows a text in place of the boxes; a file can be programmed.
    virtual void showEepromText(const std::string& text) = 0;
    /// Shows a 435's settings in boxes in place of the text; they can be programmed.
    virtual void showC435Settings(const C435Settings& settings) = 0;
    /// What the boxes say now.
    [[nodiscard]] virtual C435Settings enteredC435Settings() const = 0;
};

}  // namespace vantor
