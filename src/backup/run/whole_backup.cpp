#include "backup/run/whole_backup.h"

#include "archive/archive_input.h"
#include "base/paths.h"
#include "core/program/account_folder.h"

namespace quorvale {
namespace {

AccountReason ReasonOf(zip::Result result) {
  switch (result) {
    case zip::Result::kNoSpace:
    case zip::Result::kNoTemporarySpace:
      return AccountReason::kNoRoom;
    case zip::Result::kAborted:
      return AccountReason::kStopped;
    default:
      return AccountReason::kDamaged;
  }
}

// One part is a whole file: it only moves, which takes no room.
AccountReason Move(Program& program, zip::Archive& parts, const std::string& target) {
  const zip::Result tested = parts.Test();
  if (tested != zip::Result::kDone) return ReasonOf(tested);
  const FileStatus moved = program.platform().files.Replace(parts.archive_name, target);
  return moved == FileStatus::kOk ? AccountReason::kNone : ReasonOfStatus(moved);
}

}  // namespace

WholeBackup MakeWholeBackup(Program& program, const std::string& archive,
                            const std::function<bool(int percent)>& progress) {
  const std::string folder = ParentFolder(archive);
  const std::string name = FileNameOf(archive);
  const std::string target = WithBackslash(ParentFolder(folder)) + name;
  if (program.platform().files.Stat(target)) return {"", AccountReason::kPlaceTaken};
  zip::Archive parts(program.platform());
  parts.archive_name = archive;
  if (program.session().gProtectWithPassword == "True") {
    parts.password = program.session().gArchivePassword;
  }
  parts.on_total_progress = [&](int percent) {
    if (!progress(percent)) parts.abort = true;
  };
  const bool is_one = !program.files().FileExists(zip::PartPath(archive, 0, 2));
  AccountReason why = AccountReason::kNone;
  if (is_one) {
    why = Move(program, parts, target);
  } else {
    const zip::Result joined = parts.Join(target);
    if (joined != zip::Result::kDone) why = ReasonOf(joined);
  }
  if (why != AccountReason::kNone) return {"", why};
  return {target, AccountReason::kNone};
}

}  // namespace quorvale
