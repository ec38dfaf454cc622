#include "archive/worker_pool.h"

#include <sched.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace quorvale::zip {
namespace {

class ThreadPool : public WorkerPool {
 public:
  explicit ThreadPool(int threads) : thread_count_(threads) {}

  ~ThreadPool() override {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      stopping_ = true;
    }
    wake_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }

  int WorkerCount() const override { return thread_count_ > 0 ? thread_count_ : 1; }

  JobHandle Start(std::function<void(int)> work) override {
    auto job = std::make_shared<Job>();
    job->work = std::move(work);
    if (thread_count_ == 0) {
      Run(*job, 0);
      return job;
    }
    {
      std::lock_guard<std::mutex> lock(mutex_);
      queue_.push_back(job);
    }
    if (threads_.empty()) {
      for (int i = 0; i < thread_count_; ++i) threads_.emplace_back([this, i] { Work(i); });
    }
    wake_.notify_one();
    return job;
  }

  bool Wait(const JobHandle& job, int milliseconds) override {
    if (job->done.load(std::memory_order_acquire)) return true;
    std::unique_lock<std::mutex> lock(mutex_);
    return finished_.wait_for(lock, std::chrono::milliseconds(milliseconds),
                              [&] { return job->done.load(std::memory_order_acquire); });
  }

 private:
  static void Run(Job& job, int worker) {
    job.work(worker);
    job.work = nullptr;  // what the work holds is released by the thread that did it
    job.done.store(true, std::memory_order_release);
  }

  void Work(int worker) {
    for (;;) {
      JobHandle job;
      {
        std::unique_lock<std::mutex> lock(mutex_);
        wake_.wait(lock, [this] { return stopping_ || !queue_.empty(); });
        if (stopping_) return;
        job = std::move(queue_.front());
        queue_.pop_front();
      }
      Run(*job, worker);
      // The empty section keeps the notice from falling between the waiter's look and its wait.
      { std::lock_guard<std::mutex> lock(mutex_); }
      finished_.notify_all();
    }
  }

  const int thread_count_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::condition_variable finished_;
  std::deque<JobHandle> queue_;
  bool stopping_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace

int ProcessorCount() {
  cpu_set_t allowed;
  CPU_ZERO(&allowed);
  if (sched_getaffinity(0, sizeof allowed, &allowed) != 0) return 1;
  return CPU_COUNT(&allowed);
}

std::unique_ptr<WorkerPool> MakeWorkerPool(int threads) {
  return std::make_unique<ThreadPool>(threads);
}

}  // namespace quorvale::zip
