// Windows, message boxes, dialogs and the message loop of the running system.
#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>

#include "platform/ui/form.h"
#include "platform/ui/ui.h"
#include "platform/windows/drawing.h"

namespace quorvale::windows {

class FormView;

class WindowsUi : public ui::Ui {
 public:
  WindowsUi();
  ~WindowsUi() override;

  // Runs after each message of the outermost loop (Application::CollectUnloaded).
  std::function<void()> after_message;
  // Which keyboard events the guard swallows (platform/ui/keyboard_guard.h). Without it nothing is.
  using KeyboardFilter = std::function<bool(int code, std::uint32_t message,
                                            std::uint32_t virtual_key, bool own_window_in_front)>;
  KeyboardFilter keyboard_filter;

  // Handles messages until Quit.
  void Loop();

  void Attach(ui::Form& form) override;
  ui::Answer MessageBox(const ui::MessageBoxRequest& request) override;
  std::string BrowseForFolder(const std::string& title, const std::string& start) override;
  std::string OpenFileDialog(const std::string& filter, const std::string& initial_folder) override;
  void Pump() override;
  void RunModal(ui::Form& form) override;
  void SetPointer(ui::Pointer pointer) override;
  ui::Pointer CurrentPointer() const override { return pointer_; }
  bool MouseIsOver(const ui::Control& control) override;
  ui::TextSize SizeOfText(const ui::Control& control, const std::string& text) override;
  bool SetClipboardText(const std::string& text) override;
  void Quit() override;
  void SetCapsLock(bool on) override;
  void GuardKeyboard(bool on) override;
  int DotsPerInch() override;

  Drawing& drawing() { return drawing_; }
  ui::Pointer pointer() const { return pointer_; }
  // The view of the form that a window belongs to; null if it is none of ours.
  FormView* ViewOf(HWND window) const;
  void Add(FormView& view) { views_.insert(&view); }
  void Remove(FormView& view) { views_.erase(&view); }
  const std::set<FormView*>& views() const { return views_; }
  // The window that boxes and dialogs stand in front of.
  HWND Owner() const;

 private:
  // False when the program is to end.
  bool Dispatch(MSG& message);
  void KeepFocus();

  Drawing drawing_;
  std::set<FormView*> views_;
  ui::Pointer pointer_ = ui::Pointer::kDefault;
  HHOOK guard_ = nullptr;
  bool quit_ = false;
};

}  // namespace quorvale::windows
