// What a copy that asks for raised rights leaves for the copy that gets them, beside the job in
// temp.xml: for whom it asked, and the backup file that it was opened with.
//
// The system may let another user give the rights, and then that copy runs as this other user, with
// other mail, other files and another temp.xml. So the request stands where every user can read it,
// in the data that all users share.
#pragma once

#include <optional>
#include <string>

#include "core/program/program.h"

namespace quorvale {

struct RaisedRequest {
  std::string user;
  std::string data_folder;
  std::string opened_file;  // "" if the copy was opened without one
};

// Leaves the request of this copy. True if it stands.
bool LeaveRaisedRequest(Program& program);
// Takes the request back: this user's own, else another one's that is there. Nothing if there is
// none.
std::optional<RaisedRequest> TakeRaisedRequest(Program& program);
// True if the request is that of the user as whom this copy runs.
bool IsOwnRequest(Program& program, const RaisedRequest& request);

}  // namespace quorvale
