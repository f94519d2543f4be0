// Linux backend: settings read and written through the kernel's termios2, which carries both
// speeds as plain numbers. Only this form sets an arbitrary rate (BOTHER) and gives a non-standard
// speed back exactly on close; the C library's tcsetattr would leave such a speed as it is.
#if defined(__linux__)

#include "FlashSerial/SerialDevice.hpp"

#include <algorithm>
#include <asm/termbits.h>
#include <cerrno>
#include <sys/ioctl.h>

namespace tarnwick::device {

int readAttributes(int fd, TerminalAttributes& attributes) {
  termios2 current{};
  if (::ioctl(fd, TCGETS2, &current) != 0) return errno;
  attributes = {};
  attributes.c_iflag = current.c_iflag;
  attributes.c_oflag = current.c_oflag;
  attributes.c_cflag = current.c_cflag;
  attributes.c_lflag = current.c_lflag;
  attributes.c_line = current.c_line;
  std::copy_n(current.c_cc, NCCS, attributes.c_cc.begin());
  attributes.c_ispeed = current.c_ispeed;
  attributes.c_ospeed = current.c_ospeed;
  return 0;
}

int writeAttributes(int fd, const TerminalAttributes& attributes) {
  termios2 wanted{};
  wanted.c_iflag = static_cast<tcflag_t>(attributes.c_iflag);
  wanted.c_oflag = static_cast<tcflag_t>(attributes.c_oflag);
  wanted.c_cflag = static_cast<tcflag_t>(attributes.c_cflag);
  wanted.c_lflag = static_cast<tcflag_t>(attributes.c_lflag);
  wanted.c_line = attributes.c_line;
  std::copy_n(attributes.c_cc.begin(), NCCS, wanted.c_cc);
  wanted.c_ispeed = static_cast<speed_t>(attributes.c_ispeed);
  wanted.c_ospeed = static_cast<speed_t>(attributes.c_ospeed);
  return ::ioctl(fd, TCSETS2, &wanted) == 0 ? 0 : errno;
}

int requestLineSpeed(int fd, std::uint32_t rate, std::int64_t& actual) {
  termios2 settings{};
  if (::ioctl(fd, TCGETS2, &settings) != 0) return errno;
  settings.c_cflag &= ~(CBAUD | CIBAUD);
  settings.c_cflag |= BOTHER | (BOTHER << IBSHIFT);
  settings.c_ispeed = rate;
  settings.c_ospeed = rate;
  if (::ioctl(fd, TCSETS2, &settings) != 0) return errno;
  // Drivers store the rate they really run at, which may be a rounded one or the old rate.
  termios2 applied{};
  if (::ioctl(fd, TCGETS2, &applied) != 0) return errno;
  actual = applied.c_ospeed;
  return 0;
}

} // namespace tarnwick::device

#endif
