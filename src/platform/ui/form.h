// A form: the model of a window or page, which owns its controls and may have a view.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ui/control.h"

namespace quorvale::ui {

class Ui;

// What a binding attaches to a form to show it. It reads the form's controls when it is made and
// is told of every change after that.
class View {
 public:
  virtual ~View() = default;
  virtual void Changed(Control& control, Property property) = 0;
  // Visible, enabled, caption, size or window state of the form itself changed.
  virtual void FormChanged() = 0;
  virtual void Focus(Control& control) = 0;
  // Paints now what waits to be painted; null: the whole form.
  virtual void Refresh(Control* control) = 0;
};

enum class WindowState { kNormal = 0, kMinimized = 1 };

class Form {
 public:
  Form(Ui& ui, std::string name);
  virtual ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  const std::string& name() const { return name_; }
  Ui& ui() const { return ui_; }
  const std::vector<Control*>& controls() const { return controls_; }
  // By name, without regard to case; null if there is none.
  Control* FindControl(const std::string& name) const;

  // Runs once, after construction and before the form is first used.
  virtual void Load() {}
  // Runs each time the form comes to the front.
  virtual void Activate() {}
  // Runs before the form is forgotten.
  virtual void Unload() {}

  void Show();
  void Hide();
  bool Visible() const { return visible_; }
  // Shows the form and returns when it has been hidden or unloaded.
  void ShowModal();
  bool Enabled() const { return enabled_; }
  // False also while the form that hosts this page is disabled.
  bool AcceptsInput() const;
  void SetEnabled(bool enabled);
  WindowState State() const { return state_; }
  void SetState(WindowState state);
  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string caption);
  // Client size in pixels at 96 dots per inch.
  void SetSize(int width, int height);
  int Width() const { return width_; }
  int Height() const { return height_; }
  void Refresh();

  // The panel of another form into which this page is parented; null for a window of its own.
  Control* host_panel = nullptr;
  bool borderless = false;
  int corner = 0;  // rounding of the window's corners, pixels; 0 for square
  Color back_color = kDefaultColor;
  // True where a press on the form, or on a picture or label of it that takes no clicks, drags the
  // window. A point in pixels of the form. Null: nowhere.
  std::function<bool(int x, int y)> drag_area;
  // The user or the system asks the window to close. Null: nothing happens.
  std::function<void()> on_close_request;
  // A virtual key code with its modifier mask, offered before the control with the focus gets it;
  // true swallows the key.
  std::function<bool(int code, int modifiers)> on_key_down;
  std::function<void()> on_deactivate;
  // Mouse on the form itself, outside of all controls.
  std::function<void(int x, int y)> on_mouse_down;

  // Set by the binding. Null: nothing is shown.
  std::unique_ptr<View> view;
  // The control that has the focus in the model.
  Control* focused = nullptr;
  // A view calls this when the user moved the focus; null: it left the form.
  void FocusMoved(Control* control);

 private:
  friend class Control;
  void Add(Control& control);
  void Remove(Control& control);

  Ui& ui_;
  std::string name_;
  std::string caption_;
  std::vector<Control*> controls_;
  bool visible_ = false;
  bool attached_ = false;
  bool enabled_ = true;
  WindowState state_ = WindowState::kNormal;
  int width_ = 780;
  int height_ = 442;
};

}  // namespace quorvale::ui
