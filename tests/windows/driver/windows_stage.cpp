#include "windows_stage.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "machine_facts.h"
#include "platform/file_toolkit.h"
#include "platform/windows/text_calls.h"
#include "play/scenario.h"

namespace quorvale::driver {
namespace {

// Milliseconds.
constexpr int kPatience = 60000;       // until an act can be done, an expectation holds
constexpr int kLongPatience = 120000;  // until foreseen boxes have come
// So many looks in a row at a program that answered and had not worked, and it is at rest. They are
// counted, not timed: a program that gets no time on a busy machine does not answer either.
constexpr int kQuietLooks = 12;
constexpr int kPause = 10;  // between two looks

int ButtonOf(ui::Answer answer) {
  if (answer == ui::Answer::kOk) return IDOK;
  return answer == ui::Answer::kYes ? IDYES : IDNO;
}

// With the day of the week, which need not be known of the first one.
SYSTEMTIME Later(const SYSTEMTIME& moment, int minutes) {
  FILETIME parts;
  SystemTimeToFileTime(&moment, &parts);
  ULARGE_INTEGER time;
  time.LowPart = parts.dwLowDateTime;
  time.HighPart = parts.dwHighDateTime;
  time.QuadPart += static_cast<ULONGLONG>(minutes) * 60 * 10000000;
  parts.dwLowDateTime = time.LowPart;
  parts.dwHighDateTime = time.HighPart;
  SYSTEMTIME later;
  FileTimeToSystemTime(&parts, &later);
  return later;
}

SYSTEMTIME MomentOf(const LocalTime& time) {
  SYSTEMTIME moment = {};
  moment.wYear = static_cast<WORD>(time.year);
  moment.wMonth = static_cast<WORD>(time.month);
  moment.wDay = static_cast<WORD>(time.day);
  moment.wHour = static_cast<WORD>(time.hour);
  moment.wMinute = static_cast<WORD>(time.minute);
  return Later(moment, 0);
}

bool SameMinute(const SYSTEMTIME& a, const SYSTEMTIME& b) {
  return a.wMinute == b.wMinute && a.wHour == b.wHour && a.wDay == b.wDay;
}

// The forms in which the program writes a moment: that of names and that of the screen.
std::string InNames(const SYSTEMTIME& moment) {
  char text[64];
  wsprintfA(text, "%d_%d_%d_%d_%d_%d", moment.wDayOfWeek + 1, moment.wDay, moment.wMonth,
            moment.wYear, moment.wHour, moment.wMinute);
  return text;
}
std::string OnScreen(const SYSTEMTIME& moment) {
  char text[64];
  wsprintfA(text, "%02d/%02d/%04d", moment.wMonth, moment.wDay, moment.wYear);
  return text;
}

// A text of the scenario with another moment in it than that of the scenario's clock.
std::string AtMoment(std::string text, const SYSTEMTIME& clock, const SYSTEMTIME& moment) {
  text = ReplaceAll(std::move(text), InNames(clock), InNames(moment));
  return ReplaceAll(std::move(text), OnScreen(clock), OnScreen(moment));
}

}  // namespace

WindowsStage::WindowsStage(DriverOptions options)
    : options_(std::move(options)), computer_("scenario driver"), processes_(options_.program) {}

// --- The computer
// ---------------------------------------------------------------------------------

// A further machine needs a computer of its own, which the script that runs this driver lays.
bool WindowsStage::TakesAnotherMachine() const { return !has_machine_; }

std::string WindowsStage::NewMachine(const std::string&, const std::string&) {
  has_machine_ = true;
  return TakeFactsOf(options_.machine);
}

std::optional<std::string> WindowsStage::FormerFile(const std::string& path) {
  const std::string place =
      options_.former + "\\drive_" + FoldCase(path.substr(0, 1)) + path.substr(2);
  return FileToolkit(computer_.platform().files, [] {}).ReadWhole(place);
}

std::string WindowsStage::RunProcess(const std::string& image, std::uint32_t) {
  return processes_.RunStandIn(image) ? "" : image + " cannot be started";
}

std::string WindowsStage::EndProcess(const std::string& image) {
  processes_.EndStandIns(image);
  return "";
}

// A drive is a link that Wine keeps under a name which no Windows call can remove.
std::string WindowsStage::RemoveDrive(const std::string& letter) {
  const std::string link = computer_.platform().system.Environment("WINEPREFIX") + "/dosdevices/" +
                           FoldCase(letter) + ":";
  ProgramProcesses::RunOnHost("/bin/rm", "-f " + link);
  DefineDosDeviceW(DDD_REMOVE_DEFINITION, windows::Wide(letter + ":").c_str(), nullptr);
  const DWORD bit = DWORD{1} << (FoldCase(letter)[0] - 'a');
  return Until(kPatience, [bit] {
    return (GetLogicalDrives() & bit) == 0 ? "" : "the drive does not go away";
  });
}

// A refusal and a program that is not to be had look the same to the one that asks.
std::string WindowsStage::RefuseElevation(bool refuse) {
  processes_.RefuseRestarts(refuse);
  return "";
}

std::string WindowsStage::SetClock(const LocalTime& time) {
  scenario_clock_ = MomentOf(time);
  GetLocalTime(&clock_set_);
  return "";
}

std::string WindowsStage::SetEnvironment(const std::string& name, const std::string& value) {
  const std::wstring text = windows::Wide(value);
  SetEnvironmentVariableW(windows::Wide(name).c_str(), text.empty() ? nullptr : text.c_str());
  return "";
}

std::optional<std::string> WindowsStage::ScreenSize() {
  return std::to_string(GetSystemMetrics(SM_CXSCREEN)) + "x" +
         std::to_string(GetSystemMetrics(SM_CYSCREEN));
}

// --- The person
// -----------------------------------------------------------------------------------

// The program may have started itself again meanwhile: then that copy is the one.
std::string WindowsStage::Start(const std::string& command_line) {
  DWORD copy = 0;
  if (program_ != 0 && !command_line.empty()) {
    Until(5000, [&] {
      copy = processes_.FindCopy(command_line, program_);
      return copy == 0 ? "no copy" : "";
    });
  }
  if (program_ != 0 && ProgramProcesses::Runs(program_)) {
    if (copy != 0) {
      Until(kPatience, [&] { return ProgramProcesses::Runs(program_) ? "runs" : ""; });
    }
    ProgramProcesses::End(program_);
  }
  program_ = copy != 0 ? copy : processes_.Start(command_line);
  if (program_ == 0) return options_.program + " cannot be started";
  windows_.Watch(program_);
  return Until(kPatience, [&] { return EndedOrShown(program_); });
}

// A copy that shows itself is then the one that the person sits before.
std::string WindowsStage::StartBeside(const std::string& command_line) {
  const DWORD copy = processes_.StartBeside(command_line);
  if (copy == 0) return options_.program + " cannot be started";
  const std::string problem = Until(kPatience, [&] { return EndedOrShown(copy); });
  if (!problem.empty() || !ProgramProcesses::Runs(copy)) return problem;
  program_ = copy;
  windows_.Watch(copy);
  return "";
}

std::string WindowsStage::EndedOrShown(DWORD copy) {
  if (!ProgramProcesses::Runs(copy)) return "";
  ProgramWindows windows;
  windows.Watch(copy);
  const HWND main = windows.FindForm("FrmWelcome");
  const bool shown = main != nullptr && IsWindowVisible(main) != 0;
  return shown || !windows.Dialogs().empty() ? "" : "the program shows no window";
}

std::string WindowsStage::ByHand(const std::function<std::string()>& attempt) {
  if (watching_) return attempt();
  const std::string problem = Until(kPatience, attempt);
  return problem.empty() ? Rest() : problem;
}

std::string WindowsStage::OnControl(const std::string& form, const std::string& control,
                                    const std::function<std::string(HWND)>& act) const {
  std::string problem;
  const HWND window = windows_.Reach(form, control, &problem);
  return window == nullptr ? problem : act(window);
}

std::string WindowsStage::Click(const std::string& form, const std::string& control) {
  return OnControl(form, control, ProgramWindows::Click);
}

std::string WindowsStage::DoubleClick(const std::string& form, const std::string& control) {
  return OnControl(form, control, ProgramWindows::DoubleClick);
}

std::string WindowsStage::Close(const std::string& form) {
  const HWND window = windows_.FindForm(form);
  if (window == nullptr || IsWindowVisible(window) == 0) return "form " + form + " is not shown";
  if (IsWindowEnabled(window) == 0) return "form " + form + " takes no input";
  PostMessageW(window, WM_CLOSE, 0, 0);
  return "";
}

std::string WindowsStage::Set(const std::string& form, const std::string& control,
                              const std::string& text) {
  return OnControl(form, control, [&](HWND box) { return ProgramWindows::Type(box, text); });
}

std::string WindowsStage::Check(const std::string& form, const std::string& control, bool checked) {
  return OnControl(form, control, [&](HWND box) { return ProgramWindows::Check(box, checked); });
}

std::string WindowsStage::Choose(const std::string& form, const std::string& control,
                                 const std::string& text) {
  return OnControl(form, control, [&](HWND list) { return windows_.Choose(list, text); });
}

std::string WindowsStage::Tick(const std::string& form, const std::string& tree,
                               const std::string& path, bool checked) {
  return OnControl(form, tree, [&](HWND found) { return windows_.ClickBox(found, path, checked); });
}

std::string WindowsStage::Select(const std::string& form, const std::string& tree,
                                 const std::string& path) {
  return OnControl(form, tree, [&](HWND found) { return windows_.ClickItem(found, path); });
}

void WindowsStage::ForeseeBox(ui::Answer answer, const std::string& text) {
  answers_.push_back({answer, OneLine(text)});
}
void WindowsStage::ForeseeFolder(const std::string& path) { folders_.push_back(path); }
void WindowsStage::ForeseeFile(const std::string& path) { file_paths_.push_back(path); }

void WindowsStage::When(const std::string& form, const std::string& control,
                        std::function<bool(const std::string& shown)> right,
                        std::function<void()> then) {
  watchers_.push_back({form, control, std::move(right), std::move(then)});
}

// --- The program's own doings
// ---------------------------------------------------------------------

std::string WindowsStage::Until(int milliseconds, const std::function<std::string()>& attempt) {
  const DWORD start = GetTickCount();
  while (true) {
    std::string problem = attempt();
    const bool over = GetTickCount() - start > static_cast<DWORD>(milliseconds);
    if (problem.empty() || over || manager().Failed()) return problem;
    Turn();
    Sleep(kPause);
  }
}

bool WindowsStage::Foreseen() const {
  return !answers_.empty() || !folders_.empty() || !file_paths_.empty() || !watchers_.empty();
}

std::string WindowsStage::Rest() {
  if (watching_) return "";
  const DWORD start = GetTickCount();
  int quiet_looks = 0;
  unsigned long long used = 0;
  while (!manager().Failed() && ProgramProcesses::Runs(program_)) {
    Turn();
    const unsigned long long used_now = ProgramProcesses::TimeUsed(windows_.process());
    const bool answered_box_is_up = answered_ != nullptr && IsWindow(answered_) != 0;
    const bool at_work =
        used_now != used || Foreseen() || answered_box_is_up || !windows_.Answers();
    quiet_looks = at_work ? 0 : quiet_looks + 1;
    used = used_now;
    if (quiet_looks >= kQuietLooks) return "";
    if (GetTickCount() - start > kLongPatience) break;
    if (watchers_.empty()) Sleep(kPause);
  }
  processes_.Look();
  if (manager().Failed() || !Foreseen()) return "";
  if (!answers_.empty()) return "this message box never came: " + answers_.front().text;
  return watchers_.empty() ? "a foreseen dialog never came"
                           : "the condition of a \"when\" never held";
}

void WindowsStage::Turn() {
  if (program_ == 0) return;
  if (++turns_ % 2 == 0) processes_.Look();
  RunWatchers();
  if (answered_ != nullptr && (IsWindow(answered_) == 0 || IsWindowVisible(answered_) == 0)) {
    answered_ = nullptr;
  }
  for (const HWND dialog : windows_.Dialogs()) {
    if (dialog != answered_ && !manager().Failed()) AnswerDialog(dialog);
  }
}

void WindowsStage::AnswerDialog(HWND dialog) {
  std::string problem;
  switch (KindOf(dialog)) {
    case DialogKind::kFolder:
      if (folders_.empty()) return manager().Fail("a folder dialog that nobody foresaw");
      problem = windows_.AnswerFolderDialog(dialog, folders_.front());
      if (problem.empty()) folders_.pop_front();
      break;
    case DialogKind::kFile:
      if (file_paths_.empty()) return manager().Fail("a file dialog that nobody foresaw");
      problem = ProgramWindows::AnswerFileDialog(dialog, file_paths_.front());
      if (problem.empty()) file_paths_.pop_front();
      break;
    case DialogKind::kMessageBox:
      return AnswerBox(dialog);
    case DialogKind::kOther:
      return;  // it is just being made
  }
  if (!problem.empty()) return manager().Fail(problem);
  answered_ = dialog;
}

void WindowsStage::AnswerBox(HWND box) {
  const std::string text = BoxText(box);
  BoxIsUp();
  if (answers_.empty() || answers_.front().text != text) {
    std::string sentence = "unexpected message box: " + text;
    if (!answers_.empty()) sentence += "\n  expected: " + answers_.front().text;
    return manager().Fail(sentence);
  }
  if (!PressButton(box, ButtonOf(answers_.front().button))) {
    return manager().Fail("a message box has no such button as its answer: " + text);
  }
  boxes_.push_back(text);
  answers_.pop_front();
  answered_ = box;
}

// The program is held while its labels are looked at, so that no text goes by unseen.
void WindowsStage::RunWatchers() {
  if (watchers_.empty() || watching_) return;
  const HANDLE thread = OpenThread(THREAD_SUSPEND_RESUME, FALSE, windows_.Thread());
  if (thread == nullptr) return;
  watching_ = true;
  const DWORD start = GetTickCount();
  while (!watchers_.empty() && GetTickCount() - start < kPause) {
    SuspendThread(thread);
    for (auto each = watchers_.begin(); each != watchers_.end();) {
      const HWND label = windows_.FindControl(each->form, each->control);
      if (label == nullptr || !each->right(ProgramWindows::KeptLine(label))) {
        ++each;
        continue;
      }
      const std::function<void()> then = std::move(each->then);
      each = watchers_.erase(each);
      then();
    }
    ResumeThread(thread);
    Sleep(1);
  }
  watching_ = false;
  CloseHandle(thread);
}

// --- What is seen
// ---------------------------------------------------------------------------------

std::string WindowsStage::Expect(const ScenarioAct& act, bool never,
                                 const std::function<std::string(const ScenarioAct& meant)>& look) {
  if (watching_) return look(act);
  return Until(kPatience, [&] { return AtSomeMoment(act, never, look); });
}

// This system's clock is not to be set. A moment of the scenario's clock that an expectation names
// therefore stands for each minute since the scenario set it: what is expected must be so for one
// of them, and what must not be, for none.
std::string WindowsStage::AtSomeMoment(
    const ScenarioAct& act, bool never,
    const std::function<std::string(const ScenarioAct& meant)>& look) {
  if (!scenario_clock_) return look(act);
  SYSTEMTIME now;
  GetLocalTime(&now);
  std::string problem;
  for (int minute = 0;; ++minute) {
    const SYSTEMTIME moment = Later(clock_set_, minute);
    ScenarioAct meant = act;
    meant.path = AtMoment(act.path, *scenario_clock_, moment);
    meant.text = AtMoment(act.text, *scenario_clock_, moment);
    problem = look(meant);
    if (problem.empty() != never || SameMinute(moment, now)) return problem;
  }
}

HWND WindowsStage::Find(const std::string& form, const std::string& control,
                        std::string* problem) const {
  const HWND window = windows_.FindControl(form, control);
  if (window == nullptr) *problem = "there is no " + form + "." + control;
  return window;
}

std::optional<ControlLook> WindowsStage::LookAt(const std::string& form, const std::string& control,
                                                std::string* problem) {
  const HWND window = Find(form, control, problem);
  if (window == nullptr) return std::nullopt;
  return ControlLook{IsWindowEnabled(window) != 0, IsWindowVisible(window) != 0,
                     ProgramWindows::IsBold(window)};
}

std::optional<std::string> WindowsStage::ShownLine(const std::string& form,
                                                   const std::string& control,
                                                   std::string* problem) {
  const HWND window = Find(form, control, problem);
  if (window == nullptr) return std::nullopt;
  return windows_.ShownLine(window);
}

std::optional<NodeLook> WindowsStage::LookAtNode(const std::string& form, const std::string& tree,
                                                 const std::string& path, std::string* problem) {
  const HWND window = Find(form, tree, problem);
  if (window == nullptr) return std::nullopt;
  const std::optional<TreeItem> item = windows_.FindItem(window, path);
  return NodeLook{item.has_value(), item && item->checked};
}

bool WindowsStage::FormShown(const std::string& form) {
  const HWND window = windows_.FindForm(form);
  return window != nullptr && IsWindowVisible(window) != 0;
}

std::vector<std::string> WindowsStage::Started() {
  processes_.Look();
  return processes_.Started();
}

bool WindowsStage::Ended() { return program_ != 0 && !ProgramProcesses::Runs(program_); }

std::optional<int> WindowsStage::Copies() { return processes_.Copies(); }

std::optional<bool> WindowsStage::InFront(const std::string& form) {
  const HWND window = windows_.FindForm(form);
  return window != nullptr && GetForegroundWindow() == window && IsIconic(window) == 0;
}

std::vector<std::string> WindowsStage::AwaitedBoxes() {
  std::vector<std::string> texts;
  for (const Answer& answer : answers_) texts.push_back(answer.text);
  return texts;
}

}  // namespace quorvale::driver
