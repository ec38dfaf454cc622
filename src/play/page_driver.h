// Goes through the pages of a backup or a restore as a person would, who knows beforehand what to
// choose. It has no rule of its own: what a page refuses is refused.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "play/ftp_address.h"
#include "play/hands.h"
#include "play/running_machine.h"

namespace quorvale {

struct BackupWishes {
  std::string name;
  bool all = false;                // every root but those for added folders and files
  std::vector<std::string> ticks;  // full paths of nodes
  std::vector<std::string> add_folders, add_files;
  std::string to;        // "" leaves the folder that the page offers
  std::string level;     // an entry of the page's list, "" leaves its choice
  std::string password;  // "" for none
  bool log = false;
  // The drive that burns the backup: its number in the page's list, from 1, or the start of its
  // text there. "" for none.
  std::string disc;
  std::optional<FtpAddress> ftp;  // the server that gets a copy
};

struct RestoreWishes {
  std::string file;
  bool all = false;
  std::vector<std::string> ticks;
  std::string password;
  std::string to;
  bool keep = false;
  bool no_restore_folder = false;
};

enum class Outcome { kDone, kRefused, kStopped };

class PageDriver {
 public:
  explicit PageDriver(RunningMachine& computer) : computer_(computer) {}

  // Each starts the program afresh. kRefused: a message box, or problem(), says why.
  Outcome Backup(const BackupWishes& job);
  Outcome QuickBackup();
  Outcome Restore(const RestoreWishes& job);
  // Goes as far as the page of items; the tree, or null if that was refused.
  const ui::TreeView* ShowBackup(const std::string& file, const std::string& password);
  // The tree of what can be backed up.
  const ui::TreeView* ShowComputer();

  // What could not be done with the pages themselves; "" if a message box said it all.
  const std::string& problem() const { return problem_; }
  // Discs that the last backup is on; 0 if it is on none.
  int discs() const { return discs_; }
  // The archive that the last backup made, where it is not on discs.
  const std::string& archive() const { return archive_; }

 private:
  Hands hands() { return Hands(*computer_.app(), computer_.ui()); }
  void Begin();
  // Each remembers the first problem and answers whether all went well so far.
  bool Act(const std::string& problem);
  bool ClickTo(const std::string& form, const std::string& control, const std::string& next_form);
  bool TickRoots(const std::string& form, const std::string& tree);
  bool TickPaths(const std::string& form, const std::vector<std::string>& paths);
  bool FillItemPage(const BackupWishes& job);
  bool FillOptionsPage(const BackupWishes& job);
  bool FillMediaPage(const BackupWishes& job);
  bool ChooseDrive(const std::string& drive);
  bool FillServer(const FtpAddress& server);
  // What an upload came to.
  bool StartBackup();
  Outcome UploadEnding(Outcome outcome);
  // What a burn came to.
  Outcome BurnEnding(Outcome outcome);
  bool SelectFile(const RestoreWishes& job);
  bool ChooseFile(const std::string& path);
  bool AddAll(const std::string& root, const std::vector<std::string>& paths, bool folders);
  bool IsShown(const std::string& form);
  // How the program says that its run ended.
  Outcome Ending();

  RunningMachine& computer_;
  std::string problem_;
  std::string archive_;
  int discs_ = 0;
};

}  // namespace quorvale
