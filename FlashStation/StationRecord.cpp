#include "FlashStation/StationRecord.hpp"

#include <cerrno>
#include <cmath>
#include <ctime>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

#include "Localization/GeneralTexts.hpp"
#include "Localization/StationTexts.hpp"

namespace tarnwick::station {

std::string dumped(const Json& object) {
  return object.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json orNull(const std::optional<std::string>& value) { return value ? Json(*value) : Json(); }

double tenths(double seconds) { return static_cast<double>(std::llround(seconds * 10)) / 10; }

std::string resultName(BoardOutcome::Result result) {
  switch (result) {
  case BoardOutcome::Result::done: return "done";
  case BoardOutcome::Result::failed: return "failed";
  case BoardOutcome::Result::stopped: return "stopped";
  }
  return {};
}

std::string isoTime(std::chrono::system_clock::time_point time) {
  using namespace std::chrono;
  const auto since = time.time_since_epoch();
  const std::time_t whole = duration_cast<std::chrono::seconds>(since).count();
  const auto milliseconds = duration_cast<std::chrono::milliseconds>(since).count() % 1000;
  std::tm utc{};
  ::gmtime_r(&whole, &utc);
  char text[96];
  std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", utc.tm_year + 1900,
                utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec,
                static_cast<int>(milliseconds));
  return text;
}

StationRecord::StationRecord(std::string path, std::string productName, std::string productSHA256)
    : path_(std::move(path)), productName_(std::move(productName)),
      productSHA256_(std::move(productSHA256)) {
  fd_ = ::open(path_.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY, 0644);
  if (fd_ < 0) throw std::system_error(errno, std::generic_category());
}

StationRecord::~StationRecord() {
  if (fd_ >= 0) ::close(fd_);
}

std::string StationRecord::line(const BoardOutcome& outcome) const {
  return dumped({{"time", isoTime(outcome.finished)},
                 {"port", outcome.board.path},
                 {"name", outcome.board.name},
                 {"chip", orNull(outcome.chip)},
                 {"mac", orNull(outcome.mac)},
                 {"product", productName_},
                 {"productSHA256", productSHA256_},
                 {"result", resultName(outcome.result)},
                 {"message", outcome.message},
                 {"seconds", tenths(outcome.seconds)}}) +
         "\n";
}

void StationRecord::append(const BoardOutcome& outcome) {
  const std::string text = line(outcome);
  // One write: with O_APPEND the line lands whole after whatever is there, even when two
  // stations share the file.
  ssize_t written;
  do {
    written = ::write(fd_, text.data(), text.size());
  } while (written < 0 && errno == EINTR);
  if (written < 0) throw std::system_error(errno, std::generic_category());
  if (static_cast<std::size_t>(written) != text.size())
    throw std::system_error(ENOSPC, std::generic_category());
  if (::fdatasync(fd_) != 0 && errno != EINVAL)
    throw std::system_error(errno, std::generic_category());
}

std::optional<std::string> StationRecord::keep(const BoardOutcome& outcome) {
  try {
    append(outcome);
    return std::nullopt;
  } catch (const std::system_error& error) {
    return L10n::Station::cannotWriteRecord(path_, L10n::Errors::systemCause(error.code().value()));
  }
}

} // namespace tarnwick::station
