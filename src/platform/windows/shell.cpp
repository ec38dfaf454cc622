#include "platform/windows/shell.h"

#include <algorithm>

#include "base/paths.h"
#include "base/text.h"
#include "platform/windows/late_objects.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

// The smallest answer of the system that stands for success, and its word for a refusal.
constexpr int kStarted = 33;

using FolderPathCall = BOOL(WINAPI*)(LPCITEMIDLIST, LPWSTR);
using HelpCall = HWND(WINAPI*)(HWND, LPCSTR, UINT, DWORD_PTR);

HelpCall FindHelp() { return LookUp<HelpCall>("hhctrl.ocx", "HtmlHelpA"); }

std::string PathOfItem(LPCITEMIDLIST item) {
  const auto wide_call =
      HasUnicode() ? LookUp<FolderPathCall>("shell32.dll", "SHGetPathFromIDListW") : nullptr;
  if (wide_call != nullptr) {
    wchar_t path[MAX_PATH] = L"";
    return wide_call(item, path) != 0 ? FromWide(path) : "";
  }
  char path[MAX_PATH] = "";
  return SHGetPathFromIDListA(item, path) != 0 ? FromAnsi(path) : "";
}

bool FolderExists(const std::string& path) {
  if (path.empty()) return false;
  const DWORD attributes = HasUnicode() ? GetFileAttributesW(Wide(path).c_str())
                                        : GetFileAttributesA(Ansi(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// The place of a special folder, which is made if it is missing; "" where that cannot be.
std::string RemadeFolder(int folder) {
  using WideCall = BOOL(WINAPI*)(HWND, LPWSTR, int, BOOL);
  using AnsiCall = BOOL(WINAPI*)(HWND, LPSTR, int, BOOL);
  if (const auto call =
          HasUnicode() ? LookUp<WideCall>("shell32.dll", "SHGetSpecialFolderPathW") : nullptr) {
    wchar_t path[MAX_PATH] = L"";
    return call(nullptr, path, folder, TRUE) != 0 ? FromWide(path) : "";
  }
  if (const auto call = LookUp<AnsiCall>("shell32.dll", "SHGetSpecialFolderPathA")) {
    char path[MAX_PATH] = "";
    return call(nullptr, path, folder, TRUE) != 0 ? FromAnsi(path) : "";
  }
  return "";
}

WORD ShowCommand(WindowStyle style) {
  switch (style) {
    case WindowStyle::kHidden:
      return SW_HIDE;
    case WindowStyle::kMinimized:
      return SW_SHOWMINIMIZED;
    case WindowStyle::kNormal:
      break;
  }
  return SW_SHOWNORMAL;
}

// "Ctrl+Alt+Q" as a link stores it: the key in the low byte, the modifiers in the high one.
WORD HotKey(const std::string& text) {
  WORD modifiers = 0;
  WORD key = 0;
  for (const std::string& part : Split(text, "+")) {
    const std::string word = Trim(part);
    if (EqualsNoCase(word, "Ctrl")) {
      modifiers |= HOTKEYF_CONTROL;
    } else if (EqualsNoCase(word, "Alt")) {
      modifiers |= HOTKEYF_ALT;
    } else if (EqualsNoCase(word, "Shift")) {
      modifiers |= HOTKEYF_SHIFT;
    } else if (word.size() == 1) {
      key = static_cast<WORD>(static_cast<unsigned char>(word[0]) & ~0x20);
      if (word[0] >= '0' && word[0] <= '9') key = static_cast<unsigned char>(word[0]);
    } else if (word.size() > 1 && (word[0] == 'F' || word[0] == 'f')) {
      key = static_cast<WORD>(VK_F1 + static_cast<int>(Val(word.substr(1))) - 1);
    }
  }
  return key == 0 ? 0 : static_cast<WORD>(modifiers << 8 | key);
}

template <class Link, class Text>
void FillLink(Link* object, const ShellLink& link, Text&& text) {
  object->SetPath(text(link.target).c_str());
  object->SetArguments(text(link.arguments).c_str());
  object->SetWorkingDirectory(text(link.working_folder).c_str());
  object->SetDescription(text(link.description).c_str());
  object->SetIconLocation(text(link.target).c_str(), link.icon_index);
  object->SetShowCmd(link.window_style);
  object->SetHotkey(HotKey(link.hot_key));
}

}  // namespace

WindowsShell::~WindowsShell() {
  // Help windows that outlive their process's own ones bring some systems down with them.
  constexpr UINT kCloseAll = 0x12;
  const HelpCall help = help_shown_ ? FindHelp() : nullptr;
  if (help != nullptr) help(nullptr, nullptr, kCloseAll, 0);
  for (const auto& [id, process] : runs_) CloseHandle(process);
}

std::string WindowsShell::SpecialFolder(int folder) {
  LPITEMIDLIST item = nullptr;
  std::string path;
  if (SUCCEEDED(SHGetSpecialFolderLocation(nullptr, folder, &item)) && item != nullptr) {
    path = PathOfItem(item);
    CoTaskMemFree(item);
  }
  // A folder that was lost has no item, but still its place: it is made anew there.
  if (!FolderExists(path)) path = RemadeFolder(folder);
  constexpr size_t kRootLength = 3;  // "C:\\"
  return path.size() > kRootLength ? WithoutBackslash(path) : path;
}

RunId WindowsShell::Remember(void* process) {
  if (process == nullptr) return 0;
  runs_.emplace(++last_run_, process);
  return last_run_;
}

RunId WindowsShell::Run(const std::string& command_line, WindowStyle style) {
  PROCESS_INFORMATION process = {};
  BOOL started = FALSE;
  if (HasUnicode()) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = ShowCommand(style);
    std::wstring line = Wide(command_line);
    started = CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                             &startup, &process);
  } else {
    STARTUPINFOA startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = ShowCommand(style);
    std::string line = Ansi(command_line);
    started = CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                             &startup, &process);
  }
  if (started == 0) return 0;
  CloseHandle(process.hThread);
  return Remember(process.hProcess);
}

namespace {

struct Execution {
  bool started = false;
  HINSTANCE answer = nullptr;
  HANDLE process = nullptr;
};

template <class Request, class Text>
Execution ExecuteWith(BOOL(WINAPI* call)(Request*), const Text& verb, const Text& file,
                      const Text& parameters, const Text& folder, int show) {
  Request request = {};
  request.cbSize = sizeof(request);
  request.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
  request.lpVerb = verb.c_str();
  request.lpFile = file.c_str();
  request.lpParameters = parameters.c_str();
  request.lpDirectory = folder.c_str();
  request.nShow = show;
  const bool started = call(&request) != 0;
  return {started, request.hInstApp, request.hProcess};
}

}  // namespace

int WindowsShell::Execute(const std::string& verb, const std::string& file,
                          const std::string& parameters, const std::string& folder, int show,
                          RunId* run) {
  const auto [started, answer, process] = HasUnicode()
                                              ? ExecuteWith(ShellExecuteExW, Wide(verb), Wide(file),
                                                            Wide(parameters), Wide(folder), show)
                                              : ExecuteWith(ShellExecuteExA, Ansi(verb), Ansi(file),
                                                            Ansi(parameters), Ansi(folder), show);
  if (run != nullptr) {
    *run = started ? Remember(process) : 0;
  } else if (process != nullptr) {
    CloseHandle(process);
  }
  const int code = static_cast<int>(reinterpret_cast<INT_PTR>(answer));
  return started ? std::max(code, kStarted) : std::min(code, SE_ERR_DLLNOTFOUND);
}

bool WindowsShell::IsRunning(RunId run) {
  const auto found = runs_.find(run);
  if (found == runs_.end()) return false;
  if (WaitForSingleObject(found->second, 0) == WAIT_TIMEOUT) return true;
  CloseHandle(found->second);
  runs_.erase(found);
  return false;
}

bool WindowsShell::CreateLink(const ShellLink& link) {
  void* created = nullptr;
  const IID& kind = HasUnicode() ? IID_IShellLinkW : IID_IShellLinkA;
  if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, kind, &created))) {
    return false;
  }
  IUnknown* object = nullptr;
  if (HasUnicode()) {
    auto* wide_link = static_cast<IShellLinkW*>(created);
    FillLink(wide_link, link, [](const std::string& text) { return Wide(text); });
    object = wide_link;
  } else {
    auto* ansi_link = static_cast<IShellLinkA*>(created);
    FillLink(ansi_link, link, [](const std::string& text) { return Ansi(text); });
    object = ansi_link;
  }
  void* queried = nullptr;
  bool saved = false;
  if (SUCCEEDED(object->QueryInterface(IID_IPersistFile, &queried))) {
    auto* file = static_cast<IPersistFile*>(queried);
    saved = SUCCEEDED(file->Save(Wide(link.link_path).c_str(), TRUE));
    file->Release();
  }
  object->Release();
  return saved;
}

bool WindowsShell::CreateScriptedLink(const ShellLink& link) {
  try {
    const LateObject script = LateObjects().Create("Wscript.Shell");
    if (script == nullptr) return false;
    const LateObject made = ObjectOf(script->Call("CreateShortcut", {link.link_path}));
    if (made == nullptr) return false;
    made->Set("TargetPath", link.target);
    if (!link.hot_key.empty()) made->Set("HotKey", link.hot_key);
    made->Set("Description", link.description);
    made->Set("Windowstyle", link.window_style);
    made->Set("IconLocation", link.target + ", " + std::to_string(link.icon_index));
    made->Set("WorkingDirectory", link.working_folder);
    made->Call("save");
    return true;
  } catch (const LateBoundError&) {
    return false;
  }
}

bool WindowsShell::Operate(FileOperation operation, const std::string& source,
                           const std::string& target, int flags) {
  // Each list of names ends with an empty one.
  const std::string from = source + std::string(1, '\0');
  const std::string to = target + std::string(1, '\0');
  using WideCall = int(WINAPI*)(SHFILEOPSTRUCTW*);
  const auto wide_call =
      HasUnicode() ? LookUp<WideCall>("shell32.dll", "SHFileOperationW") : nullptr;
  if (wide_call != nullptr) {
    const std::wstring wide_from = Wide(from), wide_to = Wide(to);
    SHFILEOPSTRUCTW request = {};
    request.wFunc = static_cast<UINT>(operation);
    request.pFrom = wide_from.c_str();
    request.pTo = target.empty() ? nullptr : wide_to.c_str();
    request.fFlags = static_cast<FILEOP_FLAGS>(flags);
    return wide_call(&request) == 0 && request.fAnyOperationsAborted == FALSE;
  }
  const std::string ansi_from = Ansi(from), ansi_to = Ansi(to);
  SHFILEOPSTRUCTA request = {};
  request.wFunc = static_cast<UINT>(operation);
  request.pFrom = ansi_from.c_str();
  request.pTo = target.empty() ? nullptr : ansi_to.c_str();
  request.fFlags = static_cast<FILEOP_FLAGS>(flags);
  return SHFileOperationA(&request) == 0 && request.fAnyOperationsAborted == FALSE;
}

void WindowsShell::ShowHelp(const std::string& help_file, const std::string& topic) {
  constexpr UINT kDisplayTopic = 0;
  const std::string target = topic.empty() ? help_file : help_file + "::/" + topic;
  if (const HelpCall help = FindHelp()) {
    help_shown_ = true;
    help(GetDesktopWindow(), Ansi(target).c_str(), kDisplayTopic, 0);
  } else {
    Execute("Open", help_file, "", "", SW_SHOWNORMAL, nullptr);
  }
}

void WindowsShell::PlaySoundFile(const std::string& path) {
  sndPlaySoundA(Ansi(path).c_str(), SND_ASYNC);
}

}  // namespace quorvale::windows
