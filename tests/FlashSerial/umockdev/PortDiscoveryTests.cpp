// The real libudev code against fake sysfs devices and uevents. Runs under umockdev-wrapper.

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <poll.h>
#include <sstream>

#include "FlashSerial/PortScanner.hpp"
#include "TarnwickCLI/Ports.hpp"
#include "support/umockdev/Testbed.hpp"

using namespace tarnwick;
using tarnwick::testing::Testbed;
using namespace std::chrono_literals;

namespace {

std::vector<std::string> pathsOf(const std::vector<SerialPortInfo>& ports) {
  std::vector<std::string> paths;
  for (const auto& p : ports)
    paths.push_back(p.path);
  return paths;
}

/// Drives `scanner` as an event loop would, until `done` holds or `limit` has passed.
void runLoop(PortScanner& scanner, const std::function<bool()>& done,
             std::chrono::duration<double> limit = 3s) {
  const auto end =
      PortScanner::Clock::now() + std::chrono::duration_cast<PortScanner::Clock::duration>(limit);
  while (!done()) {
    auto now = PortScanner::Clock::now();
    if (now >= end) return;
    auto wakeUp = std::min(end, scanner.nextDeadline().value_or(end));
    const int timeout = static_cast<int>(
        std::chrono::ceil<std::chrono::milliseconds>(std::max(wakeUp - now, 0ns)).count());
    pollfd watched{scanner.descriptor(), POLLIN, 0};
    if (::poll(&watched, 1, timeout) > 0) scanner.handleReadable();
    scanner.handleTimers();
  }
}

/// Waits until notices are waiting and hands them to the scanner.
void readNotices(PortScanner& scanner) {
  pollfd watched{scanner.descriptor(), POLLIN, 0};
  ASSERT_EQ(::poll(&watched, 1, 3000), 1);
  scanner.handleReadable();
}

struct Deliveries {
  std::vector<std::vector<SerialPortInfo>> lists;
  void attach(PortScanner& scanner) {
    scanner.onChange = [this](const std::vector<SerialPortInfo>& ports) { lists.push_back(ports); };
  }
};

} // namespace

TEST(PortDiscovery, ListsSerialHardwareWithUsbFactsInOrder) {
  Testbed bed;
  bed.addUSBPort("ttyACM10", "2341", "0043", "Arduino Uno");
  bed.addUSBPort("ttyACM2", "303a", "1001", "USB JTAG/serial debug unit", "F4:12:FA:00:11:22");
  bed.addUSBPort("ttyUSB0", "1a86", "7523", " \t ESP32 Dev  \r\n", "  \n");
  bed.addUSBPort("ttyUSB1", "1a86", "1234", nullptr);
  bed.addUSBPort("ttyACM3", "2341", "7777", "New board");
  // A UART the kernel found, and the phantoms it creates for UARTs that are not there.
  const std::string platform = bed.addPlatformDevice("serial8250");
  bed.addTTY("ttyS0", platform, "4");
  bed.addTTY("ttyS1", platform, "0");
  bed.addTTY("ttyS2");
  bed.addTTY("rfcomm0");
  // Never ports: virtual consoles, the console, the controlling terminal.
  bed.addTTY("tty3");
  bed.addTTY("console");
  bed.addTTY("tty");
  // Damaged USB ids are left out, not guessed.
  bed.addUSBPort("ttyUSB7", "zz", "7523 ", "Broken");

  PortScanner scanner;
  const auto ports = scanner.scan();
  const std::vector<SerialPortInfo> expected = {
      {"/dev/ttyACM2", "USB JTAG/serial debug unit", 0x303A, 0x1001, "F4:12:FA:00:11:22"},
      {"/dev/ttyACM3", "New board", 0x2341, 0x7777},
      {"/dev/ttyACM10", "Arduino Uno", 0x2341, 0x0043},
      {"/dev/ttyUSB0", "ESP32 Dev", 0x1A86, 0x7523},
      {"/dev/ttyUSB1", std::nullopt, 0x1A86, 0x1234},
      {"/dev/rfcomm0", std::nullopt, std::nullopt, std::nullopt},
      {"/dev/ttyS0", std::nullopt, std::nullopt, std::nullopt},
      {"/dev/ttyUSB7", "Broken", std::nullopt, std::nullopt},
  };
  ASSERT_EQ(pathsOf(ports), pathsOf(expected)) << "order, and what is left out";
  EXPECT_EQ(ports, expected) << "USB facts";
}

TEST(PortDiscovery, TwoDeliveriesForEveryPlugAndUnplug) {
  Testbed bed;
  bed.addUSBPort("ttyUSB0", "1a86", "7523", "USB Serial");
  PortScanner scanner(PortScanner::ChangeSource::udevMonitor);
  EXPECT_EQ(scanner.descriptor(), -1);
  EXPECT_FALSE(scanner.nextDeadline());

  Deliveries seen;
  seen.attach(scanner);
  scanner.start();
  ASSERT_GE(scanner.descriptor(), 0);
  ASSERT_EQ(seen.lists.size(), 1u) << "the first list comes at start";
  EXPECT_EQ(pathsOf(seen.lists[0]), std::vector<std::string>{"/dev/ttyUSB0"});
  scanner.start();
  EXPECT_EQ(seen.lists.size(), 1u) << "a second start changes nothing";

  // Notices of terminals that are no ports are read and passed over.
  bed.uevent(bed.addTTY("tty7"), "change");
  readNotices(scanner);
  EXPECT_EQ(seen.lists.size(), 1u);
  EXPECT_FALSE(scanner.nextDeadline());

  // A board whose product string shows up only after its first notice.
  const std::string board = bed.addUSBPort("ttyACM0", "2341", "0043", nullptr);
  runLoop(scanner, [&] { return seen.lists.size() == 2; });
  ASSERT_EQ(seen.lists.size(), 2u);
  const auto plugged = PortScanner::Clock::now();
  EXPECT_EQ(seen.lists[1],
            (std::vector<SerialPortInfo>{{"/dev/ttyACM0", std::nullopt, 0x2341, 0x0043},
                                         {"/dev/ttyUSB0", "USB Serial", 0x1A86, 0x7523}}));
  const auto due = scanner.nextDeadline();
  ASSERT_TRUE(due);
  EXPECT_GT(*due, plugged + 400ms);
  EXPECT_LE(*due, plugged + 500ms);
  scanner.handleTimers();
  EXPECT_EQ(seen.lists.size(), 2u) << "nothing before the half second is over";

  // The tty hangs off the interface, the interface off the USB device.
  const auto usbDevice = std::filesystem::path(board).parent_path().parent_path();
  bed.setAttribute(usbDevice.string(), "product", "Arduino Uno");
  runLoop(scanner, [&] { return seen.lists.size() == 3; });
  ASSERT_EQ(seen.lists.size(), 3u);
  EXPECT_GE(PortScanner::Clock::now(), *due);
  EXPECT_EQ(seen.lists[2].front().productName, "Arduino Uno") << "the second list is a new scan";
  EXPECT_FALSE(scanner.nextDeadline());

  bed.unplug(board);
  runLoop(scanner, [&] { return seen.lists.size() == 5; });
  ASSERT_EQ(seen.lists.size(), 5u);
  EXPECT_EQ(pathsOf(seen.lists[3]), std::vector<std::string>{"/dev/ttyUSB0"});
  EXPECT_EQ(seen.lists[4], seen.lists[3]);
}

TEST(PortDiscovery, AScannerGoneBeforeItsSecondDeliveryMakesNoCall) {
  // The owner lets go of the scanner from inside the delivery that scheduled the second one.
  Testbed bed;
  auto owned = std::make_unique<PortScanner>(PortScanner::ChangeSource::udevMonitor);
  PortScanner* scanner = owned.get();
  int calls = 0;
  owned->onChange = [&](const std::vector<SerialPortInfo>& ports) {
    ++calls;
    if (!ports.empty()) owned.reset();
  };
  owned->start();
  bed.addTTY("rfcomm1");
  readNotices(*scanner);
  EXPECT_FALSE(owned);
  EXPECT_EQ(calls, 2);
}

// `ports --watch` prints a list once for each change, though the scanner delivers each change
// twice: the second, complete delivery mostly repeats the first.
TEST(PortDiscovery, WatchingPrintsEachListOnce) {
  Testbed bed;
  bed.addUSBPort("ttyUSB0", "1a86", "7523", "USB Serial");
  char* buffer = nullptr;
  std::size_t size = 0;
  std::FILE* out = ::open_memstream(&buffer, &size);
  ASSERT_NE(out, nullptr);
  {
    PortScanner scanner(PortScanner::ChangeSource::udevMonitor);
    cli::printChanges(scanner, out, true);
    scanner.start();
    const std::string plugged = bed.addUSBPort("ttyACM0", "303a", "1001", nullptr, "S1");
    readNotices(scanner);
    runLoop(scanner, [&] { return !scanner.nextDeadline(); });
    bed.unplug(plugged);
    readNotices(scanner);
    runLoop(scanner, [&] { return !scanner.nextDeadline(); });
  }
  std::fclose(out);
  std::vector<std::string> lists;
  std::istringstream lines(std::string(buffer, size));
  std::free(buffer);
  for (std::string line; std::getline(lines, line);)
    lists.push_back(line);
  ASSERT_EQ(lists.size(), 3u);
  EXPECT_EQ(lists[0], lists[2]);
  EXPECT_NE(lists[1].find("/dev/ttyACM0"), std::string::npos) << lists[1];
}

TEST(PortDiscovery, WithoutUdevTheDeviceDirectoryIsWatched) {
  Testbed bed;
  bed.addUSBPort("ttyUSB0", "1a86", "7523", "USB Serial");
  const std::filesystem::path directory =
      std::filesystem::temp_directory_path() / ("tarnwick-dev-" + std::to_string(::getpid()));
  std::filesystem::create_directories(directory);
  struct Cleanup {
    std::filesystem::path path;
    ~Cleanup() { std::filesystem::remove_all(path); }
  } cleanup{directory};

  PortScanner scanner(PortScanner::ChangeSource::deviceDirectory, directory.string());
  Deliveries seen;
  seen.attach(scanner);
  scanner.start();
  ASSERT_EQ(seen.lists.size(), 1u);
  EXPECT_EQ(pathsOf(seen.lists[0]), std::vector<std::string>{"/dev/ttyUSB0"})
      << "the list still comes from sysfs";

  // Entries that are no serial device are read and passed over.
  std::ofstream(directory / "shm-segment").put('x');
  std::filesystem::create_directory(directory / "pts");
  readNotices(scanner);
  EXPECT_EQ(seen.lists.size(), 1u);
  EXPECT_FALSE(scanner.nextDeadline());

  std::ofstream(directory / "ttyACM0").put('x');
  runLoop(scanner, [&] { return seen.lists.size() == 3; });
  EXPECT_EQ(seen.lists.size(), 3u) << "one at once, one half a second later";

  // Nothing to watch: no list is ever delivered, though a scan by itself still works.
  PortScanner silent(PortScanner::ChangeSource::deviceDirectory, "/nonexistent/dev");
  silent.onChange = [](const std::vector<SerialPortInfo>&) { ADD_FAILURE() << "a delivery"; };
  silent.start();
  EXPECT_EQ(silent.descriptor(), -1);
  EXPECT_EQ(pathsOf(silent.scan()), std::vector<std::string>{"/dev/ttyUSB0"});
}
