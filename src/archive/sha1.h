// SHA-1 (FIPS 180-4), HMAC (RFC 2104) and PBKDF2 (RFC 2898), as AES entries of archives use them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace quorvale::zip {

class Sha1 {
 public:
  static constexpr std::size_t kSize = 20;
  static constexpr std::size_t kBlock = 64;
  using Digest = std::array<std::uint8_t, kSize>;

  void Add(const void* data, std::size_t count);
  Digest Finish();

 private:
  void Compress(const std::uint8_t* block);

  std::uint32_t state_[5] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
  std::uint8_t pending_[kBlock] = {};
  std::size_t pending_size_ = 0;
  std::uint64_t total_ = 0;
};

class HmacSha1 {
 public:
  explicit HmacSha1(const std::string& key);
  void Add(const void* data, std::size_t count) { inner_.Add(data, count); }
  Sha1::Digest Finish();

 private:
  Sha1 inner_;
  Sha1 outer_;
};

// So many bytes of a key from a password.
std::string Pbkdf2Sha1(const std::string& password, const std::string& salt, int rounds,
                       std::size_t size);

}  // namespace quorvale::zip
