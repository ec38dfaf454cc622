// Reads many entries of an archive in their order, with workers that decode side by side.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "archive/directory_reader.h"
#include "archive/entry_decoder.h"
#include "archive/entry_sink.h"
#include "archive/operation_monitor.h"
#include "platform/workers.h"

namespace quorvale::zip {

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
  bool ReadLarge(const Record& record, EntrySink& sink);
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
