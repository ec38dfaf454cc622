#include "core/main/frmAbout.h"

#include "core/main/maker.h"
#include "core/program/version.h"

namespace quorvale {

frmAbout::frmAbout(Application& app)
    : ui::Form(app.ui(), kName),
      lblTitle(*this, "lblTitle", kApplicationTitle),
      lblVersion(*this, "lblVersion", std::string("Version ") + kProgramVersion),
      lblWebsite(*this, "lblWebsite", "Website:"),
      Lnkweblink(*this, "Lnkweblink", kMakerHomePage),
      lblSupport(*this, "lblSupport", "Support:"),
      Lnksupport(*this, "Lnksupport", std::string(kMakerSupportMail).substr(7)),
      LnkUpdate(*this, "LnkUpdate", "Check for updates"),
      cmdOK(*this, "cmdOK", "&OK"),
      app_(app) {
  PlaceControls();
  ConnectHandlers();
}

void frmAbout::PlaceControls() {
  SetCaption("About");
  SetSize(360, 200);
  back_color = ui::Rgb(255, 255, 255);
  lblTitle.bounds = {20, 16, 320, 26};
  lblTitle.bold = true;
  lblTitle.font_size = 14;
  lblVersion.bounds = {20, 46, 320, 18};
  lblWebsite.bounds = {20, 78, 70, 18};
  Lnkweblink.bounds = {94, 78, 246, 18};
  lblSupport.bounds = {20, 102, 70, 18};
  Lnksupport.bounds = {94, 102, 246, 18};
  LnkUpdate.bounds = {94, 126, 246, 18};
  cmdOK.bounds = {256, 160, 84, 26};
  cmdOK.is_default = true;
  cmdOK.is_cancel = true;
  cmdOK.tab_index = 0;
  int tab = 1;
  for (ui::HyperLink* link : {&Lnkweblink, &Lnksupport, &LnkUpdate}) {
    link->fore_color = ui::Rgb(9, 82, 172);
    link->tab_index = tab++;
  }
  Lnkweblink.address = kMakerHomePage;
  Lnksupport.address = kMakerSupportMail;
  LnkUpdate.address = kMakerHomePage;
}

void frmAbout::ConnectHandlers() {
  for (ui::HyperLink* link : {&Lnkweblink, &Lnksupport, &LnkUpdate}) {
    link->open = [this](const std::string& address) {
      app_.platform().shell.Execute("Open", address, "", "", 1);
    };
  }
  cmdOK.on_click = [this] { cmdOK_Click(); };
  on_close_request = [this] { cmdOK_Click(); };
}

void frmAbout::cmdOK_Click() { app_.Unload(kName); }

}  // namespace quorvale
