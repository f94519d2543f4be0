#include "Simulator/SimulatedAVR.hpp"

#include <algorithm>
#include <chrono>
#include <poll.h>
#include <unistd.h>

namespace tarnwick::simulator {

SimulatedAVR::SimulatedAVR(SimulatedAVROptions options)
    : options_(std::move(options)),
      flash_(static_cast<std::size_t>(chip(options_.board).flashSize), 0xFF) {
  thread_ = std::thread([this] { serve(); });
}

SimulatedAVR::~SimulatedAVR() {
  stop_ = true;
  thread_.join();
}

Bytes SimulatedAVR::flash() const {
  std::lock_guard lock(mutex_);
  return flash_;
}

int SimulatedAVR::commands(std::uint8_t first) const {
  std::lock_guard lock(mutex_);
  return counts_[first];
}

std::vector<Bytes> SimulatedAVR::loadAddressBodies() const {
  std::lock_guard lock(mutex_);
  return loadAddresses_;
}

std::array<std::uint8_t, 3> SimulatedAVR::signature() const {
  return options_.signature ? *options_.signature : chip(options_.board).signature;
}

void SimulatedAVR::count(std::uint8_t first) {
  std::lock_guard lock(mutex_);
  ++counts_[first];
}

void SimulatedAVR::writeFlash(std::uint32_t byteAddress, const Bytes& data) {
  std::lock_guard lock(mutex_);
  for (std::size_t i = 0; i < data.size() && byteAddress + i < flash_.size(); ++i) {
    flash_[byteAddress + i] = data[i];
  }
  ++pagesWritten_;
}

Bytes SimulatedAVR::readFlash(std::uint32_t byteAddress, std::size_t length) {
  std::lock_guard lock(mutex_);
  Bytes out;
  for (std::size_t i = 0; i < length; ++i) {
    out.push_back(byteAddress + i < flash_.size() ? flash_[byteAddress + i] : 0xFF);
  }
  if (options_.corruptReadBack && !out.empty()) out[out.size() / 2] ^= 0x01;
  return out;
}

void SimulatedAVR::reply(Bytes bytes) {
  if (gone_ || options_.silent) return;
  if (options_.garbage) bytes.insert(bytes.begin(), {0x00, 0xFE});
  if (options_.paceLine) {
    std::this_thread::sleep_for(std::chrono::duration<double>(
        static_cast<double>(bytes.size()) * 10.0 / static_cast<double>(baudRate(options_.board))));
  }
  try {
    terminal_.send(bytes);
    bytesSent_ += bytes.size();
  } catch (const std::exception&) {
  }
}

namespace {
std::int64_t steadyNanoseconds() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}
} // namespace

void SimulatedAVR::start(BoardStart how) {
  if (how == BoardStart::bootloader) {
    restartPending_ = true;
    bootloaderUntil_ = steadyNanoseconds() +
                       static_cast<std::int64_t>(options_.bootloaderWindowSeconds * 1e9);
  } else {
    bootloaderUntil_ = 0;
  }
}

bool SimulatedAVR::bootloaderRunsFor(bool byteArrived) {
  const std::int64_t until = bootloaderUntil_;
  if (until < 0) return true;
  const std::int64_t now = steadyNanoseconds();
  if (now > until) return false;
  if (byteArrived)
    bootloaderUntil_ = now + static_cast<std::int64_t>(options_.bootloaderWindowSeconds * 1e9);
  return true;
}

void SimulatedAVR::serve() {
  Bytes input;
  std::uint8_t chunk[4096];
  while (!stop_ && !gone_) {
    pollfd p{terminal_.controller(), POLLIN, 0};
    if (::poll(&p, 1, 20) <= 0) continue;
    ssize_t n = ::read(terminal_.controller(), chunk, sizeof chunk);
    if (n <= 0) {
      // Nobody has the device open: a reset or the 1200-baud touch closed it.
      input.clear();
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
      continue;
    }
    bytesReceived_ += static_cast<std::uint64_t>(n);
    if (restartPending_.exchange(false)) input.clear();
    // The application runs and takes no part in the bootloader's protocol.
    if (!bootloaderRunsFor(true)) {
      input.clear();
      continue;
    }
    if (options_.paceLine) {
      std::this_thread::sleep_for(std::chrono::duration<double>(
          static_cast<double>(n) * 10.0 / static_cast<double>(baudRate(options_.board))));
    }
    input.insert(input.end(), chunk, chunk + n);
    for (;;) {
      // Pulled out after so many pages (none: before the bootloader answered at all).
      if (options_.disconnectAfterPages && pagesWritten_ >= *options_.disconnectAfterPages) {
        gone_ = true;
        terminal_.closeController();
        break;
      }
      bool handled = false;
      switch (protocol(options_.board)) {
      case AVRProtocol::stk500v1: handled = handleSTK500v1(input); break;
      case AVRProtocol::stk500v2: handled = handleSTK500v2(input); break;
      case AVRProtocol::avr109: handled = handleAVR109(input); break;
      }
      if (!handled || gone_) break;
    }
  }
}

bool SimulatedAVR::handleSTK500v1(Bytes& input) {
  if (input.empty()) return false;
  const std::uint8_t command = input[0];
  std::size_t length = 2;
  switch (command) {
  case 0x55: length = 4; break;
  case 0x74: length = 5; break;
  case 0x64:
    if (input.size() < 4) return false;
    length = 5 + static_cast<std::size_t>(input[1] << 8 | input[2]);
    break;
  case 0x30:
  case 0x75:
  case 0x50:
  case 0x51: break;
  default:
    // Optiboot drops what it does not understand up to the end of the packet.
    input.erase(input.begin());
    return true;
  }
  if (input.size() < length) return false;
  Bytes message(input.begin(), input.begin() + static_cast<long>(length));
  input.erase(input.begin(), input.begin() + static_cast<long>(length));
  count(command);
  if (message.back() != STK500v1::endOfPacket || options_.failCommand == command) {
    reply({0x15}); // STK_NOSYNC
    return true;
  }
  Bytes data;
  switch (command) {
  case 0x75: {
    auto sig = signature();
    data.assign(sig.begin(), sig.end());
    break;
  }
  case 0x55: wordAddress_ = static_cast<std::uint32_t>(message[1] | message[2] << 8); break;
  case 0x64: writeFlash(wordAddress_ * 2, Bytes(message.begin() + 4, message.end() - 1)); break;
  case 0x74:
    data = readFlash(wordAddress_ * 2, static_cast<std::size_t>(message[1] << 8 | message[2]));
    break;
  default: break;
  }
  Bytes answer{STK500v1::inSync};
  answer.insert(answer.end(), data.begin(), data.end());
  answer.push_back(STK500v1::ok);
  reply(answer);
  return true;
}

bool SimulatedAVR::handleSTK500v2(Bytes& input) {
  auto start = std::find(input.begin(), input.end(), STK500v2::messageStart);
  input.erase(input.begin(), start);
  if (input.size() < 6) return false;
  auto frame = STK500v2::parse(input);
  if (!frame) {
    std::size_t length = static_cast<std::size_t>(input[2] << 8 | input[3]);
    if (input[4] == STK500v2::token && input.size() < length + 6) return false;
    input.erase(input.begin()); // a damaged frame: look for the next start
    return true;
  }
  input.erase(input.begin(), input.begin() + static_cast<long>(frame->consumed));
  const Bytes& body = frame->body;
  if (body.empty()) return true;
  const std::uint8_t command = body[0];
  count(command);
  Bytes answer{command, STK500v2::statusOK};
  if (options_.failCommand == command) {
    answer[1] = 0xC0; // STATUS_CMD_FAILED
  } else {
    switch (command) {
    case 0x01: answer.insert(answer.end(), {0x08, 'A', 'V', 'R', 'I', 'S', 'P', '_', '2'}); break;
    case 0x1B:
      answer.insert(answer.end(),
                    {body.size() > 4 ? signature()[body[4] % 3] : std::uint8_t{0}, 0x00});
      break;
    case 0x06:
      if (body.size() >= 5) {
        wordAddress_ =
            static_cast<std::uint32_t>(body[1] << 24 | body[2] << 16 | body[3] << 8 | body[4]) &
            0x7FFFFFFF;
        std::lock_guard lock(mutex_);
        loadAddresses_.push_back(body);
      }
      break;
    case 0x13:
      if (body.size() >= 10) {
        Bytes data(body.begin() + 10, body.end());
        writeFlash(wordAddress_ * 2, data);
        wordAddress_ += static_cast<std::uint32_t>(data.size() / 2);
      }
      break;
    case 0x14:
      if (body.size() >= 3) {
        Bytes data = readFlash(wordAddress_ * 2, static_cast<std::size_t>(body[1] << 8 | body[2]));
        answer.insert(answer.end(), data.begin(), data.end());
        answer.push_back(0x00);
        wordAddress_ += static_cast<std::uint32_t>(data.size() / 2);
      }
      break;
    default: break;
    }
  }
  reply(STK500v2::message(answer, frame->sequence));
  return true;
}

bool SimulatedAVR::handleAVR109(Bytes& input) {
  if (input.empty()) return false;
  const std::uint8_t command = input[0];
  std::size_t length = 1;
  if (command == 'A') length = 3;
  if (command == 'g') length = 4;
  if (command == 'B') {
    if (input.size() < 4) return false;
    length = 4 + static_cast<std::size_t>(input[1] << 8 | input[2]);
  }
  if (input.size() < length) return false;
  Bytes message(input.begin(), input.begin() + static_cast<long>(length));
  input.erase(input.begin(), input.begin() + static_cast<long>(length));
  count(command);
  if (options_.failCommand == command) {
    reply({'?'});
    return true;
  }
  auto sig = signature();
  switch (command) {
  case 'S': reply({'C', 'A', 'T', 'E', 'R', 'I', 'N'}); break;
  case 's': reply({sig[2], sig[1], sig[0]}); break;
  case 'A':
    wordAddress_ = static_cast<std::uint32_t>(message[1] << 8 | message[2]);
    reply({AVR109::ok});
    break;
  case 'B': {
    Bytes data(message.begin() + 4, message.end());
    writeFlash(wordAddress_ * 2, data);
    wordAddress_ += static_cast<std::uint32_t>(data.size() / 2);
    reply({AVR109::ok});
    break;
  }
  case 'g': {
    Bytes data =
        readFlash(wordAddress_ * 2, static_cast<std::size_t>(message[1] << 8 | message[2]));
    wordAddress_ += static_cast<std::uint32_t>(data.size() / 2);
    reply(data);
    break;
  }
  case 'P':
  case 'L':
  case 'E': reply({AVR109::ok}); break;
  default: reply({'?'}); break;
  }
  return true;
}

} // namespace tarnwick::simulator
