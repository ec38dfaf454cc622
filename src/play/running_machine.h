// A computer of the host, running: a machine folder, a headless user interface, and one
// run of the program after another. The console edition, the scenario player and the tests all
// sit before such a computer.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/pages/application.h"
#include "platform/platform.h"
#include "platform/ui/headless/headless_ui.h"

namespace quorvale {

namespace host {
class HostPlatform;
}

class RunningMachine {
 public:
  // Null, with a sentence that names file and line, if the folder holds no machine.
  static std::unique_ptr<RunningMachine> Open(const std::string& host_folder, std::string* problem);
  ~RunningMachine();
  RunningMachine(const RunningMachine&) = delete;
  RunningMachine& operator=(const RunningMachine&) = delete;

  const std::string& folder() const;
  // What programs see of the computer: all of it, as it is, unless ShowThrough set another one.
  Platform& platform();
  // Programs that are made from now on see the computer through this platform, which must outlive
  // them.
  void ShowThrough(Platform& platform);
  host::HostPlatform& host();  // the computer itself
  ui::HeadlessUi& ui();

  // The program. Null while none runs.
  Application* app();
  // Ends what runs and makes a new program with this command line; no form is loaded yet.
  Application& MakeProgram(const std::string& command_line);
  // The same, and the program enters as it does on a real start.
  Application& Start(const std::string& command_line);
  // True if the program ended by itself.
  bool ProgramEnded();
  // If the program ended because it started itself again (with raised rights), starts that one.
  // False if it did not.
  bool FollowRestart();
  // Writes the registry. "" or a sentence that says why it is not written.
  std::string SaveRegistry();
  // Ends what runs and writes the registry. "" or a sentence that says why it is not written.
  std::string EndProgram();

  // What was started since the computer was opened: "runas|C:\...\Quorvale.exe|qvlrunasadmin"
  // (verb, file, parameters) or "run|command line".
  std::vector<std::string> Started();

  // Facts, changed while the computer runs; machine.ini stays as it is.
  void SetCommandLine(const std::string& text);
  void SetVersion(int platform_id, int major, int minor);
  void SetEnvironment(const std::string& name, const std::string& value);
  void SetSpecialFolder(int number, const std::string& path);
  // A drive that is new gets the folder drive_<letter> of the machine folder. Without free bytes
  // the drive has as many as the host.
  void SetDrive(const std::string& letter, DriveKind kind,
                std::optional<std::uint64_t> free_bytes = std::nullopt);
  void RemoveDrive(const std::string& letter);
  void SetFreeSpace(const std::string& letter, std::uint64_t free_bytes);
  // A share ("\\\\server\\share") of the network: a folder beside machine.ini while it answers.
  void SetShare(const std::string& share, bool answers);
  void RunProcess(const std::string& image, std::uint32_t id = 4711);
  void EndProcess(const std::string& image);
  void SetService(const std::string& name, bool running);
  void SetClock(const LocalTime& time);
  // Whether the shell refuses the verb "runas".
  void RefuseElevation(bool refuse = true);
  // The disc writer, as machine.ini names it ("file:disc.iso"); "" for none. Media that are files
  // have this many bytes, and there are so many of them (nothing: no end of them).
  void SetDiscMedia(const std::string& writer, std::optional<std::uint64_t> size,
                    std::optional<int> media);
  // Another writer with media as machine.ini has them. A file's name is the host's.
  void SetDiscWriter(const std::string& writer);

 private:
  struct Parts;
  explicit RunningMachine(std::unique_ptr<Parts> parts);
  std::unique_ptr<Parts> parts_;
};

// A path of the host as the computer names it: "/home/x" is "Z:\home\x"; a relative one is taken
// from the present folder. A path that has the computer's own form stays as it is.
std::string ComputerPath(const std::string& path);

// True for a text that names a disc writer as machine.ini does: "file:disc.iso", "/dev/sr0".
bool IsDiscWriter(const std::string& text);

}  // namespace quorvale
