#pragma once
// Checking a product before flashing, and turning it into the ESP flash plan.

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "FlashCore/Product.hpp"

namespace tarnwick {

/// One finding of the product check.
struct ProductIssue {
  enum class Severity { error, warning };

  struct Overlap {
    std::string otherName;
    bool operator==(const Overlap&) const = default;
  };
  struct ChipMismatch {
    ESPChip imageChip;
    ESPChip target;
    bool operator==(const ChipMismatch&) const = default;
  };
  struct BootloaderOffset {
    std::uint32_t expected;
    bool operator==(const BootloaderOffset&) const = default;
  };
  struct LargerThanPartition {
    std::string label;
    std::uint32_t size;
    bool operator==(const LargerThanPartition&) const = default;
  };
  struct SketchTooLarge {
    std::int64_t max;
    bool operator==(const SketchTooLarge&) const = default;
  };
  struct NoImageHeader {
    std::uint32_t at;
    bool operator==(const NoImageHeader&) const = default;
  };
  struct PartitionBeyondFlash {
    std::string label;
    bool operator==(const PartitionBeyondFlash&) const = default;
  };
  template <int N> struct Plain { bool operator==(const Plain&) const = default; };
  using NoImages = Plain<0>;
  using MissingFile = Plain<1>;
  using NotAligned = Plain<2>;
  using NotAnImage = Plain<3>;
  using NotInPartition = Plain<4>;
  using OneSketchOnly = Plain<5>;
  using BeyondFlash = Plain<6>;
  using OTADataTooLarge = Plain<7>;
  using BaudOutOfRange = Plain<8>;
  using Kind = std::variant<Overlap, ChipMismatch, BootloaderOffset, LargerThanPartition,
                            SketchTooLarge, NoImages, MissingFile, NotAligned, NotAnImage,
                            NotInPartition, OneSketchOnly, NoImageHeader, PartitionBeyondFlash,
                            BeyondFlash, OTADataTooLarge, BaudOutOfRange>;

  Severity severity = Severity::error;
  Kind kind;
  std::optional<UUID> imageID;

  bool isError() const { return severity == Severity::error; }
  /// The finding in the interface language.
  std::string message() const;
  bool operator==(const ProductIssue&) const = default;
};

namespace ProductCheck {
/// The largest flash any supported chip has; nothing may be written or erased beyond it.
inline constexpr std::uint64_t flashLimit = 0x8000000;
/// A real OTA data partition is 8 KiB; more than this is a damaged or hostile table.
inline constexpr std::uint32_t otaDataLimit = 0x10000;
/// The speeds USB serial adapters offer.
inline constexpr std::int64_t lowestBaud = 9600;
inline constexpr std::int64_t highestBaud = 3'000'000;

/// Every finding about the product and its files, in a fixed order; errors block flashing.
std::vector<ProductIssue> check(const Product& product, const FileBytesMap& files);
/// The first error-severity finding, if any.
std::optional<ProductIssue> firstError(const std::vector<ProductIssue>& issues);
} // namespace ProductCheck

/// One write of an ESP flash plan.
struct FlashWrite {
  /// The entry written; absent for the erase of the OTA data.
  std::optional<UUID> imageID;
  std::string name;
  std::uint32_t offset = 0;
  Bytes data;
  bool operator==(const FlashWrite&) const = default;
};

namespace FlashPlan {
/// The writes for the connected chip, patched, padded and sorted by address.
std::vector<FlashWrite> writes(const Product& product, const FileBytesMap& files, ESPChip chip);
/// The flash size in bytes to configure for these writes.
std::uint32_t flashSize(const std::vector<FlashWrite>& writes, const Product& product);
} // namespace FlashPlan

} // namespace tarnwick
