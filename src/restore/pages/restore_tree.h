// The restore tree, worked out from the items of a settings file before any node is made.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "backup/format/settings_file.h"
#include "platform/ui/tree_view.h"

namespace quorvale {

// Adds the roots with their groups and leaves to an empty tree, each root's nodes in one piece. A
// node that stands for an item carries the item's position in `items` as its tag, in decimal.
// Windows Mail is left out unless `with_windows_mail`. Takes time in proportion to the items.
// `outlook_version` receives the Outlook version that the backup names, if it names one.
void FillRestoreTree(const std::vector<SettingsItem>& items, bool with_windows_mail,
                     ui::TreeView& tree, std::string* outlook_version);

// The position in `items` that a node stands for; -1 for a node that is only a group.
int ItemOfNode(const ui::TreeNode& node);

}  // namespace quorvale
