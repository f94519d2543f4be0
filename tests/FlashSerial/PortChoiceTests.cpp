#include <gtest/gtest.h>

#include <sstream>

#include "FlashSerial/PortChoice.hpp"

using namespace tarnwick;

namespace {

// "+ttyUSB0 ttyS0": ports in list order, "+" marking those with a USB vendor id.
std::vector<SerialPortInfo> ports(const std::string& text) {
  std::vector<SerialPortInfo> result;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    bool usb = word.starts_with('+');
    result.push_back({"/dev/" + word.substr(usb ? 1 : 0), {}, {}, {}});
    if (usb) result.back().vendorID = 0x10C4;
  }
  return result;
}

std::optional<std::set<std::string>> previous(const char* text) {
  if (!text) return std::nullopt;
  return PortChoice::pathsOf(ports(text));
}

} // namespace

TEST(PortChoice, NewBoardsAndFallbacks) {
  struct Case {
    const char* ports;
    const char* previous; // null: the first list
    const char* selected;
    bool quiet;
    const char* newBoard;
    const char* fallback;
  };
  const Case cases[] = {
      // The first list never has a new board; it keeps a present selection or picks a USB port.
      {"+ttyUSB0 +ttyUSB1", nullptr, "/dev/ttyUSB1", false, "", ""},
      {"ttyS0 +ttyUSB3", nullptr, "/dev/ttyUSB9", false, "", "/dev/ttyUSB3"},
      // New USB ports, the first in list order; from an empty list any USB port is new.
      {"+ttyUSB0 +ttyACM0 +ttyACM1", "ttyUSB0", "/dev/ttyUSB0", false, "/dev/ttyACM0", ""},
      {"ttyS0 +ttyUSB0", "", "", false, "/dev/ttyUSB0", ""},
      // Ports without a vendor id are neither new boards nor fallbacks.
      {"+ttyUSB0 ttyS4", "ttyUSB0", "/dev/ttyUSB0", false, "", ""},
      {"ttyS0 ttyS1", "ttyS0", "/dev/ttyUSB0", false, "", ""},
      // Within the quiet time a new port only replaces a selection that vanished.
      {"+ttyACM0", "ttyUSB0", "/dev/ttyUSB0", true, "", "/dev/ttyACM0"},
      {"+ttyUSB0 +ttyACM0", "ttyUSB0", "/dev/ttyUSB0", true, "", ""},
      // Unplugging, or an empty list, leaves the selection alone.
      {"+ttyUSB0", "ttyUSB0 ttyUSB1", "/dev/ttyUSB0", false, "", ""},
      {"", "ttyUSB0", "/dev/ttyUSB0", false, "", ""},
  };
  for (const auto& c : cases) {
    auto decision = PortChoice::decide(ports(c.ports), previous(c.previous), c.selected,
                                       [&](const std::string&) { return c.quiet; });
    EXPECT_EQ(decision.newBoard.value_or(""), c.newBoard) << c.ports << " / " << c.selected;
    EXPECT_EQ(decision.fallback.value_or(""), c.fallback) << c.ports << " / " << c.selected;
  }
}

TEST(PortChoice, QuietTimeAppliesPerPort) {
  // A station whose run on ttyACM0 just ended: that board re-enumerating is not new, a board
  // plugged in elsewhere at the same moment is.
  auto decision =
      PortChoice::decide(ports("+ttyACM0 +ttyACM1"), previous(""), "/dev/ttyACM0",
                         [](const std::string& path) { return path == "/dev/ttyACM0"; });
  EXPECT_EQ(decision, (PortChoice::Decision{"/dev/ttyACM1", {}}));
}

// What a port that comes back right after a run holds, by what the port is and by the board's
// identity; and which boards' family the USB ids alone tell.
TEST(PortChoice, ArrivalIsJudgedByPortKindAndIdentity) {
  using Clock = std::chrono::steady_clock;
  using A = PortChoice::Arrival;
  const auto now = Clock::now();
  auto port = [](int vendor, int product, std::optional<std::string> serial = std::nullopt) {
    return SerialPortInfo{"/dev/ttyACM0", std::nullopt, vendor, product, std::move(serial)};
  };
  const SerialPortInfo ch340 = port(0x1A86, 0x7523), cp210x = port(0x10C4, 0xEA60),
                       ftdi = port(0x0403, 0x6001), uno = port(0x2341, 0x0043),
                       mega = port(0x2A03, 0x0042), espUSB = port(0x303A, 0x1001),
                       leonardo = port(0x2341, 0x8036), proMicro = port(0x1B4F, 0x9206),
                       unknown = port(0x1234, 0x5678);
  const auto quiet = now + std::chrono::seconds(6);
  const PortChoice::FlashedBoard withSerial{quiet, "S1", "AA:BB"};
  const PortChoice::FlashedBoard over{now - std::chrono::seconds(1), "S1", "AA:BB"};
  const PortChoice::FlashedBoard noSerial{quiet, std::nullopt, "AA:BB"};
  const PortChoice::FlashedBoard neverAnswered{quiet, std::nullopt, std::nullopt};
  const PortChoice::FlashedBoard provedSame{quiet, std::nullopt, "AA:BB", true};
  struct Case {
    const char* what;
    SerialPortInfo port;
    bool testDevice;
    std::optional<PortChoice::FlashedBoard> last;
    bool esp;
    A expected;
  };
  const std::vector<Case> cases = {
      {"nothing flashed there yet", espUSB, false, std::nullopt, true, A::newBoard},
      {"the quiet time is over", espUSB, false, over, true, A::newBoard},
      // A board restarting does not take its USB-serial chip away: what comes back is new.
      {"behind a CH340", ch340, false, noSerial, true, A::newBoard},
      {"behind a CP210x", cp210x, false, noSerial, true, A::newBoard},
      {"behind an FTDI", ftdi, false, neverAnswered, true, A::newBoard},
      {"an Uno's USB chip", uno, false, noSerial, false, A::newBoard},
      {"a Mega's USB chip", mega, false, noSerial, false, A::newBoard},
      {"a test device", espUSB, true, noSerial, true, A::newBoard},
      // Own USB: the serial number tells, else the MAC, else nothing.
      {"own USB, same serial number", port(0x303A, 0x1001, "S1"), false, withSerial, true,
       A::sameSerialNumber},
      {"own USB, another serial number", port(0x303A, 0x1001, "S2"), false, withSerial, true,
       A::newBoard},
      {"own USB, serial number only now", port(0x303A, 0x1001, "S1"), false, noSerial, true,
       A::compareMAC},
      {"own USB, no serial number, ESP", espUSB, false, noSerial, true, A::compareMAC},
      {"own USB, the last board never answered", espUSB, false, neverAnswered, true, A::cannotTell},
      {"own USB, the board proved itself already", espUSB, false, provedSame, true, A::cannotTell},
      {"Leonardo without a serial number", leonardo, false, noSerial, false, A::cannotTell},
      {"Leonardo, another serial number", port(0x2341, 0x8036, "B"), false,
       PortChoice::FlashedBoard{quiet, "A", std::nullopt}, false, A::newBoard},
      {"Pro Micro without a serial number", proMicro, false, noSerial, false, A::cannotTell},
      {"an unknown adapter keeps the quiet time", unknown, false, noSerial, true, A::compareMAC},
  };
  for (const Case& c : cases) {
    auto last = c.last;
    EXPECT_EQ(PortChoice::judgeArrival(c.port, c.testDevice, last ? &*last : nullptr, c.esp, now),
              c.expected)
        << c.what;
  }
  // The return of a board that proved itself is the restart the proof caused; the board after
  // it is compared again.
  auto proved = provedSame;
  EXPECT_EQ(PortChoice::judgeArrival(espUSB, false, &proved, true, now), A::cannotTell);
  EXPECT_EQ(PortChoice::judgeArrival(espUSB, false, &proved, true, now), A::compareMAC);
  EXPECT_NE(PortChoice::whyLeftAlone(A::sameSerialNumber), PortChoice::whyLeftAlone(A::cannotTell));

  struct Kind {
    SerialPortInfo port;
    PortKind kind;
    std::optional<BoardFamily> family;
  };
  const std::vector<Kind> kinds = {
      {ch340, PortKind::adapter, std::nullopt},
      {port(0x1A86, 0x55D4), PortKind::adapter, std::nullopt}, // CH9102
      {uno, PortKind::adapter, BoardFamily::avr},
      {mega, PortKind::adapter, BoardFamily::avr},
      {espUSB, PortKind::nativeUSB, BoardFamily::esp},
      {port(0x303A, 0x0002), PortKind::nativeUSB, std::nullopt}, // an S2's own USB
      {leonardo, PortKind::nativeUSB, BoardFamily::avr},
      {port(0x2341, 0x8037), PortKind::nativeUSB, BoardFamily::avr}, // Micro
      {proMicro, PortKind::nativeUSB, std::nullopt},
      {unknown, PortKind::unknown, std::nullopt},
      // Arduino boards without an AVR this program flashes: no family, tried as any port.
      {port(0x2341, 0x0058), PortKind::unknown, std::nullopt}, // Nano Every
      {port(0x2341, 0x1002), PortKind::unknown, std::nullopt}, // UNO R4 WiFi
      {{"/dev/ttyS0", std::nullopt, std::nullopt, std::nullopt}, PortKind::unknown, std::nullopt},
  };
  for (const Kind& k : kinds) {
    EXPECT_EQ(portKind(k.port), k.kind)
        << k.port.vendorID.value_or(0) << ":" << k.port.productID.value_or(0);
    EXPECT_EQ(boardFamily(k.port), k.family)
        << k.port.vendorID.value_or(0) << ":" << k.port.productID.value_or(0);
  }
}
