// Opens what a password protects, in the two forms that archives have.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "archive/zip_format.h"

namespace quorvale::zip {

class Decryptor {
 public:
  virtual ~Decryptor() = default;
  // Bytes in front of and behind the protected data; the entry's compressed size counts them.
  virtual std::size_t HeaderSize() const = 0;
  virtual std::size_t TrailerSize() const = 0;
  // Looks at the header. False if none of the passwords can be right. Begins to decrypt with the
  // first one that can.
  virtual bool Begin(const std::uint8_t* header, const std::vector<std::string>& passwords) = 0;
  // Decrypts in place; the pieces of an entry one after the other.
  virtual void Apply(std::uint8_t* data, std::size_t count) = 0;
  // Compares the trailer with all the data since Begin. True where the form has no trailer.
  virtual bool TrailerFits(const std::uint8_t* trailer) = 0;
  // Of how many wrong passwords Begin lets one pass.
  virtual std::uint32_t WrongPasswordsPerPass() const = 0;
};

// The one for an entry that is encrypted.
std::unique_ptr<Decryptor> MakeDecryptor(const Record& record);

}  // namespace quorvale::zip
