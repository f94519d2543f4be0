#pragma once
// A simulated board served on a TCP port as a serial server (ser2net) serves a real one over
// RFC 2217, except that DTR and RTS do not go to a device: they drive the board's modelled reset
// circuit. One client at a time, as ser2net allows; a second one hears "Port already in use".

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "Simulator/ResetCircuit.hpp"

namespace tarnwick::simulator {

class NetworkSerialServer {
public:
  /// Listens on `bindAddress`:`port` (0: a free port the system picks) and passes bytes to and
  /// from `devicePath`, the simulated board's pseudo-terminal. The board starts running its
  /// application. Throws std::runtime_error when it cannot listen or open the device.
  NetworkSerialServer(std::string devicePath, ResetWiring wiring,
                      std::function<void(BoardStart)> startBoard,
                      const std::string& bindAddress = "127.0.0.1", std::uint16_t port = 0);
  /// Stops serving: closes the client's connection, the device and the listening socket.
  ~NetworkSerialServer();
  NetworkSerialServer(const NetworkSerialServer&) = delete;
  NetworkSerialServer& operator=(const NetworkSerialServer&) = delete;

  /// The TCP port it listens on.
  std::uint16_t port() const;
  /// "rfc2217://ADDRESS:PORT", the name a client opens.
  std::string portName() const;
  /// How many connections it has taken as its client so far (not those turned away).
  int clientsServed() const;

private:
  struct Service;
  std::unique_ptr<Service> service_;
};

} // namespace tarnwick::simulator
