// The desktop shell of a machine folder: it keeps a record of what the program started, and plays
// the registry editor itself. A run of the editor does its work when it ends, not when it starts,
// so that code which does not wait for it finds nothing done; it ends at the third question whether
// it still runs, or at the first one after two seconds.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/host/machine_folder.h"
#include "platform/host/registry_store.h"
#include "platform/shell.h"
#include "platform/system_info.h"

namespace quorvale::host {

// A program that was started.
struct StartedProgram {
  RunId run = 0;
  std::string command_line;  // of Run
  std::string verb;          // of Execute, with what follows
  std::string file;
  std::string parameters;
  std::string folder;
  WindowStyle style = WindowStyle::kNormal;  // of Run
  int show = 0;                              // of Execute
};

struct ShownHelp {
  std::string file;
  std::string topic;
};

class HostShell : public Shell {
 public:
  HostShell(const MachineFolder& machine, HostRegistryStore& registry, Files& files,
            SystemInfo& system);

  std::string SpecialFolder(int folder) override;
  RunId Run(const std::string& command_line, WindowStyle style) override;
  int Execute(const std::string& verb, const std::string& file, const std::string& parameters,
              const std::string& folder, int show, RunId* run) override;
  bool IsRunning(RunId run) override;
  bool CreateLink(const ShellLink& link) override;
  // Nobody answers questions here: what would need one is refused.
  bool Operate(FileOperation operation, const std::string& source, const std::string& target,
               int flags) override;
  void ShowHelp(const std::string& help_file, const std::string& topic) override;
  void PlaySoundFile(const std::string& path) override;

  // Lets every outstanding run of the registry editor end now.
  void FinishRuns();

  // What else the computer can be.
  void SetElevationRefused(bool refused) { elevation_refused_ = refused; }
  void SetSpecialFolder(int folder, const std::string& path) { folders_[folder] = path; }

  // What the program did. Runs of the registry editor stand in a list of their own.
  const std::vector<StartedProgram>& started() const { return started_; }
  const std::vector<StartedProgram>& registry_editor_runs() const { return editor_runs_; }
  // How many runs of the registry editor have not ended.
  int OutstandingRuns() const { return static_cast<int>(outstanding_.size()); }
  const std::vector<ShownHelp>& help_shown() const { return help_shown_; }
  const std::vector<std::string>& sounds_played() const { return sounds_played_; }
  const std::vector<ShellLink>& links_made() const { return links_made_; }

 private:
  struct EditorRun {
    bool exports = false;
    std::string file;
    std::string key;  // of an export
    int polls_left = 0;
    std::uint64_t ends_at = 0;
  };

  bool Remove(const std::string& path);
  bool CopyTree(const std::string& source, const std::string& target);
  // Where an operation puts what would collide with `target`; "" if it may not be put anywhere.
  std::string PlaceFor(const std::string& target, int flags);
  RunId StartEditor(const std::vector<std::string>& arguments);
  void End(const EditorRun& run);
  void Export(const std::string& file, const std::string& key);
  void Import(const std::string& file);

  HostRegistryStore& registry_;
  Files& files_;
  SystemInfo& system_;
  std::map<int, std::string> folders_;
  bool elevation_refused_ = false;
  RunId last_run_ = 0;
  std::map<RunId, EditorRun> outstanding_;
  std::vector<StartedProgram> started_;
  std::vector<StartedProgram> editor_runs_;
  std::vector<ShownHelp> help_shown_;
  std::vector<std::string> sounds_played_;
  std::vector<ShellLink> links_made_;
};

// The words of a command line: cut at blanks outside of quotes, without the quotes.
std::vector<std::string> CommandWords(const std::string& command_line);

}  // namespace quorvale::host
