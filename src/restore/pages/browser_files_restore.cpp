// Internet Explorer, and the user's own files: documents, desktop, added files and folders.
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "restore/pages/frmRFinish.h"

namespace quorvale {
namespace {

constexpr char kTaking[] = "Current Progress: Taking Restore of ";

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

}  // namespace

std::string frmRFinish::extractDesktopPath(const std::string& path) {
  return UpTo(path, "Desktop");
}

std::string frmRFinish::restDesktopPath(const std::string& path) { return Behind(path, "Desktop"); }

std::string frmRFinish::extractPath(const std::string& path) const {
  return UpTo(path, DocumentsWord(app_));
}

std::string frmRFinish::restPath(const std::string& path) const {
  return Behind(path, DocumentsWord(app_));
}

std::string frmRFinish::exchangeDriveLetter(const std::string& path, const std::string& drive) {
  const size_t colon = path.find(":\\");
  return drive + ":\\" + (colon == std::string::npos ? path : path.substr(colon + 2));
}

std::string frmRFinish::folderOnly(const std::string& path) {
  const size_t end = path.find('\\');
  return end == std::string::npos ? path : path.substr(0, end + 1);
}

// Internet Explorer. ---------------------------------------------------------------------------

void frmRFinish::RestoreInternetExplorer() {
  for (const RestoreRow& row : app_.session().gRestoreSelection) {
    if (!OriginOf(row).path.starts_with("Internet Explorer\\")) continue;
    if (!BeginItem(std::string(kTaking) + "Internet Explorer Items..." + row.item)) return;
    RestoreInternetExplorerItem(row);
  }
}

void frmRFinish::RestoreInternetExplorerItem(const RestoreRow& row) {
  const ItemEntry entry = EntryOf(OriginOf(row));
  if (entry.kind == ItemEntry::Kind::kNone) return;
  StagedPath = StagedName(entry.name);
  Shell& shell = app_.platform().shell;
  if (entry.kind == ItemEntry::Kind::kRegistry) {
    RestoreRegistryItem(OriginOf(row), row.location);
    return;
  }
  const std::string favorites = shell.SpecialFolder(special_folder::kFavorites);
  if (row.item == "Internet Explorer\\Favorites") {
    ExtractFolder(entry.name, favorites);
  } else if (row.item == "Internet Explorer\\Cookies") {
    std::string cookies = shell.SpecialFolder(special_folder::kCookies);
    if (cookies.empty()) cookies = favorites.substr(0, favorites.find("\\Favorites")) + "\\cookies";
    ExtractFolder(entry.name, cookies);
  }
}

// Added files and folders. ---------------------------------------------------------------------

bool frmRFinish::DriveIsThere(const std::string& path) {
  Files& files = app_.platform().files;
  if (!IsNetworkPath(path)) return files.DriveExists(path.substr(0, path.find('\\')));
  const size_t server = path.find('\\', 2);
  const size_t end = server == std::string::npos ? server : path.find('\\', server + 1);
  const std::optional<DiskSpace> space = files.Space(path.substr(0, end));
  return space && space->free_bytes > 0;
}

void frmRFinish::RestoreAddedFiles() {
  for (const RestoreRow& row : app_.session().gRestoreSelection) {
    if (!OriginOf(row).path.starts_with("Add More Files\\")) continue;
    if (!BeginItem(lblCurrent.caption)) return;
    RestoreOtherFiles(row);
  }
}

std::string frmRFinish::TargetOfAddedFile(const RestoreOrigin& origin,
                                          const std::string& location) {
  Shell& shell = app_.platform().shell;
  const std::string word = DocumentsWord(app_);
  if (Contains(location, "Desktop\\")) {
    lblCurrent.caption = std::string(kTaking) + "Desktop...";
    if (app_.files().FolderExists(extractDesktopPath(location))) return location;
    return shell.SpecialFolder(special_folder::kDesktop) + restDesktopPath(location);
  }
  if (Contains(location, word + "\\")) {
    lblCurrent.caption = kTaking + word + "...";
    if (app_.files().FolderExists(extractPath(location))) return location;
    return shell.SpecialFolder(special_folder::kDocuments) + restPath(location);
  }
  if (DriveIsThere(location)) return location;
  LeftInRestoreFolder = true;
  return FolderForLeftItems() + "\\" + BackupBaseName() + "\\Added more Files\\" +
         FileNameOf(origin.key);
}

void frmRFinish::RestoreOtherFiles(const RestoreRow& row) {
  // Nothing is said to be kept that the archive does not hold.
  const ItemEntry entry = EntryOf(OriginOf(row));
  if (entry.kind != ItemEntry::Kind::kFile || !HoldsItem(OriginOf(row), entry)) return;
  StagedPath = StagedName(entry.name);
  const std::string target = TargetOfAddedFile(OriginOf(row), OriginOf(row).key);
  lblCurrent.caption = kTaking + row.item + "...";
  ExtractFile(OriginOf(row), target);
}

void frmRFinish::OFolder() {
  for (const RestoreRow& row : app_.session().gRestoreSelection) {
    if (!OriginOf(row).path.starts_with("Add Other Folders\\")) continue;
    if (!BeginItem(lblCurrent.caption)) return;
    const ItemEntry entry = EntryOf(OriginOf(row));
    if (entry.kind != ItemEntry::Kind::kFolder) continue;
    StagedPath = StagedName(entry.name);
    if (DriveIsThere(row.location)) {
      ExtractFolder(entry.name, row.location);
    } else if (ExtractFolder(entry.name, FolderForLeftItems() + "\\" + MemberName(entry.name))) {
      LeftInRestoreFolder = true;
    }
  }
}

// Documents and desktop. -----------------------------------------------------------------------

void frmRFinish::OtherFiles() {
  Shell& shell = app_.platform().shell;
  const std::string word = DocumentsWord(app_);
  for (const RestoreRow& row : app_.session().gRestoreSelection) {
    if (!OriginOf(row).path.starts_with("Other Files\\")) continue;
    if (!BeginItem(lblCurrent.caption)) return;
    const ItemEntry entry = EntryOf(OriginOf(row));
    if (entry.kind != ItemEntry::Kind::kFolder) continue;
    StagedPath = StagedName(entry.name);
    std::string old_folder;
    std::string own_folder;
    if (row.item == "Other Files\\My Desktop Files") {
      lblCurrent.caption = std::string(kTaking) + "Desktop...";
      old_folder = extractDesktopPath(row.location);
      own_folder = shell.SpecialFolder(special_folder::kDesktop);
    } else if (row.item == "Other Files\\" + word) {
      lblCurrent.caption = kTaking + word + "...";
      old_folder = extractPath(row.location);
      own_folder = shell.SpecialFolder(special_folder::kDocuments);
    } else {
      continue;
    }
    const bool is_there = !old_folder.empty() && app_.files().FolderExists(old_folder);
    ExtractFolder(entry.name, is_there ? row.location : own_folder);
  }
}

}  // namespace quorvale
