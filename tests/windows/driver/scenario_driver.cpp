#include "scenario_driver.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "platform/file_toolkit.h"
#include "platform/windows/text_calls.h"

namespace quorvale::driver {
namespace {

// Milliseconds.
constexpr int kPatience = 15000;       // until an expectation holds
constexpr int kLongPatience = 120000;  // until foreseen boxes have come
constexpr int kRest = 120;             // without work, and the program counts as at rest
constexpr int kPause = 10;             // between two looks

int ButtonOf(const std::string& answer) {
  if (answer == "OK") return IDOK;
  if (answer == "Yes") return IDYES;
  return answer == "No" ? IDNO : 0;
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

// "2007-03-05 09:07:00"
std::optional<SYSTEMTIME> ReadMoment(const std::string& text) {
  int year, month, day, hour, minute;
  if (std::sscanf(text.c_str(), "%d-%d-%d %d:%d", &year, &month, &day, &hour, &minute) != 5) {
    return std::nullopt;
  }
  SYSTEMTIME moment = {};
  moment.wYear = static_cast<WORD>(year);
  moment.wMonth = static_cast<WORD>(month);
  moment.wDay = static_cast<WORD>(day);
  moment.wHour = static_cast<WORD>(hour);
  moment.wMinute = static_cast<WORD>(minute);
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

std::string CannotBe(const std::string& what) {
  return what + " cannot be arranged on a real system";
}

}  // namespace

ScenarioDriver::ScenarioDriver(DriverOptions options)
    : options_(std::move(options)),
      computer_("scenario driver"),
      files_(computer_.platform()),
      processes_(options_.program) {
  if (options_.former.empty()) return;
  files_.former = [this](const std::string& path) {
    const std::string place =
        options_.former + "\\drive_" + FoldCase(path.substr(0, 1)) + path.substr(2);
    return FileToolkit(computer_.platform().files, [] {}).ReadWhole(place);
  };
}

std::vector<ScenarioError> ScenarioDriver::Play(const Scenario& scenario) {
  failures_ = scenario.errors;
  bool begun = false;
  for (const ScenarioAct& act : scenario.acts) {
    if (!failures_.empty()) break;
    if (act.line < options_.first_line) continue;
    if (act.verb == "machine" && begun) {
      next_machine_line_ = act.line;
      break;
    }
    begun = true;
    line_ = act.line;
    const std::string problem = Do(act);
    if (!problem.empty()) Fail(problem);
    Turn();
  }
  for (const Answer& answer : answers_) Fail("this message box never came: " + answer.text);
  if (!watchers_.empty()) Fail("the condition of a \"when\" never held");
  return failures_;
}

std::string ScenarioDriver::Do(const ScenarioAct& act) {
  if (act.verb == "machine") return TakeFactsOf(options_.machine);
  if (ScenarioFiles::IsAct(act.verb)) return files_.Do(act);
  if (act.verb.starts_with("expect")) {
    return Until(kPatience, [&] { return ExpectAtSomeMoment(act); });
  }
  const bool computer_act = act.verb == "process" || act.verb == "service" || act.verb == "free" ||
                            act.verb == "drive" || act.verb == "share" || act.verb == "elevation" ||
                            act.verb == "clock" || act.verb == "environment" ||
                            act.verb == "screen";
  return computer_act ? DoComputerAct(act) : DoPersonAct(act);
}

// A drive is a link that Wine keeps under a name which no Windows call can remove.
std::string ScenarioDriver::TakeDriveAway(const std::string& letter) {
  const std::string link = computer_.platform().system.Environment("WINEPREFIX") + "/dosdevices/" +
                           FoldCase(letter) + ":";
  ProgramProcesses::RunOnHost("/bin/rm", "-f " + link);
  DefineDosDeviceW(DDD_REMOVE_DEFINITION, windows::Wide(letter + ":").c_str(), nullptr);
  const DWORD bit = DWORD{1} << (FoldCase(letter)[0] - 'a');
  return Until(kPatience, [bit] {
    return (GetLogicalDrives() & bit) == 0 ? "" : "the drive does not go away";
  });
}

std::string ScenarioDriver::DoComputerAct(const ScenarioAct& act) {
  if (act.verb == "process") {
    if (act.text == "gone") {
      processes_.EndStandIns(act.word);
      return "";
    }
    return processes_.RunStandIn(act.word) ? "" : act.word + " cannot be started";
  }
  if (act.verb == "drive" && act.text == "gone") {
    return TakeDriveAway(act.word);
  }
  if (act.verb == "clock") {
    scenario_clock_ = ReadMoment(act.text);
    GetLocalTime(&clock_set_);
    return scenario_clock_ ? "" : "\"" + act.text + "\" is no moment";
  }
  // A refusal and a program that is not to be had look the same to the one that asks.
  if (act.verb == "elevation" && (act.text == "accepted" || act.text == "refused")) {
    processes_.RefuseRestarts(act.text == "refused");
    return "";
  }
  if (act.verb == "environment") {
    const std::wstring value = windows::Wide(act.text);
    SetEnvironmentVariableW(windows::Wide(act.path).c_str(),
                            value.empty() ? nullptr : value.c_str());
    return "";
  }
  if (act.verb == "screen") {
    const std::string size = std::to_string(GetSystemMetrics(SM_CXSCREEN)) + "x" +
                             std::to_string(GetSystemMetrics(SM_CYSCREEN));
    return size == act.text ? "" : Different("the screen", size, act.text);
  }
  return CannotBe(act.source);
}

std::string ScenarioDriver::DoPersonAct(const ScenarioAct& act) {
  if (act.verb == "answer") {
    if (ButtonOf(act.word) == 0) return "an answer is OK, Yes or No";
    if (act.text.empty()) return "the text of the message box is missing";
    answers_.push_back({act.word, OneLine(act.text)});
    return "";
  }
  if (act.verb == "at-box") {
    box_checks_.push_back({boxes_.size() + answers_.size(), act});
    return "";
  }
  if (act.verb == "when") {
    watchers_.push_back(act);
    return "";
  }
  if (act.verb == "folder" || act.verb == "file" || act.verb == "cancel-dialog") {
    const bool folder = act.verb == "folder" || act.text == "folder";
    (folder ? folders_ : file_paths_).push_back(act.verb == "cancel-dialog" ? "" : act.text);
    return "";
  }
  if (act.verb == "start") {
    const std::string problem = Start(act.text);
    if (!problem.empty()) return problem;
  } else if (act.verb == "start-beside") {
    const std::string problem = StartBeside(act.text);
    if (!problem.empty()) return problem;
  } else if (act.verb != "wait") {
    const std::string problem = Until(kPatience, [&] { return ActOn(act); });
    if (!problem.empty()) return problem;
  }
  return Settle();
}

// The program may have started itself again meanwhile: then that copy is the one.
std::string ScenarioDriver::Start(const std::string& command_line) {
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
std::string ScenarioDriver::StartBeside(const std::string& command_line) {
  const DWORD copy = processes_.StartBeside(command_line);
  if (copy == 0) return options_.program + " cannot be started";
  const std::string problem = Until(kPatience, [&] { return EndedOrShown(copy); });
  if (!problem.empty() || !ProgramProcesses::Runs(copy)) return problem;
  program_ = copy;
  windows_.Watch(copy);
  return "";
}

std::string ScenarioDriver::EndedOrShown(DWORD copy) {
  if (!ProgramProcesses::Runs(copy)) return "";
  ProgramWindows windows;
  windows.Watch(copy);
  const HWND main = windows.FindForm("FrmWelcome");
  const bool shown = main != nullptr && IsWindowVisible(main) != 0;
  return shown || !windows.Dialogs().empty() ? "" : "the program shows no window";
}

std::string ScenarioDriver::ActOn(const ScenarioAct& act) {
  std::string problem;
  if (act.verb == "close") {
    const HWND form = windows_.FindForm(act.form);
    if (form == nullptr || IsWindowVisible(form) == 0) return "form " + act.form + " is not shown";
    if (IsWindowEnabled(form) == 0) return "form " + act.form + " takes no input";
    PostMessageW(form, WM_CLOSE, 0, 0);
    return "";
  }
  const HWND control = windows_.Reach(act.form, act.control, &problem);
  if (control == nullptr) return problem;
  if (act.verb == "click") return ProgramWindows::Click(control);
  if (act.verb == "double-click") return ProgramWindows::DoubleClick(control);
  if (act.verb == "set") return ProgramWindows::Type(control, act.text);
  if (act.verb == "check") return ProgramWindows::Check(control, true);
  if (act.verb == "uncheck") return ProgramWindows::Check(control, false);
  if (act.verb == "choose") return windows_.Choose(control, act.text);
  if (act.verb == "tick") return windows_.ClickBox(control, act.text, true);
  if (act.verb == "untick") return windows_.ClickBox(control, act.text, false);
  if (act.verb == "select") return windows_.ClickItem(control, act.text);
  return "nobody knows how to play \"" + act.verb + "\"";
}

std::string ScenarioDriver::Until(int milliseconds, const std::function<std::string()>& attempt) {
  const DWORD start = GetTickCount();
  while (true) {
    std::string problem = attempt();
    const bool over = GetTickCount() - start > static_cast<DWORD>(milliseconds);
    if (problem.empty() || over || !failures_.empty()) return problem;
    Turn();
    Sleep(kPause);
  }
}

bool ScenarioDriver::Foreseen() const {
  return !answers_.empty() || !folders_.empty() || !file_paths_.empty() || !watchers_.empty();
}

std::string ScenarioDriver::Settle() {
  const DWORD start = GetTickCount();
  DWORD quiet_since = start;
  unsigned long long used = 0;
  while (failures_.empty() && ProgramProcesses::Runs(program_)) {
    Turn();
    const DWORD now = GetTickCount();
    const unsigned long long used_now = ProgramProcesses::TimeUsed(windows_.process());
    const bool answered_box_is_up = answered_ != nullptr && IsWindow(answered_) != 0;
    if (used_now != used || Foreseen() || answered_box_is_up) quiet_since = now;
    used = used_now;
    if (now - quiet_since > kRest && windows_.Answers() &&
        ProgramProcesses::TimeUsed(windows_.process()) == used) {
      return "";
    }
    if (now - start > kLongPatience) break;
    if (watchers_.empty()) Sleep(kPause);
  }
  processes_.Look();
  if (!failures_.empty() || !Foreseen()) return "";
  if (!answers_.empty()) return "this message box never came: " + answers_.front().text;
  return watchers_.empty() ? "a foreseen dialog never came"
                           : "the condition of a \"when\" never held";
}

void ScenarioDriver::Turn() {
  if (program_ == 0) return;
  if (++turns_ % 2 == 0) processes_.Look();
  RunWatchers();
  if (answered_ != nullptr && (IsWindow(answered_) == 0 || IsWindowVisible(answered_) == 0)) {
    answered_ = nullptr;
  }
  for (const HWND dialog : windows_.Dialogs()) {
    if (dialog != answered_ && failures_.empty()) AnswerDialog(dialog);
  }
}

void ScenarioDriver::AnswerDialog(HWND dialog) {
  std::string problem;
  switch (KindOf(dialog)) {
    case DialogKind::kFolder:
      if (folders_.empty()) return Fail("a folder dialog that nobody foresaw");
      problem = windows_.AnswerFolderDialog(dialog, folders_.front());
      if (problem.empty()) folders_.pop_front();
      break;
    case DialogKind::kFile:
      if (file_paths_.empty()) return Fail("a file dialog that nobody foresaw");
      problem = ProgramWindows::AnswerFileDialog(dialog, file_paths_.front());
      if (problem.empty()) file_paths_.pop_front();
      break;
    case DialogKind::kMessageBox:
      return AnswerBox(dialog);
    case DialogKind::kOther:
      return;  // it is just being made
  }
  if (!problem.empty()) return Fail(problem);
  answered_ = dialog;
}

void ScenarioDriver::AnswerBox(HWND box) {
  const std::string text = BoxText(box);
  for (const BoxCheck& check : box_checks_) {
    if (check.box != boxes_.size()) continue;
    const std::string problem = ExpectControl(check.act);
    if (!problem.empty()) failures_.push_back({check.act.line, problem});
  }
  if (answers_.empty() || answers_.front().text != text) {
    std::string sentence = "unexpected message box: " + text;
    if (!answers_.empty()) sentence += "\n  expected: " + answers_.front().text;
    return Fail(sentence);
  }
  if (!PressButton(box, ButtonOf(answers_.front().button))) {
    return Fail("a message box has no such button as its answer: " + text);
  }
  boxes_.push_back(text);
  answers_.pop_front();
  answered_ = box;
}

// The program is held while its labels are looked at, so that no text goes by unseen.
void ScenarioDriver::RunWatchers() {
  if (watchers_.empty()) return;
  const HANDLE thread = OpenThread(THREAD_SUSPEND_RESUME, FALSE, windows_.Thread());
  if (thread == nullptr) return;
  const DWORD start = GetTickCount();
  while (!watchers_.empty() && GetTickCount() - start < kPause) {
    SuspendThread(thread);
    for (auto each = watchers_.begin(); each != watchers_.end();) {
      const HWND label = windows_.FindControl(each->form, each->control);
      const std::string shown = label == nullptr ? "" : ProgramWindows::KeptLine(label);
      const bool holds = each->word == "equals" ? shown == each->text
                                                : label != nullptr && Contains(shown, each->text);
      if (!holds) {
        ++each;
        continue;
      }
      const std::string problem = ActOn(each->then.front());
      if (!problem.empty()) failures_.push_back({each->line, problem});
      each = watchers_.erase(each);
    }
    ResumeThread(thread);
    Sleep(1);
  }
  CloseHandle(thread);
}

// This system's clock is not to be set. A moment of the scenario's clock that an expectation names
// therefore stands for each minute since the scenario set it: what is expected must be so for one
// of them, and what must not be, for none.
std::string ScenarioDriver::ExpectAtSomeMoment(const ScenarioAct& act) {
  if (!scenario_clock_) return Expect(act);
  const bool none = act.verb.starts_with("expect-no");
  SYSTEMTIME now;
  GetLocalTime(&now);
  std::string problem;
  for (int minute = 0;; ++minute) {
    const SYSTEMTIME moment = Later(clock_set_, minute);
    ScenarioAct meant = act;
    meant.path = AtMoment(act.path, *scenario_clock_, moment);
    meant.text = AtMoment(act.text, *scenario_clock_, moment);
    problem = Expect(meant);
    if (problem.empty() != none || SameMinute(moment, now)) return problem;
  }
}

std::string ScenarioDriver::Expect(const ScenarioAct& act) {
  if (ScenarioFiles::IsExpectation(act.verb)) return files_.Expect(act);
  if (act.shape == ActShape::kControl || IsTextExpectation(act.verb)) return ExpectControl(act);
  return act.shape == ActShape::kControlText ? ExpectNode(act) : ExpectProgram(act);
}

std::string ScenarioDriver::ExpectControl(const ScenarioAct& act) {
  const std::string name = act.form + "." + act.control;
  const HWND control = windows_.FindControl(act.form, act.control);
  if (control == nullptr) return "there is no " + name;
  const bool enabled = IsWindowEnabled(control) != 0;
  const bool shown = IsWindowVisible(control) != 0;
  if (act.verb == "expect-enabled") return enabled ? "" : name + " is disabled";
  if (act.verb == "expect-disabled") return enabled ? name + " is enabled" : "";
  if (act.verb == "expect-visible") return shown ? "" : name + " is not shown";
  if (act.verb == "expect-hidden") return shown ? name + " is shown" : "";
  if (act.verb == "expect-bold") {
    return ProgramWindows::IsBold(control) ? "" : name + " is not bold";
  }
  const std::string text = windows_.ShownLine(control);
  return CompareText(act, name, text);
}

std::string ScenarioDriver::ExpectNode(const ScenarioAct& act) {
  const std::string name = act.form + "." + act.control;
  const HWND tree = windows_.FindControl(act.form, act.control);
  if (tree == nullptr) return "there is no " + name;
  const std::optional<TreeItem> item = windows_.FindItem(tree, act.text);
  if (act.verb == "expect-no-node") {
    return item ? "there is a node \"" + act.text + "\"" : "";
  }
  if (!item) return name + " has no node \"" + act.text + "\"";
  if (act.verb == "expect-tick") return item->checked ? "" : act.text + " is not ticked";
  if (act.verb == "expect-no-tick") return item->checked ? act.text + " is ticked" : "";
  return "";
}

std::string ScenarioDriver::ExpectProgram(const ScenarioAct& act) {
  if (act.verb == "expect-form" || act.verb == "expect-no-form") {
    const HWND form = windows_.FindForm(act.form);
    const bool shown = form != nullptr && IsWindowVisible(form) != 0;
    if (act.verb == "expect-form") return shown ? "" : "form " + act.form + " is not shown";
    return shown ? "form " + act.form + " is shown" : "";
  }
  if (act.verb == "expect-box") {
    const bool found = std::any_of(boxes_.begin(), boxes_.end(), [&act](const std::string& text) {
      return Contains(text, act.text);
    });
    return found ? "" : "no message box said: " + act.text;
  }
  if (act.verb == "expect-started" || act.verb == "expect-not-started") {
    processes_.Look();
    const std::vector<std::string>& started = processes_.Started();
    const bool found = std::any_of(started.begin(), started.end(), [&act](const std::string& line) {
      return Contains(line, act.text);
    });
    if (found == (act.verb == "expect-started")) return "";
    std::string all;
    for (const std::string& line : started) all += "\n  " + line;
    return (found ? "there was a start of " : "there was no start of ") + act.text +
           "\n  started:" + all;
  }
  if (act.verb == "expect-copies") {
    const std::string copies = std::to_string(processes_.Copies());
    return copies == act.text ? "" : Different("the number of copies", copies, act.text);
  }
  if (act.verb == "expect-front" || act.verb == "expect-not-front") {
    const HWND form = windows_.FindForm(act.form);
    const bool front = form != nullptr && GetForegroundWindow() == form && IsIconic(form) == 0;
    if (front == (act.verb == "expect-front")) return "";
    return act.form + (front ? " is in front" : " is not in front");
  }
  const bool ended = program_ != 0 && !ProgramProcesses::Runs(program_);
  if (act.verb == "expect-ended") return ended ? "" : "the program still runs";
  return ended ? "the program has ended" : "";
}

}  // namespace quorvale::driver
