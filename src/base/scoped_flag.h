// A flag that is up for the life of a block.
#pragma once

namespace quorvale {

// While a page sets its own controls, their handlers look at such a flag and do nothing. Blocks may
// stand in one another.
class ScopedFlag {
 public:
  explicit ScopedFlag(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
  ~ScopedFlag() { flag_ = before_; }
  ScopedFlag(const ScopedFlag&) = delete;
  ScopedFlag& operator=(const ScopedFlag&) = delete;

 private:
  bool& flag_;
  const bool before_;
};

}  // namespace quorvale
