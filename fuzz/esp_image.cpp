// ESP image headers and partition tables from imported files.
#include <cstdlib>

#include "FlashCore/ESPImage.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarnwick;
  ByteView bytes(data, size);
  for (bool extended : {false, true}) {
    if (auto header = ESPImage::readHeader(bytes, extended)) {
      if (auto length = ESPImage::imageLength(bytes, header->segmentCount);
          length && *length > size)
        std::abort();
    }
  }
  if (auto table = Partition::parseTable(bytes)) {
    for (const auto& partition : *table)
      (void)partition.kind();
    (void)Partition::appPartition(*table);
    (void)Partition::fileSystemPartition(*table);
  }
  return 0;
}
