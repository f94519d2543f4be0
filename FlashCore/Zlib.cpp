#include "FlashCore/Zlib.hpp"

#include <libdeflate.h>

#include <memory>
#include <new>

namespace tarnwick::Zlib {

namespace {
// libdeflate's slowest and best: on firmware it saves a few percent over zlib's level 9.
constexpr int strongestLevel = 12;

struct CompressorDeleter {
  void operator()(libdeflate_compressor* c) const { libdeflate_free_compressor(c); }
};
struct DecompressorDeleter {
  void operator()(libdeflate_decompressor* d) const { libdeflate_free_decompressor(d); }
};
} // namespace

std::uint32_t adler32(ByteView bytes) { return libdeflate_adler32(1, bytes.data(), bytes.size()); }

Bytes compress(ByteView bytes) {
  // A compressor holds about a megabyte of tables at this level; one per call keeps the function
  // free of shared state, and its cost is small against compressing firmware.
  std::unique_ptr<libdeflate_compressor, CompressorDeleter> compressor(
      libdeflate_alloc_compressor(strongestLevel));
  if (!compressor) throw std::bad_alloc();
  Bytes out(libdeflate_zlib_compress_bound(compressor.get(), bytes.size()));
  const std::size_t produced = libdeflate_zlib_compress(compressor.get(), bytes.data(),
                                                        bytes.size(), out.data(), out.size());
  // The bound always suffices; zero would mean libdeflate broke its own promise.
  if (produced == 0) throw std::bad_alloc();
  out.resize(produced);
  return out;
}

std::optional<Bytes> decompress(ByteView bytes, std::size_t expectedSize) {
  std::unique_ptr<libdeflate_decompressor, DecompressorDeleter> decompressor(
      libdeflate_alloc_decompressor());
  if (!decompressor) throw std::bad_alloc();
  Bytes out(expectedSize);
  std::size_t produced = 0;
  if (libdeflate_zlib_decompress(decompressor.get(), bytes.data(), bytes.size(), out.data(),
                                 out.size(), &produced) != LIBDEFLATE_SUCCESS) {
    return std::nullopt;
  }
  out.resize(produced);
  return out;
}

} // namespace tarnwick::Zlib
