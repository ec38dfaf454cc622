// Included ahead of GoogleTest's own sources when they are built for Windows without threads. Its
// death tests need a handle that closes itself, which it has in the threaded build only.
#pragma once

#include <windows.h>

namespace testing {
namespace internal {

class AutoHandle {
 public:
  typedef void* Handle;
  AutoHandle() : handle_(INVALID_HANDLE_VALUE) {}
  explicit AutoHandle(Handle handle) : handle_(handle) {}
  ~AutoHandle() { Reset(); }
  AutoHandle(const AutoHandle&) = delete;
  AutoHandle& operator=(const AutoHandle&) = delete;

  Handle Get() const { return handle_; }
  void Reset(Handle handle = INVALID_HANDLE_VALUE) {
    if (handle_ != handle && handle_ != INVALID_HANDLE_VALUE && handle_ != nullptr) {
      CloseHandle(handle_);
    }
    handle_ = handle;
  }

 private:
  Handle handle_;
};

}  // namespace internal
}  // namespace testing
