#pragma once
// The command line of tarnwick-cli, parsed into one request.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "FlashCore/FlashSettings.hpp"

namespace tarnwick::cli {

enum class CommandKind { help, version, flash, pack, check, info, ports, station };

/// Overrides of a product's settings given on the command line.
struct SettingOverrides {
  std::optional<std::int64_t> baud;
  std::optional<ResetMode> reset;
  bool noVerify = false;
  std::optional<FlashMode> flashMode;
  std::optional<FlashSize> flashSize;
  bool keepOTAData = false;
  bool operator==(const SettingOverrides&) const = default;
  /// The first option given that only an ESP board has a use for.
  std::optional<std::string> espOnlyOption() const;
};

/// One parsed invocation.
struct Arguments {
  CommandKind command = CommandKind::help;
  /// The command whose help was asked for (`help` itself for the overview).
  CommandKind helpFor = CommandKind::help;
  /// The last `--port`; `station` takes every one given, in `ports`.
  std::optional<std::string> port;
  std::vector<std::string> ports;
  bool testDevice = false;
  SettingOverrides overrides;
  /// Target in the product file's text form ("esp:esp32s3", "avr:uno").
  std::optional<std::string> target;
  std::optional<std::string> out;
  std::optional<std::string> name;
  std::optional<std::string> notes;
  /// Replace an existing product file.
  bool force = false;
  /// `pack` writes the product as a directory, for programs that read only that form.
  bool directory = false;
  /// `ports`: print JSON for scripts.
  bool json = false;
  /// `ports`: print the list again at every change.
  bool watch = false;
  /// `station`: flash the boards already connected too.
  bool now = false;
  /// `station`: take no new board once this many succeeded or are running.
  std::optional<std::int64_t> limit;
  /// `station`: the file each finished board is appended to.
  std::optional<std::string> record;
  /// Product file, or firmware files and folders.
  std::vector<std::string> inputs;
  bool operator==(const Arguments&) const = default;
};

/// A command line that cannot be carried out; `message` says why in the interface language.
struct UsageError {
  std::string message;
  /// The command whose usage is shown after the message.
  CommandKind command = CommandKind::help;
  bool operator==(const UsageError&) const = default;
};

/// The word that names `command` on the command line; empty for the overview (help, version).
std::string commandName(CommandKind command);

/// Parses the words after the program name. Throws UsageError.
Arguments parseArguments(const std::vector<std::string>& words);

/// The candidate closest to a mistyped `word`, if one is close enough to be meant.
std::optional<std::string> closestMatch(const std::string& word,
                                        const std::vector<std::string>& candidates);

} // namespace tarnwick::cli
