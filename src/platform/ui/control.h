// The base of all controls: a toolkit-neutral model that a binding may show.
//
// A control belongs to one form for that form's whole life and registers itself there. Setting a
// property tells the form's view, if there is one, and nothing else unless a control says so.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

namespace quorvale::ui {

class Form;
class Control;

// Pixels at 96 dots per inch, relative to the form or to the containing panel.
struct Bounds {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  bool operator==(const Bounds&) const = default;
};

// 0xRRGGBB; kDefaultColor leaves the choice to the view.
using Color = std::int32_t;
inline constexpr Color kDefaultColor = -1;
constexpr Color Rgb(int red, int green, int blue) { return red << 16 | green << 8 | blue; }

enum class Property {
  kText,
  kValue,
  kVisible,
  kEnabled,
  kBounds,
  kFont,
  kColor,
  kToolTip,
  kPicture,
  kItems,      // the content of a list or tree changed
  kSelection,  // another entry, node or range is selected
  kLook,       // a property of one kind of control only
};

enum class ControlKind {
  kLabel,
  kTextBox,
  kCheckBox,
  kOptionButton,
  kCommandButton,
  kImageButton,
  kComboBox,
  kListBox,
  kTreeView,
  kListView,
  kGrid,
  kProgressBar,
  kRichTextBox,
  kDatePicker,
  kPictureBox,
  kFrame,
  kTimer,
};

// Mouse buttons and modifier keys of key events: the numbers of the classic form model.
inline constexpr int kShiftMask = 1;
inline constexpr int kControlMask = 2;
inline constexpr int kAltMask = 4;

// One property of a control. Assignment tells the view when the value differs.
template <class T>
class Observed {
 public:
  Observed(Control& owner, Property property, T initial = T())
      : owner_(owner), property_(property), value_(std::move(initial)) {}
  Observed(const Observed&) = delete;
  Observed& operator=(const Observed& other) { return *this = other.value_; }
  inline Observed& operator=(T value);
  operator const T&() const { return value_; }
  const T& get() const { return value_; }
  const T* operator->() const { return &value_; }

  // Called after the value changed, by the program or by the user.
  std::function<void()> on_change;

 private:
  Control& owner_;
  Property property_;
  T value_;
};

class Control {
 public:
  // A member of a control array is named like "lblQuicklinks(0)".
  Control(Form& form, std::string name, ControlKind kind);
  virtual ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  Form& form() const { return form_; }
  const std::string& name() const { return name_; }
  ControlKind kind() const { return kind_; }

  // The panel (PictureBox or Frame) that holds this control; null: the form itself.
  Control* container = nullptr;
  // Position in the tab order; -1: not in it. Controls are added with rising numbers.
  int tab_index = -1;

  Observed<bool> visible{*this, Property::kVisible, true};
  Observed<bool> enabled{*this, Property::kEnabled, true};
  Observed<Bounds> bounds{*this, Property::kBounds};
  Observed<std::string> tooltip{*this, Property::kToolTip};
  Observed<bool> bold{*this, Property::kFont, false};
  Observed<bool> underline{*this, Property::kFont, false};
  Observed<int> font_size{*this, Property::kFont, 8};  // points
  Observed<Color> fore_color{*this, Property::kColor, kDefaultColor};
  Observed<Color> back_color{*this, Property::kColor, kDefaultColor};

  // What the user does. A view calls the Do... functions below, never these directly.
  std::function<void()> on_click;
  std::function<void()> on_double_click;
  std::function<void()> on_got_focus;
  std::function<void()> on_lost_focus;
  std::function<void()> on_mouse_enter;
  std::function<void()> on_mouse_leave;
  std::function<void(int x, int y)> on_mouse_down;
  std::function<void(int x, int y)> on_mouse_up;
  // A typed character (code page value); the answer is the character to use, 0 for none.
  std::function<int(int code)> on_key_press;
  // A virtual key code with its modifier mask; true swallows the key.
  std::function<bool(int code, int modifiers)> on_key_down;

  // A click by the user or by the program ("presses cmdNext"). Does nothing while the control or
  // its form is disabled.
  void Click();
  void SetFocus();
  // Repaints at once.
  void Refresh();
  void Notify(Property property);

  // True if the control and all that contain it are visible.
  bool IsShown() const;

 protected:
  // What a click does: it runs on_click. A check box changes its value, which runs it.
  virtual void ApplyClick();

 private:
  Form& form_;
  std::string name_;
  ControlKind kind_;
};

template <class T>
Observed<T>& Observed<T>::operator=(T value) {
  if (value_ == value) return *this;
  value_ = std::move(value);
  owner_.Notify(property_);
  if (on_change) on_change();
  return *this;
}

}  // namespace quorvale::ui
