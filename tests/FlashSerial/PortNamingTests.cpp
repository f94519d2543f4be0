#include <gtest/gtest.h>

#include "FlashSerial/PortScanner.hpp"
#include "Localization/Language.hpp"

using namespace tarnwick;

namespace {

SerialPortInfo port(std::string path, std::optional<int> vendor = std::nullopt,
                    std::optional<int> product = std::nullopt,
                    std::optional<std::string> name = std::nullopt) {
  return {std::move(path), std::move(name), vendor, product};
}

std::vector<std::string> sortedPaths(std::vector<SerialPortInfo> ports) {
  sortPorts(ports);
  std::vector<std::string> paths;
  for (const auto& p : ports)
    paths.push_back(p.path);
  return paths;
}

} // namespace

TEST(PortSort, UsbPortsFirstThenTheOrderOfAFileBrowser) {
  struct Case {
    std::vector<SerialPortInfo> ports;
    std::vector<std::string> expected;
  };
  const std::vector<Case> cases = {
      // digit runs count by value
      {{port("/dev/ttyACM10", 1), port("/dev/ttyACM2", 1), port("/dev/ttyACM1", 1)},
       {"/dev/ttyACM1", "/dev/ttyACM2", "/dev/ttyACM10"}},
      // USB before built-in, whatever the names
      {{port("/dev/ttyS0"), port("/dev/ttyUSB0", 0x1A86), port("/dev/rfcomm0"),
        port("/dev/ttyACM0", 0x2341)},
       {"/dev/ttyACM0", "/dev/ttyUSB0", "/dev/rfcomm0", "/dev/ttyS0"}},
      // case does not count
      {{port("/dev/cu.usbserial-B"), port("/dev/cu.Bluetooth"), port("/dev/cu.usbserial-a")},
       {"/dev/cu.Bluetooth", "/dev/cu.usbserial-a", "/dev/cu.usbserial-B"}},
      // a prefix first, then several digit runs and leading zeros
      {{port("/dev/cu.usbmodem2101"), port("/dev/cu.usbmodem101"), port("/dev/cu.usbmodem"),
        port("/dev/ttyS007"), port("/dev/ttyS10"), port("/dev/ttyS8")},
       {"/dev/cu.usbmodem", "/dev/cu.usbmodem101", "/dev/cu.usbmodem2101", "/dev/ttyS007",
        "/dev/ttyS8", "/dev/ttyS10"}},
      // digit runs longer than any integer
      {{port("/dev/ttyUSB100000000000000000000"), port("/dev/ttyUSB99999999999999999999")},
       {"/dev/ttyUSB99999999999999999999", "/dev/ttyUSB100000000000000000000"}},
      // equal under the order (case only, zeros only): kept as they came
      {{port("/dev/cu.X1"), port("/dev/cu.x1"), port("/dev/cu.x01")},
       {"/dev/cu.X1", "/dev/cu.x1", "/dev/cu.x01"}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(sortedPaths(c.ports), c.expected);
}

TEST(PortNames, BoardsThenAdapterChipsThenVendorsThenProductThenDevice) {
  LanguageOverride english(Language::en);
  struct Case {
    SerialPortInfo port;
    const char* expected;
  };
  const std::vector<Case> cases = {
      {port("/dev/ttyACM0", 0x303A, 0x1001, "USB JTAG/serial debug unit"), "ESP32-S3/C3/C6 (USB)"},
      {port("/dev/ttyACM0", 0x2341, 0x0243), "Arduino Uno"},
      {port("/dev/ttyACM0", 0x2A03, 0x0042), "Arduino Mega 2560"},
      {port("/dev/ttyUSB0", 0x1A86, 0x7523, "USB Serial"), "USB serial (CH340)"},
      {port("/dev/ttyUSB0", 0x0403, 0x6015, "FT231X USB UART"), "USB serial (FTDI FT231X)"},
      // A known vendor with a product the tables do not hold; a vendor alone.
      {port("/dev/ttyACM0", 0x2341, 0x7777, "Something new"), "Arduino"},
      {port("/dev/ttyACM0", 0x16C0), "Teensy"},
      // An adapter maker is no board maker: an unknown product shows what else there is.
      {port("/dev/ttyUSB1", 0x1A86, 0x1234), "ttyUSB1"},
      {port("/dev/ttyUSB1", 0x1A86, 0x1234, "CH347"), "CH347"},
      {port("/dev/ttyACM3", 0x1234, 0x5678, ""), "ttyACM3"},
      {port("/dev/cu.Bluetooth-Incoming-Port"), "cu.Bluetooth-Incoming-Port"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(PortScanner::displayName(c.port), c.expected);
}
