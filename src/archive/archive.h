// The archive component: the one place that knows the Zip format.
//
// It is used like a control: set the properties, call an operation, look at its result. Events
// come on the caller's thread, whatever threads work inside. Names have "\" here and "/" on disk;
// they are matched without regard to case.
//
// This room uses files, clock, randomness and threads of the seam (platform/) and nothing of
// products. Start reading here; then zip_operation.h for the way in, unzip_operation.h and
// entry_reader.h for the way out, zip_format.h for the bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/system_info.h"
#include "platform/threads.h"

namespace quorvale {
struct Platform;
}

namespace quorvale::zip {

class Selection;
struct KnownDirectory;

enum class Result : int {
  kDone = 0,
  kNoSpace = 506,           // the target's drive is full
  kNoTemporarySpace = 507,  // the drive for temporary files is full
  kAborted = 518,
  kWarnings = 526,       // done, but something was left out
  kWrongPassword = 527,  // a password is wrong or missing
  kFailed = 1000,        // anything else: no archive, damaged, not readable, not writable
};

enum class Operation {
  kNone = 0,
  kZipping = 1,
  kUnzipping = 2,
  kTesting = 3,
  kListing = 4,
  kJoining = 5
};

// One entry of an archive's directory.
struct Entry {
  std::string name;  // "\" between components; a folder's name ends in "\"
  bool is_folder = false;
  bool encrypted = false;
  std::uint64_t size = 0;             // bytes before compression
  std::uint64_t compressed_size = 0;  // bytes in the archive
  std::uint32_t attributes = 0;       // file_attribute bits
  std::uint32_t crc = 0;
  FileTime modified = 0;
};

// What is about to be stored or written.
struct BeforeFile {
  std::string source;       // zipping: the source path. Unzipping: the entry's name.
  std::string entry_name;   // zipping: the name it is to get; may be changed
  std::string destination;  // unzipping: the full path it is to be written to; may be changed
  bool exclude = false;     // set to leave it out
};

// What was just stored.
struct StoredFile {
  const std::string& source;
  const std::string& entry_name;
  std::uint64_t size;  // bytes before compression
  std::uint32_t crc;   // CRC-32 of them
};

// What was just put at its place.
struct UnzippedFile {
  const std::string& entry_name;
  const std::string& destination;
  bool is_folder;
};

// Why something was left out, or is not what it was.
enum class WarningReason {
  kMissing,      // it is not there
  kUnreadable,   // it cannot be opened: in use, or no rights
  kCutShort,     // reading it failed before its end
  kChanged,      // it changed while it was read; what was read of it is stored
  kNoName,       // no name that an entry can have
  kDamaged,      // the archive's bytes of it are not what they were
  kUnsupported,  // packed or encrypted in a way that is not known here
  kUnsafe,       // a name that leads out of the folder, or that no file can have
  kPlaceTaken,   // a folder stands where the file belongs, or the other way round
  kNoPlace,      // the drive or share where it belongs is not there
  kNoRights,     // its place cannot be written: in use, or no rights
  kNoRoom,       // the disk is full
};

struct Warning {
  std::string name;  // zipping: the source path. Else the entry's name, or the path of a part.
  WarningReason reason = WarningReason::kMissing;
  std::string text;  // the reason in words
};

class Archive {
 public:
  explicit Archive(const Platform& platform);
  Archive(Files& files, SystemInfo& system, Threads& threads);
  ~Archive();
  Archive(const Archive&) = delete;
  Archive& operator=(const Archive&) = delete;

  // Properties.
  std::string archive_name;  // full path
  // Zipping: source paths in the order of the archive; one that ends in "\" is a folder entry, and
  // so is one that ends in "\*.*", which is reported without the "*.*".
  // Unzipping, testing, listing: entry names; "*" stands for any run of characters, also for "\".
  // Empty: all.
  std::vector<std::string> files_to_process;
  std::string password;  // UTF-8; used for zipping only when `encrypt` is set
  bool encrypt = false;
  int level = 6;                 // 9, 6, 1 or 0
  std::uint64_t split_size = 0;  // bytes of a part; 0: one file
  std::string unzip_folder;      // where entries go unless the event says otherwise
  bool preserve_paths = true;    // false: only the last component of an entry's name counts
  bool skip_existing = false;    // unzipping: leave a file that is there already
  // Unzipping: entries of one name are all offered, in their order; otherwise only the last one.
  bool every_of_one_name = false;
  // Unzipping: an entry whose name ends in a dot or blank or is that of a device is offered too,
  // and written where on_before_file sends it; nowhere under its own name.
  bool offer_unusual_names = false;
  std::uint32_t required_attributes = 0;  // only entries with all of these
  std::uint32_t excluded_attributes = 0;  // no entries with any of these
  int worker_threads = -1;  // -1: one for each processor, none where there is only one

  // Set from an event (or a pump inside one) to end the operation with kAborted. Cleared when an
  // operation starts.
  bool abort = false;

  // Events. Each may pump messages.
  std::function<void(BeforeFile&)> on_before_file;
  std::function<void(int percent)> on_file_progress;   // within the present file
  std::function<void(int percent)> on_total_progress;  // of all bytes of the operation
  std::function<void(const Warning&)> on_warning;
  // Testing: the bytes of the entries, in their order, before their check values are compared.
  std::function<void(const std::uint8_t* data, std::size_t count)> on_tested;
  // Zipping: once for each entry, in the order of the archive.
  std::function<void(const StoredFile&)> on_stored;
  // Unzipping: once for each entry, when it stands whole at its place.
  std::function<void(const UnzippedFile&)> on_unzipped;
  // Zipping: makes one more file when everything else is stored, since it may tell of it, and gives
  // its path. There is no archive without it: any other status than kOk ends the operation.
  std::function<FileStatus(std::string* path)> last_source;

  Operation current_operation() const { return operation_; }

  // Sets all properties to their defaults; the events stay.
  void ResetDefaults();

  // Makes the archive. It is written under a temporary name beside its target and takes its name
  // only when it is complete and has been read back. A source that is missing or cannot be read
  // is left out with a warning; so is the unread rest of one that shrinks meanwhile. A large file
  // that changes while it is read is stored with a warning. kFailed if
  // nothing at all could be stored. kNoTemporarySpace: the new archive does not fit beside the old
  // one of its name. A split archive "x.obk" has its first parts in "x.z01", "x.z02", ...
  Result Zip();
  // Writes the entries that files_to_process names. An entry whose name would climb out of the
  // folder, is absolute, or is no name a file can have, is left out with a warning. A file that
  // is replaced is either the whole old or the whole new one. Of two entries of one name the last
  // counts. A damaged entry is left out, the others are written, and the result is kFailed; so it
  // is if no entry has one of the names, or if none could be written. A full disk ends it, with a
  // warning of the entry that did not fit. Each entry that was not excluded is told by on_unzipped
  // or on_warning, unless the operation ended before.
  Result Unzip();
  // Reads every named entry and compares its check value; writes nothing. The classic cipher lets
  // one wrong password of 256 pass; where then no data unpacks, it is taken for a wrong password,
  // unless other entries have proved the password right. A part of a split archive that is missing
  // is named by a warning.
  Result Test();
  // Makes one file of an archive in parts: under `target`, where nothing may stand yet. It takes
  // its name only when it has been read back, which needs the password of a protected one. The
  // parts stay. kFailed if that cannot be done, of parts that are damaged or missing, too.
  Result Join(const std::string& target);
  // Reads the directory only. kFailed if this is no archive.
  Result List(std::vector<Entry>* entries);

 private:
  friend class Selection;
  Result Perform(Operation operation, const std::function<Result()>& work);

  Files& files_;
  SystemInfo& system_;
  Threads& threads_;
  Operation operation_ = Operation::kNone;
  // Of the archive that was read last, so that many small operations on it do not each read its
  // directory again.
  std::shared_ptr<KnownDirectory> known_directory_;
};

}  // namespace quorvale::zip
