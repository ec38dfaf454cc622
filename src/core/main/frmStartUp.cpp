#include "core/main/frmStartUp.h"

#include "core/main/FrmWelcome.h"
#include "core/main/frmSettings.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {}  // namespace

frmStartUp::frmStartUp(Application& app)
    : ui::Form(app.ui(), kName),
      PicHeader(*this, "PicHeader", "StartUpInstall"),
      lblHeader(*this, "lblHeader",
                "Quorvale Startup Options( Settings will be applied as soon as you select them)"),
      lblDescription(*this, "lblDescription", "Customize Startup Options for Quorvale"),
      chkGUpdate(*this, "chkGUpdate", "Check for updates on Startup"),
      chkShortcut(*this, "chkShortcut", "Show a Shortcut on Desktop"),
      ChkStartMenu(*this, "ChkStartMenu", "Show in Start Menu"),
      lblLanguage(*this, "lblLanguage", "Set Program Language"),
      CboLanguage(*this, "CboLanguage"),
      cmdBack(*this, "cmdBack"),
      cmdNext(*this, "cmdNext"),
      cmdCancel(*this, "cmdCancel"),
      app_(app) {
  using page_layout::ContentRow;
  page_layout::PlaceHeader(&PicHeader, &lblHeader);
  lblHeader.font_size = 9;  // a long line
  lblDescription.bounds = ContentRow(0);
  lblDescription.bold = true;
  lblDescription.fore_color = page_layout::kHeadingColor;
  chkGUpdate.bounds = ContentRow(2, page_layout::kContentLeft, 300);
  chkShortcut.bounds = ContentRow(3, page_layout::kContentLeft, 300);
  ChkStartMenu.bounds = ContentRow(4, page_layout::kContentLeft, 300);
  lblLanguage.bounds = ContentRow(6, page_layout::kContentLeft, 150);
  CboLanguage.bounds = ContentRow(6, page_layout::kContentLeft + 156, 144);
  page_layout::PlaceButtons(&cmdBack, &cmdNext, &cmdCancel);
  int tab = 1;
  for (ui::Control* control : std::initializer_list<ui::Control*>{
           &chkGUpdate, &chkShortcut, &ChkStartMenu, &lblLanguage, &CboLanguage}) {
    control->tab_index = tab++;
  }
  chkGUpdate.on_click = [this] { chkGUpdate_Click(); };
  chkShortcut.on_click = [this] { chkShortcut_Click(); };
  ChkStartMenu.on_click = [this] { ChkStartMenu_Click(); };
  cmdBack.on_click = [this] { cmdBack_Click(); };
  cmdCancel.on_click = [this] { cmdCancel_Click(); };
  OpenHelpOnF1(app_, *this, "qvlSettings.htm");
}

void frmStartUp::Load() {
  filling_ = true;
  for (ui::CheckBox* box : {&chkGUpdate, &chkShortcut, &ChkStartMenu}) {
    box->value = CheckValue(
        app_.registry().RegGetValue(RegistryRoot::kCurrentUser, kStartUpKey, box->name()));
  }
  filling_ = false;
  page_layout::HostPage(app_, *this);
  CboLanguage.AddItem("English");
  CboLanguage.list_index = 0;
}

void frmStartUp::Save(const ui::CheckBox& box) {
  app_.registry().SaveRegString(RegistryRoot::kCurrentUser, kStartUpKey, box.name(),
                                std::to_string(box.value));
}

void frmStartUp::chkGUpdate_Click() {
  if (!filling_) Save(chkGUpdate);
}

void frmStartUp::chkShortcut_Click() {
  if (filling_) return;
  SetShortcut(app_, special_folder::kDesktop, chkShortcut.value == 1);
  Save(chkShortcut);
}

void frmStartUp::ChkStartMenu_Click() {
  if (filling_) return;
  SetShortcut(app_, special_folder::kPrograms, ChkStartMenu.value == 1);
  Save(ChkStartMenu);
}

void frmStartUp::cmdBack_Click() {
  app_.Get<frmSettings>().Show();
  Hide();
  app_.Get<FrmWelcome>().MarkSettingsStep(0);
}

void frmStartUp::cmdCancel_Click() { app_.Get<FrmWelcome>().HomePage(); }

}  // namespace quorvale
