#include "Tarnwick/Views/CommandLine.hpp"

#include "Localization/CliTexts.hpp"
#include "Localization/DesktopTexts.hpp"
#include "Localization/SimulatorTexts.hpp"
#include "Simulator/SimulatedBoard.hpp"

namespace tarnwick {

namespace {

using simulator::SimulatedBoard;

// An empty name is the product's board; anything else must name a board that can be simulated.
std::string simulatedBoardError(const std::string& name) {
  if (name.empty() || SimulatedBoard::fromShortName(name)) return {};
  for (const Target& target : Target::all())
    if (target.avrBoard() && SimulatedBoard::shortName(target) == name)
      return L10n::Simulator::cannotSimulate(SimulatedBoard::displayName(target));
  std::string boards;
  for (const Target& target : SimulatedBoard::simulable())
    boards += (boards.empty() ? "" : ", ") + SimulatedBoard::shortName(target);
  return L10n::Desktop::notSimulable(name, boards);
}

} // namespace

CommandLine parseCommandLine(const std::vector<std::string>& arguments) {
  CommandLine line;
  bool optionsEnded = false;
  for (std::size_t i = 0; i < arguments.size() && line.error.empty(); ++i) {
    std::string argument = arguments[i];
    if (optionsEnded || argument.size() < 2 || argument[0] != '-') {
      line.files.push_back(argument);
      continue;
    }
    if (argument == "--") {
      optionsEnded = true;
      continue;
    }
    std::string name = argument;
    std::string value;
    bool hasValue = false;
    if (auto equals = argument.find('='); equals != std::string::npos) {
      name = argument.substr(0, equals);
      value = argument.substr(equals + 1);
      hasValue = true;
    }
    auto takeValue = [&]() -> bool {
      if (!hasValue) {
        if (i + 1 >= arguments.size()) {
          line.error = L10n::Cli::missingValue(name);
          return false;
        }
        value = arguments[++i];
      }
      if (value.empty()) {
        line.error = L10n::Cli::missingValue(name);
        return false;
      }
      return true;
    };
    if (name == "--help" || name == "-h") {
      line.help = true;
    } else if (name == "--version") {
      line.version = true;
    } else if (name == "--dark") {
      line.dark = true;
    } else if (name == "--station") {
      line.station = true;
    } else if (name == "--test-device") {
      if (takeValue()) line.testDevices.push_back(value);
    } else if (name == "--simulated-board") {
      if (hasValue && !takeValue()) continue;
      line.error = simulatedBoardError(value);
      if (line.error.empty()) line.simulatedBoards.push_back(value);
    } else if (name == "--screenshots") {
      if (takeValue()) line.screenshotFolder = value;
    } else {
      line.error = L10n::Cli::unknownOption(name);
    }
    if (line.error.empty() && hasValue &&
        (name == "--help" || name == "--version" || name == "--dark" || name == "--station"))
      line.error = L10n::Cli::unexpectedValue(name);
  }
  return line;
}

} // namespace tarnwick
