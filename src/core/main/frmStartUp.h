// The page "Startup and Installation". It keeps its three boxes in a store of its own, apart from
// the settings that the program reads at its start.
#pragma once

#include "core/pages/wizard_page.h"
#include "platform/ui/controls.h"

namespace quorvale {

inline constexpr char kStartUpKey[] = "Software\\Tarnwick\\Quorvale\\StartUp\\Settings";

class frmStartUp : public WizardPage {
 public:
  static constexpr char kName[] = "frmStartUp";
  explicit frmStartUp(Application& app);

  void Load() override;

  ui::PictureBox PicHeader;
  ui::Label lblHeader, lblSubheading;
  ui::CheckBox chkGUpdate, chkShortcut, ChkStartMenu;
  ui::Label lblLanguage;
  ui::ComboBox CboLanguage;
  ui::CommandButton cmdBack, cmdNext, cmdCancel;

  void chkGUpdate_Click();
  void chkShortcut_Click();
  void ChkStartMenu_Click();
  void cmdBack_Click();
  void cmdCancel_Click();

 private:
  void PlaceControls();
  void ConnectHandlers();

  bool filling_ = false;
};

}  // namespace quorvale
