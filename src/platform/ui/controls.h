// The kinds of controls but for the tree view, which has a header of its own.
#pragma once

#include <string>
#include <vector>

#include "base/local_time.h"
#include "platform/ui/control.h"

namespace quorvale::ui {

enum class Alignment { kLeft = 0, kRight = 1, kCenter = 2 };
enum class Border { kNone, kFlat, kSunken };

class Label : public Control {
 public:
  Label(Form& form, std::string name, std::string text = "")
      : Control(form, std::move(name), ControlKind::kLabel),
        caption(*this, Property::kText, std::move(text)) {}
  Observed<std::string> caption;  // "&&" shows one ampersand
  bool is_link = false;           // shown and worked like a hyperlink
  bool shows_hand = true;         // the pointer over a link is a hand
  Observed<Alignment> alignment{*this, Property::kLook, Alignment::kLeft};
  Observed<Border> border{*this, Property::kLook, Border::kNone};
};

class TextBox : public Control {
 public:
  TextBox(Form& form, std::string name, std::string text_now = "")
      : Control(form, std::move(name), ControlKind::kTextBox),
        text(*this, Property::kText, std::move(text_now)) {}
  // text.on_change runs on typing and on assignment.
  Observed<std::string> text;
  bool password = false;  // shows "*" for each character
  bool read_only = false;
  bool multi_line = false;
};

// A value of 0 (clear) or 1 (ticked). on_click runs whenever the value changes, by the user or by
// the program.
class CheckBox : public Control {
 public:
  CheckBox(Form& form, std::string name, std::string text = "", int initial = 0)
      : Control(form, std::move(name), ControlKind::kCheckBox),
        caption(*this, Property::kText, std::move(text)),
        value(*this, Property::kValue, initial) {
    value.on_change = [this] {
      if (on_click) on_click();
    };
  }
  Observed<std::string> caption;
  Observed<int> value;

  // The user's click: on_click runs through the change of the value.
  void Toggle() { value = value == 0 ? 1 : 0; }

 protected:
  void ApplyClick() override { Toggle(); }
};

// One of a group: setting one to true clears the others of the same container of the form.
// on_click runs when the value becomes true, by the user or by the program.
class OptionButton : public Control {
 public:
  OptionButton(Form& form, std::string name, std::string text = "", bool initial = false);
  Observed<std::string> caption;
  Observed<bool> value;

 protected:
  void ApplyClick() override { value = true; }
};

class CommandButton : public Control {
 public:
  CommandButton(Form& form, std::string name, std::string text = "")
      : Control(form, std::move(name), ControlKind::kCommandButton),
        caption(*this, Property::kText, std::move(text)) {}
  Observed<std::string> caption;  // "&" marks the access key
  bool is_default = false;        // Enter presses it
  bool is_cancel = false;         // Esc presses it
};

// A button with a picture for each of its three states, named as in the resources.
class ImageButton : public Control {
 public:
  ImageButton(Form& form, std::string name, std::string normal = "", std::string hover = "",
              std::string pressed = "")
      : Control(form, std::move(name), ControlKind::kImageButton),
        caption(*this, Property::kText),
        normal_picture(std::move(normal)),
        hover_picture(std::move(hover)),
        pressed_picture(std::move(pressed)) {}
  Observed<std::string> caption;  // for readers and access keys; the picture carries the words
  std::string normal_picture, hover_picture, pressed_picture;
};

// Shared by the combo box and the list box: entries, each with a number of the program's own.
class ListControl : public Control {
 public:
  ListControl(Form& form, std::string name, ControlKind kind)
      : Control(form, std::move(name), kind), list_index(*this, Property::kSelection, -1) {}

  void AddItem(std::string text, int data = 0);
  void Clear();  // also clears the selection
  int Count() const { return static_cast<int>(items_.size()); }
  const std::string& Item(int index) const { return items_.at(static_cast<size_t>(index)).text; }
  int ItemData(int index) const { return items_.at(static_cast<size_t>(index)).data; }
  // The selected entry's text, or "".
  std::string SelectedText() const;
  // Selects the entry of this text; false if there is none.
  bool SelectText(const std::string& text);

  // -1: none. on_click runs when the selection changes, by the user or by the program.
  Observed<int> list_index;

 private:
  struct Entry {
    std::string text;
    int data = 0;
  };
  std::vector<Entry> items_;
};

class ComboBox : public ListControl {  // a fixed list to choose from
 public:
  ComboBox(Form& form, std::string name);
};

class ListBox : public ListControl {
 public:
  ListBox(Form& form, std::string name);
};

// Rows of text in columns.
class ListView : public Control {
 public:
  struct Row {
    std::string key;
    std::vector<std::string> cells;
  };
  ListView(Form& form, std::string name)
      : Control(form, std::move(name), ControlKind::kListView),
        selected(*this, Property::kSelection, -1) {}
  std::vector<std::string> columns;
  std::vector<int> column_percents;  // of the list's width, one for each column; empty: all alike
  const std::vector<Row>& rows() const { return rows_; }
  void AddRow(Row row);
  void Clear();
  // on_item_click runs when the user selects a row.
  Observed<int> selected;
  std::function<void()> on_item_click;
  // The user clicked the heading of a column, counted from 0.
  std::function<void(int column)> on_column_click;

 private:
  std::vector<Row> rows_;
};

// A table with a look for each row.
class Grid : public Control {
 public:
  struct Row {
    std::vector<std::string> cells;
    Color back_color = kDefaultColor;
    bool bold = false;
  };
  Grid(Form& form, std::string name) : Control(form, std::move(name), ControlKind::kGrid) {}
  std::vector<int> column_widths;  // twips
  const std::vector<Row>& rows() const { return rows_; }
  void AddRow(Row row);
  void Clear();
  void SetColumnWidth(int column, int twips);

 private:
  std::vector<Row> rows_;
};

class ProgressBar : public Control {
 public:
  ProgressBar(Form& form, std::string name)
      : Control(form, std::move(name), ControlKind::kProgressBar),
        value(*this, Property::kValue, 0),
        maximum(*this, Property::kLook, 100) {}
  Observed<int> value;
  Observed<int> maximum;
};

class RichTextBox : public Control {
 public:
  RichTextBox(Form& form, std::string name)
      : Control(form, std::move(name), ControlKind::kRichTextBox), text(*this, Property::kText) {}
  Observed<std::string> text;  // lines end in CR LF; read-only for the user
  bool wraps = true;           // false: long lines stay whole, and a bar leads to their ends
};

class DatePicker : public Control {
 public:
  DatePicker(Form& form, std::string name)
      : Control(form, std::move(name), ControlKind::kDatePicker) {}
  LocalTime value;  // shown by `format`; tell the view with Notify(kValue)
  std::string format = "hh:mm AM/PM";
};

class PictureBox : public Control {
 public:
  PictureBox(Form& form, std::string name, std::string picture_name = "")
      : Control(form, std::move(name), ControlKind::kPictureBox),
        picture(*this, Property::kPicture, std::move(picture_name)) {}
  Observed<std::string> picture;  // a resource name, "" for none; drawn at the top left
  // Further pictures over the first, each at a place in pixels.
  struct Overlay {
    std::string picture;
    int left = 0;
    int top = 0;
    bool operator==(const Overlay&) const = default;
  };
  std::vector<Overlay> overlays;
  // A line around it with rounded corners, whose radius is a share of its size.
  Color border_color = kDefaultColor;  // none
  int corner_percent = 0;
};

class Frame : public Control {
 public:
  Frame(Form& form, std::string name, std::string text = "")
      : Control(form, std::move(name), ControlKind::kFrame),
        caption(*this, Property::kText, std::move(text)) {}
  Observed<std::string> caption;
};

// Fires on_timer each `interval` milliseconds while `enabled` is true. A new timer is disabled.
class Timer : public Control {
 public:
  Timer(Form& form, std::string name, int interval_ms)
      : Control(form, std::move(name), ControlKind::kTimer),
        interval(*this, Property::kLook, interval_ms) {
    enabled = false;
    visible = false;
  }
  Observed<int> interval;
  std::function<void()> on_timer;
};

}  // namespace quorvale::ui
