// window_probe.exe ACT [WORD...]: one act of a person before the windows of a running Quorvale.exe,
// or one question about them, for scripts that go their own way.
//
//   start MACHINE PROGRAM [WORD]   gives this system the facts of a machine folder ("-": none) and
//                                  starts the program
//   time PROGRAM COUNT             starts the program so often; prints, in milliseconds and sorted,
//                                  how long each start took until the home page was painted, and
//                                  behind that the middle of the processor time that they used
//   wait FORM [SECONDS]            until a form is seen; wait-gone: until it is not
//   wait-shown FORM.CONTROL TEXT [SECONDS]   until the control shows a text that begins so
//   wait-enabled FORM.CONTROL [SECONDS]
//   click FORM.CONTROL             also: set (TEXT), check (0|1), choose (TEXT), tick (PATH),
//                                  untick (PATH), select (PATH)
//   ticked FORM.CONTROL PATH       prints 1 if the node's box is ticked, 0 if not
//   point FORM.CONTROL             moves the pointer there; hold: also presses the button
//   release                        lets go of it
//   keys WORD...                   keys as from a keyboard: "tab", "shift+tab", "alt+n", "down",
//                                  "text:My mail"
//   keys-until FORM.CONTROL TEXT WORD...   all these keys at once; prints how many milliseconds it
//                                  took until the control showed a text that begins so
//   focus                          prints the control with the keyboard
//   shown FORM.CONTROL             prints what a person reads off it
//   place FORM                     prints left, top, width and height on the screen
//   box [SECONDS]                  waits for a message box and prints its text
//   answer OK|Yes|No               presses that button of the message box
//   stays-alive SECONDS            asks the main window for a sign of life every 50 milliseconds,
//                                  until a message box comes; prints the longest time without one,
//                                  and before that a line for each time above a quarter second
//   help                           waits for the help viewer that the program opened, prints its
//                                  title and closes it
//   click-for-box FORM.CONTROL     clicks it and prints after how many milliseconds a box stood
//   front                          brings the main window to the front, as Alt+Tab would
//   close FORM                     closes the form's window
//   shut-explorer                  closes the windows of the file manager
//   shuts                          closes the main window and waits for the program's end
//
// Ends with 0, or with 1 and a line that says what is in the way.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "base/paths.h"
#include "base/text.h"
#include "machine_facts.h"
#include "platform/windows/processes.h"
#include "platform/windows/text_calls.h"
#include "program_windows.h"

namespace quorvale::driver {
namespace {

using windows::Wide;

constexpr int kPatience = 30;  // seconds
constexpr DWORD kPause = 20;   // milliseconds between two looks

using Words = std::vector<std::string>;

std::string WordAt(const Words& words, size_t place) {
  return place < words.size() ? words[place] : "";
}
int SecondsAt(const Words& words, size_t place) {
  const int seconds = std::atoi(WordAt(words, place).c_str());
  return seconds > 0 ? seconds : kPatience;
}

DWORD FindProgram() {
  windows::WindowsProcesses processes("");
  for (const ProcessInfo& process : processes.List()) {
    if (EqualsNoCase(process.image, "Quorvale.exe")) return process.id;
  }
  return 0;
}

bool Until(int seconds, const std::function<bool()>& holds) {
  const DWORD start = GetTickCount();
  while (!holds()) {
    if (GetTickCount() - start > static_cast<DWORD>(seconds) * 1000) return false;
    Sleep(kPause);
  }
  return true;
}

bool Seen(HWND window) { return window != nullptr && IsWindowVisible(window) != 0; }

HANDLE Launch(const std::string& program, const std::string& word, DWORD* id) {
  std::wstring line = Wide("\"" + program + "\"" + (word.empty() ? "" : " " + word));
  const std::wstring folder = Wide(ParentFolder(program));
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process = {};
  if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(),
                     &startup, &process) == 0) {
    return nullptr;
  }
  CloseHandle(process.hThread);
  *id = process.dwProcessId;
  return process.hProcess;
}

// --- Keys ---------------------------------------------------------------------------------------

WORD KeyCode(const std::string& name) {
  static const std::map<std::string, WORD> names = {
      {"tab", VK_TAB},      {"enter", VK_RETURN}, {"esc", VK_ESCAPE}, {"space", VK_SPACE},
      {"up", VK_UP},        {"down", VK_DOWN},    {"left", VK_LEFT},  {"right", VK_RIGHT},
      {"home", VK_HOME},    {"end", VK_END},      {"f1", VK_F1},      {"backspace", VK_BACK},
      {"pagedown", VK_NEXT}};
  const auto found = names.find(name);
  if (found != names.end()) return found->second;
  return name.size() == 1 ? static_cast<WORD>(LOBYTE(VkKeyScanA(name[0]))) : 0;
}

void SendKey(WORD code, bool down) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = code;
  input.ki.wScan = static_cast<WORD>(MapVirtualKeyA(code, 0));
  input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
  SendInput(1, &input, sizeof(input));
}

void SendLetter(char letter) {
  const SHORT code = VkKeyScanA(letter);
  const bool shift = (HIBYTE(code) & 1) != 0;
  if (shift) SendKey(VK_SHIFT, true);
  SendKey(LOBYTE(code), true);
  SendKey(LOBYTE(code), false);
  if (shift) SendKey(VK_SHIFT, false);
}

// "alt+n", "shift+tab", "down"
bool SendChord(const std::string& chord) {
  Words parts = Split(chord, "+");
  const WORD key = KeyCode(parts.back());
  if (key == 0) return false;
  parts.pop_back();
  std::vector<WORD> held;
  for (const std::string& part : parts) {
    if (part != "alt" && part != "shift" && part != "ctrl") return false;
    held.push_back(part == "alt" ? VK_MENU : part == "shift" ? VK_SHIFT : VK_CONTROL);
  }
  for (const WORD code : held) SendKey(code, true);
  SendKey(key, true);
  SendKey(key, false);
  for (const WORD code : held) SendKey(code, false);
  return true;
}

// Windows with a caption that are not the program's.
struct OtherWindows {
  DWORD program = 0;
  int shut = 0;
};
BOOL CALLBACK ShutOther(HWND window, LPARAM data) {
  auto& others = *reinterpret_cast<OtherWindows*>(data);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  const bool captioned = (GetWindowLongPtrW(window, GWL_STYLE) & WS_CAPTION) == WS_CAPTION;
  if (process != others.program && captioned && IsWindowVisible(window) != 0) {
    PostMessageW(window, WM_CLOSE, 0, 0);
    ++others.shut;
  }
  return TRUE;
}

BOOL CALLBACK LookWhetherWaits(HWND child, LPARAM data) {
  if (IsWindowVisible(child) == 0 || GetUpdateRect(child, nullptr, FALSE) == 0) return TRUE;
  *reinterpret_cast<bool*>(data) = true;
  return FALSE;
}

// --- The acts -----------------------------------------------------------------------------------

class Probe {
 public:
  std::string Do(const std::string& act, const Words& words) {
    if (act == "start") return Start(words);
    if (act == "time") return Time(words);
    windows_.Watch(FindProgram());
    if (windows_.id() == 0) return "Quorvale.exe does not run";
    if (act.starts_with("wait")) return Wait(act, words);
    if (act == "keys") return Keys(words);
    if (act == "keys-until") return KeysUntil(words);
    if (act == "focus") return Print(FocusName());
    if (act == "place") return Place(WordAt(words, 0));
    if (act == "box") return Box(SecondsAt(words, 0));
    if (act == "answer") return Answer(WordAt(words, 0));
    if (act == "stays-alive") return StaysAlive(SecondsAt(words, 0));
    if (act == "help") return Help();
    if (act == "shuts") return Shut();
    if (act == "close") return Close(WordAt(words, 0));
    if (act == "front") return ToFront();
    if (act == "shut-explorer") return ShutExplorer();
    if (act == "release") return Button(MOUSEEVENTF_LEFTUP);
    return ActOnControl(act, words);
  }

 private:
  static std::string Print(const std::string& line) {
    std::printf("%s\n", line.c_str());
    return "";
  }

  static std::string Start(const Words& words) {
    if (WordAt(words, 0) != "-") {
      const std::string problem = TakeFactsOf(WordAt(words, 0));
      if (!problem.empty()) return problem;
    }
    DWORD id = 0;
    const HANDLE process = Launch(WordAt(words, 1), WordAt(words, 2), &id);
    return process == nullptr ? "it cannot be started" : "";
  }

  std::string Time(const Words& words) {
    std::vector<DWORD> times, used;
    const int count = std::max(1, std::atoi(WordAt(words, 1).c_str()));
    for (int i = 0; i < count; ++i) {
      DWORD id = 0;
      const DWORD start = GetTickCount();
      const HANDLE process = Launch(WordAt(words, 0), "", &id);
      if (process == nullptr) return "it cannot be started";
      windows_.Watch(id);
      // Painted: the large button is seen and no window of the form waits to be painted.
      const bool painted = Until(kPatience, [this] {
        const HWND form = windows_.FindForm("FrmWelcome");
        const HWND button = windows_.FindControl("FrmWelcome", "cmdWC_TakeBackup");
        return Seen(button) && windows_.Answers() && !WaitsToBePainted(form);
      });
      times.push_back(GetTickCount() - start);
      used.push_back(ProcessorTime(process));
      if (!painted) return "the home page never came";
      const std::string problem = Shut();
      CloseHandle(process);
      if (!problem.empty()) return problem;
    }
    std::sort(times.begin(), times.end());
    std::sort(used.begin(), used.end());
    std::string line;
    for (const DWORD time : times) line += std::to_string(time) + " ";
    return Print(line + "used " + std::to_string(used[used.size() / 2]));
  }

  // Milliseconds.
  static DWORD ProcessorTime(HANDLE process) {
    FILETIME start, end, kernel, user;
    if (GetProcessTimes(process, &start, &end, &kernel, &user) == 0) return 0;
    return (kernel.dwLowDateTime + user.dwLowDateTime) / 10000;
  }

  static bool WaitsToBePainted(HWND form) {
    bool waits = GetUpdateRect(form, nullptr, FALSE) != 0;
    EnumChildWindows(form, LookWhetherWaits, reinterpret_cast<LPARAM>(&waits));
    return waits;
  }

  // "form.control" into its two names.
  static std::pair<std::string, std::string> Names(const std::string& name) {
    const size_t dot = name.find('.');
    return dot == std::string::npos ? std::pair(name, std::string())
                                    : std::pair(name.substr(0, dot), name.substr(dot + 1));
  }
  HWND Control(const std::string& name) const {
    const auto [form, control] = Names(name);
    return windows_.FindControl(form, control);
  }

  std::string Wait(const std::string& act, const Words& words) {
    const std::string name = WordAt(words, 0);
    bool done = false;
    if (act == "wait") {
      done = Until(SecondsAt(words, 1), [&] { return Seen(windows_.FindForm(name)); });
    } else if (act == "wait-gone") {
      done = Until(SecondsAt(words, 1), [&] { return !Seen(windows_.FindForm(name)); });
    } else if (act == "wait-enabled") {
      done = Until(SecondsAt(words, 1), [&] {
        const HWND control = Control(name);
        return Seen(control) && IsWindowEnabled(control) != 0;
      });
    } else if (act == "wait-shown") {
      done = Until(SecondsAt(words, 2), [&] {
        const HWND control = Control(name);
        return Seen(control) && windows_.ShownLine(control).starts_with(WordAt(words, 1));
      });
    }
    if (done) return "";
    const HWND control = Control(name);
    return act + " " + name + ": in vain" +
           (control == nullptr ? "" : "; it shows " + windows_.ShownLine(control));
  }

  // Keys go to the window in front: one that has just come up may not be it yet.
  bool TakesKeys() const {
    const HWND front = GetForegroundWindow();
    DWORD process = 0;
    GetWindowThreadProcessId(front, &process);
    return process == windows_.id() && IsWindowEnabled(front) != 0 && windows_.Answers();
  }

  std::string Keys(const Words& words) {
    if (!Until(kPatience, [this] { return TakesKeys(); })) return "another program takes the keys";
    for (const std::string& word : words) {
      if (word.starts_with("text:")) {
        for (const char letter : word.substr(5)) SendLetter(letter);
      } else if (!SendChord(word)) {
        return "there is no key " + word;
      }
      // The next key may go to another window than this one.
      Sleep(kPause);
      if (!windows_.Answers()) return "the program does not answer";
    }
    return "";
  }

  std::string KeysUntil(const Words& words) {
    const HWND control = Control(WordAt(words, 0));
    const std::string text = WordAt(words, 1);
    const DWORD start = GetTickCount();
    for (size_t i = 2; i < words.size(); ++i) {
      if (!SendChord(words[i])) return "there is no key " + words[i];
    }
    const bool shown = Until(
        kPatience, [&] { return Seen(control) && windows_.ShownLine(control).starts_with(text); });
    if (!shown) return "in vain; it shows " + windows_.ShownLine(control);
    return Print(std::to_string(GetTickCount() - start));
  }

  std::string FocusName() const {
    GUITHREADINFO info = {};
    info.cbSize = sizeof(info);
    if (GetGUIThreadInfo(windows_.Thread(), &info) == 0 || info.hwndFocus == nullptr) return "";
    return ProgramWindows::ControlName(info.hwndFocus);
  }

  std::string Place(const std::string& form) const {
    const HWND window = windows_.FindForm(form);
    RECT place = {};
    if (window == nullptr || GetWindowRect(window, &place) == 0) return "there is no " + form;
    char line[80];
    wsprintfA(line, "%d %d %d %d", place.left, place.top, place.right - place.left,
              place.bottom - place.top);
    return Print(line);
  }

  std::string Box(int seconds) {
    if (!Until(seconds, [this] { return !windows_.Dialogs().empty(); })) return "no box came";
    return Print(BoxText(windows_.Dialogs().front()));
  }

  std::string Answer(const std::string& button) {
    const int number = button == "Yes" ? IDYES : button == "No" ? IDNO : IDOK;
    const std::vector<HWND> dialogs = windows_.Dialogs();
    if (dialogs.empty() || !PressButton(dialogs.front(), number)) return "no such button";
    return Until(kPatience, [&] { return IsWindow(dialogs.front()) == 0; }) ? "" : "it stays";
  }

  std::string StaysAlive(int seconds) {
    constexpr UINT kLongest = 60000;
    constexpr DWORD kWorthALine = 250;
    const HWND window = windows_.FindForm("FrmWelcome");
    DWORD longest = 0;
    const bool ended = Until(seconds, [&] {
      const DWORD start = GetTickCount();
      DWORD_PTR answer = 0;
      SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, kLongest, &answer);
      const DWORD took = GetTickCount() - start;
      longest = std::max(longest, took);
      if (took > kWorthALine) Print(std::to_string(took) + " ms before: " + WhatGoesOn());
      Sleep(50 - kPause);
      return !windows_.Dialogs().empty();
    });
    Print(std::to_string(longest));
    return ended ? "" : "no box came";
  }

  HWND HelpViewer() const {
    HWND viewer = nullptr;
    while ((viewer = FindWindowExA(nullptr, viewer, "HH Parent", nullptr)) != nullptr) {
      DWORD owner = 0;
      GetWindowThreadProcessId(viewer, &owner);
      if (owner == windows_.id() && Seen(viewer)) return viewer;
    }
    return nullptr;
  }
  std::string Help() {
    if (!Until(kPatience, [this] { return HelpViewer() != nullptr; })) return "no viewer came";
    const HWND viewer = HelpViewer();
    Print(ProgramWindows::KeptLine(viewer));
    PostMessageW(viewer, WM_CLOSE, 0, 0);
    return Until(kPatience, [&] { return HelpViewer() == nullptr; }) ? "" : "it stays";
  }

  // The page that is seen and, in a run, the line that says how far it is; nothing is asked.
  std::string WhatGoesOn() const {
    std::string all;
    for (const char* name : {"frmOne", "FrmTwo", "frmThree", "FrmBackupMedia", "frmfour", "frmROne",
                             "frmRTwo", "frmRfour", "frmFinish", "frmRFinish"}) {
      if (!Seen(windows_.FindForm(name))) continue;
      all += std::string(all.empty() ? "" : ", ") + name;
      for (const char* line : {"lblCurrent", "LblCurrentFileinProgress", "LblFileinprocess"}) {
        const HWND control = windows_.FindControl(name, line);
        if (control != nullptr) all += " | " + ProgramWindows::KeptLine(control);
      }
    }
    return all;
  }

  std::string ToFront() const {
    const HWND main = windows_.FindForm("FrmWelcome");
    SetForegroundWindow(main);
    return Until(5, [main] { return GetForegroundWindow() == main; }) ? "" : "it stays behind";
  }

  std::string ClickForBox(HWND window) {
    const DWORD start = GetTickCount();
    ProgramWindows::Click(window);
    if (!Until(kPatience, [this] { return !windows_.Dialogs().empty(); })) return "no box came";
    return Print(std::to_string(GetTickCount() - start));
  }

  // The program opens the backup's folder at its end, in a process that takes its time.
  std::string ShutExplorer() const {
    OtherWindows others{windows_.id(), 0};
    Until(10, [&others] {
      EnumWindows(ShutOther, reinterpret_cast<LPARAM>(&others));
      return others.shut > 0;
    });
    return others.shut > 0 ? "" : "the file manager never came";
  }

  std::string Shut() {
    const HWND main = windows_.FindForm("FrmWelcome");
    if (main != nullptr) PostMessageW(main, WM_CLOSE, 0, 0);
    return WaitForSingleObject(windows_.process(), kPatience * 1000) == WAIT_OBJECT_0
               ? ""
               : "the program does not end";
  }

  std::string Close(const std::string& form) const {
    const HWND window = windows_.FindForm(form);
    if (!Seen(window)) return "there is no " + form;
    PostMessageW(window, WM_CLOSE, 0, 0);
    return Until(kPatience, [&] { return !Seen(window); }) ? "" : "it stays";
  }

  static std::string Button(DWORD what) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = what;
    SendInput(1, &input, sizeof(input));
    return "";
  }

  static std::string PointAt(HWND window) {
    RECT place = {};
    GetWindowRect(window, &place);
    const int x = (place.left + place.right) / 2;
    const int y = (place.top + place.bottom) / 2;
    SetCursorPos(x, y);
    // A pointer that was only put somewhere has not moved for the window below it.
    for (const LONG step : {1, -1}) {
      INPUT input = {};
      input.type = INPUT_MOUSE;
      input.mi.dx = step;
      input.mi.dwFlags = MOUSEEVENTF_MOVE;
      SendInput(1, &input, sizeof(input));
      Sleep(kPause);
    }
    return "";
  }

  // A tree that is being filled or opened lets no node be reached for a moment.
  std::string ActOnNode(const std::string& act, HWND tree, const std::string& path) const {
    constexpr int kMoment = 5;
    std::string problem;
    Until(kMoment, [&] {
      problem = act == "select" ? windows_.ClickItem(tree, path)
                                : windows_.ClickBox(tree, path, act == "tick");
      return problem.empty();
    });
    return problem;
  }

  std::string ActOnControl(const std::string& act, const Words& words) {
    const auto [form, control] = Names(WordAt(words, 0));
    if (act == "shown") {
      const HWND window = windows_.FindControl(form, control);
      return window == nullptr ? "there is none" : Print(windows_.ShownLine(window));
    }
    std::string problem;
    const HWND window = windows_.Reach(form, control, &problem);
    if (window == nullptr) return problem;
    const std::string text = WordAt(words, 1);
    if (act == "click") return ProgramWindows::Click(window);
    if (act == "set") return ProgramWindows::Type(window, text);
    if (act == "check") return ProgramWindows::Check(window, text == "1");
    if (act == "choose") return windows_.Choose(window, text);
    if (act == "tick" || act == "untick" || act == "select") return ActOnNode(act, window, text);
    if (act == "ticked") {
      const auto item = windows_.FindItem(window, text);
      return item ? Print(item->checked ? "1" : "0") : "there is no such node";
    }
    if (act == "point") return PointAt(window);
    if (act == "click-for-box") return ClickForBox(window);
    if (act == "hold") {
      PointAt(window);
      return Button(MOUSEEVENTF_LEFTDOWN);
    }
    return "there is no act " + act;
  }

  ProgramWindows windows_;
};

}  // namespace
}  // namespace quorvale::driver

int main(int count, char** words) {
  if (count < 2) {
    std::printf("usage: window_probe ACT [WORD...]\n");
    return 2;
  }
  quorvale::driver::Probe probe;
  const std::string problem = probe.Do(words[1], {words + 2, words + count});
  if (problem.empty()) return 0;
  std::printf("%s: %s\n", words[1], problem.c_str());
  return 1;
}
