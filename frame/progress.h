#pragma once
// The host's progress meter for the length of one long loop: set up with the
// loop's label and total, moved on after each step, and the status bar
// restored when the loop ends, however it ends.
#include <algorithm>
#include <climits>
#include <cstddef>
#include <string_view>

#include "host/editor.h"

namespace frame {

class ProgressMeter {
 public:
  ProgressMeter(host::Editor& editor, std::string_view label, std::size_t total)
      : editor_(editor), total_(total) {
    editor_.setProgressMeter(label, 0, positionOf(total));
  }
  ~ProgressMeter() { editor_.restoreStatusBar(); }
  ProgressMeter(const ProgressMeter&) = delete;
  ProgressMeter& operator=(const ProgressMeter&) = delete;

  // done of the total steps are finished.
  void step(std::size_t done) { editor_.setProgressMeterPos(positionOf(std::min(done, total_))); }

 private:
  static int positionOf(std::size_t n) { return static_cast<int>(std::min<std::size_t>(n, INT_MAX)); }

  host::Editor& editor_;
  std::size_t total_;
};

}  // namespace frame
