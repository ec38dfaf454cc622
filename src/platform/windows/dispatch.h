// Automation: objects of the system that are reached by the names of their methods, and the values
// that such calls take and give.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/windows/windows_headers.h"

namespace quorvale::windows {

// A value that is cleared when it goes.
class Variant {
 public:
  Variant() { VariantInit(&value_); }
  explicit Variant(const std::wstring& text);
  explicit Variant(int number);
  explicit Variant(bool truth);
  // Each takes a reference of its own.
  explicit Variant(IDispatch* object);
  explicit Variant(IUnknown* object);
  // An argument that is left out.
  static Variant LeftOut();
  Variant(Variant&& other) noexcept;
  Variant& operator=(Variant&& other) noexcept;
  ~Variant() { VariantClear(&value_); }

  VARIANT* get() { return &value_; }
  VARTYPE kind() const { return value_.vt; }
  // The value as another kind; empty (VT_EMPTY) where it cannot be that.
  Variant As(VARTYPE kind) const;
  // 0, "" or null where the value is of another kind.
  double Number() const;
  bool Truth() const;
  std::wstring Text() const;
  IUnknown* Object() const;  // not counted

 private:
  VARIANT value_;
};

// The arguments of a call, in its order.
template <class... Each>
std::vector<Variant> Arguments(Each... each) {
  std::vector<Variant> arguments;
  (arguments.push_back(std::move(each)), ...);
  return arguments;
}

// Makes one of the system's objects by its registered name, such as "Wscript.Shell". The caller
// releases it. Null if it cannot be had.
IDispatch* MakeSystemObject(const std::string& name);

// An automation object; null where it could not be had. Calls on a null one fail.
class Dispatch {
 public:
  Dispatch() = default;
  // Takes the reference over.
  explicit Dispatch(IDispatch* object) : object_(object) {}
  // The automation side of an object; takes a reference of its own.
  static Dispatch Of(IUnknown* object);
  // By the text that names it to the system, such as "winmgmts:\\.\root\cimv2".
  static Dispatch FromMoniker(const std::string& moniker);
  Dispatch(Dispatch&& other) noexcept;
  Dispatch& operator=(Dispatch&& other) noexcept;
  ~Dispatch();

  explicit operator bool() const { return object_ != nullptr; }
  IDispatch* get() const { return object_; }

  // Each is false if the object refuses; `reason` then gets its own words, or the name of the call
  // and the number of the failure.
  bool Get(const std::string& property, Variant* value, std::string* reason = nullptr);
  bool Put(const std::string& property, Variant value, std::string* reason = nullptr);
  bool Call(const std::string& method, std::vector<Variant> arguments, Variant* result = nullptr,
            std::string* reason = nullptr);
  // Each member of a collection in turn, until `visit` answers false.
  bool ForEach(const std::function<bool(Variant&)>& visit, std::string* reason = nullptr);

  // The text of a property; nothing if there is none.
  std::optional<std::string> Text(const std::string& property);
  // An object that a property gives.
  Dispatch GetObject(const std::string& property);

 private:
  bool Invoke(const std::string& name, WORD kind, std::vector<Variant>& arguments, Variant* result,
              std::string* reason);
  bool InvokeById(DISPID id, const std::string& name, WORD kind, std::vector<Variant>& arguments,
                  Variant* result, std::string* reason);

  IDispatch* object_ = nullptr;
};

}  // namespace quorvale::windows
