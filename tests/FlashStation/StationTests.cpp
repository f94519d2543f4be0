// The flashing station's rules against simulated boards, in the process, with a port source the
// test plugs boards into.

#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "FlashStation/PortSource.hpp"
#include "FlashStation/Station.hpp"
#include "FlashStation/StationRecorder.hpp"
#include "Simulator/PseudoTerminal.hpp"
#include "Simulator/SimulatedAVR.hpp"
#include "Simulator/SimulatedESP.hpp"
#include "support/Boards.hpp"
#include "support/Products.hpp"
#include "support/Ser2net.hpp"

using namespace tarnwick;
using namespace tarnwick::station;
using namespace tarnwick::simulator;
using namespace tarnwick::testing;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

// The station's threads speak the process's language, which no per-thread override reaches:
// these tests read English whatever the machine's locale.
const bool inEnglish = [] { return ::setenv("LANGUAGE", "en", 1) == 0; }();

// Ports the test plugs in and pulls out; each change reaches the station at once, and the
// station sees every list in turn, as the scanner delivers one per change.
class FakePorts : public PortFeed {
public:
  // A CH340 adapter: a USB board like any on a hub.
  static SerialPortInfo adapter() { return {"", std::nullopt, 0x1A86, 0x7523}; }
  // An ESP32-S3/C3/C6 on its own USB, which restarts with the board.
  static SerialPortInfo nativeESP(std::optional<std::string> serial) {
    return {"", std::nullopt, espressifVendorID, 0x1001, std::move(serial)};
  }
  void plug(const std::string& path, SerialPortInfo kind = adapter()) {
    std::lock_guard lock(mutex_);
    kind.path = path;
    ports_.push_back(kind);
    deliver(ports_);
  }
  void pull(const std::string& path) {
    std::lock_guard lock(mutex_);
    std::erase_if(ports_, [&](const SerialPortInfo& port) { return port.path == path; });
    deliver(ports_);
  }

private:
  std::mutex mutex_;
  std::vector<SerialPortInfo> ports_;
};

// A station on its own thread, with times short enough for tests.
struct RunningStation {
  RunningStation(const ProductWithFiles& p, StationOptions options, FakePorts& ports)
      : station(ProductPackage{p.product, p.files, {}}, withShortTimes(std::move(options)),
                recorder) {
    thread = std::thread([&] { failures = station.run(ports); });
    // Boards plugged in before the station looked are boards present at start.
    EXPECT_TRUE(recorder.waitFor("notice"));
  }
  ~RunningStation() {
    if (thread.joinable()) {
      station.interrupt();
      station.interrupt();
      thread.join();
    }
  }
  // Returns the count of boards that failed or were stopped.
  std::int64_t finish() {
    thread.join();
    return failures;
  }
  static StationOptions withShortTimes(StationOptions options) {
    options.allowsTestDevices = true;
    options.settleSeconds = 0.2;
    options.quietSeconds = 1.5;
    return options;
  }

  Recorder recorder;
  Station station;
  std::thread thread;
  std::int64_t failures = -1;
};

} // namespace

// Boards plugged in while others run are flashed at once, side by side; one failing leaves the
// others alone and shows in the count; a port that comes and goes within the settling time is
// no board.
TEST(Station, FlashesBoardsAsTheyArriveAndCountsTheFailures) {
  SimulatedESP first(pacedESP32()), second(pacedESP32());
  SimulatedESPOptions failing;
  failing.failCommand = static_cast<std::uint8_t>(ESPCommand::flashDeflateBegin);
  SimulatedESP broken(failing);
  PseudoTerminal flicker;
  FakePorts ports;
  auto product = espProduct(ESPChip::esp32, 48 * 1024);
  RunningStation running(product, {}, ports);

  ports.plug(first.path());
  ASSERT_TRUE(running.recorder.waitFor("started", first.path())) << describe(running.recorder);
  ports.plug(broken.path());
  ports.plug(second.path());
  ports.plug(flicker.path());
  ports.pull(flicker.path());
  ASSERT_TRUE(running.recorder.waitFor("done", {}, 2)) << describe(running.recorder);
  ASSERT_TRUE(running.recorder.waitFor("failed", broken.path()));
  running.station.interrupt();
  EXPECT_EQ(running.finish(), 1);

  Recorder& r = running.recorder;
  // The second board started before the first was done: they ran at the same time.
  EXPECT_LT(r.indexOf("started", second.path()), r.indexOf("done", first.path())) << describe(r);
  EXPECT_EQ(r.count("done", first.path()), 1);
  EXPECT_EQ(r.count("done", second.path()), 1);
  EXPECT_EQ(r.count("started", flicker.path()), 0);
  EXPECT_EQ(running.station.flashed(), 2);
  EXPECT_EQ(running.station.failed(), 1);
  const Bytes& app = product.files.at(product.product.images[2].id);
  Bytes flash = second.flash();
  EXPECT_TRUE(std::equal(app.begin(), app.end(), flash.begin() + 0x10000));
  const auto ended = r.entries().back();
  EXPECT_EQ(ended.path, "ended");
  EXPECT_EQ(ended.count, 2);
  EXPECT_EQ(ended.failed, 1);
}

// A port that goes and comes back right after its run holds another board, unless the port is
// the board's own USB restarting: then its USB serial number, or else its MAC address, tells.
// A board of the other family is left alone at once. Nothing is ever left alone silently, and a
// board that never answered is not tried over and over as it restarts.
TEST(Station, ABoardSwappedInIsFlashedTheSameBoardRestartingIsLeftAlone) {
  SimulatedESPOptions otherMAC, mute;
  otherMAC.macWord0 = 0x0BADF00D;
  mute.silent = true;
  SimulatedESP a, b(otherMAC), silent(mute);
  const fs::path slot = fs::temp_directory_path() / ("tw-slot-" + std::to_string(::getpid()));
  FakePorts ports;
  RunningStation running(espProduct(ESPChip::esp32, 4096), {}, ports);
  Recorder& r = running.recorder;

  struct Step {
    const char* what;
    SerialPortInfo port;
    const SimulatedESP* board;
    const char* expected; // "done", "failed" or "skipped"
    std::string reason;
  };
  const std::string sameSerial = "the board whose run just ended, restarting (same USB serial "
                                 "number).";
  const std::string sameMAC = "the board whose run just ended (same MAC address); restarted "
                              "into its firmware.";
  const std::string cannotTell = "taken for the board whose run just ended, restarting: its "
                                 "port has no USB serial number that would tell another board. "
                                 "Plug a new board in again after a few seconds.";
  const std::vector<Step> steps = {
      {"a first board behind an adapter", FakePorts::adapter(), &a, "done", ""},
      {"another board on the adapter at once", FakePorts::adapter(), &b, "done", ""},
      {"that board plugged in again at once", FakePorts::adapter(), &b, "done", ""},
      {"own USB without a serial number, same MAC", FakePorts::nativeESP(std::nullopt), &b,
       "skipped", sameMAC},
      {"and back from that restart", FakePorts::nativeESP(std::nullopt), &b, "skipped", cannotTell},
      {"own USB, another board without a serial number", FakePorts::nativeESP(std::nullopt), &a,
       "done", ""},
      {"own USB, a serial number", FakePorts::nativeESP("S-B"), &b, "done", ""},
      {"own USB, the same serial number", FakePorts::nativeESP("S-B"), &b, "skipped", sameSerial},
      {"own USB, another serial number", FakePorts::nativeESP("S-A"), &a, "done", ""},
      {"an Arduino Uno for an ESP product",
       {"", std::nullopt, 0x2341, 0x0043},
       &a,
       "skipped",
       "an Arduino board, and this product is for ESP boards."},
      {"a board that never answers", FakePorts::adapter(), &silent, "failed", ""},
      {"back after that run, nothing to compare", FakePorts::nativeESP(std::nullopt), &silent,
       "skipped", cannotTell},
  };
  for (const Step& step : steps) {
    SCOPED_TRACE(step.what);
    const int before = r.count(step.expected, slot.string());
    ports.pull(slot.string());
    fs::remove(slot);
    fs::create_symlink(step.board->path(), slot);
    ports.plug(slot.string(), step.port);
    ASSERT_TRUE(r.waitFor(step.expected, slot.string(), before + 1)) << describe(r);
    if (!step.reason.empty()) {
      EXPECT_EQ(r.entries().back().text, step.reason);
    }
  }
  // Swapped while its run still goes on: the board that came is flashed once the run ends.
  SimulatedESP slow(pacedESP32()), next;
  const int done = r.count("done", slot.string());
  ports.pull(slot.string());
  fs::remove(slot);
  fs::create_symlink(slow.path(), slot);
  ports.plug(slot.string());
  ASSERT_TRUE(r.waitFor("connected", slot.string(), r.count("connected", slot.string()) + 1));
  ports.pull(slot.string());
  fs::remove(slot);
  fs::create_symlink(next.path(), slot);
  ports.plug(slot.string());
  ASSERT_TRUE(r.waitFor("done", slot.string(), done + 2)) << describe(r);
  EXPECT_GT(next.requests(ESPCommand::flashDeflateBegin), 0);

  running.station.interrupt();
  EXPECT_EQ(running.finish(), 1);
  EXPECT_EQ(running.station.flashed(), 8);
  EXPECT_EQ(r.count("started"), 10) << describe(r); // eight, the comparison, the silent one
  fs::remove(slot);
}

// --now takes the boards already there; --limit stops taking boards once that many succeeded or
// run, and ends the station when they have succeeded, without Ctrl+C.
TEST(Station, NowAndLimit) {
  SimulatedESP a(pacedESP32()), b(pacedESP32()), c(pacedESP32());
  FakePorts ports;
  for (const auto* board : {&a, &b, &c})
    ports.plug(board->path());
  StationOptions options;
  options.now = true;
  options.limit = 2;
  RunningStation running(espProduct(ESPChip::esp32, 4096), options, ports);
  EXPECT_EQ(running.finish(), 0);
  Recorder& r = running.recorder;
  EXPECT_EQ(r.count("started"), 2) << describe(r);
  EXPECT_EQ(r.count("done"), 2);
  EXPECT_EQ(r.count("notice", ""), 3); // ready, limit reached, ended
  const auto entries = r.entries();
  ASSERT_GE(entries.size(), 3u);
  // The board left waiting is said to be left alone, after the limit and before the end.
  EXPECT_EQ(entries[entries.size() - 3].path, "limitReached");
  EXPECT_EQ(entries[entries.size() - 3].count, 2);
  EXPECT_EQ(entries[entries.size() - 2].kind, "skipped");
  EXPECT_EQ(entries[entries.size() - 2].text, "the station takes no new boards.");
}

// The first Ctrl+C lets the running boards finish and takes no new ones; a second one stops
// them, and a stopped board counts as failed.
TEST(Station, CtrlCOnceLetsBoardsFinishTwiceStopsThem) {
  for (int presses : {1, 2}) {
    SCOPED_TRACE(presses);
    SimulatedESP a(pacedESP32()), b(pacedESP32()), late;
    FakePorts ports;
    RunningStation running(espProduct(ESPChip::esp32, 96 * 1024), {}, ports);
    Recorder& r = running.recorder;
    ports.plug(a.path());
    ports.plug(b.path());
    ASSERT_TRUE(r.waitFor("connected", {}, 2)) << describe(r);
    running.station.interrupt();
    ports.plug(late.path());
    if (presses == 2) running.station.interrupt();
    const std::int64_t failures = running.finish();
    EXPECT_EQ(r.count("started", late.path()), 0) << describe(r);
    EXPECT_EQ(r.count("skipped", late.path()), 1) << describe(r);
    if (presses == 1) {
      EXPECT_EQ(failures, 0) << describe(r);
      EXPECT_EQ(r.count("done"), 2);
      EXPECT_NE(describe(r).find("notice finishing  2/0"), std::string::npos) << describe(r);
    } else {
      EXPECT_EQ(failures, 2) << describe(r);
      EXPECT_EQ(r.count("stopped"), 2);
      EXPECT_EQ(r.count("done"), 0);
    }
  }
}

// A record line that cannot be written, or a reader of the output that went away: the boards
// running finish (a board without its record line counts as failed), every board handed to
// the record, and no board plugged in afterwards is taken, though each is said to be left alone.
TEST(Station, ALostRecordOrReaderTakesNoNewBoards) {
  for (const bool recordLost : {true, false}) {
    SCOPED_TRACE(recordLost ? "the record is lost" : "the reader is gone");
    SimulatedESP quick, slow(pacedESP32()), late;
    FakePorts ports;
    RunningStation running(espProduct(ESPChip::esp32, 96 * 1024), {}, ports);
    Recorder& r = running.recorder;
    ports.plug(quick.path());
    ports.plug(slow.path());
    ASSERT_TRUE(r.waitFor("started", {}, 2)) << describe(r);
    (recordLost ? r.recordFails : r.outputGone) = true;
    // The slow board still runs when the quick one has ended and the station noticed.
    ASSERT_TRUE(r.waitFor(recordLost ? "failed" : "done", quick.path())) << describe(r);
    ports.plug(late.path());
    ASSERT_TRUE(r.waitFor("skipped", late.path())) << describe(r);
    EXPECT_EQ(running.finish(), recordLost ? 2 : 0) << describe(r);

    EXPECT_EQ(r.count(recordLost ? "failed" : "done", slow.path()), 1) << describe(r);
    EXPECT_EQ(r.count("started", late.path()), 0) << describe(r);
    EXPECT_EQ(late.requests(ESPCommand::sync), 0);
    EXPECT_EQ(r.recorded, 2);
    EXPECT_EQ(running.station.outputWasLost(), !recordLost);
    EXPECT_EQ(running.station.recordProblem().has_value(), recordLost);
    if (recordLost) {
      // Said when it happens, and again with the counts at the end.
      EXPECT_EQ(r.count("notice", "recordLost"), 1) << describe(r);
      const auto ended = r.entries().back();
      EXPECT_EQ(ended.path, "ended");
      EXPECT_EQ(ended.text, "The record file is full.");
      EXPECT_EQ(ended.count, 0);
      EXPECT_EQ(ended.failed, 2);
    }
  }
}

// Leonardo-type boards go one at a time, and the bootloader port that comes up during a run is
// that run's, not a new board.
TEST(Station, CaterinaBoardsOneAtATime) {
  SimulatedAVROptions leonardo;
  leonardo.board = AVRBoard::leonardo;
  SimulatedAVR bootloaderA(leonardo), bootloaderB(leonardo);
  PseudoTerminal sketchA, sketchB;
  FakePorts ports;
  StationOptions options;
  options.findBootloaderPort = [&](const std::set<std::string>&, const std::string& old) {
    const std::string& bootloader = old == sketchA.path() ? bootloaderA.path() : bootloaderB.path();
    ports.pull(old);
    ports.plug(bootloader);
    std::this_thread::sleep_for(400ms); // the station sees it while the run waits
    return bootloader;
  };
  RunningStation running(avrProduct(AVRBoard::leonardo, 4000), options, ports);
  Recorder& r = running.recorder;
  ports.plug(sketchA.path());
  ports.plug(sketchB.path());
  ASSERT_TRUE(r.waitFor("done", {}, 2)) << describe(r);
  running.station.interrupt();
  EXPECT_EQ(running.finish(), 0);
  EXPECT_EQ(r.count("started"), 2) << describe(r);
  EXPECT_EQ(r.count("started", bootloaderA.path()) + r.count("started", bootloaderB.path()), 0);
  // Whichever went first was done before the other started.
  std::vector<std::string> order;
  for (const auto& e : r.entries())
    if (e.kind == "started" || e.kind == "done") order.push_back(e.kind);
  EXPECT_EQ(order, (std::vector<std::string>{"started", "done", "started", "done"})) << describe(r);
  EXPECT_EQ(r.count("notice", "oneAtATime"), 1) << describe(r);
}

// Debian's ser2net in front of a device path a board's pseudo-terminal is linked to, as a rack
// computer serves a USB port a board is plugged into: without the device it answers "Device open
// failure" and closes, so the station keeps connecting and says once that it waits; a board
// plugged in is flashed through the connection that found it; a board pulled out closes the
// connection; another board put in is flashed in turn, and each is flashed once.
TEST(Station, BoardsBehindSer2net) {
  const fs::path root =
      fs::temp_directory_path() / ("tw-station-ser2net-" + std::to_string(::getpid()));
  fs::remove_all(root);
  fs::create_directories(root);
  const fs::path device = root / "ttyUSB0";
  Ser2net server(device.string());
  const std::string port = server.portName();

  auto product = espProduct(ESPChip::esp32, 16 * 1024);
  // ser2net cannot set a pseudo-terminal's modem lines: the simulated ROM waits anyway.
  product.product.resetMode = ResetMode::manual;
  StationOptions options;
  options.networkPorts = {port};
  options.onlyPorts = {port};
  FakePorts none;
  RunningStation running(product, options, none);
  Recorder& r = running.recorder;
  ASSERT_TRUE(r.waitFor("notice", "waitingForPort")) << describe(r);

  for (int board = 0; board < 2; ++board) {
    // Told apart by their MAC addresses, as the second comes within the first's quiet time.
    SimulatedESPOptions own;
    own.macWord0 += static_cast<std::uint32_t>(board);
    SimulatedESP esp(own);
    fs::create_symlink(esp.path(), device);
    ASSERT_TRUE(r.waitFor("done", port, board + 1)) << describe(r);
    EXPECT_TRUE(flashHoldsPlan(esp.flash(), product, ESPChip::esp32));
    // Pulled out: the pseudo-terminal closes with the board, and its link goes.
    fs::remove(device);
  }
  running.station.interrupt();
  EXPECT_EQ(running.finish(), 0) << describe(r);
  EXPECT_EQ(r.count("started", port), 2) << describe(r);
  EXPECT_EQ(r.count("notice", "waitingForPort"), 1) << describe(r);
  EXPECT_EQ(r.count("notice", "unreachable"), 0) << describe(r);
  fs::remove_all(root);
}

// Network ports connected to again and again without a board: a server out of reach and one
// without its device are each said once, not at every attempt.
TEST(Station, NetworkPortsWithoutABoardAreSaidOnce) {
  const std::string refusing = "rfc2217://127.0.0.1:" + std::to_string(freeTCPPort());
  PlainServer empty("\r\nDevice open failure: No such file or directory\r\n", true);
  StationOptions options;
  options.networkPorts = {refusing, empty.portName()};
  options.onlyPorts = {refusing, empty.portName()};
  FakePorts none;
  RunningStation running(espProduct(ESPChip::esp32, 16 * 1024), options, none);
  // Several attempts at the port without a board take a second or two; the refusing port,
  // whose attempts end at once, has had as many.
  const auto deadline = std::chrono::steady_clock::now() + 20s;
  while (empty.accepted() < 4 && std::chrono::steady_clock::now() < deadline)
    std::this_thread::sleep_for(20ms); // looked at often; nothing tells when it was connected to
  ASSERT_GE(empty.accepted(), 4);
  running.station.interrupt();
  EXPECT_EQ(running.finish(), 0);
  Recorder& r = running.recorder;
  EXPECT_EQ(r.count("notice", "unreachable"), 1) << describe(r);
  EXPECT_EQ(r.count("notice", "waitingForPort"), 1) << describe(r);
  EXPECT_EQ(r.count("started"), 0) << describe(r);
  const auto said = r.entries();
  EXPECT_TRUE(std::ranges::any_of(said, [&](const Recorder::Entry& e) {
    return e.path == "unreachable" && e.text.starts_with(refusing + " ") &&
           e.text.find("refused") != std::string::npos;
  })) << describe(r);
}
