#include "archive/entry_reader.h"

#define ZLIB_CONST
#include <zlib.h>

#include <algorithm>
#include <array>

#include "archive/block_compressor.h"

namespace quorvale::zip {
namespace {

// How much may be in memory at once for entries that wait for a worker or for their turn.
constexpr std::uint64_t kMostWaitingBytes = 16 * 1024 * 1024;
constexpr std::size_t kMostWaitingEntries = 256;
constexpr int kWaitStep = 20;  // milliseconds
constexpr std::size_t kStreamIn = 256 * 1024;
constexpr std::size_t kStreamOut = 1024 * 1024;
// With odds like this a password is the right one; with odds like that nothing more is looked at.
constexpr std::uint64_t kSureOdds = 65536;
constexpr std::uint64_t kMostOdds = 1ull << 32;
constexpr std::size_t kMostPasswordChecks = 8;

std::uint64_t MemoryOf(const Record& record) { return record.size + record.compressed_size; }

}  // namespace

// An entry between the reading of its bytes and its delivery.
struct EntryReader::Waiting {
  const Record* record = nullptr;
  Bytes packed;
  Bytes data;
  EntryStatus status = EntryStatus::kGood;
  JobHandle job;  // null: nothing to wait for
};

EntryReader::EntryReader(const Directory& directory, Workers& workers, OperationMonitor& monitor,
                         std::vector<std::string> passwords)
    : directory_(directory),
      workers_(workers),
      monitor_(monitor),
      passwords_(std::move(passwords)),
      decoders_(static_cast<std::size_t>(workers.Count())) {}

EntryReader::~EntryReader() {
  // What the workers still use may go only when they are through.
  for (const std::shared_ptr<Waiting>& entry : waiting_) {
    while (entry->job != nullptr && !workers_.Wait(entry->job, kWaitStep)) {
    }
  }
}

WholeDecoder& EntryReader::DecoderOf(int worker) {
  std::unique_ptr<WholeDecoder>& decoder = decoders_[static_cast<std::size_t>(worker)];
  if (decoder == nullptr) decoder = std::make_unique<WholeDecoder>();
  return *decoder;
}

bool EntryReader::FindData(const Record& record, std::uint64_t* position) {
  std::uint8_t header[kLocalHeaderSize];
  ArchiveInput& input = *directory_.input;
  if (!directory_.Locate(record, position) || !input.Read(*position, header, sizeof header) ||
      Get32(header) != kLocalSignature) {
    return false;
  }
  *position += kLocalHeaderSize + Get16(header + 26) + Get16(header + 28);
  return *position <= input.Size() && record.compressed_size <= input.Size() - *position;
}

EntryStatus EntryReader::CheckPassword(const std::vector<const Record*>& records) {
  std::size_t checks = 0;
  for (const Record* record : records) {
    if (!record->Encrypted() || CheckRecord(*record) != EntryStatus::kGood) continue;
    const std::unique_ptr<Decryptor> decryptor = MakeDecryptor(*record);
    std::vector<std::uint8_t> header(decryptor->HeaderSize());
    std::uint64_t position = 0;
    if (!FindData(*record, &position) ||
        !directory_.input->Read(position, header.data(), header.size())) {
      return EntryStatus::kDamaged;
    }
    if (!decryptor->Begin(header.data(), passwords_)) return EntryStatus::kWrongPassword;
    password_odds_ *= decryptor->WrongPasswordsPerPass() / passwords_.size();
    if (password_odds_ >= kMostOdds || ++checks == kMostPasswordChecks) break;
  }
  return EntryStatus::kGood;
}

void EntryReader::Run(const std::vector<const Record*>& records, EntrySink& sink) {
  for (const Record* record : records) {
    if (!monitor_.Beat()) return;
    if (!sink.Wants(*record)) {
      if (!monitor_.Advance(record->compressed_size)) return;
      continue;
    }
    if (monitor_.Aborted()) return;
    if (record->IsFolder() ||
        (record->size <= kLargestWhole && record->compressed_size <= kLargestWhole)) {
      while (!waiting_.empty() && (waiting_bytes_ + MemoryOf(*record) > kMostWaitingBytes ||
                                   waiting_.size() >= kMostWaitingEntries)) {
        if (!FinishOldest(sink)) return;
      }
      StartWhole(*record);
      // Those that are ready need not wait for the memory to fill.
      while (!waiting_.empty() &&
             (waiting_.front()->job == nullptr || waiting_.front()->job->done)) {
        if (!FinishOldest(sink)) return;
      }
    } else {
      if (!FinishAll(sink)) return;
      if (!ReadLarge(*record, sink)) return;
    }
  }
  FinishAll(sink);
}

void EntryReader::StartWhole(const Record& record) {
  auto entry = std::make_shared<Waiting>();
  entry->record = &record;
  waiting_.push_back(entry);
  waiting_bytes_ += MemoryOf(record);
  if (record.IsFolder()) return;
  entry->status = CheckRecord(record);
  if (entry->status != EntryStatus::kGood) return;
  std::uint64_t position = 0;
  entry->packed = Bytes(static_cast<std::size_t>(record.compressed_size) + WholeDecoder::kPieceEnd);
  entry->packed.size = static_cast<std::size_t>(record.compressed_size);
  if (!FindData(record, &position) ||
      !directory_.input->Read(position, entry->packed.data.get(), entry->packed.size)) {
    entry->status = EntryStatus::kDamaged;
    return;
  }
  entry->job = workers_.Start([this, entry = entry.get()](int worker) {
    entry->status =
        DecoderOf(worker).Decode(*entry->record, &entry->packed, passwords_, &entry->data);
    entry->packed = Bytes();
  });
}

bool EntryReader::WaitFor(const JobHandle& job) {
  while (!workers_.Wait(job, kWaitStep)) {
    if (!monitor_.Beat()) return false;
  }
  return true;
}

bool EntryReader::FinishOldest(EntrySink& sink) {
  const std::shared_ptr<Waiting> entry = waiting_.front();
  if (entry->job != nullptr && !WaitFor(entry->job)) return false;
  waiting_.pop_front();
  waiting_bytes_ -= MemoryOf(*entry->record);
  monitor_.NewFile();
  if (entry->status == EntryStatus::kGood && entry->data.size > 0) {
    sink.Take(*entry->record, entry->data.data.get(), entry->data.size);
  }
  if (!monitor_.FileProgress(1, 1)) return false;
  return End(*entry->record, entry->status, sink) &&
         monitor_.Advance(entry->record->compressed_size);
}

bool EntryReader::FinishAll(EntrySink& sink) {
  while (!waiting_.empty()) {
    if (!FinishOldest(sink)) return false;
  }
  return true;
}

bool EntryReader::End(const Record& record, EntryStatus status, EntrySink& sink) {
  if (record.Encrypted()) {
    if (status == EntryStatus::kGood) password_odds_ = kSureOdds;
    // The check in front of the data lets some wrong passwords pass. As long as no entry came out
    // well, data that does not unpack is more likely the password's fault than the archive's.
    if (status == EntryStatus::kDamaged && password_odds_ < kSureOdds) {
      status = EntryStatus::kWrongPassword;
    }
  }
  return sink.Done(record, status);
}

bool EntryReader::ReadLarge(const Record& record, EntrySink& sink) {
  monitor_.NewFile();
  EntryStatus status = CheckRecord(record);
  if (status == EntryStatus::kGood) {
    StreamDecoder decoder(record, passwords_);
    status =
        record.pieces.empty() ? RunStream(record, decoder, sink) : RunPieces(record, decoder, sink);
  }
  return !monitor_.Aborted() && End(record, status, sink);
}

EntryStatus EntryReader::BeginData(const Record& record, StreamDecoder& decoder,
                                   std::uint64_t* position) {
  std::vector<std::uint8_t> header(decoder.HeaderSize() + 1);
  if (!FindData(record, position) ||
      !directory_.input->Read(*position, header.data(), decoder.HeaderSize())) {
    return EntryStatus::kDamaged;
  }
  *position += decoder.HeaderSize();
  return decoder.Begin(header.data());
}

// A worker unpacks into one buffer while this thread hands on the other and reads ahead.
EntryStatus EntryReader::RunStream(const Record& record, StreamDecoder& decoder, EntrySink& sink) {
  ArchiveInput& input = *directory_.input;
  std::uint64_t position = 0;
  const EntryStatus begun = BeginData(record, decoder, &position);
  if (begun != EntryStatus::kGood) return begun;
  std::uint64_t unread = record.compressed_size - decoder.HeaderSize() - decoder.TrailerSize();

  Bytes in(kStreamIn);
  Bytes next(kStreamIn);
  std::size_t used = 0;
  std::array<Bytes, 2> out = {Bytes(kStreamOut), Bytes(kStreamOut)};
  std::size_t turn = 0;
  std::uint64_t handed_on = 0;
  bool readable = true;
  const auto read_ahead = [&] {
    if (next.size > 0 || unread == 0) return;
    next.size = static_cast<std::size_t>(std::min<std::uint64_t>(unread, next.capacity));
    readable = input.Read(position, next.data.get(), next.size);
    position += next.size;
    unread -= next.size;
    monitor_.Advance(next.size);
  };

  read_ahead();
  bool more = true;
  while (more) {
    if (used == in.size && next.size > 0) {
      std::swap(in, next);
      next.size = 0;
      used = 0;
      decoder.Decrypt(in.data.get(), in.size);
    }
    bool good = false;
    Bytes& target = out[turn];
    const JobHandle job = workers_.Start([&](int) { good = decoder.Unpack(in, &used, &target); });
    Bytes& ready = out[1 - turn];
    bool goes_on = true;
    if (ready.size > 0) {
      goes_on = sink.Take(record, ready.data.get(), ready.size);
      handed_on += ready.size;
      ready.size = 0;
    }
    read_ahead();
    // The worker uses this function's buffers: it is waited for even after an abort.
    WaitFor(job);
    while (!workers_.Wait(job, kWaitStep)) {
    }
    if (!monitor_.FileProgress(handed_on, record.size)) return EntryStatus::kGood;
    if (!good || !readable) return EntryStatus::kDamaged;
    if (!goes_on) return EntryStatus::kGood;
    more = target.size > 0 || used < in.size || next.size > 0 || unread > 0;
    turn = 1 - turn;
  }
  std::vector<std::uint8_t> trailer(decoder.TrailerSize() + 1);
  if (!input.Read(position, trailer.data(), decoder.TrailerSize())) return EntryStatus::kDamaged;
  return decoder.End(trailer.data());
}

EntryStatus EntryReader::RunPieces(const Record& record, StreamDecoder& decoder, EntrySink& sink) {
  struct Piece {
    Bytes packed;
    Bytes data;
    std::uint32_t crc = 0;
    bool good = false;
    JobHandle job;
  };
  ArchiveInput& input = *directory_.input;
  std::uint64_t position = 0;
  const EntryStatus begun = BeginData(record, decoder, &position);
  if (begun != EntryStatus::kGood) return begun;

  std::deque<std::shared_ptr<Piece>> ahead;
  const std::size_t most_ahead = static_cast<std::size_t>(workers_.Count()) + 2;
  std::uint64_t unread = record.size;
  std::uint64_t handed_on = 0;
  std::uint32_t crc = 0;
  bool good = true;
  bool goes_on = true;
  std::size_t next = 0;
  while (good && goes_on && (next < record.pieces.size() || !ahead.empty())) {
    if (next < record.pieces.size() && ahead.size() < most_ahead) {
      auto piece = std::make_shared<Piece>();
      const std::uint32_t size = record.pieces[next++];
      piece->packed = Bytes(size + WholeDecoder::kPieceEnd);
      piece->packed.size = size;
      good = input.Read(position, piece->packed.data.get(), size);
      if (!good) break;
      position += size;
      decoder.Decrypt(piece->packed.data.get(), size);
      piece->data = Bytes(static_cast<std::size_t>(std::min<std::uint64_t>(unread, kBlockSize)));
      unread -= piece->data.capacity;
      piece->job = workers_.Start([this, piece = piece.get()](int worker) {
        piece->good = DecoderOf(worker).DecodePiece(&piece->packed, &piece->data, &piece->crc);
        piece->packed = Bytes();
      });
      ahead.push_back(std::move(piece));
      goes_on = monitor_.Advance(size);
      continue;
    }
    const std::shared_ptr<Piece> oldest = ahead.front();
    if (!WaitFor(oldest->job)) break;
    ahead.pop_front();
    good = oldest->good;
    if (!good) break;
    crc = static_cast<std::uint32_t>(
        crc32_combine(crc, oldest->crc, static_cast<z_off_t>(oldest->data.size)));
    goes_on = sink.Take(record, oldest->data.data.get(), oldest->data.size);
    handed_on += oldest->data.size;
    goes_on = monitor_.FileProgress(handed_on, record.size) && goes_on;
  }
  for (const std::shared_ptr<Piece>& piece : ahead) {
    while (!workers_.Wait(piece->job, kWaitStep)) {
    }
  }
  if (!good) return EntryStatus::kDamaged;
  if (!goes_on || monitor_.Aborted()) return EntryStatus::kGood;
  // What is left is the end of the stream, and of the encryption.
  std::vector<std::uint8_t> rest(kStreamEnd.size() + decoder.TrailerSize());
  if (!input.Read(position, rest.data(), rest.size())) return EntryStatus::kDamaged;
  decoder.Decrypt(rest.data(), kStreamEnd.size());
  const bool ended =
      std::equal(kStreamEnd.begin(), kStreamEnd.end(), rest.begin(),
                 [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
  if (!ended) return EntryStatus::kDamaged;
  return decoder.EndOfPieces(rest.data() + kStreamEnd.size(), crc);
}

}  // namespace quorvale::zip
