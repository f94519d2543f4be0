// tarnwick-simboard: serves a simulated board on a pseudo-terminal until interrupted, so that
// tarnwick-cli --test-device (or the desktop program) can be tried without hardware; with
// --rfc2217, also on a TCP port as a serial server, its reset lines driving the board's circuit.

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
#include "Simulator/NetworkSerialServer.hpp"
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

std::optional<std::uint16_t> tcpPort(std::string_view text) {
  if (text.empty() || text.size() > 5) return std::nullopt;
  unsigned value = 0;
  for (char c : text) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + static_cast<unsigned>(c - '0');
  }
  if (value > 65535) return std::nullopt;
  return static_cast<std::uint16_t>(value);
}

// Chips with Espressif's USB-Serial-JTAG, which resets them by its own sequence.
bool hasUSBJTAG(ESPChip chip) {
  return chip == ESPChip::esp32s3 || chip == ESPChip::esp32c3 || chip == ESPChip::esp32c6;
}

} // namespace

int main(int argc, char** argv) {
  std::optional<std::string> board;
  bool pace = false;
  std::optional<std::filesystem::path> demo;
  std::optional<std::uint16_t> networkPort;
  std::optional<std::string> bindAddress;
  std::optional<std::string> circuit;
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
    } else if (word == "--rfc2217" || word == "--bind" || word == "--reset-circuit") {
      if (i + 1 >= argc || argv[i + 1][0] == '\0')
        return usageError(Texts::missingSetting(std::string(word)));
      const std::string value = argv[++i];
      if (word == "--rfc2217") {
        networkPort = tcpPort(value);
        if (!networkPort) return usageError(Texts::invalidTCPPort(value));
      } else if (word == "--bind") {
        bindAddress = value;
      } else {
        circuit = value;
      }
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
  if (!networkPort && (bindAddress || circuit))
    return usageError(Texts::needsRFC2217(bindAddress ? "--bind" : "--reset-circuit"));
  const std::optional<ESPChip> chip = target->espChip();
  ResetWiring wiring = target->isESP() ? ResetWiring::espAutoReset : ResetWiring::arduino;
  if (circuit) {
    if (chip && *circuit == "usbJTAG" && hasUSBJTAG(*chip)) {
      wiring = ResetWiring::espUSBJTAG;
    } else if (!target->isESP() || *circuit != "classic") {
      return usageError(Texts::invalidResetCircuit(*circuit, name));
    }
  }

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
  std::unique_ptr<NetworkSerialServer> server;
  if (networkPort) {
    const std::string address = bindAddress ? *bindAddress : "127.0.0.1";
    auto start = [&simulated](BoardStart how) { simulated->start(how); };
    try {
      server = std::make_unique<NetworkSerialServer>(path, wiring, start, address, *networkPort);
    } catch (const std::runtime_error& error) {
      return failure(Texts::cannotListen(address, error.what()));
    }
  }
  const std::string shown = server ? server->portName() : path;
  // The first line is for scripts; the explanation is for a person at a terminal.
  std::printf("%s\n", shown.c_str());
  std::fflush(stdout);
  if (::isatty(STDOUT_FILENO)) {
    std::fprintf(stderr, "%s\n",
                 (server ? Texts::servingNetwork(name, shown) : Texts::serving(name, path)).c_str());
    if (demo) std::fprintf(stderr, "%s\n", Texts::demoWritten(demo->string()).c_str());
  }

  std::signal(SIGINT, onSignal);
  std::signal(SIGTERM, onSignal);
  while (!stopRequested)
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  return 0;
}
