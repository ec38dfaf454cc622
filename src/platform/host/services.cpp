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

std::string* HostServices::Find(const std::string& name) {
  const auto found = states_.find(FoldCase(name));
  return found == states_.end() ? nullptr : &found->second;
}

std::string HostServices::State(const std::string& name) {
  const std::string* state = Find(name);
  return state == nullptr ? "" : *state;
}

bool HostServices::Start(const std::string& name) {
  log_.push_back("start " + name);
  std::string* state = Find(name);
  if (state == nullptr || *state != kStopped) return false;
  *state = kRunning;
  return true;
}

bool HostServices::Control(const std::string& name, int code) {
  log_.push_back("control " + std::to_string(code) + " " + name);
  std::string* state = Find(name);
  if (state == nullptr || *state == kStopped) return false;
  switch (code) {
    case 1:
      *state = kStopped;
      return true;
    case 2:
      *state = kPaused;
      return true;
    case 3:
      *state = kRunning;
      return true;
    default:
      return false;
  }
}

void HostServices::SetState(const std::string& name, const std::string& state) {
  states_[FoldCase(name)] = state;
}

}  // namespace quorvale::host
