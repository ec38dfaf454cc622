#include "archive/entry_decoder.h"

#define ZLIB_CONST
#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace quorvale::zip {
namespace {

// A deflate stream unpacks to at most this many times its size, by the format's shortest codes.
constexpr std::uint64_t kLargestRatio = 1032;

bool CrcFits(const Record& record, std::uint32_t crc) {
  // The second form of AES entries has none: its trailer tells damage.
  return record.aes_version == 2 || crc == record.crc;
}

std::size_t EncryptionSize(const Record& record) {
  if (!record.Encrypted()) return 0;
  const std::unique_ptr<Decryptor> decryptor = MakeDecryptor(record);
  return decryptor->HeaderSize() + decryptor->TrailerSize();
}

}  // namespace

EntryStatus CheckRecord(const Record& record) {
  constexpr std::uint16_t kStrongEncryption = 0x40;
  constexpr std::uint16_t kPatchedData = 0x20;
  if ((record.flags & (kStrongEncryption | kPatchedData)) != 0) return EntryStatus::kUnsupported;
  const std::uint64_t around = EncryptionSize(record);
  if (record.compressed_size < around) return EntryStatus::kDamaged;
  const std::uint64_t packed = record.compressed_size - around;
  if (record.method == kMethodStored) {
    return packed == record.size ? EntryStatus::kGood : EntryStatus::kDamaged;
  }
  if (record.method != kMethodDeflated) return EntryStatus::kUnsupported;
  return record.size / kLargestRatio <= packed ? EntryStatus::kGood : EntryStatus::kDamaged;
}

WholeDecoder::WholeDecoder() : decompressor_(libdeflate_alloc_decompressor()) {}

WholeDecoder::~WholeDecoder() {
  if (decompressor_ != nullptr) libdeflate_free_decompressor(decompressor_);
}

EntryStatus WholeDecoder::Decode(const Record& record, Bytes* packed,
                                 const std::vector<std::string>& passwords, Bytes* data) {
  std::uint8_t* from = packed->data.get();
  std::size_t count = packed->size;
  std::unique_ptr<Decryptor> decryptor;
  if (record.Encrypted()) {
    decryptor = MakeDecryptor(record);
    if (!decryptor->Begin(from, passwords)) return EntryStatus::kWrongPassword;
    from += decryptor->HeaderSize();
    count -= decryptor->HeaderSize() + decryptor->TrailerSize();
    decryptor->Apply(from, count);
    if (!decryptor->TrailerFits(from + count)) return EntryStatus::kDamaged;
  }
  const std::size_t size = static_cast<std::size_t>(record.size);
  if (record.method == kMethodStored && decryptor == nullptr) {
    *data = std::move(*packed);
  } else {
    *data = Bytes(size);
    data->size = size;
    if (record.method == kMethodStored) {
      std::memcpy(data->data.get(), from, size);
    } else {
      std::size_t unpacked = 0;
      if (decompressor_ == nullptr ||
          libdeflate_deflate_decompress(decompressor_, from, count, data->data.get(), size,
                                        &unpacked) != LIBDEFLATE_SUCCESS ||
          unpacked != size) {
        return EntryStatus::kDamaged;
      }
    }
  }
  return CrcFits(record, libdeflate_crc32(0, data->data.get(), size)) ? EntryStatus::kGood
                                                                      : EntryStatus::kDamaged;
}

bool WholeDecoder::DecodePiece(Bytes* packed, Bytes* data, std::uint32_t* crc) {
  // An empty last block makes a stream of the piece.
  const std::uint8_t end[kPieceEnd] = {1, 0, 0, 0xFF, 0xFF};
  std::memcpy(packed->data.get() + packed->size, end, sizeof end);
  if (decompressor_ == nullptr ||
      libdeflate_deflate_decompress(decompressor_, packed->data.get(), packed->size + sizeof end,
                                    data->data.get(), data->capacity,
                                    &data->size) != LIBDEFLATE_SUCCESS ||
      data->size != data->capacity) {
    return false;
  }
  *crc = libdeflate_crc32(0, data->data.get(), data->size);
  return true;
}

struct StreamDecoder::Inflater {
  Inflater() { ready = inflateInit2(&stream, -MAX_WBITS) == Z_OK; }
  ~Inflater() {
    if (ready) inflateEnd(&stream);
  }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  z_stream stream = {};
  bool ready = false;
  bool ended = false;
};

StreamDecoder::StreamDecoder(const Record& record, const std::vector<std::string>& passwords)
    : record_(record), passwords_(passwords) {
  if (record.Encrypted()) decryptor_ = MakeDecryptor(record);
  if (record.method == kMethodDeflated) inflater_ = std::make_unique<Inflater>();
}

StreamDecoder::~StreamDecoder() = default;

std::size_t StreamDecoder::HeaderSize() const {
  return decryptor_ == nullptr ? 0 : decryptor_->HeaderSize();
}

std::size_t StreamDecoder::TrailerSize() const {
  return decryptor_ == nullptr ? 0 : decryptor_->TrailerSize();
}

EntryStatus StreamDecoder::Begin(const std::uint8_t* header) {
  if (decryptor_ != nullptr && !decryptor_->Begin(header, passwords_)) {
    return EntryStatus::kWrongPassword;
  }
  return inflater_ == nullptr || inflater_->ready ? EntryStatus::kGood : EntryStatus::kDamaged;
}

void StreamDecoder::Decrypt(std::uint8_t* data, std::size_t count) {
  if (decryptor_ != nullptr) decryptor_->Apply(data, count);
}

bool StreamDecoder::Unpack(const Bytes& in, std::size_t* used, Bytes* out) {
  out->size = 0;
  if (inflater_ == nullptr) {
    out->size = std::min(in.size - *used, out->capacity);
    std::memcpy(out->data.get(), in.data.get() + *used, out->size);
    *used += out->size;
  } else {
    z_stream& z = inflater_->stream;
    z.next_in = in.data.get() + *used;
    z.avail_in = static_cast<uInt>(in.size - *used);
    z.next_out = out->data.get();
    z.avail_out = static_cast<uInt>(out->capacity);
    while (!inflater_->ended && z.avail_out > 0) {
      const int result = inflate(&z, Z_NO_FLUSH);
      if (result == Z_STREAM_END) inflater_->ended = true;
      if (result == Z_BUF_ERROR) break;  // the input is used up
      if (result != Z_OK && result != Z_STREAM_END) return false;
      if (z.avail_in == 0 && z.avail_out > 0) break;
    }
    // What stands behind the end of the stream says nothing.
    if (inflater_->ended) z.avail_in = 0;
    *used = in.size - z.avail_in;
    out->size = out->capacity - z.avail_out;
  }
  crc_ = libdeflate_crc32(crc_, out->data.get(), out->size);
  produced_ += out->size;
  return produced_ <= record_.size;
}

EntryStatus StreamDecoder::EndOfPieces(const std::uint8_t* trailer, std::uint32_t crc) {
  if (decryptor_ != nullptr && !decryptor_->TrailerFits(trailer)) return EntryStatus::kDamaged;
  return CrcFits(record_, crc) ? EntryStatus::kGood : EntryStatus::kDamaged;
}

EntryStatus StreamDecoder::End(const std::uint8_t* trailer) {
  if (decryptor_ != nullptr && !decryptor_->TrailerFits(trailer)) return EntryStatus::kDamaged;
  if (inflater_ != nullptr && !inflater_->ended) return EntryStatus::kDamaged;
  return produced_ == record_.size && CrcFits(record_, crc_) ? EntryStatus::kGood
                                                             : EntryStatus::kDamaged;
}

}  // namespace quorvale::zip
