// The running system's threads.
#pragma once

#include "platform/threads.h"

namespace quorvale::windows {

class WindowsThreads : public Threads {
 public:
  int ProcessorCount() override;
  std::unique_ptr<Lock> NewLock() override;
  std::unique_ptr<Signal> NewSignal() override;
  std::unique_ptr<Thread> Start(std::function<void()> body) override;
};

}  // namespace quorvale::windows
