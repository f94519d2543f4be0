// What an ESP bootloader, or noise on the line, sends back: SLIP frames cut at any point, and
// the responses inside them.
#include <cstdlib>

#include "FlashCore/ESPPacket.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarnwick;
  if (size == 0) return 0;
  // The first byte chooses how the rest arrives: in pieces of 1 to 256 bytes.
  const std::size_t piece = std::size_t(data[0]) + 1;
  ByteView line(data + 1, size - 1);
  SLIP::Decoder decoder;
  for (std::size_t at = 0; at < line.size(); at += piece) {
    for (const Bytes& frame : decoder.feed(line.subspan(at, std::min(piece, line.size() - at)))) {
      if (frame.size() > SLIP::maximumFrameSize) std::abort();
      // A frame survives being framed again.
      SLIP::Decoder again;
      auto frames = again.feed(SLIP::encode(frame));
      if (!frame.empty() && (frames.size() != 1 || frames[0] != frame)) std::abort();
      if (auto response = ESPPacket::Response::parse(frame)) {
        for (std::size_t statusBytes : {2u, 4u}) {
          (void)response->status(statusBytes);
          (void)response->body(statusBytes);
        }
      }
    }
  }
  return 0;
}
