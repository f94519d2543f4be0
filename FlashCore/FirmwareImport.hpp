#pragma once
// Turning firmware files and whole build folders into image entries with a role and an address,
// so that a typical PlatformIO, Arduino IDE or ESP-IDF build is ready to flash without typing.
// Nothing here reads files: callers hand over names and bytes.

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "FlashCore/Bytes.hpp"
#include "FlashCore/ESPChip.hpp"
#include "FlashCore/FlashSettings.hpp"
#include "FlashCore/IntelHex.hpp"
#include "FlashCore/Product.hpp"

namespace tarnwick::FirmwareImport {

/// A build folder's files: relative path with "/" separators to the file's bytes.
using Files = std::map<std::string, Bytes>;

/// A new entry together with the bytes it describes.
struct Imported {
  FirmwareImage image;
  /// Exactly `image.size` bytes, whose SHA-256 is `image.sha256`.
  Bytes bytes;
  bool operator==(const Imported&) const = default;
};

/// What a build folder holds, and the chip and flash settings it names.
struct BuildFolder {
  /// Sorted by `offset`.
  std::vector<Imported> images;
  std::optional<ESPChip> chip;
  std::optional<FlashMode> flashMode;
  std::optional<FlashSize> flashSize;
  bool operator==(const BuildFolder&) const = default;
};

/// Why a file or folder cannot be used.
struct ImportError {
  struct empty {
    std::string fileName;
    bool operator==(const empty&) const = default;
  };
  struct hex {
    std::string fileName;
    IntelHex::ParseError error;
    bool operator==(const hex&) const = default;
  };
  struct nothingFound {
    bool operator==(const nothingFound&) const = default;
  };

  std::variant<empty, hex, nothingFound> value;

  bool operator==(const ImportError&) const = default;
  /// The message in the interface language, in lower case to follow a prefix naming the file.
  std::string message() const;
};

/// Largest image a HEX file may describe: 4 MB.
inline constexpr std::int64_t hexSizeLimit = 0x400000;

/// The bytes an entry holds for a file: HEX files converted to their binary image, anything else
/// as it is. Throws `ImportError` for an empty file or a damaged HEX file.
Bytes content(const std::string& fileName, ByteView bytes);

/// What a file is, by the target, its content and its name.
FirmwareImage::Role role(std::string_view fileName, ByteView bytes, const Target& target);

/// Where a file of `role` goes, by the chip and by the partition table among `existing`.
std::uint32_t address(FirmwareImage::Role role, ByteView bytes, const Target& target,
                      const std::vector<Imported>& existing);

/// A new enabled entry with a fresh id for prepared content.
Imported makeImage(const std::string& fileName, Bytes content, const Target& target,
                   const std::vector<Imported>& existing);

/// The entries of a build folder. ESP-IDF's flasher_args.json decides when it is usable;
/// otherwise files are picked by name. Throws `ImportError`.
BuildFolder scanFolder(const Files& files, const std::optional<Bytes>& flasherArgs,
                       const Target& target);

/// The entries that ESP-IDF's flasher_args.json lists, at the addresses it gives; none when the
/// file is not usable. Throws `ImportError` (`nothingFound`) when none of its files is present.
std::optional<BuildFolder> readFlasherArgs(ByteView flasherArgs, const Files& files);

} // namespace tarnwick::FirmwareImport
