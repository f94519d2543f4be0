#include "FlashCore/Zlib.hpp"

#include <stdexcept>
#include <zlib.h>

namespace tarnwick::Zlib {

namespace {
void appendBigEndian(Bytes& out, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8)
    out.push_back(static_cast<std::uint8_t>(value >> shift));
}
} // namespace

std::uint32_t adler32(ByteView bytes) {
  constexpr std::uint32_t modulus = 65521;
  constexpr std::size_t block = 5552; // the most bytes before the sums can overflow 32 bits
  std::uint32_t a = 1, b = 0;
  std::size_t i = 0;
  while (i < bytes.size()) {
    std::size_t end = std::min(bytes.size(), i + block);
    for (; i < end; ++i) {
      a += bytes[i];
      b += a;
    }
    a %= modulus;
    b %= modulus;
  }
  return b << 16 | a;
}

Bytes compress(ByteView bytes) {
  if (bytes.empty()) return {0x78, 0x9C, 0x03, 0x00, 0x00, 0x00, 0x00, 0x01};
  Bytes out{0x78, 0x9C};
  std::size_t bound = bytes.size() + bytes.size() / 8 + 1024;
  out.resize(2 + bound);

  z_stream stream{};
  // Negative window bits: raw deflate, the header and trailer are written here.
  if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) !=
      Z_OK) {
    throw std::runtime_error("deflateInit2 failed");
  }
  stream.next_in = const_cast<Bytef*>(bytes.data());
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = out.data() + 2;
  stream.avail_out = static_cast<uInt>(bound);
  int result = deflate(&stream, Z_FINISH);
  std::size_t produced = stream.total_out;
  deflateEnd(&stream);
  if (result != Z_STREAM_END) throw std::runtime_error("deflate did not finish");
  out.resize(2 + produced);
  appendBigEndian(out, adler32(bytes));
  return out;
}

std::optional<Bytes> decompress(ByteView bytes, std::size_t expectedSize) {
  if (bytes.size() < 6) return std::nullopt;
  if (((bytes[0] << 8) | bytes[1]) % 31 != 0) return std::nullopt;
  Bytes out(std::max<std::size_t>(expectedSize, 1));

  z_stream stream{};
  if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) return std::nullopt;
  stream.next_in = const_cast<Bytef*>(bytes.data() + 2);
  stream.avail_in = static_cast<uInt>(bytes.size() - 6);
  stream.next_out = out.data();
  stream.avail_out = static_cast<uInt>(out.size());
  int result = inflate(&stream, Z_FINISH);
  std::size_t produced = stream.total_out;
  inflateEnd(&stream);
  if (result != Z_STREAM_END && result != Z_BUF_ERROR && result != Z_OK) return std::nullopt;
  out.resize(produced);

  std::uint32_t stored = static_cast<std::uint32_t>(bytes[bytes.size() - 4]) << 24 |
                         static_cast<std::uint32_t>(bytes[bytes.size() - 3]) << 16 |
                         static_cast<std::uint32_t>(bytes[bytes.size() - 2]) << 8 |
                         bytes[bytes.size() - 1];
  if (adler32(out) != stored) return std::nullopt;
  return out;
}

} // namespace tarnwick::Zlib
