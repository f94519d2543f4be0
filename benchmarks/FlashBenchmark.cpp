// Flashes firmware-like data into simulated boards whose serial line is paced at its real speed,
// and compares the time taken with the time the bytes need on the line.
//
// ESP32: 1 MiB (this program's own machine code, repeated) at 460800 baud after the speed
// change, 115200 before it. Uno: a 30 KB sketch at 115200 baud.
// Targets: elapsed / link limit <= 1.10, and the engine's own CPU time under 5 % of the elapsed.

#include <chrono>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iterator>

#include "FlashCore/Digest.hpp"
#include "FlashEngine/FlashJob.hpp"
#include "support/Products.hpp"
#include "Simulator/SimulatedAVR.hpp"
#include "Simulator/SimulatedESP.hpp"

using namespace tarnwick;
using namespace tarnwick::simulator;
using namespace tarnwick::testing;
using Clock = std::chrono::steady_clock;

namespace {

double threadCPUSeconds() {
  timespec t{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) / 1e9;
}

Bytes firmwareLike(std::size_t size) {
  std::ifstream self("/proc/self/exe", std::ios::binary);
  Bytes code((std::istreambuf_iterator<char>(self)), std::istreambuf_iterator<char>());
  if (code.empty()) code.assign(4096, 0x5A);
  Bytes out;
  while (out.size() < size)
    out.insert(out.end(), code.begin(), code.end());
  out.resize(size);
  return out;
}

struct Timing {
  FlashSummary summary;
  double elapsed = 0;
  double writing = 0;
  double cpu = 0;
};

// Runs one job on this thread, timing the whole run, the writes and this thread's CPU time.
Timing timedRun(const ProductWithFiles& p, const std::string& port) {
  Clock::time_point firstWrite{}, lastWritten{};
  FlashJob job(p.product, p.files, port, true, [&](const FlashEvent& e) {
    if (std::holds_alternative<FlashEvents::Writing>(e) && firstWrite == Clock::time_point{}) {
      firstWrite = Clock::now();
    }
    if (std::holds_alternative<FlashEvents::Written>(e)) lastWritten = Clock::now();
  });
  Timing timing;
  auto start = Clock::now();
  double cpuStart = threadCPUSeconds();
  timing.summary = job.run();
  timing.cpu = threadCPUSeconds() - cpuStart;
  timing.elapsed = std::chrono::duration<double>(Clock::now() - start).count();
  timing.writing = std::chrono::duration<double>(lastWritten - firstWrite).count();
  return timing;
}

void report(const char* what, std::int64_t bytes, std::uint64_t lineBytes, double elapsed,
            double writeElapsed, double linkLimit, double cpu) {
  std::printf("%s\n", what);
  std::printf("  bytes written        %lld\n", static_cast<long long>(bytes));
  std::printf("  bytes on the line    %llu\n", static_cast<unsigned long long>(lineBytes));
  std::printf("  elapsed, whole run   %.3f s\n", elapsed);
  std::printf("  elapsed, writing     %.3f s\n", writeElapsed);
  std::printf("  link limit           %.3f s\n", linkLimit);
  std::printf("  ratio (whole run)    %.3f  (target <= 1.10)\n", elapsed / linkLimit);
  std::printf("  engine CPU time      %.3f s = %.1f %% of elapsed  (target < 5 %%)\n", cpu,
              100.0 * cpu / elapsed);
}

} // namespace

int main() {
  {
    SimulatedESPOptions options;
    options.chip = ESPChip::esp32;
    options.paceLine = true;
    options.syncAnswers = 1;
    SimulatedESP board(options);
    ProductWithFiles p;
    p.product.target = Target::esp(ESPChip::esp32);
    p.product.verify = true;
    p.add(FirmwareImage::Role::other, 0x10000, firmwareLike(1024 * 1024), "firmware.bin");
    Timing t = timedRun(p, board.path());
    report("ESP32, 1 MiB, 460800 baud (115200 while connecting)", t.summary.bytes,
           board.bytesReceived() + board.bytesSent(), t.elapsed, t.writing, board.lineSeconds(),
           t.cpu);
  }
  {
    SimulatedAVROptions options;
    options.board = AVRBoard::uno;
    options.paceLine = true;
    SimulatedAVR board(options);
    auto p = avrProduct(AVRBoard::uno, 30 * 1024);
    p.files.begin()->second = firmwareLike(30 * 1024);
    p.product.images[0].size = 30 * 1024;
    Timing t = timedRun(p, board.path());
    std::uint64_t line = board.bytesReceived() + board.bytesSent();
    report("Arduino Uno, 30 KB sketch with read-back, 115200 baud", t.summary.bytes, line,
           t.elapsed, t.writing, static_cast<double>(line) * 10.0 / 115200.0, t.cpu);
  }
  return 0;
}
