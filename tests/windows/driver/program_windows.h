// The windows of a running Quorvale.exe as a person before the screen has them: found by the names
// of forms and controls, read, clicked and typed into. Nothing here calls into the program.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/windows/windows_headers.h"

namespace quorvale::driver {

// An item of a tree.
struct TreeItem {
  HTREEITEM handle = nullptr;
  bool checked = false;
};

class ProgramMemory;

class ProgramWindows {
 public:
  ProgramWindows();
  ProgramWindows(const ProgramWindows&) = delete;
  ProgramWindows& operator=(const ProgramWindows&) = delete;
  // The process whose windows are meant; 0: there is none.
  void Watch(DWORD process);
  ~ProgramWindows();

  // Null if there is no such window. Names without regard to case.
  HWND FindForm(const std::string& form) const;
  HWND FindControl(const std::string& form, const std::string& control) const;
  // The control if a person can see and use it now; null with the reason.
  HWND Reach(const std::string& form, const std::string& control, std::string* problem) const;

  // What a person reads off a control, as one line: its text, the selected entry, "1" or "0" of a
  // box, the value of a bar, the path of the selected item, the rows of a list (cells joined by
  // "|").
  std::string ShownLine(HWND control) const;
  // The text that the system keeps of a window, without asking the program.
  static std::string KeptLine(HWND window);
  static bool IsBold(HWND control);
  // "form.control", or "" for a window that is no control of the program's forms.
  static std::string ControlName(HWND window);

  // Each answers "" or what is in the way.
  static std::string Click(HWND control);
  static std::string DoubleClick(HWND control);
  static std::string Type(HWND box, const std::string& text);
  static std::string Check(HWND box, bool checked);
  std::string Choose(HWND list, const std::string& text) const;
  // Clicks a row of a list by the text of one of its cells.
  std::string ClickRow(HWND list, const std::string& text) const;
  std::string ClickBox(HWND tree, const std::string& path, bool checked) const;
  std::string ClickItem(HWND tree, const std::string& path) const;
  std::optional<TreeItem> FindItem(HWND tree, const std::string& path) const;

  // Dialogs of the system that stand open, the newest first.
  std::vector<HWND> Dialogs() const;
  // Types a path into a folder or file dialog and confirms it; "" cancels the dialog.
  std::string AnswerFolderDialog(HWND dialog, const std::string& path) const;
  static std::string AnswerFileDialog(HWND dialog, const std::string& path);

  // True if the program answers within a moment.
  bool Answers() const;
  HANDLE process() const { return process_; }
  DWORD id() const { return id_; }
  // The thread of the windows; 0 while there is no window.
  DWORD Thread() const;

 private:
  std::optional<TreeItem> FindBelow(HWND tree, HTREEITEM parent, const std::string& path) const;
  HTREEITEM FirstChild(HWND tree, HTREEITEM parent) const;
  std::string ItemText(HWND tree, HTREEITEM item, bool* checked, bool* has_children) const;
  std::string ItemPath(HWND tree, HTREEITEM item) const;
  // Whether a click on the item has shown its effect, within some seconds.
  bool BecomesSelected(HWND tree, const std::string& path) const;
  // The texts of a list's rows, cell by cell.
  std::vector<std::vector<std::string>> RowsOf(HWND list) const;
  std::optional<POINT> PlaceOf(HWND tree, HTREEITEM item, UINT part) const;

  DWORD id_ = 0;
  HANDLE process_ = nullptr;
  std::unique_ptr<ProgramMemory> memory_;  // null while there is no process
};

// What kind of dialog a window is.
enum class DialogKind { kMessageBox, kFolder, kFile, kOther };
DialogKind KindOf(HWND dialog);
// The text of a message box.
std::string BoxText(HWND box);
// Presses a button of a dialog by its number. False if it has no such button.
bool PressButton(HWND dialog, int number);

// A text as one line: a line end counts as a blank, blanks at both ends do not count.
std::string OneLine(const std::string& text);

}  // namespace quorvale::driver
