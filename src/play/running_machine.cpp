#include "play/running_machine.h"

#include <sys/stat.h>

#include <cctype>
#include <filesystem>

#include "base/text.h"
#include "core/main/page_sets.h"
#include "core/main/run_modes.h"
#include "platform/host/host_platform.h"

namespace quorvale {
namespace {

constexpr char kNotWritten[] = "The registry could not be written: ";

char Letter(const std::string& letter) {
  return letter.empty() ? 'C'
                        : static_cast<char>(std::toupper(static_cast<unsigned char>(letter[0])));
}

}  // namespace

struct RunningMachine::Parts {
  std::string folder;
  ui::HeadlessUi ui;
  std::unique_ptr<host::HostPlatform> host;
  std::unique_ptr<Platform> platform;
  Platform* shown = nullptr;  // what programs see
  std::unique_ptr<Application> app;
  size_t starts_seen = 0;  // of the shell's record, when the program at work was made
};

std::unique_ptr<RunningMachine> RunningMachine::Open(const std::string& host_folder,
                                                     std::string* problem) {
  host::MachineError error;
  auto parts = std::make_unique<Parts>();
  parts->folder = host_folder;
  parts->host = host::HostPlatform::Open(host_folder, &error);
  if (!parts->host) {
    *problem = error.Text();
    return nullptr;
  }
  parts->platform = std::make_unique<Platform>(parts->host->Bundle(parts->ui));
  parts->shown = parts->platform.get();
  // Nobody watches: the pauses that let a person read are not waited for.
  parts->host->system().SetSleepless(true);
  Parts* raw = parts.get();
  parts->ui.ticks = [raw] { return raw->host->system().Ticks(); };
  parts->ui.loaded_forms = [raw] {
    return raw->app ? raw->app->LoadedForms() : std::vector<ui::Form*>();
  };
  parts->ui.after_step = [raw] {
    if (raw->app) raw->app->CollectUnloaded();
  };
  return std::unique_ptr<RunningMachine>(new RunningMachine(std::move(parts)));
}

RunningMachine::RunningMachine(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}

RunningMachine::~RunningMachine() { parts_->app.reset(); }

const std::string& RunningMachine::folder() const { return parts_->folder; }
Platform& RunningMachine::platform() { return *parts_->shown; }
void RunningMachine::ShowThrough(Platform& platform) { parts_->shown = &platform; }
ui::HeadlessUi& RunningMachine::ui() { return parts_->ui; }
Application* RunningMachine::app() { return parts_->app.get(); }

Application& RunningMachine::MakeProgram(const std::string& command_line) {
  EndProgram();
  parts_->host->system().SetCommandLine(command_line);
  parts_->starts_seen = parts_->host->shell().started().size();
  parts_->app = std::make_unique<Application>(platform(), ProgramPages());
  return *parts_->app;
}

Application& RunningMachine::Start(const std::string& command_line) {
  Application& program = MakeProgram(command_line);
  parts_->ui.Step([&program] { SubMain(program); });
  return program;
}

bool RunningMachine::ProgramEnded() { return parts_->app && parts_->app->Ended(); }

bool RunningMachine::FollowRestart() {
  const std::vector<host::StartedProgram> started = parts_->host->shell().started();
  for (size_t i = parts_->starts_seen; i < started.size(); ++i) {
    if (!EqualsNoCase(started[i].verb, "runas")) continue;
    if (!EndsWithNoCase(started[i].file, "\\Quorvale.exe")) continue;
    Start(started[i].parameters);
    return true;
  }
  return false;
}

std::string RunningMachine::EndProgram() {
  if (!parts_->app) return "";
  parts_->app.reset();
  parts_->ui.NewRun();
  return SaveRegistry();
}

std::string RunningMachine::SaveRegistry() {
  std::string reason;
  return parts_->host->Flush(&reason) ? "" : kNotWritten + reason;
}

std::vector<std::string> RunningMachine::Started() {
  std::vector<std::string> lines;
  for (const host::StartedProgram& program : parts_->host->shell().started()) {
    lines.push_back(program.command_line.empty()
                        ? program.verb + "|" + program.file + "|" + program.parameters
                        : "run|" + program.command_line);
  }
  return lines;
}

void RunningMachine::SetCommandLine(const std::string& text) {
  parts_->host->system().SetCommandLine(text);
}

void RunningMachine::SetVersion(int platform_id, int major, int minor) {
  parts_->host->system().SetVersion({platform_id, major, minor, true});
}

void RunningMachine::SetEnvironment(const std::string& name, const std::string& value) {
  parts_->host->system().SetEnvironment(name, value);
}

void RunningMachine::SetSpecialFolder(int number, const std::string& path) {
  parts_->host->shell().SetSpecialFolder(number, path);
}

void RunningMachine::SetDrive(const std::string& letter, DriveKind kind,
                              std::optional<std::uint64_t> free_bytes) {
  const std::string folder = parts_->folder + "/drive_" + FoldCase(letter.substr(0, 1));
  mkdir(folder.c_str(), 0777);
  parts_->host->files().SetDrive(Letter(letter), kind, folder);
  parts_->host->files().SetFreeBytes(Letter(letter), free_bytes);
}

void RunningMachine::RemoveDrive(const std::string& letter) {
  parts_->host->files().RemoveDrive(Letter(letter));
}

void RunningMachine::SetFreeSpace(const std::string& letter, std::uint64_t free_bytes) {
  parts_->host->files().SetFreeBytes(Letter(letter), free_bytes);
}

void RunningMachine::SetShare(const std::string& share, bool answers) {
  if (!answers) return parts_->host->files().RemoveShare(share);
  const std::string folder = parts_->folder + "/share" + ReplaceAll(FoldCase(share), "\\", "_");
  mkdir(folder.c_str(), 0777);
  parts_->host->files().SetShare(share, folder);
}

void RunningMachine::RunProcess(const std::string& image, std::uint32_t id) {
  parts_->host->processes().Start(image, id);
}

void RunningMachine::EndProcess(const std::string& image) { parts_->host->processes().End(image); }

void RunningMachine::SetService(const std::string& name, bool running) {
  parts_->host->services().SetState(name, running ? "Running" : "Stopped");
}

void RunningMachine::SetClock(const LocalTime& time) { parts_->host->system().SetNow(time); }

void RunningMachine::RefuseElevation(bool refuse) {
  parts_->host->shell().SetElevationRefused(refuse);
}

void RunningMachine::SetDiscWriter(const std::string& writer) {
  host::MachineDisc disc = parts_->host->discs().disc();
  disc.writer = writer;
  const std::string file = writer.starts_with("file:") ? writer.substr(5) : "/";
  if (!file.starts_with("/")) {
    disc.writer = "file:" + std::filesystem::absolute(file).string();
  }
  parts_->host->discs().Use(disc);
}

void RunningMachine::SetDiscMedia(const std::string& writer, std::optional<std::uint64_t> size,
                                  std::optional<int> media) {
  host::MachineDisc disc;
  disc.writer = writer;
  if (size) disc.size = *size;
  disc.media = media;
  parts_->host->discs().Use(disc);
}

host::HostPlatform& RunningMachine::host() { return *parts_->host; }

bool IsDiscWriter(const std::string& text) { return host::IsDiscWriter(text); }

std::string ComputerPath(const std::string& path) { return host::MachinePathOf(path); }

}  // namespace quorvale
