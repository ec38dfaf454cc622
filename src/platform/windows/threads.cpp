#include "platform/windows/threads.h"

#include <process.h>

#include "platform/windows/windows_headers.h"

// Uses only calls that every 32-bit Windows has: critical sections, events and threads.
namespace quorvale::windows {
namespace {

class WindowsLock : public Lock {
 public:
  WindowsLock() { InitializeCriticalSection(&section_); }
  ~WindowsLock() override { DeleteCriticalSection(&section_); }
  void Take() override { EnterCriticalSection(&section_); }
  void Release() override { LeaveCriticalSection(&section_); }

 private:
  CRITICAL_SECTION section_;
};

class WindowsSignal : public Signal {
 public:
  ~WindowsSignal() override { CloseHandle(event_); }
  void Raise() override { SetEvent(event_); }
  void Wait() override { WaitForSingleObject(event_, INFINITE); }
  void Wait(int milliseconds) override {
    WaitForSingleObject(event_, static_cast<DWORD>(milliseconds));
  }

 private:
  const HANDLE event_ = CreateEventA(nullptr, FALSE, FALSE, nullptr);
};

class WindowsThread : public Thread {
 public:
  explicit WindowsThread(std::function<void()> body) : body_(std::move(body)) {
    handle_ = reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, &Entry, this, 0, nullptr));
  }
  ~WindowsThread() override {
    if (handle_ == nullptr) return;
    WaitForSingleObject(handle_, INFINITE);
    CloseHandle(handle_);
  }
  bool Started() const { return handle_ != nullptr; }

 private:
#if defined(__i386__)
  // The system aligns a thread's stack to 4 bytes, compiled code expects 16.
  __attribute__((force_align_arg_pointer))
#endif
  static unsigned __stdcall Entry(void* argument) {
    static_cast<WindowsThread*>(argument)->body_();
    return 0;
  }

  const std::function<void()> body_;
  HANDLE handle_ = nullptr;
};

}  // namespace

int WindowsThreads::ProcessorCount() {
  SYSTEM_INFO info = {};
  GetSystemInfo(&info);
  return info.dwNumberOfProcessors > 0 ? static_cast<int>(info.dwNumberOfProcessors) : 1;
}

std::unique_ptr<Lock> WindowsThreads::NewLock() { return std::make_unique<WindowsLock>(); }

std::unique_ptr<Signal> WindowsThreads::NewSignal() { return std::make_unique<WindowsSignal>(); }

std::unique_ptr<Thread> WindowsThreads::Start(std::function<void()> body) {
  auto thread = std::make_unique<WindowsThread>(std::move(body));
  if (!thread->Started()) return nullptr;
  return thread;
}

}  // namespace quorvale::windows
