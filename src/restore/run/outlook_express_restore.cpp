#include "restore/run/outlook_express_restore.h"

#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/outlook_express_places.h"
#include "restore/run/restore_places.h"

namespace quorvale {
namespace {

constexpr char kRoot[] = "Outlook Express\\";
constexpr char kAddressBook[] = "Outlook Express\\Address Book";
constexpr char kStationery[] = "Outlook Express\\Stationery";

}  // namespace

std::string RemapIdentityKey(const std::string& key, const std::string& identity) {
  const std::string word = "Identities\\{";
  const size_t start = key.find(word);
  if (start == std::string::npos) return key;
  const size_t old_start = start + word.size() - 1;
  const size_t end = key.find("}\\Software", old_start);
  if (end == std::string::npos) return key;
  return key.substr(0, old_start) + identity + key.substr(end + 1);
}

void OutlookExpressRestore::RestoreOutlookExpress() {
  // Read once, so that all mail goes to one store: the imports may bring other identities.
  identity_ = DefaultIdentity(tools_.program);
  mail_store_.clear();
  PlanAddressBooks();
  for (const RestoreItem& item : tools_.job.restore_items) {
    if (!item.path.starts_with(kRoot)) continue;
    if (!tools_.monitor.BeginItem(item.path)) return;
    RestoreOutlookExpressItem(item);
  }
}

void OutlookExpressRestore::RestoreOutlookExpressItem(const RestoreItem& item) {
  const RestoreOrigin& origin = item.origin;
  const ItemEntry entry = tools_.extractor.EntryOf(origin);
  if (entry.kind == ItemEntry::Kind::kNone) return;
  if (entry.kind == ItemEntry::Kind::kRegistry) {
    tools_.extractor.RestoreRegistryItem(origin);
  } else if (origin.path.starts_with(kAddressBook)) {
    RestoreAddressBook(origin);
  } else if (origin.path.starts_with(kMailStoresPath)) {
    RestoreMessages(origin);
  } else if (origin.path.starts_with(kStationery)) {
    RestoreStationery(origin);
  }
}

// The present user has one address book of their own. Of several in a backup that one is it that
// bears the user's name, or else the first; the others come back beside it under their names.
void OutlookExpressRestore::PlanAddressBooks() {
  const std::string own_name = GetWinUserName(tools_.program) + ".wab";
  main_book_.clear();
  for (const RestoreItem& item : tools_.job.restore_items) {
    const RestoreOrigin& origin = item.origin;
    if (!origin.path.starts_with(kAddressBook)) continue;
    const ItemEntry entry = tools_.extractor.EntryOf(origin);
    if (entry.kind != ItemEntry::Kind::kFile || !tools_.extractor.HoldsItem(origin)) continue;
    const std::string name = FileNameOf(origin.key);
    if (!EndsWithNoCase(name, ".wab")) continue;
    if (main_book_.empty() || EqualsNoCase(name, own_name)) main_book_ = origin.path;
  }
}

void OutlookExpressRestore::RestoreAddressBook(const RestoreOrigin& origin) {
  Platform& platform = tools_.program.platform();
  const std::string folder =
      platform.shell.SpecialFolder(special_folder::kAppData) + "\\Microsoft\\Address Book\\";
  if (origin.path != main_book_) {
    tools_.extractor.ExtractFile(origin, folder + FileNameOf(origin.key));
    return tools_.extractor.SettleAfterExtract();
  }
  const std::string user = GetWinUserName(tools_.program);
  const std::string target = folder + Trim(ReplaceAll(user, ".", "_")) + ".wab";
  const bool done = tools_.extractor.ExtractFile(origin, target);
  tools_.extractor.SettleAfterExtract();
  // The old book and the trace of its last change go only when the new book stands.
  if (!done) return;
  const std::string old_book = folder + user + ".wab";
  if (!EqualsNoCase(old_book, target)) platform.files.RemoveFile(old_book, true);
  platform.files.RemoveFile(folder + user + ".wab~", true);
}

void OutlookExpressRestore::RestoreMessages(const RestoreOrigin& origin) {
  // Without a file there is nothing to make a store for.
  if (!tools_.extractor.HoldsItem(origin)) return;
  const std::string store = StoreFolder();
  const std::string target = WithBackslash(store) + FileNameOf(origin.key);
  if (tools_.extractor.ExtractFile(origin, target)) mail_store_ = store;
  tools_.extractor.SettleAfterExtract();
}

void OutlookExpressRestore::RestoreStationery(const RestoreOrigin& origin) {
  const std::string common =
      tools_.program.platform().shell.SpecialFolder(special_folder::kCommonFiles);
  tools_.extractor.ExtractFile(
      origin, common + "\\Microsoft Shared\\Stationery\\" + FileNameOf(origin.key));
}

// An import of all identities makes the backup's identity the default one, and its store folder is
// that of the computer it comes from: the mail that stands in the present store would not be seen.
void OutlookExpressRestore::PointIdentityAtStore() {
  if (mail_store_.empty()) return;
  const std::string identity = DefaultIdentity(tools_.program);
  const std::string root = StoreRoot(tools_.program, identity);
  if (EqualsNoCase(WithoutBackslash(root), WithoutBackslash(mail_store_))) return;
  tools_.program.registry().SaveRegString(RegistryRoot::kCurrentUser, IdentitySettingsKey(identity),
                                          kStoreRootValue, WithBackslash(mail_store_));
}

std::string OutlookExpressRestore::StoreFolder() {
  std::string store = StoreRoot(tools_.program, identity_);
  if (store.empty()) {
    store = tools_.program.platform().system.Environment("UserProfile") +
            "\\Local Settings\\Application Data\\Identities\\" + identity_ +
            "\\Microsoft\\Outlook Express\\";
  }
  // A store that an earlier restore left in a restore folder stays where it is.
  if (Contains(store, BackupBaseName(tools_.job))) return CollapseBackslashes(store);
  const std::string folder =
      CollapseBackslashes(ParentFolder(WithoutBackslash(store)) + "\\Outlook Express");
  tools_.program.files().MakeFolderChain(folder);
  tools_.program.registry().SaveRegString(
      RegistryRoot::kCurrentUser, IdentitySettingsKey(identity_), kStoreRootValue, folder + "\\");
  return folder;
}

}  // namespace quorvale
