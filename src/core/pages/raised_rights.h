// The rule of raised rights: what needs them goes on in a copy of the program that has them.
#pragma once

#include <functional>
#include <string>

#include "core/pages/application.h"

namespace quorvale {

// What the user is told when raised rights were refused. The pages of a backup end it with a stop.
inline constexpr char kElevationRefused[] =
    "Administrator privileges are required for this action. You do not have sufficient access "
    "privileges to perform this action";
inline constexpr char kElevationRefusedStop[] =
    "Administrator privileges are required for this action. You do not have sufficient access "
    "privileges to perform this action.";

// True if this copy may go on. Otherwise `write_hand_over` has written what the other copy is to
// replay, and either this copy is ending or the rights were refused: the user has been told then,
// and the main window is enabled again.
bool RaiseRights(Application& app, const std::function<void()>& write_hand_over,
                 const char* refused = kElevationRefused);

}  // namespace quorvale
