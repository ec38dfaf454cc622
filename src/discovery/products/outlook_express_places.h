// Where Outlook Express keeps what, for a backup that takes it and a restore that brings it back.
// All registry keys are below HKEY_CURRENT_USER.
#pragma once

#include <string>

#include "core/program/program.h"

namespace quorvale {

// The group of the mail stores in the backup tree, and in it the group of the stores that are none
// of the usual five.
inline constexpr char kMailStoresPath[] = "Outlook Express\\Email Messages";
inline constexpr char kOtherMailFoldersPath[] =
    "Outlook Express\\Email Messages\\Other Mail Folders";
// The index of the mail stores, a file beside them.
inline constexpr char kMailStoreIndex[] = "Folders.dbx";

// The value of an identity's key that names the folder of the mail stores.
inline constexpr char kStoreRootValue[] = "Store Root";

// The identity that the user works with, "{...}"; "" if there is none.
std::string DefaultIdentity(Program& program);
// The key of an identity's settings, with a final "\".
std::string IdentitySettingsKey(const std::string& identity);
// The folder of an identity's mail stores as its settings name it, the user's profile folder put
// in for the variable; "" if they name none.
std::string StoreRoot(Program& program, const std::string& identity);

// The folder of the address books, and that of the stationery, with a final "\". "" if the system
// cannot name the folder in which it stands.
std::string AddressBookFolder(Program& program);
std::string StationeryFolder(Program& program);

}  // namespace quorvale
