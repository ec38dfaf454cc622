// Three nodes stand for the whole product: the store folder, the contacts, one registry key.
#include <string>

#include "base/paths.h"
#include "discovery/products/ModbasTvw.h"
#include "discovery/products/product_fills.h"
#include "discovery/products/product_table.h"

namespace quorvale {

void FillWindowsMailNodes(Program& program, ui::TreeView& tree) {
  ui::TreeNode* root = AddProductRoot(tree, ProductId::kWindowsMail);
  if (root == nullptr) return;

  // A folder that the system cannot name leaves a node that stands for nothing.
  ui::TreeNode* mails = tree.Add(root, "Mails", "Mails", "fc", "fo");
  const std::string local = program.platform().shell.SpecialFolder(special_folder::kLocalAppData);
  if (mails != nullptr && !local.empty()) {
    mails->SetKey(WithoutBackslash(local) + "\\Microsoft\\Windows Mail\\");
  }
  ui::TreeNode* contacts = tree.Add(root, "Contacts", "Contacts", "fc", "fo");
  const std::string profile = program.platform().system.Environment("UserProfile");
  if (contacts != nullptr && !profile.empty()) contacts->SetKey(profile + "\\Contacts");

  ui::TreeNode* accounts = tree.Add(root, "Account Settings", "Account Settings", "fc", "fo");
  tree.Add(accounts, "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows Mail", "WMRegistrySettings",
           "reg");
  UpdateNodeChecks(tree, root);
}

}  // namespace quorvale
