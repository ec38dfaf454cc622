// What a person does with the pages, by the names of forms and controls: the console edition and
// the scenario player work the program through these hands alone.
#pragma once

#include <string>

#include "core/pages/application.h"
#include "platform/ui/controls.h"
#include "platform/ui/headless/headless_ui.h"
#include "platform/ui/tree_view.h"

namespace quorvale {

// An act answers "" when it was done, else a sentence that says why a person could not do it.
class Hands {
 public:
  Hands(Application& app, ui::HeadlessUi& ui) : app_(app), ui_(ui) {}

  // The control of a loaded form, or null with the reason. Names are as in the code, without
  // regard to case.
  ui::Control* Find(const std::string& form, const std::string& control, std::string* problem);
  // The same, and a person can see and use it: shown, enabled, on a page that is shown and enabled.
  ui::Control* Reach(const std::string& form, const std::string& control, std::string* problem);

  std::string Click(const std::string& form, const std::string& control);
  std::string DoubleClick(const std::string& form, const std::string& control);
  // Closes a window that is shown, as its own close button does.
  std::string Close(const std::string& form);
  // Types a text in place of what stands in a text box, or a time like "09:07 AM" into a picker.
  std::string Set(const std::string& form, const std::string& control, const std::string& text);
  // Ticks or clears a check box, or selects an option.
  std::string Check(const std::string& form, const std::string& control, bool checked);
  // Selects an entry of a list by its text, or a row of a list view by the text of a cell.
  std::string Choose(const std::string& form, const std::string& control, const std::string& text);
  // Clicks the box of a node until it is ticked, or is not.
  std::string Tick(const std::string& form, const std::string& tree, const std::string& full_path,
                   bool checked);
  // Clicks a node's caption.
  std::string Select(const std::string& form, const std::string& tree,
                     const std::string& full_path);

  // A node by its FullPath; null with the reason.
  ui::TreeNode* FindNode(const std::string& form, const std::string& tree,
                         const std::string& full_path, std::string* problem);

 private:
  Application& app_;
  ui::HeadlessUi& ui_;
};

// What a person reads off a control: caption, text, selected entry, "1" or "0" of a box, the value
// of a bar, the rows of a list (cells joined by "|", rows by line ends).
std::string ShownText(const ui::Control& control);
// The same as one line: a line end counts as a blank, blanks at both ends do not count.
std::string ShownLine(const ui::Control& control);
// True if the form is shown, and the panel that it stands in.
bool IsOnScreen(const ui::Form& form);

}  // namespace quorvale
