#pragma once

#include <string>
#include <vector>

#include "link/ProgressDisplay.h"

namespace vantor::test {

/// Writes down what the progress window is told.
class RecordedProgress final : public ProgressDisplay {
  public:
    std::vector<std::string> told;  ///< "open CAPTION|TITLE", "bar 3", "segment 2", "close"
    int bar = -1;
    bool open = false;

    void openProgress(const std::string& caption, const std::string& title,
                      bool withSegment) override {
        open = true;
        told.push_back("open " + caption + "|" + title + (withSegment ? "|segment" : ""));
    }
    void showProgress(int value) override {
        bar = value;
        told.push_back("bar " + std::to_string(value));
    }
    void showSegment(int segment) override { told.push_back("segment " + std::to_string(segment)); }
    void closeProgress() override {
        open = false;
        told.emplace_back("close");
    }
};

}  // namespace vantor::test
