// Internet Explorer: favourites, cookies and settings come back to the present user.
#pragma once

#include "restore/run/restore_tools.h"

namespace quorvale {

// All items of the product, until a stop.
void RestoreInternetExplorer(const RestoreTools& tools);
void RestoreInternetExplorerItem(const RestoreTools& tools, const RestoreRow& row);

}  // namespace quorvale
