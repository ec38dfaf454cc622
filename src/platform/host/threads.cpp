#include "platform/host/threads.h"

#include <sched.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

namespace quorvale::host {
namespace {

class HostLock : public Lock {
 public:
  void Take() override { mutex_.lock(); }
  void Release() override { mutex_.unlock(); }

 private:
  std::mutex mutex_;
};

class HostSignal : public Signal {
 public:
  void Raise() override {
    {
      const std::lock_guard<std::mutex> hold(mutex_);
      if (raised_) return;
      raised_ = true;
    }
    changed_.notify_one();
  }
  void Wait() override {
    std::unique_lock<std::mutex> hold(mutex_);
    changed_.wait(hold, [this] { return raised_; });
    raised_ = false;
  }
  void Wait(int milliseconds) override {
    std::unique_lock<std::mutex> hold(mutex_);
    changed_.wait_for(hold, std::chrono::milliseconds(milliseconds), [this] { return raised_; });
    raised_ = false;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool raised_ = false;
};

class HostThread : public Thread {
 public:
  explicit HostThread(std::function<void()> body) : thread_(std::move(body)) {}
  ~HostThread() override { thread_.join(); }

 private:
  std::thread thread_;
};

}  // namespace

int HostThreads::ProcessorCount() {
  cpu_set_t allowed;
  CPU_ZERO(&allowed);
  if (sched_getaffinity(0, sizeof allowed, &allowed) != 0) return 1;
  return CPU_COUNT(&allowed);
}

std::unique_ptr<Lock> HostThreads::NewLock() { return std::make_unique<HostLock>(); }

std::unique_ptr<Signal> HostThreads::NewSignal() { return std::make_unique<HostSignal>(); }

std::unique_ptr<Thread> HostThreads::Start(std::function<void()> body) {
  try {
    return std::make_unique<HostThread>(std::move(body));
  } catch (const std::system_error&) {
    return nullptr;
  }
}

}  // namespace quorvale::host
