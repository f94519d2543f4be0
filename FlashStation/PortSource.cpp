#include "FlashStation/PortSource.hpp"

#include <algorithm>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnwick::station {

namespace {

using Clock = PortSource::Clock;

} // namespace

// MARK: - The scanner

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

std::vector<SerialPortInfo>
ScannerPortSource::withTestDevices(std::vector<SerialPortInfo> ports) const {
  for (const auto& path : testDevices_) {
    struct stat info {};
    const bool listed = std::ranges::any_of(ports, [&](const auto& p) { return p.path == path; });
    if (!listed && ::stat(path.c_str(), &info) == 0 && S_ISCHR(info.st_mode)) {
      ports.push_back({path, std::nullopt, std::nullopt, std::nullopt});
    }
  }
  return ports;
}

// MARK: - Lists handed over

PortFeed::PortFeed() : changed_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

PortFeed::~PortFeed() {
  if (changed_ >= 0) ::close(changed_);
}

void PortFeed::notify() {
  const std::uint64_t one = 1;
  // Only fails when the counter is full, and then a wake-up is pending anyway.
  [[maybe_unused]] ssize_t written = ::write(changed_, &one, sizeof one);
}

void PortFeed::deliver(std::vector<SerialPortInfo> ports) {
  std::lock_guard lock(mutex_);
  current_ = ports;
  unseen_.push_back(std::move(ports));
  notify();
}

std::vector<SerialPortInfo> PortFeed::start() {
  std::lock_guard lock(mutex_);
  unseen_.clear();
  return current_;
}

std::optional<std::vector<SerialPortInfo>> PortFeed::wait(Clock::time_point deadline, int wake) {
  {
    std::lock_guard lock(mutex_);
    if (!unseen_.empty()) {
      auto next = std::move(unseen_.front());
      unseen_.pop_front();
      return next;
    }
  }
  pollfd watched[2] = {{changed_, POLLIN, 0}, {wake, POLLIN, 0}};
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
  ::poll(watched, 2, static_cast<int>(std::clamp<std::int64_t>(left, 0, 60'000)));
  std::uint64_t drained = 0;
  [[maybe_unused]] ssize_t got = ::read(changed_, &drained, sizeof drained);
  std::lock_guard lock(mutex_);
  if (unseen_.empty()) return std::nullopt;
  auto next = std::move(unseen_.front());
  unseen_.pop_front();
  return next;
}

} // namespace tarnwick::station
