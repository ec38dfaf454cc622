// One fill per product: each adds its root to an item tree, with everything below it that this
// computer holds. What cannot be read is left out; nothing is reported.
#pragma once

#include "core/program/program.h"
#include "platform/ui/tree_view.h"

namespace quorvale {

void FillOutlookExpressNodes(Program& program, ui::TreeView& tree);
void FillWindowsMailNodes(Program& program, ui::TreeView& tree);
void FillMicrosoftOutlookNodes(Program& program, ui::TreeView& tree);
void FillInternetExplorerNodes(Program& program, ui::TreeView& tree);
void FillOtherFilesNodes(Program& program, ui::TreeView& tree);

// True if the application is registered and the user has a mail profile.
bool HasMicrosoftOutlook(Program& program);

}  // namespace quorvale
