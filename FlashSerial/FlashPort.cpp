#include "FlashSerial/FlashPort.hpp"

#include <cerrno>
#include <climits>
#include <cmath>
#include <utility>

namespace tarnwick {

namespace {

bool wouldBlock(int error) { return error == EAGAIN || error == EWOULDBLOCK; }

} // namespace

FlashPort::FlashPort(std::string path, std::int64_t baudRate, bool allowsTestDevice)
    : path_(std::move(path)), baudRate_(baudRate), allowsTestDevice_(allowsTestDevice) {}

FlashPort::~FlashPort() { close(); }

bool FlashPort::isValidPath(std::string_view path) {
  constexpr std::string_view directory = "/dev/";
  if (!path.starts_with(directory)) return false;
  const std::string_view name = path.substr(directory.size());
  if (name.find('/') != std::string_view::npos) return false;
  if (name.find("..") != std::string_view::npos) return false;
  if (name.size() >= 128) return false;
  if (name.starts_with("cu.") || name.starts_with("tty.")) return true;
  // Case matters: "ttyS0" is a UART, "ttys003" a pseudo-terminal.
  for (std::string_view family : {"ttyUSB", "ttyACM", "ttyS", "ttyAMA", "ttyTHS", "rfcomm"}) {
    if (name.starts_with(family) && name.size() > family.size()) return true;
  }
  return false;
}

void FlashPort::open() {
  if (fd_ >= 0) return;
  if (!allowsTestDevice_ && !isValidPath(path_)) throw FlashPortError::invalidPath(path_);

  int fd = -1;
  if (int error = device::openDevice(path_, fd)) {
    if (error == EBUSY) throw FlashPortError::busy(path_);
    throw FlashPortError::openFailed(path_, error);
  }
  // TIOCEXCL does not bind root; an advisory lock does, so two runs never write one board.
  // Every program of this app opens its ports here and takes it.
  if (int error = device::lockAgainstOtherRuns(fd)) {
    device::closeDevice(fd);
    if (error == EBUSY) throw FlashPortError::busy(path_);
    throw FlashPortError::openFailed(path_, error);
  }
  if (int error = device::claimExclusiveUse(fd); error != 0 && !allowsTestDevice_) {
    device::closeDevice(fd);
    if (error == EBUSY) throw FlashPortError::busy(path_);
    throw FlashPortError::configurationFailed(error);
  }
  if (int error = device::readAttributes(fd, originalAttributes_)) {
    abandon(fd, false);
    throw FlashPortError::configurationFailed(error);
  }
  if (int error = device::applyRawSettings(fd, originalAttributes_)) {
    abandon(fd, true);
    throw FlashPortError::configurationFailed(error);
  }
  fd_ = fd;
  try {
    setBaudRate(baudRate_);
  } catch (const FlashPortError&) {
    close();
    throw;
  }
  device::discardQueues(fd_);
}

void FlashPort::abandon(int fd, bool attributesRead) noexcept {
  if (attributesRead) device::writeAttributes(fd, originalAttributes_);
  // On Linux the exclusive flag belongs to the terminal, not the descriptor: it would outlive
  // the close and lock everybody else out.
  device::releaseExclusiveUse(fd);
  device::closeDevice(fd);
}

void FlashPort::close() noexcept {
  if (fd_ < 0) return;
  abandon(fd_, true);
  fd_ = -1;
}

void FlashPort::setBaudRate(std::int64_t rate) {
  if (fd_ < 0) throw FlashPortError::notOpen();
  device::drainOutput(fd_);
  // Rates the request cannot carry count as refused without asking; 0 would hang up the line.
  bool honoured = false;
  if (rate > 0 && rate <= UINT32_MAX) {
    std::int64_t actual = 0;
    honoured = device::requestLineSpeed(fd_, static_cast<std::uint32_t>(rate), actual) == 0 &&
               lineSpeedHonoured(rate, actual);
  }
  if (!honoured && !allowsTestDevice_) throw FlashPortError::unsupportedBaudRate(rate);
  baudRate_ = rate;
}

void FlashPort::setLines(std::optional<bool> dtr, std::optional<bool> rts) {
  if (fd_ < 0) return;
  const device::ModemLines set{dtr == true, rts == true};
  const device::ModemLines cleared{dtr == false, rts == false};
  if (set.any()) device::assertLines(fd_, set);
  if (cleared.any()) device::clearLines(fd_, cleared);
}

void FlashPort::write(ByteView bytes) {
  if (fd_ < 0) throw FlashPortError::notOpen();
  while (!bytes.empty()) {
    const device::Transfer written = device::writeSome(fd_, bytes);
    if (written.error == 0) {
      bytes = bytes.subspan(written.count);
    } else if (written.error == EINTR) {
      continue;
    } else if (wouldBlock(written.error)) {
      if (device::waitForOutput(fd_, writeWaitMilliseconds) == device::OutputWait::timedOut) {
        throw FlashPortError::writeFailed(ETIMEDOUT);
      }
    } else if (written.error == EIO || written.error == ENXIO) {
      throw FlashPortError::disconnected();
    } else {
      throw FlashPortError::writeFailed(written.error);
    }
  }
}

Bytes FlashPort::read(double timeout) {
  if (fd_ < 0) throw FlashPortError::notOpen();
  if (!pending_.empty()) return std::exchange(pending_, {});

  switch (device::waitForInput(fd_, waitMilliseconds(timeout))) {
  case device::InputWait::input: break;
  case device::InputWait::timedOut:
  case device::InputWait::interrupted: return {};
  case device::InputWait::hangUp:
  case device::InputWait::failed: throw FlashPortError::disconnected();
  }

  const device::Transfer received = device::readSome(fd_, buffer_);
  if (received.error == 0) {
    if (received.count == 0) throw FlashPortError::disconnected(); // end of file
    const auto first = buffer_.begin();
    return Bytes(first, first + static_cast<std::ptrdiff_t>(received.count));
  }
  if (wouldBlock(received.error) || received.error == EINTR) return {};
  throw FlashPortError::disconnected();
}

Bytes FlashPort::read(std::size_t count, double timeout) {
  return collectBytes([this](double left) { return read(left); }, count, timeout, pending_);
}

void FlashPort::flushInput() {
  pending_.clear();
  if (fd_ >= 0) device::discardInput(fd_);
}

bool lineSpeedHonoured(std::int64_t requested, std::int64_t actual) {
  if (requested <= 0 || actual <= 0) return false;
  const std::int64_t difference = actual > requested ? actual - requested : requested - actual;
  return difference * 100 <= requested * 3;
}

int waitMilliseconds(double seconds) {
  if (!(seconds > 0)) return 0;
  const double milliseconds = std::ceil(seconds * 1000.0);
  if (milliseconds >= static_cast<double>(INT_MAX)) return INT_MAX;
  return static_cast<int>(milliseconds);
}

} // namespace tarnwick
