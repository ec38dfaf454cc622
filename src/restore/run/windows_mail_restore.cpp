#include "restore/run/windows_mail_restore.h"

#include "base/paths.h"

namespace quorvale {
namespace {

constexpr char kRoot[] = "Windows Mail\\";

}  // namespace

void WindowsMailRestore::RestoreWindowsMail() {
  const std::vector<std::string>& paths = tools_.job.gRestoreItemPaths;
  for (size_t row = 0; row < paths.size(); ++row) {
    if (!paths[row].starts_with(kRoot)) continue;
    if (!tools_.monitor.BeginItem(paths[row])) return;
    RestoreWindowsMailItem(row);
  }
}

void WindowsMailRestore::RestoreWindowsMailItem(size_t row) {
  const RestoreOrigin origin = tools_.job.gRestoreItemOrigins[row];
  Extractor& extractor = tools_.extractor;
  const ItemEntry entry = extractor.EntryOf(origin);
  if (entry.kind == ItemEntry::Kind::kNone) return;
  const std::string profile = tools_.program.platform().system.Environment("UserProfile");
  if (entry.kind == ItemEntry::Kind::kRegistry) {
    if (!extractor.RestoreRegistryItem(origin)) return;
    outlook_.RewriteProfilePaths(FileNameOf(origin.key),
                                 ParentFolder(extractor.StagedPath(entry.name)));
  } else if (origin.path == "Windows Mail\\Mails") {
    extractor.ExtractFolder(entry.name, profile + "\\AppData\\Local\\Microsoft\\Windows Mail");
  } else if (origin.path == "Windows Mail\\Contacts") {
    extractor.ExtractFolder(entry.name, profile + "\\Contacts");
  }
}

}  // namespace quorvale
