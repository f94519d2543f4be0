// Announced ports through libgensio's mDNS interface, which asks the Avahi daemon. Each browse has
// an event loop of its own, served only by the thread that browses.

#include "FlashSerial/NetworkDiscovery.hpp"

#include <arpa/inet.h>
#include <dbus/dbus.h>
// This header declares its functions without C linkage of its own.
extern "C" {
#include <gensio/gensio_addr.h>
}
#include <gensio/gensio_mdns.h>
#include <netinet/in.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <map>
#include <mutex>
#include <string_view>
#include <thread>

#include "FlashSerial/GensioEventLoop.hpp"
#include "FlashSerial/NetworkPort.hpp"

namespace tarnwick {

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* serviceType = "_iostream._tcp";
// The browse is served in slices this long, so a stop is noticed soon.
constexpr gensio_time serviceSlice{0, 50'000'000};
// Once the daemon has reported what it knows, answers to the lookups it started then may still
// come in this soon after the last one.
constexpr double settleSeconds = 0.25;
// What a server's USB facts may be at most; anything longer is not one.
constexpr std::size_t longestFact = 64;

std::string_view valueOf(const std::vector<std::string>& txt, std::string_view key) {
  for (const std::string& entry : txt) {
    const std::string_view text = entry;
    if (text.size() > key.size() && text.starts_with(key) && text[key.size()] == '=')
      return text.substr(key.size() + 1);
  }
  return {};
}

// "telnet(rfc2217),tcp", allowing other Telnet options beside RFC 2217; nothing else may be
// stacked, as only that stack is what a network port connects with.
bool isRFC2217Stack(std::string_view stack) {
  constexpr std::string_view head = "telnet(", tail = "),tcp";
  if (!stack.starts_with(head) || !stack.ends_with(tail) || stack.size() < head.size() + tail.size())
    return false;
  std::string_view options = stack.substr(head.size(), stack.size() - head.size() - tail.size());
  if (options.find_first_of("()") != std::string_view::npos) return false;
  for (;;) {
    const std::size_t comma = options.find(',');
    const std::string_view option = options.substr(0, comma);
    if (option == "rfc2217" || option == "rfc2217=true") return true;
    if (comma == std::string_view::npos) return false;
    options.remove_prefix(comma + 1);
  }
}

std::optional<int> usbID(std::string_view text) {
  if (text.size() != 4) return std::nullopt;
  int value = 0;
  for (char c : text) {
    const int digit = c >= '0' && c <= '9'   ? c - '0'
                      : c >= 'a' && c <= 'f' ? c - 'a' + 10
                      : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                             : -1;
    if (digit < 0) return std::nullopt;
    value = value * 16 + digit;
  }
  return value;
}

std::optional<std::string> fact(std::string_view text) {
  while (!text.empty() && text.front() == ' ')
    text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ')
    text.remove_suffix(1);
  if (text.empty() || text.size() > longestFact) return std::nullopt;
  return std::string(text);
}

// Which of a service's addresses names it best: another computer's address before this one's
// own loopback, IPv4 before IPv6.
int rank(const std::string& address) {
  const bool loopback = address.starts_with("127.") || address == "::1";
  const bool v6 = address.find(':') != std::string::npos;
  return (loopback ? 2 : 0) + (v6 ? 1 : 0);
}

// The numeric address and port of a daemon's report; none for link-local IPv6 addresses, which a
// port name cannot carry the interface of.
std::optional<std::pair<std::string, int>> addressOf(const gensio_addr* addr) {
  if (!addr) return std::nullopt;
  sockaddr_storage storage{};
  gensiods length = sizeof storage;
  gensio_addr_getaddr(addr, &storage, &length);
  if (length > sizeof storage) return std::nullopt;
  char text[INET6_ADDRSTRLEN] = {};
  if (storage.ss_family == AF_INET) {
    const auto* v4 = reinterpret_cast<const sockaddr_in*>(&storage);
    if (!inet_ntop(AF_INET, &v4->sin_addr, text, sizeof text)) return std::nullopt;
    return std::pair{std::string(text), static_cast<int>(ntohs(v4->sin_port))};
  }
  if (storage.ss_family == AF_INET6) {
    const auto* v6 = reinterpret_cast<const sockaddr_in6*>(&storage);
    if (IN6_IS_ADDR_LINKLOCAL(&v6->sin6_addr)) return std::nullopt;
    if (!inet_ntop(AF_INET6, &v6->sin6_addr, text, sizeof text)) return std::nullopt;
    return std::pair{std::string(text), static_cast<int>(ntohs(v6->sin6_port))};
  }
  return std::nullopt;
}

// Whether the Avahi daemon is on the system bus now. libgensio's client waits for a daemon that
// is not there yet, so without asking first a listing would wait out its whole time for nothing.
bool daemonRuns() {
  DBusError error;
  dbus_error_init(&error);
  DBusConnection* bus = dbus_bus_get_private(DBUS_BUS_SYSTEM, &error);
  if (!bus) {
    dbus_error_free(&error);
    return false;
  }
  // The library would end the process when the bus goes away.
  dbus_connection_set_exit_on_disconnect(bus, false);
  const bool owned = dbus_bus_name_has_owner(bus, "org.freedesktop.Avahi", &error);
  dbus_error_free(&error);
  dbus_connection_close(bus);
  dbus_connection_unref(bus);
  return owned;
}

// One watch on the daemon's reports, on an event loop of its own.
class Browse {
public:
  Browse() : os_(newGensioEventLoop()) {
    if (!os_) return;
    if (gensio_alloc_mdns(os_, &mdns_) != 0) {
      mdns_ = nullptr;
      return;
    }
    if (gensio_mdns_add_watch(mdns_, -1, GENSIO_NETTYPE_UNSPEC, nullptr, serviceType, nullptr,
                              nullptr, reported, this, &watch_) != 0)
      watch_ = nullptr;
  }

  ~Browse() {
    if (watch_) {
      bool removed = false;
      if (gensio_mdns_remove_watch(watch_, watchRemoved, &removed) == 0) serviceWhile(removed);
    }
    if (mdns_) {
      bool freed = false;
      if (gensio_free_mdns(mdns_, mdnsFreed, &freed) == 0) serviceWhile(freed);
    }
    if (os_) gensio_os_funcs_free(os_);
  }

  Browse(const Browse&) = delete;
  Browse& operator=(const Browse&) = delete;

  bool watching() const { return watch_ != nullptr; }

  /// Serves the loop for one slice; true when the reports changed meanwhile.
  bool serve() {
    changed_ = false;
    gensio_time slice = serviceSlice;
    gensio_os_funcs_service(os_, &slice);
    return changed_;
  }

  std::vector<SerialPortInfo> ports() const {
    std::vector<ServiceAnnouncement> all;
    for (const auto& [key, announcement] : announcements_)
      all.push_back(announcement);
    return announcedPorts(all);
  }

  bool reportedAll() const { return reportedAll_; }
  Clock::time_point lastReport() const { return lastReport_; }

private:
  static void reported(gensio_mdns_watch*, gensio_mdns_data_state state, int interface,
                       int ipdomain, const char* name, const char*, const char*, const char*,
                       const gensio_addr* addr, const char* const* txt, void* data) {
    auto* browse = static_cast<Browse*>(data);
    browse->lastReport_ = Clock::now();
    if (state == GENSIO_MDNS_ALL_FOR_NOW) {
      browse->reportedAll_ = true;
      return;
    }
    if (!name) return;
    const std::string key =
        std::string(name) + '\n' + std::to_string(interface) + '\n' + std::to_string(ipdomain);
    if (state == GENSIO_MDNS_DATA_GONE) {
      browse->changed_ = browse->announcements_.erase(key) > 0 || browse->changed_;
      return;
    }
    const auto address = addressOf(addr);
    if (!address) return;
    ServiceAnnouncement announcement{name, address->first, address->second, {}};
    for (std::size_t i = 0; txt && txt[i]; ++i)
      announcement.txt.emplace_back(txt[i]);
    browse->announcements_[key] = std::move(announcement);
    browse->changed_ = true;
  }
  static void watchRemoved(gensio_mdns_watch*, void* data) { *static_cast<bool*>(data) = true; }
  static void mdnsFreed(gensio_mdns*, void* data) { *static_cast<bool*>(data) = true; }

  // Takes the watch apart: the library finishes in its own time, which is seldom more than a
  // few slices; a daemon that hangs is not waited for beyond a second.
  void serviceWhile(const bool& done) {
    for (int round = 0; !done && round < 20; ++round) {
      gensio_time slice = serviceSlice;
      gensio_os_funcs_service(os_, &slice);
    }
  }

  gensio_os_funcs* os_ = nullptr;
  gensio_mdns* mdns_ = nullptr;
  gensio_mdns_watch* watch_ = nullptr;
  std::map<std::string, ServiceAnnouncement> announcements_;
  bool changed_ = false;
  bool reportedAll_ = false;
  Clock::time_point lastReport_{};
};

} // namespace

std::optional<SerialPortInfo> announcedPort(const ServiceAnnouncement& announcement) {
  if (announcement.port < 1 || announcement.port > 65535 || announcement.service.empty())
    return std::nullopt;
  if (!isRFC2217Stack(valueOf(announcement.txt, "gensiostack"))) return std::nullopt;
  const std::string host = announcement.address.find(':') != std::string::npos
                               ? "[" + announcement.address + "]"
                               : announcement.address;
  const auto address = parseNetworkPort(std::string(networkPortScheme) + host + ":" +
                                        std::to_string(announcement.port));
  if (!address) return std::nullopt;
  SerialPortInfo port{address->name(), announcement.service, std::nullopt, std::nullopt};
  const auto vendor = usbID(valueOf(announcement.txt, "idVendor"));
  const auto product = usbID(valueOf(announcement.txt, "idProduct"));
  if (vendor && product) {
    port.vendorID = vendor;
    port.productID = product;
  }
  port.serialNumber = fact(valueOf(announcement.txt, "serial"));
  return port;
}

std::vector<SerialPortInfo> announcedPorts(const std::vector<ServiceAnnouncement>& announcements) {
  // One port per service: the daemon reports a service once for each interface and address
  // family it is seen on.
  std::map<std::string, std::pair<int, SerialPortInfo>> best;
  for (const auto& announcement : announcements) {
    const auto port = announcedPort(announcement);
    if (!port) continue;
    const int order = rank(announcement.address);
    auto found = best.find(announcement.service);
    if (found == best.end() || order < found->second.first ||
        (order == found->second.first && port->path < found->second.second.path))
      best.insert_or_assign(announcement.service, std::pair{order, *port});
  }
  std::vector<SerialPortInfo> ports;
  for (auto& [service, entry] : best)
    ports.push_back(std::move(entry.second));
  return ports;
}

std::vector<SerialPortInfo> browseNetworkPorts(double seconds) {
  if (!daemonRuns()) return {};
  Browse browse;
  if (!browse.watching()) return {};
  const auto start = Clock::now();
  const auto deadline = start + std::chrono::duration_cast<Clock::duration>(
                                    std::chrono::duration<double>(seconds));
  const auto settle = std::chrono::duration_cast<Clock::duration>(
      std::chrono::duration<double>(settleSeconds));
  while (Clock::now() < deadline) {
    browse.serve();
    if (browse.reportedAll() && Clock::now() - browse.lastReport() > settle) break;
  }
  return browse.ports();
}

struct NetworkPortBrowser::Worker {
  std::atomic<bool> stop = false;
  std::thread thread;
};

NetworkPortBrowser::NetworkPortBrowser(ChangeHandler onChange) : worker_(std::make_unique<Worker>()) {
  worker_->thread = std::thread([worker = worker_.get(), onChange = std::move(onChange)] {
    Browse browse;
    if (!browse.watching()) return;
    while (!worker->stop) {
      if (browse.serve()) onChange(browse.ports());
    }
  });
}

NetworkPortBrowser::~NetworkPortBrowser() {
  worker_->stop = true;
  worker_->thread.join();
}

} // namespace tarnwick
