#pragma once
// Who may use a device and who holds it: what a message needs to tell users why a port would not
// open and what they can do about it.

#include <optional>
#include <string>

namespace tarnwick {

/// The group whose members may open `path`: only when the device grants its group reading and
/// writing and the group is not the superuser's. None when it cannot be told.
std::optional<std::string> accessGroup(const std::string& path);

/// Another process holding a device open.
struct DeviceHolder {
  /// The program's name as the kernel keeps it (at most 15 characters on Linux).
  std::string program;
  int pid = 0;
  bool operator==(const DeviceHolder&) const = default;
};

/// A process other than this one that has the device at `path` open, as far as /proc shows
/// (other users' processes stay hidden to an ordinary user). None when there is none to see.
std::optional<DeviceHolder> deviceHolder(const std::string& path);

} // namespace tarnwick
