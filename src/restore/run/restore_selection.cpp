#include "restore/run/restore_selection.h"

#include <unordered_map>

#include "backup/format/archive_layout.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/outlook_profile.h"
#include "discovery/products/product_table.h"

namespace quorvale {
namespace {

// "x\My Name" gives "x\My_Name.reg".
std::string RegistryItem(const std::string& path) {
  return ParentFolder(path) + "\\" + ExportFileName(FileNameOf(path));
}

RestoreRow OutlookRow(const std::string& path, const std::string& key) {
  if (Contains(path, "Microsoft Outlook\\Offline folders")) return {path, key};
  if (Contains(path, "Microsoft Outlook\\Identities") && Contains(path, "Account Settings")) {
    return {ReplaceAll(path, "Account Settings", "Account_Settings.reg"), key};
  }
  const std::string location = UpToComma(key);
  if (location.ends_with(".pst") || location.ends_with(".ost")) return {path, location};
  return {FileNameOf(ParentFolder(path)) + "\\" + FileNameOf(path), location};
}

RestoreRow BrowserRow(const std::string& path, const std::string& key) {
  if (Contains(path, "Internet Explorer\\Typed Urls")) return {path + "\\Typed_Urls.reg", key};
  if (Contains(path, "IESettings")) return {RegistryItem(path), key};
  return {path, key};
}

RestoreRow MailRow(const std::string& path, const std::string& key) {
  for (const char* group : {"Outlook Express\\Account Setting", "Outlook Express\\System setting",
                            "Outlook Express\\Message Rules"}) {
    if (Contains(path, group)) return {RegistryItem(path), key};
  }
  return {path, key};
}

RestoreRow OtherFilesRow(const std::string& path, const std::string& key,
                         const std::string& documents) {
  if (Contains(path, "My Desktop Files") || Contains(path, documents)) return {path, key};
  return {};
}

RestoreRow RowOfNode(const std::string& path, const std::string& key,
                     const std::string& documents) {
  const auto is_of = [&path](ProductId id) {
    return Contains(path, ProductOf(id).restore_caption);
  };
  const auto below = [](ProductId id, const std::string& name) {
    return ProductOf(id).restore_caption + ("\\" + name);
  };
  if (is_of(ProductId::kAddedFiles)) return {below(ProductId::kAddedFiles, FileNameOf(path)), key};
  if (is_of(ProductId::kAddedFolders)) {
    return {below(ProductId::kAddedFolders, FileNameOf(WithoutBackslash(path))), key};
  }
  if (is_of(ProductId::kOtherFiles)) return OtherFilesRow(path, key, documents);
  if (is_of(ProductId::kMicrosoftOutlook)) return OutlookRow(path, key);
  if (is_of(ProductId::kInternetExplorer)) return BrowserRow(path, key);
  if (is_of(ProductId::kOutlookExpress)) return MailRow(path, key);
  return {path, key};
}

}  // namespace

RestoreSelection::RestoreSelection(Program& program, const std::vector<SettingsItem>& items)
    : session_(program.session()), items_(items), documents_(DocumentsWord(program)) {
  session_.restore_items.clear();
  session_.gRestoreSelection.clear();
  session_.gRestoreItemPaths.clear();
  session_.gRestoreItemKeys.clear();
  session_.gRestoreItemAux.clear();
  session_.gRestoreItemDest.clear();
  NewRow();  // the first row stays empty: rows are counted from 1
  NewRow();
  CountNamesakes();
}

void RestoreSelection::NewRow() {
  session_.gRestoreItemPaths.emplace_back();
  session_.gRestoreItemKeys.emplace_back();
  session_.gRestoreItemAux.emplace_back();
  session_.gRestoreItemDest.emplace_back();
}

void RestoreSelection::Add(const std::string& path, const std::string& key, int item) {
  if (Contains(path, "\\")) {
    session_.gRestoreSelection.push_back(RowOfNode(path, key, documents_));
    session_.gRestoreSelection.back().node = session_.restore_items.size();
  }
  session_.restore_items.push_back(
      {path, item < 0 ? RestoreOrigin() : OriginOf(static_cast<size_t>(item))});
  session_.gRestoreItemPaths.back() = path;
  session_.gRestoreItemKeys.back() =
      Contains(path, ProductOf(ProductId::kMicrosoftOutlook).caption) ? UpToComma(key) : key;
  NewRow();
}

void RestoreSelection::PassOver(const std::string& key) { session_.gRestoreItemDest.back() = key; }

RestoreOrigin RestoreSelection::OriginOf(size_t item) const {
  return {items_[item].path, WithoutRowNumbers(items_[item].key), namesakes_[item].place,
          namesakes_[item].count};
}

// Folders of one name are one folder in the archive; files are kept apart by their order.
void RestoreSelection::CountNamesakes() {
  namesakes_.resize(items_.size());
  std::unordered_map<std::string, size_t> counts;
  std::vector<std::string> names(items_.size());  // of the files; "" for others
  for (size_t i = 0; i < items_.size(); ++i) {
    const ItemEntry entry =
        EntryOfItem(items_[i].path, WithoutRowNumbers(items_[i].key), session_.gOSName);
    if (entry.kind != ItemEntry::Kind::kFile) continue;
    names[i] = FoldCase(entry.name);
    namesakes_[i].place = counts[names[i]]++;
  }
  for (size_t i = 0; i < items_.size(); ++i) {
    if (!names[i].empty()) namesakes_[i].count = counts[names[i]];
  }
}

std::string UpToComma(const std::string& text) { return text.substr(0, text.find(',')); }

}  // namespace quorvale
