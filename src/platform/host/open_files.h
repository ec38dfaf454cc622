// Files of the host that are open, and what they keep others from doing.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>

#include "platform/files.h"
#include "platform/host/drives.h"

namespace quorvale::host {

// The files that this program itself has open, by host path. As on Windows, they can be neither
// removed nor replaced, and one that is being written cannot be opened for writing again.
struct OpenFiles {
  std::multiset<std::string> read;
  std::multiset<std::string> written;
  bool Holds(const std::string& host) const {
    return read.count(host) != 0 || written.count(host) != 0;
  }
};

// What the host's error number says.
FileStatus StatusOf(int error);

// Opens a plain file of the host. Null if it is none or cannot be read.
std::unique_ptr<InputFile> OpenHostInput(const std::string& host,
                                         const std::shared_ptr<OpenFiles>& open);

// Creates a file of the host or empties it; what is written is taken off the drive, which must
// live as long as the file. Null, and the reason in `status`, if that fails.
std::unique_ptr<OutputFile> CreateHostOutput(const std::string& host, Drive* drive,
                                             const std::shared_ptr<OpenFiles>& open,
                                             FileStatus* status);

}  // namespace quorvale::host
