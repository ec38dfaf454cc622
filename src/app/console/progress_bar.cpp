#include "app/console/progress_bar.h"

#include <algorithm>
#include <ostream>

#include "base/text.h"
#include "platform/ui/controls.h"
#include "play/hands.h"

namespace quorvale {
namespace {

constexpr int kBarCells = 20;
constexpr int kWidth = 79;
constexpr auto kPause = std::chrono::milliseconds(100);

// What shows how far a run is. The first one that is on the screen counts.
struct RunPage {
  const char* form;
  const char* bar;
  const char* status;
};
constexpr RunPage kRunPages[] = {{"FrmProcess", "prgStatus", "lblStatus"},
                                 {"frmFinish", "pbCurrent", "lblCurrent"},
                                 {"frmRFinish", "pbCurrent", "lblCurrent"}};

const RunPage* PageOnScreen(Application& app) {
  for (const RunPage& page : kRunPages) {
    const ui::Form* form = app.FindLoaded(page.form);
    if (form != nullptr && IsOnScreen(*form)) return &page;
  }
  return nullptr;
}

int Percent(const ui::Form& form, const char* name) {
  const ui::Control* control = form.FindControl(name);
  if (control == nullptr || control->kind() != ui::ControlKind::kProgressBar) return 0;
  const ui::ProgressBar& bar = static_cast<const ui::ProgressBar&>(*control);
  return bar.maximum > 0 ? std::clamp(bar.value * 100 / bar.maximum, 0, 100) : 0;
}

bool IsShown(const ui::Form& form, const char* name) {
  const ui::Control* control = form.FindControl(name);
  return control != nullptr && control->IsShown();
}

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

std::string ProgressText(Application& app, int width) {
  const RunPage* page = PageOnScreen(app);
  if (page == nullptr) return "";
  const ui::Form* form = app.FindLoaded(page->form);
  const int percent = Percent(*form, page->bar);
  const int cells = percent * kBarCells / 100;
  std::string line = "[" + std::string(static_cast<size_t>(cells), '#') +
                     std::string(static_cast<size_t>(kBarCells - cells), '.') + "] " +
                     std::to_string(percent) + "% ";
  if (IsShown(*form, "prbGlobalProgress")) {
    line += "(" + std::to_string(Percent(*form, "prbGlobalProgress")) + "%) ";
  }
  const ui::Control* status = form->FindControl(page->status);
  if (status == nullptr) return line;
  const std::string prefix = "Current Progress: ";
  std::string text = ShownLine(*status);
  if (text.starts_with(prefix)) text.erase(0, prefix.size());
  return line + Cut(text, width - static_cast<int>(line.size()));
}

void ProgressBarLine::Draw(Application& app) {
  const auto now = std::chrono::steady_clock::now();
  if (now - last_ < kPause) return;
  const std::string line = ProgressText(app, kWidth);
  if (line.empty() || line == drawn_) return;
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
