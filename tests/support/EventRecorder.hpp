#pragma once
// Collects the events of a run from whichever thread emits them, for assertions afterwards.

#include <algorithm>
#include <iterator>
#include <variant>
#include <mutex>
#include <string>
#include <vector>

#include "FlashEngine/FlashEvent.hpp"

namespace tarnwick::testing {

struct EventRecorder {
  std::mutex mutex;
  std::vector<FlashEvent> events;

  void operator()(const FlashEvent& event) {
    std::lock_guard lock(mutex);
    events.push_back(event);
  }

  template <typename T> int count() {
    std::lock_guard lock(mutex);
    return static_cast<int>(std::count_if(events.begin(), events.end(), [](const auto& e) {
      return std::holds_alternative<T>(e);
    }));
  }

  /// The events other than progress, by name ("connecting", "writing", …).
  std::vector<std::string> kinds() {
    static const char* names[] = {"connecting", "connected", "baudRate",  "portChanged",
                                  "writing",    "progress",  "written",   "verifying",
                                  "verified",   "resetting", "linesUnconfirmed"};
    static_assert(std::size(names) == std::variant_size_v<FlashEvent>);
    std::lock_guard lock(mutex);
    std::vector<std::string> out;
    for (const auto& e : events) {
      if (!std::holds_alternative<FlashEvents::Progress>(e)) out.push_back(names[e.index()]);
    }
    return out;
  }

  /// The `done` values of the progress events.
  std::vector<std::int64_t> progress() {
    std::lock_guard lock(mutex);
    std::vector<std::int64_t> out;
    for (const auto& e : events) {
      if (auto* p = std::get_if<FlashEvents::Progress>(&e)) out.push_back(p->done);
    }
    return out;
  }
};

/// The error of type `Error` that `f` throws, if any.
template <typename Error, typename F> std::optional<Error> errorOf(F&& f) {
  try {
    f();
  } catch (const Error& error) {
    return error;
  }
  return std::nullopt;
}

} // namespace tarnwick::testing
