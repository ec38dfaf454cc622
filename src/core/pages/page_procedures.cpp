#include "core/pages/page_procedures.h"

#include "base/paths.h"
#include "core/program/ModGlobal.h"

namespace quorvale {

bool MakeDirectoryPath(Application& app, const std::string& path) {
  // What stands behind the last "\" is a file's name, not a folder to make.
  const std::string folder = IsShareRoot(path) ? path : ParentFolder(path);
  if (!folder.empty() && app.files().MakeFolderChain(folder)) return true;
  TellFolderRefused(app, path);
  return false;
}

void TellFolderRefused(Application& app, const std::string& path) {
  app.Inform("Sorry Could not make the directory [" + path + "] path. ");
}

void OpenUrl(Application& app, const std::string& url) {
  const std::string browser = DefaultBrowser(app);
  if (browser == "Invalid") {
    app.Inform("Unable to open URL. Install browser first!");
    return;
  }
  app.platform().shell.Run(browser + " " + url, WindowStyle::kNormal);
  app.Pump();
}

void OnF1(ui::Form& form, std::function<void()> action) {
  form.on_key_down = [action = std::move(action)](int code, int) {
    constexpr int kF1 = 112;
    if (code == kF1) action();
    return code == kF1;
  };
}

void OpenHelpOnF1(Application& app, ui::Form& page, const std::string& topic) {
  OnF1(page, [&app, topic] { ShowHelp(app, topic); });
}

void RoundPage(const Application& app, ui::Form& page) {
  if (page.State() == ui::WindowState::kMinimized) return;
  page.corner = IsVista(app) ? 10 : 11;
}

}  // namespace quorvale
