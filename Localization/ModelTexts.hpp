#pragma once
// Texts of the desktop model that no other front end shows.

#include <string>

namespace tarnwick::L10n::Model {
/// The name of a port given with --test-device: "Test device (PATH)".
std::string testDevice(const std::string& path);
/// The name of a simulated board's port: "Simulated ESP32 (/dev/pts/5)". `board` is the board's
/// name as the target picker shows it.
std::string simulatedBoard(const std::string& board, const std::string& path);
/// Log lines when a simulated board is plugged in or pulled out; `port` is its port's name.
std::string simulatedBoardPluggedIn(const std::string& port);
std::string simulatedBoardUnplugged(const std::string& port);
/// The name of a network port the user added: its address ("rfc2217://HOST:PORT"), marked as
/// reached through the network.
std::string networkPort(const std::string& name);
/// The name of the demo product opened for a simulated board: "ESP32 demo".
std::string demoProduct(const std::string& board);
} // namespace tarnwick::L10n::Model
