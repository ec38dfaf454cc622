// Opens entries that are encrypted with AES in the form that common tools write, the one whose two
// publicly described variants are called AE-1 and AE-2.
#pragma once

#include <memory>

#include "archive/aes.h"
#include "archive/decryptor.h"
#include "archive/sha1.h"

namespace quorvale::zip {

class AesDecryptor : public Decryptor {
 public:
  explicit AesDecryptor(const Record& record);
  std::size_t HeaderSize() const override { return salt_size_ + 2; }
  std::size_t TrailerSize() const override { return 10; }
  bool Begin(const std::uint8_t* header, const std::vector<std::string>& passwords) override;
  void Apply(std::uint8_t* data, std::size_t count) override;
  bool TrailerFits(const std::uint8_t* trailer) override;
  std::uint32_t WrongPasswordsPerPass() const override { return 65536; }

 private:
  void NextKeyBlock();

  std::size_t salt_size_;
  std::size_t key_size_;
  std::unique_ptr<Aes> aes_;
  std::unique_ptr<HmacSha1> hmac_;
  std::uint8_t counter_[Aes::kBlock] = {};
  std::uint8_t key_block_[Aes::kBlock] = {};
  std::size_t used_ = Aes::kBlock;  // of key_block_
};

}  // namespace quorvale::zip
