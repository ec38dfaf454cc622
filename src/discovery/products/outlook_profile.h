// The mail profiles that the messaging subsystem keeps in the registry, under HKEY_CURRENT_USER:
// one key for each profile, in it one key ("section") for each service. A section's values are
// properties: the first four digits of a value's name are the property's type, the last four its
// number. Type 001e is 8-bit text in the code page, 001f is UTF-16 text in little-endian order,
// 0102 is bytes (types: Microsoft's [MS-OXCDATA], 2.11.1).
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/program/program.h"

namespace quorvale {

// Both with a final "\".
inline constexpr char kNtProfilesRoot[] =
    "Software\\Microsoft\\Windows NT\\CurrentVersion\\Windows Messaging Subsystem\\Profiles\\";
inline constexpr char k98ProfilesRoot[] =
    "SOFTWARE\\Microsoft\\Windows Messaging Subsystem\\Profiles\\";

// The section that lists a profile's stores, and the value with the list: 16 bytes for each store,
// the name of the store's section.
inline constexpr char kStoreListSection[] = "9207f3e0a3b11019908b08002b2a56c2";
inline constexpr char kStoreListValue[] = "01023d00";
// The section of the offline store, and the value with its path.
inline constexpr char kOfflineStoreSection[] = "13dbb0c8aa05101a9bb000aa002fc45a";
inline constexpr char kOfflinePath16[] = "001f6610";
// Values of a store's section.
inline constexpr char kDisplayName8[] = "001e3001";
inline constexpr char kDisplayName16[] = "001f3001";
inline constexpr char kStorePath8[] = "001e6700";
inline constexpr char kStorePath16[] = "001f6700";
// The store's entry identifier; the subsystem makes a new one where it is missing.
inline constexpr char kStoreEntryId[] = "01020fff";

// Where the profiles stand on a system, by its name word; "" on a system that has none.
std::string ProfilesRoot(const std::string& os_name);
// The name in the value DefaultProfile of the NT root, which counts on every system.
std::string DefaultProfileName(Program& program);

// Text of a profile value. 16-bit text is decoded up to its NUL pair, or to the end where there
// is none; of 8-bit text the NULs are dropped.
std::string DecodeProfileText8(Program& program, std::string_view bytes);
std::string DecodeProfileText16(std::string_view bytes);
// The other way: as the subsystem stores it, with the NUL, or the NUL pair, at the end.
std::string EncodeProfileText8(Program& program, const std::string& text);
std::string EncodeProfileText16(const std::string& text);

// A value of a profile or section key as it is stored, of any length. Nothing if it is missing.
std::optional<RegistryValue> ReadProfileValue(Program& program, const std::string& key,
                                              const std::string& name);
// The same as text, by the type in the value's name. "" if it is missing.
std::string ReadProfileText(Program& program, const std::string& key, const std::string& name);

// The names of a profile's store sections, in the order of the list. `profile_key` is the
// profile's key without a final "\".
std::vector<std::string> StoreSections(Program& program, const std::string& profile_key);

// The value of a store section that holds its path: the first of kStorePath8 and kStorePath16
// that is not empty; "" if both are.
std::string StorePathValue(Program& program, const std::string& section_key);
// The path that a store section itself names, "" if it names none.
std::string StorePath(Program& program, const std::string& section_key);
// The path of a profile's offline store, "" if it has none.
std::string OfflineStorePath(Program& program, const std::string& profile_key);

// One data file of a profile.
struct ProfileStore {
  std::string section;  // the section's name
  std::string name;     // display name, may be empty
  std::string path;     // may be empty: a mailbox on a server with no copy on this computer
};
// The stores of a profile in the order of its list. A store that names no file has the offline
// store's path.
std::vector<ProfileStore> CollectOutlookStores(Program& program, const std::string& profile);

// One mail profile.
struct ProfileRow {
  std::string name;
  std::string key;               // "HKEY_CURRENT_USER\" and the path of its key
  bool from_default_on = false;  // true for the default profile and those behind it
};
// The profiles below a root that ends in "\".
std::vector<ProfileRow> SubKeyCountMO(Program& program, const std::string& profiles_root);

// The tree key of a data file: path, comma, the store's and the profile's 1-based row. The row
// numbers keep keys apart, since profiles may share a file.
std::string DataFileKey(const std::string& path, size_t store_row, size_t profile_row);
// A tree key without its row numbers: what stands before a last comma with only digits behind it.
// A registry path and any other key come back whole. A comma inside of a path or profile name
// cuts nothing.
std::string WithoutRowNumbers(const std::string& key);

}  // namespace quorvale
