#include "support/RecordingLink.hpp"

#include <chrono>
#include <cstdio>
#include <thread>

namespace tarnwick::testing {

void RecordingLink::setBaudRate(std::int64_t rate) {
  steps.push_back("baud " + std::to_string(rate));
  if (refuseBaudRate) throw FlashPortError::unsupportedBaudRate(rate);
  baud_ = rate;
}

void RecordingLink::setLines(std::optional<bool> dtr, std::optional<bool> rts) {
  auto text = [](std::optional<bool> v) { return v ? (*v ? "1" : "0") : "-"; };
  steps.push_back(std::string("DTR=") + text(dtr) + " RTS=" + text(rts));
}

void RecordingLink::recordWait(double seconds) {
  char text[32];
  std::snprintf(text, sizeof text, "wait %.2f", seconds);
  steps.push_back(text);
}

std::vector<std::string> RecordingLink::lineSteps() const {
  std::vector<std::string> result;
  for (const auto& step : steps) {
    if (step.starts_with("DTR") || step.starts_with("wait")) result.push_back(step);
  }
  return result;
}

void RecordingLink::write(ByteView bytes) {
  for (const Bytes& frame : decoder_.feed(bytes)) {
    if (frame.size() < 8) continue;
    char text[32];
    std::snprintf(text, sizeof text, "write 0x%02X", frame[1]);
    steps.push_back(text);
    if (failWrites.contains(frame[1])) throw FlashPortError::writeFailed(5);
    if (!answerRequests) continue;
    std::uint32_t value = 0;
    if (frame[1] == opcode(ESPCommand::readRegister) && frame.size() >= 12) {
      auto it = registers.find(readLE32(ByteView(frame).subspan(8, 4)));
      if (it != registers.end()) value = it->second;
    }
    auto special = answerData.find(frame[1]);
    Bytes data = special != answerData.end() ? special->second : Bytes{0, 0, 0, 0};
    Bytes response{0x01, frame[1], static_cast<std::uint8_t>(data.size()), 0};
    for (int i = 0; i < 4; ++i)
      response.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    response.insert(response.end(), data.begin(), data.end());
    Bytes framed = SLIP::encode(response);
    pending_.insert(pending_.end(), framed.begin(), framed.end());
  }
}

Bytes RecordingLink::read(double timeout) {
  if (onRead) onRead();
  if (failReads) throw FlashPortError::disconnected();
  if (pending_.empty()) {
    // Silence takes its time, as on a real line.
    std::this_thread::sleep_for(std::chrono::duration<double>(std::max(timeout, 0.0)));
    return {};
  }
  Bytes out;
  out.swap(pending_);
  return out;
}

Bytes RecordingLink::read(std::size_t count, double timeout) {
  Bytes out = read(timeout);
  if (out.size() > count) {
    pending_.assign(out.begin() + static_cast<long>(count), out.end());
    out.resize(count);
  }
  return out;
}

} // namespace tarnwick::testing
