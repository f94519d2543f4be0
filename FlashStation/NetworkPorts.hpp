#pragma once
// The boards behind network serial ports, as the station sees them. Nothing announces a board
// coming or going there: a serial server (ser2net) holds a client's connection only while its
// device is open, closes it when the device goes away, and refuses a new one ("Device open
// failure") while it is absent. So a board is present while a connection to its port is held,
// and a port without one is connected to about once a second. The server takes one client per
// port: the connection that found the board is lent to the board's run.

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "FlashSerial/FlashPortError.hpp"
#include "FlashSerial/NetworkLink.hpp"

namespace tarnwick::station {

class NetworkPorts {
public:
  /// How long to wait between two attempts to connect to a port without a board.
  static constexpr double retrySeconds = 1.0;
  /// How long the end waits for a thread still connecting (a host name being looked up, which
  /// nothing bounds) before it leaves the thread to finish on its own.
  static constexpr double endSeconds = 2.0;

  /// The server answers but has no board (or closed the connection without saying why): the
  /// board is absent, as a USB port is without its cable. Every other failure keeps the server
  /// out of reach and is worth a word.
  static bool meansNoBoard(const FlashPortError& error);

  /// A port with a board.
  struct Present {
    std::string name;
    /// Its first connection found the board: it was there when watching began.
    bool sinceStart = false;
  };

  /// What the station is to say about a port, once for each change.
  struct Notice {
    std::string name;
    /// Absent: the server answers and has no board yet. Otherwise why it cannot be reached
    /// (no such host, refused, no answer, no RFC 2217, another client holds the port).
    std::optional<FlashPortError> problem;
  };

  /// Watches the ports `names` ("rfc2217://HOST:PORT", well formed), connecting at `baudRate`;
  /// `changed` is called from the watching threads whenever `present` or `notices` may give
  /// something new.
  NetworkPorts(const std::vector<std::string>& names, std::int64_t baudRate,
               std::function<void()> changed);
  /// Closes every connection; waits a short time for threads still connecting.
  ~NetworkPorts();
  NetworkPorts(const NetworkPorts&) = delete;
  NetworkPorts& operator=(const NetworkPorts&) = delete;

  bool watches(const std::string& name) const;
  /// The ports with a board now (a lent port keeps its board until it is given back).
  std::vector<Present> present() const;
  /// What happened since the last call, oldest first.
  std::vector<Notice> takeNotices();
  /// Lends the connection of `name`'s board to a run; none when it was lost meanwhile. The port
  /// is not connected to until `giveBack`.
  std::unique_ptr<NetworkLink> lend(const std::string& name);
  /// The run on `name` has ended; `lostBoard` when it lost its connection, so the board counts
  /// as gone until a connection finds one again. Connects again at once.
  void giveBack(const std::string& name, bool lostBoard);

private:
  struct Port;
  Port* find(const std::string& name) const;
  std::vector<std::shared_ptr<Port>> ports_;
  std::vector<std::thread> threads_;
};

} // namespace tarnwick::station
