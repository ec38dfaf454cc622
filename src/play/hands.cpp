#include "play/hands.h"

#include "base/text.h"
#include "schedule/run/schedule_jobs.h"

namespace quorvale {
namespace {

using ui::ControlKind;

template <class Row>
std::string RowsText(const std::vector<Row>& rows) {
  std::string text;
  for (const Row& row : rows) {
    std::string line;
    for (const std::string& cell : row.cells) line += (line.empty() ? "" : "|") + cell;
    text += line + "\n";
  }
  return text;
}

bool TakesInput(const ui::Form& form) {
  if (!form.Enabled()) return false;
  return form.host_panel == nullptr || form.host_panel->form().Enabled();
}

std::string Name(const std::string& form, const std::string& control) {
  return form + "." + control;
}

}  // namespace

bool IsOnScreen(const ui::Form& form) {
  if (!form.Visible()) return false;
  if (form.host_panel == nullptr) return true;
  return form.host_panel->IsShown() && form.host_panel->form().Visible();
}

std::string ShownText(const ui::Control& control) {
  switch (control.kind()) {
    case ControlKind::kLabel:
      return static_cast<const ui::Label&>(control).caption;
    case ControlKind::kTextBox:
      return static_cast<const ui::TextBox&>(control).text;
    case ControlKind::kCheckBox:
      return static_cast<const ui::CheckBox&>(control).value == 0 ? "0" : "1";
    case ControlKind::kOptionButton:
      return static_cast<const ui::OptionButton&>(control).value ? "1" : "0";
    case ControlKind::kCommandButton:
      return static_cast<const ui::CommandButton&>(control).caption;
    case ControlKind::kImageButton:
      return static_cast<const ui::ImageButton&>(control).caption;
    case ControlKind::kComboBox:
    case ControlKind::kListBox:
      return static_cast<const ui::ListControl&>(control).SelectedText();
    case ControlKind::kTreeView: {
      const ui::TreeNode* node = static_cast<const ui::TreeView&>(control).Selected();
      return node == nullptr ? "" : node->FullPath();
    }
    case ControlKind::kListView:
      return RowsText(static_cast<const ui::ListView&>(control).rows());
    case ControlKind::kGrid:
      return RowsText(static_cast<const ui::Grid&>(control).rows());
    case ControlKind::kProgressBar:
      return std::to_string(static_cast<const ui::ProgressBar&>(control).value.get());
    case ControlKind::kRichTextBox:
      return static_cast<const ui::RichTextBox&>(control).text;
    case ControlKind::kPictureBox:
      return static_cast<const ui::PictureBox&>(control).picture;
    case ControlKind::kFrame:
      return static_cast<const ui::Frame&>(control).caption;
    case ControlKind::kDatePicker:
      return TimeBoxText(static_cast<const ui::DatePicker&>(control).value);
    case ControlKind::kTimer:
      return "";
  }
  return "";
}

std::string ShownLine(const ui::Control& control) {
  return Trim(ReplaceAll(ReplaceAll(ShownText(control), "\r\n", " "), "\n", " "));
}

ui::Control* Hands::Find(const std::string& form, const std::string& control,
                         std::string* problem) {
  for (ui::Form* loaded : app_.LoadedForms()) {
    if (!EqualsNoCase(loaded->name(), form)) continue;
    ui::Control* found = loaded->FindControl(control);
    if (found == nullptr) *problem = "form " + form + " has no control " + control;
    return found;
  }
  *problem = "form " + form + " is not loaded";
  return nullptr;
}

ui::Control* Hands::Reach(const std::string& form, const std::string& control,
                          std::string* problem) {
  ui::Control* found = Find(form, control, problem);
  if (found == nullptr) return nullptr;
  if (!IsOnScreen(found->form())) {
    *problem = "form " + form + " is not shown";
  } else if (!found->IsShown()) {
    *problem = Name(form, control) + " is not shown";
  } else if (!TakesInput(found->form())) {
    *problem = "form " + form + " is disabled";
  } else if (!found->enabled) {
    *problem = Name(form, control) + " is disabled";
  } else {
    return found;
  }
  return nullptr;
}

std::string Hands::Click(const std::string& form, const std::string& control) {
  std::string problem;
  ui::Control* found = Reach(form, control, &problem);
  if (found != nullptr) ui_.Step([&] { found->Click(); });
  return problem;
}

std::string Hands::DoubleClick(const std::string& form, const std::string& control) {
  std::string problem;
  ui::Control* found = Reach(form, control, &problem);
  if (found == nullptr) return problem;
  if (!found->on_double_click) return Name(form, control) + " takes no double click";
  ui_.Step([&] { found->on_double_click(); });
  return "";
}

std::string Hands::Close(const std::string& form) {
  ui::Form* found = app_.FindLoaded(form);
  if (found == nullptr || !IsOnScreen(*found)) return "form " + form + " is not shown";
  if (!found->AcceptsInput()) return "form " + form + " takes no input";
  if (found->on_close_request) ui_.Step([&] { found->on_close_request(); });
  return "";
}

std::string Hands::Set(const std::string& form, const std::string& control,
                       const std::string& text) {
  std::string problem;
  ui::Control* found = Reach(form, control, &problem);
  if (found == nullptr) return problem;
  if (found->kind() == ControlKind::kDatePicker) {
    ui::DatePicker& picker = static_cast<ui::DatePicker&>(*found);
    const std::optional<LocalTime> time = ReadTimeBox(text, picker.value);
    if (!time) return "\"" + text + "\" is no time like 09:07 AM";
    ui_.Step([&] {
      picker.SetFocus();
      picker.value = *time;
      picker.Notify(ui::Property::kValue);
    });
    return "";
  }
  if (found->kind() != ControlKind::kTextBox) return Name(form, control) + " is no text box";
  ui::TextBox& box = static_cast<ui::TextBox&>(*found);
  if (box.read_only) return Name(form, control) + " cannot be typed into";
  ui_.Step([&] {
    box.SetFocus();
    box.text = text;
  });
  return "";
}

std::string Hands::Check(const std::string& form, const std::string& control, bool checked) {
  std::string problem;
  ui::Control* found = Reach(form, control, &problem);
  if (found == nullptr) return problem;
  const bool is_box = found->kind() == ControlKind::kCheckBox;
  const bool is_option = found->kind() == ControlKind::kOptionButton;
  if (!is_box && !is_option) return Name(form, control) + " is neither a box nor an option";
  if (is_option && !checked) return "an option is cleared by choosing another one";
  if ((ShownText(*found) == "1") != checked) ui_.Step([&] { found->Click(); });
  return "";
}

std::string Hands::Choose(const std::string& form, const std::string& control,
                          const std::string& text) {
  std::string problem;
  ui::Control* found = Reach(form, control, &problem);
  if (found == nullptr) return problem;
  if (found->kind() == ControlKind::kComboBox || found->kind() == ControlKind::kListBox) {
    bool selected = false;
    ui_.Step([&] { selected = static_cast<ui::ListControl&>(*found).SelectText(text); });
    return selected ? "" : Name(form, control) + " has no entry \"" + text + "\"";
  }
  if (found->kind() != ControlKind::kListView) return Name(form, control) + " is no list";
  ui::ListView& list = static_cast<ui::ListView&>(*found);
  for (size_t row = 0; row < list.rows().size(); ++row) {
    for (const std::string& cell : list.rows()[row].cells) {
      if (cell != text) continue;
      ui_.Step([&] {
        list.selected = static_cast<int>(row);
        if (list.on_item_click) list.on_item_click();
      });
      return "";
    }
  }
  return Name(form, control) + " has no row with \"" + text + "\"";
}

ui::TreeNode* Hands::FindNode(const std::string& form, const std::string& tree,
                              const std::string& full_path, std::string* problem) {
  ui::Control* found = Find(form, tree, problem);
  if (found == nullptr) return nullptr;
  if (found->kind() != ControlKind::kTreeView) {
    *problem = Name(form, tree) + " is no tree";
    return nullptr;
  }
  ui::TreeNode* node = static_cast<ui::TreeView&>(*found).FindPath(full_path);
  if (node == nullptr) *problem = Name(form, tree) + " has no node \"" + full_path + "\"";
  return node;
}

std::string Hands::Tick(const std::string& form, const std::string& tree,
                        const std::string& full_path, bool checked) {
  std::string problem;
  ui::Control* found = Reach(form, tree, &problem);
  if (found == nullptr) return problem;
  ui::TreeNode* node = FindNode(form, tree, full_path, &problem);
  if (node == nullptr) return problem;
  if (node->Checked() != checked) {
    ui_.Step([&] { static_cast<ui::TreeView&>(*found).UserChecks(node, checked); });
  }
  return "";
}

std::string Hands::Select(const std::string& form, const std::string& tree,
                          const std::string& full_path) {
  std::string problem;
  ui::Control* found = Reach(form, tree, &problem);
  if (found == nullptr) return problem;
  ui::TreeNode* node = FindNode(form, tree, full_path, &problem);
  if (node == nullptr) return problem;
  ui_.Step([&] { static_cast<ui::TreeView&>(*found).UserClicks(node); });
  return "";
}

}  // namespace quorvale
