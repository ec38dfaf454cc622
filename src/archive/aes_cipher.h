// Entries that are protected by AES, in the form whose two publicly described variants are called
// AE-1 and AE-2: a salt and two bytes of the key to know a wrong password by stand in front of the
// data, the first half of a code over the encrypted data behind it.
#pragma once

#include <memory>

#include "archive/crypto.h"
#include "archive/decryptor.h"
#include "archive/encryptor.h"

namespace quorvale::zip {

inline constexpr std::uint8_t kAesStrongest = 3;  // Record::aes_strength: a key of 256 bits
constexpr std::size_t AesSaltSize(std::uint8_t strength) { return 4u + 4u * strength; }

// The cipher of one entry, from its first byte to its last.
class AesCipher {
 public:
  static constexpr std::size_t kVerifierSize = 2;
  static constexpr std::size_t kCodeSize = 10;

  // Stretches the password, which takes about a millisecond. One salt serves one entry only: with
  // the same key two entries would be encrypted by the same bits.
  AesCipher(const std::string& password, const std::string& salt, std::uint8_t strength);

  const std::string& Verifier() const { return verifier_; }
  void Encrypt(std::uint8_t* data, std::size_t count);
  void Decrypt(std::uint8_t* data, std::size_t count);
  // Of all the data.
  std::string Code();

 private:
  void Mix(std::uint8_t* data, std::size_t count);
  void NextKeyBits();

  static constexpr std::size_t kBatch = 64 * Aes::kBlock;
  AesCipher(const std::string& keys, std::size_t key_size);

  Aes aes_;
  HmacSha1 hmac_;
  std::string verifier_;
  std::uint64_t counter_ = 0;
  std::uint8_t key_bits_[kBatch] = {};
  std::size_t used_ = kBatch;  // of key_bits_
};

class AesDecryptor : public Decryptor {
 public:
  explicit AesDecryptor(const Record& record) : strength_(record.aes_strength) {}
  std::size_t HeaderSize() const override {
    return AesSaltSize(strength_) + AesCipher::kVerifierSize;
  }
  std::size_t TrailerSize() const override { return AesCipher::kCodeSize; }
  bool Begin(const std::uint8_t* header, const std::vector<std::string>& passwords) override;
  void Apply(std::uint8_t* data, std::size_t count) override { cipher_->Decrypt(data, count); }
  bool TrailerFits(const std::uint8_t* trailer) override;
  std::uint32_t WrongPasswordsPerPass() const override { return 65536; }

 private:
  const std::uint8_t strength_;
  std::unique_ptr<AesCipher> cipher_;
};

class AesEncryptor : public Encryptor {
 public:
  AesEncryptor(std::string password, std::string salt)
      : password_(std::move(password)), salt_(std::move(salt)) {}
  std::string Begin(std::uint8_t check_byte) override;
  void Apply(std::uint8_t* data, std::size_t count) override { cipher_->Encrypt(data, count); }
  std::string End() override { return cipher_->Code(); }

 private:
  const std::string password_;
  const std::string salt_;
  std::unique_ptr<AesCipher> cipher_;
};

}  // namespace quorvale::zip
