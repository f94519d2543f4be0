#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <random>
#include <thread>

#include "FlashCore/Digest.hpp"
#include "FlashCore/ProductCheck.hpp"
#include "FlashEngine/ESPLoader.hpp"
#include "FlashEngine/FlashJob.hpp"
#include "FlashSerial/FlashPort.hpp"
#include "Simulator/SimulatedESP.hpp"
#include "support/EventRecorder.hpp"
#include "support/Products.hpp"

using namespace tarnwick;
using namespace tarnwick::simulator;
using namespace tarnwick::testing;
using Clock = std::chrono::steady_clock;

namespace {

// The flash as the plan says it must be after the run.
void expectFlashHoldsPlan(const SimulatedESP& board, const ProductWithFiles& p, ESPChip chip) {
  EXPECT_TRUE(flashHoldsPlan(board.flash(), p, chip));
}

} // namespace

TEST(FlashJobESP, FlashesAWholeProductIntoAnESP32S3AndVerifies) {
  SimulatedESPOptions options;
  options.chip = ESPChip::esp32s3;
  SimulatedESP board(options);
  auto p = espProduct(ESPChip::esp32s3);
  p.product.flashMode = FlashMode::qio; // the bootloader header gets patched
  EventRecorder recorder;
  FlashJob job(p.product, p.files, board.path(), true, std::ref(recorder));
  FlashSummary summary = job.run();

  auto writes = FlashPlan::writes(p.product, p.files, ESPChip::esp32s3);
  std::int64_t total = 0;
  for (const auto& w : writes)
    total += static_cast<std::int64_t>(w.data.size());
  EXPECT_EQ(summary.chip, "ESP32-S3");
  EXPECT_EQ(summary.mac, "AB:CD:12:34:56:78");
  EXPECT_EQ(summary.bytes, total);
  EXPECT_EQ(summary.portPath, board.path());
  expectFlashHoldsPlan(board, p, ESPChip::esp32s3);
  EXPECT_EQ(board.flash()[2], 0x00); // QIO written into the bootloader at 0x0
  EXPECT_EQ(board.requests(ESPCommand::spiFlashMD5), static_cast<int>(writes.size()));
  EXPECT_EQ(board.requests(ESPCommand::flashBegin), 0);

  std::vector<std::string> expected = {"connecting", "connected", "baudRate"};
  for (std::size_t i = 0; i < writes.size(); ++i) {
    expected.insert(expected.end(), {"writing", "written", "verifying", "verified"});
  }
  expected.push_back("resetting");
  EXPECT_EQ(recorder.kinds(), expected);
  // Progress runs to exactly the total.
  std::lock_guard lock(recorder.mutex);
  auto last = std::find_if(recorder.events.rbegin(), recorder.events.rend(), [](auto& e) {
    return std::holds_alternative<FlashEvents::Progress>(e);
  });
  EXPECT_EQ(std::get<FlashEvents::Progress>(*last), (FlashEvents::Progress{total, total}));
}

TEST(FlashJobESP, ESP32ErasesOTADataAndRepeatsIdentically) {
  SimulatedESP board;
  auto p = espProduct(ESPChip::esp32);
  p.product.flashBaud = 115200; // no speed change, no baudRate event
  EventRecorder recorder;
  auto cache = std::make_shared<CompressionCache>();
  FlashJob first(p.product, p.files, board.path(), true, std::ref(recorder));
  first.compressionCache = cache;
  first.run();
  const std::size_t compressed = cache->compressions();
  EXPECT_EQ(compressed, FlashPlan::writes(p.product, p.files, ESPChip::esp32).size());
  auto regions = board.beginRegions();
  EXPECT_NE(std::find(regions.begin(), regions.end(),
                      std::pair<std::uint32_t, std::uint32_t>{0xE000, 0x2000}),
            regions.end());
  expectFlashHoldsPlan(board, p, ESPChip::esp32);
  EXPECT_EQ(recorder.count<FlashEvents::BaudRate>(), 0);
  Bytes once = board.flash();

  // The next board of the series reuses every stream; a changed product is compressed anew.
  EventRecorder again;
  FlashJob second(p.product, p.files, board.path(), true, std::ref(again));
  second.compressionCache = cache;
  second.run();
  EXPECT_EQ(board.flash(), once);
  EXPECT_EQ(again.kinds(), recorder.kinds());
  EXPECT_EQ(cache->compressions(), compressed);

  auto& app = p.files.at(p.product.images[2].id);
  app[app.size() / 2] ^= 0xFF;
  p.product.images[2].sha256 = Digest::sha256Hex(app);
  FlashJob changed(p.product, p.files, board.path(), true, [](const FlashEvent&) {});
  changed.compressionCache = cache;
  changed.run();
  expectFlashHoldsPlan(board, p, ESPChip::esp32);
  EXPECT_EQ(cache->compressions(), compressed + 1);
}

// Every chip takes what the engine sends and holds it byte for byte: deflate streams on the ESP32
// family, split into packets wherever the 1 KiB boundaries fall inside deflate blocks, and data
// that does not compress at all; plain blocks on the ESP8266.
TEST(FlashJobESP, EveryChipHoldsTheWritesExactly) {
  std::mt19937 random(5);
  Bytes noise(40 * 1024 + 77), code(150 * 1024 + 333);
  for (auto& b : noise)
    b = static_cast<std::uint8_t>(random());
  // Code-like: short repeated sequences with varying operands, and erased runs.
  for (std::size_t i = 0; i < code.size(); ++i)
    code[i] = i % 8192 > 7000
                  ? 0xFF
                  : static_cast<std::uint8_t>((i % 12) * 17 + (random() % 4 == 0 ? i : 0));
  for (ESPChip chip : ESPChips::all) {
    SCOPED_TRACE(std::string(rawValue(chip)));
    SimulatedESPOptions options;
    options.chip = chip;
    SimulatedESP board(options);
    auto p = espProduct(chip, 20 * 1024);
    p.add(FirmwareImage::Role::other, 0x300000, code, "code.bin");
    p.add(FirmwareImage::Role::other, 0x340000, noise, "noise.bin");
    p.product.target = chip == ESPChip::esp32c3 ? Target::esp() : Target::esp(chip);
    auto cache = std::make_shared<CompressionCache>();
    FlashJob job(p.product, p.files, board.path(), true, [](const FlashEvent&) {});
    job.compressionCache = cache;
    job.run();
    expectFlashHoldsPlan(board, p, chip);
    const auto writes = FlashPlan::writes(p.product, p.files, chip);
    if (chip == ESPChip::esp8266) {
      EXPECT_EQ(board.requests(ESPCommand::flashDeflateData), 0);
      EXPECT_EQ(cache->compressions(), 0u);
    } else {
      EXPECT_EQ(board.requests(ESPCommand::flashData), 0);
      EXPECT_EQ(board.requests(ESPCommand::spiFlashMD5), static_cast<int>(writes.size()));
      EXPECT_LT(cache->request(code).get()->size(), code.size() / 2);
      EXPECT_GT(cache->request(noise).get()->size(), noise.size());
    }
  }
}

TEST(FlashJobESP, ESP8266WritesPlainAndSkipsVerification) {
  SimulatedESPOptions options;
  options.chip = ESPChip::esp8266;
  SimulatedESP board(options);
  ProductWithFiles p;
  p.product.target = Target::esp(); // detected automatically
  Bytes app(3000);
  for (std::size_t i = 0; i < app.size(); ++i)
    app[i] = static_cast<std::uint8_t>(i * 31);
  p.add(FirmwareImage::Role::other, 0x0, app, "app.bin");
  EventRecorder recorder;
  FlashJob job(p.product, p.files, board.path(), true, std::ref(recorder));
  auto summary = job.run();
  EXPECT_EQ(summary.chip, "ESP8266");
  EXPECT_EQ(board.requests(ESPCommand::flashData), 3);
  EXPECT_EQ(board.requests(ESPCommand::flashDeflateData), 0);
  EXPECT_EQ(board.requests(ESPCommand::spiFlashMD5), 0);
  EXPECT_EQ(board.requests(ESPCommand::changeBaudRate), 0);
  EXPECT_EQ(recorder.count<FlashEvents::Verifying>(), 0);
  Bytes flash = board.flash();
  EXPECT_TRUE(std::equal(app.begin(), app.end(), flash.begin()));
  EXPECT_EQ(flash[3000], 0xFF);
  // The begin request asks for one sector: 3000 bytes at 0x0.
  EXPECT_EQ(board.beginRegions().front(), (std::pair<std::uint32_t, std::uint32_t>{0x0, 0x1000}));
  std::vector<std::int64_t> progress;
  for (const auto& e : recorder.events) {
    if (auto* p2 = std::get_if<FlashEvents::Progress>(&e)) progress.push_back(p2->done);
  }
  EXPECT_EQ(progress, (std::vector<std::int64_t>{1024, 2048, 3000}));
  EXPECT_EQ(eraseSize(0x10000, 0x40000), 0x30000u);
  EXPECT_EQ(eraseSize(0xF000, 0x3000), 0x2000u);
}

TEST(FlashJobESP, WrongChipRestartsTheBoardBeforeAnyConnectedEvent) {
  SimulatedESPOptions options;
  options.chip = ESPChip::esp32c3;
  SimulatedESP board(options);
  auto p = espProduct(ESPChip::esp32s3);
  EventRecorder recorder;
  FlashJob job(p.product, p.files, board.path(), true, std::ref(recorder));
  auto error = errorOf<FlashError>([&] { job.run(); });
  EXPECT_EQ(error, FlashError::wrongChip("ESP32-C3", "ESP32-S3"));
  EXPECT_EQ(recorder.kinds(), (std::vector<std::string>{"connecting", "resetting"}));

  // The port is free again: another program (here the next job) can open it.
  FlashPort again(board.path(), 115200, true);
  EXPECT_NO_THROW(again.open());
}

// A board told by its MAC address: the one flashed before is restarted into its firmware with
// nothing written and no connected event; any other is flashed as usual.
TEST(FlashJobESP, TheBoardFlashedBeforeIsLeftAloneByItsMAC) {
  for (const bool same : {true, false}) {
    SCOPED_TRACE(same ? "same MAC" : "another MAC");
    SimulatedESP board;
    auto p = espProduct(ESPChip::esp32, 4096);
    EventRecorder recorder;
    FlashJob job(p.product, p.files, board.path(), true, std::ref(recorder));
    job.leaveBoardWithMAC = same ? "AB:CD:12:34:56:78" : "AB:CD:12:34:56:79";
    bool left = false;
    try {
      job.run();
    } catch (const FlashJob::SameBoard&) {
      left = true;
    }
    EXPECT_EQ(left, same);
    EXPECT_EQ(board.requests(ESPCommand::flashDeflateBegin) == 0, same);
    if (same) {
      EXPECT_EQ(recorder.kinds(), (std::vector<std::string>{"connecting", "resetting"}));
    }
    FlashPort again(board.path(), 115200, true);
    EXPECT_NO_THROW(again.open());
  }
}

TEST(FlashJobESP, FailuresEndTheRunWithTheirOwnErrors) {
  auto p = espProduct(ESPChip::esp32, 64 * 1024);
  {
    SimulatedESPOptions options;
    options.failCommand = opcode(ESPCommand::flashDeflateData);
    options.failOnNth = 3;
    options.failureCode = 0x0C;
    SimulatedESP board(options);
    EventRecorder recorder;
    FlashJob job(p.product, p.files, board.path(), true, std::ref(recorder));
    EXPECT_EQ(errorOf<FlashError>([&] { job.run(); }), FlashError::commandFailed(0x11, 0x0C));
    EXPECT_EQ(recorder.kinds().back(), "resetting");
  }
  {
    SimulatedESPOptions options;
    options.wrongMD5 = true;
    SimulatedESP board(options);
    EventRecorder recorder;
    FlashJob job(p.product, p.files, board.path(), true, std::ref(recorder));
    EXPECT_EQ(errorOf<FlashError>([&] { job.run(); }), FlashError::verifyFailed("bootloader.bin"));
  }
  {
    SimulatedESPOptions options;
    options.rawMD5 = true; // the 16-byte form is understood as well
    SimulatedESP board(options);
    FlashJob job(p.product, p.files, board.path(), true, nullptr);
    EXPECT_NO_THROW(job.run());
  }
  {
    // The board goes away in the middle of the application.
    SimulatedESPOptions options;
    options.disconnectAfterDataBlocks = 30;
    SimulatedESP board(options);
    FlashJob job(p.product, p.files, board.path(), true, nullptr);
    auto start = Clock::now();
    auto error = errorOf<FlashPortError>([&] { job.run(); });
    EXPECT_EQ(error, FlashPortError::disconnected());
    EXPECT_LT(std::chrono::duration<double>(Clock::now() - start).count(), 5.0);
  }
  {
    // A port that cannot be opened: its error and no event at all.
    EventRecorder recorder;
    FlashJob job(p.product, p.files, "/dev/ttyUSB-does-not-exist", false, std::ref(recorder));
    auto error = errorOf<FlashPortError>([&] { job.run(); });
    ASSERT_TRUE(error);
    EXPECT_TRUE(recorder.events.empty());
  }
}

TEST(FlashJobESP, CancellationStopsBeforeTheNextBlock) {
  {
    SimulatedESP board;
    auto p = espProduct(ESPChip::esp32);
    EventRecorder recorder;
    FlashJob job(p.product, p.files, board.path(), true, std::ref(recorder));
    job.cancel();
    EXPECT_TRUE(errorOf<FlashError>([&] { job.run(); })->isCancelled());
    EXPECT_TRUE(recorder.events.empty());
  }
  SimulatedESPOptions options;
  options.paceLine = true; // a real line speed makes the write long enough to stop it midway
  SimulatedESP board(options);
  auto p = espProduct(ESPChip::esp32, 1024 * 1024);
  p.product.flashBaud = 115200;
  std::atomic<bool> writingApp = false;
  FlashJob* self = nullptr;
  FlashJob job(p.product, p.files, board.path(), true, [&](const FlashEvent& e) {
    if (auto* w = std::get_if<FlashEvents::Writing>(&e); w && w->name == "firmware.bin")
      writingApp = true;
    (void)self;
  });
  self = &job;
  std::optional<FlashError> error;
  std::thread worker([&] { error = errorOf<FlashError>([&] { job.run(); }); });
  while (!writingApp)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  int blocksBefore = board.requests(ESPCommand::flashDeflateData);
  auto cancelledAt = Clock::now();
  job.cancel();
  worker.join();
  double took = std::chrono::duration<double>(Clock::now() - cancelledAt).count();
  ASSERT_TRUE(error);
  EXPECT_TRUE(error->isCancelled());
  // The block in flight is answered, then nothing more; the restart pulse takes 0.1 s.
  EXPECT_LT(took, 0.5);
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_LE(board.requests(ESPCommand::flashDeflateData), blocksBefore + 1);
}
