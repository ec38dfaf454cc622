#include "archive/large_entry.h"

#define ZLIB_CONST
#include <zlib.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace quorvale::zip {
namespace {

constexpr std::size_t kStreamIn = 256 * 1024;
constexpr std::size_t kStreamOut = 1024 * 1024;

}  // namespace

StreamRun::StreamRun(const LargeEntry& entry)
    : entry_(entry),
      unread_(entry.record.compressed_size - entry.decoder.HeaderSize() -
              entry.decoder.TrailerSize()),
      in_(kStreamIn),
      next_(kStreamIn),
      out_{Bytes(kStreamOut), Bytes(kStreamOut)} {}

void StreamRun::ReadAhead() {
  if (next_.size > 0 || unread_ == 0) return;
  next_.size = static_cast<std::size_t>(std::min<std::uint64_t>(unread_, next_.capacity));
  readable_ = entry_.input.Read(entry_.position, next_.data.get(), next_.size);
  entry_.position += next_.size;
  unread_ -= next_.size;
  entry_.monitor.Advance(next_.size);
}

void StreamRun::TakeWhatWasRead() {
  if (used_ < in_.size || next_.size == 0) return;
  std::swap(in_, next_);
  next_.size = 0;
  used_ = 0;
  entry_.decoder.Decrypt(in_.data.get(), in_.size);
}

bool StreamRun::HandOn(Bytes* ready) {
  if (ready->size == 0) return true;
  const bool goes_on = entry_.sink.Take(entry_.record, ready->data.get(), ready->size);
  handed_on_ += ready->size;
  ready->size = 0;
  return goes_on;
}

bool StreamRun::Step(EntryStatus* status) {
  TakeWhatWasRead();
  bool good = false;
  Bytes& target = out_[turn_];
  const JobHandle job =
      entry_.workers.Start([&](int) { good = entry_.decoder.Unpack(in_, &used_, &target); });
  const bool goes_on = HandOn(&out_[1 - turn_]);
  ReadAhead();
  // The worker uses the buffers: it is waited for even after an abort.
  if (!entry_.monitor.WaitFor(entry_.workers, job)) entry_.workers.WaitOut(job);
  *status = EntryStatus::kGood;
  if (!entry_.monitor.FileProgress(handed_on_, entry_.record.size)) return false;
  if (!good || !readable_) *status = EntryStatus::kDamaged;
  if (!good || !readable_ || !goes_on) return false;
  more_ = target.size > 0 || used_ < in_.size || next_.size > 0 || unread_ > 0;
  turn_ = 1 - turn_;
  return true;
}

EntryStatus StreamRun::Run() {
  ReadAhead();
  EntryStatus status = EntryStatus::kGood;
  while (more_) {
    if (!Step(&status)) return status;
  }
  return End();
}

EntryStatus StreamRun::End() {
  std::vector<std::uint8_t> trailer(entry_.decoder.TrailerSize() + 1);
  if (!entry_.input.Read(entry_.position, trailer.data(), entry_.decoder.TrailerSize())) {
    return EntryStatus::kDamaged;
  }
  return entry_.decoder.End(trailer.data());
}

struct PieceRun::Piece {
  Bytes packed;
  Bytes data;
  std::uint32_t crc = 0;
  bool good = false;
  JobHandle job;
};

PieceRun::PieceRun(const LargeEntry& entry, DecoderOf decoder_of)
    : entry_(entry), decoder_of_(std::move(decoder_of)), unread_(entry.record.size) {}

PieceRun::~PieceRun() {
  for (const std::shared_ptr<Piece>& piece : ahead_) entry_.workers.WaitOut(piece->job);
}

EntryStatus PieceRun::Run() {
  const std::size_t most_ahead = static_cast<std::size_t>(entry_.workers.Count()) + 2;
  while (goes_on_ && (PiecesLeft() || !ahead_.empty())) {
    const bool reads = PiecesLeft() && ahead_.size() < most_ahead;
    if (!(reads ? ReadNext() : TakeOldest())) return EntryStatus::kDamaged;
  }
  return goes_on_ && !entry_.monitor.Aborted() ? End() : EntryStatus::kGood;
}

bool PieceRun::ReadNext() {
  auto piece = std::make_shared<Piece>();
  const std::uint32_t size = entry_.record.pieces[next_++];
  piece->packed = Bytes(size + WholeDecoder::kPieceEnd);
  piece->packed.size = size;
  if (!entry_.input.Read(entry_.position, piece->packed.data.get(), size)) return false;
  entry_.position += size;
  entry_.decoder.Decrypt(piece->packed.data.get(), size);
  piece->data = Bytes(static_cast<std::size_t>(std::min<std::uint64_t>(unread_, kBlockSize)));
  unread_ -= piece->data.capacity;
  piece->job = entry_.workers.Start([this, piece = piece.get()](int worker) {
    piece->good = decoder_of_(worker).DecodePiece(&piece->packed, &piece->data, &piece->crc);
    piece->packed = Bytes();
  });
  ahead_.push_back(std::move(piece));
  goes_on_ = entry_.monitor.Advance(size);
  return true;
}

bool PieceRun::TakeOldest() {
  const std::shared_ptr<Piece> oldest = ahead_.front();
  goes_on_ = entry_.monitor.WaitFor(entry_.workers, oldest->job);
  if (!goes_on_) return true;
  ahead_.pop_front();
  if (!oldest->good) return false;
  crc_ = static_cast<std::uint32_t>(
      crc32_combine(crc_, oldest->crc, static_cast<z_off_t>(oldest->data.size)));
  goes_on_ = entry_.sink.Take(entry_.record, oldest->data.data.get(), oldest->data.size);
  handed_on_ += oldest->data.size;
  goes_on_ = entry_.monitor.FileProgress(handed_on_, entry_.record.size) && goes_on_;
  return true;
}

// What is left is the end of the stream, and of the encryption.
EntryStatus PieceRun::End() {
  std::vector<std::uint8_t> rest(kStreamEnd.size() + entry_.decoder.TrailerSize());
  if (!entry_.input.Read(entry_.position, rest.data(), rest.size())) return EntryStatus::kDamaged;
  entry_.decoder.Decrypt(rest.data(), kStreamEnd.size());
  const bool ended =
      std::equal(kStreamEnd.begin(), kStreamEnd.end(), rest.begin(),
                 [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
  if (!ended) return EntryStatus::kDamaged;
  return entry_.decoder.EndOfPieces(rest.data() + kStreamEnd.size(), crc_);
}

}  // namespace quorvale::zip
