// The services that a machine folder tells of.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/host/machine_folder.h"
#include "platform/services.h"

namespace quorvale::host {

class HostServices : public Services {
 public:
  explicit HostServices(const std::vector<MachineService>& services);

  std::string State(const std::string& name) override;
  bool Start(const std::string& name) override;
  bool Control(const std::string& name, int code) override;

  // Makes or changes a service. State words: "Running", "Stopped", "Paused".
  void SetState(const std::string& name, const std::string& state);
  // What services were told, in order: "start NAME", "control 1 NAME".
  const std::vector<std::string>& log() const { return log_; }

 private:
  // Null if there is no such service.
  std::string* Find(const std::string& name);

  std::map<std::string, std::string> states_;  // by folded name
  std::vector<std::string> log_;
};

}  // namespace quorvale::host
