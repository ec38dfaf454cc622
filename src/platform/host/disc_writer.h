// The disc writer of a machine folder: drives of the host, or a file in the place of each medium.
// The images are made and written by xorriso.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/disc_writer.h"
#include "platform/host/files.h"
#include "platform/host/machine_folder.h"

namespace quorvale::host {

class HostDiscWriter : public DiscWriter {
 public:
  HostDiscWriter(const MachineFolder& machine, HostFiles& files);

  bool Initialise() override;
  std::vector<DiscDrive> Drives() override;
  bool Open(int index) override;
  bool MediumLoaded() override;
  std::uint64_t FreeBytes() override;
  bool Burn(const std::string& path, const std::string& name, const DiscEvents& events) override;
  void Eject() override;

  // Another writer from now on, as machine.ini would name it.
  void Use(const MachineDisc& disc);
  const MachineDisc& disc() const { return disc_; }
  // The host path of the medium in the drive, where media are files.
  std::string MediumFile();

 private:
  bool IsFile() const { return disc_.writer.starts_with("file:"); }
  std::string FileOfMedium(int number) const;
  // Puts the next medium in whose file is not there yet: one that is has been written.
  void InsertFrom(int number);
  // What the host's program answers about the opened drive: the lines of its answer.
  std::vector<std::string> AskDrive(const std::vector<std::string>& commands);
  std::optional<std::uint64_t> ImageBlocks(const std::vector<std::string>& image,
                                           const DiscEvents& events);
  bool Write(const std::string& medium, const std::vector<std::string>& image, std::uint64_t blocks,
             const DiscEvents& events);

  std::string machine_folder_;
  HostFiles& files_;
  MachineDisc disc_;
  std::string device_;  // of the opened drive
  int medium_ = 0;      // number of the file in the drive; 0 before the first is put in
  int inserted_ = 0;    // media put in so far
};

// What the host's program writes.
// "0  -dev '/dev/sr0' rwrw-- :  'MAKER' 'MODEL'" to a drive. Nothing for other lines.
std::optional<DiscDrive> ParseDriveLine(const std::string& line);
// The number of blocks behind a name: "Media space  : 359849s". Nothing for other lines.
std::optional<std::uint64_t> ParseBlocks(const std::string& line, const std::string& name);
// The blocks written so far: "xorriso : UPDATE : Writing:  14848s  100.0%   fifo ...".
std::optional<std::uint64_t> ParseWritten(const std::string& line);

}  // namespace quorvale::host
