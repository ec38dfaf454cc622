// Follows the codes of a deflate stream (RFC 1951) without unpacking it, to learn where its last
// block stands.
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
