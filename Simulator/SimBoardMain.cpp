// tarnwick-simboard: serves a simulated board on a pseudo-terminal until interrupted, so that
// tarnwick-cli --test-device (or the desktop program) can be tried without hardware.

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "Localization/AVRTexts.hpp"
#include "Localization/SimulatorTexts.hpp"
#include "Simulator/SimulatedBoard.hpp"

using namespace tarnwick;
using namespace tarnwick::simulator;
namespace Texts = tarnwick::L10n::Simulator;

namespace {

std::atomic<bool> stopRequested = false;
extern "C" void onSignal(int) { stopRequested = true; }

void printBoards() {
  std::printf("%s\n", Texts::boardsHeading().c_str());
  for (const Target& target : SimulatedBoard::simulable())
    std::printf("  %-20s %s\n", SimulatedBoard::shortName(target).c_str(),
                SimulatedBoard::displayName(target).c_str());
}

int usageError(const std::string& message) {
  std::fprintf(stderr, "tarnwick-simboard: %s\n%s\n", message.c_str(), Texts::seeHelp().c_str());
  return 2;
}

int failure(const std::string& message) {
  std::fprintf(stderr, "tarnwick-simboard: %s\n", message.c_str());
  return 1;
}

} // namespace

int main(int argc, char** argv) {
  std::optional<std::string> board;
  bool pace = false;
  std::optional<std::filesystem::path> demo;
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    if (word == "-h" || word == "--help") {
      std::fputs(Texts::help().c_str(), stdout);
      return 0;
    }
    if (word == "--list") {
      printBoards();
      return 0;
    }
    if (word == "--pace") {
      pace = true;
    } else if (word == "--demo-folder") {
      if (i + 1 >= argc || argv[i + 1][0] == '\0')
        return usageError(Texts::missingValue("--demo-folder"));
      demo = argv[++i];
    } else if (word.starts_with("-") || board) {
      return usageError(Texts::unknownOption(std::string(word)));
    } else {
      board = word;
    }
  }
  if (!board) return usageError(Texts::missingBoard());

  const std::optional<Target> target = SimulatedBoard::fromShortName(*board);
  if (!target) {
    if (auto caterina = avrBoardFromRawValue(*board))
      return failure(Texts::cannotSimulate(L10n::Product::boardName(*caterina)));
    return usageError(Texts::unknownBoard(*board));
  }
  const std::string name = SimulatedBoard::displayName(*target);

  std::unique_ptr<SimulatedBoard> simulated;
  if (demo) {
    try {
      SimulatedBoard::writeDemo(*target, *demo);
    } catch (const std::filesystem::filesystem_error& error) {
      return failure(Texts::cannotWriteDemo(demo->string(), error.code().message()));
    }
  }
  try {
    simulated = std::make_unique<SimulatedBoard>(*target, pace);
  } catch (const std::runtime_error& error) {
    return failure(Texts::cannotOpenTerminal(error.what()));
  }
  const std::string path = simulated->path();
  // The first line is for scripts; the explanation is for a person at a terminal.
  std::printf("%s\n", path.c_str());
  std::fflush(stdout);
  if (::isatty(STDOUT_FILENO)) {
    std::fprintf(stderr, "%s\n", Texts::serving(name, path).c_str());
    if (demo) std::fprintf(stderr, "%s\n", Texts::demoWritten(demo->string()).c_str());
  }

  std::signal(SIGINT, onSignal);
  std::signal(SIGTERM, onSignal);
  while (!stopRequested)
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  return 0;
}
