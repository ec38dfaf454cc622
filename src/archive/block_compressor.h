// Compresses blocks with libdeflate, which makes whole streams only, and turns such a stream into a
// piece that others can follow.
#pragma once

#include <cstddef>
#include <cstdint>

#include "archive/bytes.h"
#include "archive/zip_format.h"

struct libdeflate_compressor;

namespace quorvale::zip {

// One is used by one thread at a time.
class BlockCompressor {
 public:
  // `level` from 1 to 9.
  explicit BlockCompressor(int level);
  ~BlockCompressor();
  BlockCompressor(const BlockCompressor&) = delete;
  BlockCompressor& operator=(const BlockCompressor&) = delete;

  // A whole deflate stream. Empty if it would not be shorter than the data.
  Bytes CompressWhole(const Bytes& data);
  // A piece of a deflate stream: it ends at a byte, and pieces one after the other with kStreamEnd
  // behind them are one stream. Data that does not shrink becomes stored blocks.
  Bytes CompressPiece(const Bytes& data);

 private:
  libdeflate_compressor* compressor_;
};

}  // namespace quorvale::zip
