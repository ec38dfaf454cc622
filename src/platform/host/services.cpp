#include "platform/host/services.h"

#include "base/text.h"

namespace quorvale::host {
namespace {

constexpr char kRunning[] = "Running";
constexpr char kStopped[] = "Stopped";
constexpr char kPaused[] = "Paused";

}  // namespace

HostServices::HostServices(const std::vector<MachineService>& services) {
  for (const MachineService& service : services) {
    SetState(service.name, service.running ? kRunning : kStopped);
  }
}

HostServices::Service* HostServices::Find(const std::string& name) {
  const auto found = services_.find(FoldCase(name));
  return found == services_.end() ? nullptr : &found->second;
}

std::string HostServices::State(const std::string& name) {
  const Service* service = Find(name);
  return service == nullptr ? "" : service->state;
}

bool HostServices::Start(const std::string& name) {
  log_.push_back("start " + name);
  Service* service = Find(name);
  if (service == nullptr || service->refuses || service->state != kStopped) return false;
  service->state = kRunning;
  return true;
}

bool HostServices::Control(const std::string& name, int code) {
  log_.push_back("control " + std::to_string(code) + " " + name);
  Service* service = Find(name);
  if (service == nullptr || service->refuses || service->state == kStopped) return false;
  switch (code) {
    case 1:
      service->state = kStopped;
      return true;
    case 2:
      service->state = kPaused;
      return true;
    case 3:
      service->state = kRunning;
      return true;
    default:
      return false;
  }
}

void HostServices::SetState(const std::string& name, const std::string& state) {
  services_[FoldCase(name)].state = state;
}

void HostServices::Refuse(const std::string& name) { services_[FoldCase(name)].refuses = true; }

}  // namespace quorvale::host
