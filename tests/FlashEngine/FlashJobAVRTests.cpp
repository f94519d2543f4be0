#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <thread>

#include "FlashEngine/FlashJob.hpp"
#include "FlashSerial/FlashPortError.hpp"
#include "Simulator/SimulatedAVR.hpp"
#include "support/EventRecorder.hpp"
#include "support/Products.hpp"

using namespace tarnwick;
using namespace tarnwick::simulator;
using namespace tarnwick::testing;
using Clock = std::chrono::steady_clock;

TEST(FlashJobAVR, EveryProtocolWritesAndReadsBackASketch) {
  for (AVRBoard board : {AVRBoard::uno, AVRBoard::nanoOldBootloader, AVRBoard::mega2560}) {
    SimulatedAVROptions options;
    options.board = board;
    SimulatedAVR simulated(options);
    auto p = avrProduct(board, 1000);
    EventRecorder recorder;
    FlashJob job(p.product, p.files, simulated.path(), true, std::ref(recorder));
    FlashSummary summary = job.run();
    const Bytes& sketch = p.files.begin()->second;
    Bytes flash = simulated.flash();
    EXPECT_TRUE(std::equal(sketch.begin(), sketch.end(), flash.begin())) << rawValue(board);
    EXPECT_EQ(flash[sketch.size()], 0xFF);
    EXPECT_EQ(summary.chip, chip(board).name);
    EXPECT_EQ(summary.bytes, 1000);
    EXPECT_FALSE(summary.mac);
    EXPECT_EQ(summary.portPath, simulated.path());
    EXPECT_EQ(recorder.kinds(),
              (std::vector<std::string>{"writing", "connecting", "connected", "verifying",
                                        "written", "verified", "resetting"}))
        << rawValue(board);
    auto progress = recorder.progress();
    EXPECT_EQ(progress.back(), 2000);
    const auto page = chip(board).pageSize;
    EXPECT_EQ(progress.front(), page);
    // Writing ends at the sketch size, not at a page boundary.
    EXPECT_NE(std::find(progress.begin(), progress.end(), 1000), progress.end());
    if (board == AVRBoard::mega2560) {
      for (const Bytes& body : simulated.loadAddressBodies())
        EXPECT_EQ(body[1] & 0x80, 0x80);
    }
  }
}

TEST(FlashJobAVR, CaterinaMovesToTheBootloadersPort) {
  SimulatedAVROptions options;
  options.board = AVRBoard::leonardo;
  SimulatedAVR bootloader(options);
  PseudoTerminal sketchPort; // where the running sketch answers before the touch
  auto p = avrProduct(AVRBoard::leonardo, 5000);
  EventRecorder recorder;
  FlashJob job(p.product, p.files, sketchPort.path(), true, std::ref(recorder));
  std::string givenOldPath;
  job.findBootloaderPort = [&](const std::set<std::string>&, const std::string& oldPath) {
    givenOldPath = oldPath;
    return bootloader.path();
  };
  FlashSummary summary = job.run();
  EXPECT_EQ(givenOldPath, sketchPort.path());
  EXPECT_EQ(summary.portPath, bootloader.path());
  EXPECT_EQ(summary.chip, "ATmega32U4");
  const Bytes& sketch = p.files.begin()->second;
  Bytes flash = bootloader.flash();
  EXPECT_TRUE(std::equal(sketch.begin(), sketch.end(), flash.begin()));
  EXPECT_EQ(recorder.kinds(),
            (std::vector<std::string>{"writing", "connecting", "portChanged", "connected",
                                      "verifying", "written", "verified", "resetting"}));
  EXPECT_EQ(bootloader.commands('E'), 1);

  // Back on the same path: no port change.
  EventRecorder same;
  FlashJob again(p.product, p.files, bootloader.path(), true, std::ref(same));
  again.findBootloaderPort = [&](const std::set<std::string>&, const std::string& old) {
    return old;
  };
  again.run();
  auto kinds = same.kinds();
  EXPECT_EQ(std::count(kinds.begin(), kinds.end(), "portChanged"), 0);

  // No bootloader appears.
  FlashJob lost(p.product, p.files, sketchPort.path(), true, nullptr);
  lost.findBootloaderPort = [](const std::set<std::string>&, const std::string&) -> std::string {
    throw FlashError::bootloaderPortNotFound();
  };
  EXPECT_EQ(errorOf<FlashError>([&] { lost.run(); }), FlashError::bootloaderPortNotFound());
}

TEST(FlashJobAVR, RefusalsAndSilence) {
  {
    SimulatedAVROptions options;
    options.board = AVRBoard::mega2560;
    options.signature = std::array<std::uint8_t, 3>{0x1E, 0x95, 0x0F};
    SimulatedAVR simulated(options);
    auto p = avrProduct(AVRBoard::mega2560, 300);
    EventRecorder recorder;
    FlashJob job(p.product, p.files, simulated.path(), true, std::ref(recorder));
    EXPECT_EQ(errorOf<FlashError>([&] { job.run(); }),
              FlashError::wrongSignature({0x1E, 0x95, 0x0F}, "ATmega2560"));
    EXPECT_EQ(recorder.kinds(), (std::vector<std::string>{"writing", "connecting"}));
    EXPECT_EQ(simulated.commands(0x13), 0); // nothing written
  }
  {
    SimulatedAVROptions options;
    options.silent = true;
    SimulatedAVR simulated(options);
    auto p = avrProduct(AVRBoard::uno, 300);
    EventRecorder recorder;
    FlashJob job(p.product, p.files, simulated.path(), true, std::ref(recorder));
    EXPECT_EQ(errorOf<FlashError>([&] { job.run(); }), FlashError::avrNoResponse());
    EXPECT_EQ(recorder.kinds(), (std::vector<std::string>{"writing", "connecting", "connecting",
                                                          "connecting", "connecting"}));
    EXPECT_EQ(simulated.commands(0x30), 20);
  }
  {
    // Too large: refused before anything is sent to the board.
    auto p = avrProduct(AVRBoard::uno, 32258);
    SimulatedAVR untouched;
    FlashJob job(p.product, p.files, untouched.path(), true, nullptr);
    EXPECT_EQ(errorOf<FlashError>([&] { job.run(); }), FlashError::sketchTooLarge(32258, 32256));
    EXPECT_EQ(untouched.bytesReceived(), 0u);
    auto fits = avrProduct(AVRBoard::uno, 32256);
    SimulatedAVR simulated;
    FlashJob ok(fits.product, fits.files, simulated.path(), true, nullptr);
    EXPECT_NO_THROW(ok.run());
  }
  {
    // A disabled sketch: no answer, and the port is never opened.
    auto p = avrProduct(AVRBoard::uno, 300);
    p.product.images[0].enabled = false;
    FlashJob job(p.product, p.files, "/dev/pts/does-not-exist", true, nullptr);
    EXPECT_EQ(errorOf<FlashError>([&] { job.run(); }), FlashError::avrNoResponse());
  }
  {
    SimulatedAVROptions options;
    options.corruptReadBack = true;
    SimulatedAVR simulated(options);
    auto p = avrProduct(AVRBoard::uno, 300);
    FlashJob job(p.product, p.files, simulated.path(), true, nullptr);
    EXPECT_EQ(errorOf<FlashError>([&] { job.run(); }), FlashError::verifyFailed("Arduino Uno"));
  }
}

TEST(FlashJobAVR, UnpluggedAndCancelledRunsEndPromptly) {
  // Pulled while writing, and pulled while connecting: the adapter is gone, not silent.
  for (auto [board, pages] : {std::pair{AVRBoard::uno, 5}, std::pair{AVRBoard::mega2560, 0},
                              std::pair{AVRBoard::uno, 0}}) {
    SimulatedAVROptions options;
    options.board = board;
    options.disconnectAfterPages = pages;
    SimulatedAVR simulated(options);
    auto p = avrProduct(board, 4000);
    FlashJob job(p.product, p.files, simulated.path(), true, nullptr);
    auto start = Clock::now();
    auto error = errorOf<FlashPortError>([&] { job.run(); });
    EXPECT_EQ(error, FlashPortError::disconnected());
    EXPECT_LT(std::chrono::duration<double>(Clock::now() - start).count(), 1.5);
  }
  SimulatedAVROptions options;
  options.paceLine = true;
  SimulatedAVR simulated(options);
  auto p = avrProduct(AVRBoard::uno, 30000);
  std::atomic<bool> connected = false;
  FlashJob job(p.product, p.files, simulated.path(), true, [&](const FlashEvent& e) {
    if (std::holds_alternative<FlashEvents::Connected>(e)) connected = true;
  });
  std::optional<FlashError> error;
  std::thread worker([&] { error = errorOf<FlashError>([&] { job.run(); }); });
  while (!connected)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  auto cancelledAt = Clock::now();
  job.cancel();
  worker.join();
  ASSERT_TRUE(error);
  EXPECT_TRUE(error->isCancelled());
  EXPECT_LT(std::chrono::duration<double>(Clock::now() - cancelledAt).count(), 0.3);
}
