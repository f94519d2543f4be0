#include "TarnwickCLI/Ports.hpp"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <memory>

#include <nlohmann/json.hpp>

#include "FlashCore/VisibleText.hpp"
#include "Localization/CliTexts.hpp"
#include "FlashSerial/NetworkDiscovery.hpp"
#include "FlashSerial/NetworkPort.hpp"
#include "Localization/PortTexts.hpp"
#include "TarnwickCLI/Arguments.hpp"
#include "TarnwickCLI/Cli.hpp"
#include "TarnwickCLI/Console.hpp"

namespace tarnwick::cli {

namespace {

std::atomic<bool> stopWatching = false;

// How long the one-off listing waits for serial servers on the network to answer; the daemon
// usually knows them already and answers at once.
constexpr double browseSeconds = 1.5;

extern "C" void onStopWatching(int) { stopWatching = true; }

std::string usbIDs(const SerialPortInfo& port) {
  if (!port.vendorID || !port.productID) return {};
  char text[16];
  std::snprintf(text, sizeof text, "%04x:%04x", *port.vendorID, *port.productID);
  return text;
}

void print(std::FILE* out, const std::vector<SerialPortInfo>& ports, bool json) {
  if (json) {
    std::fprintf(out, "%s\n", portsJSON(ports).c_str());
  } else if (ports.empty()) {
    std::fprintf(out, "%s\n", L10n::Cli::noPortsFound().c_str());
  } else {
    std::fputs(visibleLines(portLines(ports)).c_str(), out);
  }
  // Whoever reads a pipe sees each list when it happens, not when a buffer fills.
  std::fflush(out);
}

// Ports the network announced are named by the name they are announced under.
std::string nameOf(const SerialPortInfo& port) {
  if (looksLikeNetworkPort(port.path) && port.productName)
    return L10n::Ports::announced(*port.productName);
  return PortScanner::displayName(port);
}

// Without SA_RESTART the signal also cuts poll short, so Ctrl-C ends the wait at once.
void stopOnSignals() {
  struct sigaction action {};
  action.sa_handler = onStopWatching;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

// Serves the scanner until a signal asks to stop.
int watch(PortScanner& scanner) {
  while (!stopWatching) {
    if (!scanner.wait(PortScanner::Clock::time_point::max())) return unusable;
  }
  return success;
}

} // namespace

std::string portLines(const std::vector<SerialPortInfo>& ports) {
  std::size_t pathWidth = 0, nameWidth = 0;
  std::vector<std::string> names;
  for (const auto& port : ports) {
    names.push_back(nameOf(port));
    pathWidth = std::max(pathWidth, displayWidth(port.path));
    nameWidth = std::max(nameWidth, displayWidth(names.back()));
  }
  std::string text;
  for (std::size_t i = 0; i < ports.size(); ++i) {
    // Columns line up by characters, not bytes: names may hold accents ("Port série USB").
    std::string line = padded(ports[i].path, pathWidth) + "  " + names[i];
    if (std::string ids = usbIDs(ports[i]); !ids.empty()) {
      line += std::string(nameWidth - displayWidth(names[i]) + 2, ' ') + ids;
    }
    text += line + "\n";
  }
  return text;
}

std::string portsJSON(const std::vector<SerialPortInfo>& ports) {
  // Keys keep the documented order, which people reading the output expect.
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  auto orNull = [](const auto& value) {
    return value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json(nullptr);
  };
  for (const auto& port : ports) {
    list.push_back({{"path", port.path},
                    {"name", nameOf(port)},
                    {"vendorID", orNull(port.vendorID)},
                    {"productID", orNull(port.productID)},
                    {"productName", orNull(port.productName)},
                    {"network", looksLikeNetworkPort(port.path)}});
  }
  // Names come from devices; a broken byte must not end the output.
  return list.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

void printChanges(PortScanner& scanner, std::FILE* out, bool json) {
  // A change is delivered twice (at once and complete a moment later): a list is printed only
  // when it differs from the one printed last. Shared, as the scanner calls copies of the
  // handler.
  auto printed = std::make_shared<std::optional<std::vector<SerialPortInfo>>>();
  scanner.onChange = [out, json, printed](const std::vector<SerialPortInfo>& ports) {
    if (*printed == ports) return;
    *printed = ports;
    print(out, ports, json);
  };
}

int showPorts(bool json, bool watching) {
  PortScanner scanner;
  if (!watching) {
    auto ports = scanner.scan();
    const auto announced = browseNetworkPorts(browseSeconds);
    ports.insert(ports.end(), announced.begin(), announced.end());
    print(stdout, ports, json);
    return success;
  }
  printChanges(scanner, stdout, json);
  // Before the first list: whoever reads it may press Ctrl-C at once.
  stopOnSignals();
  scanner.start();
  if (scanner.descriptor() < 0) {
    print(stdout, scanner.scan(), json);
    std::fprintf(stderr, "%s\n", L10n::Ports::cannotWatch().c_str());
    return unusable;
  }
  return watch(scanner);
}

SerialPortInfo onlyUSBPort(const std::vector<SerialPortInfo>& ports) {
  std::vector<SerialPortInfo> usb;
  std::copy_if(ports.begin(), ports.end(), std::back_inserter(usb),
               [](const SerialPortInfo& port) { return port.vendorID.has_value(); });
  if (usb.empty()) throw UsageError{L10n::Cli::noUSBPort(), CommandKind::flash};
  if (usb.size() > 1) {
    std::string candidates;
    for (const auto& port : usb) {
      candidates += "\n  " + PortScanner::displayName(port) + "  (" + port.path + ")";
    }
    throw UsageError{L10n::Ports::severalUSBBoards() + candidates, CommandKind::flash};
  }
  return usb.front();
}

std::optional<SerialPortInfo> portAt(const std::vector<SerialPortInfo>& ports,
                                     const std::string& path) {
  auto found = std::find_if(ports.begin(), ports.end(),
                            [&](const SerialPortInfo& port) { return port.path == path; });
  if (found == ports.end()) return std::nullopt;
  return *found;
}

} // namespace tarnwick::cli
