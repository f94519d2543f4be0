#pragma once
// What a flashing run reports as it goes, how it fails, and what it achieved.

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "FlashCore/Bytes.hpp"

namespace tarnwick {

namespace FlashEvents {
/// A connection attempt starts (before its reset sequence).
struct Connecting {
  int attempt = 1;
  bool manual = false;
  bool operator==(const Connecting&) const = default;
};
/// The chip or board answered and was accepted.
struct Connected {
  std::string chip;
  std::optional<std::string> mac;
  bool operator==(const Connected&) const = default;
};
/// The line speed was raised for writing.
struct BaudRate {
  std::int64_t rate = 0;
  bool operator==(const BaudRate&) const = default;
};
/// The bootloader of a native-USB board appeared on another port.
struct PortChanged {
  std::string path;
  bool operator==(const PortChanged&) const = default;
};
/// A write starts.
struct Writing {
  std::string name;
  std::uint32_t offset = 0;
  std::int64_t size = 0;
  bool operator==(const Writing&) const = default;
};
/// Bytes of the whole run done so far.
struct Progress {
  std::int64_t done = 0;
  std::int64_t total = 0;
  bool operator==(const Progress&) const = default;
};
/// A write finished.
struct Written {
  std::string name;
  double seconds = 0;
  bool operator==(const Written&) const = default;
};
/// A write's contents are being checked.
struct Verifying {
  std::string name;
  bool operator==(const Verifying&) const = default;
};
/// A write's contents were confirmed.
struct Verified {
  std::string name;
  bool operator==(const Verified&) const = default;
};
/// The board is being restarted at the end of the run.
struct Resetting {
  bool operator==(const Resetting&) const = default;
};
/// The network port's server does not confirm DTR/RTS changes; from now on they are sent
/// without waiting. Once per connection.
struct LinesUnconfirmed {
  bool operator==(const LinesUnconfirmed&) const = default;
};
} // namespace FlashEvents

/// One step of a run, reported through the job context.
using FlashEvent =
    std::variant<FlashEvents::Connecting, FlashEvents::Connected, FlashEvents::BaudRate,
                 FlashEvents::PortChanged, FlashEvents::Writing, FlashEvents::Progress,
                 FlashEvents::Written, FlashEvents::Verifying, FlashEvents::Verified,
                 FlashEvents::Resetting, FlashEvents::LinesUnconfirmed>;

/// The engine's error: why a run failed.
struct FlashError {
  struct WrongChip {
    std::string found;
    std::string expected;
    bool operator==(const WrongChip&) const = default;
  };
  struct CommandFailed {
    std::uint8_t command;
    std::uint8_t code;
    bool operator==(const CommandFailed&) const = default;
  };
  struct NoResponse {
    std::uint8_t command;
    bool operator==(const NoResponse&) const = default;
  };
  struct VerifyFailed {
    std::string name;
    bool operator==(const VerifyFailed&) const = default;
  };
  struct WrongSignature {
    Bytes found;
    std::string expected;
    bool operator==(const WrongSignature&) const = default;
  };
  struct SketchTooLarge {
    std::int64_t size;
    std::int64_t max;
    bool operator==(const SketchTooLarge&) const = default;
  };
  /// The board cannot be flashed through a network port (its bootloader is a USB device of its
  /// own); `board` is its display name.
  struct NeedsLocalPort {
    std::string board;
    bool operator==(const NeedsLocalPort&) const = default;
  };
  template <int N> struct Plain { bool operator==(const Plain&) const = default; };
  using NoSync = Plain<0>;
  using BootloaderPortNotFound = Plain<1>;
  using AVRNoResponse = Plain<2>;
  using Cancelled = Plain<3>;

  using Case =
      std::variant<WrongChip, CommandFailed, NoResponse, VerifyFailed, WrongSignature,
                   SketchTooLarge, NoSync, BootloaderPortNotFound, AVRNoResponse, Cancelled,
                   NeedsLocalPort>;
  Case value;

  static FlashError wrongChip(std::string found, std::string expected) {
    return {WrongChip{std::move(found), std::move(expected)}};
  }
  static FlashError commandFailed(std::uint8_t command, std::uint8_t code) {
    return {CommandFailed{command, code}};
  }
  static FlashError noResponse(std::uint8_t command) { return {NoResponse{command}}; }
  static FlashError verifyFailed(std::string name) { return {VerifyFailed{std::move(name)}}; }
  static FlashError wrongSignature(Bytes found, std::string expected) {
    return {WrongSignature{std::move(found), std::move(expected)}};
  }
  static FlashError sketchTooLarge(std::int64_t size, std::int64_t max) {
    return {SketchTooLarge{size, max}};
  }
  static FlashError noSync() { return {NoSync{}}; }
  static FlashError bootloaderPortNotFound() { return {BootloaderPortNotFound{}}; }
  static FlashError avrNoResponse() { return {AVRNoResponse{}}; }
  static FlashError cancelled() { return {Cancelled{}}; }
  static FlashError needsLocalPort(std::string board) { return {NeedsLocalPort{std::move(board)}}; }

  bool isCancelled() const { return std::holds_alternative<Cancelled>(value); }
  /// The message in the interface language.
  std::string message() const;
  bool operator==(const FlashError&) const = default;
};

/// What a successful run did.
struct FlashSummary {
  std::string chip;
  std::optional<std::string> mac;
  std::int64_t bytes = 0;
  double seconds = 0;
  std::string portPath;
  bool operator==(const FlashSummary&) const = default;
};

} // namespace tarnwick
