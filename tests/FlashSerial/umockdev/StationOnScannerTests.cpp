// The flashing station on the real port scanner, with boards plugged into a umockdev testbed.

#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

#include "FlashStation/PortSource.hpp"
#include "FlashStation/Station.hpp"
#include "FlashStation/StationRecorder.hpp"
#include "support/Products.hpp"
#include "support/umockdev/Testbed.hpp"

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace std::chrono_literals;

namespace {
// The station's threads speak the process's language, which no per-thread override reaches:
// these tests read English whatever the machine's locale.
const bool inEnglish = [] { return ::setenv("LANGUAGE", "en", 1) == 0; }();

// The scanner as the station sees it, and a way to wait until the station has had the list in
// which a port is gone: a port that goes and comes back faster than one look would never have
// gone, for the station.
class WatchedSource : public station::PortSource {
public:
  std::vector<SerialPortInfo> start() override { return seen(inner_.start()); }
  std::optional<std::vector<SerialPortInfo>> wait(Clock::time_point deadline, int wake) override {
    auto ports = inner_.wait(deadline, wake);
    if (ports) seen(*ports);
    return ports;
  }
  bool waitUntilGone(const std::string& path) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, 20s, [&] {
      return std::ranges::none_of(last_, [&](const auto& port) { return port.path == path; });
    });
  }

private:
  std::vector<SerialPortInfo> seen(std::vector<SerialPortInfo> ports) {
    std::lock_guard lock(mutex_);
    last_ = ports;
    changed_.notify_all();
    return ports;
  }
  station::ScannerPortSource inner_{{}, PortScanner::ChangeSource::udevMonitor};
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<SerialPortInfo> last_;
};
} // namespace

// A board present at start is left alone; one plugged in is taken once it stayed 1.2 s, under
// the name the scanner gives it; one pulled out again within that time is not; an Arduino Uno
// (known by its exact USB ids) is left alone at once for an ESP product, with the reason. The
// testbed's device has no node to open, so its run fails, and says why.
TEST(StationOnScanner, TakesTheBoardPluggedInOnceItStayed) {
  Testbed bed;
  bed.addUSBPort("ttyUSB0", "1a86", "7523", "USB Serial");
  auto p = espProduct(ESPChip::esp32, 4096);
  Recorder recorder;
  station::Station station({p.product, p.files, {}}, {}, recorder);
  station::ScannerPortSource source({}, PortScanner::ChangeSource::udevMonitor);
  std::int64_t failures = -1;
  std::thread running([&] { failures = station.run(source); });
  ASSERT_TRUE(recorder.waitFor("notice"));

  const auto plugged = std::chrono::steady_clock::now();
  bed.addUSBPort("ttyACM0", "10c4", "ea60", "CP2102 USB to UART");
  const std::string brief = bed.addUSBPort("ttyACM1", "10c4", "ea60", "CP2102 USB to UART");
  bed.addUSBPort("ttyACM2", "2341", "0043", "Arduino Uno");
  std::this_thread::sleep_for(300ms);
  bed.unplug(brief);
  EXPECT_TRUE(recorder.waitFor("started", "/dev/ttyACM0")) << describe(recorder);
  EXPECT_GE(std::chrono::steady_clock::now() - plugged, 1200ms);
  EXPECT_TRUE(recorder.waitFor("failed", "/dev/ttyACM0")) << describe(recorder);
  station.interrupt();
  running.join();
  EXPECT_EQ(failures, 1) << describe(recorder);
  EXPECT_EQ(recorder.count("started"), 1) << describe(recorder);
  ASSERT_EQ(recorder.count("skipped", "/dev/ttyACM2"), 1) << describe(recorder);
  const std::map<std::string, std::string> expected = {
      {"started", "USB serial (CP210x) (ttyACM0)"},
      {"failed", "Cannot open /dev/ttyACM0: No such file or directory."},
      {"skipped", "an Arduino board, and this product is for ESP boards."}};
  for (const auto& entry : recorder.entries()) {
    if (expected.contains(entry.kind)) {
      EXPECT_EQ(entry.text, expected.at(entry.kind));
    }
  }
}

// A port that goes and comes back within the quiet time after its run, as the scanner reads it
// from the device registry: behind a USB-serial chip it holds another board; on a board's own
// USB its serial number tells; without one, and with no MAC address to compare (these runs fail
// before the board answers), it is taken for that board restarting. Each board left alone is
// said with the reason.
TEST(StationOnScanner, APortThatComesBackIsJudgedByItsKindAndSerialNumber) {
  Testbed bed;
  auto p = espProduct(ESPChip::esp32, 4096);
  Recorder recorder;
  station::StationOptions options;
  options.settleSeconds = 0.2;
  options.quietSeconds = 600; // the whole test is within the quiet time
  station::Station station({p.product, p.files, {}}, options, recorder);
  WatchedSource source;
  std::int64_t failures = -1;
  std::thread running([&] { failures = station.run(source); });
  // A failed step still ends the station before the test does.
  struct Ending {
    station::Station& station;
    std::thread& thread;
    ~Ending() {
      if (!thread.joinable()) return;
      station.interrupt();
      station.interrupt();
      thread.join();
    }
  } ending{station, running};
  ASSERT_TRUE(recorder.waitFor("notice"));

  const std::string sameSerial =
      "the board whose run just ended, restarting (same USB serial number).";
  const std::string cannotTell = "taken for the board whose run just ended, restarting: its "
                                 "port has no USB serial number that would tell another board. "
                                 "Plug a new board in again after a few seconds.";
  struct Step {
    const char* what;
    const char* name;
    const char* vendor;
    const char* product;
    const char* serial;
    const char* expected; // "failed": taken (and failed, having no device node); or "skipped"
    std::string reason;
  };
  const std::vector<Step> steps = {
      {"a CP2102", "ttyUSB3", "10c4", "ea60", "0001", "failed", ""},
      {"the next board behind the CP2102, at once", "ttyUSB3", "10c4", "ea60", "0001", "failed",
       ""},
      {"a CH340 without a serial number", "ttyUSB4", "1a86", "7523", nullptr, "failed", ""},
      {"the next one on it", "ttyUSB4", "1a86", "7523", nullptr, "failed", ""},
      {"an Uno", "ttyACM7", "2341", "0043", nullptr, "skipped",
       "an Arduino board, and this product is for ESP boards."},
      {"an ESP32-S3 on its own USB", "ttyACM5", "303a", "1001", "F4:12:FA:00:00:01", "failed", ""},
      {"the same board restarting", "ttyACM5", "303a", "1001", "F4:12:FA:00:00:01", "skipped",
       sameSerial},
      {"another board there", "ttyACM5", "303a", "1001", "F4:12:FA:00:00:02", "failed", ""},
      {"own USB without a serial number", "ttyACM5", "303a", "1001", nullptr, "skipped",
       cannotTell},
      {"an unknown adapter", "ttyACM6", "1234", "5678", nullptr, "failed", ""},
      {"back on the unknown adapter", "ttyACM6", "1234", "5678", nullptr, "skipped", cannotTell},
  };
  std::map<std::string, std::string> plugged; // port path to sysfs path
  for (const Step& step : steps) {
    SCOPED_TRACE(step.what);
    const std::string path = std::string("/dev/") + step.name;
    if (auto device = plugged.find(path); device != plugged.end()) {
      bed.unplug(device->second);
      ASSERT_TRUE(source.waitUntilGone(path));
    }
    const int before = recorder.count(step.expected, path);
    plugged[path] = bed.addUSBPort(step.name, step.vendor, step.product, "Board", step.serial);
    ASSERT_TRUE(recorder.waitFor(step.expected, path, before + 1)) << describe(recorder);
    if (!step.reason.empty()) {
      EXPECT_EQ(recorder.entries().back().text, step.reason);
    }
  }
  station.interrupt();
  running.join();
  EXPECT_EQ(failures, 7) << describe(recorder);
  EXPECT_EQ(recorder.count("started"), 7) << describe(recorder);
}
