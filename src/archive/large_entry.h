// Reads one large entry and hands on its data as it comes, in the two ways that there are: as one
// stream, or piece by piece where the directory tells the pieces.
#pragma once

#include <array>
#include <deque>
#include <functional>
#include <memory>

#include "archive/archive_input.h"
#include "archive/bytes.h"
#include "archive/entry_decoder.h"
#include "archive/entry_sink.h"
#include "archive/operation_monitor.h"
#include "archive/zip_format.h"
#include "platform/workers.h"

namespace quorvale::zip {

// What both ways work with. Everything outlives the reading of the entry.
struct LargeEntry {
  const Record& record;
  StreamDecoder& decoder;  // has begun
  ArchiveInput& input;
  std::uint64_t position;  // in `input`: the first byte behind the header of the encryption
  Workers& workers;
  OperationMonitor& monitor;
  EntrySink& sink;
};

// A worker unpacks into one buffer while this thread hands on the other and reads ahead.
class StreamRun {
 public:
  explicit StreamRun(const LargeEntry& entry);
  // kGood also where an abort, or the sink, ended it early.
  EntryStatus Run();

 private:
  void ReadAhead();
  void TakeWhatWasRead();
  // Has the next data unpacked, and hands on the data before it. False: `*status` is the end.
  bool Step(EntryStatus* status);
  bool HandOn(Bytes* ready);
  EntryStatus End();

  LargeEntry entry_;
  std::uint64_t unread_;  // packed bytes of the entry
  Bytes in_, next_;
  std::size_t used_ = 0;  // of in_
  std::array<Bytes, 2> out_;
  std::size_t turn_ = 0;  // which of out_ is unpacked to
  std::uint64_t handed_on_ = 0;
  bool readable_ = true;
  bool more_ = true;
};

// Workers unpack pieces side by side.
class PieceRun {
 public:
  // The decoder of a worker, by its number.
  using DecoderOf = std::function<WholeDecoder&(int worker)>;

  PieceRun(const LargeEntry& entry, DecoderOf decoder_of);
  // Waits for the workers.
  ~PieceRun();
  // kGood also where an abort, or the sink, ended it early.
  EntryStatus Run();

 private:
  struct Piece;

  bool PiecesLeft() const { return next_ < entry_.record.pieces.size(); }
  // False if it cannot be read.
  bool ReadNext();
  // Waits for the oldest piece and hands it on. False if it is damaged.
  bool TakeOldest();
  EntryStatus End();

  LargeEntry entry_;
  const DecoderOf decoder_of_;
  std::deque<std::shared_ptr<Piece>> ahead_;
  std::size_t next_ = 0;  // of the record's pieces
  std::uint64_t unread_;  // bytes of the entry when unpacked
  std::uint64_t handed_on_ = 0;
  std::uint32_t crc_ = 0;
  bool goes_on_ = true;  // neither an abort nor the sink ended it
};

}  // namespace quorvale::zip
