#include "platform/windows/registry_store.h"

#include <iterator>
#include <utility>

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

// Without leading, trailing and doubled backslashes.
std::string KeyPath(const std::string& subkey) {
  std::string path;
  for (const std::string& part : Split(subkey, "\\")) {
    if (part.empty()) continue;
    if (!path.empty()) path += '\\';
    path += part;
  }
  return path;
}

// An open key, closed at the end of its scope.
class Key {
 public:
  Key(RegistryRoot root, const std::string& subkey, REGSAM access) {
    const std::string path = KeyPath(subkey);
    status_ = HasUnicode()
                  ? RegOpenKeyExW(RootHandle(root), Wide(path).c_str(), 0, access, &handle_)
                  : RegOpenKeyExA(RootHandle(root), Ansi(path).c_str(), 0, access, &handle_);
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

// Data as the system holds it, texts in UTF-16 where it has Unicode, as the data of the store.
std::string ToStoreData(DWORD type, std::string data) {
  if (!HasUnicode() || !registry_type::HoldsText(type)) return data;
  return Ansi(Utf16BytesToUtf8(data));
}

// And back. The NUL that a caller forgot to count is added.
std::string ToSystemData(DWORD type, const std::string& data) {
  if (!HasUnicode() || !registry_type::HoldsText(type)) return data;
  std::string unicode = Utf8ToUtf16Bytes(FromAnsi(data));
  if (!data.empty() && data.back() != '\0') unicode.append(2, '\0');
  return unicode;
}

// The data as the system holds it.
long Query(const Key& key, const std::string& name, DWORD* type, std::string* data) {
  if (key.status() != ERROR_SUCCESS) return key.status();
  data->assign(1024, '\0');
  for (;;) {
    DWORD size = static_cast<DWORD>(data->size());
    const long status = HasUnicode() ? RegQueryValueExW(key.handle(), Wide(name).c_str(), nullptr,
                                                        type, Bytes(*data), &size)
                                     : RegQueryValueExA(key.handle(), Ansi(name).c_str(), nullptr,
                                                        type, Bytes(*data), &size);
    if (status == ERROR_MORE_DATA) {
      // Another program may enlarge it meanwhile, so the size told is a hint only.
      data->resize(size > data->size() ? size : data->size() * 2);
      continue;
    }
    if (status == ERROR_SUCCESS) data->resize(size);
    return status;
  }
}

long Set(const Key& key, const std::string& name, DWORD type, const std::string& data) {
  if (key.status() != ERROR_SUCCESS) return key.status();
  const BYTE* bytes = reinterpret_cast<const BYTE*>(data.data());
  const DWORD size = static_cast<DWORD>(data.size());
  return HasUnicode() ? RegSetValueExW(key.handle(), Wide(name).c_str(), 0, type, bytes, size)
                      : RegSetValueExA(key.handle(), Ansi(name).c_str(), 0, type, bytes, size);
}

// The name of the subkey at this place. False behind the last one.
bool SubkeyName(const Key& key, DWORD index, std::string* name) {
  if (HasUnicode()) {
    wchar_t wide[512];
    DWORD length = static_cast<DWORD>(std::size(wide));
    if (RegEnumKeyExW(key.handle(), index, wide, &length, nullptr, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS) {
      return false;
    }
    *name = FromWide(std::wstring_view(wide, length));
    return true;
  }
  char ansi[1024];
  DWORD length = static_cast<DWORD>(std::size(ansi));
  if (RegEnumKeyExA(key.handle(), index, ansi, &length, nullptr, nullptr, nullptr, nullptr) !=
      ERROR_SUCCESS) {
    return false;
  }
  *name = FromAnsi(std::string_view(ansi, length));
  return true;
}

// The value at this place; its data as the system holds it goes to the start of `data`, and its
// number of bytes to `size`.
long ValueAt(const Key& key, DWORD index, RegistryValue* value, std::string* data, DWORD* size) {
  DWORD type = REG_NONE;
  DWORD length = kLongestName;
  long status = ERROR_SUCCESS;
  if (HasUnicode()) {
    std::wstring name(kLongestName, L'\0');
    status = RegEnumValueW(key.handle(), index, name.data(), &length, nullptr, &type, Bytes(*data),
                           size);
    if (status == ERROR_SUCCESS) value->name = FromWide(std::wstring_view(name.data(), length));
  } else {
    std::string name(kLongestName, '\0');
    status = RegEnumValueA(key.handle(), index, name.data(), &length, nullptr, &type, Bytes(*data),
                           size);
    if (status == ERROR_SUCCESS) value->name = FromAnsi(std::string_view(name.data(), length));
  }
  value->type = type;
  return status;
}

}  // namespace

bool WindowsRegistryStore::KeyExists(RegistryRoot root, const std::string& subkey) {
  return Key(root, subkey, kReadAccess).status() == ERROR_SUCCESS;
}

long WindowsRegistryStore::CreateKey(RegistryRoot root, const std::string& subkey) {
  HKEY handle = nullptr;
  const std::string path = KeyPath(subkey);
  const long status =
      HasUnicode()
          ? RegCreateKeyExW(RootHandle(root), Wide(path).c_str(), 0, nullptr,
                            REG_OPTION_NON_VOLATILE, kFullAccess, nullptr, &handle, nullptr)
          : RegCreateKeyExA(RootHandle(root), Ansi(path).c_str(), 0, nullptr,
                            REG_OPTION_NON_VOLATILE, kFullAccess, nullptr, &handle, nullptr);
  if (status == ERROR_SUCCESS) RegCloseKey(handle);
  return status;
}

long WindowsRegistryStore::QueryValue(RegistryRoot root, const std::string& subkey,
                                      const std::string& name, RegistryValue* value) {
  DWORD type = REG_NONE;
  std::string data;
  const long status = Query(Key(root, subkey, kReadAccess), name, &type, &data);
  if (status == ERROR_SUCCESS) {
    *value = RegistryValue{name, type, ToStoreData(type, std::move(data))};
  }
  return status;
}

long WindowsRegistryStore::SetValue(RegistryRoot root, const std::string& subkey,
                                    const std::string& name, std::uint32_t type,
                                    const std::string& data) {
  return Set(Key(root, subkey, kFullAccess), name, type, ToSystemData(type, data));
}

long WindowsRegistryStore::DeleteValue(RegistryRoot root, const std::string& subkey,
                                       const std::string& name) {
  const Key key(root, subkey, kFullAccess);
  if (key.status() != ERROR_SUCCESS) return key.status();
  return HasUnicode() ? RegDeleteValueW(key.handle(), Wide(name).c_str())
                      : RegDeleteValueA(key.handle(), Ansi(name).c_str());
}

long WindowsRegistryStore::QueryText(RegistryRoot root, const std::string& subkey,
                                     const std::string& name, std::string* text) {
  DWORD type = REG_NONE;
  std::string data;
  const long status = Query(Key(root, subkey, kReadAccess), name, &type, &data);
  if (status != ERROR_SUCCESS) return status;
  if (!registry_type::IsText(type)) return registry_status::kNotFound;
  *text = HasUnicode() ? Utf16BytesToUtf8(data) : FromAnsi(data);
  if (text->ends_with('\0')) text->pop_back();
  return status;
}

long WindowsRegistryStore::SetText(RegistryRoot root, const std::string& subkey,
                                   const std::string& name, std::uint32_t type,
                                   const std::string& text) {
  const std::string whole = text + '\0';
  return Set(Key(root, subkey, kFullAccess), name, type,
             HasUnicode() ? Utf8ToUtf16Bytes(whole) : Ansi(whole));
}

long WindowsRegistryStore::ListSubkeys(RegistryRoot root, const std::string& subkey,
                                       std::vector<std::string>* names) {
  const Key key(root, subkey, kReadAccess);
  if (key.status() != ERROR_SUCCESS) return key.status();
  names->clear();
  std::string name;
  for (DWORD index = 0; SubkeyName(key, index, &name); ++index) names->push_back(name);
  return ERROR_SUCCESS;
}

long WindowsRegistryStore::ListValues(RegistryRoot root, const std::string& subkey,
                                      std::vector<RegistryValue>* values) {
  const Key key(root, subkey, kReadAccess);
  if (key.status() != ERROR_SUCCESS) return key.status();
  values->clear();
  std::string data(4096, '\0');
  for (DWORD index = 0;;) {
    RegistryValue value;
    DWORD size = static_cast<DWORD>(data.size());
    const long status = ValueAt(key, index, &value, &data, &size);
    if (status == ERROR_MORE_DATA) {
      data.resize(size > data.size() ? size : data.size() * 2);
      continue;
    }
    if (status != ERROR_SUCCESS) return ERROR_SUCCESS;
    value.data = ToStoreData(value.type, data.substr(0, size));
    values->push_back(std::move(value));
    ++index;
  }
}

}  // namespace quorvale::windows
