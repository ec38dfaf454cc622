#include "archive/block_compressor.h"

#include <libdeflate.h>

#include <algorithm>
#include <cstring>

#include "archive/deflate_walker.h"

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
  LastBlock last;
  if (packed.size == 0 || !FindLastBlock(packed.data.get(), packed.size, &last)) {
    return StoredPiece(data);
  }
  std::uint8_t* bits = packed.data.get();
  bits[last.header / 8] &= static_cast<std::uint8_t>(~(1u << (last.header % 8)));
  // Three bits of zero begin a stored block; its length, 0, stands at the next byte.
  const std::size_t length_at = (last.end + 3 + 7) / 8;
  if (last.end % 8 != 0)
    bits[last.end / 8] &= static_cast<std::uint8_t>((1u << (last.end % 8)) - 1);
  for (std::size_t at = (last.end + 7) / 8; at < length_at; ++at) bits[at] = 0;
  const std::uint8_t empty[4] = {0, 0, 0xFF, 0xFF};
  std::memcpy(bits + length_at, empty, sizeof empty);
  packed.size = length_at + sizeof empty;
  return packed;
}

}  // namespace quorvale::zip
