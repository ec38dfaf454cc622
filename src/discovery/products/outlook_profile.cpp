#include "discovery/products/outlook_profile.h"

#include <cmath>

#include "base/text.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

constexpr size_t kSectionIdSize = 16;

}  // namespace

std::string ProfilesRoot(const std::string& os_name) {
  if (os_name == kWindowsNT || os_name == kWindows2000 || os_name == kWindowsVista) {
    return kNtProfilesRoot;
  }
  if (os_name == kWindows98 || os_name == kWindowsME) return k98ProfilesRoot;
  return "";
}

std::string DefaultProfileName(Program& program) {
  return program.registry().RegGetValue(RegistryRoot::kCurrentUser,
                                        WithoutBackslash(kNtProfilesRoot), "DefaultProfile");
}

std::string DecodeProfileText8(Program& program, std::string_view bytes) {
  return program.platform().system.FromAnsi(StripNuls(std::string(bytes)));
}

std::string DecodeProfileText16(std::string_view bytes) {
  size_t end = 0;
  while (end + 1 < bytes.size() && (bytes[end] != '\0' || bytes[end + 1] != '\0')) end += 2;
  return Utf16BytesToUtf8(bytes.substr(0, end));
}

std::string EncodeProfileText8(Program& program, const std::string& text) {
  return program.platform().system.ToAnsi(text) + '\0';
}

std::string EncodeProfileText16(const std::string& text) {
  return Utf8ToUtf16Bytes(text) + std::string(2, '\0');
}

std::optional<RegistryValue> ReadProfileValue(Program& program, const std::string& key,
                                              const std::string& name) {
  RegistryValue value;
  const long status =
      program.registry().store().QueryValue(RegistryRoot::kCurrentUser, key, name, &value);
  if (status != registry_status::kOk) return std::nullopt;
  return value;
}

std::string ReadProfileText(Program& program, const std::string& key, const std::string& name) {
  const std::optional<RegistryValue> value = ReadProfileValue(program, key, name);
  if (!value) return "";
  // A registry string is 8-bit text whatever its name says: the store hands it out in that form.
  if (name.starts_with("001f") && !registry_type::IsText(value->type)) {
    return DecodeProfileText16(value->data);
  }
  if (registry_type::IsText(value->type)) {
    return program.registry().FullText(RegistryRoot::kCurrentUser, key, name,
                                       StripNuls(value->data));
  }
  return DecodeProfileText8(program, value->data);
}

std::vector<std::string> StoreSections(Program& program, const std::string& profile_key) {
  std::vector<std::string> sections;
  const std::optional<RegistryValue> list =
      ReadProfileValue(program, profile_key + "\\" + kStoreListSection, kStoreListValue);
  if (!list) return sections;
  // To the nearest whole number, a half to the even one.
  const auto count = static_cast<size_t>(
      std::nearbyint(static_cast<double>(list->data.size()) / double{kSectionIdSize}));
  for (size_t store = 0; store < count; ++store) {
    sections.push_back(ToHexText(list->data.substr(store * kSectionIdSize, kSectionIdSize)));
  }
  return sections;
}

std::string StorePathValue(Program& program, const std::string& section_key) {
  for (const char* name : {kStorePath8, kStorePath16}) {
    if (!ReadProfileText(program, section_key, name).empty()) return name;
  }
  return "";
}

std::string StorePath(Program& program, const std::string& section_key) {
  const std::string name = StorePathValue(program, section_key);
  return name.empty() ? "" : ReadProfileText(program, section_key, name);
}

std::string OfflineStorePath(Program& program, const std::string& profile_key) {
  return ReadProfileText(program, profile_key + "\\" + kOfflineStoreSection, kOfflinePath16);
}

std::vector<ProfileStore> CollectOutlookStores(Program& program, const std::string& profile) {
  const std::string root = ProfilesRoot(GetOSName(program.platform().system.Version()));
  if (root.empty()) return {};
  const std::string profile_key = root + profile;
  std::vector<ProfileStore> stores;
  for (const std::string& section : StoreSections(program, profile_key)) {
    const std::string section_key = profile_key + "\\" + section;
    ProfileStore store;
    store.section = section;
    store.name = ReadProfileText(program, section_key, kDisplayName8);
    if (store.name.empty()) store.name = ReadProfileText(program, section_key, kDisplayName16);
    store.path = StorePath(program, section_key);
    if (store.path.empty()) store.path = OfflineStorePath(program, profile_key);
    stores.push_back(std::move(store));
  }
  return stores;
}

std::vector<ProfileRow> SubKeyCountMO(Program& program, const std::string& profiles_root) {
  const std::string default_name = program.registry().RegGetValue(
      RegistryRoot::kCurrentUser, profiles_root + "\\", "DefaultProfile");
  std::vector<std::string> names;
  program.registry().store().ListSubkeys(RegistryRoot::kCurrentUser, profiles_root, &names);
  std::vector<ProfileRow> rows;
  bool default_seen = false;
  for (const std::string& name : names) {
    default_seen = default_seen || name == default_name;
    rows.push_back({name, "HKEY_CURRENT_USER\\" + profiles_root + name, default_seen});
    program.Pump();
  }
  return rows;
}

std::string DataFileKey(const std::string& path, size_t store_row, size_t profile_row) {
  return path + "," + std::to_string(store_row) + std::to_string(profile_row);
}

std::string WithoutRowNumbers(const std::string& key) {
  if (key.starts_with("HKEY_")) return key;
  const size_t comma = key.rfind(',');
  if (comma == std::string::npos || comma + 1 == key.size()) return key;
  const bool only_digits = key.find_first_not_of("0123456789", comma + 1) == std::string::npos;
  return only_digits ? key.substr(0, comma) : key;
}

}  // namespace quorvale
