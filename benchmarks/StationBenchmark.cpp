// Flashes 1 MiB into 1, 4, 8 and 16 simulated ESP32 boards at once through the flashing station,
// each on a line paced at its real speed (460800 baud after the speed change, 115200 before).
// Targets: N boards take at most 1.2 times as long as one, and each run's own thread uses under
// 5 % of a core.
// Then the desktop program's station: its window in station mode (offscreen) flashes 16 boards,
// each a tarnwick-simboard --pace process of its own. Target: the process uses under 10 % of one
// core beyond the runs' own threads, and the table is updated at most 20 times a second.

#include <ctime>
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <mutex>
#include <vector>

#include "FlashStation/PortSource.hpp"
#include "FlashStation/Station.hpp"
#include "Simulator/SimulatedESP.hpp"
#ifdef TARNWICK_DESKTOP_STATION
#include <QApplication>
#include <QEventLoop>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "Tarnwick/Model/FlasherModel.hpp"
#include "Tarnwick/Model/SoundSink.hpp"
#include "Tarnwick/Model/StationModel.hpp"
#include "Tarnwick/Views/MainWindow.hpp"
#endif
#include "support/Boards.hpp"
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

double threadCPUSeconds() {
  timespec t{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) / 1e9;
}

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
    boards.push_back(std::make_unique<SimulatedESP>(testing::pacedESP32()));
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

#ifdef TARNWICK_DESKTOP_STATION
class Silence : public SoundSink {
public:
  void play(const std::string&) override {}
};

// The desktop's station on 16 boards, each served by a process of its own as a real hub's boards
// have their own chips: what the desktop process spends is its own work and the runs'.
bool desktopStation(int argc, char** argv, const testing::ProductWithFiles& p, double one) {
  constexpr int count = 16;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QStandardPaths::setTestModeEnabled(true);
  QApplication application(argc, argv);
  QTemporaryDir scratch;
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, scratch.path());

  std::vector<std::unique_ptr<QProcess>> boards;
  std::vector<std::string> paths;
  for (int i = 0; i < count; ++i) {
    auto board = std::make_unique<QProcess>();
    board->start(QStringLiteral(TARNWICK_SIMBOARD),
                 {QStringLiteral("esp32"), QStringLiteral("--pace")});
    if (!board->waitForReadyRead(10000)) {
      std::printf("desktop station: tarnwick-simboard did not start\n");
      return false;
    }
    paths.push_back(QString::fromUtf8(board->readLine()).trimmed().toStdString());
    boards.push_back(std::move(board));
  }

  FlasherModel::Options options;
  options.testDevices = paths;
  options.sounds = std::make_shared<Silence>();
  options.autosaveLocation = scratch.filePath(QStringLiteral("Current.twflash")).toStdString();
  FlasherModel model(std::move(options));
  std::vector<FirmwareImport::Imported> images;
  for (const auto& image : p.product.images)
    images.push_back({image, p.files.at(image.id)});
  model.setImages(images);
  model.setProduct(p.product);
  // The work in progress is saved once, as it is a second after any change, before the station.
  model.saveWorkNow();
  MainWindow window(model);
  window.resize(1000, 800);
  window.show();
  window.setStationMode(true);
  StationModel& station = window.station();

  const double cpuStart = processCPUSeconds();
  const double mainStart = threadCPUSeconds();
  const auto start = Clock::now();
  station.start();
  // The event loop sleeps between events, as the program's own does.
  QEventLoop waiting;
  QObject::connect(&station, &StationModel::tallyChanged, &waiting, [&] {
    if (station.tally().flashed + station.tally().failed >= count) waiting.quit();
  });
  QObject::connect(&station, &StationModel::phaseChanged, &waiting, [&] {
    if (!station.isRunning()) waiting.quit();
  });
  waiting.exec();
  const double elapsed = std::chrono::duration<double>(Clock::now() - start).count();
  const double processCPU = processCPUSeconds() - cpuStart;
  const double mainCPU = threadCPUSeconds() - mainStart;
  double runsCPU = 0;
  for (const StationRow& row : station.rows())
    runsCPU += row.cpuSeconds;
  const int updates = station.updates();
  const auto tally = station.tally();
  station.stop();
  if (station.isRunning()) waiting.exec();
  for (auto& board : boards) {
    board->terminate();
    board->waitForFinished(5000);
  }

  const double share = (processCPU - runsCPU) / elapsed;
  const double rate = updates / elapsed;
  const bool met = tally.flashed == count && share < 0.10 && rate <= 20.5;
  std::printf("Desktop station, %d tarnwick-simboard --pace processes, window offscreen\n", count);
  std::printf("  elapsed %.2fs (ratio to one board in the terminal station %.3f), flashed %lld, "
              "failed %lld\n",
              elapsed, elapsed / one, static_cast<long long>(tally.flashed),
              static_cast<long long>(tally.failed));
  std::printf("  process CPU %.2fs, runs' threads %.2fs, beyond them %.2f%% of one core (the "
              "window's thread %.2fs, the station's and the rest %.2fs)\n",
              processCPU, runsCPU, 100 * share, mainCPU, processCPU - runsCPU - mainCPU);
  std::printf("  table updates %d, %.1f a second\n", updates, rate);
  std::printf("targets (beyond the runs < 10 %% of a core, <= 20 updates a second): "
              "%s\n",
              met ? "met" : "NOT met");
  return met;
}
#endif

} // namespace

int main(int argc, char** argv) {
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
  for (int count : {1, 4, 8, 16}) {
    Figures f = flashAtOnce(count, package);
    if (count == 1) one = f.elapsed;
    const double ratio = f.elapsed / one;
    met = met && f.done == count && ratio <= 1.2 && f.maxCPUShare < 0.05;
    std::printf("%6d %9.2fs %12.3f %9.2fs %13.2f%% %13.2f%% %13.2fs%s\n", count, f.elapsed, ratio,
                f.lineSeconds, 100 * f.meanCPUShare, 100 * f.maxCPUShare, f.processCPU,
                f.done == count ? "" : "  (boards failed)");
  }
  std::printf("targets (ratio <= 1.2, CPU per run < 5 %% of a core): %s\n\n",
              met ? "met" : "NOT met");
#ifdef TARNWICK_DESKTOP_STATION
  met = desktopStation(argc, argv, p, one) && met;
#else
  (void)argc;
  (void)argv;
#endif
  return met ? 0 : 1;
}
