#include "archive/archive.h"

#include <new>

#include "archive/join_operation.h"
#include "archive/operation_monitor.h"
#include "archive/unzip_operation.h"
#include "archive/zip_operation.h"
#include "platform/platform.h"

namespace quorvale::zip {
namespace {

Entry EntryOf(const Record& record) {
  Entry entry;
  entry.name = record.name;
  entry.is_folder = record.IsFolder();
  entry.encrypted = record.Encrypted();
  entry.size = record.size;
  entry.compressed_size = record.compressed_size;
  entry.attributes = record.attributes;
  entry.crc = record.crc;
  entry.modified = record.modified;
  return entry;
}

}  // namespace

Archive::Archive(const Platform& platform)
    : Archive(platform.files, platform.system, platform.threads) {}

Archive::Archive(Files& files, SystemInfo& system, Threads& threads)
    : files_(files), system_(system), threads_(threads) {}

Archive::~Archive() = default;

void Archive::ResetDefaults() {
  archive_name.clear();
  files_to_process.clear();
  password.clear();
  encrypt = false;
  level = 6;
  split_size = 0;
  unzip_folder.clear();
  preserve_paths = true;
  skip_existing = false;
  every_of_one_name = false;
  offer_unusual_names = false;
  required_attributes = 0;
  excluded_attributes = 0;
  worker_threads = -1;
  abort = false;
}

Result Archive::Perform(Operation operation, const std::function<Result()>& work) {
  // A handler of one operation's events cannot begin another one.
  if (operation_ != Operation::kNone) return Result::kFailed;
  operation_ = operation;
  abort = false;
  Result result = Result::kFailed;
  try {
    result = work();
  } catch (const std::bad_alloc&) {
    result = Result::kFailed;
  }
  operation_ = Operation::kNone;
  return result;
}

Result Archive::Zip() {
  known_directory_.reset();
  return Perform(Operation::kZipping, [this] {
    OperationMonitor monitor(*this, system_);
    return ZipOperation(*this, files_, system_, threads_, monitor).Run();
  });
}

Result Archive::Unzip() {
  return Perform(Operation::kUnzipping, [this] {
    OperationMonitor monitor(*this, system_);
    return UnzipOperation(*this, files_, system_, threads_, monitor).Run();
  });
}

Result Archive::Test() {
  return Perform(Operation::kTesting, [this] {
    OperationMonitor monitor(*this, system_);
    return TestOperation(*this, files_, system_, threads_, monitor).Run();
  });
}

Result Archive::Join(const std::string& target) {
  return Perform(Operation::kJoining, [this, &target] {
    if (files_.Stat(target)) return Result::kFailed;
    OperationMonitor monitor(*this, system_);
    return JoinOperation(*this, files_, system_, threads_, monitor, target).Run();
  });
}

Result Archive::List(std::vector<Entry>* entries) {
  entries->clear();
  return Perform(Operation::kListing, [this, entries] {
    OperationMonitor monitor(*this, system_);
    Selection selection;
    const Result result = selection.Load(*this, files_, system_, monitor);
    for (const Record* record : selection.records()) entries->push_back(EntryOf(*record));
    return result;
  });
}

}  // namespace quorvale::zip
