#include "platform/workers.h"

namespace quorvale {
namespace {

class Hold {
 public:
  explicit Hold(Lock& lock) : lock_(lock) { lock_.Take(); }
  ~Hold() { lock_.Release(); }
  Hold(const Hold&) = delete;
  Hold& operator=(const Hold&) = delete;

 private:
  Lock& lock_;
};

void Run(Job& job, int worker) {
  job.work(worker);
  job.work = nullptr;  // what the work holds is released by the thread that did it
  job.done.store(true, std::memory_order_release);
}

}  // namespace

Workers::Workers(Threads& threads, int count)
    : system_(threads),
      wanted_(count),
      lock_(threads.NewLock()),
      wake_(threads.NewSignal()),
      finished_(threads.NewSignal()) {}

Workers::~Workers() {
  {
    const Hold hold(*lock_);
    stopping_ = true;
  }
  wake_->Raise();
  threads_.clear();
}

void Workers::StartThreads() {
  for (int worker = 0; worker < wanted_; ++worker) {
    std::unique_ptr<Thread> thread = system_.Start([this, worker] { Work(worker); });
    if (thread == nullptr) return;
    threads_.push_back(std::move(thread));
  }
}

JobHandle Workers::Start(std::function<void(int)> work) {
  auto job = std::make_shared<Job>();
  job->work = std::move(work);
  if (threads_.empty()) StartThreads();
  if (threads_.empty()) {
    Run(*job, 0);
    return job;
  }
  {
    const Hold hold(*lock_);
    queue_.push_back(job);
  }
  wake_->Raise();
  return job;
}

bool Workers::Wait(const JobHandle& job, int milliseconds) {
  if (!job->done.load(std::memory_order_acquire)) finished_->Wait(milliseconds);
  return job->done.load(std::memory_order_acquire);
}

void Workers::WaitOut(const JobHandle& job) {
  constexpr int kStep = 1000;
  while (!Wait(job, kStep)) {
  }
}

JobHandle Workers::NextJob() {
  for (;;) {
    {
      const Hold hold(*lock_);
      // The signal wakes one thread: whoever leaves something to do wakes the next.
      if (stopping_ || queue_.size() > 1) wake_->Raise();
      if (stopping_) return nullptr;
      if (!queue_.empty()) {
        JobHandle job = std::move(queue_.front());
        queue_.pop_front();
        return job;
      }
    }
    wake_->Wait();
  }
}

void Workers::Work(int worker) {
  while (const JobHandle job = NextJob()) {
    Run(*job, worker);
    finished_->Raise();
  }
}

}  // namespace quorvale
