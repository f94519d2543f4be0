#pragma once
// The serial device paths present right now, for finding a board that comes back on a new port
// and for listing ports without the device registry.

#include <string>
#include <vector>

namespace tarnwick {

/// The entries of `directory` whose name, taken as "/dev/<name>", passes
/// `FlashPort::isValidPath`, as paths inside `directory`, sorted. Directories and dangling links
/// are left out; an unreadable directory gives an empty list.
std::vector<std::string> serialDevicePaths(const std::string& directory = "/dev");

} // namespace tarnwick
