#include "archive/aes.h"

#include <array>
#include <bit>

namespace quorvale::zip {
namespace {

// Multiplication by 2 in the cipher's field.
constexpr std::uint8_t Twice(std::uint8_t value) {
  return static_cast<std::uint8_t>((value << 1) ^ ((value & 0x80) != 0 ? 0x1B : 0));
}

// The substitution box: the inverse in the field, then an affine map. 3 generates the field, so
// that running through its powers, with the inverses alongside, meets every value.
constexpr std::array<std::uint8_t, 256> MakeBox() {
  std::array<std::uint8_t, 256> box = {};
  std::uint8_t value = 1;
  std::uint8_t inverse = 1;
  do {
    value = static_cast<std::uint8_t>(value ^ Twice(value));
    inverse = static_cast<std::uint8_t>(inverse ^ (inverse << 1));
    inverse = static_cast<std::uint8_t>(inverse ^ (inverse << 2));
    inverse = static_cast<std::uint8_t>(inverse ^ (inverse << 4));
    if ((inverse & 0x80) != 0) inverse ^= 0x09;
    const std::uint8_t mapped =
        static_cast<std::uint8_t>(inverse ^ std::rotl(inverse, 1) ^ std::rotl(inverse, 2) ^
                                  std::rotl(inverse, 3) ^ std::rotl(inverse, 4));
    box[value] = mapped ^ 0x63;
  } while (value != 1);
  box[0] = 0x63;
  return box;
}
constexpr std::array<std::uint8_t, 256> kBox = MakeBox();

// Substitution and the mixing of a column in one look-up; the other three rows are rotations.
constexpr std::array<std::uint32_t, 256> MakeTable() {
  std::array<std::uint32_t, 256> table = {};
  for (std::size_t i = 0; i < 256; ++i) {
    const std::uint32_t once = kBox[i];
    const std::uint32_t twice = Twice(kBox[i]);
    table[i] = (twice << 24) | (once << 16) | (once << 8) | (twice ^ once);
  }
  return table;
}
constexpr std::array<std::uint32_t, 256> kTable = MakeTable();

std::uint8_t ByteOf(std::uint32_t word, int index) {
  return static_cast<std::uint8_t>(word >> (24 - 8 * index));
}

std::uint32_t WordOf(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
  return (a << 24) | (b << 16) | (c << 8) | d;
}

std::uint32_t SubstituteWord(std::uint32_t word) {
  return WordOf(kBox[ByteOf(word, 0)], kBox[ByteOf(word, 1)], kBox[ByteOf(word, 2)],
                kBox[ByteOf(word, 3)]);
}

}  // namespace

Aes::Aes(const std::string& key) {
  const int words = static_cast<int>(key.size()) / 4;
  rounds_ = words + 6;
  const auto byte = [&](int i) {
    return static_cast<std::uint32_t>(static_cast<std::uint8_t>(key[static_cast<std::size_t>(i)]));
  };
  std::uint8_t round_constant = 1;
  for (int i = 0; i < 4 * (rounds_ + 1); ++i) {
    if (i < words) {
      keys_[i] = WordOf(byte(4 * i), byte(4 * i + 1), byte(4 * i + 2), byte(4 * i + 3));
      continue;
    }
    std::uint32_t word = keys_[i - 1];
    if (i % words == 0) {
      word =
          SubstituteWord(std::rotl(word, 8)) ^ (static_cast<std::uint32_t>(round_constant) << 24);
      round_constant = Twice(round_constant);
    } else if (words > 6 && i % words == 4) {
      word = SubstituteWord(word);
    }
    keys_[i] = keys_[i - words] ^ word;
  }
}

void Aes::Encrypt(const std::uint8_t* in, std::uint8_t* out) const {
  std::uint32_t state[4];
  for (int i = 0; i < 4; ++i) {
    state[i] = WordOf(in[4 * i], in[4 * i + 1], in[4 * i + 2], in[4 * i + 3]) ^ keys_[i];
  }
  for (int round = 1; round < rounds_; ++round) {
    std::uint32_t next[4];
    for (int i = 0; i < 4; ++i) {
      next[i] = kTable[ByteOf(state[i], 0)] ^ std::rotr(kTable[ByteOf(state[(i + 1) % 4], 1)], 8) ^
                std::rotr(kTable[ByteOf(state[(i + 2) % 4], 2)], 16) ^
                std::rotr(kTable[ByteOf(state[(i + 3) % 4], 3)], 24) ^ keys_[4 * round + i];
    }
    for (int i = 0; i < 4; ++i) state[i] = next[i];
  }
  for (int i = 0; i < 4; ++i) {
    const std::uint32_t word =
        WordOf(kBox[ByteOf(state[i], 0)], kBox[ByteOf(state[(i + 1) % 4], 1)],
               kBox[ByteOf(state[(i + 2) % 4], 2)], kBox[ByteOf(state[(i + 3) % 4], 3)]) ^
        keys_[4 * rounds_ + i];
    for (int k = 0; k < 4; ++k) out[4 * i + k] = ByteOf(word, k);
  }
}

}  // namespace quorvale::zip
