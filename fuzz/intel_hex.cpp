// Intel HEX sketches: a damaged file ends in a ParseError, and no image grows past the limit.
#include <cstdlib>

#include "FlashCore/FirmwareImport.hpp"
#include "FlashCore/IntelHex.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarnwick;
  try {
    Bytes image = IntelHex::parse(std::string_view(reinterpret_cast<const char*>(data), size),
                                  FirmwareImport::hexSizeLimit);
    if (static_cast<std::int64_t>(image.size()) > FirmwareImport::hexSizeLimit) std::abort();
  } catch (const IntelHex::ParseError&) {
  }
  return 0;
}
