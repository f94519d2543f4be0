#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Localization/Language.hpp"
#include "TarnwickCLI/Arguments.hpp"
#include "TarnwickCLI/Ports.hpp"

using namespace tarnwick;
using namespace tarnwick::cli;

namespace {
const std::vector<SerialPortInfo> present = {
    {"/dev/ttyACM0", "Ga\xff\xfe Board", 0xCAFE, 0x0001},
    {"/dev/ttyACM1", "Arduino Uno", 0x2341, 0x0043},
    {"/dev/ttyUSB0", "USB Serial", 0x1A86, 0x7523},
    {"/dev/ttyS0", std::nullopt, std::nullopt, std::nullopt},
};
} // namespace

TEST(PortsCommand, ListsForPeopleAndForScripts) {
  LanguageOverride english(Language::en);
  EXPECT_EQ(portLines(present), "/dev/ttyACM0  Ga\xff\xfe Board          cafe:0001\n"
                                "/dev/ttyACM1  Arduino Uno         2341:0043\n"
                                "/dev/ttyUSB0  USB serial (CH340)  1a86:7523\n"
                                "/dev/ttyS0    ttyS0\n");
  // Accents take one column, not two.
  LanguageOverride french(Language::fr);
  EXPECT_EQ(portLines({present[2], {"/dev/ttyACM9", "x", 1, 2}}),
            "/dev/ttyUSB0  Port série USB (CH340)  1a86:7523\n"
            "/dev/ttyACM9  x                       0001:0002\n");

  // Scripts get the documented key order on one line; bytes that are no UTF-8 do not end it.
  const std::string json = portsJSON(present);
  EXPECT_EQ(json.find('\n'), std::string::npos);
  EXPECT_TRUE(json.starts_with(R"([{"path":"/dev/ttyACM0","name":"Ga)")) << json;
  EXPECT_EQ(nlohmann::json::parse(json)[3], nlohmann::json::parse(R"({"path": "/dev/ttyS0",
      "name": "ttyS0", "vendorID": null, "productID": null, "productName": null, "network": false})"));
  EXPECT_EQ(nlohmann::json::parse(json)[1]["vendorID"], 0x2341);
  EXPECT_EQ(portsJSON({}), "[]");
}

TEST(PortsCommand, FlashTakesTheOnlyUsbBoardOrAsks) {
  LanguageOverride english(Language::en);
  EXPECT_EQ(onlyUSBPort({present[3], present[1]}), present[1]);
  try {
    onlyUSBPort(present);
    ADD_FAILURE() << "several boards must be a usage error";
  } catch (const UsageError& error) {
    EXPECT_EQ(error.command, CommandKind::flash);
    EXPECT_EQ(error.message, "Several USB boards are connected. Choose one with --port:\n"
                             "  Ga\xff\xfe Board  (/dev/ttyACM0)\n"
                             "  Arduino Uno  (/dev/ttyACM1)\n"
                             "  USB serial (CH340)  (/dev/ttyUSB0)");
  }
  EXPECT_THROW(onlyUSBPort({present[3]}), UsageError);

  // Espressif's own USB answers the USB-JTAG reset; for every other port it would cost a round.
  const SerialPortInfo esp32s3{"/dev/ttyACM2", std::nullopt, 0x303A, 0x1001};
  EXPECT_TRUE(prefersUSBJTAGReset(portAt({present[1], esp32s3}, "/dev/ttyACM2")));
  EXPECT_FALSE(prefersUSBJTAGReset(portAt({present[1], esp32s3}, "/dev/ttyACM1")));
  EXPECT_FALSE(prefersUSBJTAGReset(portAt({esp32s3}, "/dev/pts/3")));
}
