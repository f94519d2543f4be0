#pragma once
// Intel HEX text written the way compilers write it, for tests of the reader and the importer.

#include <cstdint>
#include <string>

#include "FlashCore/Bytes.hpp"

namespace tarnwick::testing {

/// One record, ":LLAAAATT…CC" in upper case, with its checksum.
std::string hexRecord(std::uint8_t type, std::uint16_t address, ByteView data = {});

/// `image` placed at `start` in records of `perLine` bytes, an extended linear address record
/// before every 64 KB segment above the first that the data enters, then the end-of-file record.
/// Lines end in `eol`.
std::string intelHexOf(ByteView image, std::uint32_t start = 0, std::size_t perLine = 16,
                       const std::string& eol = "\n");

} // namespace tarnwick::testing
