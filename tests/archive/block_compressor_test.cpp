// Pieces of deflate streams that are joined.
#include "archive/block_compressor.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstring>

#include "archive/test_data.h"

namespace quorvale::zip_test {
namespace {

zip::Bytes ToBytes(const std::string& text) {
  zip::Bytes bytes(text.size() + 1);
  bytes.size = text.size();
  std::memcpy(bytes.data.get(), text.data(), text.size());
  return bytes;
}

// What a stream unpacks to; "" if it is not one whole stream of just that size.
std::string Inflate(std::string stream, std::size_t size) {
  z_stream z = {};
  if (inflateInit2(&z, -MAX_WBITS) != Z_OK) return "";
  std::string text(size + 1, '\0');
  z.next_in = reinterpret_cast<Bytef*>(stream.data());
  z.avail_in = static_cast<uInt>(stream.size());
  z.next_out = reinterpret_cast<Bytef*>(text.data());
  z.avail_out = static_cast<uInt>(text.size());
  const int result = inflate(&z, Z_FINISH);
  const bool whole = result == Z_STREAM_END && z.avail_in == 0 && z.total_out == size;
  inflateEnd(&z);
  text.resize(size);
  return whole ? text : "";
}

std::string Text(const zip::Bytes& bytes) {
  return std::string(reinterpret_cast<const char*>(bytes.data.get()), bytes.size);
}

TEST(BlockCompressor, JoinedPiecesAreOneStream) {
  for (const int level : {1, 6, 9}) {
    zip::BlockCompressor compressor(level);
    std::string stream;
    std::string expected;
    for (std::uint64_t i = 0; i < 60; ++i) {
      std::string data = Prose(1 + (i * 7919) % 20'000, i + 1);
      if (i % 3 == 1) data += Noise(i * 500, i);
      if (i % 7 == 2) data = Noise(i * 1000 + 1, i);
      stream += Text(compressor.CompressPiece(ToBytes(data)));
      expected += data;
    }
    stream += zip::kStreamEnd;
    EXPECT_TRUE(Inflate(stream, expected.size()) == expected) << level;
    EXPECT_LT(stream.size(), expected.size());
  }
}

TEST(BlockCompressor, PiecesOfEverySmallSizeJoin) {
  // All positions of the last bit within a byte occur.
  zip::BlockCompressor compressor(6);
  std::string stream;
  std::string expected;
  for (std::size_t size = 1; size < 600; ++size) {
    const std::string data = Prose(size, size);
    stream += Text(compressor.CompressPiece(ToBytes(data)));
    expected += data;
  }
  stream += zip::kStreamEnd;
  EXPECT_TRUE(Inflate(stream, expected.size()) == expected);
}

TEST(BlockCompressor, AWholeBlockJoins) {
  zip::BlockCompressor compressor(6);
  const std::string data = Prose(700'000) + std::string(zip::kBlockSize - 700'000, 'z');
  const std::string piece = Text(compressor.CompressPiece(ToBytes(data)));
  EXPECT_TRUE(Inflate(piece + piece + zip::kStreamEnd, 2 * data.size()) == data + data);
}

TEST(BlockCompressor, WhatDoesNotShrinkIsNotCompressed) {
  zip::BlockCompressor compressor(6);
  EXPECT_EQ(compressor.CompressWhole(ToBytes(Noise(5000))).size, 0u);
  EXPECT_EQ(compressor.CompressWhole(ToBytes("")).size, 0u);
  const std::string noise = Noise(200'000);
  const std::string piece = Text(compressor.CompressPiece(ToBytes(noise)));
  EXPECT_LE(piece.size(), noise.size() + 20);
  EXPECT_TRUE(Inflate(piece + zip::kStreamEnd, noise.size()) == noise);
}

TEST(BlockCompressor, AWholeStreamIsOne) {
  zip::BlockCompressor compressor(9);
  const std::string data = Prose(100'000);
  EXPECT_TRUE(Inflate(Text(compressor.CompressWhole(ToBytes(data))), data.size()) == data);
}

}  // namespace
}  // namespace quorvale::zip_test
