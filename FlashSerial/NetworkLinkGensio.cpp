// The network link on libgensio: a "telnet(rfc2217),tcp,HOST,PORT" stack in synchronous mode,
// each link with an event loop of its own, served only by the thread that uses the link.
//
// Two things of the library shape this file:
// - In synchronous mode the connection is read only inside gensio_read_s, and the server's
//   confirmations of speed and line changes arrive on that read path. So confirmations are
//   awaited by reading in short slices (keeping the data that comes along), not with the
//   library's blocking sergensio_*_b calls, which would wait without reading and, on a time
//   limit, leave the library holding a pointer to their finished stack frame.
// - Writes to a socket the server has closed raise SIGPIPE; every call into the library runs
//   with SIGPIPE held back on the calling thread, and a SIGPIPE it raised is taken back.

#include <gensio/gensio.h>
#include <gensio/gensio_err.h>
#include <gensio/gensio_os_funcs.h>
#include <gensio/sergensio.h>
#include <pthread.h>
#include <signal.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cmath>
#include <deque>
#include <string_view>
#include <utility>

#include "FlashSerial/FlashPort.hpp"
#include "FlashSerial/GensioEventLoop.hpp"
#include "FlashSerial/NetworkLink.hpp"

namespace tarnwick {

namespace {

using Clock = std::chrono::steady_clock;

// Confirmations are looked for this often while waiting for them.
constexpr double confirmSliceSeconds = 0.002;
// Connecting and closing are checked for cancellation this often.
constexpr double connectSliceSeconds = 0.02;
// How long a server that closed the connection at once is listened to for its reason.
constexpr double reasonSeconds = 1.0;

// What ser2net says before it closes a connection it cannot serve.
constexpr std::string_view deviceOpenFailure = "Device open failure";
constexpr std::string_view portAlreadyInUse = "Port already in use";

gensio_time gensioTime(double seconds) {
  if (!(seconds > 0)) return {0, 0};
  const double whole = std::floor(std::min(seconds, 1e6));
  return {static_cast<std::int64_t>(whole),
          static_cast<std::int32_t>((std::min(seconds, 1e6) - whole) * 1e9)};
}

double secondsUntil(Clock::time_point deadline) {
  return std::chrono::duration<double>(deadline - Clock::now()).count();
}

Clock::time_point deadlineAfter(double seconds) {
  return Clock::now() + std::chrono::duration_cast<Clock::duration>(
                            std::chrono::duration<double>(seconds));
}

// Holds SIGPIPE back on this thread for the life of the guard; a SIGPIPE raised meanwhile is
// taken back unless one was already pending before.
class SigpipeGuard {
public:
  SigpipeGuard() {
    sigemptyset(&pipe_);
    sigaddset(&pipe_, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipe_, &previous_);
    sigset_t pending;
    sigpending(&pending);
    wasPending_ = sigismember(&pending, SIGPIPE) == 1;
  }
  ~SigpipeGuard() {
    if (!wasPending_) {
      const timespec none{};
      while (sigtimedwait(&pipe_, nullptr, &none) == SIGPIPE) {
      }
    }
    pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
  }
  SigpipeGuard(const SigpipeGuard&) = delete;
  SigpipeGuard& operator=(const SigpipeGuard&) = delete;

private:
  sigset_t pipe_{};
  sigset_t previous_{};
  bool wasPending_ = false;
};

bool isNameError(int error) {
  switch (error) {
  case GE_NOTFOUND:
  case GE_UNKNOWN_NAME_ERROR:
  case GE_NAME_ERROR:
  case GE_NAME_SERVER_FAILURE:
  case GE_NAME_INVALID:
  case GE_NAME_NET_NOT_UP: return true;
  default: return false;
  }
}

int errorNumber(int gensioError) {
  switch (gensioError) {
  case GE_NOMEM: return ENOMEM;
  case GE_INVAL: return EINVAL;
  case GE_PERM: return EACCES;
  default: return EIO;
  }
}

// In synchronous mode reads and writes bypass this; the rest (modem state reports, purge echoes)
// is of no use to a flashing run.
int ignoreEvent(gensio*, void*, int, int, unsigned char*, gensiods*, const char* const*) {
  return GE_NOTSUP;
}

} // namespace

struct NetworkLink::Connection {
  /// A speed or line change sent to the server. Kept until the connection is gone: the library
  /// may answer it (or time it out) long after its wait ended.
  struct Request {
    bool answered = false;
    int error = 0;
    unsigned value = 0;
  };

  gensio_os_funcs* os = nullptr;
  gensio* io = nullptr;
  sergensio* serial = nullptr;
  bool openDone = false;
  int openError = 0;
  std::deque<std::unique_ptr<Request>> requests;
  std::vector<Request*> awaited;

  Connection() : os(newGensioEventLoop()) {}

  ~Connection() {
    SigpipeGuard guard;
    if (io) release(io);
    if (os) gensio_os_funcs_free(os);
  }

  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Frees a stack, which closes its connection or abandons its opening. The event loop takes
  /// the stack apart afterwards, so it runs until it has nothing left to do.
  void release(gensio* stack) {
    gensio_free(stack);
    for (int round = 0; round < 1000; ++round) {
      gensio_time slice{0, 1'000'000};
      if (gensio_os_funcs_service(os, &slice) == GE_TIMEDOUT) break;
    }
  }

  static void opened(gensio*, int error, void* data) {
    auto* connection = static_cast<Connection*>(data);
    connection->openDone = true;
    connection->openError = error;
  }
  static void answered(sergensio*, int error, unsigned value, void* data) {
    auto* request = static_cast<Request*>(data);
    request->answered = true;
    request->error = error;
    request->value = value;
  }

  /// Runs the event loop until `done` or the deadline; `checkCancelled` between slices.
  template <class Done>
  bool serviceUntil(Done done, Clock::time_point deadline,
                    const std::function<void()>& checkCancelled) {
    while (!done()) {
      const double left = secondsUntil(deadline);
      if (left <= 0) return false;
      if (checkCancelled) checkCancelled();
      gensio_time slice = gensioTime(std::min(left, connectSliceSeconds));
      gensio_os_funcs_service(os, &slice);
    }
    return true;
  }

  Request* newRequest() {
    // Answered requests at the front are of no more use to anyone.
    while (!requests.empty() && requests.front()->answered)
      requests.pop_front();
    requests.push_back(std::make_unique<Request>());
    return requests.back().get();
  }
};

NetworkLink::NetworkLink(NetworkPortAddress address, std::int64_t baudRate,
                         SerialLinkOptions options)
    : address_(std::move(address)), name_(address_.name()), baudRate_(baudRate),
      options_(std::move(options)) {}

NetworkLink::~NetworkLink() { close(); }

bool NetworkLink::isOpen() const { return connection_ && connection_->serial; }

void NetworkLink::close() noexcept {
  connection_.reset();
  confirmsLines_.reset();
  lost_ = false;
}

void NetworkLink::fail(FlashPortError error) {
  close();
  throw std::move(error);
}

void NetworkLink::open() {
  // A connection the server closed is made anew, as the board may be back.
  if (isOpen() && !lost_) return;
  close();
  pending_.clear();
  connection_ = std::make_unique<Connection>();
  Connection& c = *connection_;
  if (!c.os) fail(FlashPortError::openFailed(name_, ENOMEM));

  SigpipeGuard guard;
  // The parser accepts no ',' or ')' in a host, so the address cannot break out of the stack.
  const std::string stack =
      "telnet(rfc2217),tcp," + address_.host + "," + std::to_string(address_.port);
  if (int error = str_to_gensio(stack.c_str(), c.os, ignoreEvent, this, &c.io)) {
    c.io = nullptr;
    if (isNameError(error)) fail(FlashPortError::hostNotFound(address_.host));
    fail(FlashPortError::openFailed(name_, errorNumber(error)));
  }
  if (int error = gensio_open(c.io, &Connection::opened, &c)) {
    fail(FlashPortError::openFailed(name_, errorNumber(error)));
  }
  try {
    if (!c.serviceUntil([&c] { return c.openDone; }, deadlineAfter(connectSeconds),
                        options_.checkCancelled)) {
      fail(FlashPortError::noAnswer(address_.server()));
    }
  } catch (const FlashPortError&) {
    throw;
  } catch (...) {
    close(); // given up by the caller
    throw;
  }
  switch (c.openError) {
  case 0: break;
  case GE_CONNREFUSE: fail(FlashPortError::connectionRefused(address_.server()));
  case GE_REMCLOSE: fail(closedByServer());
  default:
    if (isNameError(c.openError)) fail(FlashPortError::hostNotFound(address_.host));
    // Unreachable hosts and networks, and connections that time out.
    fail(FlashPortError::noAnswer(address_.server()));
  }
  if (gensio_set_sync(c.io) != 0) fail(FlashPortError::notRFC2217(address_.server()));
  c.serial = gensio_to_sergensio(c.io);
  if (!c.serial) fail(FlashPortError::notRFC2217(address_.server()));

  // The first speed setting tells whether the server speaks RFC 2217 at all: a server that never
  // agreed to the COM-PORT option cannot take it.
  auto* request = c.newRequest();
  const auto rate = static_cast<unsigned>(std::clamp<std::int64_t>(baudRate_, 1, INT_MAX));
  if (sergensio_baud(c.serial, rate, &Connection::answered, request) != 0) {
    // A server that said something is another kind of server; one that said nothing during the
    // whole negotiation may be anything, or nothing at all.
    receive(0.3);
    if (!pending_.empty()) fail(FlashPortError::notRFC2217(address_.server()));
    fail(lost_ ? closedByServer() : FlashPortError::noAnswer(address_.server()));
  }
  c.awaited = {request};
  if (!awaitConfirmations(speedConfirmSeconds) || request->error != 0) {
    fail(lost_ ? closedByServer() : FlashPortError::noAnswer(address_.server()));
  }
  if (!lineSpeedHonoured(baudRate_, request->value) && !options_.allowsTestDevice) {
    fail(FlashPortError::unsupportedBaudRate(baudRate_));
  }
  sergensio_flush(c.serial, SERGENSIO_FLUSH_RCV_XMIT_BUFFERS);
  pending_.clear();
}

FlashPortError NetworkLink::closedByServer() {
  // ser2net says why before it closes; the words may have come with the close, or may have been
  // swallowed with it while the connection was still being set up. In that case a plain
  // connection hears them again.
  auto reason = [&](std::string_view said) -> std::optional<FlashPortError> {
    if (said.find(deviceOpenFailure) != std::string_view::npos)
      return FlashPortError::noBoard(address_.server());
    if (said.find(portAlreadyInUse) != std::string_view::npos)
      return FlashPortError::portInUse(address_.server());
    return std::nullopt;
  };
  const std::string said(pending_.begin(), pending_.end());
  if (auto known = reason(said)) return *known;

  Connection& c = *connection_;
  SigpipeGuard guard;
  gensio* plain = nullptr;
  const std::string stack = "tcp," + address_.host + "," + std::to_string(address_.port);
  std::string heard;
  if (str_to_gensio(stack.c_str(), c.os, ignoreEvent, this, &plain) == 0) {
    bool done = false;
    int error = 0;
    struct Opened {
      bool* done;
      int* error;
    } opened{&done, &error};
    auto onOpen = [](gensio*, int e, void* data) {
      auto* o = static_cast<Opened*>(data);
      *o->done = true;
      *o->error = e;
    };
    const auto deadline = deadlineAfter(reasonSeconds);
    if (gensio_open(plain, onOpen, &opened) == 0 &&
        c.serviceUntil([&] { return done; }, deadline, {}) && error == 0 &&
        gensio_set_sync(plain) == 0) {
      char buffer[256];
      while (secondsUntil(deadline) > 0 && !reason(heard)) {
        gensiods count = 0;
        gensio_time slice = gensioTime(std::min(secondsUntil(deadline), connectSliceSeconds));
        if (gensio_read_s(plain, &count, buffer, sizeof buffer, &slice) != 0) break;
        heard.append(buffer, count);
      }
    }
    c.release(plain);
  }
  if (auto known = reason(heard)) return *known;
  return FlashPortError::disconnected(address_.server());
}

bool NetworkLink::receive(double seconds) {
  if (!connection_ || lost_) return false;
  char buffer[FlashPort::bufferSize];
  gensiods count = 0;
  gensio_time limit = gensioTime(seconds);
  int error = 0;
  {
    SigpipeGuard guard;
    error = gensio_read_s(connection_->io, &count, buffer, sizeof buffer, &limit);
  }
  if (error != 0 && error != GE_TIMEDOUT) {
    lost_ = true;
    return false;
  }
  pending_.insert(pending_.end(), buffer, buffer + count);
  return true;
}

bool NetworkLink::awaitConfirmations(double seconds) {
  auto& awaited = connection_->awaited;
  const auto deadline = deadlineAfter(seconds);
  for (;;) {
    if (std::all_of(awaited.begin(), awaited.end(), [](auto* r) { return r->answered; })) {
      awaited.clear();
      return true;
    }
    const double left = secondsUntil(deadline);
    if (left <= 0 || !receive(std::min(left, confirmSliceSeconds))) {
      awaited.clear();
      return false;
    }
  }
}

void NetworkLink::setBaudRate(std::int64_t rate) {
  if (!isOpen()) throw FlashPortError::notOpen();
  if (lost_) throw FlashPortError::disconnected(address_.server());
  // RFC 2217 carries the speed in 32 bits, the library in a signed int; 0 only asks.
  if (rate <= 0 || rate > INT_MAX) throw FlashPortError::unsupportedBaudRate(rate);
  Connection& c = *connection_;
  auto* request = c.newRequest();
  {
    SigpipeGuard guard;
    if (sergensio_baud(c.serial, static_cast<unsigned>(rate), &Connection::answered, request)) {
      lost_ = true;
      throw FlashPortError::disconnected(address_.server());
    }
  }
  c.awaited = {request};
  if (!awaitConfirmations(speedConfirmSeconds)) {
    if (lost_) throw FlashPortError::disconnected(address_.server());
    throw FlashPortError::noAnswer(address_.server());
  }
  if (request->error == 0 && !lineSpeedHonoured(rate, request->value) &&
      !options_.allowsTestDevice) {
    throw FlashPortError::unsupportedBaudRate(rate);
  }
  baudRate_ = rate;
}

void NetworkLink::setLines(std::optional<bool> dtr, std::optional<bool> rts) {
  if (!isOpen() || lost_) return;
  Connection& c = *connection_;
  c.awaited.clear();
  auto send = [&](bool isDTR, bool on) {
    auto* request = c.newRequest();
    SigpipeGuard guard;
    const int error =
        isDTR ? sergensio_dtr(c.serial, on ? SERGENSIO_DTR_ON : SERGENSIO_DTR_OFF,
                              &Connection::answered, request)
              : sergensio_rts(c.serial, on ? SERGENSIO_RTS_ON : SERGENSIO_RTS_OFF,
                              &Connection::answered, request);
    if (error == 0) c.awaited.push_back(request);
  };
  // Asserted lines first, then cleared ones, as a local port applies them.
  if (dtr == true) send(true, true);
  if (rts == true) send(false, true);
  if (dtr == false) send(true, false);
  if (rts == false) send(false, false);
  if (c.awaited.empty()) return;
  if (confirmsLines_ == false) {
    c.awaited.clear();
    return;
  }
  const bool confirmed = awaitConfirmations(lineConfirmSeconds);
  if (lost_) return;
  confirmsLines_ = confirmed;
  if (!confirmed && options_.onLinesUnconfirmed) options_.onLinesUnconfirmed();
}

void NetworkLink::write(ByteView bytes) {
  if (!isOpen()) throw FlashPortError::notOpen();
  if (lost_) throw FlashPortError::disconnected(address_.server());
  if (bytes.empty()) return;
  gensiods count = 0;
  gensio_time limit = gensioTime(writeSeconds);
  int error = 0;
  {
    SigpipeGuard guard;
    error = gensio_write_s(connection_->io, &count, bytes.data(), bytes.size(), &limit);
  }
  if (error == 0 && count == bytes.size()) return;
  if (error == 0 || error == GE_TIMEDOUT) throw FlashPortError::writeFailed(ETIMEDOUT);
  lost_ = true;
  throw FlashPortError::disconnected(address_.server());
}

Bytes NetworkLink::read(double timeout) {
  if (!isOpen()) throw FlashPortError::notOpen();
  if (pending_.empty()) {
    if (!receive(waitMilliseconds(timeout) / 1000.0))
      throw FlashPortError::disconnected(address_.server());
  }
  return std::exchange(pending_, {});
}

Bytes NetworkLink::read(std::size_t count, double timeout) {
  return collectBytes([this](double left) { return read(left); }, count, timeout, pending_);
}

void NetworkLink::flushInput() {
  pending_.clear();
  if (!isOpen() || lost_) return;
  {
    SigpipeGuard guard;
    sergensio_flush(connection_->serial, SERGENSIO_FLUSH_RCV_BUFFER);
  }
  // What already arrived goes too; a board that keeps talking cannot hold this up.
  for (int round = 0; round < 64 && receive(0) && !pending_.empty(); ++round)
    pending_.clear();
  pending_.clear();
}

} // namespace tarnwick
