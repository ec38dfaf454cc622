#include "restore/run/user_files_restore.h"

#include <optional>

#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

// Where the folder of this name ends in a path; a name that only begins like it is the second
// choice. npos without it.
size_t EndOfWord(const std::string& path, const std::string& word) {
  for (size_t at = path.find(word); at != std::string::npos; at = path.find(word, at + 1)) {
    const size_t end = at + word.size();
    if (end == path.size() || path[end] == '\\') return end;
  }
  const size_t first = path.find(word);
  return first == std::string::npos ? first : first + word.size();
}

// The text up to and including `word`, "" without it.
std::string UpTo(const std::string& path, const std::string& word) {
  const size_t end = EndOfWord(path, word);
  return end == std::string::npos ? "" : path.substr(0, end);
}

std::string Behind(const std::string& path, const std::string& word) {
  const size_t end = EndOfWord(path, word);
  return end == std::string::npos ? "" : path.substr(end);
}

// True if the drive or share of a path answers.
bool DriveIsThere(Files& files, const std::string& path) {
  if (!IsNetworkPath(path)) return files.DriveExists(path.substr(0, path.find('\\')));
  const size_t server = path.find('\\', 2);
  const size_t end = server == std::string::npos ? server : path.find('\\', server + 1);
  const std::optional<DiskSpace> space = files.Space(path.substr(0, end));
  return space && space->free_bytes > 0;
}

// "" where it has no home here.
std::string TargetOfAddedFile(const RestoreTools& tools, const RestoreOrigin& origin) {
  const std::string& location = origin.key;
  Program& program = tools.program;
  Shell& shell = program.platform().shell;
  const std::string word = DocumentsWord(program);
  if (Contains(location, "Desktop\\")) {
    tools.monitor.events().item("Desktop");
    if (program.files().FolderExists(extractDesktopPath(location))) return location;
    return shell.SpecialFolder(special_folder::kDesktop) + restDesktopPath(location);
  }
  if (Contains(location, word + "\\")) {
    tools.monitor.events().item(word);
    if (program.files().FolderExists(extractPath(program, location))) return location;
    return shell.SpecialFolder(special_folder::kDocuments) + restPath(program, location);
  }
  return DriveIsThere(program.platform().files, location) ? location : "";
}

// Puts a folder's tree where items stay that cannot go home.
void LeaveFolder(const RestoreTools& tools, const RestoreOrigin& origin) {
  if (tools.extractor.KeepFolder(origin)) tools.result.left_in_restore_folder = true;
}

void RestoreAddedFolder(const RestoreTools& tools, const RestoreRow& row) {
  const RestoreOrigin& origin = tools.OriginOf(row);
  if (tools.extractor.EntryOf(origin).kind != ItemEntry::Kind::kFolder) return;
  if (DriveIsThere(tools.program.platform().files, row.location)) {
    tools.extractor.ExtractFolder(origin, row.location);
  } else {
    LeaveFolder(tools, origin);
  }
}

// The desktop's files or the documents: to where they were, if that folder is there. Documents of a
// system that calls the folder by another word have no home here.
void RestoreOwnFolder(const RestoreTools& tools, const RestoreRow& row) {
  Program& program = tools.program;
  const RestoreOrigin& origin = tools.OriginOf(row);
  if (tools.extractor.EntryOf(origin).kind != ItemEntry::Kind::kFolder) return;
  const std::string word = DocumentsWord(program);
  std::string old_folder;
  int own_folder = 0;
  if (origin.path == "Other Files\\My Desktop Files") {
    tools.monitor.events().item("Desktop");
    old_folder = extractDesktopPath(row.location);
    own_folder = special_folder::kDesktop;
  } else if (origin.path == "Other Files\\" + word) {
    tools.monitor.events().item(word);
    old_folder = extractPath(program, row.location);
    own_folder = special_folder::kDocuments;
  } else {
    return LeaveFolder(tools, origin);
  }
  const bool is_there = !old_folder.empty() && program.files().FolderExists(old_folder);
  tools.extractor.ExtractFolder(
      origin, is_there ? row.location : program.platform().shell.SpecialFolder(own_folder));
}

// Restores the rows below one root of the tree, until a stop.
void ForEachRow(const RestoreTools& tools, const std::string& root,
                void (*restore)(const RestoreTools& tools, const RestoreRow& row)) {
  for (const RestoreRow& row : tools.job.gRestoreSelection) {
    if (!tools.OriginOf(row).path.starts_with(root)) continue;
    if (!tools.monitor.KeepGoing()) return;
    restore(tools, row);
  }
}

}  // namespace

std::string extractDesktopPath(const std::string& path) { return UpTo(path, "Desktop"); }

std::string restDesktopPath(const std::string& path) { return Behind(path, "Desktop"); }

std::string extractPath(const Program& program, const std::string& path) {
  return UpTo(path, DocumentsWord(program));
}

std::string restPath(const Program& program, const std::string& path) {
  return Behind(path, DocumentsWord(program));
}

void RestoreAddedFiles(const RestoreTools& tools) {
  ForEachRow(tools, "Add More Files\\", RestoreOtherFiles);
}

void RestoreOtherFiles(const RestoreTools& tools, const RestoreRow& row) {
  // Nothing is said to be kept that the archive does not hold.
  const RestoreOrigin& origin = tools.OriginOf(row);
  const ItemEntry entry = tools.extractor.EntryOf(origin);
  if (entry.kind != ItemEntry::Kind::kFile || !tools.extractor.HoldsItem(origin)) return;
  const std::string target = TargetOfAddedFile(tools, origin);
  tools.monitor.events().item(row.item);
  if (!target.empty()) {
    tools.extractor.ExtractFile(origin, target);
  } else if (tools.extractor.KeepFile(origin, "Added more Files")) {
    tools.result.left_in_restore_folder = true;
  }
}

void OFolder(const RestoreTools& tools) {
  ForEachRow(tools, "Add Other Folders\\", RestoreAddedFolder);
}

void OtherFiles(const RestoreTools& tools) { ForEachRow(tools, "Other Files\\", RestoreOwnFolder); }

}  // namespace quorvale
