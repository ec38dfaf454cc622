#include "play/scenario_player.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "core/main/run_modes.h"
#include "platform/file_toolkit.h"
#include "platform/host/host_platform.h"
#include "platform/host/machine_folder.h"
#include "play/hands.h"
#include "play/scenario_files.h"
#include "play/scenario_machine.h"

namespace quorvale {
namespace {

std::optional<DriveKind> KindOf(const std::string& word) {
  if (word == "fixed") return DriveKind::kFixed;
  if (word == "removable") return DriveKind::kRemovable;
  if (word == "remote") return DriveKind::kRemote;
  if (word == "cdrom") return DriveKind::kCdRom;
  if (word == "ramdisk") return DriveKind::kRamDisk;
  return std::nullopt;
}

}  // namespace

ScenarioPlayer::ScenarioPlayer(std::string scratch_folder, std::unique_ptr<Computer> computer)
    : scratch_folder_(std::move(scratch_folder)), computer_(std::move(computer)) {
  if (computer_) WireUi();
}

ScenarioPlayer::~ScenarioPlayer() = default;

std::vector<ScenarioError> ScenarioPlayer::Play(const Scenario& scenario) {
  failures_ = scenario.errors;
  acts_ = scenario.acts;
  next_ = 0;
  while (failures_.empty() && next_ < acts_.size()) PlayNext();
  if (!failures_.empty() || !computer_) return failures_;
  for (const std::string& text : computer_->ui().ExpectedBoxes()) {
    failures_.push_back({line_, "this message box never came: " + text});
  }
  if (computer_->ui().WaitingActs() != 0) {
    failures_.push_back({line_, "the condition of a \"when\" never held"});
  }
  computer_->EndProgram();
  return failures_;
}

// Plays one act. False if there is none, or the play is over.
bool ScenarioPlayer::PlayNext() {
  if (!failures_.empty() || next_ >= acts_.size()) return false;
  const ScenarioAct act = acts_[next_++];
  line_ = act.line;
  const std::string problem = Do(act);
  if (!problem.empty()) failures_.push_back({act.line, problem});
  TakeUiFailures(line_);
  return true;
}

void ScenarioPlayer::TakeUiFailures(int line) {
  if (!computer_) return;
  for (const std::string& sentence : computer_->ui().failures) {
    failures_.push_back({line, sentence});
  }
  computer_->ui().failures.clear();
}

void ScenarioPlayer::WireUi() {
  ui::HeadlessUi& screen = computer_->ui();
  // While a window is up that must be closed first, the play goes on before it.
  screen.modal_handler = [this](ui::Form&) { return PlayNext(); };
  screen.on_box = [this](const ui::MessageBoxRequest&) {
    for (const BoxCheck& check : box_checks_) {
      if (check.box != computer_->ui().boxes.size()) continue;
      const std::string problem = ExpectControl(check.act);
      if (!problem.empty()) failures_.push_back({check.act.line, problem});
    }
  };
}

std::string ScenarioPlayer::Do(const ScenarioAct& act) {
  if (act.verb == "machine") return NewComputer(act.word, act.text.empty() ? "Anna" : act.text);
  if (!computer_) return "there is no machine yet";
  static const std::vector<std::string> computer_acts = {
      "process", "service", "free", "drive", "share", "elevation", "clock", "environment", "disc"};
  const auto is_one_of = [&act](const std::vector<std::string>& verbs) {
    return std::find(verbs.begin(), verbs.end(), act.verb) != verbs.end();
  };
  if (is_one_of(computer_acts)) return DoComputerAct(act);
  if (ScenarioFiles::IsAct(act.verb)) return Files().Do(act);
  if (act.verb.starts_with("expect")) return DoExpectation(act);
  return DoPersonAct(act);
}

std::string ScenarioPlayer::NewComputer(const std::string& like, const std::string& user) {
  const std::string folder = scratch_folder_ + "/machine" + std::to_string(++machines_);
  std::string problem;
  std::unique_ptr<Computer> computer = MakeScenarioMachine(folder, like, user, machines_, &problem);
  if (!computer) return problem;
  if (computer_) computer_->EndProgram();
  former_ = std::move(computer_);
  computer_ = std::move(computer);
  box_checks_.clear();
  WireUi();
  return "";
}

std::string ScenarioPlayer::DoComputerAct(const ScenarioAct& act) {
  Computer& computer = *computer_;
  if (act.verb == "process") {
    if (act.text == "gone") {
      computer.EndProcess(act.word);
      return "";
    }
    std::uint32_t id = 0;
    if (!ReadNumber(act.text, &id)) return NotANumber(act.text);
    computer.RunProcess(act.word, id);
  } else if (act.verb == "service") {
    if (act.text != "running" && act.text != "stopped") return "a service is running or stopped";
    computer.SetService(act.path, act.text == "running");
  } else if (act.verb == "share") {
    if (act.text != "answers" && act.text != "silent") return "a share answers or is silent";
    computer.SetShare(act.path, act.text == "answers");
  } else if (act.verb == "free") {
    std::uint64_t bytes = 0;
    if (!ReadNumber(act.text, &bytes)) return NotANumber(act.text);
    computer.SetFreeSpace(act.word, bytes);
  } else if (act.verb == "drive") {
    const std::optional<DriveKind> kind = KindOf(act.text);
    if (act.text == "gone") {
      computer.RemoveDrive(act.word);
    } else if (kind) {
      computer.SetDrive(act.word, *kind, std::nullopt);
    } else {
      return "\"" + act.text + "\" is no kind of drive";
    }
  } else if (act.verb == "elevation") {
    if (act.text != "accepted" && act.text != "refused") return "elevation is accepted or refused";
    computer.RefuseElevation(act.text == "refused");
  } else if (act.verb == "disc") {
    return SetDisc(act);
  } else if (act.verb == "environment") {
    computer.SetEnvironment(act.path, act.text);
  } else {
    const std::optional<LocalTime> time = host::ParseLocalTime(act.text);
    if (!time) return "\"" + act.text + "\" is no moment like 2026-11-14 22:05:09";
    computer.SetClock(*time);
  }
  return "";
}

std::string ScenarioPlayer::SetDisc(const ScenarioAct& act) {
  std::uint64_t bytes = 0;
  if (act.word == "gone") {
    computer_->SetDiscMedia("", std::nullopt, std::nullopt);
  } else if (act.word == "empty") {
    computer_->SetDiscMedia("file:disc.iso", std::nullopt, 0);
  } else if (act.word == "writer" && ReadNumber(act.text, &bytes)) {
    computer_->SetDiscMedia("file:disc.iso", bytes, std::nullopt);
  } else {
    return "a disc is \"gone\", \"empty\", or \"writer\" and the bytes of its media";
  }
  return "";
}

ScenarioFiles ScenarioPlayer::Files() {
  ScenarioFiles files(computer_->platform());
  if (former_) {
    files.former = [this](const std::string& path) {
      return FileToolkit(former_->platform().files, [] {}).ReadWhole(path);
    };
  }
  return files;
}

std::string ScenarioPlayer::Answer(const ScenarioAct& act) {
  if (act.word == "OK") {
    computer_->ui().ExpectBox(ui::Answer::kOk, act.text);
  } else if (act.word == "Yes") {
    computer_->ui().ExpectBox(ui::Answer::kYes, act.text);
  } else if (act.word == "No") {
    computer_->ui().ExpectBox(ui::Answer::kNo, act.text);
  } else {
    return "an answer is OK, Yes or No";
  }
  return act.text.empty() ? "the text of the message box is missing" : "";
}

// The box that is meant is the first one behind those that are already foreseen.
std::string ScenarioPlayer::AtBox(const ScenarioAct& act) {
  const ui::HeadlessUi& screen = computer_->ui();
  box_checks_.push_back({screen.boxes.size() + screen.ExpectedBoxes().size(), act});
  return "";
}

std::string ScenarioPlayer::Watch(const ScenarioAct& act) {
  const auto condition = [this, act] {
    if (computer_->app() == nullptr) return false;
    Hands hands(*computer_->app(), computer_->ui());
    std::string problem;
    const ui::Control* control = hands.Find(act.form, act.control, &problem);
    if (control == nullptr) return false;
    const std::string shown = ShownLine(*control);
    return act.word == "equals" ? shown == act.text : Contains(shown, act.text);
  };
  const auto then = [this, act] {
    const std::string problem = Do(act.then.front());
    if (!problem.empty()) failures_.push_back({act.line, problem});
  };
  computer_->ui().When(condition, then);
  return "";
}

std::string ScenarioPlayer::DoPersonAct(const ScenarioAct& act) {
  if (act.verb == "start") {
    computer_->Start(act.text);
    computer_->ui().RunUntilIdle();
    return "";
  }
  if (act.verb == "answer") return Answer(act);
  if (act.verb == "at-box") return AtBox(act);
  if (act.verb == "when") return Watch(act);
  if (act.verb == "folder" || act.verb == "file" || act.verb == "cancel-dialog") {
    const bool folder = act.verb == "folder" || act.text == "folder";
    const std::string path = act.verb == "cancel-dialog" ? "" : act.text;
    if (folder) {
      computer_->ui().ExpectFolder(path);
    } else {
      computer_->ui().ExpectFile(path);
    }
    return "";
  }
  if (computer_->app() == nullptr) return "no program runs";
  Hands hands(*computer_->app(), computer_->ui());
  if (act.verb == "click") return hands.Click(act.form, act.control);
  if (act.verb == "close") return hands.Close(act.form);
  if (act.verb == "double-click") return hands.DoubleClick(act.form, act.control);
  if (act.verb == "set") return hands.Set(act.form, act.control, act.text);
  if (act.verb == "check") return hands.Check(act.form, act.control, true);
  if (act.verb == "uncheck") return hands.Check(act.form, act.control, false);
  if (act.verb == "choose") return hands.Choose(act.form, act.control, act.text);
  if (act.verb == "tick") return hands.Tick(act.form, act.control, act.text, true);
  if (act.verb == "untick") return hands.Tick(act.form, act.control, act.text, false);
  if (act.verb == "select") return hands.Select(act.form, act.control, act.text);
  if (act.verb == "wait") {
    computer_->ui().RunUntilIdle();
    return "";
  }
  return "nobody knows how to play \"" + act.verb + "\"";
}

std::string ScenarioPlayer::DoExpectation(const ScenarioAct& act) {
  switch (act.shape) {
    case ActShape::kControl:
      return ExpectControl(act);
    case ActShape::kControlText:
      return IsTextExpectation(act.verb) ? ExpectControl(act) : ExpectNode(act);
    default:
      break;
  }
  if (ScenarioFiles::IsExpectation(act.verb)) return Files().Expect(act);
  return ExpectProgram(act);
}

std::string ScenarioPlayer::ExpectControl(const ScenarioAct& act) {
  if (computer_->app() == nullptr) return "no program runs";
  Hands hands(*computer_->app(), computer_->ui());
  std::string problem;
  const ui::Control* control = hands.Find(act.form, act.control, &problem);
  if (control == nullptr) return problem;
  const std::string name = act.form + "." + act.control;
  const bool shown = IsOnScreen(control->form()) && control->IsShown();
  if (act.verb == "expect-enabled") return control->enabled ? "" : name + " is disabled";
  if (act.verb == "expect-disabled") return control->enabled ? name + " is enabled" : "";
  if (act.verb == "expect-visible") return shown ? "" : name + " is not shown";
  if (act.verb == "expect-hidden") return shown ? name + " is shown" : "";
  if (act.verb == "expect-bold") return control->bold ? "" : name + " is not bold";
  const std::string text = ShownLine(*control);
  return CompareText(act, name, text);
}

std::string ScenarioPlayer::ExpectNode(const ScenarioAct& act) {
  if (computer_->app() == nullptr) return "no program runs";
  Hands hands(*computer_->app(), computer_->ui());
  std::string problem;
  const ui::TreeNode* node = hands.FindNode(act.form, act.control, act.text, &problem);
  if (act.verb == "expect-no-node") {
    if (node == nullptr && computer_->app()->FindLoaded(act.form) == nullptr) return problem;
    return node == nullptr ? "" : "there is a node \"" + act.text + "\"";
  }
  if (node == nullptr) return problem;
  if (act.verb == "expect-tick") return node->Checked() ? "" : act.text + " is not ticked";
  if (act.verb == "expect-no-tick") return node->Checked() ? act.text + " is ticked" : "";
  return "";
}

std::string ScenarioPlayer::ExpectProgram(const ScenarioAct& act) {
  if (act.verb == "expect-form" || act.verb == "expect-no-form") {
    const ui::Form* form =
        computer_->app() == nullptr ? nullptr : computer_->app()->FindLoaded(act.form);
    const bool shown = form != nullptr && IsOnScreen(*form);
    if (act.verb == "expect-form") return shown ? "" : "form " + act.form + " is not shown";
    return shown ? "form " + act.form + " is shown" : "";
  }
  if (act.verb == "expect-box") {
    for (const ui::HeadlessUi::ShownBox& box : computer_->ui().boxes) {
      if (Contains(box.request.text, act.text)) return "";
    }
    return "no message box said: " + act.text;
  }
  if (act.verb == "expect-started" || act.verb == "expect-not-started") {
    const std::vector<std::string> started = computer_->Started();
    const bool found = std::any_of(started.begin(), started.end(), [&act](const std::string& line) {
      return Contains(line, act.text);
    });
    if (found == (act.verb == "expect-started")) return "";
    return found ? "there was a start of " + act.text : "there was no start of " + act.text;
  }
  const bool ended = computer_->ProgramEnded();
  if (act.verb != "expect-ended" && act.verb != "expect-running") {
    return "only real windows tell about \"" + act.verb + "\"";
  }
  if (act.verb == "expect-ended") return ended ? "" : "the program still runs";
  return ended ? "the program has ended" : "";
}

}  // namespace quorvale
