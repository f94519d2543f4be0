#pragma once
// Every way the serial layer can fail, with a message in the interface language.

#include <cstdint>
#include <string>
#include <variant>

namespace tarnwick {

/// A failure of `FlashPort`. Thrown by the operations that fail; a plain value otherwise.
struct FlashPortError {
  /// The path did not pass `FlashPort::isValidPath`.
  struct InvalidPath {
    std::string path;
    bool operator==(const InvalidPath&) const = default;
  };
  /// The device could not be opened; `code` is the error number.
  struct OpenFailed {
    std::string path;
    std::int32_t code = 0;
    bool operator==(const OpenFailed&) const = default;
  };
  /// Another program holds the device.
  struct Busy {
    std::string path;
    bool operator==(const Busy&) const = default;
  };
  /// Reading or applying the terminal settings failed.
  struct ConfigurationFailed {
    std::int32_t code = 0;
    bool operator==(const ConfigurationFailed&) const = default;
  };
  /// The adapter refused the line speed or runs it too far off.
  struct UnsupportedBaudRate {
    std::int64_t rate = 0;
    bool operator==(const UnsupportedBaudRate&) const = default;
  };
  /// Output could not be handed to the driver; ETIMEDOUT when it stayed blocked.
  struct WriteFailed {
    std::int32_t code = 0;
    bool operator==(const WriteFailed&) const = default;
  };
  struct NotOpen {
    bool operator==(const NotOpen&) const = default;
  };
  struct Disconnected {
    bool operator==(const Disconnected&) const = default;
  };

  /// The cases in the order of `value`'s alternatives.
  enum class Kind {
    invalidPath,
    openFailed,
    busy,
    configurationFailed,
    unsupportedBaudRate,
    writeFailed,
    notOpen,
    disconnected
  };

  using Value = std::variant<InvalidPath, OpenFailed, Busy, ConfigurationFailed,
                             UnsupportedBaudRate, WriteFailed, NotOpen, Disconnected>;

  Value value;

  static FlashPortError invalidPath(std::string path) { return {InvalidPath{std::move(path)}}; }
  static FlashPortError openFailed(std::string path, std::int32_t code) {
    return {OpenFailed{std::move(path), code}};
  }
  static FlashPortError busy(std::string path) { return {Busy{std::move(path)}}; }
  static FlashPortError configurationFailed(std::int32_t code) {
    return {ConfigurationFailed{code}};
  }
  static FlashPortError unsupportedBaudRate(std::int64_t rate) {
    return {UnsupportedBaudRate{rate}};
  }
  static FlashPortError writeFailed(std::int32_t code) { return {WriteFailed{code}}; }
  static FlashPortError notOpen() { return {NotOpen{}}; }
  static FlashPortError disconnected() { return {Disconnected{}}; }

  Kind kind() const { return static_cast<Kind>(value.index()); }

  /// The message in the current interface language.
  std::string message() const;

  bool operator==(const FlashPortError&) const = default;
};

/// The system's standard text for an error number (what strerror gives), safe on any thread.
std::string systemErrorText(int code);

} // namespace tarnwick
