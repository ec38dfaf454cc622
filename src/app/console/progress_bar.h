// Draws the progress of the run pages on one line of a terminal.
#pragma once

#include <chrono>
#include <iosfwd>
#include <string>

#include "core/pages/application.h"

namespace quorvale {

class ProgressBarLine {
 public:
  explicit ProgressBarLine(std::ostream& out) : out_(out) {}

  // Draws what the run page shows now, at most ten times a second; nothing if no run page is up.
  void Draw(Application& app);
  // Takes the line away, so that other text can be written.
  void Clear();

 private:
  std::ostream& out_;
  std::string drawn_;
  std::chrono::steady_clock::time_point last_{};
};

// The line itself: phase bar and percentage, the percentage of the archive operation if its bar is
// shown, and as much of the status text as `width` columns take. "" if no run page is on screen.
std::string ProgressText(Application& app, int width);

}  // namespace quorvale
