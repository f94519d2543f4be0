#pragma once
// The product file: a "*.twflash" directory holding product.json and a copy of every firmware
// file, each guarded by its SHA-256.

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <variant>

#include "FlashCore/Product.hpp"

namespace tarnwick {

/// Why a product file cannot be used.
struct PackageError {
  struct MissingFile {
    std::string fileName;
    bool operator==(const MissingFile&) const = default;
  };
  struct DamagedFile {
    std::string fileName;
    bool operator==(const DamagedFile&) const = default;
  };
  struct NewerVersion {
    std::int64_t version;
    bool operator==(const NewerVersion&) const = default;
  };
  struct NotAPackage {
    bool operator==(const NotAPackage&) const = default;
  };

  std::variant<MissingFile, DamagedFile, NewerVersion, NotAPackage> value;

  /// The message in the interface language; it begins in lower case and ends with a full stop.
  std::string message() const;
  bool operator==(const PackageError&) const = default;
};

/// A product together with the bytes of its files.
struct ProductPackage {
  /// The extension of product files, without the dot.
  static constexpr std::string_view fileExtension = "twflash";
  /// Largest product.json read; a real one is a few kilobytes.
  static constexpr std::uintmax_t maximumRecordSize = 16u * 1024 * 1024;
  /// Largest stored firmware file read.
  static constexpr std::uintmax_t maximumFileSize = 256u * 1024 * 1024;

  Product product;
  FileBytesMap files;

  /// Reads the product file at `location`. Throws PackageError or ProductDecodingError.
  /// Nothing outside the directory is read: links inside it are not followed.
  static ProductPackage read(const std::filesystem::path& location);

  /// Writes the package to `location`, replacing what is there only once the new directory is
  /// complete. Throws PackageError (missingFile, before anything is written) or
  /// std::filesystem::filesystem_error; on failure the previous file is left as it was.
  static void write(const ProductPackage& package, const std::filesystem::path& location);

  /// "files/" + this name holds the entry's bytes: the id's first 8 characters in lower case,
  /// "-", and the file name.
  static std::string storedName(const FirmwareImage& image);

  bool operator==(const ProductPackage&) const = default;
};

} // namespace tarnwick
