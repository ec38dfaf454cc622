#include "backup/run/disc_folder.h"

#include <algorithm>

#include "base/paths.h"
#include "base/text.h"
#include "logs/run/pathLogger.h"

namespace quorvale {
namespace {

constexpr char kMarkText[] =
    "Parts of a backup wait in CDBackup for their discs. Quorvale removes that folder.\r\n";

// "Job.obk", "Job.z01", "Job.z02" and so on for "Job".
bool IsPartOf(const std::string& name, const std::string& stem) {
  if (EqualsNoCase(name, stem + ".obk")) return true;
  const std::string start = FoldCase(stem + ".z");
  const std::string folded = FoldCase(name);
  return folded.size() > start.size() && folded.starts_with(start) &&
         folded.find_first_not_of("0123456789", start.size()) == std::string::npos;
}

}  // namespace

DiscFolder::DiscFolder(Program& program, const std::string& path)
    : program_(program), path_(WithoutBackslash(path)) {}

// Beside the folder, not in it: what is in it goes to discs.
std::string DiscFolder::MarkPath() const { return path_ + ".mark"; }

bool DiscFolder::Make() {
  FileToolkit& files = program_.files();
  if (files.FolderExists(path_)) return true;
  if (!files.MakeFolderChain(path_)) return false;
  // Without its mark the folder is taken for someone else's, and stays: nothing is lost by that.
  if (files.WriteWhole(MarkPath(), kMarkText) == FileStatus::kOk) {
    files.files().SetAttributes(MarkPath(), file_attribute::kHidden);
  }
  return true;
}

bool DiscFolder::IsOurs() const {
  return program_.files().FileExists(MarkPath()) && program_.files().FolderExists(path_);
}

std::vector<std::string> DiscFolder::Parts(const std::string& stem) const {
  pathLogger walk(program_.platform().files, [this] { program_.Pump(); });
  walk.fullFileNamesOnly = true;
  walk.LogPath(path_);
  std::vector<std::string> parts = walk.fullFileNames().entries();
  if (IsOurs()) return parts;
  std::erase_if(parts, [&](const std::string& path) {
    return !EqualsNoCase(ParentFolder(path), path_) || !IsPartOf(FileNameOf(path), stem);
  });
  return parts;
}

void DiscFolder::Remove(const std::string& archive) {
  if (IsOurs()) {
    if (program_.files().KillFolder(path_)) TakeMarkOff();
    return;
  }
  // A mark whose folder is gone must not stand for one that somebody makes there later.
  if (!program_.files().FolderExists(path_)) TakeMarkOff();
  if (!archive.empty()) {
    for (const std::string& part : Parts(WithoutLastFour(FileNameOf(archive)))) {
      program_.platform().files.RemoveFile(part, true);
    }
  }
}

void DiscFolder::Keep() { TakeMarkOff(); }

void DiscFolder::TakeMarkOff() { program_.platform().files.RemoveFile(MarkPath(), true); }

}  // namespace quorvale
