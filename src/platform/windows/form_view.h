// The window of a form.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/ui/form.h"
#include "platform/windows/control_window.h"

namespace quorvale::windows {

class WindowsUi;

class FormView : public ui::View {
 public:
  FormView(WindowsUi& ui, ui::Form& form);
  ~FormView() override;

  // ui::View
  void Changed(ui::Control& control, ui::Property property) override;
  void FormChanged() override;
  void Focus(ui::Control& control) override;
  void Refresh(ui::Control* control) override;

  ui::Form& form() const { return form_; }
  WindowsUi& ui() const { return ui_; }
  HWND handle() const;
  // The window of the form or of the panel that contains a control.
  HWND ParentOf(const ui::Control& control) const;
  Surface* SurfaceOf(const ui::Control* container) const;
  ControlWindow* WindowOf(const ui::Control& control) const;
  // In the order in which they lie on each other, the lowest first.
  const std::vector<std::unique_ptr<ControlWindow>>& windows() const { return windows_; }

  void SetToolTip(const ControlWindow& window);
  // The control that has or last had the keyboard, and puts it there again.
  void RestoreFocus();
  // A page that was shown while its panel was still hidden takes the keyboard now. False if it
  // does not wait for that.
  bool TakeAwaitedFocus();
  // True if a press there drags the window; it is dragged before this returns.
  bool DragFrom(HWND window, int x, int y);
  void FocusMoved(ui::Control* control);

 private:
  class FormWindow;
  friend class FormWindow;

  void MakeControls();
  void MakeControl(ui::Control& control);
  void UpdateTimer(ui::Control& control);
  void RunTimer(UINT_PTR id);
  void UpdateVisibility();
  void WindowStateMoved(bool minimized);
  void OnActivated();
  void UpdateShape();
  // False if no control can have the keyboard now.
  bool FocusFirst();
  bool FocusStart();

  WindowsUi& ui_;
  ui::Form& form_;
  std::unique_ptr<FormWindow> window_;
  std::vector<std::unique_ptr<ControlWindow>> windows_;
  std::map<const ui::Control*, ControlWindow*> by_control_;
  std::vector<ui::Control*> timers_;  // a timer's number is its place here and 1
  std::set<ui::Control*> running_timers_;
  HWND tooltips_ = nullptr;
  bool shown_ = false;
  bool awaits_focus_ = false;
  bool changing_ = false;  // the window moves because the model did, or the other way round
  int shape_corner_ = -1;
};

}  // namespace quorvale::windows
