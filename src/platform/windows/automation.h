// Objects that are reached by automation: late-bound calls by the names of methods.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/windows/windows_headers.h"

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

// An automation object; empty where it could not be had. Calls on an empty one do nothing.
class Automation {
 public:
  Automation() = default;
  // By the text that names it to the system, such as "winmgmts:\\.\root\cimv2".
  static Automation FromMoniker(const std::string& moniker);
  Automation(Automation&& other) noexcept;
  Automation& operator=(Automation&& other) noexcept;
  ~Automation();

  explicit operator bool() const { return object_ != nullptr; }
  // The object that a method with one text and two numbers gives (a query and its flags).
  Automation CallWithTextAndNumber(const std::string& method, const std::string& text,
                                   const std::string& language, int flags);
  // The text of a property; nothing if there is none.
  std::optional<std::string> Text(const std::string& property);
  // Each member of a collection in turn, until `visit` answers false.
  void ForEach(const std::function<bool(Automation&)>& visit);

 private:
  explicit Automation(IDispatch* object) : object_(object) {}
  bool Invoke(const std::string& name, WORD kind, VARIANT* arguments, UINT count, VARIANT* result);

  IDispatch* object_ = nullptr;
};

// The rows of a question to the system's management service, until `visit` answers false.
void QueryManagement(const std::string& query, const std::function<bool(Automation&)>& visit);

}  // namespace quorvale::windows
