// How much room the committed selection needs, and how much a drive has.
#pragma once

#include <string>

#include "core/pages/application.h"

namespace quorvale {

// Bytes of all files and folders of the committed selection; also in gSelectedFolderBytes. The
// window repaints meanwhile, but takes nothing.
double SizeOfSelection(Application& app);
// Free bytes of a drive ("C:") or network path into gFreeBytes; gDriveInfoFailed if it can't be
// read.
void MeasureFreeSpace(Program& program, const std::string& drive);
// The same. False if this or a drive measured since the last call can't be read; the failure is
// taken out of gDriveInfoFailed.
bool ReadFreeSpace(Program& program, const std::string& drive);
// Used bytes of a drive; 0 and gDriveInfoFailed if it can't be read.
double UsedSpace(Program& program, const std::string& drive);

}  // namespace quorvale
