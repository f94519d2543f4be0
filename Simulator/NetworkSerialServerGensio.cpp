// The simulated board's serial server on libgensio: a "telnet(rfc2217),tcp" accepter and the
// board's pseudo-terminal as a serial device, bridged on one thread that runs their event loop.
// All callbacks run on that thread, so the bridge needs no lock.

#include <gensio/gensio.h>
#include <gensio/gensio_err.h>
#include <gensio/gensio_os_funcs.h>
#include <gensio/sergensio.h>
#include <pthread.h>
#include <signal.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <set>
#include <stdexcept>
#include <string_view>
#include <thread>

#include "FlashSerial/GensioEventLoop.hpp"
#include "FlashSerial/NetworkPort.hpp"
#include "Simulator/NetworkSerialServer.hpp"

namespace tarnwick::simulator {

namespace {

double steadySeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

int ignoreEvent(gensio*, void*, int, int, unsigned char*, gensiods*, const char* const*) {
  return GE_NOTSUP;
}

unsigned eventValue(const unsigned char* buffer) {
  unsigned value = 0;
  if (buffer) std::memcpy(&value, buffer, sizeof value);
  return value;
}

constexpr std::string_view signature = "tarnwick-simboard";
constexpr std::string_view portInUse = "Port already in use\r\n";

} // namespace

struct NetworkSerialServer::Service {
  gensio_os_funcs* os = nullptr;
  gensio_accepter* accepter = nullptr;
  gensio* device = nullptr;
  gensio* client = nullptr;
  // Connections being closed; each frees itself when its close is done.
  std::set<gensio*> closing;
  ResetCircuit circuit;
  std::function<void(BoardStart)> startBoard;
  unsigned baud = 115200;
  std::string host;
  std::uint16_t port = 0;
  std::atomic<bool> stop = false;
  std::atomic<int> clientsServed = 0;
  std::thread thread;

  Service(ResetWiring wiring, std::function<void(BoardStart)> start)
      : circuit(wiring, [this](BoardStart how) { startBoard(how); }), startBoard(std::move(start)) {
  }

  ~Service() {
    if (device) gensio_free(device);
    if (accepter) gensio_acc_free(accepter);
    if (os) gensio_os_funcs_free(os);
  }

  void close(gensio* io) {
    gensio_set_callback(io, ignoreEvent, nullptr);
    if (gensio_close(io, &Service::closed, this) == 0) {
      closing.insert(io);
    } else {
      gensio_free(io);
    }
  }

  static void closed(gensio* io, void* data) {
    static_cast<Service*>(data)->closing.erase(io);
    gensio_free(io);
  }

  void dropClient() {
    if (!client) return;
    close(client);
    client = nullptr;
    gensio_set_write_callback_enable(device, false);
    gensio_set_read_callback_enable(device, true);
  }

  static int accepted(gensio_accepter*, void* data, int event, void* eventData) {
    if (event != GENSIO_ACC_EVENT_NEW_CONNECTION) return GE_NOTSUP;
    auto* self = static_cast<Service*>(data);
    auto* io = static_cast<gensio*>(eventData);
    if (self->client) {
      // One client per port, and the words ser2net says to the second.
      gensiods count = 0;
      gensio_write(io, &count, portInUse.data(), portInUse.size(), nullptr);
      self->close(io);
      return 0;
    }
    self->client = io;
    ++self->clientsServed;
    gensio_set_callback(io, &Service::clientEvent, self);
    gensio_set_read_callback_enable(io, true);
    return 0;
  }

  // Passes `*length` bytes from one side to the other; what the other side cannot take yet stays
  // with the sender, whose reading pauses until the other side can write again.
  static void pass(gensio* from, gensio* to, const unsigned char* bytes, gensiods* length) {
    gensiods count = 0;
    if (gensio_write(to, &count, bytes, *length, nullptr) != 0) count = *length;
    if (count < *length) {
      gensio_set_read_callback_enable(from, false);
      gensio_set_write_callback_enable(to, true);
    }
    *length = count;
  }

  static int clientEvent(gensio* io, void* data, int event, int error, unsigned char* buffer,
                         gensiods* length, const char* const*) {
    auto* self = static_cast<Service*>(data);
    sergensio* serial = gensio_to_sergensio(io);
    const unsigned value = eventValue(buffer);
    switch (event) {
    case GENSIO_EVENT_READ:
      if (error) {
        self->dropClient();
        return 0;
      }
      // A chip whose EN rose a while ago has started by the time these bytes reach it.
      self->circuit.advance(steadySeconds());
      pass(io, self->device, buffer, length);
      return 0;
    case GENSIO_EVENT_WRITE_READY:
      gensio_set_write_callback_enable(io, false);
      gensio_set_read_callback_enable(self->device, true);
      return 0;
    case GENSIO_EVENT_SER_BAUD:
      if (value != 0) self->baud = value;
      sergensio_baud(serial, self->baud, nullptr, nullptr);
      return 0;
    case GENSIO_EVENT_SER_DTR:
      if (value == SERGENSIO_DTR_ON || value == SERGENSIO_DTR_OFF)
        self->circuit.setDTR(value == SERGENSIO_DTR_ON, steadySeconds());
      sergensio_dtr(serial, self->circuit.dtr() ? SERGENSIO_DTR_ON : SERGENSIO_DTR_OFF, nullptr,
                    nullptr);
      return 0;
    case GENSIO_EVENT_SER_RTS:
      if (value == SERGENSIO_RTS_ON || value == SERGENSIO_RTS_OFF)
        self->circuit.setRTS(value == SERGENSIO_RTS_ON, steadySeconds());
      sergensio_rts(serial, self->circuit.rts() ? SERGENSIO_RTS_ON : SERGENSIO_RTS_OFF, nullptr,
                    nullptr);
      return 0;
    // The frame of a board's UART is fixed: 8 data bits, no parity, 1 stop bit, no flow control.
    case GENSIO_EVENT_SER_DATASIZE: sergensio_datasize(serial, 8, nullptr, nullptr); return 0;
    case GENSIO_EVENT_SER_PARITY:
      sergensio_parity(serial, SERGENSIO_PARITY_NONE, nullptr, nullptr);
      return 0;
    case GENSIO_EVENT_SER_STOPBITS: sergensio_stopbits(serial, 1, nullptr, nullptr); return 0;
    case GENSIO_EVENT_SER_FLOWCONTROL:
      sergensio_flowcontrol(serial, SERGENSIO_FLOWCONTROL_NONE, nullptr, nullptr);
      return 0;
    case GENSIO_EVENT_SER_SBREAK:
      sergensio_sbreak(serial, SERGENSIO_BREAK_OFF, nullptr, nullptr);
      return 0;
    case GENSIO_EVENT_SER_SIGNATURE:
      sergensio_signature(serial, signature.data(), static_cast<unsigned>(signature.size()),
                          nullptr, nullptr);
      return 0;
    case GENSIO_EVENT_SER_MODEMSTATE: sergensio_modemstate(serial, 0); return 0;
    case GENSIO_EVENT_SER_LINESTATE: sergensio_linestate(serial, 0); return 0;
    case GENSIO_EVENT_SER_FLUSH:
    case GENSIO_EVENT_SER_FLOW_STATE:
    case GENSIO_EVENT_SER_SYNC: return 0;
    default: return GE_NOTSUP;
    }
  }

  static int deviceEvent(gensio* io, void* data, int event, int error, unsigned char* buffer,
                         gensiods* length, const char* const*) {
    auto* self = static_cast<Service*>(data);
    switch (event) {
    case GENSIO_EVENT_READ:
      // Without a client the board talks to nobody, as on a real port.
      if (error || !self->client) return 0;
      pass(io, self->client, buffer, length);
      return 0;
    case GENSIO_EVENT_WRITE_READY:
      gensio_set_write_callback_enable(io, false);
      if (self->client) gensio_set_read_callback_enable(self->client, true);
      return 0;
    default: return GE_NOTSUP;
    }
  }

  void run() {
    // A client that goes away mid-write must not end the process.
    sigset_t pipe;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
    while (!stop) {
      gensio_time slice{0, 50'000'000};
      gensio_os_funcs_service(os, &slice);
    }
    gensio_acc_shutdown_s(accepter);
    if (client) close(client);
    client = nullptr;
    gensio_close_s(device);
    for (int round = 0; round < 20 && !closing.empty(); ++round) {
      gensio_time slice{0, 50'000'000};
      gensio_os_funcs_service(os, &slice);
    }
    for (gensio* io : closing)
      gensio_free(io);
    closing.clear();
  }
};

NetworkSerialServer::NetworkSerialServer(std::string devicePath, ResetWiring wiring,
                                         std::function<void(BoardStart)> startBoard,
                                         const std::string& bindAddress, std::uint16_t port)
    : service_(std::make_unique<Service>(wiring, std::move(startBoard))) {
  Service& s = *service_;
  auto failed = [](const std::string& what, int error) {
    return std::runtime_error(what + ": " + gensio_err_to_str(error));
  };
  s.os = newGensioEventLoop();
  if (!s.os) throw failed("event loop", GE_NOMEM);

  const std::string device = "serialdev(nouucplock=true)," + devicePath + ",115200n81,local";
  if (int error = str_to_gensio(device.c_str(), s.os, &Service::deviceEvent, &s, &s.device)) {
    s.device = nullptr;
    throw failed(devicePath, error);
  }
  if (int error = gensio_open_s(s.device)) throw failed(devicePath, error);
  gensio_set_read_callback_enable(s.device, true);

  const std::string listen = "telnet(rfc2217),tcp," + bindAddress + "," + std::to_string(port);
  if (int error =
          str_to_gensio_accepter(listen.c_str(), s.os, &Service::accepted, &s, &s.accepter)) {
    s.accepter = nullptr;
    throw failed(bindAddress + " " + std::to_string(port), error);
  }
  if (int error = gensio_acc_startup(s.accepter)) {
    gensio_close_s(s.device);
    throw failed(bindAddress + " " + std::to_string(port), error);
  }
  char text[32] = {};
  gensiods length = sizeof text - 1;
  if (gensio_acc_control(s.accepter, GENSIO_CONTROL_DEPTH_FIRST, GENSIO_CONTROL_GET,
                         GENSIO_ACC_CONTROL_LPORT, text, &length) == 0) {
    s.port = static_cast<std::uint16_t>(std::strtoul(text, nullptr, 10));
  }
  s.host = bindAddress;
  s.startBoard(BoardStart::application);
  s.thread = std::thread([&s] { s.run(); });
}

NetworkSerialServer::~NetworkSerialServer() {
  service_->stop = true;
  service_->thread.join();
}

std::uint16_t NetworkSerialServer::port() const { return service_->port; }

int NetworkSerialServer::clientsServed() const { return service_->clientsServed; }

std::string NetworkSerialServer::portName() const {
  return NetworkPortAddress{service_->host, service_->port}.name();
}

} // namespace tarnwick::simulator
