// The windows of controls. One class for each kind, all with the same duties: to show what the
// model says and to tell the model what the user does.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/ui/controls.h"
#include "platform/ui/tree_view.h"
#include "platform/windows/drawing.h"
#include "platform/windows/window_calls.h"

namespace quorvale::windows {

class FormView;

// Where a window stands on the canvas that is painted.
struct Origin {
  int x = 0;
  int y = 0;
};

// What the windows of controls and forms have in common: they can be painted behind others.
class Surface : public Window {
 public:
  // Paints the window's own content, and before that what stands behind it.
  virtual void PaintAll(Canvas& canvas, Origin origin) = 0;
  // The colour behind system controls that stand on this one.
  virtual COLORREF GroundColor() const = 0;

 protected:
  virtual Drawing& drawing() const = 0;
  // Hands what a control tells its parent window, by WM_COMMAND, WM_NOTIFY and WM_CTLCOLOR...,
  // to the control's own object. Nothing if the message is none of these, or a command
  // or a notice of a window that is none of ours.
  std::optional<LRESULT> RouteToChild(UINT message, WPARAM w, LPARAM l);
};

class ControlWindow : public Surface {
 public:
  ControlWindow(FormView& view, ui::Control& control);
  ~ControlWindow() override;

  ui::Control& control() const { return control_; }
  // True if the keyboard can be in it.
  virtual bool TakesFocus() const { return true; }
  // The text whose "&" marks the access key; "" if there is none.
  virtual std::string AccessText() const { return ""; }
  // Keys that this control wants for itself although they move the focus or press buttons.
  virtual bool WantsKey(WPARAM) const { return false; }

  // The model changed.
  virtual void Update(ui::Property property);
  // What the window says to its parent by WM_COMMAND and WM_NOTIFY.
  virtual void OnCommand(int) {}
  virtual LRESULT OnNotify(NMHDR*) { return 0; }

  void PaintAll(Canvas& canvas, Origin origin) override;
  COLORREF GroundColor() const override;
  virtual void PaintContent(Canvas&, Origin) {}
  // Behind the control's own text, on a ground of the colour `around`.
  COLORREF InsideColor(COLORREF around) const;

 protected:
  LRESULT Handle(UINT message, WPARAM w, LPARAM l) override;
  // Messages of one kind of control; nothing: it goes the usual way.
  virtual std::optional<LRESULT> OnMessage(UINT, WPARAM, LPARAM) { return std::nullopt; }
  // The user clicked.
  virtual void OnClick() { control_.Click(); }
  // True if mouse clicks are for OnClick; system controls tell of them otherwise.
  virtual bool OwnClicks() const { return false; }

  FormView& view() const { return view_; }
  Drawing& drawing() const override;
  HWND ParentWindow() const;
  // The control's place, relative to its parent.
  RECT Place() const;
  DWORD BaseStyle() const;
  // To be called when the window was made: font, state, tooltip, place in the order of windows.
  void Prepare();
  // Answers the system's request to paint, for a window that paints itself.
  void PaintWindow();
  // Paints this place anew, with all that stands on it.
  void Invalidate();

  // While true, changes that the window tells of came from the program.
  bool updating_ = false;

 private:
  void UseFont(BOOL repaint);
  void PaintBehind(Canvas& canvas, Origin origin);
  void PaintBoxBorder();
  // True if the message goes no further.
  bool OnMouse(UINT message, LPARAM l);
  void OnMouseEnter();
  void OnMouseLeave();
  bool OnPress(int x, int y);
  bool OnRelease(int x, int y);

  FormView& view_;
  ui::Control& control_;
  bool mouse_inside_ = false;
  bool mouse_pressed_ = false;

 protected:
  bool MouseInside() const { return mouse_inside_; }
  bool MousePressed() const { return mouse_pressed_; }
};

// The window of a control. Null for kinds that are not seen.
std::unique_ptr<ControlWindow> MakeControlWindow(FormView& view, ui::Control& control);

// By kind; each in a file of its own.
std::unique_ptr<ControlWindow> MakeDrawnWindow(FormView& view, ui::Control& control);
std::unique_ptr<ControlWindow> MakeButtonWindow(FormView& view, ui::Control& control);
std::unique_ptr<ControlWindow> MakeTextWindow(FormView& view, ui::Control& control);
std::unique_ptr<ControlWindow> MakeListWindow(FormView& view, ui::Control& control);
std::unique_ptr<ControlWindow> MakeTreeWindow(FormView& view, ui::TreeView& tree);
std::unique_ptr<ControlWindow> MakeValueWindow(FormView& view, ui::Control& control);

}  // namespace quorvale::windows
