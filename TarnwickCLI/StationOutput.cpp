#include "TarnwickCLI/StationOutput.hpp"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "FlashCore/VisibleText.hpp"
#include "Localization/GeneralTexts.hpp"
#include "Localization/RunTexts.hpp"
#include "Localization/StationTexts.hpp"
#include "TarnwickCLI/Console.hpp"

namespace tarnwick::cli {

using station::dumped;
using station::isoTime;
using station::Json;
using station::orNull;
using station::tenths;

namespace {

constexpr auto minimumRedrawInterval = std::chrono::milliseconds(100);

// The first `columns` characters of `text` (not bytes: the line holds accented words).
std::string clipped(const std::string& text, std::size_t columns) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0) == 0x80) continue;
    if (count++ == columns) return text.substr(0, i);
  }
  return text;
}

// "ttyUSB0" as "USB0", "pts/12" as "12": enough to tell boards apart on a narrow terminal.
std::string shortDeviceName(const std::string& name) {
  if (name.starts_with("tty") && name.size() > 3) return name.substr(3);
  if (auto slash = name.rfind('/'); slash != std::string::npos) return name.substr(slash + 1);
  return name;
}

// "USB12" as "12": the number the hub's ports are told by, where no two boards share one.
std::optional<std::vector<std::string>> numbersOnly(const std::vector<std::string>& names) {
  std::vector<std::string> numbers;
  for (const auto& name : names) {
    auto digits = name.find_last_not_of("0123456789");
    std::string number = digits == std::string::npos ? name : name.substr(digits + 1);
    if (number.empty() || std::ranges::find(numbers, number) != numbers.end()) return std::nullopt;
    numbers.push_back(std::move(number));
  }
  return numbers;
}

std::size_t terminalColumns(std::FILE* out) {
  winsize size{};
  if (::ioctl(::fileno(out), TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
  return 80;
}

} // namespace

std::string statusLine(const std::vector<std::pair<std::string, int>>& boards, std::int64_t flashed,
                       std::int64_t failed, std::size_t columns) {
  std::vector<std::string> names, shortNames;
  for (const auto& board : boards) {
    names.push_back(board.first);
    shortNames.push_back(shortDeviceName(board.first));
  }
  auto numbers = numbersOnly(shortNames);
  auto with = [&](const std::vector<std::string>& shown, bool compact) {
    std::vector<std::pair<std::string, int>> parts;
    for (std::size_t i = 0; i < boards.size(); ++i)
      parts.emplace_back(shown[i], boards[i].second);
    return visible(L10n::Station::status(parts, flashed, failed, compact));
  };
  // Ever shorter until it fits: whole device names, names without "tty" and "pts/", then the
  // ports' numbers alone without the word before them.
  std::string text = with(names, false);
  if (displayWidth(text) > columns) text = with(shortNames, false);
  if (displayWidth(text) > columns) text = with(numbers ? *numbers : shortNames, true);
  return clipped(text, columns);
}

std::vector<std::string> noticeLines(const StationNotice& notice, const std::string& productName) {
  using Kind = StationNotice::Kind;
  switch (notice.kind) {
  case Kind::ready: return {L10n::Station::ready(productName, notice.count > 0)};
  case Kind::waitingForPort: return {L10n::Station::waitingForPort(notice.text)};
  case Kind::unreachable: return {L10n::Station::cannotReach(notice.text, notice.detail)};
  case Kind::oneAtATime: return {L10n::Station::oneAtATime()};
  case Kind::finishing: return {L10n::Station::finishing(notice.count)};
  case Kind::stopping: return {L10n::Station::stopping()};
  case Kind::limitReached: return {L10n::Station::limitReached(notice.count)};
  case Kind::recordLost: return {L10n::Station::recordLost(notice.text)};
  case Kind::ended:
    // The counts, and then once more why they may not match the record.
    if (notice.text.empty()) return {L10n::Station::summary(notice.count, notice.failed)};
    return {L10n::Station::summary(notice.count, notice.failed), notice.text};
  }
  return {};
}

// MARK: - Both forms

StationOutput::StationOutput(std::FILE* out, std::FILE* errors,
                             std::unique_ptr<StationRecord> record, std::string productName)
    : out_(out), errors_(errors), record_(std::move(record)), productName_(std::move(productName)) {
}

void StationOutput::notice(const StationNotice& notice) {
  for (const auto& line : noticeLines(notice, productName_))
    say(line);
}

void StationOutput::event(const StationBoard& board, const FlashEvent& event) {
  if (auto* progressed = std::get_if<FlashEvents::Progress>(&event)) {
    progress(board, progressed->done, progressed->total);
  } else if (auto* answered = std::get_if<FlashEvents::Connected>(&event)) {
    connected(board, answered->chip, answered->mac);
  }
}

void StationOutput::finished(const BoardOutcome& outcome) { show(outcome); }

std::optional<std::string> StationOutput::record(const BoardOutcome& outcome) {
  if (!record_) return std::nullopt;
  return record_->keep(outcome);
}

void StationOutput::put(const std::string& text) {
  if (lost_) return;
  std::fputs(text.c_str(), out_);
  // A reader that went away shows as a failed write (EPIPE, with SIGPIPE ignored).
  if (std::fflush(out_) != 0 || std::ferror(out_)) lost_ = true;
}

bool StationOutput::outputLost() {
  if (lost_) return true;
  // Asked before boards are taken, so a reader gone while nothing was printed is noticed
  // before a board is started that nobody would hear of: a pipe without its reader reports an
  // error, a terminal or socket that closed a hang-up.
  pollfd out{::fileno(out_), 0, 0};
  if (::poll(&out, 1, 0) == 1 && (out.revents & (POLLERR | POLLHUP))) lost_ = true;
  return lost_;
}

// MARK: - Lines for people

StationConsole::StationConsole(std::FILE* out, bool interactive,
                               std::unique_ptr<StationRecord> record, std::string productName)
    : StationOutput(out, stderr, std::move(record), std::move(productName)),
      interactive_(interactive) {}

void StationConsole::lineLocked(const std::string& text) {
  put((statusShown_ ? "\r\033[K" : "") + visibleLines(text) + "\n");
  statusShown_ = false;
  drawStatusLocked(true);
}

void StationConsole::drawStatusLocked(bool force) {
  if (!interactive_) return;
  const auto now = std::chrono::steady_clock::now();
  if (!force && now - lastDraw_ < minimumRedrawInterval) return;
  lastDraw_ = now;
  // In the scanner's order: pts/3 before pts/12.
  std::vector<SerialPortInfo> ports;
  for (const auto& entry : inProgress_)
    ports.push_back({entry.first, std::nullopt, std::nullopt, std::nullopt});
  sortPorts(ports);
  std::vector<std::pair<std::string, int>> boards;
  for (const auto& port : ports)
    boards.push_back(inProgress_.at(port.path));
  // One column short of the width, so the line never wraps and "\r" goes back to its start.
  put("\r\033[K" + statusLine(boards, flashed_, failed_, terminalColumns(out_) - 1));
  statusShown_ = true;
}

void StationConsole::end() {
  std::lock_guard lock(mutex_);
  if (statusShown_) put("\r\033[K");
  statusShown_ = false;
  interactive_ = false;
}

void StationConsole::skipped(const StationBoard& board, const std::string& reason) {
  std::lock_guard lock(mutex_);
  // A board connected to before it proved to be the last one is no longer in progress.
  inProgress_.erase(board.path);
  lineLocked(L10n::Station::aboutBoard(board.name, L10n::Station::leftAlone(reason)));
}

void StationConsole::say(const std::string& text) {
  std::lock_guard lock(mutex_);
  lineLocked(text);
}

void StationConsole::started(const StationBoard& board) {
  std::lock_guard lock(mutex_);
  inProgress_[board.path] = {deviceName(board.path), 0};
  lineLocked(L10n::Station::aboutBoard(board.name, L10n::Station::started()));
}

void StationConsole::connected(const StationBoard& board, const std::string& chip,
                               const std::optional<std::string>& mac) {
  std::lock_guard lock(mutex_);
  lineLocked(L10n::Station::aboutBoard(board.name, mac ? L10n::Log::chipAndMAC(chip, *mac)
                                                       : L10n::Log::chip(chip)));
}

void StationConsole::progress(const StationBoard& board, std::int64_t done, std::int64_t total) {
  if (total <= 0) return;
  std::lock_guard lock(mutex_);
  auto entry = inProgress_.find(board.path);
  if (entry == inProgress_.end()) return;
  const int percent = static_cast<int>(std::clamp<std::int64_t>(done * 100 / total, 0, 100));
  if (entry->second.second == percent) return;
  entry->second.second = percent;
  drawStatusLocked(false);
}

void StationConsole::show(const BoardOutcome& outcome) {
  std::lock_guard lock(mutex_);
  inProgress_.erase(outcome.board.path);
  std::string text;
  switch (outcome.result) {
  case BoardOutcome::Result::done:
    ++flashed_;
    text = L10n::Log::doneIn(formatSeconds(outcome.seconds));
    break;
  case BoardOutcome::Result::failed:
    ++failed_;
    text = L10n::Station::failed(outcome.message);
    break;
  case BoardOutcome::Result::stopped:
    ++failed_;
    text = outcome.message;
    break;
  }
  lineLocked(L10n::Station::aboutBoard(outcome.board.name, text));
}

// MARK: - JSON for scripts

StationJSON::StationJSON(std::FILE* out, std::FILE* errors, std::unique_ptr<StationRecord> record,
                         std::string productName)
    : StationOutput(out, errors, std::move(record), std::move(productName)) {}

namespace {
Json eventObject(const char* name, const StationBoard& board) {
  return {{"event", name},
          {"time", isoTime(std::chrono::system_clock::now())},
          {"port", board.path},
          {"name", board.name}};
}
} // namespace

void StationJSON::say(const std::string& text) {
  std::lock_guard lock(mutex_);
  std::fprintf(errors_, "%s\n", visibleLines(text).c_str());
  std::fflush(errors_);
}

void StationJSON::started(const StationBoard& board) {
  std::lock_guard lock(mutex_);
  percent_[board.path] = -5;
  put(dumped(eventObject("started", board)) + "\n");
}

void StationJSON::connected(const StationBoard& board, const std::string& chip,
                            const std::optional<std::string>& mac) {
  Json object = eventObject("connected", board);
  object["chip"] = chip;
  object["mac"] = orNull(mac);
  std::lock_guard lock(mutex_);
  put(dumped(object) + "\n");
}

void StationJSON::progress(const StationBoard& board, std::int64_t done, std::int64_t total) {
  if (total <= 0) return;
  const int percent = static_cast<int>(std::clamp<std::int64_t>(done * 100 / total, 0, 100));
  std::lock_guard lock(mutex_);
  auto& last = percent_[board.path];
  // Each fifth percent that is crossed: enough to follow, few enough lines to read. A jump
  // over several steps gives each of them, so a reader sees every step.
  for (int step = (last / 5 + 1) * 5; step <= percent; step += 5) {
    Json object = eventObject("progress", board);
    object["done"] = step == percent ? done : total * step / 100;
    object["total"] = total;
    object["percent"] = step;
    put(dumped(object) + "\n");
  }
  last = std::max(last, percent);
}

void StationJSON::skipped(const StationBoard& board, const std::string& reason) {
  Json object = eventObject("skipped", board);
  object["reason"] = reason;
  std::lock_guard lock(mutex_);
  percent_.erase(board.path);
  put(dumped(object) + "\n");
}

void StationJSON::show(const BoardOutcome& outcome) {
  const bool done = outcome.result == BoardOutcome::Result::done;
  Json object = eventObject(done ? "done" : "failed", outcome.board);
  object["time"] = isoTime(outcome.finished);
  object["chip"] = orNull(outcome.chip);
  object["mac"] = orNull(outcome.mac);
  object["seconds"] = tenths(outcome.seconds);
  if (!done) {
    object["message"] = outcome.message;
    object["stopped"] = outcome.result == BoardOutcome::Result::stopped;
  }
  std::lock_guard lock(mutex_);
  percent_.erase(outcome.board.path);
  put(dumped(object) + "\n");
}

} // namespace tarnwick::cli
