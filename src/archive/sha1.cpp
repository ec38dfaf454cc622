#include "archive/sha1.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace quorvale::zip {
namespace {

std::uint32_t Get32Big(const std::uint8_t* p) {
  return (static_cast<std::uint32_t>(p[0]) << 24) | (static_cast<std::uint32_t>(p[1]) << 16) |
         (static_cast<std::uint32_t>(p[2]) << 8) | p[3];
}

void Put32Big(std::uint8_t* p, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) p[i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
}

}  // namespace

void Sha1::Compress(const std::uint8_t* block) {
  std::uint32_t w[80];
  for (int i = 0; i < 16; ++i) w[i] = Get32Big(block + 4 * i);
  for (int i = 16; i < 80; ++i) w[i] = std::rotl(w[i - 3] ^ w[i - 8] ^ w[i - 14] ^ w[i - 16], 1);
  std::uint32_t a = state_[0];
  std::uint32_t b = state_[1];
  std::uint32_t c = state_[2];
  std::uint32_t d = state_[3];
  std::uint32_t e = state_[4];
  for (int i = 0; i < 80; ++i) {
    std::uint32_t f = 0;
    std::uint32_t k = 0;
    if (i < 20) {
      f = (b & c) | (~b & d);
      k = 0x5A827999;
    } else if (i < 40) {
      f = b ^ c ^ d;
      k = 0x6ED9EBA1;
    } else if (i < 60) {
      f = (b & c) | (b & d) | (c & d);
      k = 0x8F1BBCDC;
    } else {
      f = b ^ c ^ d;
      k = 0xCA62C1D6;
    }
    const std::uint32_t next = std::rotl(a, 5) + f + e + k + w[i];
    e = d;
    d = c;
    c = std::rotl(b, 30);
    b = a;
    a = next;
  }
  state_[0] += a;
  state_[1] += b;
  state_[2] += c;
  state_[3] += d;
  state_[4] += e;
}

void Sha1::Add(const void* data, std::size_t count) {
  const std::uint8_t* p = static_cast<const std::uint8_t*>(data);
  total_ += count;
  while (count > 0) {
    if (pending_size_ == 0 && count >= kBlock) {
      Compress(p);
      p += kBlock;
      count -= kBlock;
      continue;
    }
    const std::size_t take = std::min(count, kBlock - pending_size_);
    std::memcpy(pending_ + pending_size_, p, take);
    pending_size_ += take;
    p += take;
    count -= take;
    if (pending_size_ == kBlock) {
      Compress(pending_);
      pending_size_ = 0;
    }
  }
}

Sha1::Digest Sha1::Finish() {
  const std::uint64_t bits = total_ * 8;
  const std::uint8_t first = 0x80;
  const std::uint8_t zero = 0;
  Add(&first, 1);
  while (pending_size_ != kBlock - 8) Add(&zero, 1);
  std::uint8_t length[8];
  Put32Big(length, static_cast<std::uint32_t>(bits >> 32));
  Put32Big(length + 4, static_cast<std::uint32_t>(bits));
  Add(length, sizeof length);
  Digest digest;
  for (std::size_t i = 0; i < 5; ++i) Put32Big(&digest[4 * i], state_[i]);
  return digest;
}

HmacSha1::HmacSha1(const std::string& key) {
  std::uint8_t block[Sha1::kBlock] = {};
  if (key.size() > Sha1::kBlock) {
    Sha1 shortened;
    shortened.Add(key.data(), key.size());
    const Sha1::Digest digest = shortened.Finish();
    std::copy(digest.begin(), digest.end(), block);
  } else {
    std::copy(key.begin(), key.end(), block);
  }
  for (std::uint8_t& byte : block) byte ^= 0x36;
  inner_.Add(block, sizeof block);
  for (std::uint8_t& byte : block) byte ^= 0x36 ^ 0x5C;
  outer_.Add(block, sizeof block);
}

Sha1::Digest HmacSha1::Finish() {
  const Sha1::Digest inner = inner_.Finish();
  outer_.Add(inner.data(), inner.size());
  return outer_.Finish();
}

std::string Pbkdf2Sha1(const std::string& password, const std::string& salt, int rounds,
                       std::size_t size) {
  const HmacSha1 keyed(password);
  std::string key;
  for (std::uint32_t block = 1; key.size() < size; ++block) {
    std::uint8_t number[4];
    Put32Big(number, block);
    HmacSha1 first = keyed;
    first.Add(salt.data(), salt.size());
    first.Add(number, sizeof number);
    Sha1::Digest round = first.Finish();
    Sha1::Digest sum = round;
    for (int i = 1; i < rounds; ++i) {
      HmacSha1 next = keyed;
      next.Add(round.data(), round.size());
      round = next.Finish();
      for (std::size_t k = 0; k < sum.size(); ++k) sum[k] ^= round[k];
    }
    key.append(sum.begin(), sum.end());
  }
  key.resize(size);
  return key;
}

}  // namespace quorvale::zip
