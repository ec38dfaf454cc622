#include "archive/worker_pool.h"

#include <process.h>
#include <windows.h>

#include <deque>
#include <vector>

namespace quorvale::zip {
namespace {

// Uses only calls that every 32-bit Windows has: critical sections, semaphores and events.
class ThreadPool : public WorkerPool {
 public:
  explicit ThreadPool(int threads) : thread_count_(threads) {
    InitializeCriticalSection(&lock_);
    waiting_ = CreateSemaphoreA(nullptr, 0, 0x7FFFFFFF, nullptr);
    finished_ = CreateEventA(nullptr, FALSE, FALSE, nullptr);
  }

  ~ThreadPool() override {
    EnterCriticalSection(&lock_);
    stopping_ = true;
    LeaveCriticalSection(&lock_);
    ReleaseSemaphore(waiting_, thread_count_ + 1, nullptr);
    for (Thread& thread : threads_) {
      WaitForSingleObject(thread.handle, INFINITE);
      CloseHandle(thread.handle);
    }
    CloseHandle(finished_);
    CloseHandle(waiting_);
    DeleteCriticalSection(&lock_);
  }

  int WorkerCount() const override { return thread_count_ > 0 ? thread_count_ : 1; }

  JobHandle Start(std::function<void(int)> work) override {
    auto job = std::make_shared<Job>();
    job->work = std::move(work);
    if (threads_.empty()) StartThreads();
    if (threads_.empty()) {  // none asked for, or the system gives none
      Run(*job, 0);
      return job;
    }
    EnterCriticalSection(&lock_);
    queue_.push_back(job);
    LeaveCriticalSection(&lock_);
    ReleaseSemaphore(waiting_, 1, nullptr);
    return job;
  }

  bool Wait(const JobHandle& job, int milliseconds) override {
    const DWORD start = GetTickCount();
    while (!job->done.load(std::memory_order_acquire)) {
      const DWORD passed = GetTickCount() - start;
      if (passed >= static_cast<DWORD>(milliseconds)) return false;
      WaitForSingleObject(finished_, static_cast<DWORD>(milliseconds) - passed);
    }
    return true;
  }

 private:
  struct Thread {
    ThreadPool* pool = nullptr;
    int worker = 0;
    HANDLE handle = nullptr;
  };

  void StartThreads() {
    threads_.resize(static_cast<std::size_t>(thread_count_));  // the addresses stay from here on
    std::size_t made = 0;
    for (; made < threads_.size(); ++made) {
      Thread& thread = threads_[made];
      thread.pool = this;
      thread.worker = static_cast<int>(made);
      thread.handle =
          reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, &Entry, &thread, 0, nullptr));
      if (thread.handle == nullptr) break;
    }
    threads_.resize(made);
  }

#if defined(__i386__)
  // The system aligns a thread's stack to 4 bytes, compiled code expects 16.
  __attribute__((force_align_arg_pointer))
#endif
  static unsigned __stdcall Entry(void* argument) {
    Thread* thread = static_cast<Thread*>(argument);
    thread->pool->Work(thread->worker);
    return 0;
  }

  static void Run(Job& job, int worker) {
    job.work(worker);
    job.work = nullptr;  // what the work holds is released by the thread that did it
    job.done.store(true, std::memory_order_release);
  }

  void Work(int worker) {
    for (;;) {
      WaitForSingleObject(waiting_, INFINITE);
      JobHandle job;
      EnterCriticalSection(&lock_);
      const bool stop = stopping_;
      if (!stop && !queue_.empty()) {
        job = std::move(queue_.front());
        queue_.pop_front();
      }
      LeaveCriticalSection(&lock_);
      if (stop) return;
      if (job == nullptr) continue;
      Run(*job, worker);
      SetEvent(finished_);
    }
  }

  const int thread_count_;
  CRITICAL_SECTION lock_;
  HANDLE waiting_ = nullptr;
  HANDLE finished_ = nullptr;
  std::deque<JobHandle> queue_;
  bool stopping_ = false;
  std::vector<Thread> threads_;
};

}  // namespace

int ProcessorCount() {
  SYSTEM_INFO info = {};
  GetSystemInfo(&info);
  return info.dwNumberOfProcessors > 0 ? static_cast<int>(info.dwNumberOfProcessors) : 1;
}

std::unique_ptr<WorkerPool> MakeWorkerPool(int threads) {
  return std::make_unique<ThreadPool>(threads);
}

}  // namespace quorvale::zip
