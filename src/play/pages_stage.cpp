#include "play/pages_stage.h"

#include <utility>

#include "platform/file_toolkit.h"
#include "play/hands.h"
#include "play/scenario_machine.h"

namespace quorvale {
namespace {

constexpr char kNoProgram[] = "no program runs";
constexpr char kDiscFile[] = "file:disc.iso";

}  // namespace

PagesStage::PagesStage(std::string scratch_folder, std::unique_ptr<RunningMachine> computer)
    : scratch_folder_(std::move(scratch_folder)), computer_(std::move(computer)) {}

PagesStage::~PagesStage() = default;

void PagesStage::Enter(StageManager& manager) {
  Stage::Enter(manager);
  if (computer_) WireUi();
}

void PagesStage::WireUi() {
  ui::HeadlessUi& screen = computer_->ui();
  // While a window is up that must be closed first, the play goes on before it.
  screen.modal_handler = [this](ui::Form&) { return manager().PlayNext(); };
  screen.on_box = [this](const ui::MessageBoxRequest&) { BoxIsUp(); };
}

// --- The computer
// ---------------------------------------------------------------------------------

std::string PagesStage::NewMachine(const std::string& like, const std::string& user) {
  const std::string folder = scratch_folder_ + "/machine" + std::to_string(++machines_);
  std::string problem;
  std::unique_ptr<RunningMachine> computer =
      MakeScenarioMachine(folder, like, user, machines_, &problem);
  if (!computer) return problem;
  if (computer_) problem = computer_->EndProgram();
  former_ = std::move(computer_);
  computer_ = std::move(computer);
  ForgetBoxes();
  WireUi();
  return problem;
}

Platform* PagesStage::platform() { return computer_ ? &computer_->platform() : nullptr; }

std::optional<std::string> PagesStage::FormerFile(const std::string& path) {
  return FileToolkit(former_->platform().files, [] {}).ReadWhole(path);
}

std::string PagesStage::RunProcess(const std::string& image, std::uint32_t id) {
  computer_->RunProcess(image, id);
  return "";
}
std::string PagesStage::EndProcess(const std::string& image) {
  computer_->EndProcess(image);
  return "";
}
std::string PagesStage::RemoveDrive(const std::string& letter) {
  computer_->RemoveDrive(letter);
  return "";
}
std::string PagesStage::RefuseElevation(bool refuse) {
  computer_->RefuseElevation(refuse);
  return "";
}
std::string PagesStage::SetClock(const LocalTime& time) {
  computer_->SetClock(time);
  return "";
}
std::string PagesStage::SetEnvironment(const std::string& name, const std::string& value) {
  computer_->SetEnvironment(name, value);
  return "";
}
std::string PagesStage::SetDrive(const std::string& letter, DriveKind kind) {
  computer_->SetDrive(letter, kind, std::nullopt);
  return "";
}
std::string PagesStage::SetFreeSpace(const std::string& letter, std::uint64_t bytes) {
  computer_->SetFreeSpace(letter, bytes);
  return "";
}
std::string PagesStage::SetService(const std::string& name, bool running) {
  computer_->SetService(name, running);
  return "";
}
std::string PagesStage::SetShare(const std::string& share, bool answers) {
  computer_->SetShare(share, answers);
  return "";
}
std::string PagesStage::RemoveDiscWriter() {
  computer_->SetDiscMedia("", std::nullopt, std::nullopt);
  return "";
}
std::string PagesStage::EmptyDiscWriter() {
  computer_->SetDiscMedia(kDiscFile, std::nullopt, 0);
  return "";
}
std::string PagesStage::SetDiscWriter(std::uint64_t media_bytes) {
  computer_->SetDiscMedia(kDiscFile, media_bytes, std::nullopt);
  return "";
}

// --- The person
// -----------------------------------------------------------------------------------

Hands PagesStage::hands() { return Hands(*computer_->app(), computer_->ui()); }

std::string PagesStage::Start(const std::string& command_line) {
  computer_->Start(command_line);
  return "";
}

std::string PagesStage::StartBeside(const std::string&) {
  return "only real windows have a copy beside the program";
}

std::string PagesStage::Rest() {
  if (!ProgramRuns()) return kNoProgram;
  computer_->ui().RunUntilIdle();
  return "";
}

// The pages are at rest behind each act of the hands.
std::string PagesStage::ByHand(const std::function<std::string()>& attempt) {
  return ProgramRuns() ? attempt() : kNoProgram;
}

std::string PagesStage::Click(const std::string& form, const std::string& control) {
  return hands().Click(form, control);
}
std::string PagesStage::DoubleClick(const std::string& form, const std::string& control) {
  return hands().DoubleClick(form, control);
}
std::string PagesStage::Close(const std::string& form) { return hands().Close(form); }
std::string PagesStage::Set(const std::string& form, const std::string& control,
                            const std::string& text) {
  return hands().Set(form, control, text);
}
std::string PagesStage::Check(const std::string& form, const std::string& control, bool checked) {
  return hands().Check(form, control, checked);
}
std::string PagesStage::Choose(const std::string& form, const std::string& control,
                               const std::string& text) {
  return hands().Choose(form, control, text);
}
std::string PagesStage::Tick(const std::string& form, const std::string& tree,
                             const std::string& path, bool checked) {
  return hands().Tick(form, tree, path, checked);
}
std::string PagesStage::Select(const std::string& form, const std::string& tree,
                               const std::string& path) {
  return hands().Select(form, tree, path);
}

void PagesStage::ForeseeBox(ui::Answer answer, const std::string& text) {
  computer_->ui().ExpectBox(answer, text);
}
void PagesStage::ForeseeFolder(const std::string& path) { computer_->ui().ExpectFolder(path); }
void PagesStage::ForeseeFile(const std::string& path) { computer_->ui().ExpectFile(path); }

void PagesStage::When(const std::string& form, const std::string& control,
                      std::function<bool(const std::string& shown)> right,
                      std::function<void()> then) {
  const auto holds = [this, form, control, right = std::move(right)] {
    std::string problem;
    const std::optional<std::string> shown = ShownLine(form, control, &problem);
    return shown && right(*shown);
  };
  computer_->ui().When(holds, std::move(then));
}

// --- What is seen
// ---------------------------------------------------------------------------------

std::string PagesStage::Expect(const ScenarioAct& act, bool /*never*/,
                               const std::function<std::string(const ScenarioAct& meant)>& look) {
  return look(act);
}

const ui::Control* PagesStage::Find(const std::string& form, const std::string& control,
                                    std::string* problem) {
  if (ProgramRuns()) return hands().Find(form, control, problem);
  *problem = kNoProgram;
  return nullptr;
}

std::optional<ControlLook> PagesStage::LookAt(const std::string& form, const std::string& control,
                                              std::string* problem) {
  const ui::Control* found = Find(form, control, problem);
  if (found == nullptr) return std::nullopt;
  return ControlLook{found->enabled, IsOnScreen(found->form()) && found->IsShown(), found->bold};
}

std::optional<std::string> PagesStage::ShownLine(const std::string& form,
                                                 const std::string& control, std::string* problem) {
  const ui::Control* found = Find(form, control, problem);
  if (found == nullptr) return std::nullopt;
  return quorvale::ShownLine(*found);
}

std::optional<NodeLook> PagesStage::LookAtNode(const std::string& form, const std::string& tree,
                                               const std::string& path, std::string* problem) {
  if (Find(form, tree, problem) == nullptr) return std::nullopt;
  std::string no_node;
  const ui::TreeNode* node = hands().FindNode(form, tree, path, &no_node);
  return NodeLook{node != nullptr, node != nullptr && node->Checked()};
}

bool PagesStage::FormShown(const std::string& form) {
  const ui::Form* found = ProgramRuns() ? computer_->app()->FindLoaded(form) : nullptr;
  return found != nullptr && IsOnScreen(*found);
}

std::vector<std::string> PagesStage::Boxes() {
  std::vector<std::string> texts;
  for (const ui::HeadlessUi::ShownBox& box : computer_->ui().boxes) {
    texts.push_back(box.request.text);
  }
  return texts;
}

std::vector<std::string> PagesStage::Started() { return computer_->Started(); }
bool PagesStage::Ended() { return computer_->ProgramEnded(); }

// --- The play
// -------------------------------------------------------------------------------------

void PagesStage::TakeNotice() {
  if (!computer_) return;
  const std::vector<std::string> sentences = std::move(computer_->ui().failures);
  computer_->ui().failures.clear();
  for (const std::string& sentence : sentences) manager().Fail(sentence);
}

std::vector<std::string> PagesStage::AwaitedBoxes() {
  return computer_ ? computer_->ui().ExpectedBoxes() : std::vector<std::string>();
}

std::size_t PagesStage::AwaitedConditions() {
  return computer_ ? computer_->ui().WaitingActs() : 0;
}

void PagesStage::EndPlay() {
  const std::string problem = computer_ ? computer_->EndProgram() : "";
  if (!problem.empty()) manager().Fail(problem);
}

}  // namespace quorvale
