#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <numeric>
#include <thread>

#include "FlashEngine/ESPLoader.hpp"
#include "FlashSerial/FlashPort.hpp"
#include "support/RecordingLink.hpp"
#include "support/SimulatedESP.hpp"

using namespace tarnwick;
using namespace tarnwick::testing;
using Clock = std::chrono::steady_clock;

namespace {

double since(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// A loader on a real port opened on a simulated board's terminal.
struct Session {
  explicit Session(SimulatedESPOptions options)
      : board(std::move(options)), port(board.path(), 115200, true),
        context([this](const FlashEvent& e) { events.push_back(e); }), loader(port, context) {
    port.open();
  }
  int connectingEvents() const {
    int count = 0;
    for (const auto& e : events)
      count += std::holds_alternative<FlashEvents::Connecting>(e);
    return count;
  }
  SimulatedESP board;
  FlashPort port;
  std::vector<FlashEvent> events;
  JobContext context;
  ESPLoader loader;
};

template <typename F> FlashError flashErrorOf(F&& f) {
  try {
    f();
  } catch (const FlashError& error) {
    return error;
  }
  ADD_FAILURE() << "no FlashError";
  return FlashError::noSync();
}

} // namespace

TEST(ESPLoader, ConnectsToEveryChipAndReadsItsMAC) {
  struct Case {
    ESPChip chip;
    int revision;
  };
  std::vector<Case> cases;
  for (ESPChip chip : ESPChips::all)
    cases.push_back({chip, 0});
  for (int revision = 1; revision < 4; ++revision)
    cases.push_back({ESPChip::esp32c3, revision});
  for (const auto& [chip, revision] : cases) {
    SimulatedESPOptions options;
    options.chip = chip;
    options.c3Revision = revision;
    // Noise between frames on every other board, the ESP8266 with its two status bytes among them.
    options.garbageBetweenFrames = static_cast<int>(chip) % 2 == 0 || revision == 2;
    options.macWord0 = chip == ESPChip::esp8266 ? 0x44000000 : 0x12345678;
    options.macWord1 = chip == ESPChip::esp8266 ? 0x00012233 : 0x0000ABCD;
    Session session(options);
    EXPECT_EQ(session.loader.connect(ResetMode::classic, false), chip) << rawValue(chip);
    EXPECT_EQ(session.loader.chip(), chip);
    EXPECT_EQ(session.connectingEvents(), 1);
    auto mac = session.loader.readMAC();
    ASSERT_TRUE(mac) << rawValue(chip);
    std::array<std::uint8_t, 6> expected =
        chip == ESPChip::esp8266 ? std::array<std::uint8_t, 6>{0xAC, 0xD0, 0x74, 0x22, 0x33, 0x44}
                                 : std::array<std::uint8_t, 6>{0xAB, 0xCD, 0x12, 0x34, 0x56, 0x78};
    EXPECT_EQ(*mac, expected);
    // Chips with security info are known without reading the magic register.
    bool secure = securityInfoChipID(chip).has_value();
    auto log = session.board.requestLog();
    EXPECT_EQ(std::count(log.begin(), log.end(), opcode(ESPCommand::readRegister)),
              secure ? 2 : (chip == ESPChip::esp8266 ? 4 : 3));
  }
}

TEST(ESPLoader, UnknownChipAndSilentBoardGiveNoSync) {
  SimulatedESPOptions unknown;
  unknown.detectionValue = 0xDEADBEEF;
  unknown.chip = ESPChip::esp32;
  Session a(unknown);
  EXPECT_EQ(flashErrorOf([&] { a.loader.connect(ResetMode::classic, false); }),
            FlashError::noSync());

  SimulatedESPOptions silent;
  silent.silent = true;
  Session b(silent);
  auto start = Clock::now();
  EXPECT_EQ(flashErrorOf([&] { b.loader.connect(ResetMode::auto_, false); }), FlashError::noSync());
  double seconds = since(start);
  EXPECT_EQ(b.connectingEvents(), 8);
  // Eight attempts of a reset (0.15 or 0.3 s) and five 0.1 s sync tries: about 5.8 s.
  EXPECT_GT(seconds, 5.0);
  EXPECT_LT(seconds, 9.0);
  EXPECT_EQ(b.board.requests(ESPCommand::sync), 40);
}

TEST(ESPLoader, BoardThatNeedsSeveralResetsAndCancellation) {
  SimulatedESPOptions late;
  late.ignoredSyncs = 7; // answers during the second attempt
  late.chip = ESPChip::esp32s3;
  Session session(late);
  EXPECT_EQ(session.loader.connect(ResetMode::usbJTAG, false), ESPChip::esp32s3);
  EXPECT_EQ(session.connectingEvents(), 2);

  SimulatedESPOptions silent;
  silent.silent = true;
  {
    // Cancelled while the user is asked to reset the board by hand.
    Session manual(silent);
    std::promise<void> waiting;
    bool first = true;
    manual.loader.setWaiter([&](double s) {
      if (std::exchange(first, false)) waiting.set_value();
      manual.context.wait(s);
    });
    Clock::time_point cancelledAt;
    std::thread canceller([&] {
      waiting.get_future().wait();
      cancelledAt = Clock::now();
      manual.context.cancel();
    });
    auto error = flashErrorOf([&] { manual.loader.connect(ResetMode::manual, false); });
    auto noticed = Clock::now();
    canceller.join();
    EXPECT_TRUE(error.isCancelled());
    // Waits sleep in 0.02 s slices; the rest is margin for a loaded machine.
    EXPECT_LT(std::chrono::duration<double>(noticed - cancelledAt).count(), 0.1);
    EXPECT_EQ(manual.events, (std::vector<FlashEvent>{FlashEvents::Connecting{1, true}}));
    EXPECT_EQ(manual.board.requests(ESPCommand::sync), 0);
  }
  {
    // Cancelled while waiting for a sync answer that never comes.
    Session waiting(silent);
    Clock::time_point cancelledAt;
    std::thread canceller([&] {
      while (waiting.board.requests(ESPCommand::sync) < 3)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
      cancelledAt = Clock::now();
      waiting.context.cancel();
    });
    auto error = flashErrorOf([&] { waiting.loader.connect(ResetMode::classic, false); });
    auto noticed = Clock::now();
    canceller.join();
    EXPECT_TRUE(error.isCancelled());
    // Reads are cut at 0.1 s, so a cancel is seen within one read and a margin.
    EXPECT_LT(std::chrono::duration<double>(noticed - cancelledAt).count(), 0.25);
    EXPECT_EQ(waiting.connectingEvents(), 1);
  }

  // Cancelled before connecting: no attempt at all.
  Session before(silent);
  before.context.cancel();
  EXPECT_TRUE(flashErrorOf([&] { before.loader.connect(ResetMode::auto_, false); }).isCancelled());
  EXPECT_TRUE(before.events.empty());
}

namespace {

const std::vector<std::string> classicSteps = {"DTR=0 RTS=1", "wait 0.10", "DTR=1 RTS=0",
                                               "wait 0.05", "DTR=0 RTS=-"};
const std::vector<std::string> usbJTAGSteps = {"DTR=0 RTS=0", "wait 0.10",   "DTR=1 RTS=0",
                                               "wait 0.10",   "DTR=0 RTS=1", "wait 0.10",
                                               "DTR=0 RTS=0"};
const std::vector<std::string> manualSteps = {"wait 0.40"};

// A loader on a recording link whose waits are recorded instead of slept.
struct Bench {
  Bench() : context([this](const FlashEvent& e) { events.push_back(e); }), loader(link, context) {
    loader.setWaiter([this](double s) { link.recordWait(s); });
  }
  std::vector<int> attempts(bool manual) const {
    std::vector<int> result;
    for (const auto& e : events) {
      const auto& connecting = std::get<FlashEvents::Connecting>(e);
      EXPECT_EQ(connecting.manual, manual);
      result.push_back(connecting.attempt);
    }
    return result;
  }
  RecordingLink link;
  std::vector<FlashEvent> events;
  JobContext context;
  ESPLoader loader;
};

} // namespace

TEST(ESPLoader, ResetSequencesOfEveryMethodAndAttempt) {
  // Reads that fail at once make every sync try an unanswered one without waiting for it, so
  // all attempts of a mode can be recorded: the reset of each, then its five sync requests.
  enum Method { classic, usbJTAG, manual };
  auto expected = [](std::vector<Method> methods) {
    std::vector<std::string> steps;
    for (Method method : methods) {
      const auto& reset = method == classic   ? classicSteps
                          : method == usbJTAG ? usbJTAGSteps
                                              : manualSteps;
      steps.insert(steps.end(), reset.begin(), reset.end());
      steps.insert(steps.end(), 5, "write 0x08");
    }
    return steps;
  };
  struct Case {
    ResetMode mode;
    bool usbJTAGFirst;
    std::vector<Method> methods;
  };
  const std::vector<Case> cases = {
      {ResetMode::auto_,
       false,
       {classic, usbJTAG, classic, usbJTAG, classic, usbJTAG, classic, usbJTAG}},
      {ResetMode::auto_,
       true,
       {usbJTAG, classic, usbJTAG, classic, usbJTAG, classic, usbJTAG, classic}},
      {ResetMode::classic, true, std::vector<Method>(8, classic)},
      {ResetMode::usbJTAG, false, std::vector<Method>(8, usbJTAG)},
      // The user resets the board by hand: lines untouched, thirty attempts.
      {ResetMode::manual, true, std::vector<Method>(30, manual)},
  };
  for (const auto& [mode, usbJTAGFirst, methods] : cases) {
    SCOPED_TRACE(std::string(rawValue(mode)) + (usbJTAGFirst ? " usbJTAGFirst" : ""));
    Bench bench;
    bench.link.failReads = true;
    EXPECT_EQ(flashErrorOf([&] { bench.loader.connect(mode, usbJTAGFirst); }),
              FlashError::noSync());
    EXPECT_EQ(bench.link.steps, expected(methods));
    std::vector<int> numbers(methods.size());
    std::iota(numbers.begin(), numbers.end(), 1);
    EXPECT_EQ(bench.attempts(mode == ResetMode::manual), numbers);
    EXPECT_FALSE(bench.loader.chip());
  }
}

TEST(ESPLoader, LineFailuresAndCancellationAtEachPointOfConnecting) {
  {
    // A sync request that cannot be written ends the connection at once.
    Bench bench;
    bench.link.failWrites = {opcode(ESPCommand::sync)};
    auto start = Clock::now();
    EXPECT_THROW(bench.loader.connect(ResetMode::auto_, false), FlashPortError);
    EXPECT_LT(since(start), 1.0);
    auto steps = classicSteps;
    steps.push_back("write 0x08");
    EXPECT_EQ(bench.link.steps, steps);
  }
  {
    // Old ROMs may choke on the security-info request; the magic register still tells.
    Bench bench;
    bench.link.answerRequests = true;
    bench.link.failWrites = {opcode(ESPCommand::getSecurityInfo)};
    bench.link.registers[ESPChips::magicRegister] = 0x00F01D83;
    EXPECT_EQ(bench.loader.connect(ResetMode::classic, false), ESPChip::esp32);
    std::vector<std::string> writes;
    for (const auto& step : bench.link.steps)
      if (step.starts_with("write")) writes.push_back(step);
    EXPECT_EQ(writes, (std::vector<std::string>{"write 0x08", "write 0x14", "write 0x0A"}));
    // A refusal long enough to hold a chip id is still a refusal.
    Bench refused;
    refused.link.answerRequests = true;
    refused.link.answerData[opcode(ESPCommand::getSecurityInfo)] = Bytes(24, 0);
    refused.link.answerData[opcode(ESPCommand::getSecurityInfo)][12] = 9; // ESP32-S3
    refused.link.answerData[opcode(ESPCommand::getSecurityInfo)][20] = 1;
    refused.link.registers[ESPChips::magicRegister] = 0x00F01D83;
    EXPECT_EQ(refused.loader.connect(ResetMode::classic, false), ESPChip::esp32);
  }
  {
    // Once the chip answered a sync, a failing read is the end, not another try.
    Bench bench;
    bench.link.answerRequests = true;
    int reads = 0;
    bench.link.onRead = [&] {
      if (++reads == 2) bench.link.failReads = true;
    };
    try {
      bench.loader.connect(ResetMode::classic, false);
      ADD_FAILURE() << "connected";
    } catch (const FlashPortError& error) {
      EXPECT_EQ(error, FlashPortError::disconnected());
    }
    EXPECT_EQ(bench.attempts(false), std::vector<int>{1});
  }
  {
    // Cancelled during a reset wait: no further line change.
    Bench bench;
    bench.loader.setWaiter([&](double s) {
      bench.link.recordWait(s);
      bench.context.cancel();
      bench.context.wait(s);
    });
    EXPECT_TRUE(
        flashErrorOf([&] { bench.loader.connect(ResetMode::usbJTAG, false); }).isCancelled());
    EXPECT_EQ(bench.link.steps, (std::vector<std::string>{"DTR=0 RTS=0", "wait 0.10"}));
  }
  {
    // Cancelled during the last sync try of an attempt: caught between attempts, before the
    // next attempt's event and reset.
    Bench bench;
    bench.link.failReads = true;
    int reads = 0;
    bench.link.onRead = [&] {
      if (++reads == 5) bench.context.cancel();
    };
    EXPECT_TRUE(
        flashErrorOf([&] { bench.loader.connect(ResetMode::classic, false); }).isCancelled());
    EXPECT_EQ(bench.attempts(false), std::vector<int>{1});
    auto steps = classicSteps;
    steps.insert(steps.end(), 5, "write 0x08");
    EXPECT_EQ(bench.link.steps, steps);
  }
}

TEST(ESPLoader, ESP8266MACPrefixes) {
  struct Case {
    std::uint32_t mac0, mac1, mac3;
    std::optional<std::array<std::uint8_t, 6>> mac;
  };
  const Case cases[] = {
      {0x9A000000, 0x00005678, 0, std::array<std::uint8_t, 6>{0x18, 0xFE, 0x34, 0x56, 0x78, 0x9A}},
      {0x9A000000, 0x00015678, 0, std::array<std::uint8_t, 6>{0xAC, 0xD0, 0x74, 0x56, 0x78, 0x9A}},
      // A programmed prefix in mac3 wins over the one told by mac1.
      {0x9A000000, 0x00015678, 0x00112233,
       std::array<std::uint8_t, 6>{0x11, 0x22, 0x33, 0x56, 0x78, 0x9A}},
      {0x9A000000, 0x00025678, 0, std::nullopt},
  };
  for (const auto& c : cases) {
    Bench bench;
    bench.link.answerRequests = true;
    bench.link.registers = {{ESPChips::magicRegister, 0xFFF0C101},
                            {ESPChips::esp8266MACRegisters[0], c.mac0},
                            {ESPChips::esp8266MACRegisters[1], c.mac1},
                            {ESPChips::esp8266MACRegisters[2], c.mac3}};
    ASSERT_EQ(bench.loader.connect(ResetMode::classic, false), ESPChip::esp8266);
    EXPECT_EQ(bench.loader.readMAC(), c.mac) << std::hex << c.mac1 << " " << c.mac3;
  }
  // Without a connected chip nothing is asked.
  Bench idle;
  EXPECT_FALSE(idle.loader.readMAC());
  EXPECT_TRUE(idle.link.steps.empty());
}

TEST(ESPLoader, RefusalsAndMissingAnswers) {
  // A refused attach carries opcode and error code.
  SimulatedESPOptions refusing;
  refusing.failCommand = opcode(ESPCommand::spiAttach);
  refusing.failureCode = 0x05;
  Session a(refusing);
  a.loader.connect(ResetMode::classic, false);
  EXPECT_EQ(flashErrorOf([&] { a.loader.attachFlash(0x400000); }),
            FlashError::commandFailed(0x0D, 0x05));

  // No answer to the parameters request: noResponse with its opcode after 3 s.
  SimulatedESPOptions mute;
  mute.ignoreCommand = opcode(ESPCommand::spiSetParameters);
  Session b(mute);
  b.loader.connect(ResetMode::classic, false);
  auto start = Clock::now();
  EXPECT_EQ(flashErrorOf([&] { b.loader.attachFlash(0x400000); }), FlashError::noResponse(0x0B));
  EXPECT_NEAR(since(start), 3.0, 0.5);

  // A MAC read that fails yields no MAC rather than an error.
  SimulatedESPOptions noMAC;
  noMAC.failCommand = opcode(ESPCommand::readRegister);
  noMAC.failOnNth = 2; // the first read identifies the ESP32, the second is MAC word 0
  Session c(noMAC);
  c.loader.connect(ResetMode::classic, false);
  EXPECT_FALSE(c.loader.readMAC());

  // The board goes away: the port's own error comes through unchanged.
  SimulatedESPOptions unplugged;
  unplugged.disconnectAfterRequests = 2;
  unplugged.chip = ESPChip::esp32s3;
  unplugged.syncAnswers = 1;
  Session d(unplugged);
  d.loader.connect(ResetMode::classic, false);
  EXPECT_THROW(d.loader.attachFlash(0x400000), FlashPortError);

  // Unplugged right after detection: the MAC is simply unknown, the next request fails.
  SimulatedESPOptions gone;
  gone.chip = ESPChip::esp32;
  gone.disconnectAfterRequests = 3; // sync, security info, magic register
  Session e(gone);
  EXPECT_EQ(e.loader.connect(ResetMode::classic, false), ESPChip::esp32);
  auto start2 = Clock::now();
  EXPECT_FALSE(e.loader.readMAC());
  EXPECT_LT(since(start2), 1.0);
  EXPECT_THROW(e.loader.attachFlash(0x400000), FlashPortError);
}

TEST(ESPLoader, SpeedChangesAndTheESP8266Exceptions) {
  SimulatedESPOptions options;
  options.chip = ESPChip::esp32c6;
  Session s(options);
  EXPECT_FALSE(s.loader.switchBaudRate(460800)); // not connected yet
  s.loader.connect(ResetMode::classic, false);
  EXPECT_FALSE(s.loader.switchBaudRate(115200));
  EXPECT_TRUE(s.loader.switchBaudRate(460800));
  EXPECT_EQ(s.port.baudRate(), 460800);
  EXPECT_EQ(s.board.baud(), 460800);
  s.loader.attachFlash(0x800000); // still talking after the change
  EXPECT_EQ(s.board.requests(ESPCommand::spiSetParameters), 1);

  SimulatedESPOptions old;
  old.chip = ESPChip::esp8266;
  Session e(old);
  e.loader.connect(ResetMode::classic, false);
  std::size_t before = e.board.requestLog().size();
  EXPECT_FALSE(e.loader.switchBaudRate(460800));
  e.loader.attachFlash(0x100000);
  EXPECT_EQ(e.loader.flashMD5(0, 0x1000), std::nullopt);
  EXPECT_EQ(e.board.requestLog().size(), before);

  // An adapter that refuses the speed: the chip was already told.
  RecordingLink link;
  link.answerRequests = true;
  link.refuseBaudRate = true;
  link.registers[ESPChips::magicRegister] = 0x00F01D83;
  JobContext context(nullptr);
  ESPLoader loader(link, context);
  loader.setWaiter([&](double s) { link.recordWait(s); });
  EXPECT_EQ(loader.connect(ResetMode::classic, false), ESPChip::esp32);
  link.steps.clear();
  EXPECT_THROW(loader.switchBaudRate(921600), FlashPortError);
  EXPECT_EQ(link.steps, (std::vector<std::string>{"write 0x0F", "baud 921600"}));
}
