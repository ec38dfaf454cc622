#include "platform/host/dos_attributes.h"

#include <sys/xattr.h>

#include <cstdlib>

namespace quorvale::host {
namespace {

constexpr char kNtfsName[] = "system.ntfs_attrib_be";  // the number, its high byte first
constexpr std::size_t kMostBytes = 256;

std::optional<std::string> ReadAttribute(const std::string& host_path, const char* name) {
  char bytes[kMostBytes];
  const ssize_t length = getxattr(host_path.c_str(), name, bytes, sizeof(bytes));
  if (length <= 0) return std::nullopt;
  return std::string(bytes, static_cast<std::size_t>(length));
}

std::uint32_t LittleEndian(const std::string& bytes, std::size_t at, std::size_t count) {
  std::uint32_t number = 0;
  for (std::size_t i = count; i > 0; --i) {
    number = number << 8 | static_cast<unsigned char>(bytes[at + i - 1]);
  }
  return number;
}

}  // namespace

std::optional<std::uint32_t> ParseDosAttribute(const std::string& bytes) {
  if (bytes.empty()) return std::nullopt;
  // A text comes first in all layouts; since the fourth it is empty.
  if (bytes[0] != '\0') {
    char* end = nullptr;
    const std::string text = bytes.substr(0, bytes.find('\0'));
    const unsigned long number = std::strtoul(text.c_str(), &end, 16);
    if (*end != '\0') return std::nullopt;
    return static_cast<std::uint32_t>(number);
  }
  constexpr std::size_t kVersion = 2, kValidFields = 8, kAttributes = 12, kEnd = 16;
  if (bytes.size() < kEnd) return std::nullopt;
  const std::uint32_t version = LittleEndian(bytes, kVersion, 2);
  if (version != 4 && version != 5) return std::nullopt;
  if ((LittleEndian(bytes, kValidFields, 4) & 1) == 0) return std::nullopt;
  return LittleEndian(bytes, kAttributes, 4);
}

std::optional<std::uint32_t> DosAttributesOf(const std::string& host_path) {
  if (const auto bytes = ReadAttribute(host_path, kNtfsName); bytes && bytes->size() == 4) {
    std::uint32_t number = 0;
    for (const char c : *bytes) number = number << 8 | static_cast<unsigned char>(c);
    return number;
  }
  const auto bytes = ReadAttribute(host_path, kDosAttributeName);
  return bytes ? ParseDosAttribute(*bytes) : std::nullopt;
}

}  // namespace quorvale::host
