// The services of the computer.
#pragma once

#include <string>

namespace quorvale {

class Services {
 public:
  virtual ~Services() = default;
  // The state word of a service ("Running", "Stopped"), or "" if there is no such service or it
  // cannot be asked.
  virtual std::string State(const std::string& name) = 0;
  virtual bool Start(const std::string& name) = 0;
  // Sends a control code (1 stop, 2 pause, 3 continue). True if the service took it.
  virtual bool Control(const std::string& name, int code) = 0;
};

}  // namespace quorvale
