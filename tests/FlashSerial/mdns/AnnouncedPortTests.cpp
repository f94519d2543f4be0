// Ports that Debian's ser2net announces, found through an Avahi daemon of the test's own
// (support/mdns-session.sh runs this program beside one).

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <nlohmann/json.hpp>

#include "FlashEngine/FlashJob.hpp"
#include "FlashSerial/NetworkDiscovery.hpp"
#include "FlashSerial/NetworkPort.hpp"
#include "Simulator/SimulatedAVR.hpp"
// After the engine's headers: Qt's keyword macros would rewrite them.
#include <QCoreApplication>
#include <QThread>

#include "Tarnwick/Model/FlasherModel.hpp"
#include "TarnwickCLI/RunCLI.hpp"
#include "support/EventRecorder.hpp"
#include "support/Products.hpp"
#include "support/Ser2net.hpp"

using namespace tarnwick;
using namespace tarnwick::simulator;
using namespace tarnwick::testing;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

// The browser's lists as they come, for waiting on one that satisfies a condition.
class Lists {
public:
  void deliver(const std::vector<SerialPortInfo>& ports) {
    std::lock_guard lock(mutex_);
    last_ = ports;
    changed_.notify_all();
  }
  template <class Condition> bool waitFor(Condition condition) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, 20s, [&] { return condition(last_); });
  }

private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<SerialPortInfo> last_;
};

std::optional<SerialPortInfo> named(const std::vector<SerialPortInfo>& ports,
                                    const std::string& service) {
  for (const auto& port : ports)
    if (port.productName == service) return port;
  return std::nullopt;
}

} // namespace

// ser2net announces its port once the daemon has checked the name is free, which takes a moment:
// the background browser sees it come (and go when ser2net stops); the one-off listing of
// tarnwick-cli, with the daemon knowing it by then, lists it at once, as a network port; and
// flashing through it reaches the board. A raw TCP port beside it is not offered.
TEST(AnnouncedPorts, Ser2netsPortIsFoundListedFlashedAndGone) {
  const std::string service = "bench-" + std::to_string(::getpid());
  Lists lists;
  NetworkPortBrowser browser([&](const auto& ports) { lists.deliver(ports); });
  SimulatedAVR board;
  auto server = std::make_unique<Ser2net>(board.path(), Ser2net::Options{.announceAs = service});
  SimulatedAVR other;
  Ser2net raw(other.path(), Ser2net::Options{.protocol = "", .announceAs = service + "-raw"});
  ASSERT_TRUE(lists.waitFor([&](const auto& ports) { return named(ports, service).has_value(); }));

  const auto start = Clock::now();
  const auto found = browseNetworkPorts(3.0);
  EXPECT_LT(Clock::now() - start, 2s) << "the daemon knew the port and said so at once";
  const auto port = named(found, service);
  ASSERT_TRUE(port);
  EXPECT_FALSE(named(found, service + "-raw"));
  const auto address = parseNetworkPort(port->path);
  ASSERT_TRUE(address) << port->path;
  EXPECT_EQ(address->port, server->port());
  // A pseudo-terminal has no USB facts to announce.
  EXPECT_FALSE(port->vendorID);

  const Result listed = runCLI({"ports", "--json"});
  EXPECT_EQ(listed.status, 0) << listed.err;
  EXPECT_EQ(listed.err, "");
  bool seen = false;
  for (const auto& entry : nlohmann::json::parse(listed.out)) {
    if (entry["productName"] != service) continue;
    seen = true;
    EXPECT_EQ(entry["network"], true);
    EXPECT_EQ(entry["name"], "\u201C" + service + "\u201D on the network");
    EXPECT_EQ(parseNetworkPort(entry["path"].get<std::string>())->port, server->port());
  }
  EXPECT_TRUE(seen) << listed.out;
  RunOptions german;
  german.language = "de";
  EXPECT_NE(runCLI({"ports"}, german).out.find("\u201E" + service + "\u201C im Netzwerk"),
            std::string::npos);

  auto p = avrProduct(AVRBoard::uno, 2000);
  EventRecorder recorder;
  FlashJob job(p.product, p.files, port->path, false, std::ref(recorder));
  EXPECT_EQ(job.run().chip, "ATmega328P");

  server.reset();
  EXPECT_TRUE(lists.waitFor([&](const auto& ports) { return !named(ports, service); }));
}

// The window's port source lists the announced port after the local ones, on the main thread and
// without its USB ids, so that it is never taken for a board just plugged in.
TEST(AnnouncedPorts, TheWindowsPortSourceListsThemOnItsOwnThread) {
  int argc = 1;
  char name[] = "AnnouncedPortTests";
  char* argv[] = {name, nullptr};
  QCoreApplication application(argc, argv);
  const std::string service = "window-" + std::to_string(::getpid());
  SimulatedAVR board;
  Ser2net server(board.path(), Ser2net::Options{.announceAs = service});
  std::optional<SerialPortInfo> listed;
  bool onMainThread = true;
  auto source = makeScannerPortSource();
  source->start([&](const std::vector<SerialPortInfo>& ports) {
    onMainThread = onMainThread && QThread::currentThread() == application.thread();
    listed = named(ports, service);
  });
  const auto deadline = Clock::now() + 20s;
  while (!listed && Clock::now() < deadline)
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
  ASSERT_TRUE(listed);
  EXPECT_TRUE(onMainThread);
  EXPECT_EQ(parseNetworkPort(listed->path)->port, server.port());
  EXPECT_FALSE(listed->vendorID);
}

// With a port announced, a listing that cannot reach the daemon (no system bus where it looks,
// then the daemon stopped) lists the local ports only, at once and without a word. Last, as it
// stops the daemon.
TEST(AnnouncedPorts, WithoutADaemonOnlyLocalPorts) {
  const std::string service = "quiet-" + std::to_string(::getpid());
  SimulatedAVR board;
  Ser2net server(board.path(), Ser2net::Options{.announceAs = service});
  const auto deadline = Clock::now() + 20s;
  while (!named(browseNetworkPorts(1.0), service) && Clock::now() < deadline) {
  }
  ASSERT_TRUE(named(browseNetworkPorts(1.0), service)) << "the daemon knows the port";

  RunOptions noBus;
  noBus.environment = {"DBUS_SYSTEM_BUS_ADDRESS=unix:path=/run/tarnwick-no-bus-here"};
  auto expectOnlyLocal = [](const RunOptions& options, const char* situation) {
    const auto start = Clock::now();
    const Result listed = runCLI({"ports", "--json"}, options);
    EXPECT_LT(Clock::now() - start, 1s) << situation;
    EXPECT_EQ(listed.status, 0) << situation;
    EXPECT_EQ(listed.err, "") << situation;
    for (const auto& entry : nlohmann::json::parse(listed.out))
      EXPECT_EQ(entry["network"], false) << situation << ": " << listed.out;
  };
  expectOnlyLocal(noBus, "no system bus");

  const char* daemon = std::getenv("TARNWICK_AVAHI_PID");
  ASSERT_NE(daemon, nullptr);
  ASSERT_EQ(::kill(std::atoi(daemon), SIGTERM), 0);
  const auto gone = Clock::now() + 10s;
  while (::kill(std::atoi(daemon), 0) == 0 && Clock::now() < gone)
    std::this_thread::sleep_for(10ms); // polled: the daemon says nothing when it has gone
  expectOnlyLocal(RunOptions{}, "no daemon on the bus");
}
