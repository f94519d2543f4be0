#pragma once
// Byte buffers: the currency of every protocol, file and image in the program.

#include <cstdint>
#include <span>
#include <vector>

namespace tarnwick {

/// A growable buffer of bytes.
using Bytes = std::vector<std::uint8_t>;

/// A read-only view of bytes.
using ByteView = std::span<const std::uint8_t>;

} // namespace tarnwick
