#include <gtest/gtest.h>

#include <climits>
#include <optional>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "FlashSerial/FlashPort.hpp"
#include "FlashSerial/NetworkPort.hpp"
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

TEST(PathCheck, NetworkPortsParseStrictly) {
  struct Case {
    const char* name;
    std::optional<NetworkPortAddress> address;
  };
  using A = NetworkPortAddress;
  const Case cases[] = {
      {"rfc2217://192.168.1.20:2000", A{"192.168.1.20", 2000}},
      {"rfc2217://rack-3.lab.example:4001", A{"rack-3.lab.example", 4001}},
      {"rfc2217://pi:1", A{"pi", 1}},
      {"rfc2217://localhost:65535", A{"localhost", 65535}},
      {"rfc2217://[::1]:2000", A{"::1", 2000}},
      {"rfc2217://[fe80::1:2ff:fe3c:4d5e]:2001", A{"fe80::1:2ff:fe3c:4d5e", 2001}},
      {"rfc2217://[::ffff:10.0.0.1]:7", A{"::ffff:10.0.0.1", 7}},
      {"RFC2217://Pi:2000", A{"Pi", 2000}}, // schemes are case-insensitive
      {"rfc2217://a.b:02000", A{"a.b", 2000}},
      // port out of range, missing or not decimal
      {"rfc2217://pi:0", std::nullopt},
      {"rfc2217://pi:65536", std::nullopt},
      {"rfc2217://pi:100000", std::nullopt},
      {"rfc2217://pi:", std::nullopt},
      {"rfc2217://pi", std::nullopt},
      {"rfc2217://pi:-1", std::nullopt},
      {"rfc2217://pi:+80", std::nullopt},
      {"rfc2217://pi:0x10", std::nullopt},
      {"rfc2217://pi: 80", std::nullopt},
      // host empty or malformed
      {"rfc2217://:2000", std::nullopt},
      {"rfc2217://[]:2000", std::nullopt},
      {"rfc2217://-pi:2000", std::nullopt},
      {"rfc2217://pi-:2000", std::nullopt},
      {"rfc2217://a..b:2000", std::nullopt},
      {"rfc2217://.pi:2000", std::nullopt},
      {"rfc2217://pi.:2000", std::nullopt},
      {"rfc2217://p_i:2000", std::nullopt},
      {"rfc2217://p,i:2000", std::nullopt},
      {"rfc2217://pi),tcp,evil:2000", std::nullopt},
      {"rfc2217://10.0.0:2000", std::nullopt},
      {"rfc2217://300.1.1.1:2000", std::nullopt},
      {"rfc2217://::1:2000", std::nullopt},
      {"rfc2217://[::1:2000", std::nullopt},
      {"rfc2217://[nothex::1]:2000", std::nullopt},
      {"rfc2217://[fe80::1%eth0]:2000", std::nullopt},
      // junk around it
      {"rfc2217://pi:2000/", std::nullopt},
      {"rfc2217://pi:2000?x", std::nullopt},
      {"rfc2217://user@pi:2000", std::nullopt},
      {"rfc2217://pi:2000 ", std::nullopt},
      {" rfc2217://pi:2000", std::nullopt},
      {"rfc2217://[::1]x:2000", std::nullopt},
      {"rfc2217:/pi:2000", std::nullopt},
      {"telnet://pi:2000", std::nullopt},
      {"", std::nullopt},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(parseNetworkPort(c.name), c.address) << c.name;
    EXPECT_EQ(isValidPortName(c.name), c.address.has_value()) << c.name;
  }
  // Whatever follows a NUL still counts (the system's address parser would stop there).
  using namespace std::string_view_literals;
  for (std::string_view name : {"rfc2217://[8::0\0 x]:2041"sv, "rfc2217://[::1\0]:2000"sv,
                                "rfc2217://10.0.0.1\0:2000"sv, "rfc2217://pi\0:2000"sv})
    EXPECT_FALSE(parseNetworkPort(name)) << name.size();
  const std::string longHost = std::string(63, 'a') + "." + std::string(63, 'b');
  EXPECT_TRUE(parseNetworkPort("rfc2217://" + longHost + ":1"));
  EXPECT_FALSE(parseNetworkPort("rfc2217://" + std::string(64, 'a') + ":1"));
  std::string tooLong;
  while (tooLong.size() < 254)
    tooLong += "abc.";
  EXPECT_FALSE(parseNetworkPort("rfc2217://" + tooLong + "x:1"));

  // Names read back the way they were written, IPv6 in brackets.
  EXPECT_EQ((NetworkPortAddress{"::1", 2000}).name(), "rfc2217://[::1]:2000");
  EXPECT_EQ((NetworkPortAddress{"::1", 2000}).server(), "[::1]:2000");
  EXPECT_EQ((NetworkPortAddress{"pi", 4001}).name(), "rfc2217://pi:4001");
  EXPECT_TRUE(looksLikeNetworkPort("rfc2217://"));
  EXPECT_FALSE(looksLikeNetworkPort("rfc2217:"));
  EXPECT_TRUE(isValidPortName("/dev/ttyUSB0"));
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

  // The one place that opens links by name: a malformed network port is refused as a path is.
  for (bool testDevice : {false, true}) {
    try {
      SerialLinkOptions options;
      options.allowsTestDevice = testDevice;
      openSerialLink("rfc2217://pi:0", 115200, options);
      FAIL() << "opened a malformed network port";
    } catch (const FlashPortError& error) {
      EXPECT_EQ(error, FlashPortError::invalidPath("rfc2217://pi:0"));
    }
  }
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
