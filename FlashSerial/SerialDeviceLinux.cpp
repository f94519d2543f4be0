// Linux backend: the raw working settings, built with the C library's termios calls.
// The exact-speed requests need the kernel's termios2 and live in SerialDeviceLinuxSpeed.cpp,
// because <asm/termbits.h> and <termios.h> cannot share a translation unit.
#if defined(__linux__)

#include "FlashSerial/SerialDevice.hpp"

#include <algorithm>
#include <cerrno>
#include <termios.h>

namespace tarnwick::device {

int applyRawSettings(int fd, const TerminalAttributes& original) {
  termios working{};
  working.c_iflag = static_cast<tcflag_t>(original.c_iflag);
  working.c_oflag = static_cast<tcflag_t>(original.c_oflag);
  working.c_cflag = static_cast<tcflag_t>(original.c_cflag);
  working.c_lflag = static_cast<tcflag_t>(original.c_lflag);
  working.c_line = original.c_line;
  std::copy_n(original.c_cc.begin(), std::min<std::size_t>(NCCS, original.c_cc.size()),
              working.c_cc);

  ::cfmakeraw(&working);
  // CIBAUD is cleared so that the input speed follows the output speed set below.
  working.c_cflag &= ~(CSIZE | CSTOPB | PARENB | PARODD | CRTSCTS | CIBAUD);
  working.c_cflag |= CS8 | CREAD | CLOCAL;
  working.c_iflag &= ~(INPCK | ISTRIP | IXON | IXOFF | IXANY);
  working.c_cc[VMIN] = 1;
  working.c_cc[VTIME] = 0;
  ::cfsetspeed(&working, B9600);

  return ::tcsetattr(fd, TCSANOW, &working) == 0 ? 0 : errno;
}

} // namespace tarnwick::device

#endif
