#pragma once
// What the flashing station prints: lines for people with a live status line on a terminal, or
// one JSON object per event for scripts. Either also keeps the record file.

#include <atomic>
#include <chrono>
#include <cstdio>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "FlashStation/Station.hpp"
#include "FlashStation/StationRecord.hpp"

namespace tarnwick::cli {

using station::BoardOutcome;
using station::StationBoard;
using station::StationNotice;
using station::StationRecord;

/// The live line of the console within `columns`: the counts, then `boards` (device name and
/// percentage, in the order given) under ever shorter names until the line fits.
std::string statusLine(const std::vector<std::pair<std::string, int>>& boards, std::int64_t flashed,
                       std::int64_t failed, std::size_t columns);

/// What a notice of the station says on the command line: one line, or two at the end when the
/// record was lost.
std::vector<std::string> noticeLines(const station::StationNotice& notice,
                                     const std::string& productName);

/// The station's output; both forms also keep the record when there is one.
class StationOutput : public station::StationReport {
public:
  /// `errors` takes the notices of the JSON form and the record's failures.
  StationOutput(std::FILE* out, std::FILE* errors, std::unique_ptr<StationRecord> record,
                std::string productName = {});
  void notice(const StationNotice& notice) override;
  void event(const StationBoard& board, const FlashEvent& event) override;
  void finished(const BoardOutcome& outcome) override;
  virtual void connected(const StationBoard& board, const std::string& chip,
                         const std::optional<std::string>& mac) = 0;
  virtual void progress(const StationBoard& board, std::int64_t done, std::int64_t total) = 0;
  std::optional<std::string> record(const BoardOutcome& outcome) override;
  bool outputLost() override;
  /// The station has ended: nothing more is drawn.
  virtual void end() {}

protected:
  /// A line about the station itself.
  virtual void say(const std::string& text) = 0;
  virtual void show(const BoardOutcome& outcome) = 0;
  /// Writes to `out` unless its reader has gone; notices when it goes. Call with `mutex_` held.
  void put(const std::string& text);
  std::FILE* out_;
  std::FILE* errors_;
  std::mutex mutex_;

private:
  std::unique_ptr<StationRecord> record_;
  std::string productName_;
  std::atomic<bool> lost_ = false;
};

/// Lines for people: each prefixed by the board's name; on a terminal a status line under them
/// with the boards in progress and the counts.
class StationConsole : public StationOutput {
public:
  StationConsole(std::FILE* out, bool interactive, std::unique_ptr<StationRecord> record = {},
                 std::string productName = {});
  void started(const StationBoard& board) override;
  void connected(const StationBoard& board, const std::string& chip,
                 const std::optional<std::string>& mac) override;
  void progress(const StationBoard& board, std::int64_t done, std::int64_t total) override;
  void skipped(const StationBoard& board, const std::string& reason) override;
  /// Takes the status line off the screen.
  void end() override;

protected:
  void say(const std::string& text) override;
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
  StationJSON(std::FILE* out, std::FILE* errors, std::unique_ptr<StationRecord> record = {},
              std::string productName = {});
  void started(const StationBoard& board) override;
  void connected(const StationBoard& board, const std::string& chip,
                 const std::optional<std::string>& mac) override;
  void progress(const StationBoard& board, std::int64_t done, std::int64_t total) override;
  void skipped(const StationBoard& board, const std::string& reason) override;

protected:
  void say(const std::string& text) override;
  void show(const BoardOutcome& outcome) override;

private:
  std::map<std::string, int> percent_;
};

} // namespace tarnwick::cli
