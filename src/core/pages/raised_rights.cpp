#include "core/pages/raised_rights.h"

#include "core/program/ModGlobal.h"

namespace quorvale {

bool RaiseRights(Application& app, const std::function<void()>& write_hand_over,
                 const char* refused) {
  if (!NeedsElevation(app)) return true;
  write_hand_over();
  if (RestartElevated(app) == Elevation::kRefused) {
    app.page_host().SetEnabled(true);
    app.Inform(refused);
  }
  return false;
}

}  // namespace quorvale
