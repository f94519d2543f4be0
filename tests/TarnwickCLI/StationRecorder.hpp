#pragma once
// A station report that keeps every event, for tests to assert on and to wait for.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "TarnwickCLI/Station.hpp"

namespace tarnwick::testing {

// Everything the station reports, in order, for assertions and for waiting on.
class Recorder : public cli::StationReport {
public:
  struct Entry {
    std::string kind; // "started", "connected", "done", "failed", "stopped", "skipped", "notice"
    std::string path;
    std::string text;
  };

  void notice(const std::string& text) override { add({"notice", "", text}); }
  void started(const cli::StationBoard& board) override { add({"started", board.path, board.name}); }
  void connected(const cli::StationBoard& board, const std::string& chip,
                 const std::optional<std::string>&) override {
    add({"connected", board.path, chip});
  }
  void progress(const cli::StationBoard&, std::int64_t, std::int64_t) override {}
  void finished(const cli::BoardOutcome& outcome) override {
    static const char* names[] = {"done", "failed", "stopped"};
    add({names[static_cast<int>(outcome.result)], outcome.board.path, outcome.message});
  }
  void skipped(const cli::StationBoard& board, const std::string& reason) override {
    add({"skipped", board.path, reason});
  }
  std::optional<std::string> record(const cli::BoardOutcome&) override {
    ++recorded;
    if (recordFails) return "The record file is full.";
    return std::nullopt;
  }
  bool outputLost() override { return outputGone; }

  /// How many finished boards were handed to the record.
  std::atomic<int> recorded = 0;
  /// From now on no record line can be written, or nobody reads the output.
  std::atomic<bool> recordFails = false;
  std::atomic<bool> outputGone = false;

  /// Waits until `count` entries of `kind` (for `path`, unless empty) were reported.
  bool waitFor(const std::string& kind, const std::string& path = {}, int count = 1,
               std::chrono::milliseconds timeout = std::chrono::seconds(20)) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, timeout, [&] { return countLocked(kind, path) >= count; });
  }
  int count(const std::string& kind, const std::string& path = {}) {
    std::lock_guard lock(mutex_);
    return countLocked(kind, path);
  }
  /// Position of the `n`-th entry of `kind` for `path`; -1 when there is none.
  int indexOf(const std::string& kind, const std::string& path, int n = 1) {
    std::lock_guard lock(mutex_);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      if (entries_[i].kind == kind && entries_[i].path == path && --n == 0)
        return static_cast<int>(i);
    }
    return -1;
  }
  std::vector<Entry> entries() {
    std::lock_guard lock(mutex_);
    return entries_;
  }

private:
  void add(Entry entry) {
    std::lock_guard lock(mutex_);
    entries_.push_back(std::move(entry));
    changed_.notify_all();
  }
  int countLocked(const std::string& kind, const std::string& path) const {
    return static_cast<int>(std::ranges::count_if(entries_, [&](const Entry& e) {
      return e.kind == kind && (path.empty() || e.path == path);
    }));
  }
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Entry> entries_;
};

/// Every entry on a line of its own, for failure messages.
inline std::string describe(Recorder& recorder) {
  std::string text;
  for (const auto& e : recorder.entries())
    text += e.kind + " " + e.path + " " + e.text + "\n";
  return text;
}

} // namespace tarnwick::testing
