#pragma once

#include <string>
#include <vector>

namespace vantor {

/// A memory utilities window as its work sees it, whatever the maker.
class MemoryDisplay {
  public:
    virtual ~MemoryDisplay() = default;

    /// Captions in the language of now, texts and boxes empty.
    virtual void loadWindow() = 0;
    virtual void showWindow() = 0;
    /// Hides the window and resets it to the design state.
    virtual void closeWindow() = 0;

    virtual void showMechType(const std::string& mechType) = 0;
    /// Fills the list of views and chooses its first entry.
    virtual void listViews(const std::vector<std::string>& entries) = 0;
    [[nodiscard]] virtual int chosenView() const = 0;  ///< 0-based; -1 = the list is empty
    /// Shows what was read, in lines that end in CR LF.
    virtual void showText(const std::string& text) = 0;
};

}  // namespace vantor
