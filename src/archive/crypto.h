// What protected entries need of a library of ciphers: AES (FIPS 197), HMAC (RFC 2104) with SHA-1,
// and PBKDF2 (RFC 8018). A thin cover, so that only crypto.cpp knows the library.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace quorvale::zip {

// AES in the one direction that a counter mode needs.
class Aes {
 public:
  static constexpr std::size_t kBlock = 16;

  // A key of 16, 24 or 32 bytes.
  explicit Aes(const std::string& key);
  ~Aes();
  // `count` is a multiple of kBlock; each block is encrypted by itself.
  void Encrypt(const std::uint8_t* in, std::uint8_t* out, std::size_t count) const;

 private:
  struct Keys;
  std::unique_ptr<Keys> keys_;
};

class HmacSha1 {
 public:
  static constexpr std::size_t kSize = 20;
  using Code = std::array<std::uint8_t, kSize>;

  explicit HmacSha1(const std::string& key);
  ~HmacSha1();
  void Add(const std::uint8_t* data, std::size_t count);
  // The code of all that was added; the next one begins anew.
  Code Finish();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// So many bytes of a key from a password.
std::string Pbkdf2Sha1(const std::string& password, const std::string& salt, unsigned rounds,
                       std::size_t size);

}  // namespace quorvale::zip
