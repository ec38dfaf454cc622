#include "archive/crypto.h"

#include <nettle/aes.h>
#include <nettle/hmac.h>
#include <nettle/pbkdf2.h>

namespace quorvale::zip {
namespace {

const std::uint8_t* BytesOf(const std::string& text) {
  return reinterpret_cast<const std::uint8_t*>(text.data());
}

}  // namespace

struct Aes::Keys {
  std::size_t size;  // of the key; says which of the following is meant
  union {
    aes128_ctx of128;
    aes192_ctx of192;
    aes256_ctx of256;
  };
};

Aes::Aes(const std::string& key) : keys_(std::make_unique<Keys>()) {
  keys_->size = key.size();
  if (key.size() == AES128_KEY_SIZE) {
    aes128_set_encrypt_key(&keys_->of128, BytesOf(key));
  } else if (key.size() == AES192_KEY_SIZE) {
    aes192_set_encrypt_key(&keys_->of192, BytesOf(key));
  } else {
    aes256_set_encrypt_key(&keys_->of256, BytesOf(key));
  }
}

Aes::~Aes() = default;

void Aes::Encrypt(const std::uint8_t* in, std::uint8_t* out, std::size_t count) const {
  if (keys_->size == AES128_KEY_SIZE) {
    aes128_encrypt(&keys_->of128, count, out, in);
  } else if (keys_->size == AES192_KEY_SIZE) {
    aes192_encrypt(&keys_->of192, count, out, in);
  } else {
    aes256_encrypt(&keys_->of256, count, out, in);
  }
}

struct HmacSha1::State {
  hmac_sha1_ctx context;
};

HmacSha1::HmacSha1(const std::string& key) : state_(std::make_unique<State>()) {
  hmac_sha1_set_key(&state_->context, key.size(), BytesOf(key));
}

HmacSha1::~HmacSha1() = default;

void HmacSha1::Add(const std::uint8_t* data, std::size_t count) {
  hmac_sha1_update(&state_->context, count, data);
}

HmacSha1::Code HmacSha1::Finish() {
  Code code;
  hmac_sha1_digest(&state_->context, code.size(), code.data());
  return code;
}

std::string Pbkdf2Sha1(const std::string& password, const std::string& salt, unsigned rounds,
                       std::size_t size) {
  std::string key(size, '\0');
  pbkdf2_hmac_sha1(password.size(), BytesOf(password), rounds, salt.size(), BytesOf(salt),
                   key.size(), reinterpret_cast<std::uint8_t*>(key.data()));
  return key;
}

}  // namespace quorvale::zip
