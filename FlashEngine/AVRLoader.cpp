#include "FlashEngine/AVRLoader.hpp"

#include <algorithm>
#include <chrono>

#include "FlashSerial/FlashPortError.hpp"
#include "FlashSerial/SerialDevices.hpp"

namespace tarnwick {

namespace {

using Clock = std::chrono::steady_clock;

double secondsUntil(Clock::time_point deadline) {
  return std::chrono::duration<double>(deadline - Clock::now()).count();
}

Clock::time_point deadlineAfter(double seconds) {
  return Clock::now() +
         std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

} // namespace

AVRLoader::AVRLoader(JobContext& context, AVRBoard board, bool verify,
                     std::unique_ptr<SerialLink> port, PortFinder findBootloaderPort,
                     SerialLinkOptions linkOptions)
    : context_(context), board_(board), verify_(verify), port_(std::move(port)),
      findBootloaderPort_(std::move(findBootloaderPort)), linkOptions_(std::move(linkOptions)) {
  if (!findBootloaderPort_) {
    findBootloaderPort_ = [this](const std::set<std::string>& before, const std::string& oldPath) {
      return waitForBootloaderPort(before, oldPath, context_);
    };
  }
}

std::string AVRLoader::flash(ByteView sketch, const std::function<void(std::int64_t)>& progress) {
  const auto size = static_cast<std::int64_t>(sketch.size());
  if (size > maxSketchSize(board_)) throw FlashError::sketchTooLarge(size, maxSketchSize(board_));
  const auto pageSize = static_cast<std::size_t>(chip(board_).pageSize);
  std::vector<Page> pages;
  for (std::size_t at = 0; at < sketch.size(); at += pageSize) {
    Page page{static_cast<std::int64_t>(at),
              Bytes(sketch.begin() + static_cast<long>(at),
                    sketch.begin() + static_cast<long>(std::min(at + pageSize, sketch.size())))};
    page.data.resize(pageSize, 0xFF);
    pages.push_back(std::move(page));
  }
  sketchSize_ = size;
  switch (protocol(board_)) {
  case AVRProtocol::stk500v1: flashSTK500v1(pages, progress); break;
  case AVRProtocol::stk500v2: flashSTK500v2(pages, progress); break;
  case AVRProtocol::avr109: flashAVR109(pages, progress); break;
  }
  return chip(board_).name;
}

void AVRLoader::reset() {
  port_->setLines(false, false);
  context_.wait(0.25);
  port_->setLines(true, true);
  context_.wait(0.05);
  port_->flushInput();
}

void AVRLoader::checkSignature(const Bytes& found) {
  const AVRChip& expected = chip(board_);
  if (!std::equal(found.begin(), found.end(), expected.signature.begin(),
                  expected.signature.end())) {
    throw FlashError::wrongSignature(found, expected.name);
  }
  context_.emit(FlashEvents::Connected{expected.name, std::nullopt});
}

void AVRLoader::reportWritten(const Page& page, const std::function<void(std::int64_t)>& progress) {
  if (progress) progress(std::min(page.address + chip(board_).pageSize, sketchSize_));
}

void AVRLoader::reportVerified(const Page& page,
                               const std::function<void(std::int64_t)>& progress) {
  if (progress) progress(sketchSize_ + std::min(page.address + chip(board_).pageSize, sketchSize_));
}

// ---- STK500v1 ----

Bytes AVRLoader::stk500v1(const Bytes& message, std::size_t dataBytes, double timeout) {
  port_->write(message);
  Bytes reply = port_->read(dataBytes + 2, timeout);
  if (reply.size() != dataBytes + 2 || reply.front() != STK500v1::inSync ||
      reply.back() != STK500v1::ok) {
    throw FlashError::avrNoResponse();
  }
  return Bytes(reply.begin() + 1, reply.end() - 1);
}

void AVRLoader::flashSTK500v1(const std::vector<Page>& pages,
                              const std::function<void(std::int64_t)>& progress) {
  bool contact = false;
  for (int attempt = 1; attempt <= 4 && !contact; ++attempt) {
    context_.emit(FlashEvents::Connecting{attempt, false});
    reset();
    for (int attemptSync = 0; attemptSync < 5 && !contact; ++attemptSync) {
      context_.checkCancelled();
      port_->write(STK500v1::getSync());
      Bytes reply = port_->read(2, 0.2);
      contact = reply == Bytes{STK500v1::inSync, STK500v1::ok};
    }
  }
  if (!contact) throw FlashError::avrNoResponse();
  port_->flushInput();
  checkSignature(stk500v1(STK500v1::readSignature(), 3, 1.0));
  stk500v1(STK500v1::enterProgrammingMode(), 0, 1.0);
  for (const Page& page : pages) {
    context_.checkCancelled();
    stk500v1(STK500v1::loadAddress(page.address), 0, 1.0);
    stk500v1(STK500v1::programPage(page.data), 0, 2.0);
    reportWritten(page, progress);
  }
  if (verify_) {
    context_.emit(FlashEvents::Verifying{std::string(displayName(board_))});
    for (const Page& page : pages) {
      context_.checkCancelled();
      stk500v1(STK500v1::loadAddress(page.address), 0, 1.0);
      Bytes read = stk500v1(STK500v1::readPage(static_cast<std::int64_t>(page.data.size())),
                            page.data.size(), 2.0);
      if (read != page.data) throw FlashError::verifyFailed(std::string(displayName(board_)));
      reportVerified(page, progress);
    }
  }
  stk500v1(STK500v1::leaveProgrammingMode(), 0, 1.0);
}

// ---- STK500v2 ----

Bytes AVRLoader::stk500v2(const Bytes& body, double timeout) {
  ++sequence_;
  port_->write(STK500v2::message(body, sequence_));
  auto deadline = deadlineAfter(timeout);
  Bytes collected;
  for (;;) {
    if (auto frame = STK500v2::parse(collected)) {
      if (frame->sequence == sequence_) {
        if (frame->body.size() < 2 || frame->body[0] != body[0] ||
            frame->body[1] != STK500v2::statusOK) {
          throw FlashError::avrNoResponse();
        }
        return frame->body;
      }
      // A late answer to an earlier request: drop it and keep waiting for ours.
      collected.erase(collected.begin(), collected.begin() + static_cast<long>(frame->consumed));
      continue;
    }
    double left = secondsUntil(deadline);
    if (left <= 0) throw FlashError::avrNoResponse();
    context_.checkCancelled();
    Bytes more = port_->read(std::min(left, 0.1));
    collected.insert(collected.end(), more.begin(), more.end());
  }
}

void AVRLoader::flashSTK500v2(const std::vector<Page>& pages,
                              const std::function<void(std::int64_t)>& progress) {
  bool contact = false;
  for (int attempt = 1; attempt <= 4 && !contact; ++attempt) {
    context_.emit(FlashEvents::Connecting{attempt, false});
    reset();
    try {
      stk500v2(STK500v2::signOn(), 0.6);
      contact = true;
    } catch (const FlashError&) {
    } catch (const FlashPortError& error) {
      // A line that hiccups during the reset is a missed try; a port that is gone stays gone.
      if (error.kind() == FlashPortError::Kind::disconnected) throw;
    }
  }
  if (!contact) throw FlashError::avrNoResponse();
  Bytes signature;
  for (std::uint8_t index = 0; index < 3; ++index) {
    Bytes answer = stk500v2(STK500v2::readSignature(index), 1.0);
    if (answer.size() < 3) throw FlashError::avrNoResponse();
    signature.push_back(answer[2]);
  }
  checkSignature(signature);
  stk500v2(STK500v2::enterProgrammingMode(), 1.0);
  const bool extended = chip(board_).flashSize > 131072;
  for (const Page& page : pages) {
    context_.checkCancelled();
    stk500v2(STK500v2::loadAddress(page.address, extended), 1.0);
    stk500v2(STK500v2::programFlash(page.data), 2.0);
    reportWritten(page, progress);
  }
  if (verify_) {
    context_.emit(FlashEvents::Verifying{std::string(displayName(board_))});
    for (const Page& page : pages) {
      context_.checkCancelled();
      stk500v2(STK500v2::loadAddress(page.address, extended), 1.0);
      Bytes answer =
          stk500v2(STK500v2::readFlash(static_cast<std::int64_t>(page.data.size())), 2.0);
      if (answer.size() < page.data.size() + 2 ||
          !std::equal(page.data.begin(), page.data.end(), answer.begin() + 2)) {
        throw FlashError::verifyFailed(std::string(displayName(board_)));
      }
      reportVerified(page, progress);
    }
  }
  stk500v2(STK500v2::leaveProgrammingMode(), 1.0);
}

// ---- AVR109 ----

void AVRLoader::avr109(const Bytes& command, double timeout) {
  port_->write(command);
  Bytes reply = port_->read(1, timeout);
  if (reply != Bytes{AVR109::ok}) throw FlashError::avrNoResponse();
}

Bytes AVRLoader::avr109Read(const Bytes& command, std::size_t count, double timeout) {
  port_->write(command);
  Bytes reply = port_->read(count, timeout);
  if (reply.size() < count) throw FlashError::avrNoResponse();
  return reply;
}

void AVRLoader::flashAVR109(const std::vector<Page>& pages,
                            const std::function<void(std::int64_t)>& progress) {
  context_.emit(FlashEvents::Connecting{1, false});
  auto listed = serialDevicePaths();
  std::set<std::string> before(listed.begin(), listed.end());
  const std::string oldPath = port_->path();
  port_->close();

  // Opening at 1200 baud and dropping DTR tells the sketch to restart into Caterina.
  try {
    auto touch = openSerialLink(oldPath, 1200, linkOptions_);
    touch->setLines(false, std::nullopt);
    touch->close();
  } catch (const FlashPortError&) {
  }

  const std::string path = findBootloaderPort_(before, oldPath);
  if (path != oldPath) context_.emit(FlashEvents::PortChanged{path});
  for (int attempt = 1;; ++attempt) {
    try {
      port_ = openSerialLink(path, baudRate(board_), linkOptions_);
      break;
    } catch (const FlashPortError&) {
      context_.wait(0.2);
      if (attempt == 10) throw FlashError::bootloaderPortNotFound();
    }
  }

  avr109Read(AVR109::softwareIdentifier(), 7, 1.0);
  Bytes signature = avr109Read(AVR109::readSignature(), 3, 1.0);
  std::reverse(signature.begin(), signature.end());
  checkSignature(signature);
  avr109(AVR109::enterProgrammingMode(), 1.0);
  for (const Page& page : pages) {
    context_.checkCancelled();
    avr109(AVR109::setAddress(page.address), 1.0);
    avr109(AVR109::writeBlock(page.data), 2.0);
    reportWritten(page, progress);
  }
  if (verify_) {
    context_.emit(FlashEvents::Verifying{std::string(displayName(board_))});
    for (const Page& page : pages) {
      context_.checkCancelled();
      avr109(AVR109::setAddress(page.address), 1.0);
      Bytes read = avr109Read(AVR109::readBlock(static_cast<std::int64_t>(page.data.size())),
                              page.data.size(), 2.0);
      if (read != page.data) throw FlashError::verifyFailed(std::string(displayName(board_)));
      reportVerified(page, progress);
    }
  }
  avr109(AVR109::leaveProgrammingMode(), 1.0);
  avr109(AVR109::exitBootloader(), 1.0);
}

std::string AVRLoader::waitForBootloaderPort(const std::set<std::string>& before,
                                             const std::string& oldPath,
                                             const JobContext& context) {
  auto deadline = deadlineAfter(8.0);
  bool oldGone = false;
  while (secondsUntil(deadline) > 0) {
    context.wait(0.1);
    auto listed = serialDevicePaths();
    std::vector<std::string> fresh;
    for (const auto& path : listed) {
      if (!before.contains(path)) fresh.push_back(path);
    }
    if (!fresh.empty()) return *std::min_element(fresh.begin(), fresh.end());
    bool present = std::find(listed.begin(), listed.end(), oldPath) != listed.end();
    if (!present) oldGone = true;
    if (oldGone && present) return oldPath;
  }
  throw FlashError::bootloaderPortNotFound();
}

} // namespace tarnwick
