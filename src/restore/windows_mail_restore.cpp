// Windows Mail: store, contacts and settings come back to the present user.
#include "core/ModGlobal.h"
#include "platform/text.h"
#include "restore/frmRFinish.h"

namespace quorvale {
namespace {

constexpr char kRoot[] = "Windows Mail\\";

}  // namespace

void frmRFinish::RestoreWindowsMail() {
  const Session& session = app_.session();
  for (size_t row = 1; row < session.gRestoreItemPaths.size(); ++row) {
    const std::string& path = session.gRestoreItemPaths[row];
    if (!path.starts_with(kRoot)) continue;
    RichTextBox1.visible = true;
    TxtROE.visible = false;
    RichTextBox1.text = path;
    if (!BeginItem("Current Progress: Restoration of Windows Mail Items..." + path)) return;
    RestoreWindowsMailItem(row);
  }
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
