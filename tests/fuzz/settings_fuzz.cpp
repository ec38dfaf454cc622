// The reader of settings files on any text: it neither fails nor hangs, and what it reads of a text
// it reads of the same text again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "backup/format/archive_layout.h"
#include "backup/format/settings_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  quorvale::SettingsFile settings;
  quorvale::SettingsFile again;
  const bool found = quorvale::ParseSettings(text, &settings);
  if (found != quorvale::ParseSettings(text, &again)) std::abort();
  if (settings.items.size() != again.items.size()) std::abort();
  if (!found && !settings.items.empty()) std::abort();
  for (const quorvale::SettingsItem& item : settings.items) {
    for (const char* os_name : {"Windows Vista", "Windows 2000"}) {
      const quorvale::ItemEntry entry = quorvale::EntryOfItem(item.path, item.key, os_name);
      const bool nothing = entry.kind == quorvale::ItemEntry::Kind::kNone;
      if (nothing != entry.name.empty()) std::abort();
    }
  }
  return 0;
}
