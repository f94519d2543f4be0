#pragma once
// What a flash job shares with the loader it drives: cancellation and the event callback.

#include <functional>
#include <mutex>

#include "FlashEngine/FlashEvent.hpp"

namespace tarnwick {

class JobContext {
public:
  using EventHandler = std::function<void(const FlashEvent&)>;

  /// Longest single sleep of a cancellable wait, in seconds.
  static constexpr double waitSliceSeconds = 0.02;

  explicit JobContext(EventHandler onEvent) : onEvent_(std::move(onEvent)) {}
  JobContext(const JobContext&) = delete;
  JobContext& operator=(const JobContext&) = delete;

  /// Asks the run to stop; returns at once. Any thread.
  void cancel();
  bool isCancelled() const;
  /// Hands the event to the callback on the calling thread, without taking the lock.
  void emit(const FlashEvent& event) const;
  /// Sleeps `seconds`, checking for cancellation at least every 0.02 s.
  /// Throws FlashError::cancelled, also before sleeping when already cancelled.
  void wait(double seconds) const;
  /// Throws FlashError::cancelled when the run was asked to stop.
  void checkCancelled() const;

private:
  mutable std::mutex lock_;
  bool cancelled_ = false;
  EventHandler onEvent_;
};

} // namespace tarnwick
