#include "platform/windows/services.h"

#include <functional>

#include "base/text.h"
#include "platform/windows/automation.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

using ManagerCall = SC_HANDLE(WINAPI*)(LPCSTR, LPCSTR, DWORD);
using OpenCall = SC_HANDLE(WINAPI*)(SC_HANDLE, LPCSTR, DWORD);
using StartCall = BOOL(WINAPI*)(SC_HANDLE, DWORD, LPCSTR*);
using ControlCall = BOOL(WINAPI*)(SC_HANDLE, DWORD, SERVICE_STATUS*);
using CloseCall = BOOL(WINAPI*)(SC_HANDLE);

constexpr DWORD kExecuteAccess = 0x20000000;

// Runs `act` on the opened service. False if there are no services or not this one.
bool WithService(const std::string& name, const std::function<bool(SC_HANDLE)>& act) {
  const auto open_manager = LookUp<ManagerCall>("advapi32.dll", "OpenSCManagerA");
  const auto open_service = LookUp<OpenCall>("advapi32.dll", "OpenServiceA");
  const auto close = LookUp<CloseCall>("advapi32.dll", "CloseServiceHandle");
  if (open_manager == nullptr || open_service == nullptr || close == nullptr) return false;
  const SC_HANDLE manager = open_manager(nullptr, nullptr, SC_MANAGER_CONNECT);
  if (manager == nullptr) return false;
  bool done = false;
  const SC_HANDLE service = open_service(manager, Ansi(name).c_str(), kExecuteAccess);
  if (service != nullptr) {
    done = act(service);
    close(service);
  }
  close(manager);
  return done;
}

}  // namespace

std::string WindowsServices::State(const std::string& name) {
  std::string state;
  QueryManagement("SELECT * FROM Win32_Service where name='" + name + "'", [&](Dispatch& row) {
    if (!EqualsNoCase(row.Text("name").value_or(""), name)) return true;
    state = row.Text("State").value_or("");
    return false;
  });
  return state;
}

bool WindowsServices::Start(const std::string& name) {
  const auto start = LookUp<StartCall>("advapi32.dll", "StartServiceA");
  if (start == nullptr) return false;
  return WithService(name, [&](SC_HANDLE service) { return start(service, 0, nullptr) != 0; });
}

bool WindowsServices::Control(const std::string& name, int code) {
  const auto control = LookUp<ControlCall>("advapi32.dll", "ControlService");
  if (control == nullptr) return false;
  return WithService(name, [&](SC_HANDLE service) {
    SERVICE_STATUS status = {};
    return control(service, static_cast<DWORD>(code), &status) != 0;
  });
}

}  // namespace quorvale::windows
