#include "archive/aes_decryptor.h"

#include <algorithm>
#include <cstring>

namespace quorvale::zip {
namespace {

constexpr int kRounds = 1000;
constexpr std::size_t kVerifierSize = 2;

}  // namespace

AesDecryptor::AesDecryptor(const Record& record)
    : salt_size_(4u + 4u * record.aes_strength), key_size_(8u + 8u * record.aes_strength) {}

bool AesDecryptor::Begin(const std::uint8_t* header, const std::vector<std::string>& passwords) {
  const std::string salt(header, header + salt_size_);
  for (const std::string& password : passwords) {
    const std::string keys = Pbkdf2Sha1(password, salt, kRounds, 2 * key_size_ + kVerifierSize);
    if (std::memcmp(keys.data() + 2 * key_size_, header + salt_size_, kVerifierSize) != 0) {
      continue;
    }
    aes_ = std::make_unique<Aes>(keys.substr(0, key_size_));
    hmac_ = std::make_unique<HmacSha1>(keys.substr(key_size_, key_size_));
    std::fill(std::begin(counter_), std::end(counter_), std::uint8_t{0});
    used_ = Aes::kBlock;
    return true;
  }
  return false;
}

void AesDecryptor::NextKeyBlock() {
  // The counter begins with 1, its lowest byte first.
  for (std::uint8_t& byte : counter_) {
    if (++byte != 0) break;
  }
  aes_->Encrypt(counter_, key_block_);
  used_ = 0;
}

void AesDecryptor::Apply(std::uint8_t* data, std::size_t count) {
  hmac_->Add(data, count);
  for (std::size_t i = 0; i < count; ++i) {
    if (used_ == Aes::kBlock) NextKeyBlock();
    data[i] ^= key_block_[used_++];
  }
}

bool AesDecryptor::TrailerFits(const std::uint8_t* trailer) {
  const Sha1::Digest digest = hmac_->Finish();
  return std::memcmp(digest.data(), trailer, TrailerSize()) == 0;
}

}  // namespace quorvale::zip
