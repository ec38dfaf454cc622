#include "platform/registry.h"

#include <cmath>

#include "base/text.h"

namespace quorvale {
namespace {

namespace type = registry_type;

constexpr std::size_t kValueBytes = 1024;       // the most that RegGetValue and RegSetValue read
constexpr std::size_t kTypedValueBytes = 1023;  // the most that RegGetTyped reads
constexpr std::size_t kListedValueBytes = 4096;
constexpr std::size_t kListedNameBytes = 260;  // with the terminating NUL
constexpr std::size_t kMostListedValues = 1000000;

// The bytes as the reader of small flags takes them: from the last to the first, each as
// hexadecimal digits without padding, and the number that these spell.
std::string SmallFlagText(const std::string& bytes) {
  if (bytes.empty()) return "";
  std::uint64_t number = 0;
  for (std::size_t i = bytes.size(); i > 0; --i) {
    const auto byte = static_cast<unsigned char>(bytes[i - 1]);
    number = byte < 16 ? number << 4 | byte : number << 8 | byte;
  }
  return std::to_string(number);
}

// The first four bytes as a signed number, in decimal; missing ones count as zero.
std::string NumberText(const std::string& bytes) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4 && i < bytes.size(); ++i) {
    number |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
  }
  return std::to_string(static_cast<std::int32_t>(number));
}

std::string WithoutLast(const std::string& text) {
  return text.substr(0, text.empty() ? 0 : text.size() - 1);
}

// The number of a text as so many bytes, low byte first.
std::string NumberBytes(const std::string& text, std::size_t count) {
  const double number = Val(text);
  std::uint64_t bits = 0;
  if (std::fabs(number) < 9.0e18) {
    bits = static_cast<std::uint64_t>(static_cast<std::int64_t>(number));
  }
  std::string bytes;
  for (std::size_t i = 0; i < count; ++i) {
    bytes.push_back(static_cast<char>(bits & 0xFF));
    bits >>= 8;
  }
  return bytes;
}

}  // namespace

std::string Registry::RegGetValue(RegistryRoot root, const std::string& subkey,
                                  const std::string& name) {
  RegistryValue value;
  if (store_.QueryValue(root, subkey, name, &value) != registry_status::kOk) return "";
  if (value.data.size() > kValueBytes) return "";
  const std::string data = value.data.ends_with('\0') ? WithoutLast(value.data) : value.data;
  if (type::IsText(value.type)) return FullText(root, subkey, name, data);
  if (value.type == type::kBinary) return data;
  return value.type == type::kDword ? SmallFlagText(data) : "";
}

std::string Registry::RegGetTyped(RegistryRoot root, const std::string& subkey,
                                  const std::string& name) {
  RegistryValue value;
  if (store_.QueryValue(root, subkey, name, &value) != registry_status::kOk || value.data.empty() ||
      value.data.size() > kTypedValueBytes) {
    return kRegistryReadError;
  }
  switch (value.type) {
    case type::kString:
      return FullText(root, subkey, name, WithoutLast(value.data));
    case type::kBinary:
      return value.data;
    case type::kDword:
      return NumberText(value.data);
    default:
      return "";
  }
}

bool Registry::RegSetValue(RegistryRoot root, const std::string& subkey, const std::string& name,
                           const std::string& text) {
  if (!store_.KeyExists(root, subkey)) return false;
  RegistryValue old;
  const long status = store_.QueryValue(root, subkey, name, &old);
  if (status == registry_status::kNotFound) {
    old.type = type::kString;
  } else if (status != registry_status::kOk || old.data.size() > kValueBytes) {
    return false;
  }
  std::string data = text;
  if (old.type == type::kDword) {
    data = NumberBytes(text, old.data.size());
  } else if (type::HoldsText(old.type)) {
    data = system_.ToAnsi(text);
  }
  return store_.SetValue(root, subkey, name, old.type, data) == registry_status::kOk;
}

void Registry::RegMakeKey(RegistryRoot root, const std::string& subkey) {
  store_.CreateKey(root, subkey);
}

void Registry::RegKillValue(RegistryRoot root, const std::string& subkey, const std::string& name) {
  store_.DeleteValue(root, subkey, name);
}

std::vector<NamedValue> Registry::RegListValues(RegistryRoot root, const std::string& subkey) {
  std::vector<RegistryValue> values;
  std::vector<NamedValue> rows;
  if (store_.ListValues(root, subkey, &values) != registry_status::kOk) return rows;
  for (const RegistryValue& value : values) {
    // The first value that does not fit ends the list.
    if (value.data.size() > kListedValueBytes || rows.size() >= kMostListedValues ||
        system_.ToAnsi(value.name).size() >= kListedNameBytes) {
      break;
    }
    NamedValue row{value.name, value.data};
    if (value.type == type::kString) row.value = system_.FromAnsi(WithoutLast(value.data));
    if (value.type == type::kDword) row.value = NumberText(value.data);
    rows.push_back(std::move(row));
  }
  return rows;
}

int Registry::RegCountSubkeys(RegistryRoot root, const std::string& subkey) {
  std::vector<std::string> names;
  store_.ListSubkeys(root, subkey, &names);
  return static_cast<int>(names.size());
}

bool Registry::SaveRegString(RegistryRoot root, const std::string& subkey, const std::string& name,
                             const std::string& text) {
  if (store_.CreateKey(root, subkey) != registry_status::kOk) return false;
  store_.SetValue(root, subkey, name, type::kString, system_.ToAnsi(text) + '\0');
  return true;
}

bool Registry::SaveRegText(RegistryRoot root, const std::string& subkey, const std::string& name,
                           const std::string& text) {
  if (store_.CreateKey(root, subkey) != registry_status::kOk) return false;
  return store_.SetText(root, subkey, name, type::kString, text) == registry_status::kOk;
}

std::string Registry::FullText(RegistryRoot root, const std::string& subkey,
                               const std::string& name, const std::string& data) {
  std::string full;
  // Only "?" can stand for something else.
  if (data.find('?') != std::string::npos &&
      store_.QueryText(root, subkey, name, &full) == registry_status::kOk &&
      system_.ToAnsi(full) == data) {
    return full;
  }
  return system_.FromAnsi(data);
}

bool Registry::SaveRegBytes(RegistryRoot root, const std::string& subkey, const std::string& name,
                            const std::string& bytes) {
  if (store_.CreateKey(root, subkey) != registry_status::kOk) return false;
  return store_.SetValue(root, subkey, name, type::kBinary, bytes) == registry_status::kOk;
}

}  // namespace quorvale
