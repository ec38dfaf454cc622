#include "archive/aes_cipher.h"

#include <algorithm>
#include <cstring>

namespace quorvale::zip {
namespace {

constexpr unsigned kRounds = 1000;

std::size_t KeySize(std::uint8_t strength) { return 8u + 8u * strength; }

}  // namespace

AesCipher::AesCipher(const std::string& password, const std::string& salt, std::uint8_t strength)
    : AesCipher(Pbkdf2Sha1(password, salt, kRounds, 2 * KeySize(strength) + kVerifierSize),
                KeySize(strength)) {}

AesCipher::AesCipher(const std::string& keys, std::size_t key_size)
    : aes_(keys.substr(0, key_size)),
      hmac_(keys.substr(key_size, key_size)),
      verifier_(keys.substr(2 * key_size)) {}

// The counter begins with 1, its lowest byte first.
void AesCipher::NextKeyBits() {
  std::uint8_t counters[kBatch] = {};
  for (std::size_t at = 0; at < kBatch; at += Aes::kBlock) {
    ++counter_;
    for (std::size_t i = 0; i < sizeof counter_; ++i) {
      counters[at + i] = static_cast<std::uint8_t>(counter_ >> (8 * i));
    }
  }
  aes_.Encrypt(counters, key_bits_, kBatch);
  used_ = 0;
}

void AesCipher::Mix(std::uint8_t* data, std::size_t count) {
  while (count > 0) {
    if (used_ == kBatch) NextKeyBits();
    const std::size_t now = std::min(count, kBatch - used_);
    for (std::size_t i = 0; i < now; ++i) data[i] ^= key_bits_[used_ + i];
    used_ += now;
    data += now;
    count -= now;
  }
}

void AesCipher::Encrypt(std::uint8_t* data, std::size_t count) {
  Mix(data, count);
  hmac_.Add(data, count);
}

void AesCipher::Decrypt(std::uint8_t* data, std::size_t count) {
  hmac_.Add(data, count);
  Mix(data, count);
}

std::string AesCipher::Code() {
  const HmacSha1::Code code = hmac_.Finish();
  return std::string(code.begin(), code.begin() + kCodeSize);
}

bool AesDecryptor::Begin(const std::uint8_t* header, const std::vector<std::string>& passwords) {
  const std::string salt(header, header + AesSaltSize(strength_));
  for (const std::string& password : passwords) {
    auto cipher = std::make_unique<AesCipher>(password, salt, strength_);
    if (std::memcmp(cipher->Verifier().data(), header + salt.size(), AesCipher::kVerifierSize) !=
        0) {
      continue;
    }
    cipher_ = std::move(cipher);
    return true;
  }
  return false;
}

bool AesDecryptor::TrailerFits(const std::uint8_t* trailer) {
  return std::memcmp(cipher_->Code().data(), trailer, AesCipher::kCodeSize) == 0;
}

std::string AesEncryptor::Begin(std::uint8_t) {
  cipher_ = std::make_unique<AesCipher>(password_, salt_, kAesStrongest);
  return salt_ + cipher_->Verifier();
}

}  // namespace quorvale::zip
