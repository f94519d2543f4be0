#pragma once
// The operating system's side of port discovery: which serial devices exist, and a descriptor
// that becomes readable when one comes or goes. Only the port scanner uses it.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "FlashSerial/PortScanner.hpp"

namespace tarnwick::registry {

/// `text` without whitespace and line breaks at either end.
std::string trimmed(std::string_view text);

/// Every serial port the device registry knows, unsorted. Empty when the registry cannot be read.
std::vector<SerialPortInfo> listPorts();

/// A source of change notices, open for its whole life.
class ChangeNotifier {
public:
  virtual ~ChangeNotifier() = default;
  /// Readable when notices are waiting.
  virtual int descriptor() const = 0;
  /// Reads every waiting notice; true when one of them concerns a serial port.
  virtual bool drain() = 0;
};

/// The notifier for `source`, or null when it cannot be set up. `automatic` takes the udev
/// monitor where a udev daemon runs and the device directory otherwise.
std::unique_ptr<ChangeNotifier> openNotifier(PortScanner::ChangeSource source,
                                             const std::string& deviceDirectory);

} // namespace tarnwick::registry
