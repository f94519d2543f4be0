#include "support/HexFiles.hpp"

#include <algorithm>
#include <cstdio>

namespace tarnwick::testing {

std::string hexRecord(std::uint8_t type, std::uint16_t address, ByteView data) {
  Bytes bytes{static_cast<std::uint8_t>(data.size()), static_cast<std::uint8_t>(address >> 8),
              static_cast<std::uint8_t>(address & 0xFF), type};
  bytes.insert(bytes.end(), data.begin(), data.end());
  unsigned sum = 0;
  for (std::uint8_t b : bytes)
    sum += b;
  bytes.push_back(static_cast<std::uint8_t>(-sum & 0xFF));
  std::string text = ":";
  char pair[3];
  for (std::uint8_t b : bytes) {
    std::snprintf(pair, sizeof pair, "%02X", b);
    text += pair;
  }
  return text;
}

std::string intelHexOf(ByteView image, std::uint32_t start, std::size_t perLine,
                       const std::string& eol) {
  std::string text;
  text.reserve(image.size() / perLine * (perLine * 2 + 11 + eol.size()) + 64);
  // Reading starts in segment 0, so like linkers the writer announces only later segments.
  std::int64_t segment = 0;
  std::size_t done = 0;
  while (done < image.size()) {
    const std::uint32_t address = start + static_cast<std::uint32_t>(done);
    if (static_cast<std::int64_t>(address >> 16) != segment) {
      segment = address >> 16;
      const std::uint8_t upper[] = {static_cast<std::uint8_t>(segment >> 8),
                                    static_cast<std::uint8_t>(segment & 0xFF)};
      text += hexRecord(0x04, 0, upper) + eol;
    }
    // A record stays inside its segment, as linkers write them.
    const std::size_t room = 0x10000 - (address & 0xFFFF);
    const std::size_t count = std::min({perLine, image.size() - done, room});
    text +=
        hexRecord(0x00, static_cast<std::uint16_t>(address & 0xFFFF), image.subspan(done, count)) +
        eol;
    done += count;
  }
  return text + hexRecord(0x01, 0) + eol;
}

} // namespace tarnwick::testing
