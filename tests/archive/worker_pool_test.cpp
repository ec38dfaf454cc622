#include "archive/worker_pool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

namespace quorvale::zip_test {
namespace {

TEST(WorkerPool, EveryJobIsDoneOnceByAWorkerOfThePool) {
  for (const int threads : {0, 1, 2, 7}) {
    std::atomic<int> done{0};
    std::atomic<bool> number_wrong{false};
    const std::unique_ptr<zip::WorkerPool> pool = zip::MakeWorkerPool(threads);
    EXPECT_EQ(pool->WorkerCount(), threads == 0 ? 1 : threads);
    std::vector<zip::JobHandle> jobs;
    for (int i = 0; i < 500; ++i) {
      jobs.push_back(pool->Start([&](int worker) {
        if (worker < 0 || worker >= pool->WorkerCount()) number_wrong = true;
        ++done;
      }));
    }
    for (const zip::JobHandle& job : jobs) EXPECT_TRUE(pool->Wait(job, 60'000));
    EXPECT_EQ(done, 500) << threads;
    EXPECT_FALSE(number_wrong);
  }
}

TEST(WorkerPool, WorkWithoutThreadsIsDoneAtOnce) {
  const std::unique_ptr<zip::WorkerPool> pool = zip::MakeWorkerPool(0);
  bool done = false;
  const zip::JobHandle job = pool->Start([&](int) { done = true; });
  EXPECT_TRUE(done);
  EXPECT_TRUE(pool->Wait(job, 0));
}

TEST(WorkerPool, AWaitEndsWhenItsTimeIsOver) {
  const std::unique_ptr<zip::WorkerPool> pool = zip::MakeWorkerPool(1);
  std::atomic<bool> go{false};
  const zip::JobHandle job = pool->Start([&](int) {
    while (!go) {
    }
  });
  EXPECT_FALSE(pool->Wait(job, 5));
  go = true;
  EXPECT_TRUE(pool->Wait(job, 60'000));
}

TEST(WorkerPool, ThePoolEndsWithWorkStillInTheQueue) {
  std::atomic<int> done{0};
  {
    const std::unique_ptr<zip::WorkerPool> pool = zip::MakeWorkerPool(2);
    for (int i = 0; i < 10'000; ++i) pool->Start([&](int) { ++done; });
  }
  EXPECT_LE(done, 10'000);
}

TEST(WorkerPool, ThereIsAProcessor) { EXPECT_GE(zip::ProcessorCount(), 1); }

}  // namespace
}  // namespace quorvale::zip_test
