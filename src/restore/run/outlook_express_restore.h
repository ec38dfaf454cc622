// Outlook Express: its store, address book, stationery and registry items come back to the present
// user, wherever they came from.
#pragma once

#include <map>
#include <set>
#include <string>

#include "restore/run/restore_tools.h"

namespace quorvale {

// The key with the identity of a backup replaced by the present one. No run calls this: an export
// is imported as it stands.
std::string RemapIdentityKey(const std::string& key, const std::string& identity);

class OutlookExpressRestore {
 public:
  explicit OutlookExpressRestore(const RestoreTools& tools) : tools_(tools) {}

  // All items of the product, until a stop.
  void RestoreOutlookExpress();
  void RestoreOutlookExpressItem(const RestoreItem& item);
  // After the imports: the identity that the mail program now opens finds the restored mail.
  void PointIdentityAtStore();

 private:
  void PlanAddressBooks();
  void RestoreAddressBook(const RestoreOrigin& origin);
  // The one that becomes the present user's, in `target`.
  void RestoreOwnBook(const RestoreOrigin& origin, const std::string& target);
  // `name` if no book of the backup goes there (and none lives there, if it `must_be_new`), else
  // with the first number that is free.
  std::string FreeBook(const std::string& name, bool must_be_new);
  void RestoreMessages(const RestoreOrigin& origin);
  void RestoreStationery(const RestoreOrigin& origin);
  // The mail store's folder; written back to the registry where that is due.
  std::string StoreFolder();

  RestoreTools tools_;
  std::string identity_;    // of the present mail user
  std::string mail_store_;  // the folder into which mail came back; "" if none did
  std::string main_book_;   // the address book that becomes the present user's, its item's path
  std::map<std::string, std::string> book_targets_;  // of the address books, by their items' paths
  std::set<std::string> taken_books_;                // the same targets, in lower case
};

}  // namespace quorvale
