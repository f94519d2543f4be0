// tarnwick-simboard: serves a simulated board on a pseudo-terminal until interrupted, so the
// engine (or tarnwick-cli --test-device) can be pointed at it by hand.
//
//   tarnwick-simboard BOARD [--pace] [--demo-folder DIR]
//
// BOARD is an ESP chip (esp8266, esp32, esp32s2, esp32s3, esp32c3, esp32c6) or an AVR board
// (uno, nano, nanoOldBootloader, mega2560). The terminal's path is printed on the first line.
// --demo-folder writes a matching build (a PlatformIO folder, or a sketch .hex) into DIR first.

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>

#include "support/BuildFolders.hpp"
#include "support/HexFiles.hpp"
#include "support/SimulatedAVR.hpp"
#include "support/SimulatedESP.hpp"

using namespace tarnwick;
using namespace tarnwick::testing;

namespace {
std::atomic<bool> stopRequested = false;
extern "C" void onSignal(int) { stopRequested = true; }
} // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: tarnwick-simboard BOARD [--pace] [--demo-folder DIR]\n");
    return 2;
  }
  std::string board = argv[1];
  bool pace = false;
  std::optional<std::filesystem::path> demo;
  for (int i = 2; i < argc; ++i) {
    if (std::strcmp(argv[i], "--pace") == 0)
      pace = true;
    else if (std::strcmp(argv[i], "--demo-folder") == 0 && i + 1 < argc)
      demo = argv[++i];
  }

  std::unique_ptr<SimulatedESP> esp;
  std::unique_ptr<SimulatedAVR> avr;
  std::string path;
  if (auto chip = espChipFromRawValue(board)) {
    SimulatedESPOptions options;
    options.chip = *chip;
    options.paceLine = pace;
    esp = std::make_unique<SimulatedESP>(options);
    path = esp->path();
    if (demo && imageChipID(*chip)) {
      platformIOBuild("demo", *imageChipID(*chip), Layouts::arduinoDefault()).writeTo(*demo);
    }
  } else if (auto avrBoard = avrBoardFromRawValue(board);
             avrBoard && protocol(*avrBoard) != AVRProtocol::avr109) {
    SimulatedAVROptions options;
    options.board = *avrBoard;
    options.paceLine = pace;
    avr = std::make_unique<SimulatedAVR>(options);
    path = avr->path();
    if (demo) {
      std::filesystem::create_directories(*demo);
      std::ofstream(*demo / "Blink.ino.hex") << intelHexOf(avrSketch(2000, 5));
    }
  } else {
    std::fprintf(stderr, "tarnwick-simboard: unknown board %s\n", board.c_str());
    return 2;
  }
  std::printf("%s\n", path.c_str());
  std::fflush(stdout);

  std::signal(SIGINT, onSignal);
  std::signal(SIGTERM, onSignal);
  while (!stopRequested)
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  return 0;
}
