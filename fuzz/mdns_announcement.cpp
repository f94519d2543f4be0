// What serial servers announce over mDNS: any computer on the network may announce anything. The
// first two bytes are the port, the next line the address, every further line a TXT entry. An
// announcement taken as a port must name one the engine can open, at the port announced.
#include <cstdlib>
#include <string_view>

#include "FlashSerial/NetworkDiscovery.hpp"
#include "FlashSerial/NetworkPort.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarnwick;
  if (size < 2) return 0;
  ServiceAnnouncement announcement{"fuzz", {}, data[0] * 256 + data[1], {}};
  std::string_view rest(reinterpret_cast<const char*>(data) + 2, size - 2);
  const std::size_t line = rest.find('\n');
  announcement.address = std::string(rest.substr(0, line));
  rest = line == std::string_view::npos ? std::string_view{} : rest.substr(line + 1);
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    announcement.txt.emplace_back(rest.substr(0, end));
    rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end + 1);
  }
  const auto port = announcedPort(announcement);
  if (!port) return 0;
  const auto address = parseNetworkPort(port->path);
  if (!address || address->port != announcement.port) std::abort();
  if (port->vendorID.has_value() != port->productID.has_value()) std::abort();
  if (port->vendorID && (*port->vendorID < 0 || *port->vendorID > 0xFFFF)) std::abort();
  if (port->serialNumber && (port->serialNumber->empty() || port->serialNumber->size() > 64 ||
                             port->serialNumber->front() == ' ' || port->serialNumber->back() == ' '))
    std::abort();
  if (announcedPorts({announcement}).size() != 1) std::abort();
  return 0;
}
