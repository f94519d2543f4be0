#pragma once
// Every way the serial layer can fail, with a message in the interface language.

#include <cstdint>
#include <string>
#include <variant>

namespace tarnwick {

/// A failure of a serial link (`FlashPort`, or `NetworkLink` for a port on another computer).
/// Thrown by the operations that fail; a plain value otherwise.
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
  /// The adapter went away, or the connection to a network port was lost; `server` names the
  /// network port's server ("host:port") and is empty for a local adapter. Either way the board
  /// is out of reach, and everything that treats an unplugged board treats this alike.
  struct Disconnected {
    std::string server;
    bool operator==(const Disconnected&) const = default;
  };
  /// The name of a network port's computer could not be resolved.
  struct HostNotFound {
    std::string host;
    bool operator==(const HostNotFound&) const = default;
  };
  /// The failures of reaching a network port's server ("host:port"): nothing listens there; no
  /// answer in time; it answers but not as an RFC 2217 serial server; it serves no board there
  /// (ser2net could not open its device); another client holds the port.
  template <int N> struct AtServer {
    std::string server;
    bool operator==(const AtServer&) const = default;
  };
  using ConnectionRefused = AtServer<0>;
  using NoAnswer = AtServer<1>;
  using NotRFC2217 = AtServer<2>;
  using NoBoard = AtServer<3>;
  using PortInUse = AtServer<4>;

  /// The cases in the order of `value`'s alternatives.
  enum class Kind {
    invalidPath,
    openFailed,
    busy,
    configurationFailed,
    unsupportedBaudRate,
    writeFailed,
    notOpen,
    disconnected,
    hostNotFound,
    connectionRefused,
    noAnswer,
    notRFC2217,
    noBoard,
    portInUse
  };

  using Value =
      std::variant<InvalidPath, OpenFailed, Busy, ConfigurationFailed, UnsupportedBaudRate,
                   WriteFailed, NotOpen, Disconnected, HostNotFound, ConnectionRefused, NoAnswer,
                   NotRFC2217, NoBoard, PortInUse>;

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
  static FlashPortError disconnected(std::string server = {}) {
    return {Disconnected{std::move(server)}};
  }
  static FlashPortError hostNotFound(std::string host) { return {HostNotFound{std::move(host)}}; }
  static FlashPortError connectionRefused(std::string server) {
    return {ConnectionRefused{std::move(server)}};
  }
  static FlashPortError noAnswer(std::string server) { return {NoAnswer{std::move(server)}}; }
  static FlashPortError notRFC2217(std::string server) { return {NotRFC2217{std::move(server)}}; }
  static FlashPortError noBoard(std::string server) { return {NoBoard{std::move(server)}}; }
  static FlashPortError portInUse(std::string server) { return {PortInUse{std::move(server)}}; }

  Kind kind() const { return static_cast<Kind>(value.index()); }

  /// The message in the current interface language.
  std::string message() const;

  bool operator==(const FlashPortError&) const = default;
};

/// The system's standard text for an error number (what strerror gives), safe on any thread.
std::string systemErrorText(int code);

} // namespace tarnwick
