#pragma once

#include <string>
#include <vector>

namespace vantor {

/// The PROM utilities window as mars/ sees it. `promSizeCode` is 0 for 1K and 1 for 2K.
class PromUtilitiesDisplay {
  public:
    virtual ~PromUtilitiesDisplay() = default;

    /// Captions in the language of now, lists and panes empty.
    virtual void loadPromWindow() = 0;
    virtual void showPromWindow() = 0;
    /// Hides the window and resets it to the design state.
    virtual void closePromWindow() = 0;

    virtual void showPromSize(int promSizeCode, bool choosable) = 0;
    [[nodiscard]] virtual int shownPromSize() const = 0;
    virtual void showPromMechType(const std::string& mechType) = 0;
    /// Fills the list of views and chooses its first entry.
    virtual void listViews(const std::vector<std::string>& entries) = 0;
    [[nodiscard]] virtual int chosenView() const = 0;  ///< 0-based; -1 while the list is empty
    /// `read` is the left pane, `next` the right one.
    virtual void showPanes(const std::string& read, const std::string& next) = 0;
};

}  // namespace vantor
