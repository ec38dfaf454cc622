#include "platform/windows/registry_store.h"

#include "base/text.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

constexpr REGSAM kReadAccess = 0x20019;
constexpr REGSAM kFullAccess = 0xF003F;
constexpr DWORD kLongestName = 16384;  // of a value; a key's name has 255 at most

HKEY RootHandle(RegistryRoot root) {
  switch (root) {
    case RegistryRoot::kClassesRoot:
      return HKEY_CLASSES_ROOT;
    case RegistryRoot::kCurrentUser:
      return HKEY_CURRENT_USER;
    case RegistryRoot::kLocalMachine:
      break;
  }
  return HKEY_LOCAL_MACHINE;
}

// Without leading, trailing and doubled backslashes, in the code page.
std::string KeyPath(const std::string& subkey) {
  std::string path;
  for (const std::string& part : Split(subkey, "\\")) {
    if (part.empty()) continue;
    if (!path.empty()) path += '\\';
    path += part;
  }
  return Ansi(path);
}

// An open key, closed at the end of its scope.
class Key {
 public:
  Key(RegistryRoot root, const std::string& subkey, REGSAM access) {
    status_ = RegOpenKeyExA(RootHandle(root), KeyPath(subkey).c_str(), 0, access, &handle_);
    if (status_ != ERROR_SUCCESS) handle_ = nullptr;
  }
  ~Key() {
    if (handle_ != nullptr) RegCloseKey(handle_);
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;

  long status() const { return status_; }
  HKEY handle() const { return handle_; }

 private:
  HKEY handle_ = nullptr;
  long status_ = ERROR_SUCCESS;
};

BYTE* Bytes(std::string& data) { return reinterpret_cast<BYTE*>(data.data()); }

}  // namespace

bool WindowsRegistryStore::KeyExists(RegistryRoot root, const std::string& subkey) {
  return Key(root, subkey, kReadAccess).status() == ERROR_SUCCESS;
}

long WindowsRegistryStore::CreateKey(RegistryRoot root, const std::string& subkey) {
  HKEY handle = nullptr;
  const long status =
      RegCreateKeyExA(RootHandle(root), KeyPath(subkey).c_str(), 0, nullptr,
                      REG_OPTION_NON_VOLATILE, kFullAccess, nullptr, &handle, nullptr);
  if (status == ERROR_SUCCESS) RegCloseKey(handle);
  return status;
}

long WindowsRegistryStore::QueryValue(RegistryRoot root, const std::string& subkey,
                                      const std::string& name, RegistryValue* value) {
  const Key key(root, subkey, kReadAccess);
  if (key.status() != ERROR_SUCCESS) return key.status();
  const std::string ansi_name = Ansi(name);
  std::string data(1024, '\0');
  for (;;) {
    DWORD type = REG_NONE;
    DWORD size = static_cast<DWORD>(data.size());
    const long status =
        RegQueryValueExA(key.handle(), ansi_name.c_str(), nullptr, &type, Bytes(data), &size);
    if (status == ERROR_MORE_DATA) {
      // Another program may enlarge it meanwhile, so the size told is a hint only.
      data.resize(size > data.size() ? size : data.size() * 2);
      continue;
    }
    if (status != ERROR_SUCCESS) return status;
    data.resize(size);
    *value = RegistryValue{name, type, std::move(data)};
    return status;
  }
}

long WindowsRegistryStore::SetValue(RegistryRoot root, const std::string& subkey,
                                    const std::string& name, std::uint32_t type,
                                    const std::string& data) {
  const Key key(root, subkey, kFullAccess);
  if (key.status() != ERROR_SUCCESS) return key.status();
  return RegSetValueExA(key.handle(), Ansi(name).c_str(), 0, type,
                        reinterpret_cast<const BYTE*>(data.data()),
                        static_cast<DWORD>(data.size()));
}

long WindowsRegistryStore::DeleteValue(RegistryRoot root, const std::string& subkey,
                                       const std::string& name) {
  const Key key(root, subkey, kFullAccess);
  if (key.status() != ERROR_SUCCESS) return key.status();
  return RegDeleteValueA(key.handle(), Ansi(name).c_str());
}

long WindowsRegistryStore::ListSubkeys(RegistryRoot root, const std::string& subkey,
                                       std::vector<std::string>* names) {
  const Key key(root, subkey, kReadAccess);
  if (key.status() != ERROR_SUCCESS) return key.status();
  names->clear();
  for (DWORD index = 0;; ++index) {
    char name[1024];
    DWORD length = sizeof(name);
    if (RegEnumKeyExA(key.handle(), index, name, &length, nullptr, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS) {
      return ERROR_SUCCESS;
    }
    names->push_back(FromAnsi(std::string_view(name, length)));
  }
}

long WindowsRegistryStore::ListValues(RegistryRoot root, const std::string& subkey,
                                      std::vector<RegistryValue>* values) {
  const Key key(root, subkey, kReadAccess);
  if (key.status() != ERROR_SUCCESS) return key.status();
  values->clear();
  std::string name(kLongestName, '\0');
  std::string data(4096, '\0');
  for (DWORD index = 0;;) {
    DWORD name_length = kLongestName;
    DWORD type = REG_NONE;
    DWORD size = static_cast<DWORD>(data.size());
    const long status = RegEnumValueA(key.handle(), index, name.data(), &name_length, nullptr,
                                      &type, Bytes(data), &size);
    if (status == ERROR_MORE_DATA) {
      data.resize(size > data.size() ? size : data.size() * 2);
      continue;
    }
    if (status != ERROR_SUCCESS) return ERROR_SUCCESS;
    values->push_back(RegistryValue{FromAnsi(std::string_view(name.data(), name_length)), type,
                                    data.substr(0, size)});
    ++index;
  }
}

}  // namespace quorvale::windows
