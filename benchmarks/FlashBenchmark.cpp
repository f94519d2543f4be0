// Flashes firmware-like data into simulated boards whose serial line is paced at its real speed,
// and compares the time taken with the time the bytes need on the line.
//
// ESP32: 1 MiB (this program's own machine code, repeated) and a real-looking application image
// (an ESP image whose segments are machine code and constants of the system's libcrypto) at
// 460800 baud after the speed change, 115200 before it. Uno: a 30 KB sketch at 115200 baud.
// Targets: elapsed / link limit <= 1.10, the engine's own CPU time under 5 % of the elapsed, and
// compression adding less to a run than it saves on the line against zlib at level 9.
//
// A board on another computer: the same paced 1 MiB ESP32 flash through Debian's ser2net on this
// machine, against the pseudo-terminal directly. Target: at most 1.05 times the direct time with
// ser2net's chardelay off; with its default chardelay for comparison.

#include <dlfcn.h>
#include <openssl/evp.h>
#include <zlib.h>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>

#include "FlashCore/Digest.hpp"
#include "FlashCore/Zlib.hpp"
#include "FlashEngine/FlashJob.hpp"
#include "Simulator/DemoFirmware.hpp"
#include "Simulator/SimulatedAVR.hpp"
#include "Simulator/SimulatedESP.hpp"
#include "support/Boards.hpp"
#include "support/Products.hpp"
#include "support/Ser2net.hpp"

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

Bytes fileBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

// An application of about 900 KB as a compiler leaves it: machine code in the instruction
// segments, constants and strings in the data segments. The bytes come from the libcrypto this
// program runs with, the nearest large body of real compiled code on any machine.
Bytes realLookingApplication() {
  Dl_info info{};
  Bytes library;
  if (dladdr(reinterpret_cast<void*>(&EVP_sha256), &info) && info.dli_fname)
    library = fileBytes(info.dli_fname);
  if (library.size() < 1024 * 1024) library = firmwareLike(2 * 1024 * 1024);
  auto part = [&](double from, std::size_t size) {
    auto at = static_cast<std::size_t>(from * static_cast<double>(library.size() - size));
    return Bytes(library.begin() + static_cast<long>(at),
                 library.begin() + static_cast<long>(at + size));
  };
  simulator::ESPImageParts parts;
  parts.chipID = simulator::ChipIDs::esp32;
  parts.segments = {{0x3F400020, part(0.80, 180 * 1024)},
                    {0x3FFB0000, part(0.95, 12 * 1024)},
                    {0x40080000, part(0.10, 64 * 1024)},
                    {0x400D0020, part(0.25, 640 * 1024)}};
  return simulator::espImage(parts);
}

double secondsOf(const std::function<void()>& work) {
  auto start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// Bytes and time of zlib at level 9 (what other flashers send) against the engine's compressor.
void reportCompression(const Bytes& data, std::int64_t baud) {
  Bytes zlib9(compressBound(static_cast<uLong>(data.size())));
  uLongf zlibLength = static_cast<uLongf>(zlib9.size());
  double zlibSeconds = secondsOf([&] {
    compress2(zlib9.data(), &zlibLength, data.data(), static_cast<uLong>(data.size()), 9);
  });
  Bytes ours;
  double oursSeconds = secondsOf([&] { ours = Zlib::compress(data); });
  const double saved =
      static_cast<double>(zlibLength - ours.size()) * 10.0 / static_cast<double>(baud);
  std::printf("  zlib level 9         %zu bytes in %.3f s\n", static_cast<std::size_t>(zlibLength),
              zlibSeconds);
  std::printf(
      "  libdeflate level 12  %zu bytes in %.3f s  (%.2f %% fewer; %.3f s less line time)\n",
      ours.size(), oursSeconds,
      100.0 * (1.0 - static_cast<double>(ours.size()) / static_cast<double>(zlibLength)), saved);
}

struct Timing {
  FlashSummary summary;
  double elapsed = 0;
  double writing = 0;
  double cpu = 0;
};

// Runs one job on this thread, timing the whole run, the writes and this thread's CPU time.
Timing timedRun(const ProductWithFiles& p, const std::string& port,
                std::shared_ptr<CompressionCache> cache = nullptr) {
  Clock::time_point firstWrite{}, lastWritten{};
  FlashJob job(p.product, p.files, port, true, [&](const FlashEvent& e) {
    if (std::holds_alternative<FlashEvents::Writing>(e) && firstWrite == Clock::time_point{}) {
      firstWrite = Clock::now();
    }
    if (std::holds_alternative<FlashEvents::Written>(e)) lastWritten = Clock::now();
  });
  job.compressionCache = std::move(cache);
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

// Flashes `data` into two paced ESP32 boards one after the other, as a series of boards does:
// the first run compresses (overlapped with connecting), the second finds the streams made.
void espSeries(const char* what, const Bytes& data, Target target) {
  ProductWithFiles p;
  p.product.target = target;
  p.product.verify = true;
  p.add(FirmwareImage::Role::other, 0x10000, data, "firmware.bin");
  std::printf("%s\n", what);
  reportCompression(data, p.product.flashBaud);
  auto cache = std::make_shared<CompressionCache>();
  double elapsed[2] = {0, 0};
  for (int run = 0; run < 2; ++run) {
    SimulatedESP board(pacedESP32());
    Timing t = timedRun(p, board.path(), cache);
    elapsed[run] = t.elapsed;
    report(run == 0 ? " first board (compresses ahead)" : " next board (streams from the cache)",
           t.summary.bytes, board.bytesReceived() + board.bytesSent(), t.elapsed, t.writing,
           board.lineSeconds(), t.cpu);
  }
  std::printf("  compression added to the first run: %.3f s\n\n", elapsed[0] - elapsed[1]);
}

// The best of `runs` timings of `run`, which takes out the other work of a shared machine.
double best(int runs, const std::function<double()>& run) {
  double fastest = run();
  for (int i = 1; i < runs; ++i)
    fastest = std::min(fastest, run());
  return fastest;
}

void throughSer2net() {
  ProductWithFiles p;
  p.product.target = Target::esp(ESPChip::esp32);
  p.product.verify = true;
  // ser2net cannot set modem lines on a pseudo-terminal; both sides are reset the same way.
  p.product.resetMode = ResetMode::manual;
  p.add(FirmwareImage::Role::other, 0x10000, firmwareLike(1024 * 1024), "firmware.bin");
  auto cache = std::make_shared<CompressionCache>();
  // `chardelay` absent: the pseudo-terminal directly.
  auto run = [&](std::optional<bool> chardelay) {
    SimulatedESP board(pacedESP32());
    std::unique_ptr<Ser2net> server;
    std::string port = board.path();
    if (chardelay) {
      Ser2net::Options serving;
      serving.chardelay = *chardelay;
      server = std::make_unique<Ser2net>(board.path(), serving);
      port = server->portName();
    }
    return timedRun(p, port, cache).elapsed;
  };
  run(std::nullopt); // fills the compression cache, so no run below compresses
  const double direct = best(2, [&] { return run(std::nullopt); });
  const double quick = best(2, [&] { return run(false); });
  const double held = best(2, [&] { return run(true); });
  std::printf("ESP32, 1 MiB, 460800 baud, through ser2net on this machine (best of 2 runs)\n");
  std::printf("  pseudo-terminal directly       %.3f s\n", direct);
  std::printf("  ser2net, chardelay: false      %.3f s  ratio %.3f  (target <= 1.05)\n", quick,
              quick / direct);
  std::printf("  ser2net, default chardelay     %.3f s  ratio %.3f\n\n", held, held / direct);
}

} // namespace

int main() {
  throughSer2net();
  const Target esp32 = Target::esp(ESPChip::esp32);
  espSeries("ESP32, 1 MiB, 460800 baud (115200 while connecting)", firmwareLike(1024 * 1024),
            esp32);
  const Bytes application = realLookingApplication();
  espSeries("ESP32, real-looking application image, 460800 baud", application, esp32);
  // Without a named chip the plan, and so the compression, waits for the detection.
  espSeries("ESP32 detected automatically, real-looking application image, 460800 baud",
            application, Target::esp());
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
