#pragma once
// A serial port on another computer, reached through a serial server (ser2net) that speaks
// RFC 2217: the bytes travel over TCP, and the line speed, DTR and RTS and the flushing of
// buffers as Telnet COM-PORT-OPTION commands. The protocol is libgensio's (NetworkLinkGensio.cpp).

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "FlashCore/Bytes.hpp"
#include "FlashSerial/FlashPortError.hpp"
#include "FlashSerial/NetworkPort.hpp"
#include "FlashSerial/SerialLink.hpp"

namespace tarnwick {

/// A connection to a network serial port. Operations that fail throw `FlashPortError`. Used by
/// one thread at a time; it may be handed from one thread to another between calls.
class NetworkLink final : public SerialLink {
public:
  /// Longest time to connect and agree on RFC 2217 (a silent server costs about four seconds of
  /// Telnet negotiation before it is known to be one).
  static constexpr double connectSeconds = 6.0;
  /// Longest wait for a server to confirm a line change, once per connection: a server that does
  /// not confirm (ser2net on a device without modem lines) is then no longer waited for.
  static constexpr double lineConfirmSeconds = 0.2;
  /// Longest wait for a server to confirm a line speed.
  static constexpr double speedConfirmSeconds = 2.0;
  /// Longest time one write waits for the connection to take its bytes.
  static constexpr double writeSeconds = 2.0;

  /// A closed link; nothing is connected yet.
  NetworkLink(NetworkPortAddress address, std::int64_t baudRate, SerialLinkOptions options = {});
  /// Closes the connection if it is open.
  ~NetworkLink() override;
  NetworkLink(const NetworkLink&) = delete;
  NetworkLink& operator=(const NetworkLink&) = delete;

  /// Connects, agrees on RFC 2217 and sets the line speed; nothing when already open, unless the
  /// server has closed the connection, which is then made anew. A server
  /// that holds the connection open has its board's device open: this is how a board behind a
  /// network port is known to be present. Throws hostNotFound, connectionRefused, noAnswer,
  /// notRFC2217, noBoard, portInUse, unsupportedBaudRate or disconnected.
  void open();
  void close() noexcept override;
  bool isOpen() const;

  /// The port's name, "rfc2217://HOST:PORT".
  const std::string& path() const override { return name_; }
  std::int64_t baudRate() const override { return baudRate_; }
  /// Whether the server confirms line changes; absent until the first change.
  std::optional<bool> confirmsLines() const { return confirmsLines_; }
  /// Who hears of this connection from now on: a connection opened by one party (the station,
  /// watching for a board) serves a run that has notes and a Stop button of its own.
  void setOptions(SerialLinkOptions options) { options_ = std::move(options); }

  void setBaudRate(std::int64_t rate) override;
  /// Sends the changes back to back, asserted lines first as a local port does, and only then
  /// waits for their confirmation: a reset step never waits between its two lines.
  void setLines(std::optional<bool> dtr, std::optional<bool> rts) override;
  void write(ByteView bytes) override;
  Bytes read(double timeout) override;
  Bytes read(std::size_t count, double timeout) override;
  /// Discards what arrived and asks the server to discard what it holds (PURGE-DATA).
  void flushInput() override;

private:
  struct Connection;

  // Reads what arrives within `seconds` into `pending_`; false once the connection is gone.
  bool receive(double seconds);
  // Waits until the requests just sent are confirmed, at most `seconds`, keeping what arrives
  // meanwhile; true when all were.
  bool awaitConfirmations(double seconds);
  // Why the server closed the connection it had just accepted, from what it said.
  FlashPortError closedByServer();
  // Closes and throws: an open that fails leaves nothing open.
  [[noreturn]] void fail(FlashPortError error);

  NetworkPortAddress address_;
  std::string name_;
  std::int64_t baudRate_;
  SerialLinkOptions options_;
  std::optional<bool> confirmsLines_;
  bool lost_ = false;
  Bytes pending_;
  std::unique_ptr<Connection> connection_;
};

} // namespace tarnwick
