// Worker threads that do pieces of work side by side.
#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "platform/threads.h"

namespace quorvale {

// One piece of work that was given to workers.
struct Job {
  std::function<void(int worker)> work;
  std::atomic<bool> done{false};
};
using JobHandle = std::shared_ptr<Job>;

// All calls come from the one thread that made the object.
class Workers {
 public:
  // So many threads, which start with the first job. 0, and where the system gives no thread: the
  // work is done by the caller.
  Workers(Threads& threads, int count);
  // Waits for the work that runs; work that has not begun is dropped.
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  // How many distinct worker numbers (from 0) the work is called with; at least 1.
  int Count() const { return wanted_ > 0 ? wanted_ : 1; }
  // Has `work` done by some worker, in the order of the calls. The work may not throw, and touches
  // only what its caller leaves alone until it is done.
  JobHandle Start(std::function<void(int worker)> work);
  // Waits for a job, at most so long, and shorter when another job ends meanwhile. True when it is
  // done.
  bool Wait(const JobHandle& job, int milliseconds);
  // Waits for a job, however long.
  void WaitOut(const JobHandle& job);

 private:
  void StartThreads();
  // What a thread does: job after job, until the end.
  void Work(int worker);
  // The oldest job; null at the end.
  JobHandle NextJob();

  Threads& system_;
  const int wanted_;
  const std::unique_ptr<Lock> lock_;        // over queue_ and stopping_
  const std::unique_ptr<Signal> wake_;      // there is work, or it is the end
  const std::unique_ptr<Signal> finished_;  // some job is done
  std::deque<JobHandle> queue_;
  bool stopping_ = false;
  std::vector<std::unique_ptr<Thread>> threads_;
};

}  // namespace quorvale
