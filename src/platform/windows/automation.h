// The system's component library and its management service.
#pragma once

#include <functional>
#include <string>

#include "platform/windows/dispatch.h"

namespace quorvale::windows {

// Starts the component library for this thread and ends it.
class ComponentLibrary {
 public:
  ComponentLibrary();
  ~ComponentLibrary();
  ComponentLibrary(const ComponentLibrary&) = delete;
  ComponentLibrary& operator=(const ComponentLibrary&) = delete;

 private:
  bool started_ = false;
};

// The rows of a question to the system's management service, until `visit` answers false.
void QueryManagement(const std::string& query, const std::function<bool(Dispatch&)>& visit);

}  // namespace quorvale::windows
