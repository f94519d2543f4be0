#include "FlashCore/ProductPackage.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <fcntl.h>
#include <random>
#include <set>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zip.h>

#include "FlashCore/Digest.hpp"
#include "FlashCore/ESPImage.hpp"
#include "FlashCore/VisibleText.hpp"
#include "Localization/PackageTexts.hpp"

namespace tarnwick {

namespace fs = std::filesystem;

std::string PackageError::message() const {
  struct Visitor {
    std::string operator()(const MissingFile& e) const {
      return L10n::Errors::missingFile(visible(e.fileName));
    }
    std::string operator()(const DamagedFile& e) const {
      return L10n::Errors::damagedFile(visible(e.fileName));
    }
    std::string operator()(const NewerVersion&) const { return L10n::Errors::newerVersion(); }
    std::string operator()(const NotAPackage&) const { return L10n::Errors::notAPackage(); }
    std::string operator()(const WrongSize& e) const {
      return L10n::Errors::wrongSize(visible(e.fileName), e.declared, e.stored);
    }
    std::string operator()(const TooLarge& e) const {
      return L10n::Errors::entryTooLarge(visible(e.fileName), e.limit);
    }
    std::string operator()(const TooMuchFirmware& e) const {
      return L10n::Errors::tooMuchFirmware(e.limit);
    }
    std::string operator()(const TooDeep& e) const {
      return L10n::Errors::nestedTooDeeply(e.limit);
    }
    std::string operator()(const TooManyImages& e) const {
      return L10n::Errors::tooManyImages(e.limit);
    }
    std::string operator()(const UnstorableName& e) const {
      return L10n::Errors::unstorableName(visible(e.fileName));
    }
    std::string operator()(const FolderInTheWay&) const { return L10n::Errors::folderInTheWay(); }
  };
  return std::visit(Visitor{}, value);
}

std::string ProductPackage::storedName(const FirmwareImage& image) {
  std::string prefix = image.id.text().substr(0, 8);
  std::transform(prefix.begin(), prefix.end(), prefix.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return prefix + "-" + image.fileName;
}

namespace {

// A file name that stays inside the "files" directory.
bool isPlainFileName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." &&
         name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

[[noreturn]] void notAPackage() { throw PackageError{PackageError::NotAPackage{}}; }

// An entry whose bytes cannot be read back as they were stored.
struct DamagedEntry {};

class Descriptor {
public:
  explicit Descriptor(int fd = -1) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return fd_; }
  int release() { return std::exchange(fd_, -1); }
  void reset(int fd) {
    if (fd_ >= 0) ::close(fd_);
    fd_ = fd;
  }

private:
  int fd_;
};

[[noreturn]] void systemFailure(const char* what, const fs::path& path, int code) {
  throw fs::filesystem_error(what, path, std::error_code(code, std::generic_category()));
}

// An entry larger than the limit it is fetched with.
struct Oversized {};

// An entry whose size, known before it is read, is not the one the record gives.
struct OtherSize {
  std::uintmax_t size;
};

// Throws OtherSize unless `size` is what the record expects (when it expects anything).
void expectSize(std::uintmax_t size, std::optional<std::uintmax_t> expected) {
  if (expected && size != *expected) throw OtherSize{size};
}

// Reads exactly `size` bytes through `read` (which returns how many it read, 0 at the end and
// below 0 on failure). The buffer grows with what really arrives, never ahead of it by more than
// it holds already, so a size that only claims much costs nothing.
template <typename Read> Bytes readGrowing(std::size_t size, Read read) {
  constexpr std::size_t chunk = 64 * 1024;
  Bytes bytes;
  bytes.reserve(std::min(size, chunk));
  while (bytes.size() < size) {
    if (bytes.size() == bytes.capacity())
      bytes.reserve(std::min(size, std::max(chunk, bytes.capacity() * 2)));
    const std::size_t done = bytes.size();
    const std::size_t wanted = std::min(bytes.capacity(), size) - done;
    bytes.resize(done + wanted);
    const std::int64_t n = read(bytes.data() + done, wanted);
    if (n <= 0) throw DamagedEntry{};
    bytes.resize(done + static_cast<std::size_t>(n));
  }
  return bytes;
}

// Where the reader finds the entries of a product: a directory or a ZIP container.
class EntrySource {
public:
  virtual ~EntrySource() = default;
  // The bytes of the entry named `name` ("product.json", "files/…"), absent when there is none.
  // Throws Oversized when it is larger than `limit`, OtherSize when its size is not `expected`
  // (both before a byte is read), DamagedEntry when it cannot be read back.
  virtual std::optional<Bytes> fetch(const std::string& name, std::uintmax_t limit,
                                     std::optional<std::uintmax_t> expected) = 0;
};

ProductPackage readFrom(EntrySource& source) {
  std::optional<Bytes> record;
  try {
    record = source.fetch("product.json", ProductPackage::maximumRecordSize, std::nullopt);
  } catch (const DamagedEntry&) {
    notAPackage();
  } catch (const Oversized&) {
    throw PackageError{PackageError::TooLarge{"product.json", ProductPackage::maximumRecordSize}};
  }
  if (!record) notAPackage();

  ProductPackage package;
  package.recordSHA256 = Digest::sha256Hex(*record);
  try {
    package.product = decodeProduct(
        std::string_view(reinterpret_cast<const char*>(record->data()), record->size()));
  } catch (const ProductDecodingError& error) {
    if (error.limit == ProductDecodingError::Limit::nesting)
      throw PackageError{PackageError::TooDeep{maximumRecordNesting}};
    if (error.limit == ProductDecodingError::Limit::images)
      throw PackageError{PackageError::TooManyImages{maximumImageCount}};
    throw;
  }
  if (package.product.version > Product::currentVersion) {
    throw PackageError{PackageError::NewerVersion{package.product.version}};
  }
  std::uintmax_t firmware = 0;
  for (const FirmwareImage& image : package.product.images) {
    // A name with a path in it would reach outside the product: such a file was not made here.
    if (!isPlainFileName(image.fileName)) notAPackage();
    std::optional<Bytes> bytes;
    // The checks and the flash plan go by the recorded size: it must be the size of the bytes,
    // and is compared before they are read, so a record that understates a large entry costs
    // nothing.
    try {
      bytes =
          source.fetch("files/" + ProductPackage::storedName(image),
                       ProductPackage::maximumFileSize, static_cast<std::uintmax_t>(image.size));
    } catch (const DamagedEntry&) {
      throw PackageError{PackageError::DamagedFile{image.fileName}};
    } catch (const Oversized&) {
      throw PackageError{PackageError::TooLarge{image.fileName, ProductPackage::maximumFileSize}};
    } catch (const OtherSize& other) {
      throw PackageError{PackageError::WrongSize{image.fileName, image.size, other.size}};
    }
    if (!bytes) throw PackageError{PackageError::MissingFile{image.fileName}};
    firmware += bytes->size();
    if (firmware > ProductPackage::maximumFirmwareSize)
      throw PackageError{PackageError::TooMuchFirmware{ProductPackage::maximumFirmwareSize}};
    if (Digest::sha256Hex(*bytes) != image.sha256) {
      throw PackageError{PackageError::DamagedFile{image.fileName}};
    }
    package.files[image.id] = std::move(*bytes);
  }
  return package;
}

// Reads a regular file inside `directory` without following a link; absent when it cannot be
// opened or is no regular file.
// `budget`, where given, is what the firmware may still take; the file's size is taken from it
// before it is read.
std::optional<Bytes> readInside(int directory, const std::string& name, std::uintmax_t limit,
                                std::optional<std::uintmax_t> expected, std::uintmax_t* budget) {
  Descriptor fd(::openat(directory, name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
  if (fd.get() < 0) return std::nullopt;
  struct stat info {};
  if (::fstat(fd.get(), &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
  if (static_cast<std::uintmax_t>(info.st_size) > limit) throw Oversized{};
  expectSize(static_cast<std::uintmax_t>(info.st_size), expected);
  if (budget) {
    if (static_cast<std::uintmax_t>(info.st_size) > *budget)
      throw PackageError{PackageError::TooMuchFirmware{ProductPackage::maximumFirmwareSize}};
    *budget -= static_cast<std::uintmax_t>(info.st_size);
  }
  const auto size = static_cast<std::size_t>(info.st_size);
  return readGrowing(size, [&](std::uint8_t* into, std::size_t wanted) -> std::int64_t {
    for (;;) {
      ssize_t n = ::read(fd.get(), into, wanted);
      if (n < 0 && errno == EINTR) continue;
      return n;
    }
  });
}

class DirectorySource : public EntrySource {
public:
  explicit DirectorySource(int root) : root_(root) {}

  std::optional<Bytes> fetch(const std::string& name, std::uintmax_t limit,
                             std::optional<std::uintmax_t> expected) override {
    std::optional<Bytes> bytes;
    if (name.starts_with("files/")) {
      // Opened once and without following a link, so every file below comes from inside.
      if (!filesOpened_) {
        files_.reset(::openat(root_, "files", O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        filesOpened_ = true;
      }
      if (files_.get() < 0) return std::nullopt;
      bytes = readInside(files_.get(), name.substr(6), limit, expected, &firmwareLeft_);
    } else {
      bytes = readInside(root_, name, limit, expected, nullptr);
    }
    return bytes;
  }

private:
  int root_;
  Descriptor files_;
  bool filesOpened_ = false;
  std::uintmax_t firmwareLeft_ = ProductPackage::maximumFirmwareSize;
};

// An entry name that could only have been made to reach outside a folder it is unpacked into.
bool isUnsafeEntryName(std::string_view name) {
  if (name.empty() || name.front() == '/' || name.front() == '\\') return true;
  if (name.size() >= 2 && name[1] == ':') return true; // a drive letter
  std::size_t start = 0;
  while (start <= name.size()) {
    std::size_t end = name.find_first_of("/\\", start);
    if (end == std::string_view::npos) end = name.size();
    std::string_view part = name.substr(start, end - start);
    // Only a directory entry's trailing separator leaves an empty last part.
    if ((part.empty() && end != name.size()) || part == "." || part == "..") return true;
    start = end + 1;
  }
  return false;
}

// The name a stored entry "files/0a1b2c3d-app.bin" had as a file ("app.bin").
std::string shownName(std::string_view entry) {
  entry.remove_prefix(std::string_view("files/").size());
  if (entry.size() > 9 && entry[8] == '-') entry.remove_prefix(9);
  return std::string(entry);
}

constexpr std::size_t endRecordSize = 22;
constexpr std::size_t longestComment = 0xFFFF;

// A container ends with its end-of-directory record. Tarnwick writes exactly one, without a
// comment, at the very end; a second one further back (hidden in a comment, or after appended
// bytes) makes ZIP readers disagree about what the file holds, so it is not accepted.
bool endsWithItsOnlyEndRecord(ByteView tail) {
  static constexpr std::uint8_t signature[] = {'P', 'K', 5, 6};
  if (tail.size() < endRecordSize) return false;
  const std::size_t last = tail.size() - endRecordSize;
  if (!std::equal(std::begin(signature), std::end(signature), tail.begin() + last)) return false;
  if (tail[last + 20] != 0 || tail[last + 21] != 0) return false; // the comment's length
  auto other = std::search(tail.begin(), tail.begin() + static_cast<std::ptrdiff_t>(last),
                           std::begin(signature), std::end(signature));
  return other == tail.begin() + static_cast<std::ptrdiff_t>(last);
}

// The part of a container where its end record may be.
ByteView tailOf(ByteView container) {
  const std::size_t length = std::min(container.size(), endRecordSize + longestComment);
  return container.subspan(container.size() - length);
}

class Archive {
public:
  explicit Archive(zip_t* archive) : archive_(archive) {}
  ~Archive() {
    if (archive_) zip_discard(archive_);
  }
  Archive(const Archive&) = delete;
  Archive& operator=(const Archive&) = delete;
  zip_t* get() const { return archive_; }

private:
  zip_t* archive_;
};

class ArchiveSource : public EntrySource {
public:
  // Checks every entry before any is inflated, so a container that is not sound is refused
  // whole and quickly.
  explicit ArchiveSource(zip_t* archive) : archive_(archive) {
    zip_int64_t count = zip_get_num_entries(archive_.get(), 0);
    if (count < 0) notAPackage();
    // Tarnwick writes no archive comment. One can hide a second end record, which other ZIP
    // readers would take for the real one and see other entries than this reader does.
    int commentLength = 0;
    if (zip_get_archive_comment(archive_.get(), &commentLength, ZIP_FL_ENC_RAW) &&
        commentLength > 0) {
      notAPackage();
    }
    std::uintmax_t firmware = 0;
    for (zip_uint64_t i = 0; i < static_cast<zip_uint64_t>(count); ++i) {
      zip_stat_t stat;
      zip_stat_init(&stat);
      if (zip_stat_index(archive_.get(), i, 0, &stat) != 0 || !(stat.valid & ZIP_STAT_NAME) ||
          !(stat.valid & ZIP_STAT_SIZE)) {
        notAPackage();
      }
      std::string name = stat.name;
      if (isUnsafeEntryName(name) || !entries_.emplace(name, i).second) notAPackage();
      const bool directory = name.back() == '/';
      if (directory && stat.size != 0) notAPackage();

      zip_uint8_t system = 0;
      zip_uint32_t attributes = 0;
      if (zip_file_get_external_attributes(archive_.get(), i, 0, &system, &attributes) != 0) {
        notAPackage();
      }
      if (system == ZIP_OPSYS_UNIX) {
        const mode_t type = (attributes >> 16) & S_IFMT;
        // Links, devices and pipes have no place in a product.
        if (type != 0 && type != (directory ? S_IFDIR : S_IFREG)) notAPackage();
      }
      // Refused by the sizes the directory declares, before a byte is inflated.
      if (name == "product.json" && stat.size > ProductPackage::maximumRecordSize) {
        throw PackageError{
            PackageError::TooLarge{"product.json", ProductPackage::maximumRecordSize}};
      }
      if (name.starts_with("files/")) {
        if (stat.size > ProductPackage::maximumFileSize) {
          throw PackageError{
              PackageError::TooLarge{shownName(name), ProductPackage::maximumFileSize}};
        }
        firmware += stat.size;
        if (firmware > ProductPackage::maximumFirmwareSize) {
          throw PackageError{PackageError::TooMuchFirmware{ProductPackage::maximumFirmwareSize}};
        }
      }
    }
    // Another format's container with a product.json inside is still not ours.
    std::optional<Bytes> type;
    try {
      type = fetch("mimetype", ProductPackage::mimeType.size(), std::nullopt);
    } catch (const DamagedEntry&) {
      notAPackage();
    } catch (const Oversized&) {
      notAPackage();
    }
    if (type && std::string_view(reinterpret_cast<const char*>(type->data()), type->size()) !=
                    ProductPackage::mimeType) {
      notAPackage();
    }
  }

  std::optional<Bytes> fetch(const std::string& name, std::uintmax_t limit,
                             std::optional<std::uintmax_t> expected) override {
    auto found = entries_.find(name);
    if (found == entries_.end()) return std::nullopt;
    zip_stat_t stat;
    zip_stat_init(&stat);
    if (zip_stat_index(archive_.get(), found->second, 0, &stat) != 0) notAPackage();
    if (stat.size > limit) throw Oversized{};
    // The directory's size is what the entry holds, or reading it fails below.
    expectSize(stat.size, expected);
    zip_file_t* file = zip_fopen_index(archive_.get(), found->second, 0);
    if (!file) notAPackage(); // encrypted or compressed by a method not known here
    struct Closer {
      zip_file_t* file;
      ~Closer() { zip_fclose(file); }
    } closer{file};

    // Never more than the declared size is inflated: an entry that claims little and would
    // inflate to gigabytes is stopped at the first byte too many.
    Bytes bytes = readGrowing(static_cast<std::size_t>(stat.size),
                              [&](std::uint8_t* into, std::size_t wanted) -> std::int64_t {
                                return zip_fread(file, into, wanted);
                              });
    // Reading to the end is also what makes the library compare the CRC.
    std::uint8_t extra = 0;
    zip_int64_t n = zip_fread(file, &extra, 1);
    if (n > 0) notAPackage();
    if (n < 0) throw DamagedEntry{};
    return bytes;
  }

private:
  Archive archive_;
  std::map<std::string, zip_uint64_t> entries_;
};

// What every save needs of the place it writes to.
struct Place {
  fs::path target;
  fs::path parent;
  std::string temporaryPrefix;
};

Place placeOf(const fs::path& location) {
  fs::path target = fs::absolute(location).lexically_normal();
  if (target.filename().empty()) target = target.parent_path();
  return {target, target.parent_path(), "." + target.filename().string() + ".saving-"};
}

constexpr std::size_t temporarySuffixLength = 8;

// Removes what an interrupted save to this place left behind. A save that is still running
// holds a lock on its temporary, so only the leftovers of programs that died are taken.
// Those of other products in the folder are taken once they are a minute old, so a save that is
// just starting elsewhere is never disturbed.
void removeLeftovers(const Place& place) {
  static constexpr std::string_view marker = ".saving-";
  const std::string productSuffix = "." + std::string(ProductPackage::fileExtension);
  const auto minuteAgo = fs::file_time_type::clock::now() - std::chrono::minutes(1);
  std::error_code error;
  for (fs::directory_iterator it(place.parent, error), end; !error && it != end;
       it.increment(error)) {
    const std::string name = it->path().filename().string();
    const bool ours = name.starts_with(place.temporaryPrefix) &&
                      name.size() == place.temporaryPrefix.size() + temporarySuffixLength;
    if (!ours) {
      // ".NAME.twflash.saving-XXXXXXXX", left by another product's save.
      if (name.size() <= 1 + productSuffix.size() + marker.size() + temporarySuffixLength ||
          name.front() != '.')
        continue;
      const std::string_view stem =
          std::string_view(name).substr(0, name.size() - temporarySuffixLength);
      if (!stem.ends_with(std::string(productSuffix) + std::string(marker))) continue;
      std::error_code timeError;
      const auto status = fs::symlink_status(it->path(), timeError);
      if (timeError || status.type() == fs::file_type::symlink) continue;
      const auto written = fs::last_write_time(it->path(), timeError);
      if (timeError || written >= minuteAgo) continue;
    }
    Descriptor fd(::open(it->path().c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (fd.get() < 0 || ::flock(fd.get(), LOCK_EX | LOCK_NB) != 0) continue;
    std::error_code ignored;
    fs::remove_all(it->path(), ignored);
  }
}

struct Temporary {
  fs::path path;
  Descriptor fd;
};

std::string randomSuffix() {
  static constexpr char alphabet[] = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::random_device random;
  std::string suffix;
  for (std::size_t i = 0; i < temporarySuffixLength; ++i)
    suffix += alphabet[random() % (sizeof alphabet - 1)];
  return suffix;
}

// Creates a new file or directory beside the target, locked for as long as it is open. The
// mode follows the umask, as any file the user makes.
std::unique_ptr<Temporary> claimTemporary(const Place& place, bool directory) {
  for (int attempt = 0; attempt < 100; ++attempt) {
    std::string name = place.temporaryPrefix + randomSuffix();
    auto temporary = std::make_unique<Temporary>();
    temporary->path = place.parent / name;
    if (directory) {
      if (::mkdir(temporary->path.c_str(), 0777) != 0) {
        if (errno == EEXIST) continue;
        systemFailure("write", place.target, errno);
      }
      temporary->fd.reset(::open(temporary->path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    } else {
      temporary->fd.reset(::open(temporary->path.c_str(),
                                 O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
      if (temporary->fd.get() < 0 && errno == EEXIST) continue;
    }
    if (temporary->fd.get() < 0) systemFailure("write", place.target, errno);
    ::flock(temporary->fd.get(), LOCK_EX);
    return temporary;
  }
  systemFailure("write", place.target, EEXIST);
}

void writeAll(int fd, ByteView bytes, const fs::path& shown) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) systemFailure("write", shown, n < 0 ? errno : EIO);
    done += static_cast<std::size_t>(n);
  }
}

void writeWhole(int directory, const std::string& name, ByteView bytes, const fs::path& shown) {
  Descriptor fd(::openat(directory, name.c_str(),
                         O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
  if (fd.get() < 0) systemFailure("write", shown, errno);
  writeAll(fd.get(), bytes, shown);
  if (::fsync(fd.get()) != 0) systemFailure("write", shown, errno);
}

// Puts the complete temporary in the target's place. Whatever was there before stays whole
// until this moment, and is removed only afterwards.
void install(const Place& place, const Temporary& temporary) {
  struct stat info {};
  const bool replacesDirectory = ::lstat(place.target.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
  struct stat mine {};
  ::fstat(temporary.fd.get(), &mine);
  if (!S_ISDIR(mine.st_mode) && !replacesDirectory) {
    if (::rename(temporary.path.c_str(), place.target.c_str()) != 0)
      systemFailure("write", place.target, errno);
  } else if (::renameat2(AT_FDCWD, temporary.path.c_str(), AT_FDCWD, place.target.c_str(),
                         RENAME_EXCHANGE) == 0) {
    // The old product now sits at the temporary name.
    std::error_code ignored;
    fs::remove_all(temporary.path, ignored);
  } else if (errno == ENOENT) {
    if (::renameat2(AT_FDCWD, temporary.path.c_str(), AT_FDCWD, place.target.c_str(),
                    RENAME_NOREPLACE) != 0) {
      systemFailure("write", place.target, errno);
    }
  } else if (errno == EINVAL || errno == ENOSYS) {
    // A file system without exchange: move the old one aside, under a name the next save
    // would clean up, and bring it back if the new one cannot take its place.
    fs::path aside = place.parent / (place.temporaryPrefix + randomSuffix());
    if (::rename(place.target.c_str(), aside.c_str()) != 0)
      systemFailure("write", place.target, errno);
    if (::rename(temporary.path.c_str(), place.target.c_str()) != 0) {
      int code = errno;
      ::rename(aside.c_str(), place.target.c_str());
      systemFailure("write", place.target, code);
    }
    std::error_code ignored;
    fs::remove_all(aside, ignored);
  } else {
    systemFailure("write", place.target, errno);
  }
  Descriptor directory(::open(place.parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (directory.get() >= 0) ::fsync(directory.get());
}

// Everything a save checks before it touches the disk; returns the encoded record.
std::string prepare(const ProductPackage& package) {
  // What could not be read back is not written.
  if (package.product.images.size() > maximumImageCount)
    throw PackageError{PackageError::TooManyImages{maximumImageCount}};
  std::uintmax_t firmware = 0;
  for (const FirmwareImage& image : package.product.images) {
    auto bytes = package.files.find(image.id);
    if (bytes == package.files.end()) {
      throw PackageError{PackageError::MissingFile{image.fileName}};
    }
    // A name that is not UTF-8 would be stored altered in the record and not be found again;
    // ZIP names hold no control characters.
    const bool control =
        std::ranges::any_of(image.fileName, [](unsigned char c) { return c < 0x20 || c == 0x7F; });
    if (!isPlainFileName(image.fileName) || control ||
        validUTF8(image.fileName) != image.fileName) {
      throw PackageError{PackageError::UnstorableName{image.fileName}};
    }
    if (bytes->second.size() > ProductPackage::maximumFileSize) {
      throw PackageError{PackageError::TooLarge{image.fileName, ProductPackage::maximumFileSize}};
    }
    if (image.size < 0 || static_cast<std::uintmax_t>(image.size) != bytes->second.size()) {
      throw PackageError{PackageError::WrongSize{image.fileName, image.size, bytes->second.size()}};
    }
    firmware += bytes->second.size();
    if (firmware > ProductPackage::maximumFirmwareSize)
      throw PackageError{PackageError::TooMuchFirmware{ProductPackage::maximumFirmwareSize}};
  }
  std::string record = encodeProduct(package.product);
  if (record.size() > ProductPackage::maximumRecordSize)
    throw PackageError{PackageError::TooLarge{"product.json", ProductPackage::maximumRecordSize}};
  return record;
}

[[noreturn]] void archiveFailure(const fs::path& target, zip_error_t* error) {
  int code = zip_error_code_system(error) != 0 && zip_error_system_type(error) == ZIP_ET_SYS
                 ? zip_error_code_system(error)
                 : EIO;
  if (zip_error_code_zip(error) == ZIP_ER_MEMORY) code = ENOMEM;
  throw fs::filesystem_error("write", target, std::error_code(code, std::generic_category()));
}

// The single-file form, assembled in memory. The first entry is what type recognition looks
// for at fixed offsets, so it goes first, stored and without extras.
Bytes encodeArchive(const ProductPackage& package, const std::string& record,
                    const fs::path& shown) {
  zip_error_t error;
  zip_error_init(&error);
  struct ErrorFini {
    zip_error_t* error;
    ~ErrorFini() { zip_error_fini(error); }
  } errorFini{&error};

  zip_source_t* buffer = zip_source_buffer_create(nullptr, 0, 0, &error);
  if (!buffer) archiveFailure(shown, &error);
  struct SourceFree {
    zip_source_t* source;
    ~SourceFree() { zip_source_free(source); }
  } bufferFree{buffer};
  zip_source_keep(buffer); // the archive drops its reference on close; the bytes are read after
  zip_t* archive = zip_open_from_source(buffer, ZIP_TRUNCATE, &error);
  if (!archive) {
    zip_source_free(buffer);
    archiveFailure(shown, &error);
  }

  auto add = [&](const std::string& name, const void* data, std::size_t size, bool compress) {
    zip_source_t* source = zip_source_buffer(archive, data, size, 0);
    zip_int64_t index = source ? zip_file_add(archive, name.c_str(), source, ZIP_FL_ENC_UTF_8) : -1;
    if (index < 0) {
      if (source) zip_source_free(source);
    } else if (zip_set_file_compression(archive, static_cast<zip_uint64_t>(index),
                                        compress ? ZIP_CM_DEFLATE : ZIP_CM_STORE, 0) == 0) {
      return;
    }
    zip_error_set(&error, zip_error_code_zip(zip_get_error(archive)),
                  zip_error_code_system(zip_get_error(archive)));
    zip_discard(archive);
    archiveFailure(shown, &error);
  };
  add("mimetype", ProductPackage::mimeType.data(), ProductPackage::mimeType.size(), false);
  add("product.json", record.data(), record.size(), true);
  for (const FirmwareImage& image : package.product.images) {
    const Bytes& bytes = package.files.at(image.id);
    add("files/" + ProductPackage::storedName(image), bytes.data(), bytes.size(), true);
  }
  if (zip_close(archive) != 0) {
    zip_error_set(&error, zip_error_code_zip(zip_get_error(archive)),
                  zip_error_code_system(zip_get_error(archive)));
    zip_discard(archive);
    archiveFailure(shown, &error);
  }

  if (zip_source_open(buffer) != 0) archiveFailure(shown, zip_source_error(buffer));
  Bytes encoded;
  Bytes chunk(1 << 20);
  for (;;) {
    zip_int64_t n = zip_source_read(buffer, chunk.data(), chunk.size());
    if (n < 0) {
      zip_source_close(buffer);
      archiveFailure(shown, zip_source_error(buffer));
    }
    if (n == 0) break;
    encoded.insert(encoded.end(), chunk.begin(), chunk.begin() + n);
  }
  zip_source_close(buffer);
  return encoded;
}

} // namespace

ProductPackage ProductPackage::read(const fs::path& location) {
  // Not blocking, so a pipe at the location is refused instead of waited on.
  Descriptor fd(::open(location.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat info {};
  if (fd.get() < 0 || ::fstat(fd.get(), &info) != 0) notAPackage();
  if (S_ISDIR(info.st_mode)) {
    DirectorySource source(fd.get());
    return readFrom(source);
  }
  if (!S_ISREG(info.st_mode)) notAPackage();
  {
    const auto size = static_cast<std::size_t>(info.st_size);
    Bytes tail(std::min(size, endRecordSize + longestComment));
    const auto at = static_cast<off_t>(size - tail.size());
    if (::pread(fd.get(), tail.data(), tail.size(), at) != static_cast<ssize_t>(tail.size()) ||
        !endsWithItsOnlyEndRecord(tail)) {
      notAPackage();
    }
  }
  int error = 0;
  zip_t* archive = zip_fdopen(fd.get(), ZIP_RDONLY | ZIP_CHECKCONS, &error);
  if (!archive) notAPackage();
  fd.release(); // the archive owns it now
  ArchiveSource source(archive);
  return readFrom(source);
}

ProductPackage ProductPackage::decode(ByteView container) {
  if (!endsWithItsOnlyEndRecord(tailOf(container))) notAPackage();
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* buffer = zip_source_buffer_create(container.data(), container.size(), 0, &error);
  zip_t* archive =
      buffer ? zip_open_from_source(buffer, ZIP_RDONLY | ZIP_CHECKCONS, &error) : nullptr;
  zip_error_fini(&error);
  if (!archive) {
    if (buffer) zip_source_free(buffer);
    notAPackage();
  }
  ArchiveSource source(archive);
  return readFrom(source);
}

Bytes ProductPackage::encode(const ProductPackage& package) {
  return encodeArchive(package, prepare(package), "product");
}

bool ProductPackage::isProductDirectory(const fs::path& path) {
  std::error_code error;
  if (!fs::is_directory(fs::symlink_status(path, error))) return false;
  for (fs::directory_iterator it(path, error), end; !error && it != end; it.increment(error)) {
    const std::string name = it->path().filename().string();
    const auto type = it->symlink_status(error).type();
    if (!((name == "product.json" && type == fs::file_type::regular) ||
          (name == "files" && type == fs::file_type::directory))) {
      return false;
    }
  }
  if (error || !fs::is_regular_file(fs::symlink_status(path / "product.json", error))) return false;
  std::ifstream in(path / "product.json", std::ios::binary);
  std::string record;
  char chunk[4096];
  while (in.read(chunk, sizeof chunk) || in.gcount() > 0) {
    record.append(chunk, static_cast<std::size_t>(in.gcount()));
    if (record.size() > maximumRecordSize) return false;
  }
  try {
    decodeProduct(record);
    return true;
  } catch (const ProductDecodingError&) {
    return false;
  }
}

namespace {
// A save replaces a file or a product folder, never a folder of someone's other files.
void refuseForeignFolder(const Place& place) {
  std::error_code error;
  if (fs::is_directory(fs::symlink_status(place.target, error)) &&
      !ProductPackage::isProductDirectory(place.target)) {
    throw PackageError{PackageError::FolderInTheWay{}};
  }
}
} // namespace

void ProductPackage::write(const ProductPackage& package, const fs::path& location) {
  Place place = placeOf(location);
  refuseForeignFolder(place);
  const Bytes encoded = encodeArchive(package, prepare(package), place.target);
  removeLeftovers(place);
  auto temporary = claimTemporary(place, false);
  try {
    writeAll(temporary->fd.get(), encoded, place.target);
    if (::fsync(temporary->fd.get()) != 0) systemFailure("write", place.target, errno);
    install(place, *temporary);
  } catch (...) {
    ::unlink(temporary->path.c_str());
    throw;
  }
}

void ProductPackage::writeDirectory(const ProductPackage& package, const fs::path& location) {
  std::string record = prepare(package);
  Place place = placeOf(location);
  refuseForeignFolder(place);
  removeLeftovers(place);
  auto temporary = claimTemporary(place, true);
  try {
    const int root = temporary->fd.get();
    writeWhole(root, "product.json",
               ByteView(reinterpret_cast<const std::uint8_t*>(record.data()), record.size()),
               place.target / "product.json");
    if (::mkdirat(root, "files", 0777) != 0) systemFailure("write", place.target / "files", errno);
    Descriptor files(::openat(root, "files", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (files.get() < 0) systemFailure("write", place.target / "files", errno);
    for (const FirmwareImage& image : package.product.images) {
      writeWhole(files.get(), storedName(image), package.files.at(image.id),
                 place.target / "files" / storedName(image));
    }
    ::fsync(files.get());
    ::fsync(root);
    install(place, *temporary);
  } catch (...) {
    std::error_code ignored;
    fs::remove_all(temporary->path, ignored);
    throw;
  }
}

} // namespace tarnwick
