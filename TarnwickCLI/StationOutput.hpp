#pragma once
// What the flashing station prints: lines for people with a live status line on a terminal, or
// one JSON object per event for scripts; and the record file of finished boards.

#include <atomic>
#include <chrono>
#include <cstdio>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "TarnwickCLI/Station.hpp"

namespace tarnwick::cli {

/// "2026-11-23T10:15:42.123Z": a time in ISO 8601, UTC, to the millisecond.
std::string isoTime(std::chrono::system_clock::time_point time);

/// The live line of the console within `columns`: the counts, then `boards` (device name and
/// percentage, in the order given) under ever shorter names until the line fits.
std::string statusLine(const std::vector<std::pair<std::string, int>>& boards, std::int64_t flashed,
                       std::int64_t failed, std::size_t columns);

/// The record file: one JSON object per line and finished board, appended with one write(2) and
/// flushed to the disk, so a crash loses at most the line being written.
class StationRecord {
public:
  /// Opens `path` for appending, creating it. Throws std::system_error.
  StationRecord(std::string path, std::string productName, std::string productSHA256);
  ~StationRecord();
  StationRecord(const StationRecord&) = delete;
  StationRecord& operator=(const StationRecord&) = delete;

  /// Appends the line of `outcome`. Throws std::system_error.
  void append(const BoardOutcome& outcome);

  const std::string& path() const { return path_; }

private:
  std::string line(const BoardOutcome& outcome) const;

  std::string path_;
  std::string productName_;
  std::string productSHA256_;
  int fd_ = -1;
};

/// The station's output; both forms also keep the record when there is one.
class StationOutput : public StationReport {
public:
  /// `errors` takes the notices of the JSON form and the record's failures.
  StationOutput(std::FILE* out, std::FILE* errors, std::unique_ptr<StationRecord> record);
  void finished(const BoardOutcome& outcome) override;
  std::optional<std::string> record(const BoardOutcome& outcome) override;
  bool outputLost() override;
  /// The station has ended: nothing more is drawn.
  virtual void end() {}

protected:
  virtual void show(const BoardOutcome& outcome) = 0;
  /// Writes to `out` unless its reader has gone; notices when it goes. Call with `mutex_` held.
  void put(const std::string& text);
  std::FILE* out_;
  std::FILE* errors_;
  std::mutex mutex_;

private:
  std::unique_ptr<StationRecord> record_;
  std::atomic<bool> lost_ = false;
};

/// Lines for people: each prefixed by the board's name; on a terminal a status line under them
/// with the boards in progress and the counts.
class StationConsole : public StationOutput {
public:
  StationConsole(std::FILE* out, bool interactive, std::unique_ptr<StationRecord> record = {});
  void notice(const std::string& text) override;
  void started(const StationBoard& board) override;
  void connected(const StationBoard& board, const std::string& chip,
                 const std::optional<std::string>& mac) override;
  void progress(const StationBoard& board, std::int64_t done, std::int64_t total) override;
  void skipped(const StationBoard& board, const std::string& reason) override;
  /// Takes the status line off the screen.
  void end() override;

protected:
  void show(const BoardOutcome& outcome) override;

private:
  void lineLocked(const std::string& text);
  void drawStatusLocked(bool force);

  bool interactive_;
  bool statusShown_ = false;
  std::chrono::steady_clock::time_point lastDraw_{};
  /// Boards in progress by path: the short device name and the percentage done.
  std::map<std::string, std::pair<std::string, int>> inProgress_;
  std::int64_t flashed_ = 0;
  std::int64_t failed_ = 0;
};

/// One JSON object per line and event: started, connected, progress (each fifth percent that is
/// crossed), done, failed and skipped. Notices go to `errors` as text.
class StationJSON : public StationOutput {
public:
  StationJSON(std::FILE* out, std::FILE* errors, std::unique_ptr<StationRecord> record = {});
  void notice(const std::string& text) override;
  void started(const StationBoard& board) override;
  void connected(const StationBoard& board, const std::string& chip,
                 const std::optional<std::string>& mac) override;
  void progress(const StationBoard& board, std::int64_t done, std::int64_t total) override;
  void skipped(const StationBoard& board, const std::string& reason) override;

protected:
  void show(const BoardOutcome& outcome) override;

private:
  std::map<std::string, int> percent_;
};

} // namespace tarnwick::cli
