#include <gtest/gtest.h>

#include <chrono>
#include <numeric>

#include "FlashSerial/NetworkLink.hpp"
#include "Simulator/NetworkSerialServer.hpp"
#include "Simulator/PseudoTerminal.hpp"
#include "support/Ser2net.hpp"

using namespace tarnwick;
using namespace tarnwick::simulator;
using namespace tarnwick::testing;
using Clock = std::chrono::steady_clock;

namespace {

NetworkPortAddress addressOf(const std::string& name) { return *parseNetworkPort(name); }

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

Bytes everyByteValue() {
  Bytes bytes(256);
  std::iota(bytes.begin(), bytes.end(), 0); // 0xFF is Telnet's command byte and must pass
  return bytes;
}

} // namespace

// Bytes both ways, speed, flushing and closing, through the real ser2net in front of a
// pseudo-terminal.
TEST(NetworkLink, CarriesEveryByteValueAndTheSpeedThroughSer2net) {
  PseudoTerminal device;
  Ser2net server(device.path());
  NetworkLink link(addressOf(server.portName()), 115200);
  EXPECT_FALSE(link.isOpen());
  EXPECT_THROW(link.write(Bytes{1}), FlashPortError);
  link.open();
  ASSERT_TRUE(link.isOpen());
  EXPECT_EQ(link.path(), server.portName());

  link.write(everyByteValue());
  EXPECT_EQ(device.receive(256, 5.0), everyByteValue());
  device.send(everyByteValue());
  EXPECT_EQ(link.read(256, 5.0), everyByteValue());

  // A count read keeps the surplus for the next read.
  device.send(Bytes{1, 2, 3, 4, 5});
  EXPECT_EQ(link.read(2, 5.0), (Bytes{1, 2}));
  EXPECT_EQ(link.read(3, 5.0), (Bytes{3, 4, 5}));
  EXPECT_TRUE(link.read(0.05).empty());

  link.setBaudRate(460800);
  EXPECT_EQ(link.baudRate(), 460800);
  EXPECT_THROW(link.setBaudRate(0), FlashPortError);
  EXPECT_EQ(link.baudRate(), 460800);

  // What arrived before a flush is gone, what comes after it is not. The three bytes leave the
  // device in one write, so they arrive together with the first. The server discards what it
  // holds when the flush reaches it, so the answer comes after a request sent behind the flush,
  // as a bootloader's does.
  device.send(Bytes{1, 2, 3});
  EXPECT_EQ(link.read(1, 5.0), Bytes{1});
  link.flushInput();
  link.write(Bytes{0x10});
  EXPECT_EQ(device.receive(1, 5.0), Bytes{0x10});
  device.send(Bytes{7});
  EXPECT_EQ(link.read(1, 5.0), Bytes{7});

  link.close();
  EXPECT_FALSE(link.isOpen());
  EXPECT_THROW(link.read(0.01), FlashPortError);
  // A closed link opens again, on a server that takes one client at a time.
  link.open();
  link.write(Bytes{0x42});
  EXPECT_EQ(device.receive(1, 5.0), Bytes{0x42});
}

// ser2net cannot set modem lines on a pseudo-terminal and does not confirm them: the first
// change waits at most about 200 ms, says so once, and later changes do not wait. A server that
// confirms is waited for every time, and never noted.
TEST(NetworkLink, LineChangesAreConfirmedOrGivenUpOnOnce) {
  PseudoTerminal device;
  Ser2net server(device.path());
  int notes = 0;
  SerialLinkOptions options;
  options.onLinesUnconfirmed = [&] { ++notes; };
  NetworkLink link(addressOf(server.portName()), 115200, options);
  link.open();
  EXPECT_EQ(link.confirmsLines(), std::nullopt);
  auto start = Clock::now();
  link.setLines(false, true);
  const double first = secondsSince(start);
  EXPECT_GE(first, NetworkLink::lineConfirmSeconds);
  EXPECT_LT(first, 2.0);
  EXPECT_EQ(link.confirmsLines(), false);
  start = Clock::now();
  for (int i = 0; i < 5; ++i)
    link.setLines(i % 2 == 0, i % 2 == 1);
  EXPECT_LT(secondsSince(start), NetworkLink::lineConfirmSeconds);
  EXPECT_EQ(notes, 1);
  // Bytes still flow after the unanswered requests.
  link.write(Bytes{0x55});
  EXPECT_EQ(device.receive(1, 5.0), Bytes{0x55});

  PseudoTerminal board;
  std::vector<BoardStart> starts;
  auto confirming = std::make_unique<NetworkSerialServer>(
      board.path(), ResetWiring::espAutoReset, [&](BoardStart how) { starts.push_back(how); });
  NetworkLink answered(addressOf(confirming->portName()), 115200, options);
  answered.open();
  answered.setLines(false, true);
  answered.setLines(true, false);
  EXPECT_EQ(answered.confirmsLines(), true);
  EXPECT_EQ(notes, 1);
  answered.write(Bytes{0x01});
  EXPECT_EQ(board.receive(1, 5.0), Bytes{0x01});
  answered.close();
  confirming.reset(); // its thread is done with `starts`
  // Running at first, then held in reset by RTS; EN rose with the second change, and the chip
  // starts once its strap delay has passed (the flash tests go that far).
  ASSERT_GE(starts.size(), 2u);
  EXPECT_EQ(starts[0], BoardStart::application);
  EXPECT_EQ(starts[1], BoardStart::heldInReset);
}

// A server that goes away ends the connection as an unplugged adapter ends a port; opened again,
// the link connects anew to whatever serves the port by then.
TEST(NetworkLink, ALostConnectionIsUnpluggedAndOpensAgain) {
  PseudoTerminal board;
  auto server = std::make_unique<NetworkSerialServer>(board.path(), ResetWiring::arduino,
                                                      [](BoardStart) {});
  const std::uint16_t port = server->port();
  NetworkLink link(addressOf(server->portName()), 115200);
  link.open();
  server.reset();
  const auto deadline = Clock::now() + std::chrono::seconds(5);
  std::optional<FlashPortError> lost;
  while (!lost && Clock::now() < deadline) {
    try {
      link.read(0.05);
    } catch (const FlashPortError& error) {
      lost = error;
    }
  }
  EXPECT_EQ(lost, FlashPortError::disconnected("127.0.0.1:" + std::to_string(port)));
  EXPECT_THROW(link.write(Bytes{1}), FlashPortError);

  server = std::make_unique<NetworkSerialServer>(board.path(), ResetWiring::arduino,
                                                 [](BoardStart) {}, "127.0.0.1", port);
  link.open();
  link.write(Bytes{0x30});
  EXPECT_EQ(board.receive(1, 5.0), Bytes{0x30});
}
