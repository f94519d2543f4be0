#pragma once
// Texts of the desktop window: menus, the header and the status line, banners and alerts.
// Shortcuts are named with this platform's keys, in the spelling each language's keyboards use.

#include <cstdint>
#include <string>

namespace tarnwick::L10n::Menu {
std::string newProduct();
std::string openProduct();
std::string saveProduct();
std::string saveProductAs();
std::string saveLog();
std::string clearLog();
} // namespace tarnwick::L10n::Menu

namespace tarnwick::L10n::Panel {
std::string readyToFlash();
std::string addFirmwareToBegin();
/// "no port": in the planned run when no port is chosen.
std::string noPort();
std::string flashingFailed();
/// "1 file", "3 files".
std::string fileCount(std::int64_t count);
/// The planned run: file count, the address range ("0x1000–0x10FFFF"; empty for a sketch) and
/// the port's label, separated by middle dots.
std::string plannedRun(std::int64_t fileCount, const std::string& addressRange,
                       const std::string& port);
/// "0x1000–0x10FFFF": the first and last address of the planned writes.
std::string addressRange(const std::string& first, const std::string& last);
/// The last success: chip, byte count and duration as formatted by the caller ("ESP32-S3 ·
/// 1.2 MB in 14.2 s").
std::string lastSuccess(const std::string& chip, const std::string& size,
                        const std::string& seconds);
/// The last failure: "Flashing failed: " + message.
std::string lastFailure(const std::string& message);
} // namespace tarnwick::L10n::Panel

namespace tarnwick::L10n::Notice {
std::string noUSBBoard();
std::string dismiss();
/// Quitting refused while a run is in progress.
std::string waitUntilFinished();
} // namespace tarnwick::L10n::Notice

namespace tarnwick::L10n::Header {
/// "Tarnwick", the application's name.
std::string applicationName();
std::string flashTooltip();
std::string stopTooltip();
/// Tooltip of the controls disabled while flashing.
std::string waitUntilFlashingFinished();
std::string connectionSettingsTooltip();
/// Label of the automatic-flashing switch.
std::string automatic();
std::string serialPort();
std::string noPortsFound();
std::string selectPort();
std::string stop();
} // namespace tarnwick::L10n::Header

namespace tarnwick::L10n::Footer {
std::string logOptions();
std::string showLog();
std::string showLogTooltip();
/// "Flashed " + n + " · Failed " + m.
std::string counters(std::int64_t flashed, std::int64_t failed);
std::string autoscroll();
std::string timestamps();
/// The log options' save button.
std::string save();
std::string saveTooltip();
std::string clearLog();
std::string clearLogTooltip();
} // namespace tarnwick::L10n::Footer

namespace tarnwick::L10n::Board {
/// A remembered port that is absent: path + " (not connected)".
std::string notConnected(const std::string& path);
/// A line speed: n + " baud".
std::string baud(std::int64_t rate);
std::string baudRate();
} // namespace tarnwick::L10n::Board

namespace tarnwick::L10n::Errors {
/// The alert's button.
std::string ok();
} // namespace tarnwick::L10n::Errors
