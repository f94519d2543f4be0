#pragma once
// The operating system's side of a serial port: thin wrappers around the device calls that
// `FlashPort` makes, so the port's logic holds no system call. The calls shared by POSIX systems
// live in SerialDevicePosix.cpp; the terminal settings and line speed live in one backend per
// platform (SerialDeviceLinux.cpp and SerialDeviceLinuxSpeed.cpp on Linux).
//
// Functions that return `int` give 0 on success and the error number otherwise.

#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "FlashCore/Bytes.hpp"

namespace tarnwick::device {

/// A device's terminal settings in a form every backend can hold: the flag words, the line
/// discipline, the control characters and both speeds in bits per second, non-standard ones
/// included, so that settings read at open can be written back exactly.
struct TerminalAttributes {
  std::uint64_t c_iflag = 0;
  std::uint64_t c_oflag = 0;
  std::uint64_t c_cflag = 0;
  std::uint64_t c_lflag = 0;
  std::uint8_t c_line = 0;
  std::array<std::uint8_t, 32> c_cc{};
  std::uint64_t c_ispeed = 0;
  std::uint64_t c_ospeed = 0;
  bool operator==(const TerminalAttributes&) const = default;
};

/// Bytes moved by one read or write, or the error number that stopped it.
struct Transfer {
  std::size_t count = 0;
  int error = 0;
};

/// What a wait for input saw.
enum class InputWait { input, hangUp, timedOut, interrupted, failed };
/// What a wait for room to write saw.
enum class OutputWait { ready, timedOut, failed };

/// The modem lines a request touches.
struct ModemLines {
  bool dtr = false;
  bool rts = false;
  bool any() const { return dtr || rts; }
};

// Calls common to POSIX systems.

/// Opens read-write, non-blocking, not as controlling terminal, closed on exec.
int openDevice(const std::string& path, int& fd);
void closeDevice(int fd);
int claimExclusiveUse(int fd);
/// Takes an advisory lock on the device for this open description, so another run of this app
/// (as root too) cannot open it; EBUSY when one holds it already.
int lockAgainstOtherRuns(int fd);
void releaseExclusiveUse(int fd);
void assertLines(int fd, ModemLines lines);
void clearLines(int fd, ModemLines lines);
Transfer writeSome(int fd, ByteView bytes);
/// A count of 0 without an error is the end of the file.
Transfer readSome(int fd, std::span<std::uint8_t> into);
/// Waits at most `milliseconds` (0: just looks).
InputWait waitForInput(int fd, int milliseconds);
OutputWait waitForOutput(int fd, int milliseconds);
/// Waits until written output has left the driver.
void drainOutput(int fd);
void discardInput(int fd);
/// Discards what is queued in both directions.
void discardQueues(int fd);

// Calls of the platform backend.

int readAttributes(int fd, TerminalAttributes& attributes);
/// Writes `attributes` back at once, speeds included.
int writeAttributes(int fd, const TerminalAttributes& attributes);
/// Puts the device into raw 8N1 at 9600 bit/s without flow control, starting from `original`
/// so that every other setting (HUPCL among them) keeps its value; applied at once.
int applyRawSettings(int fd, const TerminalAttributes& original);
/// Asks the driver for exactly `rate` bits per second in both directions. On success `actual` is
/// the output speed the driver reports afterwards, which a driver may have rounded.
int requestLineSpeed(int fd, std::uint32_t rate, std::int64_t& actual);

} // namespace tarnwick::device
