// Network port names, as users and scripts write them. An accepted host goes into the text that
// stacks the connection ("telnet(rfc2217),tcp,HOST,PORT"), so whatever is accepted must be a host
// that text cannot misread, and must name itself again unchanged.
#include <arpa/inet.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "FlashSerial/NetworkPort.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarnwick;
  const std::string_view name(reinterpret_cast<const char*>(data), size);
  const auto address = parseNetworkPort(name);
  if (!address) return 0;
  const std::string& host = address->host;
  if (host.empty() || address->port == 0) std::abort();
  const bool plain = std::all_of(host.begin(), host.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           c == '-' || c == '.';
  });
  unsigned char bytes[16];
  const bool ipv6 = inet_pton(AF_INET6, host.c_str(), bytes) == 1;
  if (!plain && !ipv6) std::abort();
  if (host.find_first_of(",()%/@ \t") != std::string::npos) std::abort();
  if (parseNetworkPort(address->name()) != address) std::abort();
  return 0;
}
