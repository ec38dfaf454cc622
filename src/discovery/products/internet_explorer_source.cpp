// Typed addresses and settings are registry keys; favorites and cookies are whole folders.
#include <string>

#include "base/paths.h"
#include "discovery/products/ModbasTvw.h"
#include "discovery/products/product_fills.h"
#include "discovery/products/product_table.h"

namespace quorvale {
namespace {

// A special folder that is there, else "".
std::string ExistingFolder(Program& program, int number) {
  const std::string path = program.platform().shell.SpecialFolder(number);
  return !path.empty() && program.files().FolderExists(path) ? path : "";
}

std::string CookieFolder(Program& program) {
  const std::string cookies = ExistingFolder(program, special_folder::kCookies);
  if (!cookies.empty()) return cookies;
  // Old systems keep the cookies beside the favorites.
  const std::string favorites = ExistingFolder(program, special_folder::kFavorites);
  const size_t name = favorites.find("\\Favorites");
  if (name == std::string::npos) return "";
  const std::string beside = favorites.substr(0, name + 1) + "cookies";
  return program.files().FolderExists(beside) ? beside : "";
}

}  // namespace

void FillInternetExplorerNodes(Program& program, ui::TreeView& tree) {
  ui::TreeNode* root = AddProductRoot(tree, ProductId::kInternetExplorer);
  if (root == nullptr) return;
  ui::TreeNode* typed =
      tree.Add(root, "HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Explorer\\TypedURLs",
               "Typed Urls", "fc", "fc");
  if (typed != nullptr) tree.Select(typed);

  const std::string cookies = CookieFolder(program);
  if (!cookies.empty()) tree.Add(root, cookies, "Cookies", "fc", "fo");
  const std::string favorites = ExistingFolder(program, special_folder::kFavorites);
  if (!favorites.empty()) tree.Add(root, favorites, "Favorites", "fc", "fo");

  ui::TreeNode* settings = tree.Add(root, "IESettings", "IESettings", "fc", "fo");
  tree.Add(settings, "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Internet Explorer",
           "Local Machine Settings", "reg");
  tree.Add(settings, "HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Explorer",
           "Current User Settings", "reg");
  ui::TreeNode* last =
      tree.Add(settings,
               "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings",
               "Current User Settings Proxy Settings", "reg");
  if (last != nullptr) tree.EnsureVisible(last);
  UpdateNodeChecks(tree, root);
  root->tag = "Y";
}

}  // namespace quorvale
