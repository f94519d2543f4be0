#pragma once
// A product: everything needed to flash one kind of board, and its JSON form.

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "FlashCore/AVRBoard.hpp"
#include "FlashCore/Bytes.hpp"
#include "FlashCore/ESPChip.hpp"
#include "FlashCore/FlashSettings.hpp"
#include "FlashCore/UUID.hpp"

namespace tarnwick {

/// What a product is flashed onto: an ESP chip (absent: whichever is connected) or an AVR board.
class Target {
public:
  struct ESP {
    std::optional<ESPChip> chip;
    bool operator==(const ESP&) const = default;
  };
  struct AVR {
    AVRBoard board;
    bool operator==(const AVR&) const = default;
  };

  static Target esp(std::optional<ESPChip> chip = std::nullopt) { return Target(ESP{chip}); }
  static Target avr(AVRBoard board) { return Target(AVR{board}); }

  /// Every target in the order of the target picker.
  static const std::vector<Target>& all();
  /// Parses the text form ("esp:auto", "esp:esp32s3", "avr:uno").
  static std::optional<Target> parse(std::string_view text);
  /// The text form used in product files.
  std::string text() const;

  bool isESP() const { return std::holds_alternative<ESP>(value_); }
  std::optional<ESPChip> espChip() const;
  std::optional<AVRBoard> avrBoard() const;

  bool operator==(const Target&) const = default;

private:
  explicit Target(std::variant<ESP, AVR> value) : value_(value) {}
  std::variant<ESP, AVR> value_;
};

/// One firmware file of a product.
struct FirmwareImage {
  /// What a file is.
  enum class Role { bootloader, partitionTable, otaData, application, fileSystem, other };

  UUID id;
  bool enabled = true;
  Role role = Role::other;
  std::uint32_t offset = 0;
  std::string fileName;
  std::int64_t size = 0;
  std::string sha256;

  /// The address after the last byte, wrapping in 32 bits.
  std::uint32_t end() const { return offset + static_cast<std::uint32_t>(size); }

  bool operator==(const FirmwareImage&) const = default;
};

inline constexpr FirmwareImage::Role allRoles[] = {
    FirmwareImage::Role::bootloader, FirmwareImage::Role::partitionTable,
    FirmwareImage::Role::otaData,    FirmwareImage::Role::application,
    FirmwareImage::Role::fileSystem, FirmwareImage::Role::other};

/// The text of a role in product files ("partitionTable").
std::string_view rawValue(FirmwareImage::Role role);
std::optional<FirmwareImage::Role> roleFromRawValue(std::string_view raw);

/// The bytes of a product's files, keyed by the id of their entry.
using FileBytesMap = std::map<UUID, Bytes>;

/// Everything needed to flash one kind of board.
struct Product {
  /// The format version this program writes and fully understands.
  static constexpr std::int64_t currentVersion = 1;

  std::int64_t version = currentVersion;
  std::string name;
  std::string notes;
  Target target = Target::esp();
  std::int64_t flashBaud = 460800;
  ResetMode resetMode = ResetMode::auto_;
  bool verify = true;
  FlashMode flashMode = FlashMode::keep;
  FlashSize flashSize = FlashSize::keep;
  bool clearOTAData = true;
  std::vector<FirmwareImage> images;

  /// The enabled entries sorted by offset; entries at the same offset keep their order.
  std::vector<FirmwareImage> enabledImages() const;

  bool operator==(const Product&) const = default;
};

/// A product record that cannot be decoded. `description` names the cause (in English, as the
/// JSON library reports it, for logs and tests); `message(file)` gives the text shown to users.
struct ProductDecodingError {
  /// A bound no real product reaches, which hostile records are refused by.
  enum class Limit { none, nesting, images };
  std::string description;
  Limit limit = Limit::none;
  /// "Cannot read <file>. Is it a file of this app?"
  std::string message(const std::string& file) const;
  bool operator==(const ProductDecodingError&) const = default;
};

/// Deepest nesting of arrays and objects in a product record; a product needs 3.
inline constexpr int maximumRecordNesting = 16;
/// Most images in one product; no real one comes near.
inline constexpr std::size_t maximumImageCount = 256;

/// The product as JSON text, pretty-printed with sorted keys.
std::string encodeProduct(const Product& product);
/// Decodes a product from JSON text. Throws ProductDecodingError.
Product decodeProduct(std::string_view json);

} // namespace tarnwick
