// The dialog that delivers a finished backup: it burns the parts, one to a disc, or uploads the
// file to the FTP server.
//
// The work runs inside a timer's handler while the dialog is up, and pumps messages. Closing the
// dialog ends the work at once.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "backup/run/disc_delivery.h"
#include "backup/run/ftp_delivery.h"
#include "core/pages/application.h"
#include "platform/ui/controls.h"

namespace quorvale {

class FrmProcess : public ui::Form, public RunPage {
 public:
  static constexpr char kName[] = "FrmProcess";
  explicit FrmProcess(Application& app);
  ~FrmProcess() override;
  // Sets the dialog up by gMediaFtp and starts the work as soon as the dialog is up.
  void Load() override;
  void Unload() override;
  RunProgress Progress() const override;
  bool StopRun() override;

  // Connects to the job's server.
  bool Connect();
  // Whole megabytes.
  static std::string ConvertBytesToMBString(std::uint64_t bytes);
  // The names of the files directly in the folder; returns how many there are.
  int GetFilesInFolder(const std::string& folder, std::vector<std::string>* names);
  // Lists the folder's files as the discs to write, and writes the first.
  void giveZipFiles(const std::string& folder);
  // Writes one file to the medium in the drive, or to the next one that has room for it.
  void WriteDiscFile(const std::string& path);

  void Timer1_Timer();
  void TimerStart_Timer();

  ui::PictureBox Img{*this, "Img"};
  ui::Label LblHeading{*this, "LblHeading"};
  ui::Label lblStatus{*this, "lblStatus"};
  ui::ProgressBar prgStatus{*this, "prgStatus"};
  ui::Timer Timer1{*this, "Timer1", 1000};        // the next disc
  ui::Timer TimerStart{*this, "TimerStart", 50};  // lets the dialog paint before the work

  std::vector<std::string> mFiles;  // the files to burn
  std::int16_t mDiscIndex = 0;      // of the disc being written
  bool mNextDiscPending = false;    // a tick of Timer1 is to start the next disc
  bool mAborted = false;            // the user refused to insert a further disc

 private:
  void PlaceControls();
  void ConnectHandlers();
  void ShowStatus(const std::string& text);
  // False once the work has to end: the dialog is gone, or the program ends.
  bool Going() const;
  void EndDialog();

  void Upload();
  void ShowRefusal(const std::string& answer);
  FtpEvents UploadEvents();

  // Finds a medium for the file, with the user's help. False if there is none, which was told.
  bool FindMedium(const std::string& path);
  bool AskForAnotherMedium();
  DiscEvents BurnEvents();
  void Burn(const std::string& path);
  void DiscWritten();
  // The file of this number, from 0; "" if there is none.
  std::string FileAt(int index) const;

  Application& app_;
  FtpDelivery upload_;
  DiscDelivery discs_;
};

}  // namespace quorvale
