#pragma once
// SHA-256 and MD5 digests as lower-case hexadecimal text.

#include <string>

#include "FlashCore/Bytes.hpp"

namespace tarnwick::Digest {

/// The SHA-256 of the bytes: 64 lower-case hexadecimal digits.
std::string sha256Hex(ByteView bytes);
/// The MD5 of the bytes: 32 lower-case hexadecimal digits.
std::string md5Hex(ByteView bytes);
/// The raw 32-byte SHA-256 of the bytes.
Bytes sha256(ByteView bytes);
/// The raw 16-byte MD5 of the bytes.
Bytes md5(ByteView bytes);

} // namespace tarnwick::Digest
