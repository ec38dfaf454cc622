// A process that is killed at any moment of a backup or of a restore leaves the old file or the new
// one, each whole, and what it had begun under a name that tells it.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <sstream>

#include "backup/format/backup_file.h"
#include "backup/format/settings_file.h"
#include "backup/run/backup_run.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "faults/fault_computer.h"
#include "platform/host/host_platform.h"
#include "play/new_machine.h"
#include "restore/run/restore_run.h"
#include "restore/run/restore_selection.h"
#include "support/test_machine.h"

namespace quorvale::fault_test {
namespace {

namespace fs = std::filesystem;
using Tree = std::map<std::string, std::string>;  // paths of the computer to contents

constexpr int kKills = 300;
constexpr int kMostTries = 4 * kKills;
constexpr char kOut[] = "C:\\Out";
constexpr char kJob[] = "C:\\Out\\Job.obk";
constexpr char kWork[] = "C:\\Data\\Work";
constexpr char kOne[] = "C:\\Data\\one.dat";

std::string Prose(std::size_t size, unsigned seed) {
  std::minstd_rand random(seed + 1);
  const char* const words[] = {"letter ", "to ", "the ", "choir ", "about ", "Sunday ", "evening "};
  std::string text;
  while (text.size() < size) text += words[random() % std::size(words)];
  return text;
}

Tree NewFiles() {
  Tree files = {{kOne, Noise(300'000, 1)}};
  for (unsigned i = 0; i < 12; ++i) {
    files[std::string(kWork) + "\\part " + std::to_string(i) + "\\letters.txt"] =
        Prose(40'000 + 10'000 * i, i);
  }
  files[std::string(kWork) + "\\empty.txt"] = "";
  files[std::string(kWork) + "\\photo.jpg"] = Noise(400'000, 2);
  return files;
}

// What stands in the same places of a used computer, and beside them.
Tree OldFiles() {
  Tree files;
  unsigned seed = 50;
  for (const auto& [path, bytes] : NewFiles()) {
    if (++seed % 3 != 0) files[path] = Prose(bytes.size() / 2 + 10, seed);
  }
  files[std::string(kWork) + "\\own.txt"] = "own";
  return files;
}

std::vector<SettingsItem> Items() {
  return {{std::string("Add Other Folders\\") + kWork, kWork},
          {std::string("Add More Files\\") + kOne, kOne}};
}

class Kills : public testing::Test {
 protected:
  fs::path OnHost(const std::string& path) { return MachineHostPath(machine_.folder(), path); }
  // Writes the files by the host itself; what else is below C:\Data goes.
  void Lay(const Tree& files) {
    fs::remove_all(OnHost("C:\\Data"));
    for (const auto& [path, bytes] : files) Put(path, bytes);
  }
  void Put(const std::string& path, const std::string& bytes) {
    const fs::path host = OnHost(path);
    fs::create_directories(host.parent_path());
    std::ofstream(host, std::ios::binary | std::ios::trunc) << bytes;
  }
  std::string Get(const std::string& path) {
    std::stringstream bytes;
    bytes << std::ifstream(OnHost(path), std::ios::binary).rdbuf();
    return bytes.str();
  }
  bool Has(const std::string& path) { return fs::exists(OnHost(path)); }

  // The files below a folder of the computer, as paths of the computer.
  Tree Below(const std::string& folder) {
    Tree files;
    const fs::path top = OnHost(folder);
    if (!fs::exists(top)) return files;
    for (const auto& entry : fs::recursive_directory_iterator(top)) {
      // Where the host keeps attributes in a file, that is its own.
      if (!entry.is_regular_file() || entry.path().filename().string().starts_with(".quorvale"))
        continue;
      const std::string below = fs::relative(entry.path(), top).string();
      const std::string path = WithBackslash(folder) + ReplaceAll(below, "/", "\\");
      files[path] = Get(path);
    }
    return files;
  }

  // Runs in a process of its own, which is killed after so long. Nothing if it was; how long it
  // took if it ended before.
  template <typename Act>
  std::optional<std::chrono::microseconds> RunAndKill(std::uint64_t microseconds, Act act) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) _exit(act() ? 0 : 1);
    int status = 0;
    const auto limit = std::chrono::microseconds(microseconds);
    while (waitpid(child, &status, WNOHANG) == 0) {
      if (std::chrono::steady_clock::now() - start >= limit) {
        kill(child, SIGKILL);
        waitpid(child, &status, 0);
        break;
      }
      usleep(50);
    }
    if (!WIFEXITED(status)) return std::nullopt;
    EXPECT_EQ(WEXITSTATUS(status), 0) << "a run that was not killed failed";
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() -
                                                                 start);
  }

  // Kills `act` at moments that are spread over its length, each time after `lay`, and lets `check`
  // look at what is left.
  template <typename Lay, typename Act, typename Check>
  void KillOften(const std::string& what, Lay lay, Act act, Check check) {
    lay();
    const auto whole = RunAndKill(60'000'000, act);
    ASSERT_TRUE(whole.has_value());
    check();
    double length = static_cast<double>(whole->count());
    std::mt19937 random(14);
    int kills = 0;
    int tries = 0;
    for (; kills < kKills && tries < kMostTries && !HasFailure(); ++tries) {
      lay();
      const double moment = length * 1.05 * static_cast<double>(random()) / 4294967296.0;
      if (const auto ended = RunAndKill(static_cast<std::uint64_t>(moment), act)) {
        length = static_cast<double>(ended->count());  // as busy as the host is now
      } else {
        ++kills;
      }
      check();
    }
    EXPECT_EQ(kills, kKills) << "in " << tries << " tries";
    std::cout << kills << " kills in " << what << std::endl;
  }

  // In the child: a backup of everything, over the earlier one of its name or beside it.
  bool BackUp() {
    Program program(machine_.platform());
    CommitFacts(program);
    Session& session = program.session();
    session.gAppDataPath = "C:\\App";
    session.gBackupFolder = kOut;
    session.gBackupFileName = "Job.obk";
    session.gCompressionLevel = "6";
    session.gLogDetails = session.gProtectWithPassword = "False";
    for (const SettingsItem& item : Items()) {
      session.gBackupItemPaths.push_back(item.path);
      session.gBackupItemKeys.push_back(item.key);
    }
    session.gBackupBasePath = std::string(kOut) + "\\Job";
    program.files().MakeFolderChain(session.gBackupBasePath);
    WriteBackupSettings(program, StagedSettingsPath(session.gBackupBasePath, program));
    BackupRun run(program, {});
    const BackupResult result = run.Run();
    run.CleanUp(result);
    return result.outcome == BackupOutcome::kDone;
  }

  // In the child: a restore of everything to where it was.
  bool Restore() {
    Program program(machine_.platform());
    CommitFacts(program);
    Session& session = program.session();
    session.gAppDataPath = "C:\\App";
    session.gRestoreFilePath = kJob;
    session.gRestoreFolder = kRestoreFolder;
    session.gRestoreToDefaultFolders = true;
    const std::vector<SettingsItem> items = Items();
    RestoreSelection selection(program, items);
    for (std::size_t i = 0; i < items.size(); ++i) {
      selection.Add(items[i].path, items[i].key, static_cast<int>(i));
    }
    const RestoreJob job = session;
    RestoreRun run(program, job, {});
    const RestoreResult result = run.Run();
    run.DeleteRestoreFolder(std::string(kRestoreFolder) + "\\Job");
    return result.outcome == RestoreOutcome::kDone;
  }

  // Opens, tests and has every file.
  bool IsWholeBackup(const std::string& path) {
    Program program(machine_.platform());
    BackupFile file(program, path, "");
    std::vector<zip::Entry> entries;
    if (file.Test() != zip::Result::kDone || file.Members(&entries) != zip::Result::kDone) {
      return false;
    }
    const auto files = std::count_if(entries.begin(), entries.end(),
                                     [](const zip::Entry& entry) { return !entry.is_folder; });
    return static_cast<std::size_t>(files) == NewFiles().size() + 2 && file.Table().table;
  }

  TestMachine machine_;
};

TEST_F(Kills, ABackupThatIsKilledLeavesTheEarlierOneOrTheNewOne) {
  const Tree files = NewFiles();
  const std::string earlier = Noise(200'000, 77);
  Lay(files);
  bool over_an_earlier_one = false;
  int new_ones = 0;
  const auto lay = [&] {
    fs::remove_all(OnHost(kOut));
    over_an_earlier_one = !over_an_earlier_one;
    fs::create_directories(OnHost(kOut));
    if (over_an_earlier_one) Put(kJob, earlier);
  };
  const auto check = [&] {
    EXPECT_EQ(Below("C:\\Data"), files);
    EXPECT_TRUE(Has(kJob) || !over_an_earlier_one) << "the earlier backup is gone";
    for (const auto& [path, bytes] : Below(kOut)) {
      if (path == kJob) {
        if (over_an_earlier_one && bytes == earlier) continue;
        EXPECT_TRUE(IsWholeBackup(path));
        ++new_ones;
        continue;
      }
      EXPECT_TRUE(path.ends_with(".tmp") || path.starts_with("C:\\Out\\Job\\")) << path;
    }
  };
  KillOften(
      "a backup", lay, [this] { return BackUp(); }, check);
  EXPECT_GT(new_ones, 0);
}

TEST_F(Kills, ARestoreThatIsKilledLeavesEachFileWholeOldOrWholeNew) {
  const Tree restored = NewFiles();
  const Tree old = OldFiles();
  Lay(restored);
  fs::create_directories(OnHost(kOut));
  ASSERT_TRUE(BackUp());
  const std::string backup = Get(kJob);
  int new_files = 0;
  int old_files = 0;
  const auto lay = [&] {
    fs::remove_all(OnHost(kRestoreFolder));
    Lay(old);
  };
  const auto check = [&] {
    EXPECT_EQ(Get(kJob), backup);
    const Tree now = Below("C:\\Data");
    for (const auto& [path, bytes] : old) EXPECT_TRUE(now.contains(path)) << "lost: " << path;
    for (const auto& [path, bytes] : now) {
      if (path.ends_with(".tmp")) continue;
      const auto before = old.find(path);
      const auto after = restored.find(path);
      const bool is_old = before != old.end() && before->second == bytes;
      const bool is_new = after != restored.end() && after->second == bytes;
      EXPECT_TRUE(is_old || is_new) << "neither old nor new: " << path;
      (is_new ? new_files : old_files) += 1;
    }
  };
  KillOften(
      "a restore onto a used computer", lay, [this] { return Restore(); }, check);
  EXPECT_GT(new_files, 0);
  EXPECT_GT(old_files, 0);
}

}  // namespace
}  // namespace quorvale::fault_test
