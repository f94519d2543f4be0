#pragma once
// The record of a flashing station: one JSON object per line and finished board, and the JSON
// pieces the command line's events are made of too.

#include <chrono>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "FlashStation/Station.hpp"

namespace tarnwick::station {

using Json = nlohmann::ordered_json;

/// "2026-11-23T10:15:42.123Z": a time in ISO 8601, UTC, to the millisecond.
std::string isoTime(std::chrono::system_clock::time_point time);

/// One line of JSON. Names and messages may carry bytes from a device: broken UTF-8 is replaced,
/// never fatal.
std::string dumped(const Json& object);

/// The value, or null.
Json orNull(const std::optional<std::string>& value);

/// Seconds to a tenth, as a number.
double tenths(double seconds);

/// "done", "failed" or "stopped".
std::string resultName(BoardOutcome::Result result);

/// The record file: one JSON object per line and finished board, appended with one write(2) and
/// flushed to the disk, so a crash loses at most the line being written.
class StationRecord {
public:
  /// Opens `path` for appending, creating it. Throws std::system_error.
  StationRecord(std::string path, std::string productName, std::string productSHA256);
  ~StationRecord();
  StationRecord(const StationRecord&) = delete;
  StationRecord& operator=(const StationRecord&) = delete;

  /// Appends the line of `outcome`; why it could not, in the interface language.
  std::optional<std::string> keep(const BoardOutcome& outcome);

private:
  /// Appends the line of `outcome`. Throws std::system_error.
  void append(const BoardOutcome& outcome);
  std::string line(const BoardOutcome& outcome) const;

  std::string path_;
  std::string productName_;
  std::string productSHA256_;
  int fd_ = -1;
};

} // namespace tarnwick::station
