#include "FlashCore/ProductCheck.hpp"

#include <algorithm>

#include "FlashCore/AVR.hpp"
#include "FlashCore/ESPImage.hpp"
#include "Localization/IssueTexts.hpp"

namespace tarnwick {

std::string ProductIssue::message() const {
  namespace T = L10n::Issue;
  struct Visitor {
    std::string operator()(const Overlap& k) const { return T::overlaps(k.otherName); }
    std::string operator()(const ChipMismatch& k) const {
      return T::builtFor(std::string(displayName(k.imageChip)), std::string(displayName(k.target)));
    }
    std::string operator()(const BootloaderOffset& k) const {
      return T::bootloaderBelongsAt(k.expected);
    }
    std::string operator()(const LargerThanPartition& k) const {
      return T::largerThanPartition(k.label, k.size / 1024);
    }
    std::string operator()(const SketchTooLarge& k) const { return T::tooLargeForBoard(k.max); }
    std::string operator()(const NoImages&) const { return T::nothingToFlash(); }
    std::string operator()(const MissingFile&) const { return T::fileMissing(); }
    std::string operator()(const NotAligned&) const { return T::notAligned(); }
    std::string operator()(const NotAnImage&) const { return T::notAnImage(); }
    std::string operator()(const NotInPartition&) const { return T::notInPartition(); }
    std::string operator()(const OneSketchOnly&) const { return T::oneSketchOnly(); }
    std::string operator()(const NoImageHeader& k) const { return T::noImageHeaderAt(k.at); }
    std::string operator()(const PartitionBeyondFlash& k) const {
      return T::partitionBeyondFlash(k.label);
    }
    std::string operator()(const BeyondFlash&) const { return T::beyondFlash(); }
    std::string operator()(const OTADataTooLarge&) const { return T::otaDataTooLarge(); }
    std::string operator()(const BaudOutOfRange&) const {
      return T::baudOutOfRange(ProductCheck::lowestBaud, ProductCheck::highestBaud);
    }
  };
  return std::visit(Visitor{}, kind);
}

namespace {

using Issue = ProductIssue;

Issue error(Issue::Kind kind, std::optional<UUID> id = std::nullopt) {
  return {Issue::Severity::error, std::move(kind), id};
}
Issue warning(Issue::Kind kind, std::optional<UUID> id) {
  return {Issue::Severity::warning, std::move(kind), id};
}

const Bytes* bytesOf(const FileBytesMap& files, const FirmwareImage& image) {
  auto it = files.find(image.id);
  return it == files.end() ? nullptr : &it->second;
}

using Role = FirmwareImage::Role;

bool isOTAData(const Partition& p) { return p.type == 1 && p.subtype == 0; }

// Where a chip's bootloader starts; a chip detected at run time may be either kind.
std::vector<std::uint32_t> bootloaderPlaces(std::optional<ESPChip> chip) {
  if (chip) return {bootloaderOffset(*chip)};
  return {0x0, 0x1000};
}

// Data written over the bootloader's place without the 0xE9 magic leaves a board that does not
// start: typically an AVR sketch or random bytes given to an ESP target.
// Gives the place found without a header; an image with a header at any covered place passes
// (a merged ESP32 image starts at 0x0 but carries its header at 0x1000).
std::optional<std::uint32_t> missingHeaderAt(const FirmwareImage& image, const Bytes& bytes,
                                             const std::vector<std::uint32_t>& places) {
  std::optional<std::uint32_t> covered;
  for (std::uint32_t place : places) {
    if (place < image.offset || place - image.offset >= bytes.size()) continue;
    if (bytes[place - image.offset] == ESPImage::magic) return std::nullopt;
    if (!covered) covered = place;
  }
  return covered;
}

} // namespace

std::vector<ProductIssue> ProductCheck::check(const Product& product, const FileBytesMap& files) {
  std::vector<Issue> issues;
  const auto images = product.enabledImages();
  if (images.empty()) return {error(Issue::NoImages{})};
  if (product.target.isESP() && (product.flashBaud < ProductCheck::lowestBaud ||
                                 product.flashBaud > ProductCheck::highestBaud)) {
    issues.push_back(error(Issue::BaudOutOfRange{}));
  }

  for (const auto& image : images) {
    if (!bytesOf(files, image)) issues.push_back(error(Issue::MissingFile{}, image.id));
  }

  if (auto board = product.target.avrBoard()) {
    if (images.size() > 1) issues.push_back(error(Issue::OneSketchOnly{}));
    for (const auto& image : images) {
      if (image.size > maxSketchSize(*board)) {
        issues.push_back(error(Issue::SketchTooLarge{maxSketchSize(*board)}, image.id));
      }
    }
    return issues;
  }

  for (std::size_t a = 0; a < images.size(); ++a) {
    const auto& A = images[a];
    for (std::size_t b = a + 1; b < images.size(); ++b) {
      const auto& B = images[b];
      if (B.offset < A.end() && A.offset < B.end()) {
        issues.push_back(error(Issue::Overlap{B.fileName}, A.id));
      }
    }
    if (A.offset % 0x1000 != 0) issues.push_back(error(Issue::NotAligned{}, A.id));
    // In 64 bits: an offset near 4 GiB wraps `end()` and would slip past the overlap test.
    if (std::uint64_t{A.offset} + static_cast<std::uint64_t>(A.size) > ProductCheck::flashLimit) {
      issues.push_back(error(Issue::BeyondFlash{}, A.id));
    }
  }

  std::optional<std::vector<Partition>> partitions;
  for (const auto& image : images) {
    if (image.role != Role::partitionTable) continue;
    if (const Bytes* bytes = bytesOf(files, image)) partitions = Partition::parseTable(*bytes);
    if (!partitions) break;
    for (const auto& partition : *partitions) {
      if (std::uint64_t{partition.offset} + partition.size > ProductCheck::flashLimit) {
        issues.push_back(error(Issue::PartitionBeyondFlash{partition.label}, image.id));
      }
      if (isOTAData(partition) && partition.size > ProductCheck::otaDataLimit) {
        issues.push_back(error(Issue::OTADataTooLarge{}, image.id));
      }
    }
    break;
  }

  const auto productChip = product.target.espChip();
  const auto places = bootloaderPlaces(productChip);
  for (const auto& image : images) {
    const Bytes* bytes = bytesOf(files, image);
    if (!bytes) continue;
    if (image.role == Role::application || image.role == Role::bootloader) {
      auto header = ESPImage::readHeader(*bytes, productChip != ESPChip::esp8266);
      if (!header) {
        issues.push_back(error(Issue::NotAnImage{}, image.id));
        continue;
      }
      std::optional<ESPChip> imageChip;
      if (header->chipID) imageChip = espChipFromImageChipID(*header->chipID);
      if (productChip && imageChip && *imageChip != *productChip) {
        issues.push_back(error(Issue::ChipMismatch{*imageChip, *productChip}, image.id));
      }
      if (image.role == Role::bootloader) {
        std::optional<ESPChip> decides = productChip ? productChip : imageChip;
        if (decides && image.offset != bootloaderOffset(*decides)) {
          issues.push_back(warning(Issue::BootloaderOffset{bootloaderOffset(*decides)}, image.id));
        }
      }
    }
    // A misplaced bootloader has its own finding.
    auto place =
        image.role == Role::bootloader ? std::nullopt : missingHeaderAt(image, *bytes, places);
    if (place) {
      issues.push_back(warning(Issue::NoImageHeader{*place}, image.id));
    }
    if (partitions && (image.role == Role::application || image.role == Role::fileSystem ||
                       image.role == Role::otaData)) {
      auto partition = std::find_if(partitions->begin(), partitions->end(),
                                    [&](const Partition& p) { return p.offset == image.offset; });
      if (partition == partitions->end()) {
        issues.push_back(warning(Issue::NotInPartition{}, image.id));
      } else if (image.size > static_cast<std::int64_t>(partition->size)) {
        issues.push_back(
            error(Issue::LargerThanPartition{partition->label, partition->size}, image.id));
      }
    }
  }
  return issues;
}

std::optional<ProductIssue> ProductCheck::firstError(const std::vector<ProductIssue>& issues) {
  for (const auto& issue : issues) {
    if (issue.isError()) return issue;
  }
  return std::nullopt;
}

std::vector<FlashWrite> FlashPlan::writes(const Product& product, const FileBytesMap& files,
                                          ESPChip chip) {
  const std::uint32_t bootloaderAddress = bootloaderOffset(chip);
  std::vector<FlashWrite> result;
  for (const auto& image : product.enabledImages()) {
    const Bytes* bytes = bytesOf(files, image);
    if (!bytes) continue;
    Bytes data = image.role == Role::bootloader || image.offset == bootloaderAddress
                     ? ESPImage::patchHeader(*bytes, chip, product.flashMode, product.flashSize)
                     : *bytes;
    result.push_back(
        {image.id, image.fileName, image.offset, ESPImage::padded(std::move(data), 4)});
  }

  if (product.clearOTAData && !result.empty()) {
    auto table = std::find_if(result.begin(), result.end(),
                              [](const FlashWrite& w) { return w.offset == 0x8000; });
    std::optional<std::vector<Partition>> partitions;
    if (table != result.end()) partitions = Partition::parseTable(table->data);
    if (partitions) {
      auto otaData = std::find_if(partitions->begin(), partitions->end(), isOTAData);
      // A table that claims a huge OTA data partition must not make the plan allocate it.
      if (otaData != partitions->end() && otaData->size <= ProductCheck::otaDataLimit &&
          std::uint64_t{otaData->offset} + otaData->size <= ProductCheck::flashLimit) {
        std::uint64_t start = otaData->offset, end = start + otaData->size;
        bool touched = std::any_of(result.begin(), result.end(), [&](const FlashWrite& w) {
          std::uint64_t writeEnd = std::uint64_t{w.offset} + w.data.size();
          return w.offset < end && start < writeEnd;
        });
        if (!touched) {
          result.push_back({std::nullopt, "otadata", otaData->offset, Bytes(otaData->size, 0xFF)});
        }
      }
    }
  }

  std::stable_sort(result.begin(), result.end(),
                   [](const FlashWrite& a, const FlashWrite& b) { return a.offset < b.offset; });
  return result;
}

std::uint32_t FlashPlan::flashSize(const std::vector<FlashWrite>& writes, const Product& product) {
  if (auto bytes = byteCount(product.flashSize)) return *bytes;
  if (writes.empty()) return 0x400000;
  std::uint64_t highest = 0;
  for (const auto& write : writes)
    highest = std::max(highest, std::uint64_t{write.offset} + write.data.size());
  highest = std::min<std::uint64_t>(highest, 0x8000000);
  for (std::uint32_t size : {0x400000u, 0x800000u, 0x1000000u, 0x2000000u, 0x4000000u}) {
    if (size >= highest) return size;
  }
  return 0x8000000;
}

} // namespace tarnwick
