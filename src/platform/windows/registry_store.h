// The registry of the running system.
#pragma once

#include "platform/registry_store.h"

namespace quorvale::windows {

class WindowsRegistryStore : public RegistryStore {
 public:
  bool KeyExists(RegistryRoot root, const std::string& subkey) override;
  long CreateKey(RegistryRoot root, const std::string& subkey) override;
  long QueryValue(RegistryRoot root, const std::string& subkey, const std::string& name,
                  RegistryValue* value) override;
  long SetValue(RegistryRoot root, const std::string& subkey, const std::string& name,
                std::uint32_t type, const std::string& data) override;
  long DeleteValue(RegistryRoot root, const std::string& subkey, const std::string& name) override;
  long QueryText(RegistryRoot root, const std::string& subkey, const std::string& name,
                 std::string* text) override;
  long SetText(RegistryRoot root, const std::string& subkey, const std::string& name,
               std::uint32_t type, const std::string& text) override;
  long ListSubkeys(RegistryRoot root, const std::string& subkey,
                   std::vector<std::string>* names) override;
  long ListValues(RegistryRoot root, const std::string& subkey,
                  std::vector<RegistryValue>* values) override;
};

}  // namespace quorvale::windows
