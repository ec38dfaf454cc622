// Reads many entries of an archive in their order, with workers that decode side by side.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "archive/directory_reader.h"
#include "archive/entry_decoder.h"
#include "archive/operation_monitor.h"
#include "platform/workers.h"

namespace quorvale::zip {

// Takes what is read. All calls come on the thread of EntryReader::Run.
class EntrySink {
 public:
  virtual ~EntrySink() = default;
  // Before the data of an entry is read. False: it is left out, and not heard of again. Entries
  // are asked for ahead of the data of those before them.
  virtual bool Wants(const Record& record) = 0;
  // Data of an entry that was wanted; entries come in the order in which they were asked for.
  // False: no more data of this entry, please.
  virtual bool Take(const Record& record, const std::uint8_t* data, std::size_t count) = 0;
  // The end of an entry that was wanted. False: the operation ends here.
  virtual bool Done(const Record& record, EntryStatus status) = 0;
};

class EntryReader {
 public:
  EntryReader(const Directory& directory, Workers& workers, OperationMonitor& monitor,
              std::vector<std::string> passwords);
  ~EntryReader();

  // kWrongPassword if the password does not fit some of the entries, by the checks in front of
  // their data; only the first few are looked at. kDamaged if such a check cannot be read.
  EntryStatus CheckPassword(const std::vector<const Record*>& records);

  // Reads the entries. Ends early after an abort, or when the sink says so. A folder has no data.
  void Run(const std::vector<const Record*>& records, EntrySink& sink);

 private:
  struct Waiting;

  // The position of an entry's packed data. False if its local header is not what it should be.
  bool FindData(const Record& record, std::uint64_t* position);
  // Reads a small entry and has it decoded.
  void StartWhole(const Record& record);
  // Waits for the oldest entry, and hands it over. False: the operation ends.
  bool FinishOldest(EntrySink& sink);
  bool FinishAll(EntrySink& sink);
  // Waits for a job. False after an abort.
  bool WaitFor(const JobHandle& job);
  bool ReadLarge(const Record& record, EntrySink& sink);
  // The bytes of an entry as one stream; or, where its pieces are known, side by side.
  EntryStatus RunStream(const Record& record, StreamDecoder& decoder, EntrySink& sink);
  EntryStatus RunPieces(const Record& record, StreamDecoder& decoder, EntrySink& sink);
  // Begins to read the data of a large entry: looks at the header of its encryption.
  EntryStatus BeginData(const Record& record, StreamDecoder& decoder, std::uint64_t* position);
  bool End(const Record& record, EntryStatus status, EntrySink& sink);
  WholeDecoder& DecoderOf(int worker);

  const Directory& directory_;
  Workers& workers_;
  OperationMonitor& monitor_;
  const std::vector<std::string> passwords_;
  std::vector<std::unique_ptr<WholeDecoder>> decoders_;  // one for each worker
  std::deque<std::shared_ptr<Waiting>> waiting_;
  std::uint64_t waiting_bytes_ = 0;
  std::uint64_t password_odds_ = 1;  // that a wrong one got here: one in so many
};

}  // namespace quorvale::zip
