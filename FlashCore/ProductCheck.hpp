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
  template <int N> struct Plain { bool operator==(const Plain&) const = default; };
  using NoImages = Plain<0>;
  using MissingFile = Plain<1>;
  using NotAligned = Plain<2>;
  using NotAnImage = Plain<3>;
  using NotInPartition = Plain<4>;
  using OneSketchOnly = Plain<5>;
  using Kind =
      std::variant<Overlap, ChipMismatch, BootloaderOffset, LargerThanPartition, SketchTooLarge,
                   NoImages, MissingFile, NotAligned, NotAnImage, NotInPartition, OneSketchOnly>;

  Severity severity = Severity::error;
  Kind kind;
  std::optional<UUID> imageID;

  bool isError() const { return severity == Severity::error; }
  /// The finding in the interface language.
  std::string message() const;
  bool operator==(const ProductIssue&) const = default;
};

namespace ProductCheck {
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
