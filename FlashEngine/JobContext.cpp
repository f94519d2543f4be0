#include "FlashEngine/JobContext.hpp"

#include <algorithm>
#include <chrono>
#include <thread>

namespace tarnwick {

void JobContext::cancel() {
  std::lock_guard guard(lock_);
  cancelled_ = true;
}

bool JobContext::isCancelled() const {
  std::lock_guard guard(lock_);
  return cancelled_;
}

void JobContext::emit(const FlashEvent& event) const {
  if (onEvent_) onEvent_(event);
}

void JobContext::checkCancelled() const {
  if (isCancelled()) throw FlashError::cancelled();
}

void JobContext::wait(double seconds) const {
  using Clock = std::chrono::steady_clock;
  auto deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                     std::chrono::duration<double>(std::max(seconds, 0.0)));
  checkCancelled();
  while (Clock::now() < deadline) {
    checkCancelled();
    auto slice = std::min<Clock::duration>(deadline - Clock::now(),
                                           std::chrono::duration_cast<Clock::duration>(
                                               std::chrono::duration<double>(waitSliceSeconds)));
    std::this_thread::sleep_for(slice);
  }
}

} // namespace tarnwick
