// Flashes 1 MiB into 1, 4 and 8 simulated ESP32 boards at once through the flashing station,
// each on a line paced at its real speed (460800 baud after the speed change, 115200 before).
// Targets: N boards take at most 1.2 times as long as one, and each run's own thread uses under
// 5 % of a core.

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <mutex>
#include <vector>

#include "FlashStation/PortSource.hpp"
#include "FlashStation/Station.hpp"
#include "Simulator/SimulatedESP.hpp"
#include "support/Products.hpp"

using namespace tarnwick;
using namespace tarnwick::station;
using namespace tarnwick::simulator;
using Clock = std::chrono::steady_clock;

namespace {

class Outcomes : public StationReport {
public:
  void notice(const StationNotice&) override {}
  void started(const StationBoard&) override {}
  void event(const StationBoard&, const FlashEvent&) override {}
  void skipped(const StationBoard&, const std::string&) override {}
  void finished(const BoardOutcome& outcome) override {
    std::lock_guard lock(mutex);
    all.push_back(outcome);
  }
  std::mutex mutex;
  std::vector<BoardOutcome> all;
};

double processCPUSeconds() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  auto seconds = [](const timeval& t) {
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

struct Figures {
  double elapsed = 0;
  double slowestRun = 0;
  double meanCPUShare = 0;
  double maxCPUShare = 0;
  double processCPU = 0;
  double lineSeconds = 0;
  int done = 0;
};

Figures flashAtOnce(int count, const ProductPackage& package) {
  std::vector<std::unique_ptr<SimulatedESP>> boards;
  std::vector<SerialPortInfo> ports;
  for (int i = 0; i < count; ++i) {
    SimulatedESPOptions options;
    options.paceLine = true;
    options.syncAnswers = 1;
    boards.push_back(std::make_unique<SimulatedESP>(options));
    ports.push_back({boards.back()->path(), std::nullopt, 0x10C4, 0xEA60});
  }
  StationOptions options;
  options.now = true;
  options.allowsTestDevices = true;
  options.limit = count;
  Outcomes outcomes;
  Station station(package, options, outcomes);
  // The boards are all there when the station starts; it takes them as --now does.
  PortFeed source;
  source.deliver(ports);
  const double cpuStart = processCPUSeconds();
  const auto start = Clock::now();
  station.run(source);
  Figures figures;
  figures.elapsed = std::chrono::duration<double>(Clock::now() - start).count();
  figures.processCPU = processCPUSeconds() - cpuStart;
  for (const auto& outcome : outcomes.all) {
    const double share = outcome.cpuSeconds / outcome.seconds;
    figures.meanCPUShare += share / static_cast<double>(outcomes.all.size());
    figures.maxCPUShare = std::max(figures.maxCPUShare, share);
    figures.slowestRun = std::max(figures.slowestRun, outcome.seconds);
    figures.done += outcome.result == BoardOutcome::Result::done ? 1 : 0;
  }
  for (const auto& board : boards)
    figures.lineSeconds = std::max(figures.lineSeconds, board->lineSeconds());
  return figures;
}

} // namespace

int main() {
  testing::ProductWithFiles p;
  p.product.name = "Benchmark";
  p.product.target = Target::esp(ESPChip::esp32);
  p.add(FirmwareImage::Role::other, 0x10000, testing::firmwareLike(1024 * 1024), "firmware.bin");
  const ProductPackage package{p.product, p.files, {}};

  std::printf("ESP32, 1 MiB, 460800 baud (115200 while connecting), boards flashed at once\n");
  std::printf("%6s %10s %12s %10s %14s %14s %14s\n", "boards", "elapsed", "ratio to 1", "line",
              "CPU/run mean", "CPU/run max", "process CPU");
  double one = 0;
  bool met = true;
  for (int count : {1, 4, 8}) {
    Figures f = flashAtOnce(count, package);
    if (count == 1) one = f.elapsed;
    const double ratio = f.elapsed / one;
    met = met && f.done == count && ratio <= 1.2 && f.maxCPUShare < 0.05;
    std::printf("%6d %9.2fs %12.3f %9.2fs %13.2f%% %13.2f%% %13.2fs%s\n", count, f.elapsed, ratio,
                f.lineSeconds, 100 * f.meanCPUShare, 100 * f.maxCPUShare, f.processCPU,
                f.done == count ? "" : "  (boards failed)");
  }
  std::printf("targets (ratio <= 1.2, CPU per run < 5 %% of a core): %s\n",
              met ? "met" : "NOT met");
  return met ? 0 : 1;
}
