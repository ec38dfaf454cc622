#include "app/console/progress_bar.h"

#include <algorithm>
#include <ostream>

#include "base/text.h"

namespace quorvale {
namespace {

constexpr int kBarCells = 20;
constexpr int kWidth = 79;
constexpr auto kPause = std::chrono::milliseconds(100);

// The first `columns` characters; a character counts as one column.
std::string Cut(const std::string& text, int columns) {
  std::string cut;
  for (const char byte : text) {
    const bool starts = !ContinuesCharacter(byte);
    if (starts && columns-- == 0) break;
    cut += static_cast<unsigned char>(byte) < ' ' ? ' ' : byte;
  }
  return cut;
}

}  // namespace

std::string ProgressText(const RunProgress& progress, int width) {
  const int percent = std::clamp(progress.percent, 0, 100);
  const int cells = percent * kBarCells / 100;
  std::string line = "[" + std::string(static_cast<size_t>(cells), '#') +
                     std::string(static_cast<size_t>(kBarCells - cells), '.') + "] " +
                     std::to_string(percent) + "% ";
  if (progress.archive_percent) {
    line += "(" + std::to_string(*progress.archive_percent) + "%) ";
  }
  return line + Cut(progress.doing, width - static_cast<int>(line.size()));
}

void ProgressBarLine::Draw(Application& app) {
  const auto now = std::chrono::steady_clock::now();
  if (now - last_ < kPause) return;
  const RunPage* run = app.CurrentRun();
  if (run == nullptr) return;
  const std::string line = ProgressText(run->Progress(), kWidth);
  if (line == drawn_) return;
  last_ = now;
  // Back to the start of the line, and away with what stands behind the new text.
  out_ << '\r' << line << "\x1b[K" << std::flush;
  drawn_ = line;
}

void ProgressBarLine::Clear() {
  if (drawn_.empty()) return;
  out_ << "\r\x1b[K" << std::flush;
  drawn_.clear();
}

}  // namespace quorvale
