#pragma once
// The serial ports as tarnwick-cli shows them, and the choice of a port when none is named.

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "FlashSerial/PortScanner.hpp"

namespace tarnwick::cli {

/// Lines for people: path, display name and the USB ids as lsusb writes them ("1a86:7523").
std::string portLines(const std::vector<SerialPortInfo>& ports);

/// One JSON array on one line: {path, name, vendorID, productID, productName, network}, null when
/// missing; `network` tells ports on other computers ("rfc2217://HOST:PORT") from local ones.
std::string portsJSON(const std::vector<SerialPortInfo>& ports);

/// Has `scanner` print to `out` every list it delivers that differs from the one printed last.
void printChanges(PortScanner& scanner, std::FILE* out, bool json);

/// Prints the ports once (with those serial servers announce on the network), or with `watch` again at every change until SIGINT or SIGTERM.
/// Returns the exit status.
int showPorts(bool json, bool watch);

/// The port to flash when none was named: the only one with a USB vendor id. Throws UsageError
/// when there is none or more than one.
SerialPortInfo onlyUSBPort(const std::vector<SerialPortInfo>& ports);

/// What the scanner knows of `path`, if it lists it.
std::optional<SerialPortInfo> portAt(const std::vector<SerialPortInfo>& ports,
                                     const std::string& path);

} // namespace tarnwick::cli
