#include "platform/windows/ui.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "base/paths.h"
#include "base/text.h"
#include "platform/windows/form_view.h"
#include "platform/windows/keyboard.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

constexpr int kLongestPath = 1024;
// Denser screens are taken for these: the program keeps its size in pixels, and the rule by which
// its window shrinks would cut it off.
constexpr int kMostDotsPerInch = 120;

// A low-level hook has no place for data of its own, so its filter has to stand here.
const WindowsUi::KeyboardFilter* guard_filter = nullptr;

LRESULT CALLBACK GuardHook(int code, WPARAM message, LPARAM data) {
  if (code == HC_ACTION && guard_filter != nullptr) {
    const auto& key = *reinterpret_cast<const KBDLLHOOKSTRUCT*>(data);
    DWORD process = 0;
    GetWindowThreadProcessId(GetForegroundWindow(), &process);
    if ((*guard_filter)(code, static_cast<std::uint32_t>(message), key.vkCode,
                        process == GetCurrentProcessId())) {
      return -1;
    }
  }
  return CallNextHookEx(nullptr, code, message, data);
}

UINT BoxFlags(const ui::MessageBoxRequest& request) {
  UINT flags = MB_OK;
  if (request.buttons == ui::Buttons::kYesNo) flags = MB_YESNO;
  if (request.buttons == ui::Buttons::kYesNoCancel) flags = MB_YESNOCANCEL;
  switch (request.icon) {
    case ui::Icon::kNone:
      break;
    case ui::Icon::kInformation:
      flags |= MB_ICONINFORMATION;
      break;
    case ui::Icon::kQuestion:
      flags |= MB_ICONQUESTION;
      break;
    case ui::Icon::kExclamation:
      flags |= MB_ICONEXCLAMATION;
      break;
    case ui::Icon::kCritical:
      flags |= MB_ICONHAND;
      break;
  }
  if (request.second_is_default) flags |= MB_DEFBUTTON2;
  if (request.to_foreground) flags |= MB_SETFOREGROUND;
  return flags;
}

// Selects the start folder as soon as the dialog stands.
int CALLBACK SelectStart(HWND dialog, UINT message, LPARAM, LPARAM start) {
  if (message == BFFM_INITIALIZED) {
    SendMessageA(dialog, HasUnicode() ? BFFM_SETSELECTIONW : BFFM_SETSELECTIONA, TRUE, start);
  }
  return 0;
}

// "text|pattern" as the file dialog wants it: each part ends with a NUL, the whole with two.
std::string DialogFilter(const std::string& filter) {
  std::string result;
  for (const std::string& part : Split(filter, "|")) {
    result += part;
    result += '\0';
  }
  result += '\0';
  return result;
}

}  // namespace

WindowsUi::WindowsUi() {
  INITCOMMONCONTROLSEX controls = {sizeof(controls), ICC_WIN95_CLASSES | ICC_DATE_CLASSES};
  using InitCall = BOOL(WINAPI*)(const INITCOMMONCONTROLSEX*);
  if (const auto init = LookUp<InitCall>("comctl32.dll", "InitCommonControlsEx")) {
    init(&controls);
  } else {
    InitCommonControls();
  }
}

WindowsUi::~WindowsUi() { GuardKeyboard(false); }

void WindowsUi::Loop() {
  MSG message;
  while (!quit_) {
    const BOOL got =
        HasUnicode() ? GetMessageW(&message, nullptr, 0, 0) : GetMessageA(&message, nullptr, 0, 0);
    if (got <= 0 || !Dispatch(message)) break;
    if (after_message) after_message();
  }
}

bool WindowsUi::Dispatch(MSG& message) {
  if (message.message == WM_QUIT) {
    quit_ = true;
    return false;
  }
  if (!HandleKey(*this, message)) {
    TranslateMessage(&message);
    if (HasUnicode()) {
      DispatchMessageW(&message);
    } else {
      DispatchMessageA(&message);
    }
  }
  if (message.message != WM_PAINT && message.message != WM_MOUSEMOVE) KeepFocus();
  return true;
}

// A control that is hidden or disabled while it has the keyboard leaves it nowhere.
void WindowsUi::KeepFocus() {
  const HWND active = GetActiveWindow();
  if (active == nullptr || IsWindowEnabled(active) == 0) return;
  for (FormView* view : views_) {
    if (view->TakeAwaitedFocus()) return;
  }
  const HWND focus = GetFocus();
  if (focus != nullptr && focus != active && IsWindowVisible(focus) != 0 &&
      IsWindowEnabled(focus) != 0) {
    return;
  }
  FormView* view = ViewOf(active);
  if (view != nullptr && IsIconic(active) == 0) view->RestoreFocus();
}

void WindowsUi::Pump() {
  MSG message;
  while (!quit_ && (HasUnicode() ? PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)
                                 : PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) != 0) {
    if (!Dispatch(message)) return;
  }
}

void WindowsUi::Attach(ui::Form& form) {
  if (form.view != nullptr) return;
  if (form.host_panel != nullptr) Attach(form.host_panel->form());
  form.view = std::make_unique<FormView>(*this, form);
}

FormView* WindowsUi::ViewOf(HWND window) const {
  for (; window != nullptr; window = GetParent(window)) {
    for (FormView* view : views_) {
      if (view->handle() == window) return view;
    }
    if ((GetWindowLongPtrA(window, GWL_STYLE) & WS_CHILD) == 0) break;
  }
  return nullptr;
}

HWND WindowsUi::Owner() const {
  const HWND active = GetActiveWindow();
  if (active != nullptr) return active;
  for (const FormView* view : views_) {
    if (view->form().host_panel == nullptr && IsWindowVisible(view->handle()) != 0) {
      return view->handle();
    }
  }
  return nullptr;
}

ui::Answer WindowsUi::MessageBox(const ui::MessageBoxRequest& request) {
  const UINT flags = BoxFlags(request);
  const int answer =
      HasUnicode()
          ? MessageBoxW(Owner(), Wide(request.text).c_str(), Wide(request.title).c_str(), flags)
          : MessageBoxA(Owner(), Ansi(request.text).c_str(), Ansi(request.title).c_str(), flags);
  if (request.buttons == ui::Buttons::kOk) return ui::Answer::kOk;
  if (answer == IDCANCEL) return ui::Answer::kCancel;
  return answer == IDYES ? ui::Answer::kYes : ui::Answer::kNo;
}

std::string WindowsUi::BrowseForFolder(const std::string& title, const std::string& start) {
  using BrowseCall = LPITEMIDLIST(WINAPI*)(BROWSEINFOW*);
  using PathCall = BOOL(WINAPI*)(LPCITEMIDLIST, LPWSTR);
  const auto browse =
      HasUnicode() ? LookUp<BrowseCall>("shell32.dll", "SHBrowseForFolderW") : nullptr;
  const auto path_of =
      HasUnicode() ? LookUp<PathCall>("shell32.dll", "SHGetPathFromIDListW") : nullptr;
  std::string chosen;
  LPITEMIDLIST item = nullptr;
  if (browse != nullptr && path_of != nullptr) {
    const std::wstring wide_title = Wide(title), wide_start = Wide(start);
    BROWSEINFOW request = {};
    request.hwndOwner = Owner();
    request.lpszTitle = wide_title.c_str();
    request.ulFlags = BIF_RETURNONLYFSDIRS;
    request.lpfn = SelectStart;
    request.lParam = reinterpret_cast<LPARAM>(wide_start.c_str());
    item = browse(&request);
    wchar_t path[MAX_PATH] = L"";
    if (item != nullptr && path_of(item, path) != 0) chosen = FromWide(path);
  } else {
    const std::string ansi_title = Ansi(title), ansi_start = Ansi(start);
    BROWSEINFOA request = {};
    request.hwndOwner = Owner();
    request.lpszTitle = ansi_title.c_str();
    request.ulFlags = BIF_RETURNONLYFSDIRS;
    request.lpfn = SelectStart;
    request.lParam = reinterpret_cast<LPARAM>(ansi_start.c_str());
    item = SHBrowseForFolderA(&request);
    char path[MAX_PATH] = "";
    if (item != nullptr && SHGetPathFromIDListA(item, path) != 0) chosen = FromAnsi(path);
  }
  if (item != nullptr) CoTaskMemFree(item);
  return chosen;
}

namespace {

// The path that the user picks, "" if none. `version` is the request's size in the oldest system.
template <class Request, class Text>
Text PickFile(BOOL(WINAPI* call)(Request*), DWORD version, HWND owner, const Text& filter,
              const Text& folder) {
  Text path(kLongestPath, 0);
  Request request = {};
  request.lStructSize = version;
  request.hwndOwner = owner;
  request.lpstrFilter = filter.c_str();
  request.lpstrFile = path.data();
  request.nMaxFile = kLongestPath;
  request.lpstrInitialDir = folder.c_str();
  request.Flags =
      OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_EXPLORER;
  return call(&request) != 0 ? Text(path.c_str()) : Text();
}

}  // namespace

std::string WindowsUi::OpenFileDialog(const std::string& filter,
                                      const std::string& initial_folder) {
  const std::string parts = DialogFilter(filter);
  return HasUnicode() ? FromWide(PickFile(GetOpenFileNameW, OPENFILENAME_SIZE_VERSION_400W, Owner(),
                                          Wide(parts), Wide(initial_folder)))
                      : FromAnsi(PickFile(GetOpenFileNameA, OPENFILENAME_SIZE_VERSION_400A, Owner(),
                                          Ansi(parts), Ansi(initial_folder)));
}

void WindowsUi::RunModal(ui::Form& form) {
  const auto* view = static_cast<FormView*>(form.view.get());
  const auto open = [&] {
    return std::find(views_.begin(), views_.end(), view) != views_.end() && form.Visible();
  };
  std::vector<HWND> disabled;
  for (const FormView* other : views_) {
    if (other == view || other->form().host_panel != nullptr) continue;
    if (IsWindowEnabled(other->handle()) == 0) continue;
    EnableWindow(other->handle(), FALSE);
    disabled.push_back(other->handle());
  }
  MSG message;
  while (!quit_ && open()) {
    const BOOL got =
        HasUnicode() ? GetMessageW(&message, nullptr, 0, 0) : GetMessageA(&message, nullptr, 0, 0);
    if (got <= 0 || !Dispatch(message)) break;
  }
  for (const HWND window : disabled) EnableWindow(window, TRUE);
  if (!disabled.empty()) SetActiveWindow(disabled.front());
}

void WindowsUi::SetPointer(ui::Pointer pointer) {
  pointer_ = pointer;
  SetCursor(LoadCursorA(nullptr, pointer == ui::Pointer::kHourglass ? IDC_WAIT : IDC_ARROW));
}

bool WindowsUi::MouseIsOver(const ui::Control& control) {
  const auto* view = static_cast<const FormView*>(control.form().view.get());
  const ControlWindow* window = view != nullptr ? view->WindowOf(control) : nullptr;
  POINT point;
  if (window == nullptr || GetCursorPos(&point) == 0) return false;
  return WindowFromPoint(point) == window->handle();
}

ui::TextSize WindowsUi::SizeOfText(const ui::Control& control, const std::string& text) {
  RECT area = {0, 0, 0, 0};
  Canvas(1, 1).Measure(text, &area, drawing_.FontOf(control));
  return {static_cast<int>(area.right - area.left), static_cast<int>(area.bottom - area.top)};
}

namespace {

// Memory that the clipboard can take over; null if there is none.
template <class Text>
HGLOBAL MovableCopy(const Text& text) {
  const size_t bytes = (text.size() + 1) * sizeof(typename Text::value_type);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
  void* place = memory != nullptr ? GlobalLock(memory) : nullptr;
  if (place == nullptr) {
    if (memory != nullptr) GlobalFree(memory);
    return nullptr;
  }
  std::memcpy(place, text.c_str(), bytes);
  GlobalUnlock(memory);
  return memory;
}

}  // namespace

bool WindowsUi::SetClipboardText(const std::string& text) {
  if (OpenClipboard(Owner()) == 0) return false;
  EmptyClipboard();
  const HGLOBAL copy = HasUnicode() ? MovableCopy(Wide(text)) : MovableCopy(Ansi(text));
  const bool taken =
      copy != nullptr && SetClipboardData(HasUnicode() ? CF_UNICODETEXT : CF_TEXT, copy) != nullptr;
  // What the clipboard has taken is its own.
  if (!taken && copy != nullptr) GlobalFree(copy);
  CloseClipboard();
  return taken;
}

void WindowsUi::Quit() {
  quit_ = true;
  PostQuitMessage(0);
}

void WindowsUi::SetCapsLock(bool on) {
  if (((GetKeyState(VK_CAPITAL) & 1) != 0) == on) return;
  keybd_event(VK_CAPITAL, 0x3A, 0, 0);
  keybd_event(VK_CAPITAL, 0x3A, KEYEVENTF_KEYUP, 0);
}

void WindowsUi::GuardKeyboard(bool on) {
  if (on == (guard_ != nullptr)) return;
  if (on) {
    if (!keyboard_filter) return;
    guard_filter = &keyboard_filter;
    guard_ = SetWindowsHookExA(WH_KEYBOARD_LL, GuardHook, GetModuleHandleA(nullptr), 0);
  } else {
    UnhookWindowsHookEx(guard_);
    guard_ = nullptr;
    guard_filter = nullptr;
  }
}

int WindowsUi::DotsPerInch() {
  const HDC screen = GetDC(nullptr);
  const int dots = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return std::min(dots, kMostDotsPerInch);
}

}  // namespace quorvale::windows
