// Makes an archive: reads ahead, has the blocks compressed side by side, writes them in order, and
// reads the result back before it takes its name.
#pragma once

#include <atomic>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "archive/archive.h"
#include "archive/archive_output.h"
#include "archive/block_compressor.h"
#include "archive/classic_cipher.h"
#include "archive/encryptor.h"
#include "archive/operation_monitor.h"
#include "archive/zip_format.h"
#include "platform/files.h"
#include "platform/system_info.h"
#include "platform/workers.h"

namespace quorvale::zip {

class ZipOperation {
 public:
  ZipOperation(Archive& archive, Files& files, SystemInfo& system, Threads& threads,
               OperationMonitor& monitor);
  ~ZipOperation();

  Result Run();

 private:
  struct Source;
  struct Member;
  struct Block;

  std::vector<Source> FindSources();
  bool PassesAttributes(const FileInfo& info) const;
  // These return false when the operation is to end: after an abort, or when status_ tells why.
  bool AddSource(const Source& source);
  bool AddLastSource();
  bool AddFolder(Source source, const std::string& name);
  bool AddFile(const Source& source, const std::string& name);
  bool AddLargeFile(std::shared_ptr<Member> member, InputFile& file, std::uint64_t size);
  void WarnIfChanged(const Member& member, std::uint64_t size);
  bool AddSmallFile(std::shared_ptr<Member> member, InputFile& file, std::size_t size);
  std::shared_ptr<Member> NewMember(const Source& source, const std::string& name);

  // Gives a block to the workers; writes the oldest ones while too much waits.
  bool Enqueue(std::shared_ptr<Block> block);
  bool WriteOldest();
  bool WriteAll();
  bool Write(Block& block);
  // Takes a member that is written into the directory, and tells of it.
  void Keep(const Member& member);
  bool WriteWhole(Block& block);
  bool WritePiece(Block& block);
  bool BeginMember(Member& member);
  bool EndMember(Member& member);
  bool DropMember(Member& member);
  bool WriteDirectory();
  bool Check(FileStatus status);

  void Compress(Block& block, int worker);
  // Encrypts a whole member; a worker does it.
  static void Protect(Block& block);
  // Null if the system gives no random bytes.
  std::unique_ptr<Encryptor> NewEncryptor();
  std::string TakeRandom(std::size_t count);
  Result FailureResult() const;

  Archive& archive_;
  Files& files_;
  SystemInfo& system_;
  OperationMonitor& monitor_;
  std::unique_ptr<Workers> workers_;
  std::vector<std::unique_ptr<BlockCompressor>> compressors_;  // one for each worker
  std::atomic<bool> cancelled_{false};  // blocks that still wait are not compressed any more
  ArchiveOutput output_;
  bool replaces_ = false;  // an archive of this name is there
  FileStatus status_ = FileStatus::kOk;
  std::deque<std::shared_ptr<Block>> waiting_;
  std::uint64_t waiting_bytes_ = 0;
  std::vector<Record> records_;  // of the stored members, in order
  std::string random_;           // not used yet
};

}  // namespace quorvale::zip
