#pragma once
// Names of serial ports on other computers: "rfc2217://HOST:PORT", served by a serial server
// such as ser2net. Pure text handling; the connection itself is `NetworkLink`.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

/// Where a network serial port is served.
struct NetworkPortAddress {
  /// A host name, an IPv4 address or an IPv6 address (without brackets).
  std::string host;
  std::uint16_t port = 0;

  /// "host:port", with an IPv6 address in brackets: how messages name the server.
  std::string server() const;
  /// The port's name as the user writes it: "rfc2217://" + `server()`.
  std::string name() const;
  bool operator==(const NetworkPortAddress&) const = default;
};

/// The scheme that names a network serial port, with its separator.
inline constexpr std::string_view networkPortScheme = "rfc2217://";

/// Whether `name` is written as a network port (it may still be malformed).
bool looksLikeNetworkPort(std::string_view name);

/// The address in "rfc2217://HOST:PORT"; absent unless the whole name is well formed: a host
/// name of letters, digits, '-' and '.' (labels of 1 to 63 characters, 253 in all), an IPv4
/// address, or an IPv6 address in brackets; and a port from 1 to 65535 in decimal digits.
/// Nothing may follow the port: no path, query, user or zone.
std::optional<NetworkPortAddress> parseNetworkPort(std::string_view name);

/// Whether `name` names a port the engine can open: a serial adapter (`FlashPort::isValidPath`)
/// or a well-formed network port.
bool isValidPortName(std::string_view name);

} // namespace tarnwick
