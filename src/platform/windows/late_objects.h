// Late-bound objects of the running system: automation by the names of methods.
#pragma once

#include "platform/late_bound.h"

namespace quorvale::windows {

class LateObjects : public LateBinding {
 public:
  LateObject Create(const std::string& name) override;
  // The context that a component service gave this thread; none on systems without such a service.
  LateObject ObjectContext() override;
};

}  // namespace quorvale::windows
