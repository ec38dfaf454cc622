// The box that tells the program's name and version and where its maker is found.
#pragma once

#include "core/application.h"
#include "platform/ui/controls.h"

namespace quorvale {

// Opens the address of a link label with the shell; the pointer shows the hourglass meanwhile.
void OpenLink(Application& app, const std::string& address);

class frmAbout : public ui::Form {
 public:
  static constexpr char kName[] = "frmAbout";
  explicit frmAbout(Application& app);

  ui::Label lblTitle, lblVersion;
  ui::Label lblWebsite, Lnkweblink;
  ui::Label lblSupport, Lnksupport;
  ui::Label LnkUpdate;
  ui::CommandButton cmdOK;

  void cmdOK_Click();

 private:
  Application& app_;
};

}  // namespace quorvale
