// AES (FIPS 197), only the direction that the counter mode needs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace quorvale::zip {

class Aes {
 public:
  static constexpr std::size_t kBlock = 16;

  // A key of 16, 24 or 32 bytes.
  explicit Aes(const std::string& key);
  void Encrypt(const std::uint8_t* in, std::uint8_t* out) const;

 private:
  std::uint32_t keys_[60];  // four words a round
  int rounds_;
};

}  // namespace quorvale::zip
