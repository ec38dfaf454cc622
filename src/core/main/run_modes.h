// What a run does: decided once, from the raw command line, when the main window loads.
#pragma once

#include <string>

#include "core/pages/application.h"
#include "core/program/command_words.h"

namespace quorvale {

// The name that marks a running copy.
inline constexpr char kInstanceMutex[] = "Quorvale_312B2478-3EA4-4e76-BED7-F460AB3BA64E";

// The entry of a run: marks the copy, loads the main window (which does what the command line
// asks) and shows it. Returns when the message loop may begin; Application::Ended tells if there is
// nothing to loop for.
void SubMain(Application& app);

// True if this copy must give way: started with an empty command line while another one runs.
bool GivesWayToOtherCopy(Application& app);

// Acts on a word of the task scheduler. Any other text is not an error and does nothing.
void RunCommandLine(Application& app, const std::string& word);
void RunQuickBackupWord(Application& app);
void RunCustomWord(Application& app);
void RunAutoWord(Application& app);

// Reads the hand-over file of the copy that asked for raised rights and replays its action. The
// file is gone afterwards. A missing or unreadable file replays nothing.
void ResumeAfterElevation(Application& app, const std::string& path);

// Lets a prepared backup begin by itself, unless it began already.
void StartPreparedBackup(Application& app);

}  // namespace quorvale
