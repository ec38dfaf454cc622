// The window program's entry point.
#include <cstdlib>
#include <exception>

#include "core/main/page_sets.h"
#include "core/main/run_modes.h"
#include "core/pages/application.h"
#include "core/pages/unexpected_error.h"
#include "core/program/version.h"
#include "platform/ui/keyboard_guard.h"
#include "platform/windows/late_objects.h"
#include "platform/windows/windows_platform.h"

namespace {

// The system calls a handler of last resort without any data of ours, so what it needs stands here.
struct LastResort {
  quorvale::Application* app = nullptr;
  quorvale::HuntERR* errors = nullptr;
};
LastResort last_resort;

// An exception that no handler could catch, such as one out of a window's procedure.
void OnTerminate() {
  const std::exception_ptr caught = std::current_exception();
  if (caught != nullptr && last_resort.app != nullptr) {
    quorvale::ReportUnexpected(*last_resort.app, last_resort.errors, "Terminate", caught);
  }
  ExitProcess(1);
}

LONG WINAPI OnCrash(EXCEPTION_POINTERS* crash) {
  if (last_resort.errors == nullptr) return EXCEPTION_CONTINUE_SEARCH;
  const EXCEPTION_RECORD& record = *crash->ExceptionRecord;
  last_resort.errors->SysExcHandler(record.ExceptionCode,
                                    reinterpret_cast<ULONG_PTR>(record.ExceptionAddress));
  return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  quorvale::windows::WindowsPlatform computer(quorvale::kApplicationTitle);
  quorvale::windows::LateObjects late_objects;
  quorvale::HuntERR errors(computer.platform().system, quorvale::kApplicationTitle,
                           quorvale::kProgramVersion, &late_objects);
  bool ended_well = false;
  {
    quorvale::Application app(computer.platform(), quorvale::ProgramPages());
    quorvale::SetUpReports(app, &errors);
    last_resort = {&app, &errors};
    std::set_terminate(OnTerminate);
    if (errors.developer.reports_crashes) SetUnhandledExceptionFilter(OnCrash);
    computer.ui().keyboard_filter = quorvale::KeyboardGuardSwallows;
    computer.ui().after_message = [&app] { app.CollectUnloaded(); };
    ended_well = quorvale::RunReporting(app, &errors, "WinMain", [&app, &computer] {
      if (app.LoadedForms().empty()) quorvale::SubMain(app);
      if (!app.Ended()) computer.ui().Loop();
    });
    computer.ui().after_message = nullptr;
    last_resort = {};
    std::set_terminate(std::abort);
  }
  return ended_well ? 0 : 1;
}
