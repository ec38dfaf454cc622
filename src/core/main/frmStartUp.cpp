#include "core/main/frmStartUp.h"

#include "base/scoped_flag.h"
#include "core/main/stored_boxes.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"

namespace quorvale {

frmStartUp::frmStartUp(Application& app)
    : WizardPage(app, kName, PageRole::kStartUp),
      PicHeader(*this, "PicHeader", "StartUpInstall"),
      lblHeader(*this, "lblHeader",
                "Quorvale Startup Options( Settings will be applied as soon as you select them)"),
      lblSubheading(*this, "lblSubheading", "Customize Startup Options for Quorvale"),
      chkGUpdate(*this, "chkGUpdate", "Check for updates on Startup"),
      chkShortcut(*this, "chkShortcut", "Show a Shortcut on Desktop"),
      ChkStartMenu(*this, "ChkStartMenu", "Show in Start Menu"),
      lblLanguage(*this, "lblLanguage", "Set Program Language"),
      CboLanguage(*this, "CboLanguage"),
      cmdBack(*this, "cmdBack"),
      cmdNext(*this, "cmdNext"),
      cmdCancel(*this, "cmdCancel") {
  PlaceControls();
  ConnectHandlers();
}

void frmStartUp::PlaceControls() {
  using namespace page_layout;
  PlaceHeader(&PicHeader, &lblHeader);
  lblHeader.font_size = 9;  // a long line
  PlaceSubheading(&lblSubheading);
  chkGUpdate.bounds = ContentRow(2, kContentLeft, 300);
  chkShortcut.bounds = ContentRow(3, kContentLeft, 300);
  ChkStartMenu.bounds = ContentRow(4, kContentLeft, 300);
  lblLanguage.bounds = ContentRow(6, kContentLeft, 150);
  CboLanguage.bounds = ContentRow(6, kContentLeft + 156, 144);
  PlaceButtons(&cmdBack, &cmdNext, &cmdCancel);
  SetTabOrder({&chkGUpdate, &chkShortcut, &ChkStartMenu, &lblLanguage, &CboLanguage});
}

void frmStartUp::ConnectHandlers() {
  chkGUpdate.on_click = [this] { chkGUpdate_Click(); };
  chkShortcut.on_click = [this] { chkShortcut_Click(); };
  ChkStartMenu.on_click = [this] { ChkStartMenu_Click(); };
  cmdBack.on_click = [this] { cmdBack_Click(); };
  cmdCancel.on_click = [this] { cmdCancel_Click(); };
  OpenHelpOnF1(app_, *this, "qvlSettings.htm");
}

void frmStartUp::Load() {
  {
    const ScopedFlag filling(filling_);
    for (ui::CheckBox* box : {&chkGUpdate, &chkShortcut, &ChkStartMenu}) {
      box->value = CheckValue(
          app_.registry().RegGetValue(RegistryRoot::kCurrentUser, kStartUpKey, box->name()));
    }
  }
  page_layout::HostPage(app_, *this);
  CboLanguage.AddItem("English");
  CboLanguage.list_index = 0;
}

void frmStartUp::chkGUpdate_Click() {
  if (!filling_) SaveBox(app_, kStartUpKey, chkGUpdate);
}

void frmStartUp::chkShortcut_Click() {
  if (!filling_) ApplyShortcutBox(app_, kStartUpKey, chkShortcut, special_folder::kDesktop);
}

void frmStartUp::ChkStartMenu_Click() {
  if (!filling_) ApplyShortcutBox(app_, kStartUpKey, ChkStartMenu, special_folder::kPrograms);
}

void frmStartUp::cmdBack_Click() { Back(); }

void frmStartUp::cmdCancel_Click() { app_.page_host().HomePage(); }

}  // namespace quorvale
