// Registry reads and writes as text: nearly all that the program finds on a computer it finds by
// these. No operation shows a message.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/registry_store.h"
#include "platform/system_info.h"

namespace quorvale {

// What RegGetTyped answers for a value that cannot be read.
inline constexpr char kRegistryReadError[] = "Error: Key or Value Not Found.";

// One row of RegListValues. Text for strings, decimal text for 32-bit numbers, raw bytes for all
// others.
struct NamedValue {
  std::string name;
  std::string value;
};

class Registry {
 public:
  Registry(RegistryStore& store, SystemInfo& system) : store_(store), system_(system) {}

  // The value as text, "" when absent. Strings come as UTF-8 and in full, binary data as its bytes
  // less one NUL at the end, numbers by a reader of small flags (258 reads as "18"). At most 1024
  // bytes.
  std::string RegGetValue(RegistryRoot root, const std::string& subkey, const std::string& name);
  // The value by its type: text, bytes, or a number as signed decimal text; other types give "".
  // kRegistryReadError when it is absent or holds nothing.
  std::string RegGetTyped(RegistryRoot root, const std::string& subkey, const std::string& name);
  // Writes text into a value and keeps the type that the value has; a new value is a string. The
  // key must exist. False on failure. For binary values `text` is the bytes.
  bool RegSetValue(RegistryRoot root, const std::string& subkey, const std::string& name,
                   const std::string& text);
  void RegMakeKey(RegistryRoot root, const std::string& subkey);
  void RegKillValue(RegistryRoot root, const std::string& subkey, const std::string& name);
  std::vector<NamedValue> RegListValues(RegistryRoot root, const std::string& subkey);
  int RegCountSubkeys(RegistryRoot root, const std::string& subkey);
  // Makes the key if needed and stores a string. True when the key could be opened.
  bool SaveRegString(RegistryRoot root, const std::string& subkey, const std::string& name,
                     const std::string& text);
  // The same with a binary value of these bytes.
  bool SaveRegBytes(RegistryRoot root, const std::string& subkey, const std::string& name,
                    const std::string& bytes);
  // The same with a string in full: for paths that another program reads.
  bool SaveRegText(RegistryRoot root, const std::string& subkey, const std::string& name,
                   const std::string& text);
  // The text of a value that holds one, in full where the code page lost something. `data` is what
  // the store gave for it, without the NUL that ends it.
  std::string FullText(RegistryRoot root, const std::string& subkey, const std::string& name,
                       const std::string& data);
  // What reading gives after this text was stored as a string: "?" is in the place of what the
  // system's code page cannot hold.
  std::string AsString(const std::string& text) { return system_.FromAnsi(system_.ToAnsi(text)); }

  RegistryStore& store() { return store_; }

 private:
  RegistryStore& store_;
  SystemInfo& system_;
};

}  // namespace quorvale
