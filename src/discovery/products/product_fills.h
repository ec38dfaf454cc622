// One fill per product: each adds its root to an item tree, with everything below it that this
// computer holds. What cannot be read is left out; nothing is reported.
#pragma once

#include "core/pages/application.h"
#include "platform/ui/tree_view.h"

namespace quorvale {

void FillOutlookExpressNodes(Application& app, ui::TreeView& tree);
void FillWindowsMailNodes(Application& app, ui::TreeView& tree);
void FillMicrosoftOutlookNodes(Application& app, ui::TreeView& tree);
void FillInternetExplorerNodes(Application& app, ui::TreeView& tree);
void FillOtherFilesNodes(Application& app, ui::TreeView& tree);

// True if the application is registered and the user has a mail profile.
bool HasMicrosoftOutlook(Application& app);

}  // namespace quorvale
