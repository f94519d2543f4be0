// FlashPort against real pseudo-terminals. The test holds the controller side; the port opens
// the device side with `allowsTestDevice`, or through a serial-looking alias in /dev where the
// full checks of a real adapter are wanted.
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

#include "FlashSerial/FlashPort.hpp"
#include "FlashSerial/FlashPortError.hpp"
#include "Localization/Language.hpp"
#include "Simulator/PseudoTerminal.hpp"
#include "support/TerminalProbe.hpp"

using namespace tarnwick;
using namespace tarnwick::simulator;
using namespace tarnwick::testing;

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

Bytes bytes(std::string_view text) { return Bytes(text.begin(), text.end()); }

// Runs `operation` and hands back the FlashPortError it threw, if any.
template <class Operation> std::optional<FlashPortError> errorOf(Operation&& operation) {
  try {
    operation();
  } catch (const FlashPortError& error) {
    return error;
  }
  return std::nullopt;
}

// A second descriptor on the device side, opened before the port claims it, to see how much
// input waits in the driver without taking it away from the port.
class InputQueue {
public:
  explicit InputQueue(const std::string& path)
      : fd_(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {}
  ~InputQueue() {
    if (fd_ >= 0) ::close(fd_);
  }
  InputQueue(const InputQueue&) = delete;
  InputQueue& operator=(const InputQueue&) = delete;

  int queued() const {
    int count = -1;
    ::ioctl(fd_, FIONREAD, &count);
    return count;
  }
  // Waits until at least `count` bytes wait in the driver.
  bool waitFor(int count) const {
    const auto deadline = Clock::now() + std::chrono::seconds(5);
    while (queued() < count) {
      if (Clock::now() > deadline) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
  }

private:
  int fd_;
};

// The settings of the device side, read through the controller.
struct Settings {
  termios attributes{};
  std::uint32_t speed = 0;
};

Settings settingsOf(const PseudoTerminal& pty) {
  Settings settings;
  EXPECT_EQ(::tcgetattr(pty.controller(), &settings.attributes), 0);
  settings.speed = terminalSpeed(pty.controller());
  return settings;
}

void expectSameSettings(const Settings& expected, const Settings& actual) {
  EXPECT_EQ(expected.attributes.c_iflag, actual.attributes.c_iflag);
  EXPECT_EQ(expected.attributes.c_oflag, actual.attributes.c_oflag);
  EXPECT_EQ(expected.attributes.c_cflag, actual.attributes.c_cflag);
  EXPECT_EQ(expected.attributes.c_lflag, actual.attributes.c_lflag);
  EXPECT_EQ(expected.attributes.c_line, actual.attributes.c_line);
  for (int i = 0; i < NCCS; ++i)
    EXPECT_EQ(expected.attributes.c_cc[i], actual.attributes.c_cc[i]);
  EXPECT_EQ(expected.speed, actual.speed);
}

// Gives the device side settings no raw port would have: a cooked terminal with flow control,
// two stop bits and a non-standard speed, so that every restored bit shows.
void makeCookedAt(const PseudoTerminal& pty, std::uint32_t speed) {
  termios cooked{};
  ASSERT_EQ(::tcgetattr(pty.controller(), &cooked), 0);
  cooked.c_iflag |= ICRNL | IXON | IXOFF | IXANY | INPCK | ISTRIP | BRKINT;
  cooked.c_oflag |= OPOST | ONLCR;
  cooked.c_lflag |= ICANON | ECHO | ECHOE | ISIG | IEXTEN;
  cooked.c_cflag |= HUPCL | CSTOPB | CRTSCTS;
  cooked.c_cflag &= ~CLOCAL;
  cooked.c_cc[VMIN] = 4;
  cooked.c_cc[VTIME] = 7;
  ASSERT_EQ(::tcsetattr(pty.controller(), TCSANOW, &cooked), 0);
  setTerminalSpeed(pty.controller(), speed);
  const Settings now = settingsOf(pty);
  ASSERT_TRUE(now.attributes.c_cflag & CRTSCTS);
  ASSERT_TRUE(now.attributes.c_cflag & CSTOPB);
  ASSERT_TRUE(now.attributes.c_lflag & ICANON);
  ASSERT_EQ(now.speed, speed);
}

void expectRawEightNOne(const termios& working) {
  EXPECT_EQ(working.c_lflag & (ICANON | ECHO | ECHONL | ISIG | IEXTEN), 0u);
  EXPECT_EQ(working.c_oflag & OPOST, 0u);
  EXPECT_EQ(working.c_iflag &
                (ICRNL | INLCR | IGNCR | IXON | IXOFF | IXANY | INPCK | ISTRIP | BRKINT | PARMRK),
            0u);
  EXPECT_EQ(working.c_cflag & CSIZE, static_cast<tcflag_t>(CS8));
  EXPECT_EQ(working.c_cflag & (CSTOPB | PARENB | PARODD | CRTSCTS), 0u);
  EXPECT_TRUE(working.c_cflag & CREAD);
  EXPECT_TRUE(working.c_cflag & CLOCAL);
  EXPECT_EQ(working.c_cc[VMIN], 1);
  EXPECT_EQ(working.c_cc[VTIME], 0);
}

int openDescriptorCount() {
  int count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    ++count;
  }
  return count;
}

} // namespace

TEST(FlashPort, RawWhileOpenAndGivenBackExactlyOnClose) {
  PseudoTerminal pty;
  makeCookedAt(pty, 250000);
  const Settings before = settingsOf(pty);
  {
    FlashPort port(pty.path(), 460800, true);
    EXPECT_FALSE(port.isOpen());
    port.open();
    ASSERT_TRUE(port.isOpen());
    const Settings working = settingsOf(pty);
    expectRawEightNOne(working.attributes);
    EXPECT_TRUE(working.attributes.c_cflag & HUPCL); // bits the port does not own keep their value
    EXPECT_EQ(working.speed, 460800u);
    EXPECT_EQ(port.baudRate(), 460800);

    // Any rate, standard or not.
    port.setBaudRate(1234567);
    EXPECT_EQ(settingsOf(pty).speed, 1234567u);
    EXPECT_EQ(port.baudRate(), 1234567);

    port.close();
    EXPECT_FALSE(port.isOpen());
    expectSameSettings(before, settingsOf(pty));
    port.close(); // closing twice does nothing

    // A closed port opens again, at the speed it last had.
    port.open();
    EXPECT_EQ(settingsOf(pty).speed, 1234567u);
    expectRawEightNOne(settingsOf(pty).attributes);
  } // destruction closes
  expectSameSettings(before, settingsOf(pty));
}

TEST(FlashPort, HoldsTheDeviceExclusively) {
  PseudoTerminal pty;
  FlashPort port(pty.path(), 115200, true);
  port.open();
  // Root may open a terminal held exclusively, so a second port in this process (run as root)
  // would get in. An ordinary process may not: the second port lives in a child without the
  // administrator capability.
  EXPECT_TRUE(isHeldExclusively(pty.path()));
  const Settings during = settingsOf(pty);
  const int refused = runWithoutAdminCapability([&] {
    FlashPort second(pty.path(), 9600, true);
    auto error = errorOf([&] { second.open(); });
    if (!error) return 1;
    return *error == FlashPortError::busy(pty.path()) && !second.isOpen() ? 0 : 2;
  });
  EXPECT_EQ(refused, 0);
  expectSameSettings(during, settingsOf(pty)); // the refused open changed nothing

  port.close();
  EXPECT_FALSE(isHeldExclusively(pty.path()));
  const int admitted = runWithoutAdminCapability([&] {
    FlashPort second(pty.path(), 9600, true);
    second.open();
    return second.isOpen() ? 0 : 1;
  });
  EXPECT_EQ(admitted, 0);
}

// Exclusive use does not keep root out, so two runs as root would both write one board. The
// advisory lock does: a second process with every right of the first is refused and told which
// process holds the board, and gets it once that process is gone.
TEST(FlashPort, ASecondProcessIsRefusedEvenWithRootsRights) {
  LanguageOverride english(Language::en);
  PseudoTerminal pty;
  int opened[2], release[2];
  ASSERT_EQ(::pipe2(opened, O_CLOEXEC), 0);
  ASSERT_EQ(::pipe2(release, O_CLOEXEC), 0);
  const pid_t holder = ::fork();
  ASSERT_GE(holder, 0);
  if (holder == 0) {
    ::close(opened[0]);
    ::close(release[1]);
    int result = 1;
    try {
      FlashPort port(pty.path(), 115200, true);
      port.open();
      char ready = 'y', done = 0;
      result = ::write(opened[1], &ready, 1) == 1 && ::read(release[0], &done, 1) >= 0 ? 0 : 2;
    } catch (...) {
    }
    ::_exit(result);
  }
  ::close(opened[1]);
  ::close(release[0]);
  char ready = 0;
  ASSERT_EQ(::read(opened[0], &ready, 1), 1) << "the first process could not open the port";

  FlashPort second(pty.path(), 9600, true);
  auto error = errorOf([&] { second.open(); });
  ASSERT_TRUE(error) << "a second process opened a port in use";
  EXPECT_EQ(*error, FlashPortError::busy(pty.path()));
  EXPECT_NE(error->message().find("(process " + std::to_string(holder) + ")"), std::string::npos)
      << error->message();
  EXPECT_FALSE(second.isOpen());

  ::close(release[1]);
  int status = -1;
  ASSERT_EQ(::waitpid(holder, &status, 0), holder);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  ::close(opened[0]);
  second.open();
  EXPECT_TRUE(second.isOpen());
}

TEST(FlashPort, OpenStartsCleanAndOpeningAgainTouchesNothing) {
  PseudoTerminal pty;
  InputQueue queue(pty.path());
  pty.send(bytes("left over from before"));
  ASSERT_TRUE(queue.waitFor(21));
  FlashPort port(pty.path(), 115200, true);
  port.open();
  EXPECT_EQ(queue.queued(), 0);
  EXPECT_TRUE(port.read(0.05).empty());

  const int descriptors = openDescriptorCount();
  port.open();
  EXPECT_EQ(openDescriptorCount(), descriptors);
  EXPECT_TRUE(port.isOpen());
  port.write(bytes("ok"));
  EXPECT_EQ(pty.receive(2, 5.0), bytes("ok"));
}

TEST(FlashPort, ReadsWithinTheirTimeLimits) {
  PseudoTerminal pty;
  InputQueue queue(pty.path());
  FlashPort port(pty.path(), 115200, true);
  port.open();

  // Nothing arrives: empty after the timeout; a negative or NaN timeout does not wait.
  auto start = Clock::now();
  EXPECT_TRUE(port.read(0.2).empty());
  EXPECT_GE(secondsSince(start), 0.19);
  start = Clock::now();
  EXPECT_TRUE(port.read(-1.0).empty());
  EXPECT_TRUE(port.read(std::nan("")).empty());
  EXPECT_TRUE(port.read(0.0).empty());
  EXPECT_LT(secondsSince(start), 1.5);

  // Waiting data is taken by a look without waiting, and by a huge timeout without overflow.
  pty.send(bytes("hello"));
  ASSERT_TRUE(queue.waitFor(5));
  EXPECT_EQ(port.read(0.0), bytes("hello"));
  pty.send(bytes("again"));
  ASSERT_TRUE(queue.waitFor(5));
  EXPECT_EQ(port.read(-2.0), bytes("again"));
  pty.send(bytes("later"));
  ASSERT_TRUE(queue.waitFor(5));
  EXPECT_EQ(port.read(1e300), bytes("later"));

  // Data arriving during the wait ends it.
  const int reader = currentThreadId();
  std::thread sender([&] {
    if (waitUntilBlockedInPoll(reader, 5.0)) pty.send(bytes("wake"));
  });
  start = Clock::now();
  Bytes woken;
  const auto error = errorOf([&] { woken = port.read(10.0); });
  sender.join();
  EXPECT_FALSE(error);
  EXPECT_EQ(woken, bytes("wake"));
  EXPECT_LT(secondsSince(start), 8.0);
}

TEST(FlashPort, CountReadKeepsTheSurplusForTheNextRead) {
  PseudoTerminal pty;
  InputQueue queue(pty.path());
  FlashPort port(pty.path(), 115200, true);
  port.open();

  pty.send(bytes("0123456789"));
  ASSERT_TRUE(queue.waitFor(10));
  EXPECT_EQ(port.read(3, 1.0), bytes("012"));
  EXPECT_EQ(queue.queued(), 0); // all ten left the driver in one read

  // With the other side gone any device call reports the disconnection, so what follows proves
  // that the surplus and an empty count come without one.
  pty.closeController();
  EXPECT_EQ(port.read(5.0), bytes("3456789"));
  EXPECT_TRUE(port.read(0, 1.0).empty());
  EXPECT_EQ(errorOf([&] { port.read(1.0); }), FlashPortError::disconnected());
}

TEST(FlashPort, CountReadCollectsPiecesAndStopsAtItsDeadline) {
  PseudoTerminal pty;
  FlashPort port(pty.path(), 115200, true);
  port.open();

  pty.send(bytes("ab"));
  const int reader = currentThreadId();
  std::thread sender([&] {
    if (waitUntilBlockedInPoll(reader, 5.0)) pty.send(bytes("cdefg"));
  });
  auto start = Clock::now();
  Bytes collected;
  const auto error = errorOf([&] { collected = port.read(5, 10.0); });
  sender.join();
  EXPECT_FALSE(error);
  EXPECT_EQ(collected, bytes("abcde"));
  EXPECT_LT(secondsSince(start), 8.0);
  EXPECT_EQ(port.read(2, 5.0), bytes("fg"));

  // Too little arrives: what came, once the time is up, without an error.
  pty.send(bytes("xy"));
  start = Clock::now();
  EXPECT_EQ(port.read(4, 0.3), bytes("xy"));
  EXPECT_GE(secondsSince(start), 0.29);
}

TEST(FlashPort, SurplusOutlivesCloseUntilFlushed) {
  PseudoTerminal pty;
  InputQueue queue(pty.path());
  FlashPort port(pty.path(), 115200, true);
  port.open();
  pty.send(bytes("0123456789"));
  ASSERT_TRUE(queue.waitFor(10));
  ASSERT_EQ(port.read(3, 1.0), bytes("012"));

  // Closing and opening leave the surplus alone.
  port.close();
  port.open();
  EXPECT_EQ(port.read(0.0), bytes("3456789"));

  // Flushing a closed port drops the surplus without a device call.
  pty.send(bytes("abcdef"));
  ASSERT_TRUE(queue.waitFor(6));
  ASSERT_EQ(port.read(2, 1.0), bytes("ab"));
  port.close();
  port.flushInput();
  port.open();
  EXPECT_TRUE(port.read(0.05).empty());

  // Flushing an open port drops the surplus and what waits in the driver.
  pty.send(bytes("0123456789"));
  ASSERT_TRUE(queue.waitFor(10));
  ASSERT_EQ(port.read(3, 1.0), bytes("012"));
  pty.send(bytes("stale"));
  ASSERT_TRUE(queue.waitFor(5));
  port.flushInput();
  EXPECT_EQ(queue.queued(), 0);
  EXPECT_TRUE(port.read(0.05).empty());
  pty.send(bytes("fresh"));
  EXPECT_EQ(port.read(5, 5.0), bytes("fresh"));
}

TEST(FlashPort, WritesEverythingAndGivesUpWhenOutputStaysBlocked) {
  PseudoTerminal pty;
  FlashPort port(pty.path(), 115200, true);
  port.open();

  port.write(Bytes{}); // nothing to send returns at once
  port.write(bytes("abc"));
  EXPECT_EQ(pty.receive(3, 5.0), bytes("abc"));

  // Far more than the driver buffers: the port waits for room each time the other side reads.
  Bytes large(300000);
  for (std::size_t i = 0; i < large.size(); ++i)
    large[i] = static_cast<std::uint8_t>(i * 7 + 1);
  Bytes received;
  std::thread drain([&] { received = pty.receive(large.size(), 30.0); });
  const auto writeError = errorOf([&] { port.write(large); });
  drain.join();
  EXPECT_FALSE(writeError);
  EXPECT_EQ(received, large);

  // Nobody reads: one wait of two seconds, then ETIMEDOUT. The port stays open.
  const auto start = Clock::now();
  const auto error = errorOf([&] { port.write(Bytes(1 << 20, 0x55)); });
  const double waited = secondsSince(start);
  EXPECT_EQ(error, FlashPortError::writeFailed(ETIMEDOUT));
  EXPECT_GE(waited, 1.9);
  EXPECT_LT(waited, 20.0);
  EXPECT_TRUE(port.isOpen());
}

TEST(FlashPort, OtherSideGoingAwayDuringAReadIsADisconnection) {
  PseudoTerminal pty;
  FlashPort port(pty.path(), 115200, true);
  port.open();

  std::optional<FlashPortError> error;
  std::atomic<int> reader{0};
  auto start = Clock::now();
  std::thread reading([&] {
    reader = currentThreadId();
    error = errorOf([&] { port.read(10.0); });
  });
  while (reader == 0)
    std::this_thread::yield();
  const bool blocked = waitUntilBlockedInPoll(reader, 5.0);
  pty.closeController();
  reading.join();
  EXPECT_TRUE(blocked);
  EXPECT_EQ(error, FlashPortError::disconnected());
  EXPECT_LT(secondsSince(start), 8.0);

  // The owner closes; the port does not close itself.
  EXPECT_TRUE(port.isOpen());
  EXPECT_EQ(errorOf([&] { port.read(3, 0.5); }), FlashPortError::disconnected());
  port.close();
  EXPECT_FALSE(port.isOpen());
}

TEST(FlashPort, OtherSideGoingAwayDuringAWriteIsADisconnection) {
  PseudoTerminal pty;
  FlashPort port(pty.path(), 115200, true);
  port.open();

  std::optional<FlashPortError> error;
  std::atomic<int> writer{0};
  std::thread writing([&] {
    writer = currentThreadId();
    error = errorOf([&] { port.write(Bytes(1 << 20, 0xA5)); });
  });
  while (writer == 0)
    std::this_thread::yield();
  // The write blocks once the driver is full; then the other side goes away.
  const bool blocked = waitUntilBlockedInPoll(writer, 5.0);
  pty.closeController();
  writing.join();
  EXPECT_TRUE(blocked);
  EXPECT_EQ(error, FlashPortError::disconnected());
  EXPECT_EQ(errorOf([&] { port.write(bytes("x")); }), FlashPortError::disconnected());
  EXPECT_TRUE(port.isOpen());
}

TEST(FlashPort, ClosedPortRefusesInputOutputAndSpeed) {
  PseudoTerminal pty;
  FlashPort port(pty.path(), 115200, true);
  const auto checkClosed = [&] {
    EXPECT_EQ(errorOf([&] { port.setBaudRate(9600); }), FlashPortError::notOpen());
    EXPECT_EQ(errorOf([&] { port.write(bytes("x")); }), FlashPortError::notOpen());
    EXPECT_EQ(errorOf([&] { port.write(Bytes{}); }), FlashPortError::notOpen());
    EXPECT_EQ(errorOf([&] { port.read(0.1); }), FlashPortError::notOpen());
    EXPECT_EQ(errorOf([&] { port.read(4, 0.1); }), FlashPortError::notOpen());
    // These never fail.
    port.setLines(true, false);
    port.setLines(std::nullopt, true);
    port.flushInput();
    port.close();
    EXPECT_FALSE(port.isOpen());
    EXPECT_EQ(port.baudRate(), 115200);
  };
  checkClosed(); // never opened
  port.open();
  port.close();
  checkClosed(); // closed again
  EXPECT_EQ(port.path(), pty.path());
  EXPECT_TRUE(port.allowsTestDevice());
}

TEST(FlashPort, ModemLinesOnADeviceWithoutThem) {
  // A pseudo-terminal has no DTR or RTS: every request is refused by the driver and ignored.
  PseudoTerminal pty;
  FlashPort port(pty.path(), 115200, true);
  port.open();
  const std::optional<bool> values[] = {std::nullopt, true, false};
  for (auto dtr : values) {
    for (auto rts : values)
      port.setLines(dtr, rts);
  }
  port.write(bytes("still"));
  EXPECT_EQ(pty.receive(5, 5.0), bytes("still"));
}

TEST(FlashPort, TestDevicesLetARefusedSpeedPass) {
  PseudoTerminal pty;
  FlashPort port(pty.path(), 0, true);
  port.open(); // 0 is never asked of a driver; the port stays at its opening speed
  EXPECT_TRUE(port.isOpen());
  EXPECT_EQ(port.baudRate(), 0);
  EXPECT_EQ(settingsOf(pty).speed, 9600u);
  port.setBaudRate(-1);
  EXPECT_EQ(port.baudRate(), -1);
  port.setBaudRate(std::int64_t{1} << 40);
  EXPECT_EQ(port.baudRate(), std::int64_t{1} << 40);
  EXPECT_EQ(settingsOf(pty).speed, 9600u);
}

TEST(FlashPort, RealAdapterChecksThroughASerialName) {
  PseudoTerminal pty;
  DeviceAlias alias(pty.path());
  if (!alias.created()) GTEST_SKIP() << "cannot create a device name in /dev (needs root)";
  ASSERT_TRUE(FlashPort::isValidPath(alias.path()));
  makeCookedAt(pty, 250000);
  const Settings before = settingsOf(pty);

  // A speed refused during open: settings given back, exclusive use released, port closed.
  FlashPort refused(alias.path(), 0);
  EXPECT_EQ(errorOf([&] { refused.open(); }), FlashPortError::unsupportedBaudRate(0));
  EXPECT_FALSE(refused.isOpen());
  expectSameSettings(before, settingsOf(pty));
  EXPECT_FALSE(isHeldExclusively(pty.path()));

  // A speed refused on an open port: still open at the old speed.
  FlashPort port(alias.path(), 115200);
  port.open();
  EXPECT_TRUE(isHeldExclusively(pty.path()));
  EXPECT_EQ(settingsOf(pty).speed, 115200u);
  for (std::int64_t rate : {std::int64_t{-5}, std::int64_t{0}, std::int64_t{5000000000}}) {
    EXPECT_EQ(errorOf([&] { port.setBaudRate(rate); }), FlashPortError::unsupportedBaudRate(rate));
    EXPECT_TRUE(port.isOpen());
    EXPECT_EQ(port.baudRate(), 115200);
    EXPECT_EQ(settingsOf(pty).speed, 115200u);
  }
  port.setBaudRate(921600);
  EXPECT_EQ(port.baudRate(), 921600);
  EXPECT_EQ(settingsOf(pty).speed, 921600u);
  port.close();
  expectSameSettings(before, settingsOf(pty));
  EXPECT_FALSE(isHeldExclusively(pty.path()));
}
