// Following a deflate stream to its last block.
#include "archive/deflate_walker.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include "archive/test_data.h"

namespace quorvale::zip_test {
namespace {

const std::uint8_t* AsBytes(const std::string& text) {
  return reinterpret_cast<const std::uint8_t*>(text.data());
}

std::string Deflate(std::string data, int level, int strategy, int memory = 8) {
  z_stream z = {};
  EXPECT_EQ(deflateInit2(&z, level, Z_DEFLATED, -MAX_WBITS, memory, strategy), Z_OK);
  std::string stream(deflateBound(&z, static_cast<uLong>(data.size())) + 100, '\0');
  z.next_in = reinterpret_cast<Bytef*>(data.data());
  z.avail_in = static_cast<uInt>(data.size());
  z.next_out = reinterpret_cast<Bytef*>(stream.data());
  z.avail_out = static_cast<uInt>(stream.size());
  EXPECT_EQ(deflate(&z, Z_FINISH), Z_STREAM_END);
  stream.resize(z.total_out);
  deflateEnd(&z);
  return stream;
}

// Where zlib sees the last block while it unpacks the stream.
zip::LastBlock ByUnpacking(std::string stream, std::size_t size) {
  z_stream z = {};
  EXPECT_EQ(inflateInit2(&z, -MAX_WBITS), Z_OK);
  std::string data(size + 1, '\0');
  z.next_in = reinterpret_cast<Bytef*>(stream.data());
  z.avail_in = static_cast<uInt>(stream.size());
  z.next_out = reinterpret_cast<Bytef*>(data.data());
  z.avail_out = static_cast<uInt>(data.size());
  zip::LastBlock last;
  for (;;) {
    const int result = inflate(&z, Z_BLOCK);
    EXPECT_EQ(result, Z_OK);
    if (result != Z_OK) break;
    const std::size_t border =
        (stream.size() - z.avail_in) * 8 - static_cast<std::size_t>(z.data_type & 7);
    if ((z.data_type & 64) != 0) {
      last.end = border;
      break;
    }
    last.header = border;
  }
  inflateEnd(&z);
  return last;
}

TEST(DeflateWalker, FindsTheLastBlockOfEveryKindOfStream) {
  for (const int strategy : {Z_DEFAULT_STRATEGY, Z_HUFFMAN_ONLY, Z_RLE, Z_FIXED}) {
    for (const int level : {0, 1, 6, 9}) {
      // Little memory makes many blocks.
      for (const int memory : {1, 8}) {
        for (const std::size_t size : {0u, 1u, 2u, 100u, 5'000u, 150'000u}) {
          const std::string data = Prose(size, size + 1) + Noise(size / 3, size + 2);
          const std::string stream = Deflate(data, level, strategy, memory);
          const zip::LastBlock expected = ByUnpacking(stream, data.size());
          zip::LastBlock last;
          ASSERT_TRUE(zip::FindLastBlock(AsBytes(stream), stream.size(), &last));
          EXPECT_EQ(last.header, expected.header);
          EXPECT_EQ(last.end, expected.end);
        }
      }
    }
  }
}

TEST(DeflateWalker, FollowsTheLongestCodes) {
  // Symbols whose frequencies grow like Fibonacci's numbers get codes of 15 bits.
  std::string data;
  std::size_t a = 1;
  std::size_t b = 1;
  for (char symbol = 'a'; symbol < 'a' + 21; ++symbol) {
    data.append(a, symbol);
    std::swap(a, b);
    b += a;
  }
  Random random(3);
  for (std::size_t i = data.size() - 1; i > 0; --i) std::swap(data[i], data[random.Below(i + 1)]);
  const std::string stream = Deflate(data, 6, Z_HUFFMAN_ONLY, 9);
  const zip::LastBlock expected = ByUnpacking(stream, data.size());
  zip::LastBlock last;
  ASSERT_TRUE(zip::FindLastBlock(AsBytes(stream), stream.size(), &last));
  EXPECT_EQ(last.header, expected.header);
  EXPECT_EQ(last.end, expected.end);
}

TEST(DeflateWalker, AStreamThatIsCutOffIsNone) {
  const std::string stream = Deflate(Prose(3'000) + Noise(100), 6, Z_DEFAULT_STRATEGY);
  for (std::size_t size = 0; size < stream.size(); ++size) {
    const std::string part = stream.substr(0, size);
    zip::LastBlock last;
    EXPECT_FALSE(zip::FindLastBlock(AsBytes(part), size, &last)) << size;
  }
}

TEST(DeflateWalker, AnyBytesGiveAnAnswerInsideThem) {
  const std::string stream = Deflate(Prose(500), 6, Z_DEFAULT_STRATEGY);
  Random random(5);
  for (int i = 0; i < 20'000; ++i) {
    std::string bytes =
        i % 2 == 0 ? Noise(random.Below(80), static_cast<std::uint64_t>(i)) : stream;
    for (int k = 0; k < 3 && !bytes.empty(); ++k) {
      bytes[random.Below(bytes.size())] = static_cast<char>(random.Next());
    }
    zip::LastBlock last;
    if (!zip::FindLastBlock(AsBytes(bytes), bytes.size(), &last)) continue;
    ASSERT_LT(last.header, last.end);
    ASSERT_LE(last.end, bytes.size() * 8);
  }
}

}  // namespace
}  // namespace quorvale::zip_test
