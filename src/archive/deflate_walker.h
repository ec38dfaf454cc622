// Follows the codes of a deflate stream (RFC 1951) without unpacking it, to learn where its last
// block stands.
//
// zlib can tell the same (inflate with Z_BLOCK), but only by unpacking everything. Measured on
// 38 MB in blocks of 1 MiB at level 6, best of five runs, this against zlib: words 0.035 s against
// 0.104 s, shared libraries 0.040 s against 0.102 s, base64 of noise 0.108 s against 0.101 s; the
// compressing itself takes 0.42 to 0.56 s. That is an eighth of all the time of a backup of what
// compresses well, and why this file is here.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quorvale::zip {

struct LastBlock {
  std::size_t header = 0;  // the position of its first bit in the stream
  std::size_t end = 0;     // the position behind its last bit
};

// False if this is not a whole stream.
bool FindLastBlock(const std::uint8_t* stream, std::size_t size, LastBlock* last);

}  // namespace quorvale::zip
