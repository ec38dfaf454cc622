// The classic cipher of the Zip format (section "Traditional PKWARE Encryption" of APPNOTE.TXT).
// It keeps a stranger's eyes out and is no protection against an expert; every zip tool reads it.
#pragma once

#include <array>

#include "archive/decryptor.h"
#include "archive/encryptor.h"

namespace quorvale::zip {

inline constexpr std::size_t kClassicHeaderSize = 12;

class ClassicCipher {
 public:
  explicit ClassicCipher(const std::string& password);
  void Encrypt(std::uint8_t* data, std::size_t count);
  void Decrypt(std::uint8_t* data, std::size_t count);

 private:
  void Update(std::uint8_t plain);
  std::uint8_t KeyByte() const;
  std::uint32_t keys_[3];
};

// The byte of an entry that the last byte of the header repeats: of the check value, or, where that
// follows the data, of the time.
std::uint8_t ClassicCheckByte(const Record& record);

class ClassicEncryptor : public Encryptor {
 public:
  // `noise`: kClassicHeaderSize bytes that nobody foresees.
  ClassicEncryptor(const std::string& password, std::string noise)
      : cipher_(password), header_(std::move(noise)) {}
  std::string Begin(std::uint8_t check_byte) override;
  void Apply(std::uint8_t* data, std::size_t count) override { cipher_.Encrypt(data, count); }
  std::string End() override { return ""; }

 private:
  ClassicCipher cipher_;
  std::string header_;
};

class ClassicDecryptor : public Decryptor {
 public:
  explicit ClassicDecryptor(const Record& record);
  std::size_t HeaderSize() const override { return kClassicHeaderSize; }
  std::size_t TrailerSize() const override { return 0; }
  bool Begin(const std::uint8_t* header, const std::vector<std::string>& passwords) override;
  void Apply(std::uint8_t* data, std::size_t count) override;
  bool TrailerFits(const std::uint8_t*) override { return true; }
  std::uint32_t WrongPasswordsPerPass() const override { return 256; }

 private:
  std::uint8_t crc_byte_;
  std::uint8_t check_byte_;
  ClassicCipher cipher_;
};

}  // namespace quorvale::zip
