#include "platform/registry_editor.h"

namespace quorvale {
namespace {

constexpr std::uint64_t kLongestWait = 30000;  // milliseconds for one run
constexpr int kPause = 20;                     // milliseconds between two looks at it
constexpr int kFirstSuccess = 32;              // of the shell's execute call

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

}  // namespace

void RegistryEditor::Export(const std::string& file, const std::string& key,
                            bool with_raised_rights) {
  const std::string arguments = "/e " + Quoted(file) + " " + Quoted(key);
  RunId run = 0;
  if (!with_raised_rights) {
    run = shell_.Run("regedit.exe /s " + arguments, WindowStyle::kHidden);
  } else if (shell_.Execute("runas", "regedit.exe", arguments, "", 0, &run) < kFirstSuccess) {
    return;
  }
  if (run != 0) runs_.push_back(run);
}

bool RegistryEditor::Import(const std::string& file) {
  const RunId run = shell_.Run("regedit.exe /s /c " + Quoted(file), WindowStyle::kHidden);
  if (run != 0) runs_.push_back(run);
  return run != 0;
}

bool RegistryEditor::WaitForRuns() {
  bool all_ended = true;
  // A handler that runs inside a pump may start further runs, or wait itself.
  while (!runs_.empty()) {
    const RunId run = runs_.front();
    const std::uint64_t deadline = system_.Ticks() + kLongestWait;
    while (shell_.IsRunning(run) && system_.Ticks() < deadline) {
      pump_();
      system_.Sleep(kPause);
    }
    all_ended = all_ended && !shell_.IsRunning(run);
    std::erase(runs_, run);
  }
  return all_ended;
}

}  // namespace quorvale
