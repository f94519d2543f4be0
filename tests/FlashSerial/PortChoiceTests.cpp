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
