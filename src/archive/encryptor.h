// Protects an entry by a password, in the two forms that archives have.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace quorvale::zip {

// One serves one entry: Begin, then Apply to its pieces in order, then End.
class Encryptor {
 public:
  virtual ~Encryptor() = default;
  // The bytes in front of the data. `check_byte`: the one that the classic form's header repeats
  // (ClassicCheckByte).
  virtual std::string Begin(std::uint8_t check_byte) = 0;
  // Encrypts in place.
  virtual void Apply(std::uint8_t* data, std::size_t count) = 0;
  // The bytes behind the data.
  virtual std::string End() = 0;
};

}  // namespace quorvale::zip
