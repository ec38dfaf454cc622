// A part of a registry as it was read from an old disk, whatever kept it there: the tree that the
// three readers of this folder (nt_hive.h, classic_hive.h, wine_registry.h) give alike.
//
// What is read comes from a disk that may be damaged or forged. Every reader is bound in depth, in
// the number of keys and in bytes, and what it leaves out it tells in `remarks`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/registry_text.h"

namespace quorvale::host {

struct HiveValue {
  std::string name;  // "" is the key's default value
  std::uint32_t type = registry_type::kNone;
  std::string data;  // as the Unicode calls store it: text types in UTF-16LE with the final NUL
};

struct HiveKey {
  std::string name;
  std::vector<HiveValue> values;
  std::vector<HiveKey> subkeys;

  // The key at a path below this one ("Software\Microsoft"); null if there is none. Names are
  // matched without regard to case, here and below.
  const HiveKey* Find(const std::string& path) const;
  const HiveValue* Value(const std::string& value_name) const;
  // The text of a value, without its NULs; "" if there is none or it is no text.
  std::string Text(const std::string& value_name) const;
  // The same of a number; nothing if there is none.
  std::optional<std::uint32_t> Number(const std::string& value_name) const;
};

struct Hive {
  HiveKey root;
  // What a person should know: it was not closed, parts of it could not be read.
  std::vector<std::string> remarks;
};

// Whether a key is wanted, with all below it; its path below the root ("Classes\CLSID") as it
// stands. An empty function wants all.
using HiveFilter = std::function<bool(const std::string& path)>;

// The bounds that every reader keeps.
struct HiveBounds {
  static constexpr int kDepth = 512;  // the system's registry nests no deeper
  static constexpr std::size_t kKeys = 4u << 20;
  static constexpr std::size_t kNameBytes = 64u << 10;
  static constexpr std::size_t kFileBytes = 1u << 30;
};

// True for a name that a key can have: not empty, without "\" and control characters.
bool IsHiveKeyName(const std::string& name);

// The tree as statements of the registry editor's text, its root at `path`
// ("HKEY_LOCAL_MACHINE\SOFTWARE").
void AppendStatements(const HiveKey& root, const std::string& path,
                      std::vector<RegistryStatement>* statements);

}  // namespace quorvale::host
