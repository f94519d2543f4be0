#pragma once
// Ready-made products for engine tests, built from the test firmware generators.

#include "FlashCore/Product.hpp"

namespace tarnwick::testing {

struct ProductWithFiles {
  Product product;
  FileBytesMap files;
  /// Adds an enabled entry holding `bytes`.
  void add(FirmwareImage::Role role, std::uint32_t offset, Bytes bytes, std::string name);
};

/// Bootloader, partition table (Arduino's default layout), application and file system for `chip`.
ProductWithFiles espProduct(ESPChip chip, std::size_t applicationSize = 200 * 1024);
/// `size` bytes of this program's own machine code, repeated: firmware-like for compression,
/// neither random nor trivially small once compressed.
Bytes firmwareLike(std::size_t size);
/// One sketch of `size` bytes for `board`.
ProductWithFiles avrProduct(AVRBoard board, std::size_t size);
/// Whether `flash` holds every write the plan makes of `p` for `chip`: the flash after a run.
bool flashHoldsPlan(const Bytes& flash, const ProductWithFiles& p, ESPChip chip);

} // namespace tarnwick::testing
