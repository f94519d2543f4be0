#include <gtest/gtest.h>

#include <random>
#include <zlib.h>

#include "FlashCore/Zlib.hpp"

using namespace tarnwick;

namespace {
// Inflates with zlib's own framing check, independently of Zlib::decompress.
Bytes inflateWithZlib(const Bytes& stream, std::size_t size) {
  Bytes out(size + 16);
  uLongf length = static_cast<uLongf>(out.size());
  EXPECT_EQ(uncompress(out.data(), &length, stream.data(), static_cast<uLong>(stream.size())),
            Z_OK);
  out.resize(length);
  return out;
}
} // namespace

TEST(Zlib, CompressedStreamsInflateToTheInput) {
  const Bytes empty = Zlib::compress({});
  EXPECT_EQ(Bytes(empty.begin(), empty.begin() + 2), (Bytes{0x78, 0xDA})); // strongest level
  EXPECT_EQ(Bytes(empty.end() - 4, empty.end()), (Bytes{0x00, 0x00, 0x00, 0x01}));
  EXPECT_EQ(Zlib::decompress(empty, 0), Bytes{});
  Bytes a = Zlib::compress(Bytes{'a'});
  EXPECT_EQ(Bytes(a.end() - 4, a.end()), (Bytes{0x00, 0x62, 0x00, 0x62}));
  EXPECT_EQ(Zlib::decompress(a, 1), (Bytes{'a'}));
  EXPECT_FALSE(Zlib::decompress(a, 0));

  std::mt19937 random(7);
  for (std::size_t size : {1u, 2u, 100u, 1023u, 1024u, 5551u, 5552u, 5553u, 70000u, 300000u}) {
    Bytes randomBytes(size), firmware(size);
    for (auto& b : randomBytes)
      b = static_cast<std::uint8_t>(random());
    // Firmware-like: repeated instruction patterns with some variation and 0xFF padding.
    for (std::size_t i = 0; i < size; ++i) {
      firmware[i] = i % 4096 > 3500 ? 0xFF : static_cast<std::uint8_t>((i * 13 / 7) ^ (i >> 9));
    }
    for (const Bytes& input : {randomBytes, firmware}) {
      Bytes stream = Zlib::compress(input);
      EXPECT_EQ(inflateWithZlib(stream, input.size()), input) << size;
      EXPECT_EQ(Zlib::decompress(stream, input.size()), input);
      EXPECT_EQ(Zlib::adler32(input), static_cast<std::uint32_t>(::adler32(
                                          1, input.data(), static_cast<uInt>(input.size()))));
      // A stream that inflates to more than expected is refused.
      if (size > 1) {
        EXPECT_FALSE(Zlib::decompress(stream, input.size() - 1));
      }
    }
  }
  EXPECT_EQ(Zlib::adler32({}), 1u);
}

TEST(Zlib, DamagedStreamsAreRejected) {
  Bytes input(5000);
  for (std::size_t i = 0; i < input.size(); ++i)
    input[i] = static_cast<std::uint8_t>(i % 251);
  Bytes stream = Zlib::compress(input);
  Bytes header = stream;
  header[1] = 0x9D;
  EXPECT_FALSE(Zlib::decompress(header, input.size()));
  Bytes trailer = stream;
  trailer.back() ^= 1;
  EXPECT_FALSE(Zlib::decompress(trailer, input.size()));
  EXPECT_FALSE(Zlib::decompress(Bytes(stream.begin(), stream.begin() + 5), input.size()));
  EXPECT_FALSE(Zlib::decompress(Bytes(stream.begin(), stream.end() - 10), input.size()));
  for (std::size_t at = 2; at < stream.size() - 4; at += 7) {
    Bytes flipped = stream;
    flipped[at] ^= 0x5A;
    auto result = Zlib::decompress(flipped, input.size());
    if (result) {
      EXPECT_EQ(*result, input); // a flip that leaves the data intact is fine
    }
  }
}
