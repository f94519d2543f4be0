// Replies of the Mega 2560's bootloader, or garbage in their place.
#include <cstdlib>

#include "FlashCore/AVR.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarnwick;
  ByteView bytes(data, size);
  while (auto frame = STK500v2::parse(bytes)) {
    if (frame->consumed == 0 || frame->consumed > bytes.size()) std::abort();
    // A frame found is exactly what framing its body gives.
    Bytes framed = STK500v2::message(frame->body, frame->sequence);
    auto again = STK500v2::parse(framed);
    if (!again || again->body != frame->body || again->consumed != framed.size()) std::abort();
    bytes = bytes.subspan(frame->consumed);
  }
  return 0;
}
