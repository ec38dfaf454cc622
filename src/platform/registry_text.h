// The system registry editor's text format, read and written. Two variants: "REGEDIT4" in the
// ANSI code page, and "Windows Registry Editor Version 5.00" in UTF-16 with a byte order mark.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry_store.h"

namespace quorvale {

// One statement of such a text, in order.
struct RegistryStatement {
  enum class Kind { kKey, kDeleteKey, kValue, kDeleteValue };
  Kind kind = Kind::kKey;
  std::string key;   // full path, with the root's name spelled out
  std::string name;  // of a value; "" is the default value
  std::uint32_t type = registry_type::kNone;
  std::string data;  // as the Unicode calls store it: text types in UTF-16LE with the final NUL
  int line = 0;      // 1-based, where the statement starts
};

struct RegistryTextError {
  int line = 0;
  std::string message;
};

// A text of either variant, told apart by its first line; bytes as in the file. `from_ansi` turns
// code page bytes into UTF-8. Lines that cannot be read are left out and told in `errors`. False
// if the first line is neither variant's.
bool ReadRegistryText(std::string_view bytes,
                      const std::function<std::string(const std::string&)>& from_ansi,
                      std::vector<RegistryStatement>* statements,
                      std::vector<RegistryTextError>* errors);

enum class RegistryTextVersion { kRegedit4, kVersion5 };

// Writes the statements, one key section per kKey statement, as the bytes of a file with CR LF
// line ends.
std::string WriteRegistryText(const std::vector<RegistryStatement>& statements,
                              RegistryTextVersion version,
                              const std::function<std::string(const std::string&)>& to_ansi);

// "HKEY_CURRENT_USER\Software\X" to its root and "Software\X". Nothing for another root word.
struct RegistryPath {
  RegistryRoot root;
  std::string subkey;
};
std::optional<RegistryPath> ParseRegistryPath(const std::string& path);
// "HKEY_CURRENT_USER" and so on.
const char* RegistryRootName(RegistryRoot root);

}  // namespace quorvale
