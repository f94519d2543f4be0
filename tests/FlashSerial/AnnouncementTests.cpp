#include <gtest/gtest.h>

#include "FlashSerial/NetworkDiscovery.hpp"

using namespace tarnwick;

namespace {
const std::string rfc2217 = "gensiostack=telnet(rfc2217),tcp";
} // namespace

// What a serial server announces decides whether it is offered and under which name; anything
// that is not a Telnet RFC 2217 stack over TCP at a usable address is left out.
TEST(Announcements, OnlyRFC2217PortsAtUsableAddresses) {
  struct Case {
    ServiceAnnouncement announcement;
    std::optional<std::string> path;
  };
  const std::vector<Case> cases = {
      {{"a", "10.0.0.7", 2000, {"provider=ser2net", rfc2217}}, "rfc2217://10.0.0.7:2000"},
      {{"a", "2001:db8::5", 2000, {rfc2217}}, "rfc2217://[2001:db8::5]:2000"},
      {{"a", "10.0.0.7", 2000, {"gensiostack=telnet(rfc2217=true,winsize=64),tcp"}},
       "rfc2217://10.0.0.7:2000"},
      // Raw TCP, Telnet without RFC 2217, or more stacked on it: not a port the engine speaks to.
      {{"a", "10.0.0.7", 2000, {"gensiostack=tcp"}}, std::nullopt},
      {{"a", "10.0.0.7", 2000, {"gensiostack=telnet,tcp"}}, std::nullopt},
      {{"a", "10.0.0.7", 2000, {"gensiostack=telnet(rfc2217=false),tcp"}}, std::nullopt},
      {{"a", "10.0.0.7", 2000, {"gensiostack=ssl,telnet(rfc2217),tcp"}}, std::nullopt},
      {{"a", "10.0.0.7", 2000, {"gensiostack=telnet(rfc2217),tcp,x"}}, std::nullopt},
      {{"a", "10.0.0.7", 2000, {"gensiostack=telnet(x(rfc2217)),tcp"}}, std::nullopt},
      {{"a", "10.0.0.7", 2000, {"gensiostack"}}, std::nullopt},
      {{"a", "10.0.0.7", 2000, {}}, std::nullopt},
      // An address or port a port name cannot carry, or no name at all.
      {{"a", "10.0.0.7", 0, {rfc2217}}, std::nullopt},
      {{"a", "10.0.0.7", 70000, {rfc2217}}, std::nullopt},
      {{"a", "10.0.0.7/8", 2000, {rfc2217}}, std::nullopt},
      {{"a", "", 2000, {rfc2217}}, std::nullopt},
      {{"", "10.0.0.7", 2000, {rfc2217}}, std::nullopt},
  };
  for (const auto& c : cases) {
    const auto port = announcedPort(c.announcement);
    EXPECT_EQ(port ? std::optional(port->path) : std::nullopt, c.path)
        << c.announcement.address << " " << ::testing::PrintToString(c.announcement.txt);
    if (port) {
      EXPECT_EQ(port->productName, "a");
      EXPECT_FALSE(port->vendorID);
    }
  }
}

// ser2net's device facts (mdns-sysattrs) tell the board, as a USB port's would; malformed ones
// are dropped, the port stays.
TEST(Announcements, DeviceFactsAndOnePortPerService) {
  const auto uno = announcedPort({"uno", "10.0.0.7", 2000,
                                  {rfc2217, "devicetype=serialusb", "idVendor=2341",
                                   "idProduct=0043", "serial= 85734323430351F0A1C1 "}});
  ASSERT_TRUE(uno);
  EXPECT_EQ(uno->vendorID, 0x2341);
  EXPECT_EQ(uno->productID, 0x0043);
  EXPECT_EQ(uno->serialNumber, "85734323430351F0A1C1");
  const auto odd = announcedPort({"odd", "10.0.0.7", 2000,
                                  {rfc2217, "idVendor=23411", "idProduct=0043",
                                   "serial=" + std::string(200, 'x')}});
  ASSERT_TRUE(odd);
  EXPECT_FALSE(odd->vendorID);
  EXPECT_FALSE(odd->productID);
  EXPECT_FALSE(odd->serialNumber);

  // A service is reported once per interface and address family: another computer's address
  // before the loopback one, IPv4 before IPv6; ports sorted by service.
  const auto ports = announcedPorts({{"zeta", "::1", 4000, {rfc2217}},
                                     {"zeta", "127.0.0.1", 4000, {rfc2217}},
                                     {"zeta", "2001:db8::9", 4000, {rfc2217}},
                                     {"alpha", "192.168.1.20", 3000, {rfc2217}},
                                     {"alpha", "192.168.1.10", 3000, {rfc2217}},
                                     {"raw", "192.168.1.10", 3001, {"gensiostack=tcp"}}});
  ASSERT_EQ(ports.size(), 2u);
  EXPECT_EQ(ports[0].path, "rfc2217://192.168.1.10:3000");
  EXPECT_EQ(ports[1].path, "rfc2217://[2001:db8::9]:4000");
}
