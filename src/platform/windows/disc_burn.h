// One disc being written by the system's objects, on a thread of its own: the system's call returns
// only when the disc is done.
#pragma once

#include <atomic>
#include <string>

#include "platform/windows/disc_writer.h"

namespace quorvale::windows {

enum class BurnStage { kPreparing, kFileAdded, kWriting };

// What the thread and its caller tell one another.
struct BurnJob {
  ObjectMaker make;
  std::wstring recorder, path, name;
  std::atomic<BurnStage> stage{BurnStage::kPreparing};
  std::atomic<unsigned> done{0}, total{0};  // blocks
  std::atomic<bool> cancel{false};
  std::atomic<bool> written{false};
};

// The recorder with an identifier; null if it does not answer.
Dispatch OpenRecorder(const ObjectMaker& make, const std::wstring& id);

// Writes the disc; to be called on the thread. The result is job.written.
void BurnDisc(BurnJob& job);

}  // namespace quorvale::windows
