#include "FlashSerial/SerialDevice.hpp"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace tarnwick::device {

int openDevice(const std::string& path, int& fd) {
  fd = ::open(path.c_str(), O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  return fd < 0 ? errno : 0;
}

void closeDevice(int fd) { ::close(fd); }

int claimExclusiveUse(int fd) { return ::ioctl(fd, TIOCEXCL) == 0 ? 0 : errno; }

int lockAgainstOtherRuns(int fd) {
  if (::flock(fd, LOCK_EX | LOCK_NB) == 0) return 0;
  return errno == EWOULDBLOCK ? EBUSY : errno;
}

void releaseExclusiveUse(int fd) { ::ioctl(fd, TIOCNXCL); }

namespace {
int modemBits(ModemLines lines) {
  return (lines.dtr ? TIOCM_DTR : 0) | (lines.rts ? TIOCM_RTS : 0);
}
} // namespace

void assertLines(int fd, ModemLines lines) {
  int bits = modemBits(lines);
  ::ioctl(fd, TIOCMBIS, &bits);
}

void clearLines(int fd, ModemLines lines) {
  int bits = modemBits(lines);
  ::ioctl(fd, TIOCMBIC, &bits);
}

Transfer writeSome(int fd, ByteView bytes) {
  ssize_t n = ::write(fd, bytes.data(), bytes.size());
  if (n < 0) return {0, errno};
  return {static_cast<std::size_t>(n), 0};
}

Transfer readSome(int fd, std::span<std::uint8_t> into) {
  ssize_t n = ::read(fd, into.data(), into.size());
  if (n < 0) return {0, errno};
  return {static_cast<std::size_t>(n), 0};
}

InputWait waitForInput(int fd, int milliseconds) {
  pollfd request{fd, POLLIN, 0};
  int result = ::poll(&request, 1, milliseconds);
  if (result < 0) return errno == EINTR ? InputWait::interrupted : InputWait::failed;
  if (result == 0) return InputWait::timedOut;
  // A hang-up that still has data to deliver is read first; the end of file follows.
  if ((request.revents & (POLLERR | POLLHUP | POLLNVAL)) && !(request.revents & POLLIN)) {
    return InputWait::hangUp;
  }
  return InputWait::input;
}

OutputWait waitForOutput(int fd, int milliseconds) {
  pollfd request{fd, POLLOUT, 0};
  int result = ::poll(&request, 1, milliseconds);
  if (result < 0) return OutputWait::failed;
  return result == 0 ? OutputWait::timedOut : OutputWait::ready;
}

void drainOutput(int fd) { ::tcdrain(fd); }

void discardInput(int fd) { ::tcflush(fd, TCIFLUSH); }

void discardQueues(int fd) { ::tcflush(fd, TCIOFLUSH); }

} // namespace tarnwick::device
