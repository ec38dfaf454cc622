#include "backup/format/archive_layout.h"

#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/product_table.h"

namespace quorvale {
namespace {

constexpr char kDesktopCaption[] = "My Desktop Files";

// How many characters of the tree path are surely part of an item's folder: the folder ends at the
// first "\" behind them.
constexpr size_t kMailRootLength = 18;
constexpr size_t kBrowserRootLength = 21;

bool StartsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

bool NamesSomething(const std::string& key) { return Contains(key, "\\"); }

bool IsRegistryKey(const std::string& key) { return StartsWith(key, "HKEY_"); }

// Captions come from account and profile names, which may hold what no file name can.
std::string WithUsableCharacters(std::string text) {
  for (char& c : text) {
    if (std::string("/:*?\"<>|").find(c) != std::string::npos) c = '_';
  }
  return text;
}

std::string CutAtBackslash(const std::string& path, size_t from) {
  return path.substr(0, path.find('\\', from));
}

std::string MailFolder(const std::string& path) {
  const size_t account = path.find("\\Account");
  if (account != std::string::npos) return path.substr(0, account);
  return CutAtBackslash(path, kMailRootLength);
}

ItemEntry Registry(const std::string& folder, const std::string& path) {
  return {ItemEntry::Kind::kRegistry, folder, folder + "\\" + ExportFileName(FileNameOf(path))};
}

ItemEntry OneFile(const std::string& folder, const std::string& key) {
  return {ItemEntry::Kind::kFile, folder, folder + "\\" + FileNameOf(key)};
}

ItemEntry Folder(const std::string& folder) { return {ItemEntry::Kind::kFolder, folder, folder}; }

ItemEntry Nothing(const std::string& folder) { return {ItemEntry::Kind::kNone, folder, ""}; }

ItemEntry OutlookEntry(const std::string& path, const std::string& key) {
  const std::string folder = WithUsableCharacters(MailFolder(path));
  if (IsRegistryKey(key)) return Registry(folder, path);
  return OneFile(folder, key);
}

ItemEntry WindowsMailEntry(const std::string& path, const std::string& key) {
  const std::string folder = WithUsableCharacters(MailFolder(path));
  if (IsRegistryKey(key)) return Registry(folder + "\\Account Settings", path);
  return Folder(folder);
}

ItemEntry OutlookExpressEntry(const std::string& path, const std::string& key) {
  const std::string folder = WithUsableCharacters(ParentFolder(path));
  if (IsRegistryKey(key)) return Registry(folder, path);
  return OneFile(folder, key);
}

ItemEntry InternetExplorerEntry(const std::string& path, const std::string& key) {
  const std::string folder = WithUsableCharacters(CutAtBackslash(path, kBrowserRootLength));
  if (IsRegistryKey(key)) return Registry(folder, path);
  if (path == "Internet Explorer\\Cookies" || path == "Internet Explorer\\Favorites") {
    return Folder(path);
  }
  return Nothing(folder);
}

// The last component of an added folder's path; a whole drive gives its letter.
std::string LastFolderName(const std::string& key) {
  const std::string name = FileNameOf(WithoutBackslash(CollapseBackslashes(key)));
  return ReplaceAll(name, ":", "");
}

ItemEntry AddedFolderEntry(const std::string& key) {
  return Folder(std::string(ProductOf(ProductId::kAddedFolders).restore_caption) + "\\" +
                LastFolderName(key));
}

// The documents folder and the desktop. Their own captions come first: they agree with the keys
// on an ordinary computer, and decide where a folder was moved or renamed.
ItemEntry OtherFilesEntry(const std::string& path, const std::string& key,
                          const std::string& os_name) {
  const std::string root = PathPrefix(ProductId::kOtherFiles);
  const std::string caption = path.substr(root.size());
  if (caption == "My Documents" || caption == "Documents" || caption == kDesktopCaption) {
    return Folder(root + caption);
  }
  const std::string documents = DocumentsWord(os_name);
  if (Contains(key, documents + "\\")) return Folder(root + documents);
  if (Contains(key, "Desktop")) return Folder(root + kDesktopCaption);
  return AddedFolderEntry(key);
}

}  // namespace

ItemEntry EntryOfItem(const std::string& path, const std::string& key, const std::string& os_name) {
  const Product* product = ProductOfItem(path);
  if (product == nullptr) return Nothing("");
  const bool named = NamesSomething(key);
  switch (product->id) {
    case ProductId::kMicrosoftOutlook:
      return named ? OutlookEntry(path, key) : Nothing(WithUsableCharacters(MailFolder(path)));
    case ProductId::kWindowsMail:
      return named ? WindowsMailEntry(path, key) : Nothing(WithUsableCharacters(MailFolder(path)));
    case ProductId::kOutlookExpress:
      return named ? OutlookExpressEntry(path, key)
                   : Nothing(WithUsableCharacters(ParentFolder(path)));
    case ProductId::kInternetExplorer:
      return named ? InternetExplorerEntry(path, key)
                   : Nothing(WithUsableCharacters(CutAtBackslash(path, kBrowserRootLength)));
    case ProductId::kAddedFiles:
      return named ? OneFile(product->restore_caption, key) : Nothing("");
    case ProductId::kAddedFolders:
      return named ? AddedFolderEntry(key) : Nothing("");
    case ProductId::kOtherFiles:
      return named ? OtherFilesEntry(path, key, os_name) : Nothing("");
  }
  return Nothing("");
}

std::string ExportFileName(const std::string& leaf) {
  return ReplaceAll(WithUsableCharacters(leaf), " ", "_") + ".reg";
}

std::string EntryNameBelow(const std::string& backup_folder, const std::string& target) {
  const std::string path = CollapseBackslashes(target);
  const std::string folder = WithBackslash(CollapseBackslashes(backup_folder));
  if (StartsWith(path, folder)) return path.substr(folder.size());
  const size_t found = path.find(backup_folder);
  const size_t cut = backup_folder.size() + (found == std::string::npos ? 0 : found + 1);
  return cut < path.size() ? path.substr(cut) : "";
}

std::string SettingsEntryName(const std::string& stem) { return stem + "\\" + stem + ".xml"; }

}  // namespace quorvale
