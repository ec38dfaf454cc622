// Threads, and the two things that they meet at. A binding has the classes of its system; what
// stands above uses them through Workers (platform/workers.h).
#pragma once

#include <functional>
#include <memory>

namespace quorvale {

// Held by one thread at a time. The one that holds it may not take it again.
class Lock {
 public:
  virtual ~Lock() = default;
  virtual void Take() = 0;
  virtual void Release() = 0;
};

// Is raised, and wakes one of those who wait for it; the waking puts it down again. Raised while
// nobody waits it stays so, and raising it twice is the same as once.
class Signal {
 public:
  virtual ~Signal() = default;
  virtual void Raise() = 0;
  virtual void Wait() = 0;
  // At most so long. Tells nothing of how the waiting ended.
  virtual void Wait(int milliseconds) = 0;
};

// A thread that was started. Its destruction waits for its end.
class Thread {
 public:
  virtual ~Thread() = default;
};

class Threads {
 public:
  virtual ~Threads() = default;

  // How many processors this process may use; at least 1.
  virtual int ProcessorCount() = 0;
  virtual std::unique_ptr<Lock> NewLock() = 0;
  virtual std::unique_ptr<Signal> NewSignal() = 0;
  // Runs `body`, which may not throw, on a thread of its own. Null if the system gives none.
  virtual std::unique_ptr<Thread> Start(std::function<void()> body) = 0;
};

}  // namespace quorvale
