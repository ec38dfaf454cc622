// The registry, shaped like the calls of advapi32 that take ANSI text: key paths and value names
// are UTF-8 here, value data is raw bytes as the ANSI calls give them (text in the system's code
// page, with its terminating NUL where the value holds one).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quorvale {

enum class RegistryRoot { kClassesRoot, kCurrentUser, kLocalMachine };

// Value types, with the registry's own numbers.
namespace registry_type {
inline constexpr std::uint32_t kNone = 0;
inline constexpr std::uint32_t kString = 1;
inline constexpr std::uint32_t kExpandString = 2;
inline constexpr std::uint32_t kBinary = 3;
inline constexpr std::uint32_t kDword = 4;
inline constexpr std::uint32_t kMultiString = 7;

// True for a value that is one text.
inline bool IsText(std::uint32_t type) { return type == kString || type == kExpandString; }
// True for a value of text, one or several.
inline bool HoldsText(std::uint32_t type) { return IsText(type) || type == kMultiString; }
}  // namespace registry_type

// Result codes, with the system's own numbers.
namespace registry_status {
inline constexpr long kOk = 0;
inline constexpr long kNotFound = 2;
inline constexpr long kDenied = 5;
}  // namespace registry_status

struct RegistryValue {
  std::string name;  // "" is the key's default value
  std::uint32_t type = registry_type::kNone;
  std::string data;
};

// Subkeys are matched without regard to case; a leading, trailing or doubled "\" does not count.
class RegistryStore {
 public:
  virtual ~RegistryStore() = default;

  virtual bool KeyExists(RegistryRoot root, const std::string& subkey) = 0;
  // Makes the key and its parents; kOk also if it is there already.
  virtual long CreateKey(RegistryRoot root, const std::string& subkey) = 0;
  virtual long QueryValue(RegistryRoot root, const std::string& subkey, const std::string& name,
                          RegistryValue* value) = 0;
  // The key must exist. `data` is stored as it stands.
  virtual long SetValue(RegistryRoot root, const std::string& subkey, const std::string& name,
                        std::uint32_t type, const std::string& data) = 0;
  virtual long DeleteValue(RegistryRoot root, const std::string& subkey,
                           const std::string& name) = 0;
  // One text in full, as UTF-8 without its terminating NUL, where QueryValue gives what the code
  // page holds of it. kNotFound also for a value of another kind.
  virtual long QueryText(RegistryRoot root, const std::string& subkey, const std::string& name,
                         std::string* text) = 0;
  // Stores one text in full, with its terminating NUL; `type` is one of text. The key must exist.
  // A system without Unicode keeps what its code page holds.
  virtual long SetText(RegistryRoot root, const std::string& subkey, const std::string& name,
                       std::uint32_t type, const std::string& text) = 0;
  // The names of the direct subkeys, in the store's order. kNotFound leaves `names` untouched.
  virtual long ListSubkeys(RegistryRoot root, const std::string& subkey,
                           std::vector<std::string>* names) = 0;
  virtual long ListValues(RegistryRoot root, const std::string& subkey,
                          std::vector<RegistryValue>* values) = 0;
};

}  // namespace quorvale
