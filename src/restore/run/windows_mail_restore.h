// Windows Mail: store, contacts and settings come back to the present user.
#pragma once

#include "restore/run/outlook_restore.h"
#include "restore/run/restore_tools.h"

namespace quorvale {

class WindowsMailRestore {
 public:
  // An imported account setting is repaired like an Outlook profile.
  WindowsMailRestore(const RestoreTools& tools, OutlookRestore& outlook)
      : tools_(tools), outlook_(outlook) {}

  // All items of the product, until a stop.
  void RestoreWindowsMail();
  void RestoreWindowsMailItem(const RestoreItem& item);

 private:
  RestoreTools tools_;
  OutlookRestore& outlook_;
};

}  // namespace quorvale
