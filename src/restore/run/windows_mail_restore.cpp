#include "restore/run/windows_mail_restore.h"

#include "base/paths.h"

namespace quorvale {
namespace {

constexpr char kRoot[] = "Windows Mail\\";

}  // namespace

void WindowsMailRestore::RestoreWindowsMail() {
  for (const RestoreItem& item : tools_.job.restore_items) {
    if (!item.path.starts_with(kRoot)) continue;
    if (!tools_.monitor.BeginItem(item.path)) return;
    RestoreWindowsMailItem(item);
  }
}

void WindowsMailRestore::RestoreWindowsMailItem(const RestoreItem& item) {
  const RestoreOrigin& origin = item.origin;
  Extractor& extractor = tools_.extractor;
  const ItemEntry entry = extractor.EntryOf(origin);
  if (entry.kind == ItemEntry::Kind::kNone) return;
  const std::string profile = tools_.program.platform().system.Environment("UserProfile");
  if (entry.kind == ItemEntry::Kind::kRegistry) {
    if (!extractor.RestoreRegistryItem(origin)) return;
    outlook_.RewriteProfilePaths(FileNameOf(origin.key),
                                 ParentFolder(extractor.StagedPath(entry.name)));
  } else if (origin.path == "Windows Mail\\Mails") {
    extractor.ExtractFolder(origin, profile + "\\AppData\\Local\\Microsoft\\Windows Mail");
  } else if (origin.path == "Windows Mail\\Contacts") {
    extractor.ExtractFolder(origin, profile + "\\Contacts");
  }
}

}  // namespace quorvale
