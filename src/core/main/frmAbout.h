// The box that tells the program's name and version and where its maker is found.
#pragma once

#include "core/pages/application.h"
#include "platform/ui/controls.h"
#include "platform/ui/hyper_link.h"

namespace quorvale {

class frmAbout : public ui::Form {
 public:
  static constexpr char kName[] = "frmAbout";
  explicit frmAbout(Application& app);

  ui::Label lblTitle, lblVersion;
  ui::Label lblWebsite;
  ui::HyperLink Lnkweblink;
  ui::Label lblSupport;
  ui::HyperLink Lnksupport, LnkUpdate;
  ui::CommandButton cmdOK;

  void cmdOK_Click();

 private:
  void PlaceControls();
  void ConnectHandlers();

  Application& app_;
};

}  // namespace quorvale
