#include "platform/zip/block_compressor.h"

#define ZLIB_CONST
#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>

namespace quorvale::zip {
namespace {

constexpr std::size_t kStoredBlock = 65535;
constexpr std::size_t kStoredHeader = 5;
// What padding adds at most: the rest of a byte, and an empty stored block.
constexpr std::size_t kPadding = 8;

Bytes StoredPiece(const Bytes& data) {
  const std::size_t blocks = data.size / kStoredBlock + 1;
  Bytes piece(data.size + blocks * kStoredHeader);
  std::uint8_t* out = piece.data.get();
  for (std::size_t at = 0; at < data.size; at += kStoredBlock) {
    const std::size_t count = std::min(kStoredBlock, data.size - at);
    *out++ = 0;  // not the last block, stored
    *out++ = static_cast<std::uint8_t>(count & 0xFF);
    *out++ = static_cast<std::uint8_t>(count >> 8);
    *out++ = static_cast<std::uint8_t>(~count & 0xFF);
    *out++ = static_cast<std::uint8_t>((~count >> 8) & 0xFF);
    std::memcpy(out, data.data.get() + at, count);
    out += count;
  }
  piece.size = static_cast<std::size_t>(out - piece.data.get());
  return piece;
}

}  // namespace

// zlib's unpacking, which can stop at the borders of deflate's own blocks.
struct BlockCompressor::Inflater {
  Inflater() { ready = inflateInit2(&stream, -MAX_WBITS) == Z_OK; }
  ~Inflater() {
    if (ready) inflateEnd(&stream);
  }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  z_stream stream = {};
  bool ready = false;
  Bytes unpacked{kBlockSize};
};

BlockCompressor::BlockCompressor(int level) : compressor_(libdeflate_alloc_compressor(level)) {}

BlockCompressor::~BlockCompressor() {
  if (compressor_ != nullptr) libdeflate_free_compressor(compressor_);
}

Bytes BlockCompressor::CompressWhole(const Bytes& data) {
  if (compressor_ == nullptr || data.size == 0) return Bytes();
  Bytes packed(data.size + kPadding);
  packed.size = libdeflate_deflate_compress(compressor_, data.data.get(), data.size,
                                            packed.data.get(), data.size - 1);
  return packed.size == 0 ? Bytes() : std::move(packed);
}

Bytes BlockCompressor::CompressPiece(const Bytes& data) {
  Bytes packed = CompressWhole(data);
  if (packed.size == 0 || !MakePiece(&packed, data)) return StoredPiece(data);
  return packed;
}

bool BlockCompressor::MakePiece(Bytes* stream, const Bytes& data) {
  if (inflater_ == nullptr) inflater_ = std::make_unique<Inflater>();
  Inflater& inflater = *inflater_;
  z_stream& z = inflater.stream;
  if (!inflater.ready || data.size > inflater.unpacked.capacity || inflateReset(&z) != Z_OK) {
    return false;
  }
  z.next_in = stream->data.get();
  z.avail_in = static_cast<uInt>(stream->size);
  z.next_out = inflater.unpacked.data.get();
  z.avail_out = static_cast<uInt>(inflater.unpacked.capacity);

  // zlib tells, at each border, how many bits of the last byte it has not used yet.
  constexpr int kUnusedBits = 7;
  constexpr int kInLastBlock = 64;
  constexpr int kAtBorder = 128;
  std::size_t last_header = 0;  // where the header of the last block begins, in bits
  std::size_t end = 0;          // behind that block's end code, in bits
  for (;;) {
    if (inflate(&z, Z_BLOCK) != Z_OK) return false;
    if ((z.data_type & kAtBorder) == 0) return false;
    const std::size_t used = stream->size - z.avail_in;
    const std::size_t border = used * 8 - static_cast<std::size_t>(z.data_type & kUnusedBits);
    if ((z.data_type & kInLastBlock) != 0) {
      end = border;
      break;
    }
    last_header = border;
  }
  if (inflater.unpacked.capacity - z.avail_out != data.size ||
      std::memcmp(inflater.unpacked.data.get(), data.data.get(), data.size) != 0) {
    return false;
  }

  std::uint8_t* bits = stream->data.get();
  bits[last_header / 8] &= static_cast<std::uint8_t>(~(1u << (last_header % 8)));
  // Three bits of zero begin a stored block; its length, 0, stands at the next byte.
  const std::size_t length_at = (end + 3 + 7) / 8;
  if (end % 8 != 0) bits[end / 8] &= static_cast<std::uint8_t>((1u << (end % 8)) - 1);
  for (std::size_t at = (end + 7) / 8; at < length_at; ++at) bits[at] = 0;
  const std::uint8_t empty[4] = {0, 0, 0xFF, 0xFF};
  std::memcpy(bits + length_at, empty, sizeof empty);
  stream->size = length_at + sizeof empty;
  return true;
}

}  // namespace quorvale::zip
