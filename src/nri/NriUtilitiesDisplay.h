#pragma once

#include <string>
#include <vector>

namespace vantor {

/// The NRI memory utilities window as nri/ sees it.
class NriUtilitiesDisplay {
  public:
    virtual ~NriUtilitiesDisplay() = default;

    /// Captions in the language of now, text empty.
    virtual void loadNriWindow() = 0;
    virtual void showNriWindow() = 0;
    /// Hides the window and resets it to the design state.
    virtual void closeNriWindow() = 0;

    virtual void showNriMechType(const std::string& mechType) = 0;
    /// Fills the list of views and chooses its first entry.
    virtual void listNriViews(const std::vector<std::string>& entries) = 0;
    [[nodiscard]] virtual int chosenNriView() const = 0;  ///< 0-based; -1 = the list is empty
    virtual void showNriText(const std::string& text) = 0;
};

}  // namespace vantor
