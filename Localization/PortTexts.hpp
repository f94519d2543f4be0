#pragma once
// Messages of the serial port layer. `reason` is the system's text for an error number.

#include <cstdint>
#include <string>

namespace tarnwick::L10n::Errors {
std::string portInvalidPath(const std::string& path);
std::string portOpenFailed(const std::string& path, const std::string& reason);
std::string portBusy(const std::string& path);
/// Busy, with the program that holds the port.
std::string portBusyWith(const std::string& path, const std::string& program, int pid);
/// Opening was refused for want of permission; `group` may open the device.
std::string portAccessDenied(const std::string& path, const std::string& group);
std::string portConfigurationFailed(const std::string& reason);
std::string portUnsupportedBaudRate(std::int64_t rate);
std::string portWriteFailed(const std::string& reason);
std::string portNotOpen();
std::string portDisconnected();

// A port on another computer; `server` is "host:port".
std::string networkHostNotFound(const std::string& host);
std::string networkConnectionRefused(const std::string& server);
std::string networkNoAnswer(const std::string& server);
std::string networkNotRFC2217(const std::string& server);
std::string networkNoBoard(const std::string& server);
std::string networkPortInUse(const std::string& server);
std::string networkConnectionLost(const std::string& server);
} // namespace tarnwick::L10n::Errors

namespace tarnwick::L10n::Ports {
/// The name of a port behind a known USB-serial adapter chip, for example "USB serial (CH340)".
std::string usbSerial(const std::string& chip);
/// Flashing without a named port when several USB boards are present; the boards follow.
std::string severalUSBBoards();
/// Neither the udev monitor nor the device directory can be watched.
std::string cannotWatch();
/// A port a serial server announces on the network, by the name it announces it under.
std::string announced(const std::string& service);
} // namespace tarnwick::L10n::Ports
