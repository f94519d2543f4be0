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

#include "FlashStation/Station.hpp"

namespace tarnwick::testing {

// Everything the station reports, in order, for assertions and for waiting on.
class Recorder : public station::StationReport {
public:
  struct Entry {
    std::string kind; // "started", "connected", "done", "failed", "stopped", "skipped", "notice"
    /// The board's port; for a notice, what kind of notice ("ready", "ended", …).
    std::string path;
    /// The board's name, the chip, why it failed or was left alone; a notice's text.
    std::string text;
    /// A notice's numbers.
    std::int64_t count = 0;
    std::int64_t failed = 0;
  };

  void notice(const station::StationNotice& notice) override {
    add({"notice", noticeName(notice.kind),
         notice.detail.empty() ? notice.text : notice.text + " " + notice.detail, notice.count,
         notice.failed});
  }
  void started(const station::StationBoard& board) override {
    add({"started", board.path, board.name});
  }
  void event(const station::StationBoard& board, const FlashEvent& event) override {
    if (auto* connected = std::get_if<FlashEvents::Connected>(&event))
      add({"connected", board.path, connected->chip});
  }
  void finished(const station::BoardOutcome& outcome) override {
    static const char* names[] = {"done", "failed", "stopped"};
    add({names[static_cast<int>(outcome.result)], outcome.board.path, outcome.message});
  }
  void skipped(const station::StationBoard& board, const std::string& reason) override {
    add({"skipped", board.path, reason});
  }
  std::optional<std::string> record(const station::BoardOutcome&) override {
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

  static std::string noticeName(station::StationNotice::Kind kind) {
    using Kind = station::StationNotice::Kind;
    switch (kind) {
    case Kind::ready: return "ready";
    case Kind::waitingForPort: return "waitingForPort";
    case Kind::unreachable: return "unreachable";
    case Kind::oneAtATime: return "oneAtATime";
    case Kind::finishing: return "finishing";
    case Kind::stopping: return "stopping";
    case Kind::limitReached: return "limitReached";
    case Kind::recordLost: return "recordLost";
    case Kind::ended: return "ended";
    }
    return {};
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
    text +=
        e.kind + " " + e.path + " " + e.text +
        (e.kind == "notice" ? " " + std::to_string(e.count) + "/" + std::to_string(e.failed) : "") +
        "\n";
  return text;
}

} // namespace tarnwick::testing
