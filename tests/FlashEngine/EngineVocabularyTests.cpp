#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "FlashEngine/JobContext.hpp"
#include "Localization/Language.hpp"

using namespace tarnwick;
using Clock = std::chrono::steady_clock;

namespace {
double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

const std::vector<FlashError> everyError = {
    FlashError::wrongChip("ESP32-C3", "ESP32-S3"),
    FlashError::commandFailed(0x11, 0x05),
    FlashError::noResponse(0x0A),
    FlashError::verifyFailed("app.bin"),
    FlashError::wrongSignature({0x1E, 0x95, 0x0F}, "ATmega2560"),
    FlashError::sketchTooLarge(40000, 32256),
    FlashError::noSync(),
    FlashError::bootloaderPortNotFound(),
    FlashError::avrNoResponse(),
    FlashError::cancelled(),
    FlashError::needsLocalPort("Arduino Micro")};
} // namespace

TEST(FlashError, EnglishWordingsAndEveryLanguage) {
  {
    LanguageOverride english(Language::en);
    EXPECT_EQ(FlashError::noResponse(0x0A).message(),
              "No answer from the bootloader to command 0x0A.");
    EXPECT_EQ(FlashError::commandFailed(0x11, 0x05).message(),
              "The bootloader refused command 0x11 (error 0x05).");
    EXPECT_EQ(FlashError::wrongChip("ESP32-C3", "ESP32-S3").message(),
              "ESP32-C3 is connected, but this product is for an ESP32-S3.");
    EXPECT_EQ(FlashError::wrongSignature({0x1E, 0x95, 0x0F}, "ATmega2560").message(),
              "Wrong chip: signature 1E 95 0F, expected an ATmega2560. Choose the right board.");
    EXPECT_EQ(FlashError::sketchTooLarge(40000, 32256).message(),
              "The sketch is 40000 bytes; this board holds 32256 bytes.");
    EXPECT_EQ(FlashError::verifyFailed("app.bin").message(),
              "Verification failed: app.bin is not correct in flash memory.");
    EXPECT_EQ(FlashError::cancelled().message(), "Stopped.");
    EXPECT_EQ(FlashError::noSync().message(),
              "No connection with the bootloader. Check the port and the cable, or hold BOOT and "
              "briefly press RESET (EN).");
    EXPECT_EQ(FlashError::bootloaderPortNotFound().message(),
              "The bootloader did not appear. Press the reset button twice quickly and flash "
              "again at once.");
    EXPECT_EQ(FlashError::avrNoResponse().message(),
              "No answer from the bootloader. Is the board right (and the old or new bootloader "
              "for a Nano)?");
    EXPECT_EQ(FlashError::needsLocalPort("Arduino Micro").message(),
              "Arduino Micro boards cannot be flashed over the network: their bootloader comes up "
              "as another USB device, which the serial server does not pass on. Connect the "
              "board to this computer.");
    // Opcodes and codes are always two upper-case hexadecimal digits.
    EXPECT_EQ(FlashError::commandFailed(0x0D, 0xC1).message(),
              "The bootloader refused command 0x0D (error 0xC1).");
    EXPECT_EQ(FlashError::wrongSignature({0x00, 0x0A}, "ATmega328P").message(),
              "Wrong chip: signature 00 0A, expected an ATmega328P. Choose the right board.");
  }
  const char* stopped[] = {"Stopped.", "Gestopt.", "Gestoppt.", "Arrêté.", "Detenido."};
  for (Language language : allLanguages) {
    LanguageOverride guard(language);
    EXPECT_EQ(FlashError::cancelled().message(), stopped[static_cast<int>(language)]);
    for (const FlashError& error : everyError) {
      std::string text = error.message();
      EXPECT_GT(text.size(), 6u) << code(language);
      if (std::holds_alternative<FlashError::NeedsLocalPort>(error.value)) {
        EXPECT_NE(text.find("Arduino Micro"), std::string::npos) << code(language);
      }
      if (language != Language::en && !error.isCancelled()) {
        LanguageOverride english(Language::en);
        EXPECT_NE(text, error.message()) << code(language);
      }
    }
  }
  EXPECT_TRUE(FlashError::cancelled().isCancelled());
  EXPECT_FALSE(FlashError::noSync().isCancelled());
}

TEST(JobContext, CancellableWaitNoticesCancellationQuickly) {
  JobContext context(nullptr);
  auto start = Clock::now();
  context.wait(0.05);
  EXPECT_GE(secondsSince(start), 0.05);

  std::atomic<Clock::time_point> cancelledAt{};
  std::thread canceller([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    cancelledAt = Clock::now();
    context.cancel();
  });
  EXPECT_THROW(context.wait(5.0), FlashError);
  auto noticed = Clock::now();
  canceller.join();
  // 0.02 s slices; the margin covers a loaded machine.
  EXPECT_LT(std::chrono::duration<double>(noticed - cancelledAt.load()).count(), 0.1);

  // Already cancelled: fails before sleeping at all.
  start = Clock::now();
  try {
    context.wait(10.0);
    FAIL() << "wait returned";
  } catch (const FlashError& error) {
    EXPECT_TRUE(error.isCancelled());
  }
  EXPECT_LT(secondsSince(start), 0.01);
  EXPECT_THROW(context.checkCancelled(), FlashError);
}

TEST(JobContext, EmitDeliversInOrderOnTheEmittingThreadWhileCancelIsBusy) {
  std::vector<FlashEvent> seen;
  std::thread::id seenOn;
  JobContext* self = nullptr;
  JobContext context([&](const FlashEvent& event) {
    seen.push_back(event);
    seenOn = std::this_thread::get_id();
    // Taking the lock from inside the callback must not deadlock: emit holds no lock.
    (void)self->isCancelled();
  });
  self = &context;
  std::atomic<bool> stop = false;
  std::thread hammer([&] {
    while (!stop)
      context.cancel();
  });
  for (int i = 1; i <= 500; ++i)
    context.emit(FlashEvents::Progress{i, 500});
  context.emit(FlashEvents::Resetting{});
  stop = true;
  hammer.join();
  ASSERT_EQ(seen.size(), 501u);
  for (int i = 0; i < 500; ++i)
    EXPECT_EQ(seen[i], FlashEvent(FlashEvents::Progress{i + 1, 500}));
  EXPECT_EQ(seen.back(), FlashEvent(FlashEvents::Resetting{}));
  EXPECT_EQ(seenOn, std::this_thread::get_id());
}
