#include "support/Products.hpp"

#include <fstream>
#include <iterator>

#include "FlashCore/Digest.hpp"
#include "FlashCore/ProductCheck.hpp"
#include "support/BuildFolders.hpp"

namespace tarnwick::testing {

void ProductWithFiles::add(FirmwareImage::Role role, std::uint32_t offset, Bytes bytes,
                           std::string name) {
  FirmwareImage image;
  image.id = UUID::random();
  image.role = role;
  image.offset = offset;
  image.fileName = std::move(name);
  image.size = static_cast<std::int64_t>(bytes.size());
  image.sha256 = Digest::sha256Hex(bytes);
  files[image.id] = std::move(bytes);
  product.images.push_back(image);
}

ProductWithFiles espProduct(ESPChip chip, std::size_t applicationSize) {
  ProductWithFiles result;
  result.product.name = "Sensor";
  result.product.target = Target::esp(chip);
  std::optional<std::uint16_t> id = imageChipID(chip);
  using Role = FirmwareImage::Role;
  result.add(Role::bootloader, bootloaderOffset(chip), espBootloader(id), "bootloader.bin");
  result.add(Role::partitionTable, 0x8000, partitionTable(Layouts::arduinoDefault()),
             "partitions.bin");
  result.add(Role::application, 0x10000, espApplication(id, applicationSize, 7), "firmware.bin");
  result.add(Role::fileSystem, 0x290000, littleFSImage(64 * 1024), "littlefs.bin");
  return result;
}

Bytes firmwareLike(std::size_t size) {
  std::ifstream self("/proc/self/exe", std::ios::binary);
  Bytes code((std::istreambuf_iterator<char>(self)), std::istreambuf_iterator<char>());
  if (code.empty()) code.assign(4096, 0x5A);
  Bytes out;
  while (out.size() < size)
    out.insert(out.end(), code.begin(), code.end());
  out.resize(size);
  return out;
}

ProductWithFiles avrProduct(AVRBoard board, std::size_t size) {
  ProductWithFiles result;
  result.product.name = "Blink";
  result.product.target = Target::avr(board);
  result.add(FirmwareImage::Role::application, 0, avrSketch(size, 3), "Blink.ino.hex");
  return result;
}

bool flashHoldsPlan(const Bytes& flash, const ProductWithFiles& p, ESPChip chip) {
  for (const FlashWrite& write : FlashPlan::writes(p.product, p.files, chip)) {
    if (flash.size() < write.offset + write.data.size() ||
        !std::equal(write.data.begin(), write.data.end(), flash.begin() + write.offset))
      return false;
  }
  return true;
}

} // namespace tarnwick::testing
