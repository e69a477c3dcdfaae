// The progress meter of long work, on the terminal the user types at.
#include <cstdio>
#include <unistd.h>

#include "standalone/editor/command_line.h"

namespace standalone {

void CommandLine::progressStart(std::string_view label, int low, int high) {
  meter_.reset();
  // Only a person at a terminal wants a meter: scripts and tokens echo their answers.
  bool atTerminal = !sources_.empty() && !sources_.back().source->echoesAnswers() && isatty(STDERR_FILENO);
  if (atTerminal && high > low) meter_ = Meter{std::string(label), low, high};
}

void CommandLine::progressAt(int position) {
  if (!meter_) return;
  int percent = static_cast<int>(100.0 * (position - meter_->low) / (meter_->high - meter_->low));
  if (percent == meter_->shownPercent) return;
  meter_->shownPercent = percent;
  std::fprintf(stderr, "\r%s %3d%%", meter_->label.c_str(), percent);
  std::fflush(stderr);
}

void CommandLine::progressEnd() {
  if (meter_ && meter_->shownPercent >= 0) std::fprintf(stderr, "\r\033[K");
  meter_.reset();
}

}  // namespace standalone
