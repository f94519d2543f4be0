#include "FlashSerial/NetworkPort.hpp"

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>

#include "FlashSerial/FlashPort.hpp"

namespace tarnwick {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isLetterOrDigit(char c) { return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool parses(int family, std::string_view text) {
  // The system reads up to the first NUL: "8::0\0 x" would pass as "8::0". Only the characters
  // an address is written with are let through to it.
  const bool written = std::all_of(text.begin(), text.end(), [](char c) {
    return isDigit(c) || c == '.' || c == ':' || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
  });
  unsigned char address[16];
  return written && inet_pton(family, std::string(text).c_str(), address) == 1;
}

// A name the resolver can be asked for: labels of letters, digits and inner hyphens. A name of
// digits and dots only is an IPv4 address and must be a whole one ("10.0.0" is refused rather
// than guessed at).
bool isHostName(std::string_view host) {
  if (host.empty() || host.size() > 253) return false;
  if (std::all_of(host.begin(), host.end(), [](char c) { return isDigit(c) || c == '.'; }))
    return parses(AF_INET, host);
  std::size_t start = 0;
  for (;;) {
    const std::size_t end = std::min(host.find('.', start), host.size());
    const std::string_view label = host.substr(start, end - start);
    if (label.empty() || label.size() > 63 || label.front() == '-' || label.back() == '-')
      return false;
    if (!std::all_of(label.begin(), label.end(), [](char c) { return isLetterOrDigit(c) || c == '-'; }))
      return false;
    if (end == host.size()) return true;
    start = end + 1;
  }
}

std::optional<std::uint16_t> portNumber(std::string_view text) {
  if (text.empty() || text.size() > 5) return std::nullopt;
  if (!std::all_of(text.begin(), text.end(), isDigit)) return std::nullopt;
  unsigned value = 0;
  for (char c : text)
    value = value * 10 + static_cast<unsigned>(c - '0');
  if (value < 1 || value > 65535) return std::nullopt;
  return static_cast<std::uint16_t>(value);
}

} // namespace

std::string NetworkPortAddress::server() const {
  const std::string shownHost = host.find(':') != std::string::npos ? "[" + host + "]" : host;
  return shownHost + ":" + std::to_string(port);
}

std::string NetworkPortAddress::name() const { return std::string(networkPortScheme) + server(); }

bool looksLikeNetworkPort(std::string_view name) {
  if (name.size() < networkPortScheme.size()) return false;
  // Schemes are case-insensitive, as in any URL.
  return std::equal(networkPortScheme.begin(), networkPortScheme.end(), name.begin(),
                    [](char a, char b) {
                      return a == std::tolower(static_cast<unsigned char>(b));
                    });
}

std::optional<NetworkPortAddress> parseNetworkPort(std::string_view name) {
  if (!looksLikeNetworkPort(name)) return std::nullopt;
  std::string_view rest = name.substr(networkPortScheme.size());
  std::string_view host;
  if (rest.starts_with('[')) {
    const std::size_t close = rest.find(']');
    if (close == std::string_view::npos) return std::nullopt;
    host = rest.substr(1, close - 1);
    if (!parses(AF_INET6, host)) return std::nullopt;
    rest = rest.substr(close + 1);
  } else {
    host = rest.substr(0, rest.find(':'));
    if (!isHostName(host)) return std::nullopt;
    rest = rest.substr(host.size());
  }
  if (!rest.starts_with(':')) return std::nullopt;
  const auto port = portNumber(rest.substr(1));
  if (!port) return std::nullopt;
  return NetworkPortAddress{std::string(host), *port};
}

bool isValidPortName(std::string_view name) {
  return FlashPort::isValidPath(name) || parseNetworkPort(name).has_value();
}

} // namespace tarnwick
