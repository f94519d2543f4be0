// product.json from a product file: decoding fails only with ProductDecodingError, and what
// decodes is written back to a record that decodes to the same product.
#include <cstdlib>

#include "FlashCore/Product.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarnwick;
  Product product;
  try {
    product = decodeProduct(std::string_view(reinterpret_cast<const char*>(data), size));
  } catch (const ProductDecodingError&) {
    return 0;
  }
  if (decodeProduct(encodeProduct(product)) != product) std::abort();
  return 0;
}
