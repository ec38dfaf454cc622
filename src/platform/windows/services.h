// The services of the running system.
#pragma once

#include "platform/services.h"

namespace quorvale::windows {

class WindowsServices : public Services {
 public:
  std::string State(const std::string& name) override;
  bool Start(const std::string& name) override;
  bool Control(const std::string& name, int code) override;
};

}  // namespace quorvale::windows
