#pragma once

#include <string>

namespace vantor {

/// What the PROM utilities window has beside the other utilities windows. `promSizeCode` is 0 for
/// 1K and 1 for 2K.
class PromDisplay {
  public:
    virtual ~PromDisplay() = default;

    virtual void showPromSize(int promSizeCode, bool choosable) = 0;
    [[nodiscard]] virtual int shownPromSize() const = 0;
    /// `read` is the left pane, `next` the right one.
    virtual void showPanes(const std::string& read, const std::string& next) = 0;
};

}  // namespace vantor
