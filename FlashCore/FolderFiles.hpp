#pragma once
// Reading a build folder from disk for the importer: its firmware files and flasher_args.json.

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "FlashCore/Bytes.hpp"

namespace tarnwick {

/// What the importer needs of a build folder.
struct FolderFiles {
  /// Every ".bin" and ".hex" file below the folder (extension in any letter case), keyed by its
  /// path relative to the folder with "/" separators.
  std::map<std::string, Bytes> files;
  /// The bytes of "flasher_args.json" at the top of the folder, when there is one.
  std::optional<Bytes> flasherArgs;
  bool operator==(const FolderFiles&) const = default;
};

/// Largest firmware file taken: the largest flash a supported chip addresses, as in a product.
inline constexpr std::uintmax_t maximumFirmwareFileSize = 128u * 1024 * 1024;

/// Reads a build folder. Symbolic links are not followed, hidden folders other than PlatformIO's
/// ".pio" are skipped, and files over `maximumFirmwareFileSize` are left out.
/// Throws std::filesystem::filesystem_error when the folder cannot be read.
FolderFiles readFolderFiles(const std::filesystem::path& folder);

/// The whole content of a regular file. Throws std::filesystem::filesystem_error.
Bytes readFileBytes(const std::filesystem::path& file,
                    std::uintmax_t maximumSize = maximumFirmwareFileSize);

} // namespace tarnwick
