// The rules by which ticks travel through a tree. Shared by the backup and the restore tree.
#pragma once

#include "platform/ui/tree_view.h"

namespace quorvale {

// Carries a node's tick down to all below it, then up: a parent is ticked when any child is, and
// unticked only when none is. Nothing happens for a null node.
void UpdateNodeChecks(ui::TreeView& tree, ui::TreeNode* node);

// Downward. The walk goes over the index range from the first to the last child, so a node that
// was created between two children is taken along.
void CheckChildren(ui::TreeView& tree, ui::TreeNode* node);
// Upward, over the same index ranges.
void CheckParent(ui::TreeView& tree, ui::TreeNode* node);

}  // namespace quorvale
