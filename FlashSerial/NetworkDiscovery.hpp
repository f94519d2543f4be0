#pragma once
// Serial ports that servers on the network announce over mDNS/DNS-SD (ser2net with `mdns: true`
// announces "_iostream._tcp" services), found through the Avahi daemon. Where no daemon runs,
// nothing is found and nothing is said. Finding a port never connects to it.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "FlashSerial/PortScanner.hpp"

namespace tarnwick {

/// One announcement of a service, as the daemon reports it.
struct ServiceAnnouncement {
  /// The service's instance name ("bench-one").
  std::string service;
  /// The numeric address it is reached at, without brackets or zone.
  std::string address;
  int port = 0;
  /// TXT entries, "key=value" each.
  std::vector<std::string> txt;
};

/// The port an announcement offers: path "rfc2217://ADDRESS:PORT", the service name as product
/// name and, when the server adds them, the device's USB ids and serial number. None unless it
/// announces a Telnet RFC 2217 stack over TCP at a well-formed address and port.
std::optional<SerialPortInfo> announcedPort(const ServiceAnnouncement& announcement);

/// The announced ports, one per service, sorted by service name then path.
std::vector<SerialPortInfo> announcedPorts(const std::vector<ServiceAnnouncement>& announcements);

/// Looks for announced ports for at most `seconds` (less once the daemon has reported what it
/// knows) and returns them sorted. Empty at once when no daemon is on the system bus.
std::vector<SerialPortInfo> browseNetworkPorts(double seconds);

/// Keeps looking for announced ports on a thread of its own until destroyed. `onChange`
/// receives every new list on that thread. A daemon that starts later is found then; without a
/// system bus the thread ends at once and nothing is ever delivered.
class NetworkPortBrowser {
public:
  using ChangeHandler = std::function<void(const std::vector<SerialPortInfo>&)>;
  explicit NetworkPortBrowser(ChangeHandler onChange);
  /// Stops looking; no call of `onChange` follows.
  ~NetworkPortBrowser();
  NetworkPortBrowser(const NetworkPortBrowser&) = delete;
  NetworkPortBrowser& operator=(const NetworkPortBrowser&) = delete;

private:
  struct Worker;
  std::unique_ptr<Worker> worker_;
};

} // namespace tarnwick
