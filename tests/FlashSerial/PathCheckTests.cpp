#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "FlashSerial/FlashPort.hpp"
#include "FlashSerial/SerialDevices.hpp"

using namespace tarnwick;

TEST(PathCheck, AcceptsSerialAdaptersOnly) {
  for (const char* path :
       {"/dev/cu.usbserial-1410", "/dev/tty.usbmodem1101", "/dev/cu.", "/dev/ttyUSB0",
        "/dev/ttyUSB12", "/dev/ttyACM0", "/dev/ttyS0", "/dev/ttyS31", "/dev/ttyAMA0",
        "/dev/ttyTHS1", "/dev/rfcomm0", "/dev/cu.usbmodem.1"}) {
    EXPECT_TRUE(FlashPort::isValidPath(path)) << path;
  }
  for (const char* path :
       {// pseudo-terminals, consoles and the controlling terminal
        "/dev/ttys003", "/dev/pts/3", "/dev/ptmx", "/dev/tty", "/dev/tty0", "/dev/tty1",
        "/dev/tty63", "/dev/console",
        // nested, climbing out, or elsewhere
        "/dev/cu.a/b", "/dev/cu..x", "/dev/ttyUSB0/..", "/dev/ttyS..", "/dev/../dev/ttyUSB0",
        "/tmp/ttyUSB0", "dev/ttyUSB0", "/dev//ttyUSB0", "", "/dev/",
        // a family name is not a device; case matters
        "/dev/ttyUSB", "/dev/ttyACM", "/dev/rfcomm", "/dev/ttyusb0", "/dev/TTYUSB0", "/dev/cu",
        "/dev/ttyX0", "/dev/serial0"}) {
    EXPECT_FALSE(FlashPort::isValidPath(path)) << path;
  }
  // The name after "/dev/" must stay under 128 characters.
  const std::string longest = "/dev/cu." + std::string(124, 'x');
  ASSERT_EQ(longest.size() - 5, 127u);
  EXPECT_TRUE(FlashPort::isValidPath(longest));
  EXPECT_FALSE(FlashPort::isValidPath(longest + "x"));
  EXPECT_FALSE(FlashPort::isValidPath("/dev/ttyUSB" + std::string(122, '0')));
}

TEST(PathCheck, OpenRefusesAnInvalidPathUnlessTestDevicesAreAllowed) {
  FlashPort port("/dev/pts/0", 115200);
  try {
    port.open();
    FAIL() << "opened a pseudo-terminal as a serial adapter";
  } catch (const FlashPortError& error) {
    EXPECT_EQ(error, FlashPortError::invalidPath("/dev/pts/0"));
  }
  EXPECT_FALSE(port.isOpen());

  // Without the path check a missing device is reported as such.
  FlashPort missing("/dev/cu.tarnwick-no-such-device", 115200, true);
  try {
    missing.open();
    FAIL() << "opened a missing device";
  } catch (const FlashPortError& error) {
    EXPECT_EQ(error, FlashPortError::openFailed("/dev/cu.tarnwick-no-such-device", ENOENT));
  }
  EXPECT_FALSE(missing.isOpen());
}

TEST(LineSpeed, ReadBackWithinThreePercentCounts) {
  EXPECT_TRUE(lineSpeedHonoured(115200, 115200));
  EXPECT_TRUE(lineSpeedHonoured(100000, 97000));  // exactly 3 % below
  EXPECT_TRUE(lineSpeedHonoured(100000, 103000)); // exactly 3 % above
  EXPECT_FALSE(lineSpeedHonoured(100000, 96999));
  EXPECT_FALSE(lineSpeedHonoured(100000, 103001));
  // A driver that fell back to its old speed, or one that cannot get near the rate.
  EXPECT_FALSE(lineSpeedHonoured(921600, 9600));
  EXPECT_FALSE(lineSpeedHonoured(250000, 230400));
  EXPECT_TRUE(lineSpeedHonoured(250000, 250000));
  EXPECT_FALSE(lineSpeedHonoured(115200, 0));
  EXPECT_FALSE(lineSpeedHonoured(0, 0));
  EXPECT_TRUE(lineSpeedHonoured(4000000000, 4000000000));
}

TEST(LineSpeed, TimeoutsBecomeWholeMillisecondsRoundedUp) {
  EXPECT_EQ(waitMilliseconds(1.0), 1000);
  EXPECT_EQ(waitMilliseconds(0.25), 250);
  EXPECT_EQ(waitMilliseconds(0.0001), 1);
  EXPECT_EQ(waitMilliseconds(0.0015), 2);
  EXPECT_EQ(waitMilliseconds(0.0), 0);
  EXPECT_EQ(waitMilliseconds(-3.0), 0);
  EXPECT_EQ(waitMilliseconds(std::nan("")), 0);
  EXPECT_EQ(waitMilliseconds(1e12), INT_MAX);
  EXPECT_EQ(waitMilliseconds(INFINITY), INT_MAX);
  EXPECT_EQ(waitMilliseconds(-INFINITY), 0);
}

TEST(SerialDevices, ListsTheValidNamesOfADirectorySorted) {
  namespace fs = std::filesystem;
  const fs::path dir =
      fs::temp_directory_path() / ("tarnwick-devices-" + std::to_string(::getpid()));
  fs::remove_all(dir);
  fs::create_directories(dir / "pts");
  fs::create_directories(dir / "ttyUSB9"); // a directory is no device
  for (const char* name : {"ttyUSB0", "ttyUSB10", "ttyUSB2", "ttyACM0", "ttyS0", "ttyAMA0",
                           "ttyTHS1", "rfcomm0", "cu.usbserial-1410", "tty.usbmodem1101", "ttys003",
                           "tty", "tty0", "tty1", "console", "ptmx", "null"}) {
    std::ofstream(dir / name).put('\0');
  }
  std::ofstream(dir / "pts" / "0").put('\0');
  fs::create_symlink(dir / "ttyACM0", dir / "ttyACM5");
  fs::create_symlink(dir / "gone", dir / "ttyUSB7"); // its device went away

  const std::string base = dir.string() + "/";
  const std::vector<std::string> expected = {base + "cu.usbserial-1410",
                                             base + "rfcomm0",
                                             base + "tty.usbmodem1101",
                                             base + "ttyACM0",
                                             base + "ttyACM5",
                                             base + "ttyAMA0",
                                             base + "ttyS0",
                                             base + "ttyTHS1",
                                             base + "ttyUSB0",
                                             base + "ttyUSB10",
                                             base + "ttyUSB2"};
  EXPECT_EQ(serialDevicePaths(dir.string()), expected);
  EXPECT_TRUE(serialDevicePaths((dir / "missing").string()).empty());
  fs::remove_all(dir);

  // The real device directory never lists pseudo-terminals or consoles.
  for (const std::string& path : serialDevicePaths()) {
    EXPECT_TRUE(FlashPort::isValidPath(path)) << path;
  }
}
