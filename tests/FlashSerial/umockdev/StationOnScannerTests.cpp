// The flashing station on the real port scanner, with boards plugged into a umockdev testbed.

#include <gtest/gtest.h>

#include <map>
#include <thread>

#include "TarnwickCLI/Station.hpp"
#include "TarnwickCLI/StationRecorder.hpp"
#include "support/Products.hpp"
#include "support/umockdev/Testbed.hpp"

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace std::chrono_literals;

namespace {
// The station's threads speak the process's language, which no per-thread override reaches:
// these tests read English whatever the machine's locale.
const bool inEnglish = [] { return ::setenv("LANGUAGE", "en", 1) == 0; }();
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
  cli::Station station({p.product, p.files, {}}, {}, recorder);
  cli::ScannerPortSource source({}, PortScanner::ChangeSource::udevMonitor);
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
