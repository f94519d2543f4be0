#pragma once
// Texts of the desktop program's own start-up: its command line and the test device ports.

#include <string>

namespace tarnwick::L10n::Desktop {
/// Usage and options of `tarnwick`.
std::string commandLineHelp();
/// "Run “tarnwick --help” for the options."
std::string seeHelp();
/// Said by --screenshots for each picture it saved.
std::string savedScreenshot(const std::string& path);
/// The screenshot folder cannot be written.
std::string cannotWriteScreenshots(const std::string& folder);
/// --screenshots got nothing to flash, so the pictures of a run are missing.
std::string noRunToPicture();
/// --simulated-board named a board that cannot be simulated; `boards` lists those that can.
std::string notSimulable(const std::string& board, const std::string& boards);
} // namespace tarnwick::L10n::Desktop
