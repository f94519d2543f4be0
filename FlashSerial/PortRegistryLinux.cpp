// Port discovery on Linux: libudev reads sysfs (which works with or without a udev daemon), and
// changes come from the udev monitor or, where no daemon runs, from inotify on the device
// directory.

#include <cerrno>
#include <charconv>
#include <climits>
#include <memory>
#include <optional>
#include <string>
#include <sys/inotify.h>
#include <unistd.h>

#include <libudev.h>

#include "FlashSerial/FlashPort.hpp"
#include "FlashSerial/PortRegistry.hpp"

namespace tarnwick::registry {

namespace {

struct UdevDeleter {
  void operator()(udev* u) const { udev_unref(u); }
  void operator()(udev_enumerate* e) const { udev_enumerate_unref(e); }
  void operator()(udev_device* d) const { udev_device_unref(d); }
  void operator()(udev_monitor* m) const { udev_monitor_unref(m); }
};
template <class T> using UdevPtr = std::unique_ptr<T, UdevDeleter>;

std::optional<int> usbID(const char* text) {
  if (text == nullptr) return std::nullopt;
  const std::string_view digits(text);
  int value = 0;
  auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
  if (error != std::errc() || end != digits.data() + digits.size() || value < 0 || value > 0xFFFF)
    return std::nullopt;
  return value;
}

// The serial core gives every port it registers a UART type; 0 (unknown) is what the 8250 driver
// leaves on the nodes it creates for UARTs that are not there.
bool hasHardwareBehind(udev_device* device) {
  if (const char* type = udev_device_get_sysattr_value(device, "type")) {
    int value = 0;
    const std::string_view text(type);
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && value != 0;
  }
  // A ttyS node without a device beneath it belongs to no hardware at all.
  const std::string_view name = udev_device_get_sysname(device);
  return !name.starts_with("ttyS") || udev_device_get_parent(device) != nullptr;
}

std::optional<SerialPortInfo> portOf(udev_device* device) {
  const char* node = udev_device_get_devnode(device);
  if (node == nullptr || !FlashPort::isValidPath(node)) return std::nullopt;
  if (!hasHardwareBehind(device)) return std::nullopt;
  SerialPortInfo port{node, std::nullopt, std::nullopt, std::nullopt};
  // Owned by `device`; no reference of its own.
  udev_device* usb = udev_device_get_parent_with_subsystem_devtype(device, "usb", "usb_device");
  if (usb == nullptr) return port;
  port.vendorID = usbID(udev_device_get_sysattr_value(usb, "idVendor"));
  port.productID = usbID(udev_device_get_sysattr_value(usb, "idProduct"));
  if (const char* product = udev_device_get_sysattr_value(usb, "product")) {
    port.productName = trimmed(product);
  }
  if (const char* serial = udev_device_get_sysattr_value(usb, "serial")) {
    if (std::string number = trimmed(serial); !number.empty()) port.serialNumber = number;
  }
  return port;
}

// True for the add and remove notices of devices the scanner would list.
bool concernsPort(udev_device* device) {
  const char* action = udev_device_get_action(device);
  if (action == nullptr) return false;
  const std::string_view what(action);
  if (what != "add" && what != "remove" && what != "move") return false;
  const char* node = udev_device_get_devnode(device);
  return node != nullptr && FlashPort::isValidPath(node);
}

class UdevMonitor final : public ChangeNotifier {
public:
  static std::unique_ptr<UdevMonitor> open() {
    UdevPtr<udev> context(udev_new());
    if (!context) return nullptr;
    UdevPtr<udev_monitor> monitor(udev_monitor_new_from_netlink(context.get(), "udev"));
    if (!monitor) return nullptr;
    if (udev_monitor_filter_add_match_subsystem_devtype(monitor.get(), "tty", nullptr) < 0 ||
        udev_monitor_enable_receiving(monitor.get()) < 0 || udev_monitor_get_fd(monitor.get()) < 0)
      return nullptr;
    return std::unique_ptr<UdevMonitor>(new UdevMonitor(std::move(context), std::move(monitor)));
  }

  int descriptor() const override { return udev_monitor_get_fd(monitor_.get()); }

  bool drain() override {
    bool relevant = false;
    // The socket is non-blocking: receiving stops when nothing is left.
    while (UdevPtr<udev_device> device{udev_monitor_receive_device(monitor_.get())}) {
      relevant = concernsPort(device.get()) || relevant;
    }
    return relevant;
  }

private:
  UdevMonitor(UdevPtr<udev> context, UdevPtr<udev_monitor> monitor)
      : context_(std::move(context)), monitor_(std::move(monitor)) {}

  UdevPtr<udev> context_;
  UdevPtr<udev_monitor> monitor_;
};

class DirectoryWatch final : public ChangeNotifier {
public:
  static std::unique_ptr<DirectoryWatch> open(const std::string& directory) {
    const int fd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (fd < 0) return nullptr;
    if (inotify_add_watch(fd, directory.c_str(),
                          IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO) < 0) {
      ::close(fd);
      return nullptr;
    }
    return std::unique_ptr<DirectoryWatch>(new DirectoryWatch(fd));
  }

  ~DirectoryWatch() override { ::close(fd_); }
  DirectoryWatch(const DirectoryWatch&) = delete;
  DirectoryWatch& operator=(const DirectoryWatch&) = delete;

  int descriptor() const override { return fd_; }

  bool drain() override {
    bool relevant = false;
    alignas(inotify_event) char buffer[4096];
    for (;;) {
      const ssize_t count = ::read(fd_, buffer, sizeof buffer);
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return relevant;
      for (ssize_t offset = 0; offset < count;) {
        const auto* event = reinterpret_cast<const inotify_event*>(buffer + offset);
        // A full queue means notices were lost; one of them may have been a port.
        if (event->mask & IN_Q_OVERFLOW) relevant = true;
        if (event->len > 0 && FlashPort::isValidPath("/dev/" + std::string(event->name)))
          relevant = true;
        offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
      }
    }
  }

private:
  explicit DirectoryWatch(int fd) : fd_(fd) {}
  int fd_;
};

// The udev daemon creates its control socket here; libudev itself asks the same question before
// it listens for the daemon's events.
bool udevDaemonRuns() { return ::access("/run/udev/control", F_OK) == 0; }

} // namespace

std::vector<SerialPortInfo> listPorts() {
  std::vector<SerialPortInfo> ports;
  UdevPtr<udev> context(udev_new());
  if (!context) return ports;
  UdevPtr<udev_enumerate> enumerate(udev_enumerate_new(context.get()));
  if (!enumerate || udev_enumerate_add_match_subsystem(enumerate.get(), "tty") < 0 ||
      udev_enumerate_scan_devices(enumerate.get()) < 0)
    return ports;
  udev_list_entry* entry = nullptr;
  udev_list_entry_foreach(entry, udev_enumerate_get_list_entry(enumerate.get())) {
    UdevPtr<udev_device> device(
        udev_device_new_from_syspath(context.get(), udev_list_entry_get_name(entry)));
    if (!device) continue;
    if (auto port = portOf(device.get())) ports.push_back(std::move(*port));
  }
  return ports;
}

std::unique_ptr<ChangeNotifier> openNotifier(PortScanner::ChangeSource source,
                                             const std::string& deviceDirectory) {
  using Source = PortScanner::ChangeSource;
  if (source == Source::udevMonitor || (source == Source::automatic && udevDaemonRuns())) {
    if (auto monitor = UdevMonitor::open()) return monitor;
    if (source == Source::udevMonitor) return nullptr;
  }
  return DirectoryWatch::open(deviceDirectory);
}

} // namespace tarnwick::registry
