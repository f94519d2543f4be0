#pragma once
// What the loaders need of a serial device. `FlashPort` is the real one; tests put a recording
// link in its place to see the exact modem-line changes of the reset sequences.

#include <cstdint>
#include <optional>
#include <string>

#include "FlashCore/Bytes.hpp"

namespace tarnwick {

class SerialLink {
public:
  virtual ~SerialLink() = default;

  /// Device path the link talks to.
  virtual const std::string& path() const = 0;
  /// Current line speed in bits per second.
  virtual std::int64_t baudRate() const = 0;

  /// Changes the line speed; throws FlashPortError (notOpen, unsupportedBaudRate).
  virtual void setBaudRate(std::int64_t rate) = 0;
  /// Asserts (true) or clears (false) DTR and RTS; an absent value leaves the line alone.
  virtual void setLines(std::optional<bool> dtr, std::optional<bool> rts) = 0;
  /// Hands every byte to the driver; throws FlashPortError (notOpen, writeFailed, disconnected).
  virtual void write(ByteView bytes) = 0;
  /// Whatever arrives within `timeout` seconds (at most 4096 bytes); empty when nothing came.
  virtual Bytes read(double timeout) = 0;
  /// Up to `count` bytes within `timeout` seconds; fewer when the time ran out.
  virtual Bytes read(std::size_t count, double timeout) = 0;
  /// Discards every received byte not yet read.
  virtual void flushInput() = 0;
};

} // namespace tarnwick
