#include "discovery/products/outlook_express_places.h"

#include "base/paths.h"
#include "base/text.h"

namespace quorvale {
namespace {

// A folder below one of the system's, "" if the system cannot name that.
std::string BelowSpecialFolder(Program& program, int number, const std::string& below) {
  const std::string folder = program.platform().shell.SpecialFolder(number);
  return folder.empty() ? "" : WithBackslash(folder) + below;
}

}  // namespace

std::string DefaultIdentity(Program& program) {
  return program.registry().RegGetValue(RegistryRoot::kCurrentUser, "Identities\\",
                                        "Default User ID");
}

std::string IdentitySettingsKey(const std::string& identity) {
  return "Identities\\" + identity + "\\Software\\Microsoft\\Outlook Express\\5.0\\";
}

std::string StoreRoot(Program& program, const std::string& identity) {
  const std::string root = program.registry().RegGetValue(
      RegistryRoot::kCurrentUser, IdentitySettingsKey(identity), kStoreRootValue);
  const std::string profile = program.platform().system.Environment("UserProfile");
  return ReplaceAll(root, "%UserProfile%\\", profile + "\\");
}

std::string AddressBookFolder(Program& program) {
  return BelowSpecialFolder(program, special_folder::kAppData, "Microsoft\\Address Book\\");
}

std::string StationeryFolder(Program& program) {
  return BelowSpecialFolder(program, special_folder::kCommonFiles,
                            "Microsoft Shared\\Stationery\\");
}

}  // namespace quorvale
