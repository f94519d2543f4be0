#pragma once
// Looking at a terminal device from the outside: exclusive use, exact line speed, and whether a
// thread of this process is blocked waiting on a device.

#include <cstdint>
#include <functional>
#include <string>

namespace tarnwick::testing {

/// Runs `body` in a forked child without CAP_SYS_ADMIN (the capability that lets root open a
/// terminal held for exclusive use) and returns its exit code; -1 when the child died.
int runWithoutAdminCapability(const std::function<int()>& body);

/// Whether an ordinary process is refused `path` with EBUSY because it is held exclusively.
bool isHeldExclusively(const std::string& path);

/// The exact output speed of the terminal behind `fd`, in bits per second.
std::uint32_t terminalSpeed(int fd);
/// Sets both speeds of the terminal behind `fd` to exactly `rate`; throws on failure.
void setTerminalSpeed(int fd, std::uint32_t rate);

/// A serial-looking name in /dev for a pseudo-terminal, so that a port opens it without
/// `allowsTestDevice` and it is judged as a real adapter is. Needs a writable /dev.
class DeviceAlias {
public:
  explicit DeviceAlias(const std::string& target);
  ~DeviceAlias();
  DeviceAlias(const DeviceAlias&) = delete;
  DeviceAlias& operator=(const DeviceAlias&) = delete;

  bool created() const { return !path_.empty(); }
  const std::string& path() const { return path_; }
  /// The same name now leads to `target`, as another board on the same port.
  void retarget(const std::string& target);

private:
  std::string path_;
};

/// The kernel's id of the calling thread.
int currentThreadId();
/// Waits until thread `threadId` of this process is blocked in poll; false after the timeout.
bool waitUntilBlockedInPoll(int threadId, double timeoutSeconds);

} // namespace tarnwick::testing
