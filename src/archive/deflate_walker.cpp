#include "archive/deflate_walker.h"

#include <algorithm>
#include <array>

#include "archive/bytes.h"

namespace quorvale::zip {
namespace {

constexpr unsigned kLongestCode = 15;
constexpr std::size_t kMostLiteralCodes = 288;
constexpr std::size_t kMostDistanceCodes = 32;
constexpr std::size_t kEndOfBlock = 256;

// The stream's bits, the lowest of each byte first.
class Bits {
 public:
  Bits(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  // Makes at least 56 bits ready; behind the end they are zeros.
  void Refill() {
    if (next_ + 8 <= size_) {
      bits_ |= Get64(data_ + next_) << ready_;
      next_ += (63 - ready_) / 8;
      ready_ |= 56;
      return;
    }
    while (ready_ < 56) {
      if (next_ < size_) bits_ |= static_cast<std::uint64_t>(data_[next_]) << ready_;
      ++next_;
      ready_ += 8;
    }
  }
  std::uint64_t Peek(unsigned count) const { return bits_ & ((1ull << count) - 1); }
  void Skip(unsigned count) {
    bits_ >>= count;
    ready_ -= count;
  }
  unsigned Take(unsigned count) {
    const unsigned value = static_cast<unsigned>(Peek(count));
    Skip(count);
    return value;
  }
  std::size_t Position() const { return next_ * 8 - ready_; }
  bool PastEnd() const { return Position() > size_ * 8; }
  // Goes on at another place; false if that is outside.
  bool MoveTo(std::size_t byte) {
    if (byte > size_) return false;
    next_ = byte;
    bits_ = 0;
    ready_ = 0;
    return true;
  }

 private:
  const std::uint8_t* data_;
  const std::size_t size_;
  std::size_t next_ = 0;  // the first byte that is not in bits_
  std::uint64_t bits_ = 0;
  unsigned ready_ = 0;
};

constexpr unsigned kTableBits = 11;
constexpr std::size_t kTableSize = 1u << kTableBits;

// What follows a code, to one who only follows the codes: the table that shows the next one, or a
// reason to stop.
enum Next : std::uint16_t {
  kLiteral = 0,            // a literal or a length is next
  kDistance = kTableSize,  // the distance of a match is next
  kEnd,                    // the block ends here
  kLong                    // the code is not in the table
};
struct Step {
  std::uint8_t bits = 0;   // of the code, and of the extra bits behind it; 0: there is no such code
  std::uint8_t extra = 0;  // how many of them are extra bits
  Next next = kLong;
};

// Three steps, with distances in every other place, are no more than a refill makes ready.
constexpr unsigned kLongestDistanceStep = 20;

// A Huffman code. Codes of up to kTableBits are looked up, longer ones are counted out.
class Code {
 public:
  // `step_of` tells the extra bits of a symbol and what is next. Fills `table`, of kTableSize
  // steps. False if the lengths are no code.
  template <typename StepOf>
  bool Build(const std::uint8_t* lengths, std::size_t count, StepOf step_of, Step* table) {
    counts_.fill(0);
    for (std::size_t i = 0; i < count; ++i) ++counts_[lengths[i]];
    counts_[0] = 0;
    std::array<std::uint16_t, kLongestCode + 2> offsets = {};
    std::array<std::uint32_t, kLongestCode + 2> next_code = {};
    int left = 1;
    for (unsigned length = 1; length <= kLongestCode; ++length) {
      left = 2 * left - counts_[length];
      if (left < 0) return false;
      offsets[length + 1] = static_cast<std::uint16_t>(offsets[length] + counts_[length]);
      next_code[length + 1] = (next_code[length] + counts_[length]) << 1;
    }
    std::fill_n(table, kTableSize, Step());
    for (std::size_t i = 0; i < count; ++i) {
      const unsigned length = lengths[i];
      if (length == 0) continue;
      Step step = step_of(i);
      step.bits = static_cast<std::uint8_t>(step.extra + length);
      sorted_[offsets[length]++] = step;
      const std::uint32_t code = next_code[length]++;
      if (length <= kTableBits) Fill(code, length, step, table);
    }
    return true;
  }

  // The step of a code that the table does not show.
  Step FindLong(const Bits& bits) const {
    std::uint64_t rest = bits.Peek(kLongestCode);
    std::uint32_t code = 0;
    std::uint32_t first = 0;
    std::uint32_t index = 0;
    for (unsigned length = 1; length <= kLongestCode; ++length) {
      code |= rest & 1;
      rest >>= 1;
      const std::uint32_t count = counts_[length];
      if (code < first + count) return sorted_[index + code - first];
      index += count;
      first = (first + count) << 1;
      code <<= 1;
    }
    return Step();
  }

 private:
  // A code stands in the stream with its highest bit first.
  static void Fill(std::uint32_t code, unsigned length, Step step, Step* table) {
    std::uint32_t index = 0;
    for (unsigned i = 0; i < length; ++i) index |= ((code >> i) & 1) << (length - 1 - i);
    for (; index < kTableSize; index += 1u << length) table[index] = step;
  }

  std::array<Step, kMostLiteralCodes> sorted_;  // by code
  std::array<std::uint16_t, kLongestCode + 1> counts_;
};

// Makes one step of literals in a row and of what follows them, as far as an index shows their
// codes whole.
void JoinLiterals(Step* table) {
  // Each entry looks at lower ones only, which are not joined yet.
  for (std::size_t index = kTableSize - 1; index > 0; --index) {
    Step& step = table[index];
    while (step.next == kLiteral) {
      const Step after = table[index >> step.bits];
      if (after.bits == 0 || step.bits + after.bits - after.extra > int{kTableBits}) break;
      step.bits = static_cast<std::uint8_t>(step.bits + after.bits);
      step.next = after.next;
    }
  }
}

void LeaveOutLongDistances(Step* table) {
  for (std::size_t index = 0; index < kTableSize; ++index) {
    if (table[index].bits > kLongestDistanceStep) table[index].next = kLong;
  }
}

// Extra bits by the tables of the format's description.
Step LiteralStep(std::size_t symbol) {
  if (symbol < kEndOfBlock) return {0, 0, kLiteral};
  if (symbol == kEndOfBlock) return {0, 0, kEnd};
  if (symbol < 265 || symbol == 285) return {0, 0, kDistance};
  return {0, static_cast<std::uint8_t>((symbol - 261) / 4), kDistance};
}

Step DistanceStep(std::size_t symbol) {
  return {0, static_cast<std::uint8_t>(symbol < 4 ? 0 : (symbol - 2) / 2), kLiteral};
}

class Walker {
 public:
  Walker(const std::uint8_t* stream, std::size_t size) : bits_(stream, size) {}

  bool Walk(LastBlock* last) {
    for (;;) {
      last->header = bits_.Position();
      bits_.Refill();
      const bool is_last = bits_.Take(1) != 0;
      const unsigned type = bits_.Take(2);
      const bool good = type == 0   ? SkipStored()
                        : type == 1 ? BuildFixed() && SkipCodes()
                        : type == 2 ? ReadCodes() && SkipCodes()
                                    : false;
      if (!good || bits_.PastEnd()) return false;
      if (is_last) break;
    }
    last->end = bits_.Position();
    return true;
  }

 private:
  bool SkipStored() {
    const std::size_t at = (bits_.Position() + 7) / 8;
    if (!bits_.MoveTo(at)) return false;
    bits_.Refill();
    const unsigned length = bits_.Take(16);
    if (bits_.Take(16) != (~length & 0xFFFF) || bits_.PastEnd()) return false;
    return bits_.MoveTo(at + 4 + length);
  }

  bool BuildFixed() {
    std::array<std::uint8_t, kMostLiteralCodes> lengths;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
      lengths[i] = i < 144 ? 8 : i < 256 ? 9 : i < 280 ? 7 : 8;
    }
    std::array<std::uint8_t, kMostDistanceCodes> distances;
    distances.fill(5);
    return BuildCodes(lengths.data(), lengths.size(), distances.data(), distances.size());
  }

  // The lengths of the codes, themselves packed by a code.
  bool ReadCodes() {
    bits_.Refill();
    const std::size_t literal_count = bits_.Take(5) + 257;
    const std::size_t distance_count = bits_.Take(5) + 1;
    const std::size_t length_count = bits_.Take(4) + 4;
    if (literal_count > kMostLiteralCodes) return false;
    static constexpr std::array<std::uint8_t, 19> kOrder = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                            11, 4,  12, 3, 13, 2, 14, 1, 15};
    std::array<std::uint8_t, 19> packed = {};
    for (std::size_t i = 0; i < length_count; ++i) {
      bits_.Refill();
      packed[kOrder[i]] = static_cast<std::uint8_t>(bits_.Take(3));
    }
    std::array<std::uint8_t, kMostLiteralCodes + kMostDistanceCodes + 138> lengths = {};
    if (!ReadLengths(packed.data(), literal_count + distance_count, lengths.data())) return false;
    return BuildCodes(lengths.data(), literal_count, lengths.data() + literal_count,
                      distance_count);
  }

  bool BuildCodes(const std::uint8_t* literal_lengths, std::size_t literal_count,
                  const std::uint8_t* distance_lengths, std::size_t distance_count) {
    Step* distances = steps_.data() + kDistance;
    if (!literals_.Build(literal_lengths, literal_count, LiteralStep, steps_.data()) ||
        !distances_.Build(distance_lengths, distance_count, DistanceStep, distances)) {
      return false;
    }
    JoinLiterals(steps_.data());
    LeaveOutLongDistances(distances);
    return true;
  }

  bool ReadLengths(const std::uint8_t* packed, std::size_t count, std::uint8_t* lengths) {
    // Which symbol a code is matters here, not how it goes on: a table by symbol.
    std::array<std::uint8_t, 128> symbols;
    std::array<std::uint8_t, 128> sizes = {};
    unsigned code = 0;
    for (unsigned size = 1; size <= 7; ++size, code <<= 1) {
      for (std::uint8_t symbol = 0; symbol < 19; ++symbol) {
        if (packed[symbol] != size) continue;
        if (code >= (1u << size)) return false;
        unsigned index = 0;
        for (unsigned i = 0; i < size; ++i) index |= ((code >> i) & 1) << (size - 1 - i);
        for (; index < symbols.size(); index += 1u << size) {
          symbols[index] = symbol;
          sizes[index] = static_cast<std::uint8_t>(size);
        }
        ++code;
      }
    }
    for (std::size_t i = 0; i < count;) {
      bits_.Refill();
      const std::size_t index = bits_.Peek(7);
      if (sizes[index] == 0 || bits_.PastEnd()) return false;
      bits_.Skip(sizes[index]);
      const std::uint8_t symbol = symbols[index];
      if (symbol < 16) {
        lengths[i++] = symbol;
        continue;
      }
      if (symbol == 16 && i == 0) return false;
      const std::uint8_t value = symbol == 16 ? lengths[i - 1] : 0;
      const std::size_t repeat = symbol == 16   ? 3 + bits_.Take(2)
                                 : symbol == 17 ? 3 + bits_.Take(3)
                                                : 11 + bits_.Take(7);
      if (repeat > count - i) return false;
      std::fill_n(lengths + i, repeat, value);
      i += repeat;
    }
    return true;
  }

  // All codes up to the one that ends the block. What is next is looked up and not branched on,
  // since nothing foretells it.
  bool SkipCodes() {
    std::size_t table = kLiteral;
    while (!bits_.PastEnd()) {
      bits_.Refill();
      Step step;
      for (int i = 0; i < 3; ++i) {
        step = steps_[table + bits_.Peek(kTableBits)];
        if (step.next > kDistance) break;
        bits_.Skip(step.bits);
        table = step.next;
      }
      if (step.next <= kDistance) continue;
      if (step.next == kLong) {
        bits_.Refill();
        step = table == kLiteral ? literals_.FindLong(bits_) : distances_.FindLong(bits_);
        if (step.bits == 0) return false;
      }
      bits_.Skip(step.bits);
      if (step.next == kEnd) return true;
      table = step.next;
    }
    return false;
  }

  Bits bits_;
  Code literals_;
  Code distances_;
  std::array<Step, 2 * kTableSize> steps_;  // literals and lengths, then distances
};

}  // namespace

bool FindLastBlock(const std::uint8_t* stream, std::size_t size, LastBlock* last) {
  return Walker(stream, size).Walk(last);
}

}  // namespace quorvale::zip
