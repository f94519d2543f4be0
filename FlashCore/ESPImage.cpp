#include "FlashCore/ESPImage.hpp"

#include "FlashCore/Digest.hpp"

namespace tarnwick {

namespace {

std::uint32_t le32(ByteView bytes, std::size_t at) {
  return static_cast<std::uint32_t>(bytes[at]) | static_cast<std::uint32_t>(bytes[at + 1]) << 8 |
         static_cast<std::uint32_t>(bytes[at + 2]) << 16 |
         static_cast<std::uint32_t>(bytes[at + 3]) << 24;
}

} // namespace

std::optional<ESPImageHeader> ESPImage::readHeader(ByteView bytes, bool extended) {
  if (bytes.size() < 8 || bytes[0] != magic) return std::nullopt;
  ESPImageHeader header;
  header.segmentCount = bytes[1];
  header.flashMode = bytes[2];
  header.flashSizeAndFrequency = bytes[3];
  if (extended && bytes.size() >= 24) {
    header.chipID = static_cast<std::uint16_t>(bytes[12] | bytes[13] << 8);
    header.hashAppended = bytes[23] == 1;
  }
  return header;
}

std::optional<std::size_t> ESPImage::imageLength(ByteView bytes, std::int64_t segmentCount) {
  // 64-bit arithmetic: segment lengths come from the file and may be anything.
  std::uint64_t p = 24;
  for (std::int64_t i = 0; i < segmentCount; ++i) {
    if (bytes.size() < p + 8) return std::nullopt;
    p += 8 + le32(bytes, static_cast<std::size_t>(p + 4));
  }
  std::uint64_t length = p - (p % 16) + 16;
  if (bytes.size() < length) return std::nullopt;
  return static_cast<std::size_t>(length);
}

std::optional<std::uint8_t> ESPImage::sizeCode(ESPChip chip, FlashSize size) {
  return tarnwick::sizeCode(size, chip);
}

Bytes ESPImage::patchHeader(Bytes bytes, ESPChip chip, FlashMode mode, FlashSize size) {
  if (bytes.size() < 8 || bytes[0] != magic) return bytes;
  if (mode == FlashMode::keep && size == FlashSize::keep) return bytes;
  const std::uint8_t oldMode = bytes[2], oldSize = bytes[3];
  if (auto value = headerValue(mode)) bytes[2] = *value;
  if (auto code = sizeCode(chip, size)) {
    bytes[3] = static_cast<std::uint8_t>((bytes[3] & 0x0F) | (*code << 4));
  }
  if ((bytes[2] == oldMode && bytes[3] == oldSize) || chip == ESPChip::esp8266) return bytes;

  // The bootloader checks the appended SHA-256 over the whole image, header included.
  auto header = readHeader(bytes, true);
  if (!header || !header->hashAppended) return bytes;
  auto length = imageLength(bytes, header->segmentCount);
  if (!length || bytes.size() < *length + 32) return bytes;
  Bytes digest = Digest::sha256(ByteView(bytes).first(*length));
  std::copy(digest.begin(), digest.end(), bytes.begin() + static_cast<std::ptrdiff_t>(*length));
  return bytes;
}

Bytes ESPImage::padded(Bytes bytes, std::size_t alignment) {
  if (alignment == 0) return bytes;
  std::size_t remainder = bytes.size() % alignment;
  if (remainder != 0) bytes.resize(bytes.size() + alignment - remainder, 0xFF);
  return bytes;
}

Partition::Kind Partition::kind() const {
  if (type == 0) {
    if (subtype == 0x00) return FactoryApp{};
    if (subtype >= 0x10 && subtype <= 0x1F) return OTAApp{subtype - 0x10};
    if (subtype == 0x20) return TestApp{};
  } else if (type == 1) {
    switch (subtype) {
    case 0x00: return OTAData{};
    case 0x01: return PHY{};
    case 0x02: return NVS{};
    case 0x03: return CoreDump{};
    case 0x81: return FAT{};
    case 0x82: return SPIFFS{};
    case 0x83: return LittleFS{};
    default: break;
    }
  }
  return Other{type, subtype};
}

std::optional<std::vector<Partition>> Partition::parseTable(ByteView bytes) {
  if (bytes.size() < 32) return std::nullopt;
  std::vector<Partition> entries;
  for (std::size_t e = 0; e + 32 <= bytes.size(); e += 32) {
    if (bytes[e] == 0xEB && bytes[e + 1] == 0xEB) continue;
    if (bytes[e] != 0xAA || bytes[e + 1] != 0x50) break;
    Partition partition;
    std::size_t labelLength = 0;
    while (labelLength < 16 && bytes[e + 12 + labelLength] != 0)
      ++labelLength;
    partition.label =
        validUTF8(std::string_view(reinterpret_cast<const char*>(&bytes[e + 12]), labelLength));
    partition.type = bytes[e + 2];
    partition.subtype = bytes[e + 3];
    partition.offset = le32(bytes, e + 4);
    partition.size = le32(bytes, e + 8);
    entries.push_back(std::move(partition));
  }
  if (entries.empty()) return std::nullopt;
  return entries;
}

std::optional<Partition> Partition::appPartition(const std::vector<Partition>& partitions) {
  for (const auto& p : partitions) {
    if (p.type == 0 && p.subtype == 0x00) return p;
  }
  for (const auto& p : partitions) {
    if (p.type == 0 && p.subtype == 0x10) return p;
  }
  for (const auto& p : partitions) {
    if (p.type == 0) return p;
  }
  return std::nullopt;
}

std::optional<Partition> Partition::fileSystemPartition(const std::vector<Partition>& partitions) {
  for (const auto& p : partitions) {
    if (p.isFileSystem()) return p;
  }
  return std::nullopt;
}

std::string validUTF8(std::string_view text) {
  static constexpr std::string_view replacement = "\xEF\xBF\xBD";
  std::string out;
  std::size_t i = 0;
  auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  while (i < text.size()) {
    unsigned char c = byte(i);
    std::size_t length = c < 0x80           ? 1
                         : (c >> 5) == 0x6  ? 2
                         : (c >> 4) == 0xE  ? 3
                         : (c >> 3) == 0x1E ? 4
                                            : 0;
    bool valid = length > 0 && i + length <= text.size();
    for (std::size_t k = 1; valid && k < length; ++k)
      valid = (byte(i + k) & 0xC0) == 0x80;
    if (valid && length > 1) {
      // Reject overlong forms, surrogates and values beyond U+10FFFF.
      std::uint32_t cp = c & (0xFF >> (length + 1));
      for (std::size_t k = 1; k < length; ++k)
        cp = cp << 6 | (byte(i + k) & 0x3F);
      static constexpr std::uint32_t minimum[] = {0, 0, 0x80, 0x800, 0x10000};
      valid = cp >= minimum[length] && cp <= 0x10FFFF && !(cp >= 0xD800 && cp <= 0xDFFF);
    }
    if (valid) {
      out.append(text.substr(i, length));
      i += length;
    } else {
      out.append(replacement);
      ++i;
    }
  }
  return out;
}

} // namespace tarnwick
