// The desktop shell of the running system.
#pragma once

#include <map>

#include "platform/shell.h"

namespace quorvale::windows {

class WindowsShell : public Shell {
 public:
  ~WindowsShell() override;

  std::string SpecialFolder(int folder) override;
  RunId Run(const std::string& command_line, WindowStyle style) override;
  int Execute(const std::string& verb, const std::string& file, const std::string& parameters,
              const std::string& folder, int show, RunId* run) override;
  bool IsRunning(RunId run) override;
  bool CreateLink(const ShellLink& link) override;
  bool CreateScriptedLink(const ShellLink& link) override;
  bool Operate(FileOperation operation, const std::string& source, const std::string& target,
               int flags) override;
  void ShowHelp(const std::string& help_file, const std::string& topic) override;
  void PlaySoundFile(const std::string& path) override;

 private:
  RunId Remember(void* process);

  std::map<RunId, void*> runs_;  // process handles
  RunId last_run_ = 0;
  bool help_shown_ = false;  // in windows of this process
};

}  // namespace quorvale::windows
