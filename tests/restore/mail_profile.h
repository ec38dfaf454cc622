// Mail profiles in the registry of a test's computer.
#pragma once

#include <string>

#include "base/text.h"
#include "discovery/products/outlook_profile.h"
#include "support/test_machine.h"

namespace quorvale::restore_test {

inline constexpr char kProfiles[] =
    "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows NT\\CurrentVersion\\"
    "Windows Messaging Subsystem\\Profiles\\";
inline constexpr char kSectionId[] = "0123456789ABCDEF";  // 16 bytes
inline constexpr char kSection[] = "30313233343536373839414243444546";

inline std::string Wide(const std::string& text) {
  return Utf8ToUtf16Bytes(text) + std::string(2, '\0');
}

inline void UseOutlook(TestMachine& machine, const std::string& version) {
  machine.SetString("HKEY_CLASSES_ROOT\\Outlook.Application\\CurVer", "",
                    "Outlook.Application." + version);
}

inline void SeedSection(TestMachine& machine, const std::string& profile, const std::string& narrow,
                        const std::string& wide) {
  const std::string key = kProfiles + profile;
  machine.SetBinary(key + "\\" + kStoreListSection, kStoreListValue, kSectionId);
  const std::string section = key + "\\" + kSection;
  machine.SetString(section, kDisplayName8, "Mail");
  if (!narrow.empty()) machine.SetString(section, kStorePath8, narrow);
  if (!wide.empty()) machine.SetBinary(section, kStorePath16, Wide(wide));
  machine.SetBinary(section, kStoreEntryId, "entry");
}

inline std::string Section(const std::string& profile) {
  return kProfiles + profile + "\\" + kSection;
}

}  // namespace quorvale::restore_test
