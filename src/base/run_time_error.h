// An error as the program raises it and as a report tells it.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace quorvale {

struct RunTimeError {
  std::int32_t number = 0;  // 0: no error
  std::string source;       // who raised it
  std::string description;
  std::string help_file;
  std::int32_t help_context = 0;
  std::int32_t last_dll_error = 0;  // of the system call that failed, 0 for none
  std::int32_t line = 0;            // number of the failing line, 0 if it is not known
};

// The numbers that a program gives its own errors count from here.
inline constexpr std::int32_t kFirstObjectError = static_cast<std::int32_t>(0x80040000);

// A RunTimeError on its way to the caller.
class RaisedError : public std::exception {
 public:
  explicit RaisedError(RunTimeError raised) : error(std::move(raised)) {}
  const char* what() const noexcept override { return error.description.c_str(); }

  RunTimeError error;
};

}  // namespace quorvale
