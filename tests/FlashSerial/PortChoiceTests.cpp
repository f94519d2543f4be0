#include <gtest/gtest.h>

#include "FlashSerial/PortChoice.hpp"

using namespace tarnwick;
using PortChoice::Decision;

namespace {

SerialPortInfo usb(const std::string& name) { return {"/dev/" + name, "Board", 0x10C4, 0xEA60}; }
SerialPortInfo uart(const std::string& name) { return {"/dev/" + name, {}, {}, {}}; }
std::set<std::string> paths(std::initializer_list<const char*> names) {
  std::set<std::string> result;
  for (auto* name : names)
    result.insert(std::string("/dev/") + name);
  return result;
}

} // namespace

TEST(PortChoice, NewBoardsAndFallbacks) {
  struct Case {
    const char* what;
    std::vector<SerialPortInfo> ports;
    std::optional<std::set<std::string>> previous;
    std::string selected;
    bool quiet;
    Decision expected;
  };
  const Case cases[] = {
      {"the first list only restores a selection",
       {usb("ttyUSB0"), usb("ttyUSB1")},
       {},
       "/dev/ttyUSB1",
       false,
       {}},
      {"the first list picks the first USB port when the selection is gone",
       {uart("ttyS0"), usb("ttyUSB3")},
       {},
       "/dev/ttyUSB9",
       false,
       {{}, "/dev/ttyUSB3"}},
      {"a USB port that was not there before is a new board",
       {usb("ttyUSB0"), usb("ttyACM0")},
       paths({"ttyUSB0"}),
       "/dev/ttyUSB0",
       false,
       {"/dev/ttyACM0", {}}},
      {"from an empty list, the first USB port is new",
       {uart("ttyS0"), usb("ttyUSB0")},
       std::set<std::string>{},
       "",
       false,
       {"/dev/ttyUSB0", {}}},
      {"ports without a vendor id are never new boards",
       {usb("ttyUSB0"), uart("ttyS4")},
       paths({"ttyUSB0"}),
       "/dev/ttyUSB0",
       false,
       {}},
      {"nor fallbacks",
       {uart("ttyS0"), uart("ttyS1")},
       paths({"ttyS0"}),
       "/dev/ttyUSB0",
       false,
       {}},
      {"within the quiet time a new board is only a fallback for a vanished selection",
       {usb("ttyACM0")},
       paths({"ttyUSB0"}),
       "/dev/ttyUSB0",
       true,
       {{}, "/dev/ttyACM0"}},
      {"within the quiet time a present selection stays",
       {usb("ttyUSB0"), usb("ttyACM0")},
       paths({"ttyUSB0"}),
       "/dev/ttyUSB0",
       true,
       {}},
      {"a board unplugged changes nothing while the selection stays",
       {usb("ttyUSB0")},
       paths({"ttyUSB0", "ttyUSB1"}),
       "/dev/ttyUSB0",
       false,
       {}},
      {"an empty list keeps the selection", {}, paths({"ttyUSB0"}), "/dev/ttyUSB0", false, {}},
      {"the first of two new boards in list order",
       {usb("ttyACM0"), usb("ttyUSB0"), usb("ttyUSB1")},
       paths({"ttyUSB0"}),
       "/dev/ttyUSB0",
       false,
       {"/dev/ttyACM0", {}}},
  };
  for (const auto& c : cases) {
    auto decision = PortChoice::decide(c.ports, c.previous, c.selected,
                                       [&](const std::string&) { return c.quiet; });
    EXPECT_EQ(decision, c.expected) << c.what;
  }
}

TEST(PortChoice, QuietTimeAppliesPerPort) {
  // A station with a run just ended on ttyACM0: that board re-enumerating is not new, a board
  // plugged in elsewhere at the same moment is.
  std::vector<SerialPortInfo> ports{usb("ttyACM0"), usb("ttyACM1")};
  auto decision = PortChoice::decide(ports, paths({}), "/dev/ttyACM0", [](const std::string& path) {
    return path == "/dev/ttyACM0";
  });
  EXPECT_EQ(decision, (Decision{"/dev/ttyACM1", {}}));
  auto all = PortChoice::newBoards(ports, paths({"ttyACM1"}));
  ASSERT_EQ(all.size(), 1u);
  EXPECT_EQ(all[0].path, "/dev/ttyACM0");
  EXPECT_EQ(PortChoice::pathsOf(ports), paths({"ttyACM0", "ttyACM1"}));
}
