#pragma once
// The real ser2net (Debian's), run for one test in front of one device, and plain TCP servers
// that misbehave as serial servers do, for the network port tests.

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <string>
#include <sys/types.h>
#include <thread>

namespace tarnwick::testing {

/// A TCP port on 127.0.0.1 that nothing listens on at the moment of asking.
std::uint16_t freeTCPPort();

/// ser2net in the foreground, serving `device` on a free port of 127.0.0.1 until destroyed.
class Ser2net {
public:
  struct Options {
    /// The accepter's stack above TCP: "telnet(rfc2217)", or "" for raw TCP.
    std::string protocol = "telnet(rfc2217)";
    /// ser2net holds each answer back by about two characters' time when this is on (its
    /// default); off, it passes bytes on at once.
    bool chardelay = false;
    /// Announced over mDNS under this name (with the device's facts), listening on every
    /// address rather than 127.0.0.1 only; "" announces nothing.
    std::string announceAs;
  };

  /// Starts ser2net and waits until it listens. Throws std::runtime_error (with its log) when
  /// it does not.
  explicit Ser2net(const std::string& device, Options options);
  explicit Ser2net(const std::string& device) : Ser2net(device, Options{}) {}
  /// Stops ser2net and removes its files.
  ~Ser2net();
  Ser2net(const Ser2net&) = delete;
  Ser2net& operator=(const Ser2net&) = delete;

  std::uint16_t port() const { return port_; }
  /// "rfc2217://127.0.0.1:PORT".
  std::string portName() const;

private:
  bool start(const std::string& device, const Options& options);
  void stop();

  std::filesystem::path folder_;
  std::uint16_t port_ = 0;
  pid_t pid_ = -1;
};

/// A TCP server on a free port of 127.0.0.1 that accepts every connection and then either says
/// nothing at all or sends `greeting` (as an SSH server does), never speaking Telnet; with
/// `hangUp` it closes each connection after its greeting, as ser2net does one it cannot serve.
class PlainServer {
public:
  explicit PlainServer(std::string greeting = {}, bool hangUp = false);
  ~PlainServer();
  PlainServer(const PlainServer&) = delete;
  PlainServer& operator=(const PlainServer&) = delete;
  std::uint16_t port() const { return port_; }
  std::string portName() const;
  /// Connections accepted so far.
  int accepted() const { return accepted_; }

private:
  int listener_ = -1;
  std::atomic<int> accepted_ = 0;
  std::uint16_t port_ = 0;
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

} // namespace tarnwick::testing
