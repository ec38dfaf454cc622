#include "archive/classic_cipher.h"

#include <algorithm>

namespace quorvale::zip {
namespace {

constexpr std::array<std::uint32_t, 256> MakeCrcTable() {
  std::array<std::uint32_t, 256> table = {};
  for (std::uint32_t i = 0; i < 256; ++i) {
    std::uint32_t value = i;
    for (int bit = 0; bit < 8; ++bit) value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320 : 0);
    table[i] = value;
  }
  return table;
}
constexpr std::array<std::uint32_t, 256> kCrcTable = MakeCrcTable();

std::uint32_t CrcStep(std::uint32_t crc, std::uint8_t byte) {
  return (crc >> 8) ^ kCrcTable[(crc ^ byte) & 0xFF];
}

}  // namespace

ClassicCipher::ClassicCipher(const std::string& password)
    : keys_{0x12345678, 0x23456789, 0x34567890} {
  for (const char c : password) Update(static_cast<std::uint8_t>(c));
}

void ClassicCipher::Update(std::uint8_t plain) {
  keys_[0] = CrcStep(keys_[0], plain);
  keys_[1] = (keys_[1] + (keys_[0] & 0xFF)) * 134775813 + 1;
  keys_[2] = CrcStep(keys_[2], static_cast<std::uint8_t>(keys_[1] >> 24));
}

std::uint8_t ClassicCipher::KeyByte() const {
  const std::uint32_t t = (keys_[2] & 0xFFFF) | 2;
  return static_cast<std::uint8_t>((t * (t ^ 1)) >> 8);
}

void ClassicCipher::Encrypt(std::uint8_t* data, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint8_t plain = data[i];
    data[i] = plain ^ KeyByte();
    Update(plain);
  }
}

void ClassicCipher::Decrypt(std::uint8_t* data, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    data[i] ^= KeyByte();
    Update(data[i]);
  }
}

std::uint8_t ClassicCheckByte(const Record& record) {
  if ((record.flags & kFlagDescriptor) != 0) {
    return static_cast<std::uint8_t>(record.dos_time >> 8);
  }
  return static_cast<std::uint8_t>(record.crc >> 24);
}

std::string ClassicEncryptor::Begin(std::uint8_t check_byte) {
  header_.back() = static_cast<char>(check_byte);
  cipher_.Encrypt(reinterpret_cast<std::uint8_t*>(header_.data()), header_.size());
  return header_;
}

ClassicDecryptor::ClassicDecryptor(const Record& record)
    : crc_byte_(static_cast<std::uint8_t>(record.crc >> 24)),
      check_byte_(ClassicCheckByte(record)),
      cipher_("") {}

bool ClassicDecryptor::Begin(const std::uint8_t* header,
                             const std::vector<std::string>& passwords) {
  for (const std::string& password : passwords) {
    ClassicCipher cipher(password);
    std::uint8_t plain[kClassicHeaderSize];
    std::copy(header, header + kClassicHeaderSize, plain);
    cipher.Decrypt(plain, kClassicHeaderSize);
    // Some tools take the byte of the check value although it follows the data.
    if (plain[kClassicHeaderSize - 1] != check_byte_ &&
        plain[kClassicHeaderSize - 1] != crc_byte_) {
      continue;
    }
    cipher_ = cipher;
    return true;
  }
  return false;
}

void ClassicDecryptor::Apply(std::uint8_t* data, std::size_t count) {
  cipher_.Decrypt(data, count);
}

}  // namespace quorvale::zip
