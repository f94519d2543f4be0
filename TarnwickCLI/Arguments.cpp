#include "TarnwickCLI/Arguments.hpp"

#include <charconv>

#include "Localization/CliTexts.hpp"

namespace tarnwick::cli {

namespace {

std::optional<CommandKind> commandNamed(const std::string& word) {
  if (word == "flash") return CommandKind::flash;
  if (word == "pack") return CommandKind::pack;
  if (word == "check") return CommandKind::check;
  if (word == "info") return CommandKind::info;
  if (word == "ports") return CommandKind::ports;
  if (word == "help") return CommandKind::help;
  return std::nullopt;
}

// Which options each command takes; everything else is a usage error for it.
bool accepts(CommandKind command, const std::string& option) {
  static const std::vector<std::string> flashOptions = {
      "--port",      "--test-device", "--target",     "--baud",        "--reset",
      "--no-verify", "--flash-mode",  "--flash-size", "--keep-otadata"};
  switch (command) {
  case CommandKind::flash:
    for (const auto& o : flashOptions) {
      if (o == option) return true;
    }
    return false;
  case CommandKind::pack: return option == "--target" || option == "--out" || option == "--name";
  case CommandKind::ports: return option == "--json" || option == "--watch";
  default: return false;
  }
}

bool takesValue(const std::string& option) {
  return option != "--test-device" && option != "--no-verify" && option != "--keep-otadata" &&
         option != "--json" && option != "--watch";
}

template <typename T>
T parsed(std::optional<T> value, CommandKind command, const std::string& option,
         const std::string& text) {
  if (!value) throw UsageError{L10n::Cli::badValue(option, text), command};
  return *value;
}

std::optional<std::int64_t> baudFrom(const std::string& text) {
  std::int64_t value = 0;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  // Slower than 9600 baud cannot carry a flash run; above 12 Mbaud no USB adapter goes.
  if (value < 9600 || value > 12'000'000) return std::nullopt;
  return value;
}

} // namespace

Arguments parseArguments(const std::vector<std::string>& words) {
  Arguments result;
  if (words.empty()) return result;
  if (words[0] == "--help" || words[0] == "-h") return result;
  auto command = commandNamed(words[0]);
  if (!command) throw UsageError{L10n::Cli::unknownCommand(words[0]), CommandKind::help};
  result.command = *command;

  bool optionsEnded = false;
  for (std::size_t i = 1; i < words.size(); ++i) {
    const std::string& word = words[i];
    if (optionsEnded || word.empty() || word[0] != '-' || word == "-") {
      result.inputs.push_back(word);
      continue;
    }
    if (word == "--") {
      optionsEnded = true;
      continue;
    }
    if (word == "--help" || word == "-h") {
      result.helpFor = result.command;
      result.command = CommandKind::help;
      return result;
    }
    // "--option=value" and "--option value" both work.
    std::string option = word;
    std::optional<std::string> value;
    if (auto equals = word.find('='); equals != std::string::npos) {
      option = word.substr(0, equals);
      value = word.substr(equals + 1);
    }
    if (!accepts(result.command, option)) {
      throw UsageError{L10n::Cli::unknownOption(option), result.command};
    }
    if (takesValue(option)) {
      if (!value) {
        if (i + 1 >= words.size()) {
          throw UsageError{L10n::Cli::missingValue(option), result.command};
        }
        value = words[++i];
      }
    } else if (value) {
      throw UsageError{L10n::Cli::unexpectedValue(option), result.command};
    }

    if (option == "--port")
      result.port = *value;
    else if (option == "--test-device")
      result.testDevice = true;
    else if (option == "--target")
      result.target = *value;
    else if (option == "--out")
      result.out = *value;
    else if (option == "--name")
      result.name = *value;
    else if (option == "--baud")
      result.overrides.baud = parsed(baudFrom(*value), result.command, option, *value);
    else if (option == "--reset")
      result.overrides.reset =
          parsed(resetModeFromRawValue(*value), result.command, option, *value);
    else if (option == "--no-verify")
      result.overrides.noVerify = true;
    else if (option == "--flash-mode")
      result.overrides.flashMode =
          parsed(flashModeFromRawValue(*value), result.command, option, *value);
    else if (option == "--flash-size")
      result.overrides.flashSize =
          parsed(flashSizeFromRawValue(*value), result.command, option, *value);
    else if (option == "--keep-otadata")
      result.overrides.keepOTAData = true;
    else if (option == "--json")
      result.json = true;
    else if (option == "--watch")
      result.watch = true;
  }

  switch (result.command) {
  case CommandKind::flash:
    if (result.inputs.empty()) throw UsageError{L10n::Cli::missingInput(), result.command};
    break;
  case CommandKind::pack:
    if (!result.target) throw UsageError{L10n::Cli::missingOption("--target"), result.command};
    if (!result.out) throw UsageError{L10n::Cli::missingOption("--out"), result.command};
    if (result.inputs.empty()) throw UsageError{L10n::Cli::missingInput(), result.command};
    break;
  case CommandKind::check:
  case CommandKind::info:
    if (result.inputs.size() != 1) throw UsageError{L10n::Cli::oneProductFile(), result.command};
    break;
  case CommandKind::ports:
    if (!result.inputs.empty()) throw UsageError{L10n::Cli::noInputs(), result.command};
    break;
  case CommandKind::help:
    if (!result.inputs.empty()) {
      auto topic = commandNamed(result.inputs[0]);
      if (!topic) throw UsageError{L10n::Cli::unknownCommand(result.inputs[0]), result.command};
      result.helpFor = *topic;
      result.inputs.clear();
    }
    break;
  }
  return result;
}

} // namespace tarnwick::cli
