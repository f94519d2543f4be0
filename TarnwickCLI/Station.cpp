#include "TarnwickCLI/Station.hpp"

#include <algorithm>
#include <ctime>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "FlashCore/AVR.hpp"
#include "FlashEngine/FlashJob.hpp"
#include "FlashSerial/FlashPort.hpp"
#include "FlashSerial/FlashPortError.hpp"
#include "Localization/RunTexts.hpp"
#include "Localization/StationTexts.hpp"
#include "TarnwickCLI/Ports.hpp"

namespace tarnwick::cli {

namespace {

using Clock = std::chrono::steady_clock;

Clock::duration seconds(double value) {
  return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(value));
}

double threadCPUSeconds() {
  timespec t{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) / 1e9;
}

} // namespace

std::string boardName(const SerialPortInfo& port) {
  const std::string name = PortScanner::displayName(port);
  const std::string device = deviceName(port.path);
  return name == device ? name : name + " (" + device + ")";
}

// MARK: - The scanner as a port source

ScannerPortSource::ScannerPortSource(std::vector<std::string> testDevices,
                                     PortScanner::ChangeSource changes)
    : scanner_(changes), testDevices_(std::move(testDevices)) {
  scanner_.onChange = [this](const std::vector<SerialPortInfo>& ports) { delivered_ = ports; };
  scanner_.start();
}

std::vector<SerialPortInfo> ScannerPortSource::start() {
  last_ = delivered_ ? *delivered_ : scanner_.scan();
  delivered_.reset();
  return withTestDevices(last_);
}

std::optional<std::vector<SerialPortInfo>> ScannerPortSource::wait(Clock::time_point deadline,
                                                                   int wake) {
  // A test device gives no notice when it goes: look again twice a second.
  if (!testDevices_.empty()) deadline = std::min(deadline, Clock::now() + seconds(0.5));
  scanner_.wait(deadline, wake);
  if (delivered_) {
    last_ = std::move(*delivered_);
    delivered_.reset();
  }
  return withTestDevices(last_);
}

std::vector<SerialPortInfo> ScannerPortSource::withTestDevices(
    std::vector<SerialPortInfo> ports) const {
  for (const auto& path : testDevices_) {
    struct stat info {};
    const bool listed = std::ranges::any_of(ports, [&](const auto& p) { return p.path == path; });
    if (!listed && ::stat(path.c_str(), &info) == 0 && S_ISCHR(info.st_mode)) {
      ports.push_back({path, std::nullopt, std::nullopt, std::nullopt});
    }
  }
  return ports;
}

// MARK: - Runs

struct Station::Run {
  StationBoard board;
  std::unique_ptr<FlashJob> job;
  std::thread thread;
  /// Set by the run's thread once `outcome` is complete.
  std::atomic<bool> ended = false;
  BoardOutcome outcome;
  mutable std::mutex mutex;
  /// Where the board's bootloader came up, when it has a port of its own.
  std::optional<std::string> bootloaderPath;
  std::optional<std::string> chip;
  std::optional<std::string> mac;

  bool waitsForBootloader(bool caterina) const {
    std::lock_guard lock(mutex);
    return caterina && !ended && !bootloaderPath;
  }
  bool owns(const std::string& path) const {
    std::lock_guard lock(mutex);
    return board.path == path || bootloaderPath == path;
  }
};

namespace {
bool bootloaderHasItsOwnPort(const Product& product) {
  auto board = product.target.avrBoard();
  return board && protocol(*board) == AVRProtocol::avr109;
}
} // namespace

Station::Station(ProductPackage package, StationOptions options, StationReport& report)
    : package_(std::move(package)), options_(std::move(options)), report_(report),
      oneAtATime_(bootloaderHasItsOwnPort(package_.product)),
      wakeFD_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

Station::~Station() {
  for (auto& run : runs_) {
    run->job->cancel();
    if (run->thread.joinable()) run->thread.join();
  }
  if (wakeFD_ >= 0) ::close(wakeFD_);
}

void Station::wake() {
  const std::uint64_t one = 1;
  // Only fails when the counter is full, and then a wake-up is pending anyway.
  [[maybe_unused]] ssize_t written = ::write(wakeFD_, &one, sizeof one);
}

void Station::interrupt() {
  interrupts_.fetch_add(1);
  wake();
}

bool Station::isCandidate(const SerialPortInfo& port) const {
  if (!options_.onlyPorts.empty() && !options_.onlyPorts.contains(port.path)) return false;
  if (port.vendorID) return true;
  // A named test device is a board although no USB facts come with it.
  return options_.testDevices && options_.onlyPorts.contains(port.path);
}

bool Station::isQuiet(const std::string& path, Clock::time_point now) const {
  auto quiet = quietUntil_.find(path);
  return quiet != quietUntil_.end() && now < quiet->second;
}

bool Station::canTake() const {
  if (!takingBoards_) return false;
  if (oneAtATime_ && !runs_.empty()) return false;
  return !options_.limit || flashed_ + static_cast<std::int64_t>(runs_.size()) < *options_.limit;
}

void Station::arrived(const std::vector<SerialPortInfo>& ports, Clock::time_point now) {
  std::map<std::string, SerialPortInfo> present;
  for (const auto& port : ports) {
    if (options_.onlyPorts.empty() || options_.onlyPorts.contains(port.path))
      present.emplace(port.path, port);
  }
  for (const auto& [path, port] : present) {
    if (present_.contains(path) || !isCandidate(port) || isQuiet(path, now)) continue;
    // A board that re-enumerates during its own run, or a bootloader coming up for one, is no
    // new board; while a bootloader is awaited, any port that appears may be it.
    bool belongsToRun = std::ranges::any_of(runs_, [&](const auto& run) {
      return run->owns(path) || run->waitsForBootloader(oneAtATime_);
    });
    if (!belongsToRun && takingBoards_) settling_[path] = now;
  }
  std::erase_if(settling_, [&](const auto& entry) { return !present.contains(entry.first); });
  present_ = std::move(present);
}

void Station::startDue(Clock::time_point now) {
  for (auto entry = settling_.begin(); entry != settling_.end() && canTake();) {
    if (now - entry->second < seconds(options_.settleSeconds)) {
      ++entry;
      continue;
    }
    const std::string path = entry->first;
    entry = settling_.erase(entry);
    // The bootloader port of a run that just ended may still be listed for a moment.
    if (isQuiet(path, now)) continue;
    start(present_.at(path));
  }
}

void Station::start(const SerialPortInfo& port) {
  auto run = std::make_unique<Run>();
  run->board = {port.path, boardName(port)};
  Run* self = run.get();
  run->job = std::make_unique<FlashJob>(
      package_.product, package_.files, port.path, options_.testDevices,
      [this, self](const FlashEvent& event) {
        if (auto* progress = std::get_if<FlashEvents::Progress>(&event)) {
          report_.progress(self->board, progress->done, progress->total);
        } else if (auto* connected = std::get_if<FlashEvents::Connected>(&event)) {
          {
            std::lock_guard lock(self->mutex);
            self->chip = connected->chip;
            self->mac = connected->mac;
          }
          report_.connected(self->board, connected->chip, connected->mac);
        } else if (auto* changed = std::get_if<FlashEvents::PortChanged>(&event)) {
          std::lock_guard lock(self->mutex);
          self->bootloaderPath = changed->path;
        }
      });
  run->job->compressionCache = cache_;
  run->job->usbJTAGFirst = prefersUSBJTAGReset(port);
  if (options_.findBootloaderPort) run->job->findBootloaderPort = options_.findBootloaderPort;

  report_.started(run->board);
  run->thread = std::thread([this, self] {
    BoardOutcome outcome;
    outcome.board = self->board;
    const double cpuStart = threadCPUSeconds();
    const auto startTime = Clock::now();
    try {
      FlashSummary summary = self->job->run();
      outcome.result = BoardOutcome::Result::done;
      outcome.chip = summary.chip;
      outcome.mac = summary.mac;
    } catch (const FlashError& error) {
      outcome.result =
          error.isCancelled() ? BoardOutcome::Result::stopped : BoardOutcome::Result::failed;
      outcome.message = error.isCancelled()
                            ? L10n::Log::stopped() + " " + L10n::Log::partlyWritten()
                            : error.message();
    } catch (const FlashPortError& error) {
      outcome.result = BoardOutcome::Result::failed;
      outcome.message = error.message();
    } catch (const std::exception& error) {
      outcome.result = BoardOutcome::Result::failed;
      outcome.message = error.what();
    }
    if (outcome.result != BoardOutcome::Result::done) {
      std::lock_guard lock(self->mutex);
      outcome.chip = self->chip;
      outcome.mac = self->mac;
    }
    outcome.seconds = std::chrono::duration<double>(Clock::now() - startTime).count();
    outcome.cpuSeconds = threadCPUSeconds() - cpuStart;
    outcome.finished = std::chrono::system_clock::now();
    self->outcome = std::move(outcome);
    self->ended = true;
    wake();
  });
  runs_.push_back(std::move(run));
}

void Station::reapFinished() {
  const auto now = Clock::now();
  for (auto it = runs_.begin(); it != runs_.end();) {
    Run& run = **it;
    if (!run.ended) {
      ++it;
      continue;
    }
    run.thread.join();
    if (run.outcome.result == BoardOutcome::Result::done)
      ++flashed_;
    else
      ++failed_;
    // The board restarts now and may come back on its port, or on its bootloader's.
    quietUntil_[run.board.path] = now + seconds(options_.quietSeconds);
    if (run.bootloaderPath) quietUntil_[*run.bootloaderPath] = now + seconds(options_.quietSeconds);
    report_.finished(run.outcome);
    it = runs_.erase(it);
  }
  if (options_.limit && flashed_ >= *options_.limit && takingBoards_) {
    takingBoards_ = false;
    settling_.clear();
    report_.notice(L10n::Station::limitReached(*options_.limit));
  }
}

void Station::handleInterrupts() {
  const int count = interrupts_.load();
  if (count == interruptsSeen_) return;
  if (interruptsSeen_ == 0) {
    takingBoards_ = false;
    settling_.clear();
    if (!runs_.empty())
      report_.notice(L10n::Station::finishing(static_cast<std::int64_t>(runs_.size())));
  }
  if (count >= 2 && !runs_.empty()) {
    report_.notice(L10n::Station::stopping());
    for (auto& run : runs_)
      run->job->cancel();
  }
  interruptsSeen_ = count;
}

Station::Clock::time_point Station::nextDeadline(Clock::time_point now) const {
  auto deadline = now + std::chrono::seconds(1);
  if (!canTake()) return deadline; // an ending run wakes the station
  for (const auto& [path, since] : settling_)
    deadline = std::min(deadline, since + seconds(options_.settleSeconds));
  return deadline;
}

std::int64_t Station::run(PortSource& source) {
  const auto now = Clock::now();
  for (const auto& port : source.start()) {
    if (!options_.onlyPorts.empty() && !options_.onlyPorts.contains(port.path)) continue;
    present_.emplace(port.path, port);
    // Boards already there are taken with --now; named test devices always, as nothing plugs
    // them in. Either way they were there long enough.
    const bool namedTestDevice = options_.testDevices && options_.onlyPorts.contains(port.path) &&
                                 !FlashPort::isValidPath(port.path);
    if (isCandidate(port) && (options_.now || namedTestDevice))
      settling_[port.path] = now - seconds(options_.settleSeconds);
  }
  report_.notice(L10n::Station::ready(package_.product.name, !settling_.empty()));
  if (oneAtATime_) report_.notice(L10n::Station::oneAtATime());

  while (true) {
    handleInterrupts();
    reapFinished();
    if (!takingBoards_ && runs_.empty()) break;
    startDue(Clock::now());
    auto ports = source.wait(nextDeadline(Clock::now()), wakeFD_);
    std::uint64_t drained = 0;
    [[maybe_unused]] ssize_t got = ::read(wakeFD_, &drained, sizeof drained);
    if (ports) arrived(*ports, Clock::now());
  }
  report_.notice(L10n::Station::summary(flashed_, failed_));
  return failed_;
}

} // namespace tarnwick::cli
