#include "restore/run/outlook_express_restore.h"

#include <optional>
#include <vector>

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

std::string BookFolder(const Program& program) {
  return program.platform().shell.SpecialFolder(special_folder::kAppData) +
         "\\Microsoft\\Address Book\\";
}

bool HaveOneContent(FileToolkit& files, const std::string& one, const std::string& other) {
  const std::optional<std::string> bytes = files.ReadWhole(one);
  return bytes && bytes == files.ReadWhole(other);
}

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
  // Without it the mail goes where no mail program looks: what could not be read for a moment is
  // read again.
  if (identity_.empty()) identity_ = DefaultIdentity(tools_.program);
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
// bears the user's name, or else the first; the others come back beside it under their names, or
// under numbered ones where two would meet.
void OutlookExpressRestore::PlanAddressBooks() {
  const std::string user = GetWinUserName(tools_.program);
  main_book_.clear();
  book_targets_.clear();
  taken_books_.clear();
  std::vector<const RestoreOrigin*> books;
  for (const RestoreItem& item : tools_.job.restore_items) {
    const RestoreOrigin& origin = item.origin;
    if (!origin.path.starts_with(kAddressBook)) continue;
    const ItemEntry entry = tools_.extractor.EntryOf(origin);
    if (entry.kind != ItemEntry::Kind::kFile || !tools_.extractor.HoldsItem(origin)) continue;
    books.push_back(&origin);
    const std::string name = FileNameOf(origin.key);
    if (!EndsWithNoCase(name, ".wab")) continue;
    if (main_book_.empty() || EqualsNoCase(name, user + ".wab")) main_book_ = origin.path;
  }
  const auto place = [this](const std::string& item, const std::string& target) {
    book_targets_[item] = target;
    taken_books_.insert(FoldCase(target));
  };
  const std::string folder = BookFolder(tools_.program);
  if (!main_book_.empty()) place(main_book_, folder + Trim(ReplaceAll(user, ".", "_")) + ".wab");
  for (const RestoreOrigin* book : books) {
    if (book->path == main_book_) continue;
    place(book->path, FreeBook(folder + FileNameOf(book->key), false));
  }
}

std::string OutlookExpressRestore::FreeBook(const std::string& name, bool must_be_new) {
  std::string free = name;
  for (int n = 1; taken_books_.contains(FoldCase(free)) ||
                  ((must_be_new || n > 1) && tools_.program.files().FileExists(free));
       ++n) {
    free = NumberedName(name, n);
  }
  return free;
}

void OutlookExpressRestore::RestoreAddressBook(const RestoreOrigin& origin) {
  const auto target = book_targets_.find(origin.path);
  if (target == book_targets_.end()) return;
  if (origin.path == main_book_) return RestoreOwnBook(origin, target->second);
  tools_.extractor.ExtractFile(origin, target->second);
  tools_.extractor.SettleAfterExtract();
}

void OutlookExpressRestore::RestoreOwnBook(const RestoreOrigin& origin, const std::string& target) {
  FileToolkit& files = tools_.program.files();
  const std::string old_book = BookFolder(tools_.program) + GetWinUserName(tools_.program) + ".wab";
  std::string place = target;
  std::string kept;
  // Where the user's name is not the file's, a book that lives there may be another's.
  if (!EqualsNoCase(old_book, target) && files.FileExists(target)) {
    kept = FreeBook(target, true);
    // Where it cannot be copied, the restored one stands beside it.
    if (files.CopyFile(target, kept) != FileStatus::kOk) {
      place = kept;
      kept.clear();
    }
  }
  const bool done = tools_.extractor.ExtractFile(origin, place);
  if (done && place != target) {
    tools_.account.PutElsewhere(AccountReason::kPlaceTaken, target, place, AccountThing::kFile);
  }
  tools_.extractor.SettleAfterExtract();
  if (!kept.empty() && (!done || HaveOneContent(files, kept, target))) {
    files.files().RemoveFile(kept, true);
  }
  // The old book and the trace of its last change go only when the new book stands in their place.
  if (!done || place != target) return;
  if (!taken_books_.contains(FoldCase(old_book))) files.files().RemoveFile(old_book, true);
  files.files().RemoveFile(old_book + "~", true);
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
  tools_.program.registry().SaveRegText(RegistryRoot::kCurrentUser, IdentitySettingsKey(identity),
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
  tools_.program.registry().SaveRegText(RegistryRoot::kCurrentUser, IdentitySettingsKey(identity_),
                                        kStoreRootValue, folder + "\\");
  return folder;
}

}  // namespace quorvale
