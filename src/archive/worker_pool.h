// Worker threads of the archive component. Only its two implementations (host, Windows) know the
// threads of a system.
#pragma once

#include <atomic>
#include <functional>
#include <memory>

namespace quorvale::zip {

// One piece of work that was given to a pool.
struct Job {
  std::function<void(int worker)> work;
  std::atomic<bool> done{false};
};
using JobHandle = std::shared_ptr<Job>;

class WorkerPool {
 public:
  // Waits for the work that runs; work that has not begun is dropped.
  virtual ~WorkerPool() = default;

  // How many distinct worker numbers (from 0) the work is called with; at least 1.
  virtual int WorkerCount() const = 0;
  // Has `work` done by some worker, in the order of the calls. The work may not throw, and touches
  // only what its caller leaves alone until it is done. Without threads it is done at once.
  virtual JobHandle Start(std::function<void(int worker)> work) = 0;
  // Waits for a job, at most so long. True when it is done. Only the thread that starts jobs calls.
  virtual bool Wait(const JobHandle& job, int milliseconds) = 0;
};

// How many processors this process may use.
int ProcessorCount();
// A pool of so many threads, which start with the first job; 0: the work is done by the caller.
std::unique_ptr<WorkerPool> MakeWorkerPool(int threads);

}  // namespace quorvale::zip
