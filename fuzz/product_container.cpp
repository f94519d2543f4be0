// A single-file product as it might arrive by mail or on a stick: every refusal must be a
// PackageError or a decoding error, never a crash, a leak or unbounded memory.
#include <cstdlib>

#include "FlashCore/Digest.hpp"
#include "FlashCore/ProductPackage.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarnwick;
  try {
    ProductPackage package = ProductPackage::decode(ByteView(data, size));
    // Whatever is accepted has every file its record names, with the checksum it claims.
    for (const auto& image : package.product.images) {
      auto file = package.files.find(image.id);
      if (file == package.files.end() || Digest::sha256Hex(file->second) != image.sha256)
        std::abort();
    }
  } catch (const PackageError&) {
  } catch (const ProductDecodingError&) {
  }
  return 0;
}
