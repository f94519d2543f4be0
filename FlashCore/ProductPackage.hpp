#pragma once
// The product file: product.json and a copy of every firmware file, each guarded by its SHA-256,
// kept in one ZIP file ("*.twflash") or, as older products and other programs have them, in a
// "*.twflash" directory.

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
  /// The record says one size for a file and the product holds another.
  struct WrongSize {
    std::string fileName;
    std::int64_t declared;
    std::uintmax_t stored;
    bool operator==(const WrongSize&) const = default;
  };
  /// One entry (product.json or a firmware file) is larger than any product needs.
  struct TooLarge {
    std::string fileName;
    std::uintmax_t limit;
    bool operator==(const TooLarge&) const = default;
  };
  /// The firmware files together are larger than any chip's flash.
  struct TooMuchFirmware {
    std::uintmax_t limit;
    bool operator==(const TooMuchFirmware&) const = default;
  };
  /// product.json is nested deeper than a product ever is.
  struct TooDeep {
    int limit;
    bool operator==(const TooDeep&) const = default;
  };
  struct TooManyImages {
    std::size_t limit;
    bool operator==(const TooManyImages&) const = default;
  };
  /// A file name that cannot be stored in a product (a control character in it).
  struct UnstorableName {
    std::string fileName;
    bool operator==(const UnstorableName&) const = default;
  };

  /// Saving would replace a folder that holds no product: someone's other files.
  struct FolderInTheWay {
    bool operator==(const FolderInTheWay&) const = default;
  };

  std::variant<MissingFile, DamagedFile, NewerVersion, NotAPackage, WrongSize, TooLarge,
               TooMuchFirmware, TooDeep, TooManyImages, UnstorableName, FolderInTheWay>
      value;

  /// The message in the interface language; it begins in lower case and ends with a full stop.
  std::string message() const;
  bool operator==(const PackageError&) const = default;
};

/// A product together with the bytes of its files.
struct ProductPackage {
  /// The extension of product files, without the dot.
  static constexpr std::string_view fileExtension = "twflash";
  /// Largest product.json read; a real one is a few kilobytes.
  static constexpr std::uintmax_t maximumRecordSize = 1u * 1024 * 1024;
  /// Largest firmware file: the largest flash any supported chip addresses.
  static constexpr std::uintmax_t maximumFileSize = 128u * 1024 * 1024;
  /// Largest sum of the firmware files of one product. Sizes are taken from the container's
  /// directory and refused before anything is inflated.
  static constexpr std::uintmax_t maximumFirmwareSize = 128u * 1024 * 1024;
  /// The content of the first, stored entry "mimetype" of a single-file product, by which the
  /// desktop recognises the type without trusting the name.
  static constexpr std::string_view mimeType = "application/x-tarnwick-product";

  Product product;
  FileBytesMap files;
  /// The SHA-256 of the product.json it was read from, in lower-case hexadecimal: which exact
  /// product a board was flashed with. Empty for a package made in memory; not compared.
  std::string recordSHA256 = {};

  /// Reads the product file at `location`, a single file or a directory. Throws PackageError or
  /// ProductDecodingError. Nothing outside the product is read: links inside a directory are
  /// not followed, and entries of a single file are only ever read into memory.
  static ProductPackage read(const std::filesystem::path& location);

  /// Reads a single-file product held in memory, with the checks of `read`.
  static ProductPackage decode(ByteView container);

  /// The single-file form in memory, exactly as `write` puts it on disk. Throws as `write`.
  static Bytes encode(const ProductPackage& package);

  /// Writes the package as a single file to `location`, replacing what is there (a file or a
  /// directory) only once the new file is complete on disk. Throws PackageError (missingFile,
  /// before anything is written) or std::filesystem::filesystem_error; on failure the previous
  /// product is left as it was. Temporary files of an earlier, interrupted save are removed.
  static void write(const ProductPackage& package, const std::filesystem::path& location);
  /// Whether `path` is a product in the directory form: a readable product.json and nothing but
  /// its files/ folder beside it. Saving replaces no other directory.
  static bool isProductDirectory(const std::filesystem::path& path);

  /// Writes the package as a directory, for programs that read only that form; otherwise as
  /// `write`.
  static void writeDirectory(const ProductPackage& package, const std::filesystem::path& location);

  /// "files/" + this name holds the entry's bytes: the id's first 8 characters in lower case,
  /// "-", and the file name.
  static std::string storedName(const FirmwareImage& image);

  bool operator==(const ProductPackage& other) const {
    return product == other.product && files == other.files;
  }
};

} // namespace tarnwick
