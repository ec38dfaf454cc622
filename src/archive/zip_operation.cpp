#include "archive/zip_operation.h"

#define ZLIB_CONST
#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>

#include "archive/entry_name.h"
#include "archive/read_back.h"
#include "base/paths.h"
#include "base/text.h"

namespace quorvale::zip {
namespace {

// How much may be in memory at once between reading and writing.
constexpr std::uint64_t kMostWaitingBytes = 8 * 1024 * 1024;
constexpr std::size_t kMostWaitingBlocks = 256;
// Above this the compressed size can need more than 32 bits, even if nothing shrinks.
constexpr std::uint64_t kZip64Size = 0xFFF00000;
constexpr std::size_t kLongestName = 65535;
constexpr int kPackedPercent = 90;  // the rest is for reading back

// Fills the buffer as far as the file goes. False on an error.
bool ReadFully(InputFile& file, Bytes* bytes) {
  bytes->size = 0;
  while (bytes->size < bytes->capacity) {
    const std::ptrdiff_t got =
        file.Read(bytes->data.get() + bytes->size, bytes->capacity - bytes->size);
    if (got < 0) return false;
    if (got == 0) break;
    bytes->size += static_cast<std::size_t>(got);
  }
  return true;
}

}  // namespace

// What is to be stored, as it was found.
struct ZipOperation::Source {
  std::string path;  // a folder's ends in "\"
  FileInfo info;
};

// A file on its way into the archive. Only the thread of the operation touches it.
struct ZipOperation::Member {
  std::string source;
  Record record;
  std::uint64_t expected_size = 0;
  bool begun = false;
  std::unique_ptr<Encryptor> encryptor;  // null where nothing is protected
};

// A piece of work for a worker.
struct ZipOperation::Block {
  std::shared_ptr<Member> member;
  bool whole = false;   // the member consists of this block alone
  bool last = false;    // of a streamed member; has no data itself
  bool failed = false;  // with `last`: the rest cannot be read
  Bytes data;
  Bytes packed;  // empty: the data is stored as it is
  std::size_t data_size = 0;
  std::uint32_t crc = 0;
  // Of a whole member that is protected, and the bytes in front of and behind its data.
  std::unique_ptr<Encryptor> encryptor;
  std::string front, back;
  JobHandle job;  // null: nothing to wait for
};

ZipOperation::ZipOperation(Archive& archive, Files& files, SystemInfo& system, Threads& threads,
                           OperationMonitor& monitor)
    : archive_(archive),
      files_(files),
      system_(system),
      monitor_(monitor),
      output_(files, archive.archive_name, archive.split_size) {
  const int processors = threads.ProcessorCount();
  const int wanted = archive.worker_threads;
  workers_ =
      std::make_unique<Workers>(threads, wanted >= 0 ? wanted : (processors > 1 ? processors : 0));
  compressors_.resize(static_cast<std::size_t>(workers_->Count()));
}

ZipOperation::~ZipOperation() {
  cancelled_ = true;
  // What the workers still use may go only when they are through.
  workers_.reset();
}

Result ZipOperation::Run() {
  if (archive_.archive_name.empty()) return Result::kFailed;
  if (archive_.encrypt && archive_.password.empty()) return Result::kWrongPassword;
  replaces_ = files_.Stat(archive_.archive_name).has_value();
  if (!Check(output_.Open())) return FailureResult();
  const std::vector<Source> sources = FindSources();
  if (monitor_.Aborted()) return Result::kAborted;
  for (const Source& source : sources) {
    if (!AddSource(source)) return FailureResult();
  }
  if (!WriteAll() || !AddLastSource()) return FailureResult();
  if (records_.empty()) return Result::kFailed;
  if (!WriteDirectory() || !Check(output_.Finish())) return FailureResult();
  ReadBack read_back = {files_, system_, *workers_, monitor_};
  if (!read_back.Fits(output_.TemporaryPaths(), records_, archive_.password, kPackedPercent)) {
    return monitor_.Aborted() ? Result::kAborted : Result::kFailed;
  }
  if (monitor_.Aborted()) return Result::kAborted;
  if (!Check(output_.Publish())) return FailureResult();
  monitor_.Finish();
  return monitor_.Warned() ? Result::kWarnings : Result::kDone;
}

Result ZipOperation::FailureResult() const {
  if (monitor_.Aborted()) return Result::kAborted;
  if (status_ == FileStatus::kNoSpace) {
    return replaces_ ? Result::kNoTemporarySpace : Result::kNoSpace;
  }
  return Result::kFailed;
}

bool ZipOperation::Check(FileStatus status) {
  if (status == FileStatus::kOk) return true;
  status_ = status;
  return false;
}

bool ZipOperation::PassesAttributes(const FileInfo& info) const {
  return (info.attributes & archive_.required_attributes) == archive_.required_attributes &&
         (info.attributes & archive_.excluded_attributes) == 0;
}

std::vector<ZipOperation::Source> ZipOperation::FindSources() {
  std::vector<Source> sources;
  std::uint64_t total = 0;
  for (const std::string& named : archive_.files_to_process) {
    if (!monitor_.Beat()) break;
    std::string path = named;
    if (path.ends_with("\\*.*")) path.resize(path.size() - 3);
    const std::optional<FileInfo> info = files_.Stat(path);
    if (!info) {
      monitor_.Warn(path, WarningReason::kMissing, "it is not there");
      continue;
    }
    if (!PassesAttributes(*info)) continue;
    if (info->IsFolder()) path = WithBackslash(path);
    total += info->size;
    sources.push_back({path, *info});
  }
  monitor_.BeginStage(total, 0, kPackedPercent);
  return sources;
}

bool ZipOperation::AddLastSource() {
  if (!archive_.last_source || records_.empty()) return true;
  std::string path;
  if (!Check(archive_.last_source(&path))) return false;
  const std::optional<FileInfo> info = files_.Stat(path);
  if (!info || info->IsFolder()) return Check(FileStatus::kFailed);
  const std::size_t others = records_.size();
  if (!AddSource({path, *info}) || !WriteAll()) return false;
  return records_.size() > others || Check(FileStatus::kFailed);
}

bool ZipOperation::AddSource(const Source& source) {
  if (!monitor_.Beat()) return false;
  BeforeFile file;
  file.source = source.path;
  file.entry_name = DefaultEntryName(source.path, archive_.preserve_paths);
  if (!monitor_.BeforeFile(&file)) return false;
  if (file.exclude) return monitor_.Advance(source.info.size);
  std::string name = file.entry_name;
  name.erase(0, std::min(name.find_first_not_of('\\'), name.size()));
  if (name.empty() || name.size() > kLongestName) {
    monitor_.Warn(source.path, WarningReason::kNoName, "no name that an entry can have");
    return monitor_.Advance(source.info.size);
  }
  return source.info.IsFolder() ? AddFolder(source, name) : AddFile(source, name);
}

std::shared_ptr<ZipOperation::Member> ZipOperation::NewMember(const Source& source,
                                                              const std::string& name) {
  auto member = std::make_shared<Member>();
  member->source = source.path;
  Record& record = member->record;
  record.name = name;
  record.attributes = source.info.attributes & (file_attribute::kReadOnly |
                                                file_attribute::kHidden | file_attribute::kSystem |
                                                file_attribute::kFolder | file_attribute::kArchive);
  record.modified = source.info.modified;
  record.dos_time = DosTimeOf(system_.ToLocal(source.info.modified));
  return member;
}

bool ZipOperation::AddFolder(Source source, const std::string& name) {
  auto block = std::make_shared<Block>();
  source.info.attributes |= file_attribute::kFolder;
  block->member = NewMember(source, WithBackslash(name));
  block->whole = true;
  return Enqueue(std::move(block));
}

bool ZipOperation::AddFile(const Source& source, const std::string& name) {
  const std::unique_ptr<InputFile> file = files_.OpenRead(source.path);
  if (file == nullptr) {
    monitor_.Warn(source.path, WarningReason::kUnreadable, "it cannot be opened");
    return monitor_.Advance(source.info.size);
  }
  std::shared_ptr<Member> member =
      NewMember(source, name.ends_with("\\") ? name.substr(0, name.size() - 1) : name);
  if (archive_.encrypt) {
    member->record.flags |= kFlagEncrypted;
    member->encryptor = NewEncryptor();
    if (member->encryptor == nullptr) {
      monitor_.Warn(source.path, WarningReason::kUnreadable,
                    "the system gives no random bytes to protect it with");
      return Check(FileStatus::kFailed);
    }
  }
  // The size of this moment is what is stored, even if the file grows meanwhile.
  const std::uint64_t size = file->Size();
  member->expected_size = size;
  if (size > kBlockSize) return AddLargeFile(std::move(member), *file, size);
  return AddSmallFile(std::move(member), *file, static_cast<std::size_t>(size));
}

bool ZipOperation::AddSmallFile(std::shared_ptr<Member> member, InputFile& file, std::size_t size) {
  auto block = std::make_shared<Block>();
  block->data = Bytes(size);
  if (!ReadFully(file, &block->data)) {
    monitor_.Warn(member->source, WarningReason::kCutShort, "it cannot be read");
    return monitor_.Advance(size);
  }
  if (block->data.size < size)
    monitor_.Warn(member->source, WarningReason::kChanged, "it became shorter meanwhile");
  block->encryptor = std::move(member->encryptor);
  block->member = std::move(member);
  block->whole = true;
  return Enqueue(std::move(block));
}

bool ZipOperation::AddLargeFile(std::shared_ptr<Member> member, InputFile& file,
                                std::uint64_t size) {
  Record& record = member->record;
  record.method = archive_.level == 0 ? kMethodStored : kMethodDeflated;
  record.zip64 = size >= kZip64Size;
  // Where the header cannot be written again, sizes and check value follow the data.
  if (archive_.encrypt || archive_.split_size != 0) record.flags |= kFlagDescriptor;

  auto last = std::make_shared<Block>();
  last->member = member;
  last->last = true;
  for (std::uint64_t left = size; left > 0 && !last->failed;) {
    auto block = std::make_shared<Block>();
    block->member = member;
    block->data = Bytes(static_cast<std::size_t>(std::min<std::uint64_t>(left, kBlockSize)));
    if (!ReadFully(file, &block->data)) {
      monitor_.Warn(member->source, WarningReason::kCutShort, "it cannot be read");
      last->failed = true;
      break;
    }
    left -= block->data.capacity;
    const bool shorter = block->data.size < block->data.capacity;
    if (shorter)
      monitor_.Warn(member->source, WarningReason::kChanged, "it became shorter meanwhile");
    if (block->data.size > 0 && !Enqueue(std::move(block))) return false;
    if (shorter) return Enqueue(std::move(last));
  }
  if (!last->failed) WarnIfChanged(*member, size);
  return Enqueue(std::move(last));
}

// What was read in many steps may be of several moments.
void ZipOperation::WarnIfChanged(const Member& member, std::uint64_t size) {
  const std::optional<FileInfo> now = files_.Stat(member.source);
  if (now && now->size == size && now->modified == member.record.modified) return;
  monitor_.Warn(member.source, WarningReason::kChanged, "it changed while it was read");
}

std::string ZipOperation::TakeRandom(std::size_t count) {
  // The system is asked for many at once.
  constexpr std::size_t kReserve = 4096;
  if (random_.size() < count) random_ = system_.RandomBytes(kReserve);
  if (random_.size() < count) return "";
  const std::string bytes = random_.substr(random_.size() - count);
  random_.resize(random_.size() - count);
  return bytes;
}

std::unique_ptr<Encryptor> ZipOperation::NewEncryptor() {
  std::string noise = TakeRandom(kClassicHeaderSize);
  if (noise.empty()) return nullptr;
  return std::make_unique<ClassicEncryptor>(archive_.password, std::move(noise));
}

void ZipOperation::Protect(Block& block) {
  Bytes& bytes = block.packed.size > 0 ? block.packed : block.data;
  // The check byte is the check value's, since no descriptor follows.
  block.front = block.encryptor->Begin(static_cast<std::uint8_t>(block.crc >> 24));
  block.encryptor->Apply(bytes.data.get(), bytes.size);
  block.back = block.encryptor->End();
}

void ZipOperation::Compress(Block& block, int worker) {
  if (cancelled_) return;
  block.crc = libdeflate_crc32(0, block.data.data.get(), block.data.size);
  if (archive_.level > 0) {
    std::unique_ptr<BlockCompressor>& compressor = compressors_[static_cast<std::size_t>(worker)];
    if (compressor == nullptr) {
      compressor = std::make_unique<BlockCompressor>(std::clamp(archive_.level, 1, 9));
    }
    block.packed =
        block.whole ? compressor->CompressWhole(block.data) : compressor->CompressPiece(block.data);
    if (block.packed.size > 0) block.data = Bytes();
  }
  if (block.encryptor != nullptr) Protect(block);
}

bool ZipOperation::Enqueue(std::shared_ptr<Block> block) {
  block->data_size = block->data.size;
  while (!waiting_.empty() && (waiting_bytes_ + block->data_size > kMostWaitingBytes ||
                               waiting_.size() >= kMostWaitingBlocks)) {
    if (!WriteOldest()) return false;
  }
  waiting_bytes_ += block->data_size;
  waiting_.push_back(block);
  if (block->data_size > 0 || block->encryptor != nullptr) {
    block->job =
        workers_->Start([this, block = block.get()](int worker) { Compress(*block, worker); });
  }
  // Those that are ready need not wait for the memory to fill.
  while (!waiting_.empty() && (waiting_.front()->job == nullptr || waiting_.front()->job->done)) {
    if (!WriteOldest()) return false;
  }
  return monitor_.Beat();
}

bool ZipOperation::WriteOldest() {
  const std::shared_ptr<Block> block = waiting_.front();
  if (block->job != nullptr && !monitor_.WaitFor(*workers_, block->job)) return false;
  waiting_.pop_front();
  waiting_bytes_ -= block->data_size;
  return Write(*block) && monitor_.Advance(block->data_size);
}

bool ZipOperation::WriteAll() {
  while (!waiting_.empty()) {
    if (!WriteOldest()) return false;
  }
  return true;
}

bool ZipOperation::Write(Block& block) {
  Member& member = *block.member;
  if (block.whole) {
    monitor_.NewFile();
    return WriteWhole(block) && monitor_.FileProgress(1, 1);
  }
  if (!member.begun && !BeginMember(member)) return false;
  if (!block.last) {
    return WritePiece(block) && monitor_.FileProgress(member.record.size, member.expected_size);
  }
  if (block.failed) return DropMember(member);
  if (!EndMember(member)) return false;
  return monitor_.FileProgress(1, 1);
}

bool ZipOperation::WriteWhole(Block& block) {
  Member& member = *block.member;
  Record& record = member.record;
  Bytes& bytes = block.packed.size > 0 ? block.packed : block.data;
  record.method = block.packed.size > 0 ? kMethodDeflated : kMethodStored;
  record.size = block.data_size;
  record.crc = block.crc;
  record.compressed_size = block.front.size() + bytes.size + block.back.size();
  const std::string header = LocalHeader(record);
  if (!Check(output_.Reserve(header.size()))) return false;
  record.part = output_.Part();
  record.offset = output_.Offset();
  if (!Check(output_.Write(header.data(), header.size())) ||
      !Check(output_.Write(block.front.data(), block.front.size())) ||
      !Check(output_.Write(bytes.data.get(), bytes.size)) ||
      !Check(output_.Write(block.back.data(), block.back.size()))) {
    return false;
  }
  Keep(member);
  return true;
}

void ZipOperation::Keep(const Member& member) {
  const Record& record = member.record;
  records_.push_back(record);
  if (archive_.on_stored) {
    archive_.on_stored({member.source, record.name, record.size, record.crc});
  }
}

bool ZipOperation::BeginMember(Member& member) {
  monitor_.NewFile();
  member.begun = true;
  Record& record = member.record;
  const std::string header = LocalHeader(record);
  if (!Check(output_.Reserve(header.size()))) return false;
  record.part = output_.Part();
  record.offset = output_.Offset();
  if (!Check(output_.Write(header.data(), header.size()))) return false;
  if (member.encryptor == nullptr) return true;
  const std::string front = member.encryptor->Begin(ClassicCheckByte(record));
  record.compressed_size = front.size();
  return Check(output_.Write(front.data(), front.size()));
}

bool ZipOperation::WritePiece(Block& block) {
  Member& member = *block.member;
  Record& record = member.record;
  Bytes& bytes = record.method == kMethodDeflated ? block.packed : block.data;
  record.crc = static_cast<std::uint32_t>(
      crc32_combine(record.crc, block.crc, static_cast<z_off_t>(block.data_size)));
  record.size += block.data_size;
  record.compressed_size += bytes.size;
  if (record.method == kMethodDeflated) {
    record.pieces.push_back(static_cast<std::uint32_t>(bytes.size));
  }
  if (member.encryptor != nullptr) member.encryptor->Apply(bytes.data.get(), bytes.size);
  return Check(output_.Write(bytes.data.get(), bytes.size));
}

bool ZipOperation::EndMember(Member& member) {
  Record& record = member.record;
  std::string end = record.method == kMethodDeflated ? kStreamEnd : "";
  if (member.encryptor != nullptr) {
    member.encryptor->Apply(reinterpret_cast<std::uint8_t*>(end.data()), end.size());
    end += member.encryptor->End();
  }
  record.compressed_size += end.size();
  if (!Check(output_.Write(end.data(), end.size()))) return false;
  const bool later = (record.flags & kFlagDescriptor) != 0;
  if (!Check(later ? output_.WriteRecord(DataDescriptor(record))
                   : output_.Rewrite(record.offset, LocalHeader(record)))) {
    return false;
  }
  Keep(member);
  return true;
}

bool ZipOperation::DropMember(Member& member) {
  return Check(output_.Rewind(member.record.part, member.record.offset));
}

bool ZipOperation::WriteDirectory() {
  DirectoryEnd end;
  end.count = records_.size();
  for (const Record& record : records_) end.directory_size += CentralHeader(record).size();
  end.directory_offset = output_.Offset();
  const std::size_t end_size = EndRecords(end, 0, end.count).size();
  if (!Check(output_.CoverRemains(end.directory_size + end_size))) return false;
  if (!Check(output_.Reserve(CentralHeader(records_.front()).size()))) return false;
  end.directory_part = output_.Part();
  end.directory_offset = output_.Offset();
  std::uint64_t count_here = 0;
  std::uint32_t part = output_.Part();
  for (const Record& record : records_) {
    if (!monitor_.Beat()) return false;
    if (!Check(output_.WriteRecord(CentralHeader(record)))) return false;
    if (output_.Part() != part) count_here = 0;
    part = output_.Part();
    ++count_here;
  }
  // The end records stay together.
  constexpr std::size_t kLongestEnd = kZip64EndSize + kZip64LocatorSize + kEndSize;
  if (!Check(output_.Reserve(kLongestEnd))) return false;
  if (output_.Part() != part) count_here = 0;
  end.this_part = output_.Part();
  return Check(output_.WriteRecord(EndRecords(end, output_.Offset(), count_here)));
}

}  // namespace quorvale::zip
