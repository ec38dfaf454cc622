// The machine folder's registry: held in memory, one registry-editor text per root on disk.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/host/code_page.h"
#include "platform/host/machine_folder.h"
#include "platform/registry_store.h"
#include "platform/registry_text.h"

namespace quorvale::host {

class HostRegistryStore : public RegistryStore {
 public:
  // `code_page` must live as long as the store. Nothing is read yet.
  HostRegistryStore(const std::string& machine_folder, const CodePage& code_page);
  ~HostRegistryStore() override;

  // Reads registry/HKEY_*.reg of the machine folder; a root without a file is empty. False, and
  // the reason, if a file cannot be understood.
  bool Load(MachineError* error);
  // Writes the roots that were changed since; each file is afterwards the whole old or the whole
  // new one. False, and the reason, if one could not be written.
  bool Flush(std::string* error);
  // True if Flush would write something.
  bool HasChanges() const;

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

  // Removes a key with all below it. kNotFound if there is none.
  long DeleteKey(RegistryRoot root, const std::string& subkey);

  // What the registry editor does: carries out the statements of a text, and gives the text of a
  // key with all below it. An export of a key that does not exist is empty.
  void Merge(const std::vector<RegistryStatement>& statements);
  std::vector<RegistryStatement> Export(RegistryRoot root, const std::string& subkey) const;

 private:
  struct Key;
  static constexpr std::size_t kRoots = 3;

  Key* Find(RegistryRoot root, const std::string& subkey) const;
  // Null if a part of the path is no name that a key can have.
  Key* Make(RegistryRoot root, const std::string& subkey);
  long SetUnicodeValue(RegistryRoot root, const std::string& subkey, const std::string& name,
                       std::uint32_t type, const std::string& data);
  std::string ToAnsiData(std::uint32_t type, const std::string& data) const;
  std::string ToUnicodeData(std::uint32_t type, const std::string& data) const;
  std::string FilePath(RegistryRoot root) const;
  bool LoadRoot(RegistryRoot root, MachineError* error);
  bool WriteRoot(RegistryRoot root, std::string* error) const;

  const std::string machine_folder_;
  const CodePage& code_page_;
  std::unique_ptr<Key> roots_[kRoots];
  bool changed_[kRoots] = {};
};

}  // namespace quorvale::host
