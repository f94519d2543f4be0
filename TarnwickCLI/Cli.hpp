#pragma once
// tarnwick-cli: flash, pack, check and inspect product files without a window.

namespace tarnwick::cli {

/// Exit status: 0 success, 1 the flash run failed, 2 wrong usage or unusable input.
enum ExitStatus { success = 0, runFailed = 1, unusable = 2 };

/// Runs the program with its command line and returns the exit status.
int run(int argc, char** argv);

} // namespace tarnwick::cli
