// The flashing station against simulated boards: in the process with a port source the test
// plugs boards into, and as the executable a user runs.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <future>
#include <regex>
#include <sstream>
#include <sys/eventfd.h>

#include <nlohmann/json.hpp>

#include "FlashCore/Digest.hpp"
#include "FlashCore/ProductPackage.hpp"
#include "Localization/Help.hpp"
#include "TarnwickCLI/Arguments.hpp"
#include "Simulator/PseudoTerminal.hpp"
#include "Simulator/SimulatedAVR.hpp"
#include "Simulator/SimulatedESP.hpp"
#include "TarnwickCLI/RunCLI.hpp"
#include "TarnwickCLI/StationRecorder.hpp"
#include "TarnwickCLI/Station.hpp"
#include "TarnwickCLI/StationOutput.hpp"
#include "support/Products.hpp"

using namespace tarnwick;
using namespace tarnwick::cli;
using namespace tarnwick::simulator;
using namespace tarnwick::testing;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

// The station's threads speak the process's language, which no per-thread override reaches:
// these tests read English whatever the machine's locale.
const bool inEnglish = [] { return ::setenv("LANGUAGE", "en", 1) == 0; }();

// Ports the test plugs in and pulls out; each change wakes the station at once.
class FakePorts : public PortSource {
public:
  FakePorts() : changed_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
  ~FakePorts() override { ::close(changed_); }

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
    notify();
  }
  void pull(const std::string& path) {
    std::lock_guard lock(mutex_);
    std::erase_if(ports_, [&](const SerialPortInfo& port) { return port.path == path; });
    notify();
  }

  std::vector<SerialPortInfo> start() override {
    std::lock_guard lock(mutex_);
    return ports_;
  }
  std::optional<std::vector<SerialPortInfo>> wait(Clock::time_point deadline, int wake) override {
    pollfd watched[2] = {{changed_, POLLIN, 0}, {wake, POLLIN, 0}};
    auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    ::poll(watched, 2, static_cast<int>(std::max<std::int64_t>(left, 0)));
    std::uint64_t drained = 0;
    [[maybe_unused]] ssize_t got = ::read(changed_, &drained, sizeof drained);
    std::lock_guard lock(mutex_);
    return ports_;
  }

private:
  void notify() {
    const std::uint64_t one = 1;
    [[maybe_unused]] ssize_t written = ::write(changed_, &one, sizeof one);
  }
  std::mutex mutex_;
  std::vector<SerialPortInfo> ports_;
  int changed_;
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
    options.testDevices = true;
    options.settleSeconds = 0.2;
    options.quietSeconds = 1.5;
    return options;
  }

  Recorder recorder;
  Station station;
  std::thread thread;
  std::int64_t failures = -1;
};

// A board whose run lasts about a second: the line is paced at its real speed.
SimulatedESPOptions slowESP32() {
  SimulatedESPOptions options;
  options.paceLine = true;
  options.syncAnswers = 1;
  return options;
}

} // namespace

// Boards plugged in while others run are flashed at once, side by side; one failing leaves the
// others alone and shows in the count; a port that comes and goes within the settling time is
// no board.
TEST(Station, FlashesBoardsAsTheyArriveAndCountsTheFailures) {
  SimulatedESP first(slowESP32()), second(slowESP32());
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
  std::this_thread::sleep_for(50ms);
  ports.pull(flicker.path());
  ASSERT_TRUE(running.recorder.waitFor("done", {}, 2)) << describe(running.recorder);
  ASSERT_TRUE(running.recorder.waitFor("failed", broken.path()));
  running.station.interrupt();
  EXPECT_EQ(running.finish(), 1);

  Recorder& r = running.recorder;
  // The second board started before the first was done: they ran at the same time.
  EXPECT_LT(r.indexOf("started", second.path()), r.indexOf("done", first.path()))
      << describe(r);
  EXPECT_EQ(r.count("done", first.path()), 1);
  EXPECT_EQ(r.count("done", second.path()), 1);
  EXPECT_EQ(r.count("started", flicker.path()), 0);
  EXPECT_EQ(running.station.flashed(), 2);
  EXPECT_EQ(running.station.failed(), 1);
  const Bytes& app = product.files.at(product.product.images[2].id);
  Bytes flash = second.flash();
  EXPECT_TRUE(std::equal(app.begin(), app.end(), flash.begin() + 0x10000));
  EXPECT_EQ(r.entries().back().text, "Flashed 2 · Failed 1.");
}

// A port that goes and comes back right after its run holds another board, unless the port is
// the board's own USB restarting: then its USB serial number, or else its MAC address, tells.
// A board of the other family is left alone at once. Nothing is ever left alone silently.
TEST(Station, ABoardSwappedInIsFlashedTheSameBoardRestartingIsLeftAlone) {
  SimulatedESPOptions otherMAC;
  otherMAC.macWord0 = 0x0BADF00D;
  SimulatedESP a, b(otherMAC);
  const fs::path slot = fs::temp_directory_path() / ("tw-slot-" + std::to_string(::getpid()));
  FakePorts ports;
  RunningStation running(espProduct(ESPChip::esp32, 4096), {}, ports);
  Recorder& r = running.recorder;

  struct Step {
    const char* what;
    SerialPortInfo port;
    const SimulatedESP* board;
    const char* expected; // "done" or "skipped"
    std::string reason;
  };
  const std::string restarting = "the board just flashed, restarting.";
  const std::string sameMAC = "the board just flashed (same MAC address); restarted into its firmware.";
  const std::vector<Step> steps = {
      {"a first board behind an adapter", FakePorts::adapter(), &a, "done", ""},
      {"another board on the adapter at once", FakePorts::adapter(), &b, "done", ""},
      {"own USB without a serial number, same MAC", FakePorts::nativeESP(std::nullopt), &b,
       "skipped", sameMAC},
      {"and back again once more", FakePorts::nativeESP(std::nullopt), &b, "skipped", restarting},
      {"own USB, another serial number", FakePorts::nativeESP("S-A"), &a, "done", ""},
      {"own USB, the same serial number", FakePorts::nativeESP("S-A"), &a, "skipped", restarting},
      {"own USB without a serial number, another MAC", FakePorts::nativeESP(std::nullopt), &b,
       "done", ""},
      {"an Arduino Uno for an ESP product", {"", std::nullopt, 0x2341, 0x0043}, &a, "skipped",
       "an Arduino board, and this product is for ESP boards."},
  };
  for (const Step& step : steps) {
    SCOPED_TRACE(step.what);
    const int before = r.count(step.expected, slot.string());
    ports.pull(slot.string());
    std::this_thread::sleep_for(100ms); // the station sees the port gone
    fs::remove(slot);
    fs::create_symlink(step.board->path(), slot);
    ports.plug(slot.string(), step.port);
    ASSERT_TRUE(r.waitFor(step.expected, slot.string(), before + 1)) << describe(r);
    if (!step.reason.empty()) {
      EXPECT_EQ(r.entries().back().text, step.reason);
    }
  }
  running.station.interrupt();
  EXPECT_EQ(running.finish(), 0);
  EXPECT_EQ(running.station.flashed(), 4);
  EXPECT_EQ(r.count("failed"), 0) << describe(r);
  fs::remove(slot);
}

// --now takes the boards already there; --limit stops taking boards once that many succeeded or
// run, and ends the station when they have succeeded, without Ctrl+C.
TEST(Station, NowAndLimit) {
  SimulatedESP a(slowESP32()), b(slowESP32()), c(slowESP32());
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
  EXPECT_EQ(r.count("notice", ""), 3); // ready, limit reached, summary
  EXPECT_EQ(r.entries()[r.entries().size() - 2].text, "Limit of 2 reached: no new boards are taken.");
}

// The first Ctrl+C lets the running boards finish and takes no new ones; a second one stops
// them, and a stopped board counts as failed.
TEST(Station, CtrlCOnceLetsBoardsFinishTwiceStopsThem) {
  for (int presses : {1, 2}) {
    SCOPED_TRACE(presses);
    SimulatedESP a(slowESP32()), b(slowESP32()), late;
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
    if (presses == 1) {
      EXPECT_EQ(failures, 0) << describe(r);
      EXPECT_EQ(r.count("done"), 2);
      EXPECT_NE(describe(r).find("The 2 running boards finish; press Ctrl+C again to stop them."),
                std::string::npos)
          << describe(r);
    } else {
      EXPECT_EQ(failures, 2) << describe(r);
      EXPECT_EQ(r.count("stopped"), 2);
      EXPECT_EQ(r.count("done"), 0);
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
  EXPECT_EQ(order, (std::vector<std::string>{"started", "done", "started", "done"}))
      << describe(r);
  EXPECT_NE(describe(r).find("one at a time"), std::string::npos);
}

// The executable: JSON events and the record file, with simulated boards named as test devices.
TEST(StationCommand, JSONEventsAndTheRecordFile) {
  const fs::path root = fs::temp_directory_path() / ("tw-station-" + std::to_string(::getpid()));
  fs::remove_all(root);
  fs::create_directories(root);
  auto p = espProduct(ESPChip::esp32, 8192);
  p.product.name = "Sensor v2";
  // The directory form, so the test can take the digest of product.json itself.
  ProductPackage::writeDirectory({p.product, p.files, {}}, root / "Sensor.twflash");
  std::ifstream recordFile(root / "Sensor.twflash" / "product.json", std::ios::binary);
  const std::string record((std::istreambuf_iterator<char>(recordFile)), {});
  const std::string digest =
      Digest::sha256Hex(ByteView(reinterpret_cast<const std::uint8_t*>(record.data()), record.size()));

  SimulatedESP good;
  SimulatedESPOptions failing;
  failing.silent = true;
  SimulatedESP silent(failing);
  const std::string log = (root / "boards.jsonl").string();
  std::ofstream(log) << "{\"earlier\":true}\n"; // appended to, never replaced
  Result result =
      runCLI({"station", (root / "Sensor.twflash").string(), "--test-device", "--port",
              good.path(), "-p", silent.path(), "--json", "--record", log},
             R"("event":"failed")");
  EXPECT_EQ(result.status, 1) << result.out << result.err;

  const std::regex isoTime(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z)");
  std::map<std::string, std::vector<std::string>> events; // by port
  std::istringstream lines(result.out);
  for (std::string line; std::getline(lines, line);) {
    auto event = nlohmann::json::parse(line);
    EXPECT_TRUE(std::regex_match(event.at("time").get<std::string>(), isoTime)) << line;
    const std::string kind = event.at("event");
    if (kind != "progress") events[event.at("port")].push_back(kind);
    if (kind == "connected" || kind == "done") {
      EXPECT_EQ(event.at("chip"), "ESP32");
      EXPECT_EQ(event.at("mac"), "AB:CD:12:34:56:78");
    }
    if (kind == "failed") {
      EXPECT_FALSE(event.at("message").get<std::string>().empty());
    }
    if (kind == "progress") {
      EXPECT_LE(event.at("done"), event.at("total"));
    }
  }
  EXPECT_EQ(events[good.path()], (std::vector<std::string>{"started", "connected", "done"}));
  EXPECT_EQ(events[silent.path()], (std::vector<std::string>{"started", "failed"}));
  EXPECT_NE(result.err.find("Flashed 1 · Failed 1."), std::string::npos) << result.err;

  std::ifstream in(log);
  std::vector<nlohmann::json> rows;
  for (std::string line; std::getline(in, line);)
    rows.push_back(nlohmann::json::parse(line));
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_TRUE(rows[0].contains("earlier"));
  for (const auto& row : std::vector(rows.begin() + 1, rows.end())) {
    EXPECT_EQ(row.at("product"), "Sensor v2");
    EXPECT_EQ(row.at("productSHA256"), digest);
    EXPECT_TRUE(std::regex_match(row.at("time").get<std::string>(), isoTime));
    const bool done = row.at("port") == good.path();
    EXPECT_EQ(row.at("result"), done ? "done" : "failed");
    EXPECT_EQ(row.at("chip").is_null(), !done);
    EXPECT_EQ(row.at("message").get<std::string>().empty(), done);
    EXPECT_GE(row.at("seconds").get<double>(), 0.0);
  }
  fs::remove_all(root);
}

// Ctrl+C at the executable: the running board finishes, the station says so and ends with 0.
// Usage errors and an unwritable record end with 2 before any board is touched.
TEST(StationCommand, CtrlCAndRefusals) {
  const fs::path root = fs::temp_directory_path() / ("tw-station-c-" + std::to_string(::getpid()));
  fs::remove_all(root);
  fs::create_directories(root);
  auto p = espProduct(ESPChip::esp32, 64 * 1024);
  ProductPackage::write({p.product, p.files, {}}, root / "Sensor.twflash");
  const std::string product = (root / "Sensor.twflash").string();
  SimulatedESP board(slowESP32());

  Result stopped = runCLI({"station", product, "--test-device", "--port", board.path()},
                          "Flashen gestartet", "de");
  EXPECT_EQ(stopped.status, 0) << stopped.out << stopped.err;
  EXPECT_NE(stopped.out.find("Das laufende Board wird fertig geflasht"), std::string::npos)
      << stopped.out;
  EXPECT_NE(stopped.out.find(": Fertig in "), std::string::npos) << stopped.out;
  EXPECT_TRUE(stopped.lastLine().starts_with("Geflasht 1 · Fehlgeschlagen 0")) << stopped.out;

  const int syncsBefore = board.requests(ESPCommand::sync);
  const std::vector<std::vector<std::string>> refused = {
      {"station"},
      {"station", product, product},
      {"station", product, "--limit", "0"},
      {"station", product, "--limit", "many"},
      {"station", product, "--port", board.path()}, // a pseudo-terminal needs --test-device
      {"station", product, "--record", (root / "no" / "such" / "dir.jsonl").string()},
      {"station", (root / "missing.twflash").string()},
      {"station", product, "--target", "avr:uno"},
  };
  for (const auto& words : refused) {
    Result result = runCLI(words);
    EXPECT_EQ(result.status, 2) << words.back() << result.out << result.err;
    EXPECT_FALSE(result.err.empty()) << words.back();
  }
  EXPECT_EQ(board.requests(ESPCommand::sync), syncsBefore) << "a refused station touched a board";
  fs::remove_all(root);
}

// Every option the help's "A series of boards" topic gives the station is one it takes, and a
// full command line lands where the station reads it.
TEST(StationCommand, TheHelpTopicsOptionsAreTheStationsOwn) {
  // The station's part of the topic: from its first mention to the topic's end.
  std::string topicText;
  for (const auto& topic : L10n::Help::topics()) {
    bool station = false;
    for (const auto& block : topic.blocks) {
      station = station || block.text().find("tarnwick-cli station") != std::string::npos;
      if (station) topicText += block.text() + " ";
    }
  }
  const std::regex option(R"(--[a-z][a-z-]*)");
  int mentioned = 0;
  for (std::sregex_iterator it(topicText.begin(), topicText.end(), option), end; it != end; ++it) {
    std::vector<std::string> words = {"station", "P.twflash", it->str()};
    if (it->str() == "--port" || it->str() == "--limit" || it->str() == "--record")
      words.push_back("1");
    EXPECT_NO_THROW(cli::parseArguments(words)) << it->str();
    ++mentioned;
  }
  EXPECT_GE(mentioned, 5);

  auto arguments = cli::parseArguments({"station", "-p", "/dev/ttyUSB1", "--port=/dev/ttyUSB0",
                                        "--now", "--limit", "12", "--json", "--record",
                                        "b.jsonl", "--no-verify", "P.twflash"});
  EXPECT_EQ(arguments.ports, (std::vector<std::string>{"/dev/ttyUSB1", "/dev/ttyUSB0"}));
  EXPECT_EQ(arguments.limit, 12);
  EXPECT_EQ(arguments.record, "b.jsonl");
  EXPECT_TRUE(arguments.now && arguments.json && arguments.overrides.noVerify);
  EXPECT_EQ(arguments.inputs, std::vector<std::string>{"P.twflash"});
}

// Where a line loses its record or its reader, or two runs reach for one board, no board leaves
// unaccounted for: a board whose record line cannot be written counts as failed and no new
// boards are taken; a reader that goes away ends the station with 1 after the running boards
// are finished and recorded; a second run on a port in use is refused with who holds it.
TEST(StationCommand, LostRecordLostReaderAndPortsInUse) {
  const fs::path root = fs::temp_directory_path() / ("tw-station-l-" + std::to_string(::getpid()));
  fs::remove_all(root);
  fs::create_directories(root);
  auto p = espProduct(ESPChip::esp32, 64 * 1024);
  ProductPackage::write({p.product, p.files, {}}, root / "Sensor.twflash");
  const std::string product = (root / "Sensor.twflash").string();

  SimulatedESP full;
  Result fullDisk = runCLI({"station", product, "--test-device", "-p", full.path(), "--record",
                            "/dev/full"});
  EXPECT_EQ(fullDisk.status, 1) << fullDisk.out << fullDisk.err;
  EXPECT_NE(fullDisk.out.find("This board is missing from /dev/full: the disk is full."),
            std::string::npos)
      << fullDisk.out;
  EXPECT_NE(fullDisk.out.find("Flashed 0 · Failed 1."), std::string::npos) << fullDisk.out;

  SimulatedESP piped(slowESP32());
  const std::string log = (root / "boards.jsonl").string();
  Result lostReader = runCLI({"station", product, "--test-device", "-p", piped.path(), "--json",
                              "--record", log},
                             R"("event":"started")", "en", TARNWICK_CLI, true);
  EXPECT_EQ(lostReader.status, 1) << lostReader.err;
  EXPECT_NE(lostReader.err.find("output was closed"), std::string::npos) << lostReader.err;
  std::ifstream recorded(log);
  std::string line;
  ASSERT_TRUE(std::getline(recorded, line));
  EXPECT_EQ(nlohmann::json::parse(line).at("result"), "done") << line;

  // Two processes, as two stations run by root would be: one writes the board, the other is
  // told who has it.
  SimulatedESP shared(slowESP32());
  auto second = std::async(std::launch::async, [&] {
    std::this_thread::sleep_for(300ms);
    return runCLI({"flash", "--test-device", "-p", shared.path(), product});
  });
  Result first = runCLI({"flash", "--test-device", "-p", shared.path(), product});
  Result refused = second.get();
  EXPECT_EQ(first.status, 0) << first.err;
  EXPECT_EQ(refused.status, 1) << refused.err;
  EXPECT_NE(refused.err.find("in use by"), std::string::npos) << refused.err;

  // A port that is no serial adapter is a usage error everywhere.
  for (const std::string command : {"flash", "station"}) {
    Result pts = runCLI({command, "-p", piped.path(), product});
    EXPECT_EQ(pts.status, 2) << command << pts.err;
    Result bare = runCLI({command, "-p", "ttyUSB7", product});
    EXPECT_EQ(bare.status, 2) << command;
    EXPECT_NE(bare.err.find("Did you mean /dev/ttyUSB7?"), std::string::npos) << bare.err;
  }
  fs::remove_all(root);
}

// Board names carry the USB product name a device reports, which may hold anything.
TEST(StationOutput, NamesFromDevicesAreShownNotObeyed) {
  const StationBoard board{"/dev/ttyUSB0", "Evil\x1B]0;owned\a\u202E (ttyUSB0)"};
  const std::string shown = "Evil\\x1B]0;owned\\x07\\u202E (ttyUSB0)";
  for (bool interactive : {false, true}) {
    SCOPED_TRACE(interactive ? "terminal" : "pipe");
    char* buffer = nullptr;
    std::size_t size = 0;
    std::FILE* out = ::open_memstream(&buffer, &size);
    {
      StationConsole console(out, interactive);
      console.started(board);
      console.connected(board, "ESP32\x1B[2J", std::nullopt);
      console.progress(board, 50, 100);
      console.skipped(board, "it said \x1B[2J.");
      BoardOutcome outcome;
      outcome.board = board;
      outcome.result = BoardOutcome::Result::failed;
      outcome.message = "No answer from \u2066x\u2069.";
      console.finished(outcome);
      console.end();
    }
    std::fclose(out);
    std::string text(buffer, size);
    std::free(buffer);
    EXPECT_NE(text.find(shown), std::string::npos) << text;
    EXPECT_NE(text.find("\\x1B[2J"), std::string::npos) << text;
    EXPECT_NE(text.find("\\u2066x\\u2069"), std::string::npos) << text;
    // The status line's own "\r\033[K" is the only escape on a terminal.
    std::string rest = std::regex_replace(text, std::regex("\r\x1B\\[K"), "");
    EXPECT_EQ(rest.find('\x1B'), std::string::npos) << rest;
    for (const char* control : {"\u202E", "\u2066", "\a"})
      EXPECT_EQ(text.find(control), std::string::npos) << control;
  }
}
