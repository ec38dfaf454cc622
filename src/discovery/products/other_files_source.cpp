// The documents folder, the desktop, and the two roots under which the user's own choices go.
#include <string>

#include "base/paths.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/ModbasTvw.h"
#include "discovery/products/product_fills.h"
#include "discovery/products/product_table.h"

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
  ui::TreeNode* root = AddProductRoot(tree, ProductId::kOtherFiles);
  if (root == nullptr) return;
  if (!AddFolderNode(program, tree, root, special_folder::kDocuments, DocumentsWord(program)))
    return;
  if (!AddFolderNode(program, tree, root, special_folder::kDesktop, "My Desktop Files")) return;
  AddProductRoot(tree, ProductId::kAddedFolders);
  UpdateNodeChecks(tree, AddProductRoot(tree, ProductId::kAddedFiles));
}

}  // namespace quorvale
