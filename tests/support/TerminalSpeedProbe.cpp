// Exact speeds need the kernel's termios2, which cannot share a file with <termios.h>.
#include "support/TerminalProbe.hpp"

#include <asm/termbits.h>
#include <stdexcept>
#include <sys/ioctl.h>

namespace tarnwick::testing {

std::uint32_t terminalSpeed(int fd) {
  termios2 settings{};
  if (::ioctl(fd, TCGETS2, &settings) != 0) throw std::runtime_error("TCGETS2 failed");
  return settings.c_ospeed;
}

void setTerminalSpeed(int fd, std::uint32_t rate) {
  termios2 settings{};
  if (::ioctl(fd, TCGETS2, &settings) != 0) throw std::runtime_error("TCGETS2 failed");
  settings.c_cflag &= ~(CBAUD | CIBAUD);
  settings.c_cflag |= BOTHER;
  settings.c_ispeed = rate;
  settings.c_ospeed = rate;
  if (::ioctl(fd, TCSETS2, &settings) != 0) throw std::runtime_error("TCSETS2 failed");
}

} // namespace tarnwick::testing
