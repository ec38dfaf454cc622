// What becomes of an error that nothing else has caught: a report for who mends the program, and a
// sentence for who uses it.
#pragma once

#include <exception>
#include <functional>
#include <string>

#include "core/pages/application.h"
#include "platform/error_report/HuntERR.h"

namespace quorvale {

// Under HKEY_CURRENT_USER; a developer writes its values by hand. "StepMode" 1: each error asks
// what to do. "ReportDatabase": how a database is reached that takes the reports. "ReportCrashes"
// 1: crashes are reported too.
inline constexpr char kDeveloperKey[] = "Software\\Tarnwick\\Quorvale\\Developer";

// The file that reports are added to, in the folder of the user's data. It is begun anew when it
// grows beyond a megabyte.
std::string ReportFilePath(Application& app);

// The program's error reports: into the report file, and as a developer has switched.
void SetUpReports(Application& app, HuntERR* errors);

// Runs a procedure of the program's outermost level. An exception that comes out of it is reported
// and kept, and the user is told in one sentence. False then.
bool RunReporting(Application& app, HuntERR* errors, const std::string& method,
                  const std::function<void()>& body);
// The same for an exception that is caught already.
void ReportUnexpected(Application& app, HuntERR* errors, const std::string& method,
                      const std::exception_ptr& caught);

}  // namespace quorvale
