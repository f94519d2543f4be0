#include "FlashEngine/FlashJob.hpp"

#include <chrono>
#include <cstdio>
#include <thread>

#include "FlashCore/Digest.hpp"
#include "FlashCore/ProductCheck.hpp"
#include "FlashEngine/ESPLoader.hpp"
#include "FlashSerial/NetworkPort.hpp"

namespace tarnwick {

namespace {
using Clock = std::chrono::steady_clock;
double since(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}
} // namespace

std::string formatMAC(const std::array<std::uint8_t, 6>& mac) {
  char text[18];
  std::snprintf(text, sizeof text, "%02X:%02X:%02X:%02X:%02X:%02X", mac[0], mac[1], mac[2], mac[3],
                mac[4], mac[5]);
  return text;
}

FlashJob::FlashJob(Product product, FileBytesMap files, std::string portPath, bool allowsTestDevice,
                   JobContext::EventHandler onEvent)
    : product_(std::move(product)), files_(std::move(files)), portPath_(std::move(portPath)),
      allowsTestDevice_(allowsTestDevice), context_(std::move(onEvent)) {}

FlashSummary FlashJob::run() {
  start_ = Clock::now();
  if (auto board = product_.target.avrBoard()) return runAVR(*board);
  return runESP(product_.target.espChip());
}

SerialLinkOptions FlashJob::linkOptions() {
  SerialLinkOptions options;
  options.allowsTestDevice = allowsTestDevice_;
  options.onLinesUnconfirmed = [this] { context_.emit(FlashEvents::LinesUnconfirmed{}); };
  options.checkCancelled = [this] { context_.checkCancelled(); };
  return options;
}

std::unique_ptr<SerialLink> FlashJob::openLink(std::int64_t baudRate) {
  if (!openLink_) return openSerialLink(portPath_, baudRate, linkOptions());
  std::unique_ptr<NetworkLink> link = std::move(openLink_);
  link->setOptions(linkOptions());
  link->open();
  if (link->baudRate() != baudRate) link->setBaudRate(baudRate);
  return link;
}

void FlashJob::hardReset(SerialLink& port) {
  if (!context_.isCancelled()) context_.emit(FlashEvents::Resetting{});
  port.setLines(false, true);
  // Not cancellable: the pulse must be long enough for the chip to restart.
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  port.setLines(std::nullopt, false);
}

FlashSummary FlashJob::runESP(std::optional<ESPChip> expected) {
  const auto cache = compressionCache ? compressionCache : std::make_shared<CompressionCache>();
  std::optional<std::vector<FlashWrite>> writesAhead;
  std::vector<std::shared_future<CompressionCache::Stream>> streams;
  auto compressAhead = [&](const std::vector<FlashWrite>& writes, ESPChip chip) {
    if (chip == ESPChip::esp8266) return; // its ROM takes plain data only
    for (const FlashWrite& write : writes)
      streams.push_back(cache->request(write.data));
  };
  // A product that names its chip has its plan before the board answers, so the compressor
  // works while the board is reset and synchronised. Should the plan fail, it fails again
  // below, in its usual place.
  if (expected) {
    try {
      writesAhead = FlashPlan::writes(product_, files_, *expected);
      compressAhead(*writesAhead, *expected);
    } catch (...) {
      writesAhead.reset();
      streams.clear();
    }
  }

  const auto link = openLink(115200);
  SerialLink& port = *link;
  try {
    ESPLoader loader(port, context_);
    ESPChip chip = loader.connect(product_.resetMode, usbJTAGFirst);
    if (expected && chip != *expected) {
      throw FlashError::wrongChip(std::string(displayName(chip)),
                                  std::string(displayName(*expected)));
    }
    std::optional<std::string> mac;
    if (auto bytes = loader.readMAC()) mac = formatMAC(*bytes);
    // Restarted into its firmware below, as every run ends, before anything is written.
    if (leaveBoardWithMAC && mac == leaveBoardWithMAC) throw SameBoard{};
    context_.emit(FlashEvents::Connected{std::string(displayName(chip)), mac});

    // A detected chip decides the plan; its compression overlaps the flash set-up.
    auto writes = writesAhead ? std::move(*writesAhead) : FlashPlan::writes(product_, files_, chip);
    if (!writesAhead) compressAhead(writes, chip);
    loader.attachFlash(FlashPlan::flashSize(writes, product_));
    if (loader.switchBaudRate(product_.flashBaud)) {
      context_.emit(FlashEvents::BaudRate{product_.flashBaud});
    }

    std::int64_t total = 0, done = 0;
    for (const auto& write : writes)
      total += static_cast<std::int64_t>(write.data.size());
    const bool verify = product_.verify && chip != ESPChip::esp8266;
    for (std::size_t i = 0; i < writes.size(); ++i) {
      const FlashWrite& write = writes[i];
      auto writeStart = Clock::now();
      const auto size = static_cast<std::int64_t>(write.data.size());
      context_.emit(FlashEvents::Writing{write.name, write.offset, size});
      CompressionCache::Stream stream;
      if (i < streams.size()) {
        while (streams[i].wait_for(std::chrono::duration<double>(JobContext::waitSliceSeconds)) !=
               std::future_status::ready)
          context_.checkCancelled();
        stream = streams[i].get();
      }
      loader.writeImage(write, done, total, stream.get());
      done += size;
      context_.emit(FlashEvents::Written{write.name, since(writeStart)});
      if (verify) {
        context_.emit(FlashEvents::Verifying{write.name});
        auto md5 = loader.flashMD5(write.offset, static_cast<std::uint32_t>(size));
        if (!md5 || *md5 != Digest::md5Hex(write.data)) throw FlashError::verifyFailed(write.name);
        context_.emit(FlashEvents::Verified{write.name});
      }
    }
    double seconds = since(start_);
    hardReset(port);
    port.close();
    return {std::string(displayName(chip)), mac, total, seconds, portPath_};
  } catch (...) {
    // A board left in its bootloader would not start; restart it whatever went wrong.
    try {
      hardReset(port);
    } catch (...) {
    }
    port.close();
    throw;
  }
}

FlashSummary FlashJob::runAVR(AVRBoard board) {
  // The Caterina bootloader comes up as a USB device of its own, which no serial server passes
  // on: refused before anything is opened.
  if (protocol(board) == AVRProtocol::avr109 && looksLikeNetworkPort(portPath_))
    throw FlashError::needsLocalPort(std::string(displayName(board)));
  auto images = product_.enabledImages();
  if (images.empty() || !files_.contains(images.front().id)) throw FlashError::avrNoResponse();
  const FirmwareImage& sketch = images.front();
  const Bytes& data = files_.at(sketch.id);

  AVRLoader loader(context_, board, product_.verify, openLink(baudRate(board)), findBootloaderPort,
                   linkOptions());
  const auto size = static_cast<std::int64_t>(data.size());
  auto writeStart = Clock::now();
  context_.emit(FlashEvents::Writing{sketch.fileName, 0, size});
  const std::int64_t total = product_.verify ? size * 2 : size;
  std::string chipName;
  try {
    chipName = loader.flash(data, [&](std::int64_t done) {
      context_.emit(FlashEvents::Progress{done, total});
    });
  } catch (...) {
    loader.port().close();
    throw;
  }
  context_.emit(FlashEvents::Written{sketch.fileName, since(writeStart)});
  if (product_.verify) context_.emit(FlashEvents::Verified{sketch.fileName});
  context_.emit(FlashEvents::Resetting{});
  double seconds = since(start_);
  std::string path = loader.port().path();
  loader.port().close();
  return {chipName, std::nullopt, size, seconds, path};
}

} // namespace tarnwick
