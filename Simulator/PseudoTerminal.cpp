#include "Simulator/PseudoTerminal.hpp"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <termios.h>
#include <unistd.h>

namespace tarnwick::simulator {

PseudoTerminal::PseudoTerminal() {
  controller_ = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (controller_ < 0) throw std::runtime_error("posix_openpt failed");
  if (grantpt(controller_) != 0 || unlockpt(controller_) != 0) {
    ::close(controller_);
    throw std::runtime_error("grantpt/unlockpt failed");
  }
  char name[128];
  if (ptsname_r(controller_, name, sizeof name) != 0) {
    ::close(controller_);
    throw std::runtime_error("ptsname_r failed");
  }
  path_ = name;
  ::fcntl(controller_, F_SETFL, ::fcntl(controller_, F_GETFL) | O_NONBLOCK);
  // The controller side is a byte pipe for the tests: no echo, no line discipline.
  termios attributes{};
  if (::tcgetattr(controller_, &attributes) == 0) {
    ::cfmakeraw(&attributes);
    ::tcsetattr(controller_, TCSANOW, &attributes);
  }
}

PseudoTerminal::~PseudoTerminal() { closeController(); }

void PseudoTerminal::closeController() {
  if (controller_ >= 0) ::close(controller_);
  controller_ = -1;
}

void PseudoTerminal::send(ByteView bytes) {
  std::size_t done = 0;
  while (done < bytes.size() && controller_ >= 0) {
    ssize_t n = ::write(controller_, bytes.data() + done, bytes.size() - done);
    if (n > 0) {
      done += static_cast<std::size_t>(n);
    } else if (n < 0 && (errno == EAGAIN || errno == EINTR)) {
      pollfd p{controller_, POLLOUT, 0};
      ::poll(&p, 1, 100);
    } else {
      throw std::runtime_error("pseudo-terminal write failed");
    }
  }
}

Bytes PseudoTerminal::receive(double timeoutSeconds) {
  Bytes result;
  if (controller_ < 0) return result;
  pollfd p{controller_, POLLIN, 0};
  if (::poll(&p, 1, static_cast<int>(timeoutSeconds * 1000 + 0.999)) <= 0) return result;
  std::uint8_t chunk[4096];
  ssize_t n = ::read(controller_, chunk, sizeof chunk);
  if (n > 0) result.assign(chunk, chunk + n);
  return result;
}

Bytes PseudoTerminal::receive(std::size_t count, double timeoutSeconds) {
  using Clock = std::chrono::steady_clock;
  auto deadline = Clock::now() + std::chrono::duration<double>(timeoutSeconds);
  Bytes result;
  while (result.size() < count) {
    double left = std::chrono::duration<double>(deadline - Clock::now()).count();
    if (left <= 0) break;
    Bytes part = receive(left);
    result.insert(result.end(), part.begin(), part.end());
  }
  return result;
}

} // namespace tarnwick::simulator
