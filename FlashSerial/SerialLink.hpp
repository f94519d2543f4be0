#pragma once
// What the loaders need of a serial device. `FlashPort` is the local one and `NetworkLink` one on
// another computer; tests put a recording link in their place to see the exact modem-line changes
// of the reset sequences.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "FlashCore/Bytes.hpp"

namespace tarnwick {

class SerialLink {
public:
  virtual ~SerialLink() = default;

  /// Device path (or network port name) the link talks to.
  virtual const std::string& path() const = 0;
  /// Current line speed in bits per second.
  virtual std::int64_t baudRate() const = 0;

  /// Changes the line speed; throws FlashPortError (notOpen, unsupportedBaudRate).
  virtual void setBaudRate(std::int64_t rate) = 0;
  /// Asserts (true) or clears (false) DTR and RTS; an absent value leaves the line alone. The
  /// changes of one call take effect together, as one step of a reset sequence. Never fails.
  virtual void setLines(std::optional<bool> dtr, std::optional<bool> rts) = 0;
  /// Hands every byte on; throws FlashPortError (notOpen, writeFailed, disconnected).
  virtual void write(ByteView bytes) = 0;
  /// Whatever arrives within `timeout` seconds (at most 4096 bytes); empty when nothing came.
  virtual Bytes read(double timeout) = 0;
  /// Up to `count` bytes within `timeout` seconds; fewer when the time ran out.
  virtual Bytes read(std::size_t count, double timeout) = 0;
  /// Discards every received byte not yet read.
  virtual void flushInput() = 0;
  /// Gives the device (or connection) back; nothing when closed. Never fails.
  virtual void close() noexcept = 0;
};

/// Collects up to `count` bytes within `timeout` seconds from `readSome` (a read with a time
/// limit): the surplus of the last read goes to `pending`, for the next read to return first.
Bytes collectBytes(const std::function<Bytes(double)>& readSome, std::size_t count,
                   double timeout, Bytes& pending);

/// How the one place that opens links (`openSerialLink`) opens one.
struct SerialLinkOptions {
  /// Also accept devices that are no serial adapters (pseudo-terminals): see `FlashPort`.
  bool allowsTestDevice = false;
  /// Called once per network connection when its server does not confirm line changes, which are
  /// then sent without waiting for it.
  std::function<void()> onLinesUnconfirmed;
  /// Called between the slices of a long wait (connecting to a server); may throw to give up.
  std::function<void()> checkCancelled;
};

/// Opens the port `name` names at `baudRate`: "rfc2217://HOST:PORT" through the network,
/// anything else as a local device. Throws FlashPortError.
std::unique_ptr<SerialLink> openSerialLink(const std::string& name, std::int64_t baudRate,
                                           const SerialLinkOptions& options = {});

} // namespace tarnwick
