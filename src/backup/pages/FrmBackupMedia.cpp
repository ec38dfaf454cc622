#include "backup/pages/FrmBackupMedia.h"

#include <algorithm>
#include <cmath>

#include "backup/run/ftp_delivery.h"
#include "base/scoped_flag.h"
#include "base/text.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

constexpr char kDefaultPort[] = "21";
constexpr double kBytesPerMegabyte = 1048576;
constexpr double kOrdinaryDiscMegabytes = 650;

bool IsNumeric(const std::string& text) {
  return text.find_first_not_of("0123456789") == std::string::npos;
}

int DiscsNeeded(double megabytes, double capacity) {
  return static_cast<int>(std::ceil(megabytes / capacity));
}

}  // namespace

FrmBackupMedia::FrmBackupMedia(Application& app) : WizardPage(app, kName, PageRole::kBackupMedia) {
  TxtPassword.password = true;
  txtpath.read_only = true;
  cboDrives.enabled = false;
  PlaceControls();
  ConnectHandlers();
  EnableFtpFields();
}

void FrmBackupMedia::PlaceControls() {
  using namespace page_layout;
  constexpr int kIndent = 20;
  constexpr int kLabelWidth = 110;
  constexpr int kLabelLeft = kContentLeft + kIndent;
  constexpr int kFieldLeft = kLabelLeft + kLabelWidth + 8;
  constexpr int kFieldWidth = 280;
  lblHeader.fore_color = kHeaderColor;
  ChkHardDisk.bounds = ContentRow(0);
  lblpath.bounds = ContentRow(1, kLabelLeft, kLabelWidth);
  txtpath.bounds = ContentRow(1, kFieldLeft, kFieldWidth);
  ChkCDDVD.bounds = ContentRow(2);
  cboDrives.bounds = ContentRow(3, kFieldLeft, kFieldWidth);
  ChkFTP.bounds = ContentRow(4);
  lblhost.bounds = ContentRow(5, kLabelLeft, kLabelWidth);
  TxtHostname.bounds = ContentRow(5, kFieldLeft, kFieldWidth);
  lblport.bounds = ContentRow(6, kLabelLeft, kLabelWidth);
  TxtPort.bounds = ContentRow(6, kFieldLeft, 60);
  ChkAnonymous.bounds = ContentRow(7, kFieldLeft, kFieldWidth);
  lblusername.bounds = ContentRow(8, kLabelLeft, kLabelWidth);
  TxtUserName.bounds = ContentRow(8, kFieldLeft, kFieldWidth);
  lblpassword.bounds = ContentRow(9, kLabelLeft, kLabelWidth);
  TxtPassword.bounds = ContentRow(9, kFieldLeft, kFieldWidth);
  lblrdir.bounds = ContentRow(10, kLabelLeft, kLabelWidth);
  TxtRemoteDir.bounds = ContentRow(10, kFieldLeft, kFieldWidth);
  SetTabOrder({&ChkHardDisk, &txtpath, &ChkCDDVD, &cboDrives, &ChkFTP, &TxtHostname, &TxtPort,
               &ChkAnonymous, &TxtUserName, &TxtPassword, &TxtRemoteDir});
  PlaceHeader(&PicHeader, &lblHeader);
  PlaceButtons(&cmdBack, &cmdNext, &cmdCancel);
}

void FrmBackupMedia::ConnectHandlers() {
  ChkHardDisk.on_click = [this] { ChkHardDisk_Click(); };
  ChkCDDVD.on_click = [this] { ChkCDDVD_Click(); };
  ChkFTP.on_click = [this] { ChkFTP_Click(); };
  ChkAnonymous.on_click = [this] { ChkAnonymous_Click(); };
  cboDrives.on_click = [this] { cboDrives_Click(); };
  cmdBack.on_click = [this] { cmdBack_Click(); };
  cmdNext.on_click = [this] { cmdNext_Click(); };
  cmdCancel.on_click = [this] { cmdCancel_Click(); };
  OpenHelpOnF1(app_, *this, "qvlBackup.htm");
}

void FrmBackupMedia::Load() {
  page_layout::HostPage(app_, *this);
  TakeOver();
}

bool FrmBackupMedia::TakeOver() {
  txtpath.text = app_.session().gBackupFolder;
  return true;
}

void FrmBackupMedia::Choose(ui::CheckBox& box) {
  {
    const ScopedFlag choosing(choosing_);
    for (ui::CheckBox* each : {&ChkHardDisk, &ChkCDDVD, &ChkFTP}) {
      each->value = each == &box ? 1 : 0;
    }
  }
  cboDrives.enabled = ChkCDDVD.value == 1;
  EnableFtpFields();
}

void FrmBackupMedia::ChkHardDisk_Click() {
  if (choosing_) return;
  const bool nothing_else = ChkCDDVD.value == 0 && ChkFTP.value == 0;
  if (ChkHardDisk.value == 1 || nothing_else) Choose(ChkHardDisk);
}

void FrmBackupMedia::ChkCDDVD_Click() {
  if (choosing_) return;
  if (ChkCDDVD.value == 0) {
    cboDrives.enabled = false;
    return;
  }
  Choose(ChkCDDVD);
  FillDriveList();
}

void FrmBackupMedia::ChkFTP_Click() {
  if (choosing_) return;
  Choose(ChkFTP.value == 1 ? ChkFTP : ChkHardDisk);
}

void FrmBackupMedia::ChkAnonymous_Click() { EnableFtpFields(); }

void FrmBackupMedia::EnableFtpFields() {
  const bool ftp = ChkFTP.value == 1;
  const bool named = ftp && ChkAnonymous.value == 0;
  for (ui::Label* label : {&lblhost, &lblport, &lblusername, &lblpassword, &lblrdir}) {
    label->visible = ftp;
  }
  for (ui::TextBox* box : {&TxtHostname, &TxtPort, &TxtRemoteDir}) box->enabled = ftp;
  TxtUserName.enabled = named;
  TxtPassword.enabled = named;
  ChkAnonymous.enabled = ftp;
}

void FrmBackupMedia::FillDriveList() {
  DiscWriter& discs = app_.platform().discs;
  cboDrives.Clear();
  if (!discs.Initialise()) {
    app_.Inform("Drives Cannot be initialized...Contact support!");
    Choose(ChkHardDisk);
    return;
  }
  for (const DiscDrive& drive : discs.Drives()) {
    if (!drive.can_write) continue;
    cboDrives.AddItem(drive.place + ": " + drive.maker + " " + drive.model, drive.index);
  }
  if (cboDrives.Count() > 0) {
    cboDrives.list_index = 0;
    return;
  }
  app_.Inform("There are no compatible drives reported");
  Choose(ChkHardDisk);
}

void FrmBackupMedia::cboDrives_Click() {
  if (cboDrives.list_index < 0) return;
  if (app_.platform().discs.Open(cboDrives.ItemData(cboDrives.list_index))) return;
  app_.Inform("Select a different drive...could not open selected drive!");
}

bool FrmBackupMedia::Connect(const std::string& host, const std::string& port,
                             const std::string& user, const std::string& password) {
  FtpClient& ftp = app_.platform().ftp;
  FtpServer server = Server();
  server.host = host;
  server.port = port;
  server.user = user;
  server.password = password;
  if (!OpenServer(ftp, server)) return false;
  return !ftp.CurrentFolder().empty() && ftp.ChangeFolder(server.folder);
}

FtpServer FrmBackupMedia::Server() const {
  return {.host = Trim(TxtHostname.text.get()),
          .port = Trim(TxtPort.text.get()),
          .user = Trim(TxtUserName.text.get()),
          .password = Trim(TxtPassword.text.get()),
          .folder = TxtRemoteDir.text,
          .anonymous = ChkAnonymous.value == 1};
}

bool FrmBackupMedia::IsLoaded() const {
  return !app_.Ended() && app_.Loaded<FrmBackupMedia>() == this;
}

void FrmBackupMedia::cmdNext_Click() {
  app_.ui().SetPointer(ui::Pointer::kHourglass);
  if (CheckMedia()) {
    // Filling the next page starts the run at once in an automatic one.
    Hide();
    GoOnTo(PageRole::kBackupReview);
  }
  app_.ui().SetPointer(ui::Pointer::kDefault);
}

bool FrmBackupMedia::CheckMedia() {
  if (app_.platform().ftp.State() == FtpState::kBusy) return false;
  if (ChkHardDisk.value == 0 && ChkCDDVD.value == 0 && ChkFTP.value == 0) {
    app_.Inform("You have not selected any backup media");
    return false;
  }
  if (ChkFTP.value == 1 && !CheckFtp()) return false;
  if (ChkHardDisk.value == 1) {
    app_.session().gMediaFtp = false;
    app_.session().gMediaDisc = false;
  }
  return ChkCDDVD.value == 0 || CheckDisc();
}

bool FrmBackupMedia::Refuse(ui::Control& box, const std::string& text) {
  app_.Inform(text);
  box.SetFocus();
  return false;
}

bool FrmBackupMedia::FtpFieldsAreUsable() {
  if (Trim(TxtHostname.text.get()).empty()) {
    return Refuse(TxtHostname, "Host name cannot be blank");
  }
  const std::string port = Trim(TxtPort.text.get());
  if (port.empty() || !IsNumeric(port)) {
    TxtPort.text = kDefaultPort;
    return Refuse(
        TxtPort, port.empty() ? "Port cannot be blank" : "Port should contain only numeric values");
  }
  if (Trim(TxtRemoteDir.text.get()).empty()) TxtRemoteDir.text = "/";
  if (ChkAnonymous.value == 1) return true;
  if (Trim(TxtUserName.text.get()).empty()) {
    return Refuse(TxtUserName, "User name cannot be blank");
  }
  if (Trim(TxtPassword.text.get()).empty()) {
    return Refuse(TxtPassword, "Password cannot be blank");
  }
  return true;
}

// The window stays alive meanwhile, so that the user can leave the page: that ends the test.
bool FrmBackupMedia::TestConnection(const FtpServer& server) {
  FtpClient& ftp = app_.platform().ftp;
  ftp.Listen({.progress = nullptr, .reply = nullptr, .keep_going = [this] {
                app_.Pump();
                return IsLoaded();
              }});
  const bool connected = Connect(server.host, server.port, server.user, server.password);
  ftp.Listen({});
  return connected;
}

bool FrmBackupMedia::CheckFtp() {
  if (!FtpFieldsAreUsable()) return false;
  EnableButtons(false);
  const FtpServer server = Server();
  const bool connected = TestConnection(server);
  if (!IsLoaded()) return false;
  if (!connected) {
    app_.Inform(
        "There was error in FTP connection. Please check the FTP settings and try connection "
        "again");
  }
  EnableButtons(true);
  if (!connected) {
    TxtHostname.SetFocus();
    return false;
  }
  Session& session = app_.session();
  session.ftp_server = server;
  session.gMediaFtp = true;
  session.gMediaDisc = false;
  return true;
}

bool FrmBackupMedia::CheckDisc() {
  DiscWriter& discs = app_.platform().discs;
  if (!discs.MediumLoaded()) {
    app_.Inform("No Media Loaded on the disk drive!");
    return false;
  }
  Session& session = app_.session();
  const double capacity = static_cast<double>(discs.FreeBytes()) / kBytesPerMegabyte;
  int count = capacity > 0 ? DiscsNeeded(session.gBackupEstimatedSize, capacity) : 0;
  if (count == 1) {
    app_.Inform("One CD required");
  } else {
    count = std::max(1, DiscsNeeded(session.gBackupEstimatedSize, kOrdinaryDiscMegabytes));
    app_.Inform("Total of " + std::to_string(count) + "  CD required");
  }
  session.gMediaDiscCount = count;
  session.disc_drive = cboDrives.list_index >= 0 ? cboDrives.ItemData(cboDrives.list_index) : -1;
  session.gMediaFtp = false;
  session.gMediaDisc = true;
  return true;
}

void FrmBackupMedia::EnableButtons(bool enabled) {
  for (ui::CommandButton* button : {&cmdBack, &cmdNext, &cmdCancel}) button->enabled = enabled;
}

void FrmBackupMedia::cmdBack_Click() { Back(); }

void FrmBackupMedia::cmdCancel_Click() { Cancel(); }

}  // namespace quorvale
