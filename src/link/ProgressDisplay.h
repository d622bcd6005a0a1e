#pragma once

#include <string>

namespace vantor {

/// The small progress window of memory flows (`frmProgramming`).
class ProgressDisplay {
  public:
    static constexpr int kRange = 16;

    virtual ~ProgressDisplay() = default;
    /// `withSegment`: the segment label and number are visible.
    virtual void openProgress(const std::string& caption, const std::string& title,
                              bool withSegment) = 0;
    virtual void showProgress(int value) = 0;   ///< 0..kRange
    virtual void showSegment(int segment) = 0;  ///< 1-based
    virtual void closeProgress() = 0;
};

/// Closes the progress window on the way out, also when the program ends.
class ProgressScope {
  public:
    ProgressScope(ProgressDisplay& display, const std::string& caption, const std::string& title,
                  bool withSegment)
        : display_(display) {
        display_.openProgress(caption, title, withSegment);
    }
    ~ProgressScope() { display_.closeProgress(); }
    ProgressScope(const ProgressScope&) = delete;
    ProgressScope& operator=(const ProgressScope&) = delete;

  private:
    ProgressDisplay& display_;
};

}  // namespace vantor
