#include "FlashSerial/PortScanner.hpp"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <poll.h>
#include <map>
#include <set>
#include <utility>

#include "FlashSerial/PortRegistry.hpp"
#include "Localization/PortTexts.hpp"

namespace tarnwick {

namespace {

using ProductTable = std::map<std::pair<int, int>, std::string_view>;

// What the station needs to know of a board besides its name: whether its USB restarts with it,
// and which family of bootloader it carries.
struct KnownBoard {
  std::string_view name;
  PortKind kind = PortKind::unknown;
  std::optional<BoardFamily> family;
};

const std::map<std::pair<int, int>, KnownBoard>& knownBoards() {
  static const std::map<std::pair<int, int>, KnownBoard> table = [] {
    std::map<std::pair<int, int>, KnownBoard> t;
    auto add = [&t](int vendor, std::initializer_list<int> products, KnownBoard board) {
      for (int product : products)
        t.emplace(std::pair{vendor, product}, board);
    };
    constexpr auto native = PortKind::nativeUSB;
    // The Uno and the Mega talk through a USB chip of their own; the newer Arduino boards are
    // not known well enough to say.
    constexpr auto chip = PortKind::adapter;
    constexpr auto avr = BoardFamily::avr;
    add(0x303A, {0x1001}, {"ESP32-S3/C3/C6 (USB)", native, BoardFamily::esp});
    add(0x2341, {0x0001, 0x0043, 0x0243}, {"Arduino Uno", chip, avr});
    add(0x2341, {0x0010, 0x0042, 0x0242}, {"Arduino Mega 2560", chip, avr});
    add(0x2341, {0x8036, 0x0036}, {"Arduino Leonardo", native, avr});
    add(0x2341, {0x8037, 0x0037}, {"Arduino Micro", native, avr});
    add(0x2341, {0x0058}, {"Arduino Nano Every", PortKind::unknown, std::nullopt});
    add(0x2341, {0x0069}, {"Arduino UNO R4 Minima", PortKind::unknown, std::nullopt});
    add(0x2341, {0x1002}, {"Arduino UNO R4 WiFi", PortKind::unknown, std::nullopt});
    add(0x2A03, {0x0043}, {"Arduino Uno", chip, avr});
    add(0x2A03, {0x0042}, {"Arduino Mega 2560", chip, avr});
    add(0x2A03, {0x8036}, {"Arduino Leonardo", native, avr});
    return t;
  }();
  return table;
}

const ProductTable& knownAdapterChips() {
  static const ProductTable table = {
      {{0x1A86, 0x7523}, "CH340"},       {{0x1A86, 0x5523}, "CH341"},
      {{0x1A86, 0x55D4}, "CH9102"},      {{0x10C4, 0xEA60}, "CP210x"},
      {{0x0403, 0x6001}, "FTDI FT232R"}, {{0x0403, 0x6010}, "FTDI FT2232"},
      {{0x0403, 0x6014}, "FTDI FT232H"}, {{0x0403, 0x6015}, "FTDI FT231X"},
      {{0x067B, 0x2303}, "PL2303"},
  };
  return table;
}

const std::map<int, std::string_view>& knownVendors() {
  static const std::map<int, std::string_view> table = {
      {0x2341, "Arduino"},         {0x2A03, "Arduino"},
      {0x303A, "Espressif ESP32"}, {0x2E8A, "Raspberry Pi Pico"},
      {0x239A, "Adafruit"},        {0x1B4F, "SparkFun"},
      {0x16C0, "Teensy"},
  };
  return table;
}

// The Pro Micro's USB restarts with it too; it is known by its ids, not named.
const std::set<std::pair<int, int>>& proMicroIDs() {
  static const std::set<std::pair<int, int>> table = {{0x1B4F, 0x9205}, {0x1B4F, 0x9206}};
  return table;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

char folded(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

// The order of a file browser: case folded, and a run of digits counts by its value, so
// ttyACM2 comes before ttyACM10.
bool naturalLess(std::string_view a, std::string_view b) {
  std::size_t i = 0, j = 0;
  while (i < a.size() && j < b.size()) {
    if (isDigit(a[i]) && isDigit(b[j])) {
      std::size_t endA = i, endB = j;
      while (endA < a.size() && isDigit(a[endA]))
        ++endA;
      while (endB < b.size() && isDigit(b[endB]))
        ++endB;
      // Leading zeros add nothing to the value; digit strings of equal length compare as text.
      std::size_t startA = i, startB = j;
      while (startA + 1 < endA && a[startA] == '0')
        ++startA;
      while (startB + 1 < endB && b[startB] == '0')
        ++startB;
      const std::string_view digitsA = a.substr(startA, endA - startA);
      const std::string_view digitsB = b.substr(startB, endB - startB);
      if (digitsA.size() != digitsB.size()) return digitsA.size() < digitsB.size();
      if (digitsA != digitsB) return digitsA < digitsB;
      i = endA;
      j = endB;
      continue;
    }
    const char ca = folded(a[i]), cb = folded(b[j]);
    if (ca != cb) return ca < cb;
    ++i;
    ++j;
  }
  return a.size() - i < b.size() - j;
}

} // namespace

std::string registry::trimmed(std::string_view text) {
  constexpr std::string_view blank = " \t\r\n\v\f";
  const auto first = text.find_first_not_of(blank);
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(blank) - first + 1));
}

void sortPorts(std::vector<SerialPortInfo>& ports) {
  std::stable_sort(ports.begin(), ports.end(),
                   [](const SerialPortInfo& a, const SerialPortInfo& b) {
                     if (a.vendorID.has_value() != b.vendorID.has_value())
                       return a.vendorID.has_value();
                     return naturalLess(a.path, b.path);
                   });
}

std::string PortScanner::displayName(const SerialPortInfo& port) {
  if (port.vendorID && port.productID) {
    const std::pair key{*port.vendorID, *port.productID};
    if (auto board = knownBoards().find(key); board != knownBoards().end())
      return std::string(board->second.name);
    if (auto chip = knownAdapterChips().find(key); chip != knownAdapterChips().end())
      return L10n::Ports::usbSerial(std::string(chip->second));
  }
  if (port.vendorID) {
    if (auto vendor = knownVendors().find(*port.vendorID); vendor != knownVendors().end())
      return std::string(vendor->second);
  }
  if (port.productName && !port.productName->empty()) return *port.productName;
  return deviceName(port.path);
}

PortKind portKind(const SerialPortInfo& port) {
  if (!port.vendorID || !port.productID) return PortKind::unknown;
  const std::pair key{*port.vendorID, *port.productID};
  if (*port.vendorID == espressifVendorID || proMicroIDs().contains(key))
    return PortKind::nativeUSB;
  if (knownAdapterChips().contains(key)) return PortKind::adapter;
  auto board = knownBoards().find(key);
  return board != knownBoards().end() ? board->second.kind : PortKind::unknown;
}

std::optional<BoardFamily> boardFamily(const SerialPortInfo& port) {
  if (!port.vendorID || !port.productID) return std::nullopt;
  auto board = knownBoards().find(std::pair{*port.vendorID, *port.productID});
  return board != knownBoards().end() ? board->second.family : std::nullopt;
}

bool PortScanner::wait(Clock::time_point deadline, int wake) {
  if (auto due = nextDeadline()) deadline = std::min(deadline, *due);
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
  // A minute at most: the caller loops anyway, and a far deadline must not overflow an int.
  const int timeout = static_cast<int>(std::clamp<std::int64_t>(left, 0, 60'000));
  pollfd watched[2] = {{descriptor(), POLLIN, 0}, {wake, POLLIN, 0}};
  const int ready = ::poll(watched, 2, timeout);
  if (ready < 0 && errno != EINTR) return false;
  if (ready > 0 && (watched[0].revents & POLLIN)) handleReadable();
  handleTimers();
  return true;
}

bool prefersUSBJTAGReset(const std::optional<SerialPortInfo>& port) {
  return port && port->vendorID == espressifVendorID;
}

std::string deviceName(const std::string& path) {
  constexpr std::string_view directory = "/dev/";
  return path.starts_with(directory) ? path.substr(directory.size()) : path;
}

// Everything the scanner owns. `alive` outlives the scanner in the frames of its deliveries, so a
// handler that destroys the scanner does not leave them touching freed memory.
struct PortScanner::Watch {
  ChangeSource source;
  std::string deviceDirectory;
  std::unique_ptr<registry::ChangeNotifier> notifier;
  std::vector<Clock::time_point> pendingDeliveries;
  std::shared_ptr<bool> alive = std::make_shared<bool>(true);
};

PortScanner::PortScanner(ChangeSource source, std::string deviceDirectory)
    : watch_(std::make_unique<Watch>()) {
  watch_->source = source;
  watch_->deviceDirectory = std::move(deviceDirectory);
}

PortScanner::~PortScanner() { *watch_->alive = false; }

std::vector<SerialPortInfo> PortScanner::scan() const {
  std::vector<SerialPortInfo> ports = registry::listPorts();
  sortPorts(ports);
  return ports;
}

// Returns false when the scanner was destroyed by the handler.
static bool deliver(PortScanner& scanner, const std::shared_ptr<bool>& alive) {
  if (!scanner.onChange) return true;
  std::vector<SerialPortInfo> ports = scanner.scan();
  // A copy, because the handler may replace onChange or destroy the scanner while it runs.
  PortScanner::ChangeHandler handler = scanner.onChange;
  std::shared_ptr<bool> guard = alive;
  handler(ports);
  return *guard;
}

void PortScanner::start() {
  if (watch_->notifier) return;
  watch_->notifier = registry::openNotifier(watch_->source, watch_->deviceDirectory);
  if (!watch_->notifier) return;
  deliver(*this, watch_->alive);
}

int PortScanner::descriptor() const {
  return watch_->notifier ? watch_->notifier->descriptor() : -1;
}

void PortScanner::handleReadable() {
  if (!watch_->notifier || !watch_->notifier->drain()) return;
  // The second look picks up what a device publishes only after its first notice (USB strings,
  // a node that udev renames or whose permissions it sets).
  const auto due = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                      std::chrono::duration<double>(secondDeliveryDelay));
  watch_->pendingDeliveries.push_back(due);
  deliver(*this, watch_->alive);
}

std::optional<PortScanner::Clock::time_point> PortScanner::nextDeadline() const {
  const auto& pending = watch_->pendingDeliveries;
  if (pending.empty()) return std::nullopt;
  return *std::min_element(pending.begin(), pending.end());
}

void PortScanner::handleTimers() {
  auto& pending = watch_->pendingDeliveries;
  const auto now = Clock::now();
  const auto notDue = std::remove_if(pending.begin(), pending.end(),
                                     [now](Clock::time_point due) { return due <= now; });
  if (notDue == pending.end()) return;
  pending.erase(notDue, pending.end());
  // Notices that fell due together are served by one fresh list.
  deliver(*this, watch_->alive);
}

} // namespace tarnwick

std::size_t std::hash<tarnwick::SerialPortInfo>::operator()(
    const tarnwick::SerialPortInfo& port) const noexcept {
  std::size_t seed = std::hash<std::string>{}(port.path);
  auto mix = [&seed](std::size_t value) {
    seed ^= value + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2);
  };
  mix(std::hash<std::optional<std::string>>{}(port.productName));
  mix(std::hash<std::optional<int>>{}(port.vendorID));
  mix(std::hash<std::optional<int>>{}(port.productID));
  mix(std::hash<std::optional<std::string>>{}(port.serialNumber));
  return seed;
}
