#include "FlashStation/Station.hpp"

#include <algorithm>
#include <ctime>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>

#include "FlashCore/AVR.hpp"
#include "FlashEngine/FlashJob.hpp"
#include "FlashSerial/FlashPort.hpp"
#include "FlashSerial/FlashPortError.hpp"
#include "FlashSerial/NetworkPort.hpp"
#include "Localization/RunTexts.hpp"
#include "Localization/StationTexts.hpp"

namespace tarnwick::station {

namespace {

using Clock = std::chrono::steady_clock;

double threadCPUSeconds() {
  timespec t{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) / 1e9;
}

} // namespace

StationBoard Station::boardOn(const SerialPortInfo& port) const {
  return {port.path, options_.nameBoard ? options_.nameBoard(port) : boardName(port),
          port.serialNumber};
}

std::string boardName(const SerialPortInfo& port) {
  const std::string name = PortScanner::displayName(port);
  const std::string device = deviceName(port.path);
  return name == device ? name : name + " (" + device + ")";
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
  /// Set by the run's thread when the board turned out to be the one flashed before.
  bool sameBoard = false;
  /// Set by the run's thread when a network port's connection was lost: its board is gone.
  bool connectionLost = false;
  /// The station's own: the port went and came back during the run although nothing but
  /// unplugging takes it away, so another board is there now.
  bool anotherBoardArrived = false;

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
  // Network ports are listed only while their server holds a board's connection.
  if (looksLikeNetworkPort(port.path)) return true;
  // A named test device is a board although no USB facts come with it.
  return options_.testDevices.contains(port.path);
}

bool Station::isTestDevice(const std::string& path) const {
  return options_.testDevices.contains(path) && !FlashPort::isValidPath(path);
}

bool Station::leftAsOtherFamily(const SerialPortInfo& port) {
  const bool esp = package_.product.target.isESP();
  auto family = boardFamily(port);
  if (!family || (*family == BoardFamily::esp) == esp) return false;
  report_.skipped(boardOn(port), L10n::Station::otherFamily(esp));
  return true;
}

// A port that has just appeared, with a board that may be new, the one of the run that just
// ended there restarting, or one of the other family.
void Station::judge(const SerialPortInfo& port, Clock::time_point now) {
  if (leftAsOtherFamily(port)) return;
  auto known = flashedOn_.find(port.path);
  PortChoice::FlashedBoard* last = known != flashedOn_.end() ? &known->second : nullptr;
  const bool esp = package_.product.target.isESP();
  // A network port comes back with whatever its server's device holds. An ESP there may have
  // USB of its own, which leaves and returns with every restart, so it is told by its MAC
  // address as a board on an unknown adapter is. AVR boards that can be flashed over the
  // network all sit behind a USB-serial chip (the others are refused), so theirs is a new board.
  const bool alwaysNew = isTestDevice(port.path) || (looksLikeNetworkPort(port.path) && !esp);
  const auto arrival = PortChoice::judgeArrival(port, alwaysNew, last, esp, now);
  switch (arrival) {
  case PortChoice::Arrival::newBoard:
  case PortChoice::Arrival::compareMAC:
    if (!takingBoards_) {
      report_.skipped(boardOn(port), L10n::Station::notTakingBoards());
      return;
    }
    settling_[port.path] = {
        now, arrival == PortChoice::Arrival::compareMAC ? last->mac : std::optional<std::string>()};
    return;
  case PortChoice::Arrival::sameSerialNumber:
  case PortChoice::Arrival::cannotTell:
    report_.skipped(boardOn(port), PortChoice::whyLeftAlone(arrival));
    return;
  }
}

void Station::stopTaking() {
  if (!takingBoards_) return;
  takingBoards_ = false;
  for (const auto& [path, settling] : settling_) {
    auto port = present_.find(path);
    report_.skipped(port != present_.end() ? boardOn(port->second) : StationBoard{path, path},
                    L10n::Station::notTakingBoards());
  }
  settling_.clear();
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
    if (present_.contains(path) || !isCandidate(port)) continue;
    // A network port's board that was there when the station started: taken at once when the
    // port was named (or with `now`), else left as a USB board already plugged in is.
    if (foundAtStart_.contains(path)) {
      if (!options_.now && !options_.onlyPorts.contains(path)) continue;
      if (takingBoards_)
        settling_[path] = {now - seconds(options_.settleSeconds), std::nullopt};
      else
        report_.skipped(boardOn(port), L10n::Station::notTakingBoards());
      continue;
    }
    // A board that re-enumerates during its own run, or a bootloader coming up for one, is no
    // new board; while a bootloader is awaited, any port that appears may be it. A port that
    // only goes with its cable is judged once its run has ended.
    bool belongsToRun = false;
    for (const auto& run : runs_) {
      if (path == run->board.path && (portKind(port) == PortKind::adapter || isTestDevice(path)))
        run->anotherBoardArrived = true;
      belongsToRun = belongsToRun || run->owns(path) || run->waitsForBootloader(oneAtATime_);
    }
    if (!belongsToRun) judge(port, now);
  }
  std::erase_if(settling_, [&](const auto& entry) { return !present.contains(entry.first); });
  present_ = std::move(present);
}

void Station::startDue(Clock::time_point now) {
  for (auto entry = settling_.begin(); entry != settling_.end() && canTake();) {
    if (now - entry->second.since < seconds(options_.settleSeconds)) {
      ++entry;
      continue;
    }
    const std::string path = entry->first;
    auto leaveBoardWithMAC = entry->second.leaveBoardWithMAC;
    entry = settling_.erase(entry);
    start(present_.at(path), leaveBoardWithMAC);
  }
}

void Station::start(const SerialPortInfo& port, std::optional<std::string> leaveBoardWithMAC) {
  auto run = std::make_unique<Run>();
  run->board = boardOn(port);
  Run* self = run.get();
  run->job = std::make_unique<FlashJob>(
      package_.product, package_.files, port.path, options_.allowsTestDevices,
      [this, self](const FlashEvent& event) {
        if (auto* connected = std::get_if<FlashEvents::Connected>(&event)) {
          std::lock_guard lock(self->mutex);
          self->chip = connected->chip;
          self->mac = connected->mac;
        } else if (auto* changed = std::get_if<FlashEvents::PortChanged>(&event)) {
          std::lock_guard lock(self->mutex);
          self->bootloaderPath = changed->path;
        }
        report_.event(self->board, event);
      });
  run->job->compressionCache = cache_;
  run->job->usbJTAGFirst = prefersUSBJTAGReset(port);
  if (options_.findBootloaderPort) run->job->findBootloaderPort = options_.findBootloaderPort;
  // A board that cannot be told from its port is told by its MAC address.
  run->job->leaveBoardWithMAC = std::move(leaveBoardWithMAC);

  report_.started(run->board);
  const bool network = network_ && network_->watches(port.path);
  run->thread = std::thread([this, self, network] {
    // The connection that found the board: its server would take no second one.
    if (network) {
      if (auto link = network_->lend(self->board.path)) self->job->useOpenLink(std::move(link));
    }
    BoardOutcome outcome;
    outcome.board = self->board;
    const double cpuStart = threadCPUSeconds();
    const auto startTime = Clock::now();
    try {
      FlashSummary summary = self->job->run();
      outcome.result = BoardOutcome::Result::done;
      outcome.chip = summary.chip;
      outcome.mac = summary.mac;
    } catch (const FlashJob::SameBoard&) {
      std::lock_guard lock(self->mutex);
      self->sameBoard = true;
    } catch (const FlashError& error) {
      outcome.result =
          error.isCancelled() ? BoardOutcome::Result::stopped : BoardOutcome::Result::failed;
      // Stopped before the board answered, nothing was written.
      std::lock_guard lock(self->mutex);
      outcome.message = !error.isCancelled() ? error.message()
                        : self->chip ? L10n::Log::stopped() + " " + L10n::Log::partlyWritten()
                                     : L10n::Log::stopped() + " " + L10n::Log::notWritten();
    } catch (const FlashPortError& error) {
      outcome.result = BoardOutcome::Result::failed;
      outcome.message = error.message();
      self->connectionLost = NetworkPorts::meansNoBoard(error);
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
    if (network_ && network_->watches(run.board.path))
      network_->giveBack(run.board.path, run.connectionLost);
    // The board restarts now and may come back on its port, or on its bootloader's.
    const PortChoice::FlashedBoard memory{
        now + seconds(options_.quietSeconds), run.board.serialNumber,
        run.sameBoard ? run.job->leaveBoardWithMAC : run.outcome.mac, run.sameBoard};
    flashedOn_[run.board.path] = memory;
    if (run.bootloaderPath) flashedOn_[*run.bootloaderPath] = memory;
    if (run.sameBoard) {
      report_.skipped(run.board, L10n::Station::sameBoardByMAC());
      it = runs_.erase(it);
      continue;
    }
    // A board whose record line is lost is not counted as flashed: nobody could prove it was.
    if (auto problem = report_.record(run.outcome)) {
      run.outcome.result = BoardOutcome::Result::failed;
      run.outcome.message = *problem;
      if (!recordProblem_) recordProblem_ = *problem;
    }
    if (run.outcome.result == BoardOutcome::Result::done)
      ++flashed_;
    else
      ++failed_;
    report_.finished(run.outcome);
    const bool anotherBoard = run.anotherBoardArrived;
    const std::string path = run.board.path;
    it = runs_.erase(it);
    if (auto port = present_.find(path); anotherBoard && port != present_.end())
      judge(port->second, now);
  }
  if (recordProblem_ && !recordNoticed_) {
    recordNoticed_ = true;
    report_.notice({StationNotice::Kind::recordLost, 0, 0, *recordProblem_});
    stopTaking();
  }
  if (!outputLost_ && report_.outputLost()) {
    outputLost_ = true;
    stopTaking();
  }
  if (options_.limit && flashed_ >= *options_.limit && takingBoards_) {
    report_.notice({StationNotice::Kind::limitReached, *options_.limit});
    stopTaking();
  }
}

void Station::handleInterrupts() {
  const int count = interrupts_.load();
  if (count == interruptsSeen_) return;
  if (interruptsSeen_ == 0) {
    if (!runs_.empty())
      report_.notice({StationNotice::Kind::finishing, static_cast<std::int64_t>(runs_.size())});
    stopTaking();
  }
  if (count >= 2 && !runs_.empty()) {
    report_.notice({StationNotice::Kind::stopping});
    for (auto& run : runs_)
      run->job->cancel();
  }
  interruptsSeen_ = count;
}

Station::Clock::time_point Station::nextDeadline(Clock::time_point now) const {
  auto deadline = now + std::chrono::seconds(1);
  if (!canTake()) return deadline; // an ending run wakes the station
  for (const auto& [path, settling] : settling_)
    deadline = std::min(deadline, settling.since + seconds(options_.settleSeconds));
  return deadline;
}

std::vector<SerialPortInfo> Station::portsNow() {
  std::vector<SerialPortInfo> ports;
  for (const auto& port : sourcePorts_) {
    if (!looksLikeNetworkPort(port.path)) ports.push_back(port);
  }
  foundAtStart_.clear();
  if (!network_) return ports;
  for (const auto& board : network_->present()) {
    ports.push_back({board.name, std::nullopt, std::nullopt, std::nullopt});
    if (board.sinceStart) foundAtStart_.insert(board.name);
  }
  return ports;
}

void Station::sayNetworkNotices() {
  if (!network_) return;
  for (const auto& said : network_->takeNotices()) {
    if (said.problem)
      report_.notice({StationNotice::Kind::unreachable, 0, 0, said.name, said.problem->message()});
    else
      report_.notice({StationNotice::Kind::waitingForPort, 0, 0, said.name});
  }
}

std::int64_t Station::run(PortSource& source) {
  const auto now = Clock::now();
  if (!options_.networkPorts.empty()) {
    const auto avr = package_.product.target.avrBoard();
    network_ = std::make_unique<NetworkPorts>(options_.networkPorts, avr ? baudRate(*avr) : 115200,
                                              [this] {
                                                networkChanged_ = true;
                                                wake();
                                              });
  }
  sourcePorts_ = source.start();
  for (const auto& port : portsNow()) {
    if (!options_.onlyPorts.empty() && !options_.onlyPorts.contains(port.path)) continue;
    // Known by connecting to it, which has only begun.
    if (looksLikeNetworkPort(port.path)) continue;
    present_.emplace(port.path, port);
    // Boards already there are taken with --now; named test devices always, as nothing plugs
    // them in. Either way they were there long enough.
    if (!isCandidate(port) || !(options_.now || isTestDevice(port.path))) continue;
    if (!leftAsOtherFamily(port))
      settling_[port.path] = {now - seconds(options_.settleSeconds), std::nullopt};
  }
  report_.notice({StationNotice::Kind::ready, static_cast<std::int64_t>(settling_.size())});
  for (const auto& path : options_.onlyPorts) {
    // A network port's first connection tells whether it is there.
    if (!present_.contains(path) && !(network_ && network_->watches(path)))
      report_.notice({StationNotice::Kind::waitingForPort, 0, 0, path});
  }
  if (oneAtATime_) report_.notice({StationNotice::Kind::oneAtATime});

  while (true) {
    handleInterrupts();
    reapFinished();
    if (!takingBoards_ && runs_.empty()) break;
    startDue(Clock::now());
    auto ports = source.wait(nextDeadline(Clock::now()), wakeFD_);
    std::uint64_t drained = 0;
    [[maybe_unused]] ssize_t got = ::read(wakeFD_, &drained, sizeof drained);
    const bool networkChanged = networkChanged_.exchange(false);
    if (ports) sourcePorts_ = std::move(*ports);
    if (ports || networkChanged) arrived(portsNow(), Clock::now());
    sayNetworkNotices();
  }
  // Every run has ended: the connections held for boards waiting go.
  network_.reset();
  report_.notice({StationNotice::Kind::ended, flashed_, failed_, recordProblem_.value_or("")});
  return failed_;
}

} // namespace tarnwick::station
