// The window program's entry point.
#include "core/application.h"
#include "core/keyboard_guard.h"
#include "core/run_modes.h"
#include "platform/windows/windows_platform.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  quorvale::windows::WindowsPlatform computer(quorvale::kApplicationTitle);
  {
    quorvale::Application app(computer.platform());
    computer.ui().keyboard_filter = quorvale::KeyboardGuardSwallows;
    computer.ui().after_message = [&app] { app.CollectUnloaded(); };
    quorvale::SubMain(app);
    if (!app.Ended()) computer.ui().Loop();
    computer.ui().after_message = nullptr;
  }
  return 0;
}
