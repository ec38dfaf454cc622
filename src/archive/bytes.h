// A block of raw memory, and numbers in little-endian byte order, as archives hold them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace quorvale::zip {

// Memory that is not cleared when it is made.
struct Bytes {
  Bytes() = default;
  explicit Bytes(std::size_t room)
      : data(std::make_unique_for_overwrite<std::uint8_t[]>(room)), capacity(room) {}

  std::unique_ptr<std::uint8_t[]> data;
  std::size_t size = 0;      // bytes in use
  std::size_t capacity = 0;  // bytes there are
};

inline std::uint16_t Get16(const std::uint8_t* p) {
  return static_cast<std::uint16_t>(p[0] | (p[1] << 8));
}

inline std::uint32_t Get32(const std::uint8_t* p) {
  return Get16(p) | (static_cast<std::uint32_t>(Get16(p + 2)) << 16);
}

inline std::uint64_t Get64(const std::uint8_t* p) {
  return Get32(p) | (static_cast<std::uint64_t>(Get32(p + 4)) << 32);
}

inline void Put16(std::string* out, std::uint64_t value) {
  out->push_back(static_cast<char>(value & 0xFF));
  out->push_back(static_cast<char>((value >> 8) & 0xFF));
}

inline void Put32(std::string* out, std::uint64_t value) {
  Put16(out, value & 0xFFFF);
  Put16(out, (value >> 16) & 0xFFFF);
}

inline void Put64(std::string* out, std::uint64_t value) {
  Put32(out, value & 0xFFFFFFFF);
  Put32(out, value >> 32);
}

inline const std::uint8_t* AsBytes(const std::string& text) {
  return reinterpret_cast<const std::uint8_t*>(text.data());
}

}  // namespace quorvale::zip
