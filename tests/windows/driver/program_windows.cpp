#include "program_windows.h"

#include <algorithm>
#include <cstring>

#include "base/text.h"
#include "platform/windows/text_calls.h"

namespace quorvale::driver {

// Memory of the program, for messages that name a place in it.
class ProgramMemory {
 public:
  explicit ProgramMemory(HANDLE process)
      : process_(process),
        place_(VirtualAllocEx(process, nullptr, kSize, MEM_COMMIT, PAGE_READWRITE)) {}
  ~ProgramMemory() {
    if (place_ != nullptr) VirtualFreeEx(process_, place_, 0, MEM_RELEASE);
  }
  ProgramMemory(const ProgramMemory&) = delete;
  ProgramMemory& operator=(const ProgramMemory&) = delete;

  void Write(const void* data, size_t bytes, size_t offset = 0) {
    WriteProcessMemory(process_, At(offset), data, bytes, nullptr);
  }
  void Read(void* data, size_t bytes, size_t offset = 0) const {
    ReadProcessMemory(process_, At(offset), data, bytes, nullptr);
  }
  void* At(size_t offset) const { return static_cast<char*>(place_) + offset; }
  LPARAM Pointer() const { return reinterpret_cast<LPARAM>(place_); }

 private:
  static constexpr size_t kSize = 8192;
  HANDLE process_;
  void* place_;
};

namespace {

using windows::FromWide;
using windows::Wide;

constexpr UINT kPatience = 10000;  // milliseconds for one answer of the program
// The program's own marks on its windows.
constexpr char kFormProperty[] = "QuorvaleForm";
constexpr char kControlProperty[] = "QuorvaleName";
constexpr char kBoldProperty[] = "QuorvaleBold";
// Controls of the system's file dialog that take a path.
constexpr int kPathEdit = 0x480;
constexpr int kPathCombo = 0x47C;

// A message that the program answers, or 0 when it does not in time.
LRESULT Ask(HWND window, UINT message, WPARAM w = 0, LPARAM l = 0) {
  DWORD_PTR answer = 0;
  if (SendMessageTimeoutW(window, message, w, l, SMTO_NORMAL, kPatience, &answer) == 0) return 0;
  return static_cast<LRESULT>(answer);
}

std::string ClassOf(HWND window) {
  char name[128] = "";
  GetClassNameA(window, name, sizeof(name));
  return name;
}

bool IsClass(HWND window, const char* name) { return EqualsNoCase(ClassOf(window), name); }

// The name that a window bears as an atom in a property.
std::string NameOf(HWND window, const char* property) {
  const HANDLE atom = GetPropA(window, property);
  if (atom == nullptr) return "";
  char name[256] = "";
  GlobalGetAtomNameA(static_cast<ATOM>(reinterpret_cast<ULONG_PTR>(atom)), name, sizeof(name));
  return name;
}

struct Search {
  DWORD process = 0;
  const char* property = nullptr;
  const std::string* name = nullptr;
  HWND found = nullptr;
};

BOOL CALLBACK LookAtChild(HWND window, LPARAM data) {
  auto& search = *reinterpret_cast<Search*>(data);
  if (!EqualsNoCase(NameOf(window, search.property), *search.name)) return TRUE;
  search.found = window;
  return FALSE;
}

BOOL CALLBACK LookAtTop(HWND window, LPARAM data) {
  auto& search = *reinterpret_cast<Search*>(data);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != search.process) return TRUE;
  if (LookAtChild(window, data) == FALSE) return FALSE;
  EnumChildWindows(window, LookAtChild, data);
  return search.found == nullptr ? TRUE : FALSE;
}

HWND FindNamed(DWORD process, const char* property, const std::string& name) {
  if (process == 0) return nullptr;
  Search search{process, property, &name, nullptr};
  EnumWindows(LookAtTop, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

std::string WindowText(HWND window) {
  const LRESULT length = Ask(window, WM_GETTEXTLENGTH);
  std::wstring text(static_cast<size_t>(length) + 1, L'\0');
  const LRESULT got = Ask(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<size_t>(got));
  return FromWide(text);
}

// Presses and lets go of the left button over a place of a window. The pointer goes there first:
// the program may ask where it is.
void ClickAt(HWND window, POINT place) {
  POINT screen = place;
  ClientToScreen(window, &screen);
  SetCursorPos(screen.x, screen.y);
  const LPARAM where = MAKELPARAM(place.x, place.y);
  PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, where);
  PostMessageW(window, WM_LBUTTONUP, 0, where);
}

POINT Middle(HWND window) {
  RECT area;
  GetClientRect(window, &area);
  return {area.right / 2, area.bottom / 2};
}

void PressKey(HWND window, WPARAM key) {
  PostMessageW(window, WM_KEYDOWN, key, 1);
  PostMessageW(window, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
}

BOOL CALLBACK CollectTop(HWND window, LPARAM data) {
  reinterpret_cast<std::vector<HWND>*>(data)->push_back(window);
  return TRUE;
}

// A descendant of a window by its class; null if there is none.
struct ClassSearch {
  const char* name = nullptr;
  HWND found = nullptr;
};
BOOL CALLBACK LookAtClass(HWND window, LPARAM data) {
  auto& search = *reinterpret_cast<ClassSearch*>(data);
  if (!IsClass(window, search.name)) return TRUE;
  search.found = window;
  return FALSE;
}
HWND FindClass(HWND parent, const char* name) {
  ClassSearch search{name, nullptr};
  EnumChildWindows(parent, LookAtClass, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

}  // namespace

std::string OneLine(const std::string& text) {
  return Trim(ReplaceAll(ReplaceAll(text, "\r\n", " "), "\n", " "));
}

ProgramWindows::ProgramWindows() = default;

ProgramWindows::~ProgramWindows() { Watch(0); }

void ProgramWindows::Watch(DWORD process) {
  memory_.reset();
  if (process_ != nullptr) CloseHandle(process_);
  id_ = process;
  process_ = process == 0 ? nullptr : OpenProcess(PROCESS_ALL_ACCESS, FALSE, process);
  memory_.reset(process_ == nullptr ? nullptr : new ProgramMemory(process_));
}

HWND ProgramWindows::FindForm(const std::string& form) const {
  return FindNamed(id_, kFormProperty, form);
}

HWND ProgramWindows::FindControl(const std::string& form, const std::string& control) const {
  return FindNamed(id_, kControlProperty, form + "." + control);
}

DWORD ProgramWindows::Thread() const {
  const HWND main = FindForm("FrmWelcome");
  return main == nullptr ? 0 : GetWindowThreadProcessId(main, nullptr);
}

bool ProgramWindows::Answers() const {
  const HWND main = FindForm("FrmWelcome");
  DWORD_PTR answer = 0;
  return main == nullptr ||
         SendMessageTimeoutW(main, WM_NULL, 0, 0, SMTO_NORMAL, kPatience, &answer) != 0;
}

HWND ProgramWindows::Reach(const std::string& form, const std::string& control,
                           std::string* problem) const {
  const std::string name = form + "." + control;
  const HWND found = FindControl(form, control);
  if (found == nullptr) {
    *problem = "there is no " + name;
  } else if (IsWindowVisible(found) == 0) {
    *problem = name + " is not shown";
  } else {
    for (HWND window = found; window != nullptr; window = GetAncestor(window, GA_PARENT)) {
      if (window == GetDesktopWindow()) break;
      if (IsWindowEnabled(window) != 0) continue;
      *problem = window == found ? name + " is disabled" : "a window of " + name + " is disabled";
      return nullptr;
    }
    return found;
  }
  return nullptr;
}

std::string ProgramWindows::ControlName(HWND window) { return NameOf(window, kControlProperty); }

bool ProgramWindows::IsBold(HWND control) { return GetPropA(control, kBoldProperty) != nullptr; }

std::string ProgramWindows::KeptLine(HWND window) {
  wchar_t text[1024] = L"";
  InternalGetWindowText(window, text, 1024);
  return OneLine(FromWide(text));
}

std::string ProgramWindows::ShownLine(HWND control) const {
  if (IsClass(control, "Button")) {
    const LONG_PTR kind = GetWindowLongPtrW(control, GWL_STYLE) & BS_TYPEMASK;
    if (kind != BS_PUSHBUTTON && kind != BS_DEFPUSHBUTTON) {
      return Ask(control, BM_GETCHECK) == BST_CHECKED ? "1" : "0";
    }
  } else if (IsClass(control, "ComboBox") || IsClass(control, "ListBox")) {
    const bool combo = IsClass(control, "ComboBox");
    const LRESULT place = Ask(control, combo ? CB_GETCURSEL : LB_GETCURSEL);
    if (place < 0) return "";
    wchar_t text[1024] = L"";
    Ask(control, combo ? CB_GETLBTEXT : LB_GETTEXT, static_cast<WPARAM>(place),
        reinterpret_cast<LPARAM>(text));
    return OneLine(FromWide(text));
  } else if (IsClass(control, PROGRESS_CLASSA)) {
    return std::to_string(Ask(control, PBM_GETPOS));
  } else if (IsClass(control, WC_TREEVIEWA)) {
    const auto item = reinterpret_cast<HTREEITEM>(Ask(control, TVM_GETNEXTITEM, TVGN_CARET));
    return item == nullptr ? "" : ItemPath(control, item);
  } else if (IsClass(control, WC_LISTVIEWA)) {
    std::string text;
    for (const std::vector<std::string>& row : RowsOf(control)) {
      std::string line;
      for (const std::string& cell : row) line += (line.empty() ? "" : "|") + cell;
      text += line + "\n";
    }
    return OneLine(text);
  }
  return OneLine(WindowText(control));
}

std::string ProgramWindows::Click(HWND control) {
  ClickAt(control, Middle(control));
  return "";
}

std::string ProgramWindows::DoubleClick(HWND control) {
  const POINT place = Middle(control);
  ClickAt(control, place);
  const LPARAM where = MAKELPARAM(place.x, place.y);
  PostMessageW(control, WM_LBUTTONDBLCLK, MK_LBUTTON, where);
  PostMessageW(control, WM_LBUTTONUP, 0, where);
  return "";
}

// Types a time such as "09:07 AM" field by field into a picker of times.
static std::string TypeTime(HWND picker, const std::string& text) {
  constexpr int kInHours = 8;  // pixels from the left: in the field of hours
  if (text.size() != 8) return "\"" + text + "\" is no time like 09:07 AM";
  ClickAt(picker, {kInHours, Middle(picker).y});
  for (const size_t field : {0, 3}) {
    PostMessageW(picker, WM_CHAR, static_cast<WPARAM>(text[field]), 1);
    PostMessageW(picker, WM_CHAR, static_cast<WPARAM>(text[field + 1]), 1);
    PressKey(picker, VK_RIGHT);
  }
  PostMessageW(picker, WM_CHAR, static_cast<WPARAM>(text[6]), 1);
  // A picker that was not painted yet knows no fields: then it is typed into again.
  std::string shown;
  for (int tries = 0; tries < 40; ++tries) {
    Sleep(25);
    shown = WindowText(picker);
    if (shown == text) return "";
  }
  return "the picker shows \"" + shown + "\", not \"" + text + "\"";
}

// Clicks into the box, selects what is in it and types over it.
std::string ProgramWindows::Type(HWND box, const std::string& text) {
  if (IsClass(box, DATETIMEPICK_CLASSA)) return TypeTime(box, text);
  if (!IsClass(box, "Edit")) return "this is no text box";
  if ((GetWindowLongPtrW(box, GWL_STYLE) & ES_READONLY) != 0) return "it cannot be typed into";
  Click(box);
  PostMessageW(box, EM_SETSEL, 0, -1);
  if (text.empty()) PressKey(box, VK_DELETE);
  for (const wchar_t letter : Wide(text)) PostMessageW(box, WM_CHAR, letter, 1);
  return "";
}

std::string ProgramWindows::Check(HWND box, bool checked) {
  if (!IsClass(box, "Button")) return "this is neither a box nor an option";
  const bool is_checked = Ask(box, BM_GETCHECK) == BST_CHECKED;
  return is_checked == checked ? "" : Click(box);
}

std::string ProgramWindows::Choose(HWND list, const std::string& text) const {
  if (IsClass(list, WC_LISTVIEWA)) return ClickRow(list, text);
  const bool combo = IsClass(list, "ComboBox");
  if (!combo && !IsClass(list, "ListBox")) return "this is no list";
  const std::wstring wide = Wide(text);
  const LRESULT place = Ask(list, combo ? CB_FINDSTRINGEXACT : LB_FINDSTRINGEXACT,
                            static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(wide.c_str()));
  if (place < 0) return "there is no entry \"" + text + "\"";
  if (combo) {
    PressKey(list, VK_HOME);
    for (LRESULT i = 0; i < place; ++i) PressKey(list, VK_DOWN);
    return "";
  }
  Ask(list, LB_SETTOPINDEX, static_cast<WPARAM>(place));
  RECT line = {};
  Ask(list, LB_GETITEMRECT, static_cast<WPARAM>(place), reinterpret_cast<LPARAM>(&line));
  ClickAt(list, {line.left + 10, (line.top + line.bottom) / 2});
  return "";
}

std::vector<std::vector<std::string>> ProgramWindows::RowsOf(HWND list) const {
  constexpr size_t kTextPlace = 512;
  constexpr int kLength = 1024;
  const HWND header = reinterpret_cast<HWND>(Ask(list, LVM_GETHEADER));
  const int columns = std::max(1, static_cast<int>(Ask(header, HDM_GETITEMCOUNT)));
  const int count = static_cast<int>(Ask(list, LVM_GETITEMCOUNT));
  ProgramMemory& memory = *memory_;
  std::vector<std::vector<std::string>> rows;
  for (int row = 0; row < count; ++row) {
    std::vector<std::string>& cells = rows.emplace_back();
    for (int column = 0; column < columns; ++column) {
      LVITEMW item = {};
      item.iSubItem = column;
      item.pszText = static_cast<wchar_t*>(memory.At(kTextPlace));
      item.cchTextMax = kLength;
      memory.Write(&item, sizeof(item));
      Ask(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), memory.Pointer());
      std::wstring text(kLength, L'\0');
      memory.Read(text.data(), kLength * sizeof(wchar_t), kTextPlace);
      text.resize(std::wcslen(text.c_str()));
      cells.push_back(FromWide(text));
    }
  }
  return rows;
}

std::string ProgramWindows::ClickRow(HWND list, const std::string& text) const {
  const std::vector<std::vector<std::string>> rows = RowsOf(list);
  for (size_t row = 0; row < rows.size(); ++row) {
    if (std::find(rows[row].begin(), rows[row].end(), text) == rows[row].end()) continue;
    Ask(list, LVM_ENSUREVISIBLE, row, FALSE);
    ProgramMemory& memory = *memory_;
    RECT place = {};
    place.left = LVIR_LABEL;
    memory.Write(&place, sizeof(place));
    if (Ask(list, LVM_GETITEMRECT, row, memory.Pointer()) == 0) return "the row is not to be seen";
    memory.Read(&place, sizeof(place));
    ClickAt(list, {place.left + 10, (place.top + place.bottom) / 2});
    return "";
  }
  return "there is no row with \"" + text + "\"";
}

std::string ProgramWindows::ItemText(HWND tree, HTREEITEM item, bool* checked,
                                     bool* has_children) const {
  ProgramMemory& memory = *memory_;
  constexpr size_t kTextPlace = 512;
  constexpr int kLength = 1024;
  TVITEMW data = {};
  data.mask = TVIF_HANDLE | TVIF_TEXT | TVIF_STATE | TVIF_CHILDREN;
  data.hItem = item;
  data.stateMask = TVIS_STATEIMAGEMASK;
  data.pszText = static_cast<wchar_t*>(memory.At(kTextPlace));
  data.cchTextMax = kLength;
  memory.Write(&data, sizeof(data));
  if (Ask(tree, TVM_GETITEMW, 0, memory.Pointer()) == 0) return "";
  memory.Read(&data, sizeof(data));
  std::wstring text(kLength, L'\0');
  memory.Read(text.data(), kLength * sizeof(wchar_t), kTextPlace);
  text.resize(std::wcslen(text.c_str()));
  if (checked != nullptr) *checked = (data.state & TVIS_STATEIMAGEMASK) >> 12 == 2;
  if (has_children != nullptr) *has_children = data.cChildren != 0;
  return FromWide(text);
}

std::string ProgramWindows::ItemPath(HWND tree, HTREEITEM item) const {
  std::string path;
  while (item != nullptr) {
    const std::string text = ItemText(tree, item, nullptr, nullptr);
    path = path.empty() ? text : text + "\\" + path;
    item = reinterpret_cast<HTREEITEM>(
        Ask(tree, TVM_GETNEXTITEM, TVGN_PARENT, reinterpret_cast<LPARAM>(item)));
  }
  return path;
}

// Opens the item if its children are not there yet.
HTREEITEM ProgramWindows::FirstChild(HWND tree, HTREEITEM parent) const {
  const auto first = [&] {
    return reinterpret_cast<HTREEITEM>(Ask(tree, TVM_GETNEXTITEM,
                                           parent == nullptr ? TVGN_ROOT : TVGN_CHILD,
                                           reinterpret_cast<LPARAM>(parent)));
  };
  HTREEITEM child = first();
  if (child != nullptr || parent == nullptr) return child;
  bool has_children = false;
  ItemText(tree, parent, nullptr, &has_children);
  if (!has_children) return nullptr;
  for (int tries = 0; child == nullptr && tries < 20; ++tries) {
    Ask(tree, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(parent));
    child = first();
    if (child == nullptr) Sleep(20);
  }
  return child;
}

// A text may hold a "\" itself, so the path is not split: it is compared from its start.
std::optional<TreeItem> ProgramWindows::FindBelow(HWND tree, HTREEITEM parent,
                                                  const std::string& path) const {
  HTREEITEM item = FirstChild(tree, parent);
  while (item != nullptr) {
    TreeItem found{item, false};
    const std::string text = ItemText(tree, item, &found.checked, nullptr);
    if (text == path) return found;
    if (!text.empty() && path.starts_with(text + "\\")) {
      if (const auto below = FindBelow(tree, item, path.substr(text.size() + 1))) return below;
    }
    item = reinterpret_cast<HTREEITEM>(
        Ask(tree, TVM_GETNEXTITEM, TVGN_NEXT, reinterpret_cast<LPARAM>(item)));
  }
  return std::nullopt;
}

std::optional<TreeItem> ProgramWindows::FindItem(HWND tree, const std::string& path) const {
  if (!IsClass(tree, WC_TREEVIEWA)) return std::nullopt;
  return FindBelow(tree, nullptr, path);
}

// Where a part of an item (TVHT_...) can be clicked.
std::optional<POINT> ProgramWindows::PlaceOf(HWND tree, HTREEITEM item, UINT part) const {
  Ask(tree, TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item));
  ProgramMemory& memory = *memory_;
  RECT text = {};
  std::memcpy(&text, &item, sizeof(item));
  memory.Write(&text, sizeof(text));
  if (Ask(tree, TVM_GETITEMRECT, TRUE, memory.Pointer()) == 0) return std::nullopt;
  memory.Read(&text, sizeof(text));
  const LONG y = (text.top + text.bottom) / 2;
  constexpr LONG kStep = 4;  // each question takes its time, and no part is as narrow
  for (LONG x = text.left + 6; x >= 0; x -= kStep) {
    TVHITTESTINFO hit = {};
    hit.pt = {x, y};
    memory.Write(&hit, sizeof(hit));
    Ask(tree, TVM_HITTEST, 0, memory.Pointer());
    memory.Read(&hit, sizeof(hit));
    if (hit.hItem == item && (hit.flags & part) != 0) return POINT{x, y};
  }
  return std::nullopt;
}

std::string ProgramWindows::ClickBox(HWND tree, const std::string& path, bool checked) const {
  const std::optional<TreeItem> item = FindItem(tree, path);
  if (!item) return "there is no node \"" + path + "\"";
  if (item->checked == checked) return "";
  const std::optional<POINT> place = PlaceOf(tree, item->handle, TVHT_ONITEMSTATEICON);
  if (!place) return "the box of \"" + path + "\" cannot be reached";
  ClickAt(tree, *place);
  return "";
}

// A tree that is about to show a new item moves the others away under the pointer; a person who hit
// the wrong one would see that and click again.
std::string ProgramWindows::ClickItem(HWND tree, const std::string& path) const {
  constexpr int kClicks = 5;
  for (int clicks = 0; clicks < kClicks; ++clicks) {
    const std::optional<TreeItem> item = FindItem(tree, path);
    if (!item) return "there is no node \"" + path + "\"";
    const std::optional<POINT> place = PlaceOf(tree, item->handle, TVHT_ONITEMLABEL);
    if (!place) return "the node \"" + path + "\" cannot be reached";
    ClickAt(tree, *place);
    if (BecomesSelected(tree, path)) return "";
  }
  return "the node \"" + path + "\" is not selected by clicks";
}

bool ProgramWindows::BecomesSelected(HWND tree, const std::string& path) const {
  constexpr DWORD kPatience = 5000;  // milliseconds
  const DWORD start = GetTickCount();
  while (GetTickCount() - start < kPatience) {
    if (!Dialogs().empty()) return true;  // what the click led to
    const auto selected = reinterpret_cast<HTREEITEM>(Ask(tree, TVM_GETNEXTITEM, TVGN_CARET, 0));
    if (selected != nullptr && ItemPath(tree, selected) == path) return true;
    Sleep(10);
  }
  return false;
}

std::vector<HWND> ProgramWindows::Dialogs() const {
  std::vector<HWND> all, dialogs;
  if (id_ == 0) return dialogs;
  EnumWindows(CollectTop, reinterpret_cast<LPARAM>(&all));
  for (const HWND window : all) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == id_ && IsWindowVisible(window) != 0 && IsClass(window, "#32770")) {
      dialogs.push_back(window);
    }
  }
  return dialogs;
}

DialogKind KindOf(HWND dialog) {
  if (FindClass(dialog, WC_TREEVIEWA) != nullptr) return DialogKind::kFolder;
  if (FindClass(dialog, "SHELLDLL_DefView") != nullptr) return DialogKind::kFile;
  // A file dialog without its list is still being made: a press on its button would be lost.
  if (FindClass(dialog, "Edit") != nullptr) return DialogKind::kOther;
  return FindClass(dialog, "Static") != nullptr ? DialogKind::kMessageBox : DialogKind::kOther;
}

std::string BoxText(HWND box) {
  std::string text;
  for (HWND child = GetWindow(box, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    if (IsClass(child, "Static") && text.empty()) text = OneLine(WindowText(child));
  }
  return text;
}

bool PressButton(HWND dialog, int number) {
  const HWND button = GetDlgItem(dialog, number);
  if (button == nullptr || IsWindowVisible(button) == 0) return false;
  ClickAt(button, Middle(button));
  return true;
}

std::string ProgramWindows::AnswerFolderDialog(HWND dialog, const std::string& path) const {
  if (path.empty()) return PressButton(dialog, IDCANCEL) ? "" : "the dialog has no Cancel";
  ProgramMemory& memory = *memory_;
  const std::wstring wide = Wide(path);
  memory.Write(wide.c_str(), (wide.size() + 1) * sizeof(wchar_t));
  Ask(dialog, BFFM_SETSELECTIONW, TRUE, memory.Pointer());
  Sleep(50);
  return PressButton(dialog, IDOK) ? "" : "the dialog has no OK";
}

std::string ProgramWindows::AnswerFileDialog(HWND dialog, const std::string& path) {
  if (path.empty()) return PressButton(dialog, IDCANCEL) ? "" : "the dialog has no Cancel";
  HWND box = GetDlgItem(dialog, kPathEdit);
  if (box == nullptr) box = GetDlgItem(dialog, kPathCombo);
  if (box == nullptr) box = FindClass(dialog, "Edit");
  if (box == nullptr) return "the dialog has no place for a path";
  const std::wstring wide = Wide(path);
  Ask(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(wide.c_str()));
  return PressButton(dialog, IDOK) ? "" : "the dialog has no OK";
}

}  // namespace quorvale::driver
