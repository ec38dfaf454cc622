// The documents folder, the desktop, and the two roots under which the user's own choices go.
#include <string>

#include "base/paths.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/ModbasTvw.h"
#include "discovery/products/product_fills.h"

namespace quorvale {
namespace {

// False if the tree would not take the node. A folder that the system cannot name is left out.
bool AddFolderNode(Program& program, ui::TreeView& tree, ui::TreeNode* root, int number,
                   const std::string& caption) {
  const std::string folder = program.platform().shell.SpecialFolder(number);
  if (folder.empty()) return true;
  ui::TreeNode* node = tree.Add(root, WithBackslash(folder), caption, "fc", "fo");
  if (node == nullptr) return false;
  node->tag = "N";
  tree.EnsureVisible(node);
  return true;
}

}  // namespace

void FillOtherFilesNodes(Program& program, ui::TreeView& tree) {
  ui::TreeNode* root = tree.Add(nullptr, "Other Files", "Other Files", "af");
  if (root == nullptr) return;
  if (!AddFolderNode(program, tree, root, special_folder::kDocuments, DocumentsWord(program)))
    return;
  if (!AddFolderNode(program, tree, root, special_folder::kDesktop, "My Desktop Files")) return;
  tree.Add(nullptr, "Add Other Folders", "Add Other Folders", "aa1");
  UpdateNodeChecks(tree, tree.Add(nullptr, "Add More Files", "Add More Files", "ab1"));
}

}  // namespace quorvale
