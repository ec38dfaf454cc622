// The user interface of a computer: windows for forms, message boxes, dialogs, the message loop.
//
// This room, platform/ui/, is a toolkit-neutral model of forms and controls (form.h, control.h,
// controls.h, tree_view.h) and this interface to whatever shows them; headless/ shows nothing. It
// may use base/ alone, and knows neither Windows nor the program's pages. Start reading at form.h.
#pragma once

#include <string>

namespace quorvale::ui {

class Control;
class Form;

enum class Icon { kNone, kInformation, kQuestion, kExclamation, kCritical };
enum class Buttons { kOk, kYesNo, kYesNoCancel };
enum class Answer { kOk, kYes, kNo, kCancel };

struct MessageBoxRequest {
  std::string text;
  std::string title;
  Icon icon = Icon::kInformation;
  Buttons buttons = Buttons::kOk;
  bool second_is_default = false;
  bool to_foreground = false;
};

enum class Pointer { kDefault, kHourglass };

// Pixels at 96 dots per inch.
struct TextSize {
  int width = 0;
  int height = 0;
};

class Ui {
 public:
  virtual ~Ui() = default;

  // The form is shown for the first time: attach a view to it, or nothing.
  virtual void Attach(Form& form) = 0;
  // Shows a box and returns the user's answer.
  virtual Answer MessageBox(const MessageBoxRequest& request) = 0;
  // The chosen folder without a trailing "\" (but "C:\" for a root), or "".
  virtual std::string BrowseForFolder(const std::string& title, const std::string& start) = 0;
  // `filter` as in the common dialog: "text|pattern". The chosen file must exist; "" if cancelled.
  virtual std::string OpenFileDialog(const std::string& filter,
                                     const std::string& initial_folder) = 0;
  // Handles all messages that wait: events, timers, painting. Returns when none is left.
  virtual void Pump() = 0;
  // Handles messages until the form is hidden or gone.
  virtual void RunModal(Form& form) = 0;
  virtual void SetPointer(Pointer pointer) = 0;
  virtual Pointer CurrentPointer() const = 0;
  // True if the mouse is over a control that is shown, and nothing lies between.
  virtual bool MouseIsOver(const Control& control) = 0;
  // How much room one line takes in the control's font. Without a screen it is an estimate.
  virtual TextSize SizeOfText(const Control& control, const std::string& text) = 0;
  // Puts a text where other programs can paste it from. False if it is not there afterwards.
  virtual bool SetClipboardText(const std::string& text) = 0;
  // Asks the outermost message loop to end.
  virtual void Quit() = 0;
  // Turns Caps Lock on or off.
  virtual void SetCapsLock(bool on) = 0;
  // While on, Alt and Tab are swallowed as long as a window of this process is in front (the rule
  // is platform/ui/keyboard_guard.h). A second call with the same value changes nothing.
  virtual void GuardKeyboard(bool /*on*/) {}
  // Of the screen, as the system reports it.
  virtual int DotsPerInch() { return 96; }
};

}  // namespace quorvale::ui
