// The description of a computer that the host binding works on: machine.ini and what lies beside
// it. Reading writes nothing.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/dates.h"
#include "platform/files.h"
#include "platform/processes.h"
#include "platform/system_info.h"

namespace quorvale::host {

// Why a machine folder cannot be used.
struct MachineError {
  std::string file;  // host path
  int line = 0;      // 1-based; 0 if no line is to blame
  std::string message;
  // "FILE, line 3: MESSAGE"; without a line "FILE: MESSAGE".
  std::string Text() const;
};

struct MachineDrive {
  DriveKind kind = DriveKind::kFixed;
  std::string folder;                       // host path; "" for a drive without a medium
  std::optional<std::uint64_t> free_bytes;  // nothing: as much as the host has
  bool read_only = false;                   // nothing is ever written on it
};

struct MachineService {
  std::string name;
  bool running = false;
};

// The disc writer of a machine.
struct MachineDisc {
  // "" for none; "drives" for those of the host; a device of the host ("/dev/sr0"); or
  // "file:disc.iso", a file beside machine.ini that takes the place of a medium. The next blank
  // medium is then disc_2.iso, and so on.
  std::string writer;
  // Of media that are files:
  std::uint64_t size = 737280000;  // bytes of each
  std::optional<int> media;        // how many there are; nothing: as many as are asked for
};

struct MachineFolder {
  std::string path;  // host path of the folder itself

  SystemVersion version{2, 5, 1, true};
  std::string user = "User";
  std::string computer = "COMPUTER";
  int codepage = 1252;
  int codepage_line = 0;  // of machine.ini, 0 if it does not name one
  bool elevation_refused = false;

  std::vector<std::pair<std::string, std::string>> environment;
  std::map<int, std::string> folders;   // special folder number to path
  std::map<char, MachineDrive> drives;  // by upper-case letter
  std::vector<ProcessInfo> processes;
  std::vector<MachineService> services;
  MachineDisc disc;
  std::optional<LocalTime> now;  // nothing: the host's clock
};

// The machine of a folder. Nothing, and the reason in `error`, if the folder or its machine.ini is
// missing or a line of it cannot be understood.
std::optional<MachineFolder> ReadMachineFolder(const std::string& folder, MachineError* error);

// True for a text that MachineDisc::writer takes, "" aside.
bool IsDiscWriter(const std::string& text);

}  // namespace quorvale::host
