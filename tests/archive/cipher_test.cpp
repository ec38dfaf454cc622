// The ciphers and hashes, against the published examples of their standards.
#include <gtest/gtest.h>

#include "archive/classic_cipher.h"
#include "archive/crypto.h"

namespace quorvale::zip_test {
namespace {

std::string FromHex(const std::string& hex) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
  }
  return bytes;
}

// The first, second and sixth cases of RFC 2202.
TEST(HmacSha1, GivesTheCodesOfRfc2202) {
  const auto code = [](const std::string& key, const std::string& text) {
    zip::HmacSha1 hmac(key);
    // In two pieces.
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    hmac.Add(bytes, 3);
    hmac.Add(bytes + 3, text.size() - 3);
    const zip::HmacSha1::Code digest = hmac.Finish();
    return std::string(digest.begin(), digest.end());
  };
  EXPECT_EQ(code(std::string(20, '\x0b'), "Hi There"),
            FromHex("b617318655057264e28bc0b6fb378c8ef146be00"));
  EXPECT_EQ(code("Jefe", "what do ya want for nothing?"),
            FromHex("effcdf6ae5eb2fa2d27416d5f184df9c259a7c79"));
  EXPECT_EQ(code(std::string(80, '\xaa'), "Test Using Larger Than Block-Size Key - Hash Key First"),
            FromHex("aa4ae5e15272d00e95705637ce8a3b55ed402112"));
}

// All cases of RFC 6070 but the one of 16 million rounds.
TEST(Pbkdf2Sha1, GivesTheKeysOfRfc6070) {
  EXPECT_EQ(zip::Pbkdf2Sha1("password", "salt", 1, 20),
            FromHex("0c60c80f961f0e71f3a9b524af6012062fe037a6"));
  EXPECT_EQ(zip::Pbkdf2Sha1("password", "salt", 2, 20),
            FromHex("ea6c014dc72d6f8ccd1ed92ace1d41f0d8de8957"));
  EXPECT_EQ(zip::Pbkdf2Sha1("password", "salt", 4096, 20),
            FromHex("4b007901b765489abead49d926f721d065a429c1"));
  EXPECT_EQ(
      zip::Pbkdf2Sha1("passwordPASSWORDpassword", "saltSALTsaltSALTsaltSALTsaltSALTsalt", 4096, 25),
      FromHex("3d2eec4fe41c849b80c8d83662c0e44a8b291a964cf2f07038"));
  EXPECT_EQ(zip::Pbkdf2Sha1(std::string("pass\0word", 9), std::string("sa\0lt", 5), 4096, 16),
            FromHex("56fa6aa75548099dcc37d7f03425e0c3"));
}

// Appendix C of FIPS 197.
TEST(Aes, GivesTheBlocksOfFips197) {
  const std::string plain = FromHex("00112233445566778899aabbccddeeff");
  const auto encrypt = [&](const std::string& key) {
    std::string out(16, '\0');
    zip::Aes(key).Encrypt(reinterpret_cast<const std::uint8_t*>(plain.data()),
                          reinterpret_cast<std::uint8_t*>(out.data()), out.size());
    return out;
  };
  const std::string key =
      FromHex("000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f");
  EXPECT_EQ(encrypt(key.substr(0, 16)), FromHex("69c4e0d86a7b0430d8cdb78070b4c55a"));
  EXPECT_EQ(encrypt(key.substr(0, 24)), FromHex("dda97ca4864cdfe06eaf70a0ec0d7191"));
  EXPECT_EQ(encrypt(key), FromHex("8ea2b7ca516745bfeafc49904b496089"));
}

TEST(ClassicCipher, DecryptsWhatItEncrypts) {
  std::string text = "Some text that nobody is to read.";
  const std::string original = text;
  std::uint8_t* bytes = reinterpret_cast<std::uint8_t*>(text.data());
  zip::ClassicCipher("secret").Encrypt(bytes, text.size());
  EXPECT_NE(text, original);
  zip::ClassicCipher("secret").Decrypt(bytes, text.size());
  EXPECT_EQ(text, original);
}

}  // namespace
}  // namespace quorvale::zip_test
