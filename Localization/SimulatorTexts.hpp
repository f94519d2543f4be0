#pragma once
// Texts of tarnwick-simboard, the simulated boards people point Tarnwick at without hardware.

#include <string>

namespace tarnwick::L10n::Simulator {

/// The whole help: usage, what the program does, options and exit status.
std::string help();
/// "Boards:" above the list of boards that can be simulated.
std::string boardsHeading();
std::string unknownBoard(const std::string& board);
/// A board that restarts on a new port, which a pseudo-terminal cannot imitate.
std::string cannotSimulate(const std::string& board);
std::string unknownOption(const std::string& option);
std::string missingValue(const std::string& option);
std::string missingBoard();
std::string seeHelp();
std::string cannotOpenTerminal(const std::string& reason);
std::string cannotWriteDemo(const std::string& folder, const std::string& reason);
/// Shown on a terminal once the board answers: where it is and how to use it.
std::string serving(const std::string& board, const std::string& path);
std::string demoWritten(const std::string& folder);
/// An option given without its value.
std::string missingSetting(const std::string& option);
std::string invalidTCPPort(const std::string& value);
std::string invalidResetCircuit(const std::string& value, const std::string& board);
/// --bind or --reset-circuit without --rfc2217.
std::string needsRFC2217(const std::string& option);
std::string cannotListen(const std::string& address, const std::string& reason);
/// As `serving`, for a board served on a network port.
std::string servingNetwork(const std::string& board, const std::string& name);

} // namespace tarnwick::L10n::Simulator
