// The account of a run: what became of each item and file and why, and how the run ended. Engines
// and deliveries fill it, the account window, the log page, the console edition and the tests read
// it. What went well is counted, item by item; what did not is listed, file by file.
//
// account_text.h writes and reads it as text, account_folder.h keeps the newest ones.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace quorvale {

enum class AccountRun { kBackup, kRestore, kSchedule };

enum class AccountFate {
  kLeftOut,       // of a backup
  kNotRestored,   // of a restore
  kPutElsewhere,  // of a restore: it stands at `place`
  kNote,          // nothing is missing, but a person should know it
};

enum class AccountReason {
  kNone,
  kMissing,           // it was not there
  kUnreadable,        // in use, or no rights to read it
  kCutShort,          // could not be read to its end
  kChanged,           // changed while it was read
  kNoDot,             // a file without an extension
  kNoName,            // no name that an entry of an archive can have
  kDamaged,           // damaged in the backup
  kNotInBackup,       // the backup does not hold it
  kNoRoom,            // the disk is full
  kPlaceTaken,        // a folder stands where the file belongs, or the other way round
  kNoRights,          // its place cannot be written: in use, or no rights
  kNoPlace,           // its drive or folder is not on this computer
  kImportRefused,     // the registry editor did not take it
  kNotInstalled,      // its program is not on this computer
  kServerRefused,     // the server, or the way to it
  kDiscRefused,       // the disc writer, or whoever was asked for a disc
  kSchedulerRefused,  // the system's task scheduler
  kStopped,           // the run was stopped before its turn came
};

// What an entry of the account is about; the window counts by it.
enum class AccountThing { kFile, kFolder, kRegistryKey, kOther };

struct AccountEntry {
  AccountFate fate = AccountFate::kLeftOut;
  AccountReason reason = AccountReason::kNone;
  AccountThing thing = AccountThing::kFile;
  std::string item;    // its path in the tree; "" for what belongs to no item
  std::string source;  // of a backup: the file, folder or key; of a restore: where it belongs
  std::string place;   // of kPutElsewhere: where it stands now; else ""
  std::string detail;  // an answer of the system or the server, as it was given; else ""
};

// How much of an item went well.
struct AccountItem {
  std::string path;  // in the tree
  std::string key;   // a file, folder or registry key, by which it can be ticked again
  std::uint64_t good = 0;
};

enum class AccountEnd { kNotEnded, kDone, kStopped, kFailed };

class Account {
 public:
  // Forgets everything. `began` is a text for a person ("2026-11-22 05:08:12").
  void Begin(AccountRun run, const std::string& name, const std::string& began);
  // The item that CountGood counts for from now on. Items of one path and key are one.
  void BeginItem(const std::string& path, const std::string& key);
  void CountGood(std::uint64_t count = 1);
  void Add(AccountEntry entry);
  // A word about the run as a whole. `why` and `detail` are those of AccountEntry.
  void Note(AccountReason why, const std::string& text, const std::string& detail = "");
  // `why` and `detail` say more of a run that failed ("F:\Backup").
  void End(AccountEnd end, const std::string& ended, AccountReason why = AccountReason::kNone,
           const std::string& detail = "");

  AccountRun run() const { return run_; }
  const std::string& name() const { return name_; }
  const std::string& began() const { return began_; }
  const std::string& ended() const { return ended_; }
  AccountEnd end() const { return end_; }
  AccountReason why() const { return why_; }
  const std::string& detail() const { return detail_; }
  const std::vector<AccountItem>& items() const { return items_; }
  const std::vector<AccountEntry>& entries() const { return entries_; }

  // The file of the backup that was made or restored; "" if there is none.
  std::string archive;

  // Entries that are no notes: what a person asked for and does not have where it belongs.
  std::size_t CountOf(AccountFate fate) const;
  // False if the run did all that was asked, without a word more to say.
  bool HasToTell() const;
  // One sentence for a person: "12 files are not in this backup."
  std::string Sentence() const;

 private:
  AccountRun run_ = AccountRun::kBackup;
  std::string name_;
  std::string began_;
  std::string ended_;
  AccountEnd end_ = AccountEnd::kNotEnded;
  AccountReason why_ = AccountReason::kNone;
  std::string detail_;
  std::vector<AccountItem> items_;
  std::unordered_map<std::string, std::size_t> places_;  // in items_, by path and key
  std::size_t item_ = 0;                                 // at work: a place in items_
  std::vector<AccountEntry> entries_;
};

// A reason as a person reads it: "in use, or no rights to read it".
const char* ReasonText(AccountReason reason);

}  // namespace quorvale
