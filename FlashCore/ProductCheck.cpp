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

} // namespace

std::vector<ProductIssue> ProductCheck::check(const Product& product, const FileBytesMap& files) {
  std::vector<Issue> issues;
  const auto images = product.enabledImages();
  if (images.empty()) return {error(Issue::NoImages{})};

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
  }

  std::optional<std::vector<Partition>> partitions;
  for (const auto& image : images) {
    if (image.role != Role::partitionTable) continue;
    if (const Bytes* bytes = bytesOf(files, image)) partitions = Partition::parseTable(*bytes);
    break;
  }

  const auto productChip = product.target.espChip();
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
      auto otaData = std::find_if(partitions->begin(), partitions->end(),
                                  [](const Partition& p) { return p.type == 1 && p.subtype == 0; });
      if (otaData != partitions->end()) {
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
