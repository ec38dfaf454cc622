#include "core/pages/unexpected_error.h"

#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

constexpr std::uint64_t kLongestReportFile = 1u << 20;

bool Append(Application& app, const std::string& text) {
  const std::string path = ReportFilePath(app);
  const std::string before = app.files().ReadWhole(path, kLongestReportFile).value_or("");
  app.files().MakeFolderChain(ParentFolder(path));
  return app.files().WriteWhole(path, before + app.platform().system.ToAnsi(text)) ==
         FileStatus::kOk;
}

StepAnswer AskWhatNext(Application& app, const std::string& question) {
  const ui::Answer answer = app.ui().MessageBox({.text = question,
                                                 .title = kApplicationTitle,
                                                 .icon = ui::Icon::kQuestion,
                                                 .buttons = ui::Buttons::kYesNoCancel});
  if (answer == ui::Answer::kYes) return StepAnswer::kRetry;
  return answer == ui::Answer::kNo ? StepAnswer::kNextCaller : StepAnswer::kNoMoreStops;
}

}  // namespace

std::string ReportFilePath(Application& app) { return DataFolder(app) + "\\" + kReportFileName; }

void SetUpReports(Application& app, HuntERR* errors) {
  const auto value = [&app](const char* name) {
    return app.registry().RegGetValue(RegistryRoot::kCurrentUser, kDeveloperKey, name);
  };
  errors->developer.append_to_report_file = [&app](const std::string& text) {
    return Append(app, text);
  };
  errors->developer.report_database = value("ReportDatabase");
  errors->developer.reports_crashes = CheckValue(value("ReportCrashes")) == 1;
  if (CheckValue(value("StepMode")) == 1) {
    errors->developer.ask = [&app](const std::string& question) {
      return AskWhatNext(app, question);
    };
  }
}

void ReportUnexpected(Application& app, HuntERR* errors, const std::string& method,
                      const std::exception_ptr& caught) {
  errors->Take(caught);
  errors->ErrPreserve();
  const std::string description = errors->ErrDescription;
  const bool is_kept =
      errors->SaveReport(errors->ErrorIn(method, {app.CommandLine()}, error_flag::kCallStack));
  if (errors->ErrRetry) return;
  std::string sentence = "Quorvale has met an error that it did not expect: " + description;
  if (is_kept) sentence += "\r\n\r\nA report of it is in " + ReportFilePath(app);
  app.Warn(sentence);
}

bool RunReporting(Application& app, HuntERR* errors, const std::string& method,
                  const std::function<void()>& body) {
  do {
    try {
      body();
      return true;
    } catch (...) {
      ReportUnexpected(app, errors, method, std::current_exception());
    }
  } while (errors->ErrRetry);
  return false;
}

}  // namespace quorvale
