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

  // Draws how far the present run is, at most ten times a second; nothing if there is none.
  void Draw(Application& app);
  // Takes the line away, so that other text can be written.
  void Clear();

 private:
  std::ostream& out_;
  std::string drawn_;
  std::chrono::steady_clock::time_point last_{};
};

// The line itself: bar and percentage, the percentage of the archive operation if there is one, and
// as much of what is done as `width` columns take.
std::string ProgressText(const RunProgress& progress, int width);

}  // namespace quorvale
