#pragma once
// zlib framing (RFC 1950) for the compressed ESP flash writes.

#include <cstdint>
#include <optional>

#include "FlashCore/Bytes.hpp"

namespace tarnwick::Zlib {

/// A complete zlib stream: 0x78 0x9C, raw deflate data, the Adler-32 of the input (big-endian).
Bytes compress(ByteView bytes);
/// The inflated bytes, cut at `expectedSize`; absent for any malformed or mismatching stream.
std::optional<Bytes> decompress(ByteView bytes, std::size_t expectedSize);
/// The Adler-32 checksum of the bytes (1 for none).
std::uint32_t adler32(ByteView bytes);

} // namespace tarnwick::Zlib
