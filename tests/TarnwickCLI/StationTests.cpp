// The flashing station as the executable a user runs, against simulated boards, and what its
// console and JSON forms print.

#include <gtest/gtest.h>

#include <cctype>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <sys/ioctl.h>

#include <nlohmann/json.hpp>

#include "FlashCore/Digest.hpp"
#include "FlashCore/ProductPackage.hpp"
#include "Localization/Help.hpp"
#include "Localization/Language.hpp"
#include "Localization/StationTexts.hpp"
#include "Simulator/PseudoTerminal.hpp"
#include "Simulator/SimulatedESP.hpp"
#include "TarnwickCLI/Arguments.hpp"
#include "TarnwickCLI/Console.hpp"
#include "TarnwickCLI/RunCLI.hpp"
#include "TarnwickCLI/StationOutput.hpp"
#include "support/Boards.hpp"
#include "support/Products.hpp"
#include "support/Ser2net.hpp"

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

// A product file in a directory of its own, removed with it.
struct ProductOnDisk {
  explicit ProductOnDisk(const char* name, std::int64_t size = 64 * 1024)
      : root(fs::temp_directory_path() / (name + std::to_string(::getpid()))) {
    fs::remove_all(root);
    fs::create_directories(root);
    auto p = espProduct(ESPChip::esp32, size);
    ProductPackage::write({p.product, p.files, {}}, root / "Sensor.twflash");
  }
  ~ProductOnDisk() { fs::remove_all(root); }
  std::string path() const { return (root / "Sensor.twflash").string(); }
  fs::path root;
};

} // namespace

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
  const std::string digest = Digest::sha256Hex(
      ByteView(reinterpret_cast<const std::uint8_t*>(record.data()), record.size()));

  SimulatedESP good;
  SimulatedESPOptions failing;
  failing.silent = true;
  SimulatedESP silent(failing);
  const std::string log = (root / "boards.jsonl").string();
  std::ofstream(log) << "{\"earlier\":true}\n"; // appended to, never replaced
  Result result = runCLI({"station", (root / "Sensor.twflash").string(), "--test-device", "--port",
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
  const ProductOnDisk onDisk("tw-station-c-");
  const std::string product = onDisk.path();
  const fs::path& root = onDisk.root;
  SimulatedESP board(pacedESP32());

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
                                        "--now", "--limit", "12", "--json", "--record", "b.jsonl",
                                        "--no-verify", "P.twflash"});
  EXPECT_EQ(arguments.ports, (std::vector<std::string>{"/dev/ttyUSB1", "/dev/ttyUSB0"}));
  EXPECT_EQ(arguments.limit, 12);
  EXPECT_EQ(arguments.record, "b.jsonl");
  EXPECT_TRUE(arguments.now && arguments.json && arguments.overrides.noVerify);
  EXPECT_EQ(arguments.inputs, std::vector<std::string>{"P.twflash"});
}

namespace {
// The lines left on a terminal's screen: "\033[K" wipes the line being written, "\n" ends it.
// (The output only ever returns with "\r" to wipe.)
std::vector<std::string> screenLines(const std::string& out) {
  std::vector<std::string> lines;
  std::string current;
  for (std::size_t i = 0; i < out.size(); ++i) {
    if (out.compare(i, 3, "\033[K") == 0) {
      current.clear();
      i += 2;
    } else if (out[i] == '\n') {
      lines.push_back(current);
      current.clear();
    } else if (out[i] != '\r') {
      current += out[i];
    }
  }
  if (!current.empty()) lines.push_back(current);
  return lines;
}
} // namespace

namespace {
// The live line an 80-column terminal shows last, once `paths` started and are 45 % done, and
// then `left` was left alone.
std::string liveLineOf(const std::vector<std::string>& paths, const std::string& left) {
  PseudoTerminal screen; // the controller side reads what the station writes
  const int device = ::open(screen.path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  winsize size{};
  size.ws_row = 24;
  size.ws_col = 80;
  EXPECT_EQ(::ioctl(device, TIOCSWINSZ, &size), 0);
  std::FILE* out = ::fdopen(device, "w");
  {
    StationConsole console(out, true);
    for (const auto& path : paths)
      console.started({path, "ESP32 Dev (" + path.substr(5) + ")"});
    for (const auto& path : paths)
      console.progress({path, ""}, 45, 100);
    if (!left.empty()) console.skipped({left, ""}, "proved to be the last board.");
    console.notice({StationNotice::Kind::stopping}); // a line always draws the live line again
  }
  std::fclose(out);
  std::string shown;
  for (Bytes part; !(part = screen.receive(0.05)).empty();)
    shown.append(part.begin(), part.end());
  const auto start = shown.rfind("\r\033[K");
  return start == std::string::npos ? std::string() : shown.substr(start + 4);
}
} // namespace

// The live line with six boards on an 80-column terminal, in every language: the counts come
// first, the boards follow in the ports' natural order (pts/3 before pts/12), and the line never
// runs past the width: the boards' names shorten until it fits.
TEST(StationConsole, SixBoardsFitEightyColumnsInNaturalOrder) {
  struct Case {
    std::vector<std::string> paths;
    std::vector<std::string> numbersInOrder; // empty: the numbers do not tell the boards apart
  };
  const std::vector<Case> cases = {
      {{"/dev/pts/12", "/dev/pts/3", "/dev/pts/7", "/dev/pts/10", "/dev/pts/4", "/dev/pts/5"},
       {"3", "4", "5", "7", "10", "12"}},
      {{"/dev/ttyUSB10", "/dev/ttyUSB2", "/dev/ttyUSB1", "/dev/ttyUSB0", "/dev/ttyUSB11",
        "/dev/ttyUSB9"},
       {"0", "1", "2", "9", "10", "11"}},
      {{"/dev/ttyUSB1", "/dev/ttyACM0", "/dev/ttyUSB0", "/dev/ttyACM1"}, {}},
  };
  // Where `number` stands for a board 45 % done.
  auto placeOf = [](const std::string& line, const std::string& number) {
    for (auto at = line.find(number + " 45"); at != std::string::npos;
         at = line.find(number + " 45", at + 1)) {
      if (at == 0 || !std::isdigit(static_cast<unsigned char>(line[at - 1]))) return at;
    }
    return std::string::npos;
  };
  for (Language language : allLanguages) {
    LanguageOverride speaking(language);
    for (const Case& c : cases) {
      SCOPED_TRACE(std::string(code(language)) + " " + c.paths.front());
      const std::string live = liveLineOf(c.paths, {});
      EXPECT_LE(displayWidth(live), 79u) << live;
      const std::string counts = L10n::Station::status({}, 0, 0);
      EXPECT_TRUE(live.starts_with(counts.substr(0, counts.find(" · ")))) << live;
      std::size_t last = 0;
      for (const auto& number : c.numbersInOrder) {
        const auto at = placeOf(live, number);
        ASSERT_NE(at, std::string::npos) << number << " in " << live;
        EXPECT_GT(at, last) << number << " in " << live;
        last = at;
      }
    }
  }
  // A board connected to and then left alone is no longer in progress.
  EXPECT_EQ(liveLineOf({"/dev/ttyUSB1", "/dev/ttyUSB2"}, "/dev/ttyUSB1"),
            "Flashed 0 · Failed 0 · Flashing ttyUSB2 45%");
}

// JSON progress at the start and at every fifth percent a run crosses, however far one report
// jumps: a reader waiting for 35 % sees it although the run went from 31 % to 40 % at once. A
// board left alone is a skipped event with its reason.
TEST(StationJSON, ProgressAtEveryFifthPercentCrossedAndSkippedBoards) {
  char* buffer = nullptr;
  std::size_t size = 0;
  std::FILE* out = ::open_memstream(&buffer, &size);
  ASSERT_NE(out, nullptr);
  {
    StationJSON json(out, stderr);
    const StationBoard board{"/dev/ttyUSB0", "CP2102 (ttyUSB0)"};
    json.started(board);
    for (std::int64_t done : {0, 12, 310, 400, 400, 999, 1000})
      json.progress(board, done, 1000);
    json.skipped({"/dev/ttyACM0", "Arduino Uno (ttyACM0)"}, "a reason.");
  }
  std::fclose(out);
  std::istringstream lines(std::string(buffer, size));
  std::free(buffer);
  std::vector<int> percents;
  std::int64_t lastDone = 0;
  std::vector<nlohmann::json> skipped;
  for (std::string line; std::getline(lines, line);) {
    auto event = nlohmann::json::parse(line);
    if (event.at("event") == "progress") {
      percents.push_back(event.at("percent"));
      EXPECT_GE(event.at("done").get<std::int64_t>(), lastDone) << line;
      EXPECT_GE(event.at("done").get<std::int64_t>() * 100, percents.back() * 1000) << line;
      lastDone = event.at("done");
    } else if (event.at("event") == "skipped") {
      skipped.push_back(event);
    }
  }
  std::vector<int> everyFifth; // from the start at 0 %
  for (int percent = 0; percent <= 100; percent += 5)
    everyFifth.push_back(percent);
  EXPECT_EQ(percents, everyFifth);
  ASSERT_EQ(skipped.size(), 1u);
  EXPECT_EQ(skipped[0].at("port"), "/dev/ttyACM0");
  EXPECT_EQ(skipped[0].at("reason"), "a reason.");
  EXPECT_TRUE(skipped[0].contains("time"));
}

// A record line that cannot be written (a full disk): the board counts as failed, the summary
// names the problem, the station ends with 1, and on a terminal the message starts a line of
// its own instead of running on from the live line.
TEST(StationCommand, AFullRecordDisk) {
  ProductOnDisk product("tw-station-full-");
  SimulatedESP board(pacedESP32());
  RunOptions terminal;
  terminal.terminalColumns = 80;
  Result result = runCLI(
      {"station", product.path(), "--test-device", "-p", board.path(), "--record", "/dev/full"},
      terminal);
  EXPECT_EQ(result.status, 1) << result.out << result.err;
  const std::string problem = "This board is missing from /dev/full: the disk is full.";
  const auto at = result.out.find(problem + " No new boards are taken");
  ASSERT_NE(at, std::string::npos) << result.out;
  // Whatever came before it ended with a line break or was wiped from the line.
  const std::string before = result.out.substr(0, at);
  EXPECT_TRUE(before.ends_with("\n") || before.ends_with("\r\033[K")) << before;
  const auto lines = screenLines(result.out);
  ASSERT_GE(lines.size(), 2u);
  EXPECT_EQ(lines[lines.size() - 2], "Flashed 0 · Failed 1.");
  EXPECT_TRUE(lines.back().starts_with(problem)) << lines.back();
  EXPECT_NE(result.out.find("Flashed 0 · Failed 0 · Flashing "), std::string::npos)
      << "no live line was drawn: " << result.out;
}

// A reader of the output that goes away, of the JSON events or of the lines for people, while a
// board runs or while the station waits: the running board finishes and gets its record line,
// no board that comes later is touched, and the station ends with 1, saying so on standard
// error with the counts nobody read.
TEST(StationCommand, AReaderThatGoesAway) {
  ProductOnDisk product("tw-station-reader-");
  struct Case {
    const char* what;
    bool json;
    const char* when;
    bool boardComesLater;
  };
  const Case cases[] = {
      {"--json, during a run", true, R"("event":"started")", false},
      {"lines, during a run", false, "Flashing started", false},
      {"--json, between boards", true, R"("event":"done")", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    SimulatedESP board(pacedESP32()), later;
    const std::string log = (product.root / "boards.jsonl").string();
    fs::remove(log);
    const fs::path slot = product.root / "later";
    fs::remove(slot);
    std::vector<std::string> words = {"station",     product.path(), "--test-device",
                                      "-p",          board.path(),   "-p",
                                      slot.string(), "--record",     log};
    if (c.json) words.push_back("--json");
    RunOptions options;
    options.when = c.when;
    options.then = RunOptions::Then::closeOutput;
    if (c.boardComesLater) options.call = [&](pid_t) { fs::create_symlink(later.path(), slot); };
    Result result = runCLI(words, options);
    EXPECT_EQ(result.status, 1) << result.err;
    EXPECT_NE(result.err.find("The station’s output was closed (the program reading it ended). "
                              "No new boards were taken; the boards already running were "
                              "finished and recorded."),
              std::string::npos)
        << result.err;
    const auto counts = result.err.find("Flashed 1 · Failed 0.");
    EXPECT_NE(counts, std::string::npos) << result.err;
    EXPECT_EQ(result.err.find("Flashed", counts + 1), std::string::npos) << "said twice";
    EXPECT_EQ(later.requests(ESPCommand::sync), 0) << "a board came after the reader went";
    std::ifstream recorded(log);
    std::string line;
    ASSERT_TRUE(std::getline(recorded, line));
    EXPECT_EQ(nlohmann::json::parse(line).at("result"), "done") << line;
    EXPECT_FALSE(std::getline(recorded, line)) << line;
  }
}

// Two stations run by root on one board: TIOCEXCL does not keep root out, the lock does. The
// second is told who has the board, and the first writes it undisturbed.
TEST(StationCommand, TwoProcessesNeverWriteOneBoard) {
  ProductOnDisk product("tw-station-lock-", 256 * 1024);
  SimulatedESP shared(pacedESP32());
  Result second;
  pid_t firstProcess = 0;
  RunOptions whileConnected;
  whileConnected.when = "Chip: ESP32";
  whileConnected.then = RunOptions::Then::call;
  whileConnected.call = [&](pid_t pid) {
    firstProcess = pid;
    second = runCLI({"station", product.path(), "--test-device", "-p", shared.path()}, "in use by");
  };
  Result first =
      runCLI({"station", product.path(), "--test-device", "-p", shared.path(), "--limit", "1"},
             whileConnected);
  EXPECT_EQ(first.status, 0) << first.out << first.err;
  EXPECT_TRUE(first.lastLine().starts_with("Flashed 1 · Failed 0")) << first.out;
  EXPECT_NE(second.out.find(shared.path() + " is already in use by tarnwick-cli (process " +
                            std::to_string(firstProcess) + ")."),
            std::string::npos)
      << second.out << second.err;
  EXPECT_EQ(second.status, 1) << second.out << second.err;
}

// A port that is no serial adapter is a usage error everywhere, with the /dev name it most
// likely means; a --port not there yet is waited for, and said to be.
TEST(StationCommand, PortsThatAreNoSerialAdapters) {
  ProductOnDisk product("tw-station-ports-");
  PseudoTerminal pty;
  for (const std::string command : {"flash", "station"}) {
    Result pts = runCLI({command, "-p", pty.path(), product.path()});
    EXPECT_EQ(pts.status, 2) << command << pts.err;
    EXPECT_NE(pts.err.find(pty.path() + " is no serial adapter; only --test-device allows it."),
              std::string::npos)
        << pts.err;
    Result bare = runCLI({command, "-p", "ttyUSB7", product.path()});
    EXPECT_EQ(bare.status, 2) << command;
    EXPECT_NE(bare.err.find("ttyUSB7 is no device path. Did you mean /dev/ttyUSB7?"),
              std::string::npos)
        << bare.err;
  }
  const std::string absent = (product.root / "not-yet").string();
  Result waiting =
      runCLI({"station", product.path(), "--test-device", "-p", absent}, "Waiting for " + absent);
  EXPECT_EQ(waiting.status, 0) << waiting.err;
  const std::string said = "Waiting for " + absent + ": it is not there yet.";
  const auto first = waiting.out.find(said);
  EXPECT_NE(first, std::string::npos) << waiting.out;
  EXPECT_EQ(waiting.out.find(said, first + 1), std::string::npos) << "said more than once";
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

namespace {
std::size_t occurrences(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++count;
  return count;
}
} // namespace

// Boards behind network ports, served by tarnwick-simboard's own RFC 2217 server with the
// board's reset circuit: one already served when the station starts is taken at once, with its
// address as the port in the events and the record; a server started after the station is a
// board arriving, its server going away the board leaving, and a server back with another
// board another board to flash, while each time the server is out of reach it is said once.
// A host that does not exist is said once too, and holds nothing up.
TEST(StationCommand, BoardsBehindNetworkPorts) {
  ProductOnDisk product("tw-station-net-", 16 * 1024);
  {
    RunningProgram board(TARNWICK_SIMBOARD, {"esp32", "--rfc2217", "0"});
    const std::string port = board.firstLine();
    ASSERT_TRUE(port.starts_with("rfc2217://127.0.0.1:")) << port;
    const std::string record = (product.root / "boards.jsonl").string();
    Result run = runCLI(
        {"station", product.path(), "--port", port, "--json", "--limit", "1", "--record", record});
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    std::vector<std::string> events;
    std::istringstream lines(run.out);
    for (std::string line; std::getline(lines, line);) {
      auto event = nlohmann::json::parse(line);
      EXPECT_EQ(event.at("port"), port) << line;
      if (event.at("event") != "progress") events.push_back(event.at("event"));
    }
    EXPECT_EQ(events, (std::vector<std::string>{"started", "connected", "done"})) << run.out;
    std::ifstream in(record);
    std::string row;
    ASSERT_TRUE(std::getline(in, row));
    EXPECT_EQ(nlohmann::json::parse(row).at("port"), port);
  }

  const std::string address = "127.0.0.1:" + std::to_string(freeTCPPort());
  const std::string port = "rfc2217://" + address;
  const std::string refused = "Cannot reach " + port + ": " + address + " refused the connection.";
  std::unique_ptr<RunningProgram> server;
  int step = 0;
  RunOptions options;
  options.onOutput = [&](const Result& sofar) {
    const auto said = occurrences(sofar.out, refused);
    const auto done = occurrences(sofar.out, ": Done in ");
    auto serve = [&] {
      server = std::make_unique<RunningProgram>(
          TARNWICK_SIMBOARD, std::vector<std::string>{"esp32", "--rfc2217", address.substr(10)});
    };
    if (step == 0 && said == 1) {
      serve();
      ++step;
    } else if (step == 1 && done == 1) {
      server.reset(); // the board goes
      ++step;
    } else if (step == 2 && said == 2) {
      serve(); // another board (each simulated board has a MAC address of its own)
      ++step;
    }
  };
  // Named twice, in two spellings: still one port, which its server serves one client.
  Result run = runCLI(
      {"station", product.path(), "--port", port, "--port", "RFC2217://" + address, "--limit", "2"},
      options);
  server.reset();
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_EQ(step, 3) << run.out;
  EXPECT_EQ(occurrences(run.out, port + ": Flashing started"), 2u) << run.out;
  EXPECT_EQ(occurrences(run.out, ": Done in "), 2u) << run.out;
  EXPECT_EQ(occurrences(run.out, refused), 2u) << "once for each time it is out of reach";
  EXPECT_EQ(run.out.find("in use"), std::string::npos) << run.out;
  std::smatch first, second;
  const std::regex mac("MAC ([0-9A-F:]{17})");
  ASSERT_TRUE(std::regex_search(run.out, first, mac)) << run.out;
  const std::string rest = first.suffix();
  ASSERT_TRUE(std::regex_search(rest, second, mac)) << run.out;
  EXPECT_NE(first[1].str(), second[1].str());

  // Mixed with a local board, which is flashed meanwhile.
  const std::string nowhere = "rfc2217://nosuchhost.invalid:2000";
  SimulatedESP local;
  Result unknown = runCLI(
      {"station", product.path(), "--test-device", "--port", nowhere, "--port", local.path()},
      nowhere + " ist nicht erreichbar", "de");
  EXPECT_EQ(unknown.status, 0) << unknown.out << unknown.err;
  EXPECT_EQ(occurrences(unknown.out, "Der Rechner „nosuchhost.invalid“ wurde nicht gefunden."), 1u)
      << unknown.out;
  EXPECT_TRUE(unknown.lastLine().starts_with("Geflasht 1 · Fehlgeschlagen 0")) << unknown.out;
}
