// Outlook Express: its store, address book, stationery and registry items come back to the present
// user, wherever they came from.
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "restore/pages/frmRFinish.h"

namespace quorvale {
namespace {

constexpr char kRoot[] = "Outlook Express\\";
constexpr char kAddressBook[] = "Outlook Express\\Address Book";
constexpr char kMessages[] = "Outlook Express\\Email Messages";
constexpr char kStationery[] = "Outlook Express\\Stationery";
constexpr char kUserProfileVariable[] = "%UserProfile%";

std::string StoreKey(const std::string& identity) {
  return "Identities\\" + identity + "\\Software\\Microsoft\\Outlook Express\\5.0\\";
}

}  // namespace

void frmRFinish::RestoreOutlookExpress() {
  // Read once, so that all mail goes to one store: the imports may bring other identities.
  identity_ =
      app_.registry().RegGetValue(RegistryRoot::kCurrentUser, "Identities\\", "Default User ID");
  mail_store_.clear();
  PlanAddressBooks();
  RestoreItems(kRoot, "Outlook Express", &frmRFinish::RestoreOutlookExpressItem);
}

void frmRFinish::RestoreOutlookExpressItem(size_t row) {
  const RestoreOrigin origin = app_.session().gRestoreItemOrigins[row];
  const std::string& item = origin.path;
  const ItemEntry entry = EntryOf(origin);
  if (entry.kind == ItemEntry::Kind::kNone) return;
  StagedPath = StagedName(entry.name);
  if (entry.kind == ItemEntry::Kind::kRegistry) {
    RestoreRegistryItem(origin, RemapIdentityKey(origin.key, identity_));
  } else if (item.starts_with(kAddressBook)) {
    RestoreAddressBook(origin);
  } else if (item.starts_with(kMessages)) {
    RestoreMessages(origin, origin.key);
  } else if (item.starts_with(kStationery)) {
    const std::string common = app_.platform().shell.SpecialFolder(special_folder::kCommonFiles);
    ExtractFile(origin, common + "\\Microsoft Shared\\Stationery\\" + FileNameOf(origin.key));
  }
}

// The present user has one address book of their own. Of several in a backup that one is it that
// bears the user's name, or else the first; the others come back beside it under their names.
void frmRFinish::PlanAddressBooks() {
  const Session& session = app_.session();
  const std::string own_name = GetWinUserName(app_) + ".wab";
  main_book_.clear();
  for (const RestoreOrigin& origin : session.gRestoreItemOrigins) {
    if (!origin.path.starts_with(kAddressBook)) continue;
    const ItemEntry entry = EntryOf(origin);
    if (entry.kind != ItemEntry::Kind::kFile || !HoldsItem(origin, entry)) continue;
    const std::string name = FileNameOf(origin.key);
    if (!EndsWithNoCase(name, ".wab")) continue;
    if (main_book_.empty() || EqualsNoCase(name, own_name)) main_book_ = origin.path;
  }
}

void frmRFinish::RestoreAddressBook(const RestoreOrigin& origin) {
  const std::string folder =
      app_.platform().shell.SpecialFolder(special_folder::kAppData) + "\\Microsoft\\Address Book\\";
  if (origin.path != main_book_) {
    ExtractFile(origin, folder + FileNameOf(origin.key));
    return SettleAfterExtract();
  }
  const std::string user = GetWinUserName(app_);
  const std::string target = folder + Trim(ReplaceAll(user, ".", "_")) + ".wab";
  const bool done = ExtractFile(origin, target);
  SettleAfterExtract();
  // The old book and the trace of its last change go only when the new book stands.
  if (!done) return;
  const std::string old_book = folder + user + ".wab";
  if (!EqualsNoCase(old_book, target)) app_.platform().files.RemoveFile(old_book, true);
  app_.platform().files.RemoveFile(folder + user + ".wab~", true);
}

void frmRFinish::RestoreMessages(const RestoreOrigin& origin, const std::string& location) {
  // Without a file there is nothing to make a store for.
  if (!HoldsItem(origin, EntryOf(origin))) return;
  const std::string store = StoreFolder();
  if (ExtractFile(origin, WithBackslash(store) + FileNameOf(location))) mail_store_ = store;
  SettleAfterExtract();
}

// An import of all identities makes the backup's identity the default one, and its store folder is
// that of the computer it comes from: the mail that stands in the present store would not be seen.
void frmRFinish::PointIdentityAtStore() {
  if (mail_store_.empty()) return;
  const std::string identity =
      app_.registry().RegGetValue(RegistryRoot::kCurrentUser, "Identities\\", "Default User ID");
  const std::string key = StoreKey(identity);
  const std::string root =
      ReplaceAll(app_.registry().RegGetValue(RegistryRoot::kCurrentUser, key, "Store Root"),
                 kUserProfileVariable, app_.platform().system.Environment("UserProfile"));
  if (EqualsNoCase(WithoutBackslash(root), WithoutBackslash(mail_store_))) return;
  app_.registry().SaveRegString(RegistryRoot::kCurrentUser, key, "Store Root",
                                WithBackslash(mail_store_));
}

std::string frmRFinish::StoreFolder() {
  const std::string key = StoreKey(identity_);
  std::string store = app_.registry().RegGetValue(RegistryRoot::kCurrentUser, key, "Store Root");
  const std::string profile = app_.platform().system.Environment("UserProfile");
  if (Contains(store, kUserProfileVariable)) {
    store = ReplaceAll(store, kUserProfileVariable + std::string("\\"), profile + "\\");
  }
  if (store.empty()) {
    store = profile + "\\Local Settings\\Application Data\\Identities\\" + identity_ +
            "\\Microsoft\\Outlook Express\\";
  }
  // A store that an earlier restore left in a restore folder stays where it is.
  if (Contains(store, BackupBaseName())) return CollapseBackslashes(store);
  const std::string folder =
      CollapseBackslashes(ParentFolder(WithoutBackslash(store)) + "\\Outlook Express");
  app_.files().MakeFolderChain(folder);
  app_.registry().SaveRegString(RegistryRoot::kCurrentUser, key, "Store Root", folder + "\\");
  return folder;
}

std::string frmRFinish::RemapIdentityKey(const std::string& key, const std::string& identity) {
  const std::string word = "Identities\\{";
  const size_t start = key.find(word);
  if (start == std::string::npos) return key;
  const size_t old_start = start + word.size() - 1;
  const size_t end = key.find("}\\Software", old_start);
  if (end == std::string::npos) return key;
  return key.substr(0, old_start) + identity + key.substr(end + 1);
}

}  // namespace quorvale
