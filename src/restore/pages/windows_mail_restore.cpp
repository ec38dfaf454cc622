// Windows Mail: store, contacts and settings come back to the present user.
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "restore/pages/frmRFinish.h"

namespace quorvale {
namespace {

constexpr char kRoot[] = "Windows Mail\\";

}  // namespace

void frmRFinish::RestoreWindowsMail() {
  RestoreItems(kRoot, "Windows Mail", &frmRFinish::RestoreWindowsMailItem);
}

void frmRFinish::RestoreWindowsMailItem(size_t row) {
  const RestoreOrigin origin = app_.session().gRestoreItemOrigins[row];
  const ItemEntry entry = EntryOf(origin);
  if (entry.kind == ItemEntry::Kind::kNone) return;
  StagedPath = StagedName(entry.name);
  const std::string profile = app_.platform().system.Environment("UserProfile");
  if (entry.kind == ItemEntry::Kind::kRegistry) {
    if (!RestoreRegistryItem(origin, origin.key)) return;
    RewriteProfilePaths(FileNameOf(origin.key), ParentFolder(StagedPath));
  } else if (origin.path == "Windows Mail\\Mails") {
    ExtractFolder(entry.name, profile + "\\AppData\\Local\\Microsoft\\Windows Mail");
  } else if (origin.path == "Windows Mail\\Contacts") {
    ExtractFolder(entry.name, profile + "\\Contacts");
  }
}

}  // namespace quorvale
