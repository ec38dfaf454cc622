// The processes of a scenario: the program itself, what it starts, and stand-ins for mail programs.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/windows/windows_headers.h"

namespace quorvale::driver {

class ProgramProcesses {
 public:
  // `program`: the path of Quorvale.exe.
  explicit ProgramProcesses(std::string program) : program_(std::move(program)) {}
  ~ProgramProcesses();

  // Starts the program with a command line. The answer is its id, 0 if it cannot be started.
  DWORD Start(const std::string& command_line);
  // A copy of the program that runs with exactly this command line and that is not `other`; 0.
  DWORD FindCopy(const std::string& command_line, DWORD other);
  static bool Runs(DWORD process);
  static void End(DWORD process);
  // Processor time used so far, in units of 100 nanoseconds.
  static unsigned long long TimeUsed(HANDLE process);

  // Runs a program of the system below Wine, which takes paths as that one has them.
  static void RunOnHost(const std::string& file, const std::string& parameters);

  // Takes note of what the program has started until now. A further copy of the program is held
  // until FindCopy finds it, so that what it is handed can be looked at first.
  void Look();
  // "run|command line" of each, and "runas|file|parameters" of each further copy of the program.
  const std::vector<std::string>& Started() const { return started_; }

  // Runs a program that does nothing under this image name. False if it cannot be started.
  bool RunStandIn(const std::string& image);
  void EndStandIns(const std::string& image);

 private:
  void Hold(DWORD process, bool hold);

  std::string program_;
  std::set<DWORD> held_;
  std::set<DWORD> copies_;  // of the program, ended ones too
  std::set<DWORD> seen_;
  std::vector<std::string> started_;
  std::map<DWORD, std::string> stand_ins_;
};

// The word that makes this driver a program that does nothing.
inline constexpr char kStandInWord[] = "--stand-in";

}  // namespace quorvale::driver
