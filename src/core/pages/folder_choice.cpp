#include "core/pages/folder_choice.h"

#include "base/text.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

struct Sentence {
  FolderRefusal refusal;
  const char* text;
  const char* with_full_stop;
};
constexpr Sentence kSentences[] = {
    {FolderRefusal::kRecycleBin, "You cannot select Recycle Bin", "You cannot select Recycle Bin."},
    {FolderRefusal::kNotFixed, "Please select a fixed drive", "Please select a fixed drive."},
    {FolderRefusal::kProgramFiles, "You cannot select Program Files",
     "You cannot select Program Files."},
    {FolderRefusal::kNotWritable,
     "You do not have sufficient permissions on the selected folder or drive",
     "You do not have sufficient permissions on the selected folder or drive"},
};

bool IsRecycleBin(const std::string& folder) {
  return ContainsNoCase(folder, "Recycle Bin") || ContainsNoCase(folder, "Recycle.Bin") ||
         ContainsNoCase(folder, "Recycled");
}

}  // namespace

FolderRefusal WhyRefused(Program& program, const std::string& folder) {
  if (IsRecycleBin(folder)) return FolderRefusal::kRecycleBin;
  if (!IsNetworkPath(folder) &&
      program.platform().files.KindOfDrive(DriveOf(folder)) != DriveKind::kFixed) {
    return FolderRefusal::kNotFixed;
  }
  if (IsVista(program) && ContainsNoCase(folder, "Program Files")) {
    return FolderRefusal::kProgramFiles;
  }
  return FolderIsWritable(program, folder) ? FolderRefusal::kNone : FolderRefusal::kNotWritable;
}

bool FolderMayBeUsed(Application& app, const std::string& folder, SentenceEnd end) {
  const FolderRefusal refusal = WhyRefused(app, folder);
  for (const Sentence& sentence : kSentences) {
    if (sentence.refusal != refusal) continue;
    app.Inform(end == SentenceEnd::kFullStop ? sentence.with_full_stop : sentence.text);
  }
  return refusal == FolderRefusal::kNone;
}

}  // namespace quorvale
