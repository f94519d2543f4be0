#include <gtest/gtest.h>

#include <chrono>
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
    options.garbageBetweenFrames = revision == 2;
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
  Session manual(silent);
  Clock::time_point cancelledAt;
  std::thread canceller([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(700));
    cancelledAt = Clock::now();
    manual.context.cancel();
  });
  auto error = flashErrorOf([&] { manual.loader.connect(ResetMode::manual, false); });
  double late2 = since(cancelledAt);
  canceller.join();
  EXPECT_TRUE(error.isCancelled());
  EXPECT_LT(late2, 0.2);
  ASSERT_FALSE(manual.events.empty());
  EXPECT_EQ(manual.events.front(), FlashEvent(FlashEvents::Connecting{1, true}));

  // Cancelled before connecting: no attempt at all.
  Session before(silent);
  before.context.cancel();
  EXPECT_TRUE(flashErrorOf([&] { before.loader.connect(ResetMode::auto_, false); }).isCancelled());
  EXPECT_TRUE(before.events.empty());
}

TEST(ESPLoader, ResetSequencesAreExact) {
  RecordingLink link;
  JobContext context(nullptr);
  ESPLoader loader(link, context);
  loader.setWaiter([&](double s) { link.recordWait(s); });
  loader.classicReset();
  EXPECT_EQ(link.lineSteps(), (std::vector<std::string>{"DTR=0 RTS=1", "wait 0.10", "DTR=1 RTS=0",
                                                        "wait 0.05", "DTR=0 RTS=-"}));
  link.steps.clear();
  loader.usbJTAGReset();
  EXPECT_EQ(link.lineSteps(),
            (std::vector<std::string>{"DTR=0 RTS=0", "wait 0.10", "DTR=1 RTS=0", "wait 0.10",
                                      "DTR=0 RTS=1", "wait 0.10", "DTR=0 RTS=0"}));

  // Automatic mode alternates, starting with the method asked for.
  for (bool usbFirst : {false, true}) {
    RecordingLink silent;
    std::vector<std::string> resets;
    JobContext* self = nullptr;
    JobContext ctx([&](const FlashEvent& e) {
      // Four attempts show the pattern; stop there rather than wait for all eight.
      if (std::get<FlashEvents::Connecting>(e).attempt == 5) self->cancel();
    });
    self = &ctx;
    ESPLoader auto_(silent, ctx);
    auto_.setWaiter([&](double s) { silent.recordWait(s); });
    EXPECT_THROW(auto_.connect(ResetMode::auto_, usbFirst), FlashError);
    auto steps = silent.lineSteps();
    // A classic sequence starts "DTR=0 RTS=1"; a USB-JTAG one "DTR=0 RTS=0".
    for (std::size_t i = 0; i < steps.size(); ++i) {
      if (i == 0 || steps[i - 1] == "DTR=0 RTS=-" ||
          (steps[i - 1] == "DTR=0 RTS=0" && steps[i] != "wait 0.10")) {
        resets.push_back(steps[i] == "DTR=0 RTS=1" ? "classic" : "usb");
      }
    }
    ASSERT_GE(resets.size(), 4u);
    EXPECT_EQ(resets[0], usbFirst ? "usb" : "classic");
    EXPECT_EQ(resets[1], usbFirst ? "classic" : "usb");
    EXPECT_EQ(resets[2], resets[0]);
  }

  // Manual mode never touches the lines; it waits 0.4 s per attempt.
  RecordingLink untouched;
  JobContext ctx(nullptr);
  ESPLoader manual(untouched, ctx);
  int waits = 0;
  manual.setWaiter([&](double s) {
    untouched.recordWait(s);
    if (++waits == 3) ctx.cancel();
  });
  EXPECT_THROW(manual.connect(ResetMode::manual, false), FlashError);
  EXPECT_EQ(untouched.lineSteps(),
            (std::vector<std::string>{"wait 0.40", "wait 0.40", "wait 0.40"}));
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
