// ESP-IDF's flasher_args.json from a build folder, against a folder holding a few of the files
// it may name.
#include "FlashCore/FirmwareImport.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarnwick;
  static const FirmwareImport::Files files = {
      {"bootloader/bootloader.bin", Bytes(64, 0xE9)},
      {"partition_table/partition-table.bin", Bytes(96, 0xAA)},
      {"app.bin", Bytes(300, 0x42)},
  };
  try {
    (void)FirmwareImport::readFlasherArgs(ByteView(data, size), files);
  } catch (const FirmwareImport::ImportError&) {
  }
  return 0;
}
