#pragma once
// The command line of the desktop program, read before any window system is touched so that
// --help and --version work without a display.

#include <string>
#include <vector>

namespace tarnwick {

struct CommandLine {
  /// Product files to open; the desktop entry passes them as %F.
  std::vector<std::string> files;
  /// Pseudo-terminals offered as ports, in the order given.
  std::vector<std::string> testDevices;
  /// Boards to simulate and plug in at start, by their short names ("esp32", "uno"); an empty
  /// name stands for the product's own board.
  std::vector<std::string> simulatedBoards;
  /// Where --screenshots saves its pictures; empty when not asked.
  std::string screenshotFolder;
  /// Dark colours (the Fusion style with a dark palette), for desktops whose dark mode Qt
  /// does not follow, and for the screenshots' dark pass.
  bool dark = false;
  /// Opens the window in station mode, for the product given or the one of the last session.
  bool station = false;
  bool help = false;
  bool version = false;
  /// A message for a command line that cannot be followed; empty when it can.
  std::string error;

  bool operator==(const CommandLine&) const = default;
};

/// Reads the arguments after the program name. Options may come in any order; "--" ends them,
/// and "--option=value" is the same as "--option value". An option whose value may be left out
/// takes one only after "=", as GNU programs do.
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

} // namespace tarnwick
