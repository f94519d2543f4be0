#include "TarnwickCLI/Arguments.hpp"

#include <algorithm>
#include <charconv>

#include "FlashCore/Product.hpp"
#include "FlashCore/ProductCheck.hpp"
#include "Localization/CliTexts.hpp"
#include "Localization/IssueTexts.hpp"
#include "Localization/StationTexts.hpp"

namespace tarnwick::cli {

namespace {

const std::vector<std::pair<std::string, CommandKind>> commands = {
    {"flash", CommandKind::flash}, {"pack", CommandKind::pack},   {"check", CommandKind::check},
    {"info", CommandKind::info},   {"ports", CommandKind::ports}, {"station", CommandKind::station},
    {"help", CommandKind::help}};

std::optional<CommandKind> commandNamed(const std::string& word) {
  for (const auto& [name, kind] : commands) {
    if (name == word) return kind;
  }
  return std::nullopt;
}

} // namespace

std::string commandName(CommandKind command) {
  if (command == CommandKind::help) return "";
  for (const auto& [name, kind] : commands) {
    if (kind == command) return name;
  }
  return "";
}

namespace {

// The settings of a run; `pack` takes them too, so a product can be made exactly as it is flashed.
const std::vector<std::string> settingOptions = {"--baud",       "--reset",      "--no-verify",
                                                 "--flash-mode", "--flash-size", "--keep-otadata"};

std::vector<std::string> optionsOf(CommandKind command) {
  std::vector<std::string> options = settingOptions;
  switch (command) {
  case CommandKind::flash:
    options.insert(options.end(), {"--port", "--test-device", "--target"});
    break;
  case CommandKind::pack:
    options.insert(options.end(),
                   {"--target", "--out", "--name", "--notes", "--force", "--directory"});
    break;
  case CommandKind::ports: options = {"--json", "--watch"}; break;
  case CommandKind::station:
    options.insert(options.end(),
                   {"--port", "--test-device", "--now", "--limit", "--json", "--record"});
    break;
  default: return {};
  }
  return options;
}

std::string longForm(const std::string& option) {
  if (option == "-p") return "--port";
  if (option == "-b") return "--baud";
  if (option == "-t") return "--target";
  return option;
}

bool takesValue(const std::string& option) {
  return option != "--test-device" && option != "--no-verify" && option != "--keep-otadata" &&
         option != "--force" && option != "--directory" && option != "--json" &&
         option != "--watch" && option != "--now";
}

std::string withSuggestion(std::string message, const std::string& word,
                           const std::vector<std::string>& candidates) {
  if (auto match = closestMatch(word, candidates)) message += L10n::Cli::didYouMean(*match);
  return message;
}

template <typename T>
T parsed(std::optional<T> value, CommandKind command, const std::string& option,
         const std::string& text, const std::string& valid) {
  if (!value) throw UsageError{L10n::Cli::badValue(option, text) + " " + valid, command};
  return *value;
}

template <typename T, std::size_t N>
std::string listOf(const T (&all)[N], std::string_view (*raw)(T)) {
  std::vector<std::string> names;
  for (const T& value : all)
    names.emplace_back(raw(value));
  return L10n::Cli::validValues(names);
}

std::optional<std::int64_t> baudFrom(const std::string& text) {
  std::int64_t value = 0;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (value < ProductCheck::lowestBaud || value > ProductCheck::highestBaud) return std::nullopt;
  return value;
}

std::optional<std::int64_t> countFrom(const std::string& text) {
  std::int64_t value = 0;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < 1) return std::nullopt;
  return value;
}

std::size_t editDistance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j)
    row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      std::size_t above = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
      diagonal = above;
    }
  }
  return row[b.size()];
}

} // namespace

std::optional<std::string> SettingOverrides::espOnlyOption() const {
  if (baud) return "--baud";
  if (reset) return "--reset";
  if (flashMode) return "--flash-mode";
  if (flashSize) return "--flash-size";
  if (keepOTAData) return "--keep-otadata";
  return std::nullopt;
}

std::optional<std::string> closestMatch(const std::string& word,
                                        const std::vector<std::string>& candidates) {
  std::optional<std::string> best;
  std::size_t bestDistance = 3; // more than two edits is a different word, not a typo
  for (const auto& candidate : candidates) {
    std::size_t distance = editDistance(word, candidate);
    // "esp32s3" for "esp:esp32s3": the family left out.
    if (auto colon = candidate.find(':'); colon != std::string::npos) {
      distance = std::min(distance, editDistance(word, candidate.substr(colon + 1)));
    }
    // "--verify" for "--no-verify", "nano" for "avr:nano…": a part of the word is also meant.
    const std::string core = word.substr(std::min(word.find_first_not_of('-'), word.size()));
    if (core.size() >= 4 && candidate.find(core) != std::string::npos)
      distance = std::min<std::size_t>(distance, 2);
    if (distance < bestDistance && distance < std::max<std::size_t>(candidate.size() / 2, 1)) {
      best = candidate;
      bestDistance = distance;
    }
  }
  return best;
}

Arguments parseArguments(const std::vector<std::string>& words) {
  Arguments result;
  if (words.empty()) throw UsageError{L10n::Cli::missingCommand(), CommandKind::help};
  if (words[0] == "--help" || words[0] == "-h") return result;
  if (words[0] == "--version") {
    result.command = CommandKind::version;
    return result;
  }
  auto command = commandNamed(words[0]);
  if (!command) {
    std::vector<std::string> names;
    for (const auto& entry : commands)
      names.push_back(entry.first);
    throw UsageError{withSuggestion(L10n::Cli::unknownCommand(words[0]), words[0], names),
                     CommandKind::help};
  }
  result.command = *command;
  const auto accepted = optionsOf(result.command);

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
    option = longForm(option);
    if (std::find(accepted.begin(), accepted.end(), option) == accepted.end()) {
      throw UsageError{withSuggestion(L10n::Cli::unknownOption(option), option, accepted),
                       result.command};
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

    if (option == "--port") {
      result.port = *value;
      result.ports.push_back(*value);
    } else if (option == "--now")
      result.now = true;
    else if (option == "--limit")
      result.limit = parsed(countFrom(*value), result.command, option, *value,
                            L10n::Station::limitValue());
    else if (option == "--record")
      result.record = *value;
    else if (option == "--test-device")
      result.testDevice = true;
    else if (option == "--target")
      result.target = *value;
    else if (option == "--out")
      result.out = *value;
    else if (option == "--name")
      result.name = *value;
    else if (option == "--notes")
      result.notes = *value;
    else if (option == "--force")
      result.force = true;
    else if (option == "--directory")
      result.directory = true;
    else if (option == "--baud")
      result.overrides.baud =
          parsed(baudFrom(*value), result.command, option, *value,
                 L10n::Issue::baudOutOfRange(ProductCheck::lowestBaud, ProductCheck::highestBaud));
    else if (option == "--reset")
      result.overrides.reset = parsed(resetModeFromRawValue(*value), result.command, option, *value,
                                      listOf(allResetModes, rawValue));
    else if (option == "--no-verify")
      result.overrides.noVerify = true;
    else if (option == "--flash-mode")
      result.overrides.flashMode = parsed(flashModeFromRawValue(*value), result.command, option,
                                          *value, listOf(allFlashModes, rawValue));
    else if (option == "--flash-size")
      result.overrides.flashSize = parsed(flashSizeFromRawValue(*value), result.command, option,
                                          *value, listOf(allFlashSizes, rawValue));
    else if (option == "--keep-otadata")
      result.overrides.keepOTAData = true;
    else if (option == "--json")
      result.json = true;
    else if (option == "--watch")
      result.watch = true;
  }

  if (result.target) {
    auto target = Target::parse(*result.target);
    if (!target) {
      std::vector<std::string> names;
      for (const Target& t : Target::all())
        names.push_back(t.text());
      throw UsageError{
          withSuggestion(L10n::Cli::unknownTarget(*result.target, names), *result.target, names),
          result.command};
    }
    if (auto option = result.overrides.espOnlyOption(); option && target->avrBoard()) {
      throw UsageError{L10n::Cli::espOnly(*option), result.command};
    }
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
  case CommandKind::station:
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
  case CommandKind::version: break;
  }
  return result;
}

} // namespace tarnwick::cli
