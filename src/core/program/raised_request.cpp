#include "core/program/raised_request.h"

#include <vector>

#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

constexpr char kNameStart[] = "Rights for ";
constexpr char kNameEnd[] = ".txt";

// The data of all users, or this user's own where the system has no such place.
std::string RequestFolder(Program& program) {
  const std::string shared = program.platform().system.Environment("allusersprofile");
  return shared.empty() ? DataFolder(program) : shared + "\\Tarnwick\\Quorvale";
}

std::string OwnPath(Program& program) {
  return RequestFolder(program) + "\\" + kNameStart + GetWinUserName(program) + kNameEnd;
}

// The file of this user, else the first of another one; "" if there is none.
std::string PresentPath(Program& program) {
  const std::string own = OwnPath(program);
  if (program.files().FileExists(own)) return own;
  for (const std::string& name :
       program.files().ListFileNames(RequestFolder(program), std::string("*") + kNameEnd)) {
    if (name.starts_with(kNameStart)) return RequestFolder(program) + "\\" + name;
  }
  return "";
}

}  // namespace

bool LeaveRaisedRequest(Program& program) {
  program.files().MakeFolderChain(RequestFolder(program));
  const std::string text = GetWinUserName(program) + "\r\n" + DataFolder(program) + "\r\n" +
                           OpenedBackupFile(program) + "\r\n";
  return program.files().WriteWhole(OwnPath(program), text) == FileStatus::kOk;
}

std::optional<RaisedRequest> TakeRaisedRequest(Program& program) {
  const std::string path = PresentPath(program);
  if (path.empty()) return std::nullopt;
  const std::optional<std::string> text = program.files().ReadWhole(path);
  program.platform().files.RemoveFile(path, true);
  const std::vector<std::string> lines = Split(text.value_or(""), "\r\n");
  if (lines.size() < 3) return std::nullopt;
  return RaisedRequest{lines[0], lines[1], lines[2]};
}

bool IsOwnRequest(Program& program, const RaisedRequest& request) {
  return EqualsNoCase(request.user, GetWinUserName(program)) &&
         EqualsNoCase(request.data_folder, DataFolder(program));
}

}  // namespace quorvale
