#include "restore/run/internet_explorer_restore.h"

namespace quorvale {
namespace {

constexpr char kRoot[] = "Internet Explorer\\";

std::string CookieFolder(Shell& shell) {
  const std::string cookies = shell.SpecialFolder(special_folder::kCookies);
  if (!cookies.empty()) return cookies;
  const std::string favorites = shell.SpecialFolder(special_folder::kFavorites);
  return favorites.substr(0, favorites.find("\\Favorites")) + "\\cookies";
}

}  // namespace

void RestoreInternetExplorer(const RestoreTools& tools) {
  for (const RestoreRow& row : tools.job.gRestoreSelection) {
    if (!tools.OriginOf(row).path.starts_with(kRoot)) continue;
    if (!tools.monitor.BeginItem(row.item)) return;
    RestoreInternetExplorerItem(tools, row);
  }
}

void RestoreInternetExplorerItem(const RestoreTools& tools, const RestoreRow& row) {
  const RestoreOrigin& origin = tools.OriginOf(row);
  const ItemEntry entry = tools.extractor.EntryOf(origin);
  Shell& shell = tools.program.platform().shell;
  if (entry.kind == ItemEntry::Kind::kRegistry) {
    tools.extractor.RestoreRegistryItem(origin);
  } else if (entry.kind == ItemEntry::Kind::kNone) {
    return;
  } else if (row.item == "Internet Explorer\\Favorites") {
    tools.extractor.ExtractFolder(origin, shell.SpecialFolder(special_folder::kFavorites));
  } else if (row.item == "Internet Explorer\\Cookies") {
    tools.extractor.ExtractFolder(origin, CookieFolder(shell));
  }
}

}  // namespace quorvale
