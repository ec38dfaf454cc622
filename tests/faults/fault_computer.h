// A small computer in memory with all that a backup takes, on which the Nth call fails.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "backup/format/settings_file.h"
#include "core/program/program.h"
#include "support/faulty_platform.h"
#include "support/memory_platform.h"
#include "support/memory_registry_editor.h"

namespace quorvale::fault_test {

inline constexpr char kProfile[] = "C:\\Documents and Settings\\Anna";
// The mail users of the computer that is backed up, and of the other one.
inline constexpr char kIdentity[] = "{AAAAAAAA-0000-1111-2222-BBBBBBBBBBBB}";
inline constexpr char kOtherIdentity[] = "{CCCCCCCC-0000-1111-2222-DDDDDDDDDDDD}";
inline constexpr char kBackupFolder[] = "C:\\Backups";
inline constexpr char kRestoreFolder[] = "C:\\Restored";
inline constexpr char kAppData[] =
    "C:\\Documents and Settings\\Anna\\Application Data\\Tarnwick\\Quorvale";

// What every file and value of a computer holds.
struct Contents {
  std::map<std::string, std::string> files;   // by path
  std::map<std::string, std::string> values;  // by key, "\" and name: type, ":" and data
  bool operator==(const Contents&) const = default;
};

class FaultComputer {
 public:
  // A new system. What a person has on it comes from the two below. With one processor all work is
  // done by the caller, and the Nth call is the same one in each run.
  explicit FaultComputer(int processors = 1);
  FaultComputer(const FaultComputer&) = delete;
  FaultComputer& operator=(const FaultComputer&) = delete;

  // Mail, settings, browser data and files, all of which Items() names.
  void FillForBackup();
  // The same person's other computer: another mail identity, older files in the same places, and
  // some that no backup has.
  void FillForRestore();
  // Tree path and key of everything that is backed up.
  static std::vector<SettingsItem> Items();

  Contents Now();

  MemoryPlatform memory;

 private:
  class Processors : public SystemThreads {
   public:
    explicit Processors(int count) : count_(count) {}
    int ProcessorCount() override { return count_; }

   private:
    int count_;
  };

  void PutText(RegistryRoot root, const std::string& key, const std::string& name,
               const std::string& text);
  void FillMailProfile(const std::string& data_file);
  void CollectValues(RegistryRoot root, const std::string& key, Contents* contents);

  Processors threads_;
  Platform real_;

 public:
  // What the program is to see.
  FaultyPlatform faults{real_};

 private:
  MemoryRegistryEditor editor_{memory.shell, faults.files, faults.registry, memory.system};
};

// The facts that the start of the program finds out.
void CommitFacts(Program& program);

// True for the folder itself too.
bool IsAtOrBelow(const std::string& path, const std::string& folder);

// Bytes that pack badly, other ones for each seed.
std::string Noise(std::size_t size, unsigned seed);

}  // namespace quorvale::fault_test
