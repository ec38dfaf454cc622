#include "discovery/products/ModbasTvw.h"

namespace quorvale {
namespace {

// The index range of a node's children, as the check rules walk it. Empty: first is behind last.
struct IndexRange {
  int first = 1;
  int last = 0;
};

IndexRange RangeOfChildren(const ui::TreeNode& node) {
  if (node.Children() == 0) return {};
  return {node.ChildNodes().front()->Index(), node.ChildNodes().back()->Index()};
}

}  // namespace

void CheckChildren(ui::TreeView& tree, ui::TreeNode* node) {
  // Children are younger than their parent, so the walk only ever goes to higher numbers.
  const IndexRange range = RangeOfChildren(*node);
  for (int index = range.first; index <= range.last; ++index) {
    ui::TreeNode* child = tree.Node(index);
    child->SetChecked(node->Checked());
    CheckChildren(tree, child);
  }
}

void CheckParent(ui::TreeView& tree, ui::TreeNode* node) {
  for (ui::TreeNode* parent = node->Parent(); parent != nullptr; parent = parent->Parent()) {
    const IndexRange range = RangeOfChildren(*parent);
    bool any = false;
    for (int index = range.first; index <= range.last && !any; ++index) {
      any = tree.Node(index)->Checked();
    }
    parent->SetChecked(any);
  }
}

void UpdateNodeChecks(ui::TreeView& tree, ui::TreeNode* node) {
  if (node == nullptr) return;
  tree.BeginUpdate();
  CheckChildren(tree, node);
  CheckParent(tree, node);
  tree.EndUpdate();
}

}  // namespace quorvale
