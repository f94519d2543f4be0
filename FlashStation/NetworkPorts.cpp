#include "FlashStation/NetworkPorts.hpp"

#include "FlashStation/PortSource.hpp"

#include <atomic>
#include <chrono>
#include <deque>

namespace tarnwick::station {

namespace {

using Clock = std::chrono::steady_clock;

// How long one look at a held connection lasts: how soon a run gets the connection it asks for.
constexpr double lookSeconds = 0.05;

// A server may not have seen a run's connection close when the next one comes a moment later,
// and answers that the port is in use: for this long after a run, that is its own connection
// going, tried again this often, and the board stays.
constexpr double runClosingSeconds = 2.0;
constexpr double runClosingRetrySeconds = 0.05;

// Thrown through a connection attempt when the watching ends.
struct Ended {};

} // namespace

bool NetworkPorts::meansNoBoard(const FlashPortError& error) {
  return error.kind() == FlashPortError::Kind::noBoard ||
         error.kind() == FlashPortError::Kind::disconnected;
}

struct NetworkPorts::Port {
  std::string name;
  NetworkPortAddress address;
  std::int64_t baudRate = 0;
  std::atomic<bool> ending = false;

  std::mutex mutex;
  std::condition_variable wakeUp;
  /// Cleared when the watching ends: a thread left to finish calls nobody.
  std::function<void()> changed;
  bool present = false;
  bool sinceStart = false;
  /// An attempt to connect has ended, whichever way.
  bool tried = false;
  /// What was last said of the port: a failure's kind; none after a board was found.
  std::optional<FlashPortError::Kind> said;
  std::deque<Notice> notices;
  /// A run asks for the connection; it is handed over in `handedOver`, and `wanted` cleared.
  bool wanted = false;
  std::unique_ptr<NetworkLink> handedOver;
  /// A run has the port.
  bool lent = false;
  /// When the last run gave the port back.
  Clock::time_point givenBack;
  bool finished = false;

  void tell() {
    if (changed) changed();
  }

  void found() {
    if (!present) {
      present = true;
      sinceStart = !tried;
      tell();
    }
    tried = true;
    said.reset();
  }

  /// The board has gone; said when there was one.
  void gone() {
    if (!present) return;
    present = false;
    sinceStart = false;
    tell();
  }

  void missed(const FlashPortError& error) {
    const bool wasPresent = present;
    present = false;
    sinceStart = false;
    bool say = false;
    if (meansNoBoard(error)) {
      // Said when watching begins, and when a server that was out of reach answers again; a
      // board that goes is no news.
      say = !tried || (said && *said != FlashPortError::Kind::noBoard);
      if (say) notices.push_back({name, std::nullopt});
      said = FlashPortError::Kind::noBoard;
    } else if (said != error.kind()) {
      notices.push_back({name, error});
      said = error.kind();
      say = true;
    }
    tried = true;
    if (wasPresent || say) tell();
  }

  void watch() {
    std::unique_ptr<NetworkLink> link;
    std::unique_lock lock(mutex);
    while (!ending) {
      if (wanted) {
        handedOver = std::move(link);
        wanted = false;
        lent = true;
        wakeUp.notify_all();
        continue;
      }
      if (lent) {
        wakeUp.wait(lock, [&] { return ending || !lent; });
        continue;
      }
      lock.unlock();
      if (!link) {
        SerialLinkOptions options;
        options.checkCancelled = [this] {
          if (ending) throw Ended{};
        };
        auto attempt = std::make_unique<NetworkLink>(address, baudRate, options);
        std::optional<FlashPortError> failure;
        try {
          attempt->open();
        } catch (const FlashPortError& error) {
          failure = error;
        } catch (const Ended&) {
        }
        lock.lock();
        if (ending) break;
        if (failure && present && failure->kind() == FlashPortError::Kind::portInUse &&
            Clock::now() - givenBack < seconds(runClosingSeconds)) {
          wakeUp.wait_for(lock, seconds(runClosingRetrySeconds), [&] { return ending || wanted; });
        } else if (failure) {
          missed(*failure);
          wakeUp.wait_for(lock, seconds(retrySeconds), [&] { return ending || wanted; });
        } else {
          link = std::move(attempt);
          found();
        }
        continue;
      }
      // The board stays while the server holds the connection; what its firmware says
      // meanwhile is of no use to anyone.
      bool lost = false;
      try {
        link->read(lookSeconds);
      } catch (const FlashPortError&) {
        lost = true;
      }
      if (lost) link.reset();
      lock.lock();
      if (lost) gone();
    }
    lock.unlock();
    link.reset();
    lock.lock();
    finished = true;
    wakeUp.notify_all();
  }
};

NetworkPorts::NetworkPorts(const std::vector<std::string>& names, std::int64_t baudRate,
                           std::function<void()> changed) {
  for (const auto& name : names) {
    auto address = parseNetworkPort(name);
    if (!address) continue;
    auto port = std::make_shared<Port>();
    port->name = name;
    port->address = *address;
    port->baudRate = baudRate;
    port->changed = changed;
    ports_.push_back(port);
    threads_.emplace_back([port] { port->watch(); });
  }
}

NetworkPorts::~NetworkPorts() {
  for (auto& port : ports_) {
    std::lock_guard lock(port->mutex);
    port->ending = true;
    port->changed = nullptr;
    port->wakeUp.notify_all();
  }
  const auto deadline = Clock::now() + seconds(endSeconds);
  for (std::size_t i = 0; i < ports_.size(); ++i) {
    Port& port = *ports_[i];
    std::unique_lock lock(port.mutex);
    const bool finished = port.wakeUp.wait_until(lock, deadline, [&] { return port.finished; });
    lock.unlock();
    // A host name still being looked up holds its thread; the thread owns what it uses.
    if (finished)
      threads_[i].join();
    else
      threads_[i].detach();
  }
}

NetworkPorts::Port* NetworkPorts::find(const std::string& name) const {
  for (const auto& port : ports_) {
    if (port->name == name) return port.get();
  }
  return nullptr;
}

bool NetworkPorts::watches(const std::string& name) const { return find(name) != nullptr; }

std::vector<NetworkPorts::Present> NetworkPorts::present() const {
  std::vector<Present> present;
  for (const auto& port : ports_) {
    std::lock_guard lock(port->mutex);
    if (port->present) present.push_back({port->name, port->sinceStart});
  }
  return present;
}

std::vector<NetworkPorts::Notice> NetworkPorts::takeNotices() {
  std::vector<Notice> notices;
  for (const auto& port : ports_) {
    std::lock_guard lock(port->mutex);
    for (auto& notice : port->notices)
      notices.push_back(std::move(notice));
    port->notices.clear();
  }
  return notices;
}

std::unique_ptr<NetworkLink> NetworkPorts::lend(const std::string& name) {
  Port* port = find(name);
  if (port == nullptr) return nullptr;
  std::unique_lock lock(port->mutex);
  if (port->lent || port->ending) return nullptr;
  port->wanted = true;
  port->wakeUp.notify_all();
  port->wakeUp.wait(lock, [&] { return !port->wanted || port->finished; });
  return std::move(port->handedOver);
}

void NetworkPorts::giveBack(const std::string& name, bool lostBoard) {
  Port* port = find(name);
  if (port == nullptr) return;
  std::lock_guard lock(port->mutex);
  port->lent = false;
  port->givenBack = Clock::now();
  if (lostBoard) port->gone();
  port->wakeUp.notify_all();
}

} // namespace tarnwick::station
