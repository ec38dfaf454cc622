#include "archive/read_back.h"

#include "archive/directory_reader.h"
#include "archive/entry_reader.h"

namespace quorvale::zip {
namespace {

// Counts the entries that read back well.
class GoodEntries : public EntrySink {
 public:
  bool Wants(const Record&) override { return true; }
  bool Take(const Record&, const std::uint8_t*, std::size_t) override { return true; }
  bool Done(const Record&, EntryStatus status) override {
    if (status == EntryStatus::kGood) ++count_;
    return status == EntryStatus::kGood;
  }
  std::size_t count() const { return count_; }

 private:
  std::size_t count_ = 0;
};

bool IsSame(const Record& meant, const Record& read) {
  return meant.name == read.name && meant.size == read.size && meant.crc == read.crc &&
         meant.compressed_size == read.compressed_size && meant.part == read.part &&
         meant.offset == read.offset && meant.Encrypted() == read.Encrypted() &&
         meant.aes_strength == read.aes_strength &&
         (read.pieces.empty() || meant.pieces == read.pieces);
}

}  // namespace

bool ReadBack::Fits(const std::vector<std::string>& paths, const std::vector<Record>& meant,
                    const std::string& password, int first_percent) {
  Directory directory;
  if (!ReadDirectoryOfParts(files, system, paths, &directory)) return false;
  if (directory.records.size() != meant.size()) return false;
  std::vector<const Record*> records;
  std::uint64_t total = 0;
  for (std::size_t i = 0; i < meant.size(); ++i) {
    const Record& read = directory.records[i];
    if (!IsSame(meant[i], read)) return false;
    records.push_back(&read);
    total += read.compressed_size;
  }
  monitor.BeginStage(total, first_percent, 100);
  EntryReader reader(directory, workers, monitor, {password});
  GoodEntries sink;
  reader.Run(records, sink);
  return sink.count() == records.size();
}

}  // namespace quorvale::zip
