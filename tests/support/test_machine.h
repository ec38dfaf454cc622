// A computer of one test: a machine folder under the test's temporary folder, the host platform
// over it, a headless user interface, and the program running on it.
//
// A test writes files and registry values, sets the facts of the computer, then works the pages
// like a person does:
//
//   TestMachine machine("xp");
//   machine.Expect(ui::Answer::kOk, "Enter Backup Name");
//   machine.Click(machine.app().Get<frmOne>().cmdNext);
//
// When the machine goes, every box that nobody foresaw and every answer that nobody asked for is
// a failure of the test.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/pages/application.h"
#include "platform/platform.h"
#include "platform/ui/controls.h"
#include "platform/ui/headless/headless_ui.h"
#include "platform/ui/tree_view.h"
#include "play/running_machine.h"
#include "support/faulty_platform.h"

namespace quorvale {

namespace host {
class HostPlatform;
}

class TestMachine {
 public:
  // `like`: 95, 98, me, nt40, 2000, xp or vista. `user` owns the profile folder.
  explicit TestMachine(const std::string& like = "xp", const std::string& user = "Anna");
  ~TestMachine();
  TestMachine(const TestMachine&) = delete;
  TestMachine& operator=(const TestMachine&) = delete;

  // The program; made on first use, after the command line and the facts have been set. No form
  // is loaded yet: a test that wants the program's start calls Get<FrmWelcome>().
  Application& app();
  ui::HeadlessUi& ui();
  Platform& platform();
  // The computer that the program runs on: its facts are set here, and what was started is told.
  RunningMachine& computer();
  // What goes wrong on it. The program sees the computer through these.
  FaultyPlatform& faults();
  // The computer itself, for what no method here arranges ("platform/host/...").
  host::HostPlatform& host();
  Session& session() { return app().session(); }
  Files& files() { return platform().files; }
  RegistryStore& registry() { return platform().registry; }
  // The machine folder's path on this host.
  const std::string& folder() const;
  // Ends the program, saves the registry as its end does, and starts a new one on the same
  // computer with this command line. Forms and session are new; files and registry stay.
  void Restart(const std::string& command_line = "");

  // Folders of the user, without a trailing backslash.
  std::string Profile() const;       // what UserProfile names
  std::string AppData() const;       // what appdata names
  std::string LocalAppData() const;  // special folder 28
  std::string Documents() const;     // special folder 5
  std::string Desktop() const;       // special folder 16
  std::string Favorites() const;     // special folder 6
  std::string Cookies() const;       // special folder 33
  std::string CommonFiles() const;   // special folder 43

  // Files. Paths as the program sees them. A failure of the host is a failure of the test.
  void WriteFile(const std::string& path, const std::string& bytes);  // makes its folders
  void MakeFolder(const std::string& path);                           // with its parents
  std::string ReadFile(const std::string& path);                      // a failure if missing
  bool Exists(const std::string& path);
  void RemoveFile(const std::string& path);
  void RemoveTree(const std::string& path);
  void SetAttributes(const std::string& path, std::uint32_t attributes);
  void SetModified(const std::string& path, FileTime modified);
  // Paths of all files and folders below a folder, sorted; a folder ends in a backslash.
  std::vector<std::string> AllBelow(const std::string& folder);
  // The path on this host of a path of the computer, for tools that run beside the program.
  std::string HostPath(const std::string& path) const;

  // Registry, by full key paths such as "HKEY_CURRENT_USER\\Software\\X". Keys are made.
  void MakeKey(const std::string& key);
  void SetString(const std::string& key, const std::string& name, const std::string& text);
  void SetExpandString(const std::string& key, const std::string& name, const std::string& text);
  void SetDword(const std::string& key, const std::string& name, std::uint32_t number);
  void SetBinary(const std::string& key, const std::string& name, const std::string& bytes);
  // The value's text without its final NUL, or its raw bytes for other types; nothing if absent.
  std::optional<std::string> GetValue(const std::string& key, const std::string& name);
  bool KeyExists(const std::string& key);

  // Facts that nobody but a test changes.
  void SetUser(const std::string& name);
  // State words: "Running", "Stopped", "Paused", or any that a system may say.
  void SetService(const std::string& name, const std::string& state);

  // A person at the screen.
  void Expect(ui::Answer answer, const std::string& text) { ui().ExpectBox(answer, text); }
  // Texts of all boxes so far.
  std::vector<std::string> Boxes();
  // Boxes that nobody foresaw, and the like; reading them clears them.
  std::vector<std::string> TakeUnexpected();
  // Clicks as one message and lets timers run until idle.
  void Click(ui::Control& control);
  // Ticks or unticks a node by its FullPath, as a click on its box. A failure if there is none.
  void Tick(ui::TreeView& tree, const std::string& full_path, bool checked = true);
  void Do(const std::function<void()>& act) { ui().Step(act); }
  void RunUntilIdle() { ui().RunUntilIdle(); }

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quorvale
