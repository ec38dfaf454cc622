#include "archive/entry_reader.h"

#include "archive/large_entry.h"

namespace quorvale::zip {
namespace {

// How much may be in memory at once for entries that wait for a worker or for their turn.
constexpr std::uint64_t kMostWaitingBytes = 16 * 1024 * 1024;
constexpr std::size_t kMostWaitingEntries = 256;
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
    if (entry->job != nullptr) workers_.WaitOut(entry->job);
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

bool EntryReader::FinishOldest(EntrySink& sink) {
  const std::shared_ptr<Waiting> entry = waiting_.front();
  if (entry->job != nullptr && !monitor_.WaitFor(workers_, entry->job)) return false;
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
    std::uint64_t position = 0;
    status = BeginData(record, decoder, &position);
    if (status == EntryStatus::kGood) {
      const LargeEntry entry = {record,   decoder, *directory_.input, position, workers_,
                                monitor_, sink};
      status = record.pieces.empty() ? StreamRun(entry).Run()
                                     : PieceRun(entry, [this](int worker) -> WholeDecoder& {
                                         return DecoderOf(worker);
                                       }).Run();
    }
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

}  // namespace quorvale::zip
