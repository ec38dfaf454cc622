// The processes of a scenario: the program itself, what it starts, and stand-ins for mail programs.
//
// While the program runs, a gate stands in its file's place: this driver under the program's name.
// A copy that the program starts of itself waits there, whatever the machine is busy with, so that
// what it is handed can be looked at first. The gate then starts the copy in its own place.
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
  // Starts a further copy at once, whatever copies run already. The answer is its id or 0.
  DWORD StartBeside(const std::string& command_line);
  // A copy that the program `other` has started with exactly this command line: it is let through
  // the gate. 0 while there is none.
  DWORD FindCopy(const std::string& command_line, DWORD other);
  // How many copies of the program run, without those at the gate.
  int Copies() const;
  // True: the system refuses to start a further copy, since the program's file is not to be had.
  void RefuseRestarts(bool refuse);
  static bool Runs(DWORD process);
  static void End(DWORD process);
  // Processor time used so far, in units of 100 nanoseconds.
  static unsigned long long TimeUsed(HANDLE process);

  // Runs a program of the system below Wine, which takes paths as that one has them.
  static void RunOnHost(const std::string& file, const std::string& parameters);

  // Takes note of what the program has started until now.
  void Look();
  // "run|command line" of each, and "runas|file|parameters" of each further copy of the program.
  const std::vector<std::string>& Started() const { return started_; }

  // Runs a program that does nothing under this image name. False if it cannot be started.
  bool RunStandIn(const std::string& image);
  void EndStandIns(const std::string& image);

 private:
  enum class Place { kProgram, kGate, kNothing };
  // What lies under the name of the program's file.
  void PutInPlace(Place place);

  std::string program_;
  Place place_ = Place::kProgram;
  bool refuse_restarts_ = false;
  int gate_files_ = 0;
  HANDLE gate_ = nullptr;
  std::set<DWORD> gates_;   // copies of this driver that wait in the program's place, or did
  std::set<DWORD> copies_;  // of the program, ended ones too
  std::set<DWORD> seen_;
  std::vector<std::string> started_;
  std::map<DWORD, std::string> stand_ins_;
};

// The word that makes this driver a program that does nothing.
inline constexpr char kStandInWord[] = "--stand-in";

// True if this driver runs under the program's name.
bool IsGate();
// Waits until the gate is opened and starts the program with the command line of this process.
void WaitAtGate();

}  // namespace quorvale::driver
