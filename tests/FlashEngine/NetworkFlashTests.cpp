#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

#include "FlashEngine/ESPLoader.hpp"
#include "FlashEngine/FlashJob.hpp"
#include "FlashSerial/FlashPortError.hpp"
#include "FlashSerial/NetworkLink.hpp"
#include "Simulator/NetworkSerialServer.hpp"
#include "Simulator/SimulatedAVR.hpp"
#include "Simulator/SimulatedESP.hpp"
#include "support/EventRecorder.hpp"
#include "support/Products.hpp"
#include "support/Ser2net.hpp"

using namespace tarnwick;
using namespace tarnwick::simulator;
using namespace tarnwick::testing;
using Clock = std::chrono::steady_clock;

namespace {

bool holdsSketch(const SimulatedAVR& board, const ProductWithFiles& p) {
  const Bytes& sketch = p.files.begin()->second;
  const Bytes flash = board.flash();
  return std::equal(sketch.begin(), sketch.end(), flash.begin());
}

// A small product, so that the many runs stay short.
ProductWithFiles smallESPProduct(ESPChip chip, ResetMode reset) {
  auto p = espProduct(chip, 16 * 1024);
  p.product.resetMode = reset;
  return p;
}

} // namespace

// Debian's ser2net in front of the simulated boards' pseudo-terminals, as a rack computer serves
// real ones. It cannot set modem lines there, so the ESP is reset by hand (its simulated ROM
// waits anyway) and the Arduino's bootloader simply runs.
TEST(NetworkFlash, ThroughSer2netToSimulatedBoards) {
  {
    SimulatedESP board;
    Ser2net server(board.path());
    auto p = espProduct(ESPChip::esp32);
    p.product.resetMode = ResetMode::manual;
    EventRecorder recorder;
    FlashJob job(p.product, p.files, server.portName(), false, std::ref(recorder));
    const FlashSummary summary = job.run();
    EXPECT_EQ(summary.chip, "ESP32");
    EXPECT_EQ(summary.portPath, server.portName());
    EXPECT_TRUE(flashHoldsPlan(board.flash(), p, ESPChip::esp32));
    EXPECT_EQ(board.baud(), p.product.flashBaud); // the speed change went through
    // The restart at the end changes lines, which this server does not confirm: said once.
    EXPECT_EQ(recorder.count<FlashEvents::LinesUnconfirmed>(), 1);
  }
  {
    SimulatedAVR board;
    Ser2net server(board.path());
    auto p = avrProduct(AVRBoard::uno, 3000);
    EventRecorder recorder;
    FlashJob job(p.product, p.files, server.portName(), false, std::ref(recorder));
    EXPECT_EQ(job.run().chip, "ATmega328P");
    EXPECT_TRUE(holdsSketch(board, p));
    EXPECT_EQ(recorder.count<FlashEvents::LinesUnconfirmed>(), 1);
  }
}

// The simulated board's own server: DTR and RTS drive the board's reset circuit, so the board
// reaches its bootloader only when the engine's sequence is right for it, and every line change
// is confirmed.
TEST(NetworkFlash, EachResetSequenceOnTheBoardsOwnCircuit) {
  struct Case {
    std::string name;
    std::optional<ESPChip> chip;
    ResetWiring wiring;
    ResetMode reset;
    bool reachesBootloader;
    int attempts;
  };
  const Case cases[] = {
      {"classic on two transistors", ESPChip::esp32, ResetWiring::espAutoReset, ResetMode::classic,
       true, 1},
      {"automatic on two transistors", ESPChip::esp32, ResetWiring::espAutoReset,
       ResetMode::auto_, true, 1},
      {"USB-JTAG on the chip's own USB", ESPChip::esp32c3, ResetWiring::espUSBJTAG,
       ResetMode::usbJTAG, true, 1},
      // Automatic tries the classic sequence first on a port without USB ids.
      {"automatic on the chip's own USB", ESPChip::esp32s3, ResetWiring::espUSBJTAG,
       ResetMode::auto_, true, 2},
      {"the Arduino pulse", std::nullopt, ResetWiring::arduino, ResetMode::auto_, true, 1},
      // The wrong sequence for the circuit: EN rises while GPIO0 is high, every time.
      {"USB-JTAG on two transistors", ESPChip::esp32, ResetWiring::espAutoReset,
       ResetMode::usbJTAG, false, ESPLoader::attemptLimit},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::unique_ptr<SimulatedESP> esp;
    std::unique_ptr<SimulatedAVR> avr;
    ProductWithFiles p;
    std::string device;
    if (c.chip) {
      SimulatedESPOptions options;
      options.chip = *c.chip;
      esp = std::make_unique<SimulatedESP>(options);
      device = esp->path();
      p = smallESPProduct(*c.chip, c.reset);
    } else {
      avr = std::make_unique<SimulatedAVR>();
      device = avr->path();
      p = avrProduct(AVRBoard::uno, 2000);
    }
    NetworkSerialServer server(device, c.wiring, [&](BoardStart how) {
      if (esp) esp->start(how);
      if (avr) avr->start(how);
    });
    EventRecorder recorder;
    FlashJob job(p.product, p.files, server.portName(), false, std::ref(recorder));
    if (c.reachesBootloader) {
      EXPECT_NO_THROW(job.run());
      EXPECT_TRUE(esp ? flashHoldsPlan(esp->flash(), p, *c.chip) : holdsSketch(*avr, p));
    } else {
      EXPECT_EQ(errorOf<FlashError>([&] { job.run(); }), FlashError::noSync());
      EXPECT_EQ(esp->requests(ESPCommand::sync), 0); // the application never heard a request
    }
    EXPECT_EQ(recorder.count<FlashEvents::Connecting>(), c.attempts);
    EXPECT_EQ(recorder.count<FlashEvents::LinesUnconfirmed>(), 0);
  }
}

// Every way of not reaching a board behind a server ends the run with its own message; none
// hangs, and a board pulled out at the server during the run counts as unplugged.
TEST(NetworkFlash, EveryWayAServerFailsHasItsMessage) {
  auto failureOn = [](const std::string& port) {
    auto p = smallESPProduct(ESPChip::esp32, ResetMode::manual);
    FlashJob job(p.product, p.files, port, false, [](const FlashEvent&) {});
    return errorOf<FlashPortError>([&] { job.run(); });
  };
  EXPECT_EQ(failureOn("rfc2217://nosuchhost.invalid:2000"),
            FlashPortError::hostNotFound("nosuchhost.invalid"));
  const std::uint16_t closed = freeTCPPort();
  EXPECT_EQ(failureOn("rfc2217://127.0.0.1:" + std::to_string(closed)),
            FlashPortError::connectionRefused("127.0.0.1:" + std::to_string(closed)));
  {
    PlainServer silent;
    EXPECT_EQ(failureOn(silent.portName()),
              FlashPortError::noAnswer("127.0.0.1:" + std::to_string(silent.port())));
  }
  {
    PlainServer ssh("SSH-2.0-OpenSSH_9.2p1 Debian-2\r\n");
    EXPECT_EQ(failureOn(ssh.portName()),
              FlashPortError::notRFC2217("127.0.0.1:" + std::to_string(ssh.port())));
  }
  {
    Ser2net server("/dev/ttyUSB-tarnwick-absent");
    const std::string at = "127.0.0.1:" + std::to_string(server.port());
    EXPECT_EQ(failureOn(server.portName()), FlashPortError::noBoard(at));
  }
  {
    SimulatedESP board;
    Ser2net server(board.path());
    const std::string at = "127.0.0.1:" + std::to_string(server.port());
    NetworkLink otherClient(*parseNetworkPort(server.portName()), 115200);
    otherClient.open();
    EXPECT_EQ(failureOn(server.portName()), FlashPortError::portInUse(at));
  }
  {
    SimulatedESPOptions options;
    options.disconnectAfterDataBlocks = 2;
    SimulatedESP board(options);
    Ser2net server(board.path());
    const auto error = failureOn(server.portName());
    EXPECT_EQ(error, FlashPortError::disconnected("127.0.0.1:" + std::to_string(server.port())));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), FlashPortError::Kind::disconnected);
  }
}

// Boards whose bootloader is a USB device of its own are refused before anything is opened;
// and a connection that takes its time can be stopped like any other wait.
TEST(NetworkFlash, LeonardosAreRefusedAndConnectingCanBeStopped) {
  for (AVRBoard board : {AVRBoard::leonardo, AVRBoard::micro, AVRBoard::proMicro}) {
    auto p = avrProduct(board, 1000);
    PlainServer server;
    FlashJob job(p.product, p.files, server.portName(), false, [](const FlashEvent&) {});
    EXPECT_EQ(errorOf<FlashError>([&] { job.run(); }),
              FlashError::needsLocalPort(std::string(displayName(board))));
  }

  PlainServer silent;
  auto p = smallESPProduct(ESPChip::esp32, ResetMode::classic);
  FlashJob job(p.product, p.files, silent.portName(), false, [](const FlashEvent&) {});
  std::optional<FlashError> error;
  std::thread run([&] { error = errorOf<FlashError>([&] { job.run(); }); });
  // Once connected, the silent server holds the connection in Telnet negotiation for seconds.
  const auto deadline = Clock::now() + std::chrono::seconds(10);
  while (silent.accepted() == 0 && Clock::now() < deadline)
    std::this_thread::yield();
  EXPECT_EQ(silent.accepted(), 1);
  const auto stopped = Clock::now();
  job.cancel();
  run.join();
  EXPECT_EQ(error, FlashError::cancelled());
  EXPECT_LT(std::chrono::duration<double>(Clock::now() - stopped).count(), 1.0);
}
