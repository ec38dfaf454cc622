#include "platform/workers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

#include "support/system_threads.h"

namespace quorvale {
namespace {

bool IsDone(Workers& workers, const JobHandle& job) {
  constexpr int kMostEarlyEnds = 100'000;
  for (int i = 0; i < kMostEarlyEnds; ++i) {
    if (workers.Wait(job, 10'000)) return true;
  }
  return false;
}

// A system that has used up its threads, but for the first few.
class FewThreads : public SystemThreads {
 public:
  explicit FewThreads(int count) : left_(count) {}
  std::unique_ptr<Thread> Start(std::function<void()> body) override {
    return left_-- > 0 ? SystemThreads::Start(std::move(body)) : nullptr;
  }

 private:
  int left_;
};

TEST(Workers, EveryJobIsDoneOnceByAWorkerOfThePool) {
  for (const int threads : {0, 1, 2, 7}) {
    std::atomic<int> done{0};
    std::atomic<bool> number_wrong{false};
    SystemThreads system;
    Workers workers(system, threads);
    EXPECT_EQ(workers.Count(), threads == 0 ? 1 : threads);
    std::vector<JobHandle> jobs;
    for (int i = 0; i < 500; ++i) {
      jobs.push_back(workers.Start([&](int worker) {
        if (worker < 0 || worker >= workers.Count()) number_wrong = true;
        ++done;
      }));
    }
    for (const JobHandle& job : jobs) EXPECT_TRUE(IsDone(workers, job));
    EXPECT_EQ(done, 500) << threads;
    EXPECT_FALSE(number_wrong);
  }
}

TEST(Workers, WorkWithoutThreadsIsDoneAtOnce) {
  SystemThreads system;
  Workers workers(system, 0);
  bool done = false;
  const JobHandle job = workers.Start([&](int) { done = true; });
  EXPECT_TRUE(done);
  EXPECT_TRUE(workers.Wait(job, 0));
}

TEST(Workers, TheWorkIsDoneEvenIfTheSystemGivesFewerThreadsThanAskedFor) {
  for (const int given : {0, 1}) {
    FewThreads system(given);
    Workers workers(system, 3);
    std::atomic<int> done{0};
    std::vector<JobHandle> jobs;
    for (int i = 0; i < 20; ++i) jobs.push_back(workers.Start([&](int) { ++done; }));
    for (const JobHandle& job : jobs) EXPECT_TRUE(IsDone(workers, job));
    EXPECT_EQ(done, 20) << given;
  }
}

TEST(Workers, AWaitEndsWhenItsTimeIsOver) {
  SystemThreads system;
  Workers workers(system, 1);
  std::atomic<bool> go{false};
  const JobHandle job = workers.Start([&](int) {
    while (!go) {
    }
  });
  EXPECT_FALSE(workers.Wait(job, 5));
  go = true;
  EXPECT_TRUE(workers.Wait(job, 60'000));
}

TEST(Workers, ThePoolEndsWithWorkStillInTheQueue) {
  std::atomic<int> done{0};
  {
    SystemThreads system;
    Workers workers(system, 2);
    for (int i = 0; i < 10'000; ++i) workers.Start([&](int) { ++done; });
  }
  EXPECT_LE(done, 10'000);
}

TEST(Workers, ThereIsAProcessor) { EXPECT_GE(SystemThreads().ProcessorCount(), 1); }

}  // namespace
}  // namespace quorvale
