// Reads entries of an archive: to write them as files, to test them, or to list them.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "archive/archive.h"
#include "archive/directory_reader.h"
#include "archive/entry_name.h"
#include "archive/entry_reader.h"
#include "archive/operation_monitor.h"
#include "platform/files.h"
#include "platform/system_info.h"
#include "platform/workers.h"

namespace quorvale::zip {

// The entries that the archive's properties name, in the order of the archive.
class Selection {
 public:
  // kDone, or why the directory cannot be read.
  Result Load(Archive& archive, Files& files, SystemInfo& system, OperationMonitor& monitor);
  // Keeps only the last of the entries of each name.
  void KeepLastOfEachName();

  const Directory& directory() const { return directory_; }
  const std::vector<const Record*>& records() const { return records_; }
  // True if names were asked for and no entry has one of them.
  bool Missed() const { return missed_; }

 private:
  // Takes the directory from an earlier operation of the same archive, or reads it.
  Result Open(Archive& archive, Files& files, SystemInfo& system, OperationMonitor& monitor);
  // The places in the directory whose names the filter may want, in the order of the archive.
  std::vector<std::size_t> Candidates(const NameFilter& names) const;

  Directory directory_;
  std::shared_ptr<KnownDirectory> known_;
  std::vector<const Record*> records_;
  bool missed_ = false;
};

class TestOperation : private EntrySink {
 public:
  TestOperation(Archive& archive, Files& files, SystemInfo& system, Threads& threads,
                OperationMonitor& monitor);
  Result Run();

 private:
  bool Wants(const Record&) override { return true; }
  bool Take(const Record&, const std::uint8_t* data, std::size_t count) override {
    if (archive_.on_tested) archive_.on_tested(data, count);
    return true;
  }
  bool Done(const Record& record, EntryStatus status) override;

  Archive& archive_;
  Files& files_;
  SystemInfo& system_;
  Threads& threads_;
  OperationMonitor& monitor_;
  Result result_ = Result::kDone;
};

class UnzipOperation : private EntrySink {
 public:
  UnzipOperation(Archive& archive, Files& files, SystemInfo& system, Threads& threads,
                 OperationMonitor& monitor);
  ~UnzipOperation() override;
  Result Run();

 private:
  // Where an entry goes. It is written beside that place first.
  struct Target {
    std::string destination;
    std::string temporary_path;  // "" if it is not there
    std::unique_ptr<OutputFile> file;
    FileStatus status = FileStatus::kOk;
  };
  struct MadeFolder {
    std::string path;
    const Record* record;
  };

  bool Wants(const Record& record) override;
  bool Take(const Record& record, const std::uint8_t* data, std::size_t count) override;
  bool Done(const Record& record, EntryStatus status) override;

  bool Exists(const std::string& path);
  FileStatus MakeFolders(const std::string& folder, bool* made);
  std::string TemporaryPathFor(const std::string& destination);
  FileStatus OpenTarget(Target* target);
  FileStatus FinishTarget(const Record& record, Target* target);
  FileStatus PutInPlace(const Target& target);
  // Counts and tells what became of an entry whose data was good. False: the operation ends.
  bool Written(const Record& record, const Target& target, FileStatus status);
  WarningReason WhyUnwritten(const Record& record, const Target& target, FileStatus status);
  FileStatus FinishFolder(const Record& record, const Target& target);
  void DiscardTarget(Target* target);
  void SetFolderTimes();
  Result Judge() const;

  Archive& archive_;
  Files& files_;
  SystemInfo& system_;
  Threads& threads_;
  OperationMonitor& monitor_;
  std::deque<Target> targets_;  // of the entries that are on their way
  std::set<std::string> known_folders_;
  std::vector<MadeFolder> made_folders_;
  std::map<std::string, std::string> temporary_paths_;  // by folder
  std::size_t written_ = 0;
  std::size_t unwritten_ = 0;
  bool damaged_ = false;
  bool wrong_password_ = false;
  bool no_space_ = false;
};

}  // namespace quorvale::zip
