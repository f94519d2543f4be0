#include "FlashCore/ProductPackage.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <random>
#include <set>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zip.h>

#include "FlashCore/Digest.hpp"
#include "FlashCore/ESPImage.hpp"
#include "Localization/PackageTexts.hpp"

namespace tarnwick {

namespace fs = std::filesystem;

std::string PackageError::message() const {
  struct Visitor {
    std::string operator()(const MissingFile& e) const {
      return L10n::Errors::missingFile(e.fileName);
    }
    std::string operator()(const DamagedFile& e) const {
      return L10n::Errors::damagedFile(e.fileName);
    }
    std::string operator()(const NewerVersion&) const { return L10n::Errors::newerVersion(); }
    std::string operator()(const NotAPackage&) const { return L10n::Errors::notAPackage(); }
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

// Where the reader finds the entries of a product: a directory or a ZIP container.
class EntrySource {
public:
  virtual ~EntrySource() = default;
  // The bytes of the entry named `name` ("product.json", "files/…"), absent when there is none.
  // Throws NotAPackage when it is larger than `limit`, DamagedEntry when it cannot be read back.
  virtual std::optional<Bytes> fetch(const std::string& name, std::uintmax_t limit) = 0;
};

ProductPackage readFrom(EntrySource& source) {
  std::optional<Bytes> record;
  try {
    record = source.fetch("product.json", ProductPackage::maximumRecordSize);
  } catch (const DamagedEntry&) {
    notAPackage();
  }
  if (!record) notAPackage();

  ProductPackage package;
  package.recordSHA256 = Digest::sha256Hex(*record);
  package.product = decodeProduct(
      std::string_view(reinterpret_cast<const char*>(record->data()), record->size()));
  if (package.product.version > Product::currentVersion) {
    throw PackageError{PackageError::NewerVersion{package.product.version}};
  }
  for (const FirmwareImage& image : package.product.images) {
    // A name with a path in it would reach outside the product: such a file was not made here.
    if (!isPlainFileName(image.fileName)) notAPackage();
    std::optional<Bytes> bytes;
    try {
      bytes = source.fetch("files/" + ProductPackage::storedName(image),
                           ProductPackage::maximumFileSize);
    } catch (const DamagedEntry&) {
      throw PackageError{PackageError::DamagedFile{image.fileName}};
    }
    if (!bytes) throw PackageError{PackageError::MissingFile{image.fileName}};
    if (Digest::sha256Hex(*bytes) != image.sha256) {
      throw PackageError{PackageError::DamagedFile{image.fileName}};
    }
    package.files[image.id] = std::move(*bytes);
  }
  return package;
}

// Reads a regular file inside `directory` without following a link; absent when it cannot be
// opened or is no regular file.
std::optional<Bytes> readInside(int directory, const std::string& name, std::uintmax_t limit) {
  Descriptor fd(::openat(directory, name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
  if (fd.get() < 0) return std::nullopt;
  struct stat info {};
  if (::fstat(fd.get(), &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
  if (static_cast<std::uintmax_t>(info.st_size) > limit) notAPackage();
  Bytes bytes(static_cast<std::size_t>(info.st_size));
  std::size_t done = 0;
  while (done < bytes.size()) {
    ssize_t n = ::read(fd.get(), bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) throw DamagedEntry{};
    done += static_cast<std::size_t>(n);
  }
  return bytes;
}

class DirectorySource : public EntrySource {
public:
  explicit DirectorySource(int root) : root_(root) {}

  std::optional<Bytes> fetch(const std::string& name, std::uintmax_t limit) override {
    std::optional<Bytes> bytes;
    if (name.starts_with("files/")) {
      // Opened once and without following a link, so every file below comes from inside.
      if (!filesOpened_) {
        files_.reset(::openat(root_, "files", O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        filesOpened_ = true;
      }
      if (files_.get() < 0) return std::nullopt;
      bytes = readInside(files_.get(), name.substr(6), limit);
    } else {
      bytes = readInside(root_, name, limit);
    }
    if (bytes) {
      total_ += bytes->size();
      if (total_ > ProductPackage::maximumPackageSize) notAPackage();
    }
    return bytes;
  }

private:
  int root_;
  Descriptor files_;
  bool filesOpened_ = false;
  std::uintmax_t total_ = 0;
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
    std::uintmax_t total = 0;
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
      total += stat.size;
      if (stat.size > ProductPackage::maximumPackageSize ||
          total > ProductPackage::maximumPackageSize) {
        notAPackage();
      }
    }
    // Another format's container with a product.json inside is still not ours.
    std::optional<Bytes> type;
    try {
      type = fetch("mimetype", ProductPackage::mimeType.size());
    } catch (const DamagedEntry&) {
      notAPackage();
    }
    if (type && std::string_view(reinterpret_cast<const char*>(type->data()), type->size()) !=
                    ProductPackage::mimeType) {
      notAPackage();
    }
  }

  std::optional<Bytes> fetch(const std::string& name, std::uintmax_t limit) override {
    auto found = entries_.find(name);
    if (found == entries_.end()) return std::nullopt;
    zip_stat_t stat;
    zip_stat_init(&stat);
    if (zip_stat_index(archive_.get(), found->second, 0, &stat) != 0) notAPackage();
    if (stat.size > limit) notAPackage();
    zip_file_t* file = zip_fopen_index(archive_.get(), found->second, 0);
    if (!file) notAPackage(); // encrypted or compressed by a method not known here
    struct Closer {
      zip_file_t* file;
      ~Closer() { zip_fclose(file); }
    } closer{file};

    // Never more than the declared size is inflated: an entry that claims little and would
    // inflate to gigabytes is stopped at the first byte too many.
    Bytes bytes(static_cast<std::size_t>(stat.size));
    std::size_t done = 0;
    while (done < bytes.size()) {
      zip_int64_t n = zip_fread(file, bytes.data() + done, bytes.size() - done);
      if (n <= 0) throw DamagedEntry{};
      done += static_cast<std::size_t>(n);
    }
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
void removeLeftovers(const Place& place) {
  std::error_code error;
  for (fs::directory_iterator it(place.parent, error), end; !error && it != end;
       it.increment(error)) {
    const std::string name = it->path().filename().string();
    if (!name.starts_with(place.temporaryPrefix) ||
        name.size() != place.temporaryPrefix.size() + temporarySuffixLength) {
      continue;
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
  std::uintmax_t total = 0;
  for (const FirmwareImage& image : package.product.images) {
    auto bytes = package.files.find(image.id);
    if (bytes == package.files.end()) {
      throw PackageError{PackageError::MissingFile{image.fileName}};
    }
    // A name that is not UTF-8 would be stored altered in the record and not be found again.
    if (!isPlainFileName(image.fileName) || validUTF8(image.fileName) != image.fileName) {
      systemFailure("write", image.fileName, EINVAL);
    }
    // What could not be opened again is not written.
    if (bytes->second.size() > ProductPackage::maximumFileSize) {
      systemFailure("write", image.fileName, EFBIG);
    }
    total += bytes->second.size();
  }
  std::string record = encodeProduct(package.product);
  if (record.size() > ProductPackage::maximumRecordSize ||
      total + record.size() + ProductPackage::mimeType.size() >
          ProductPackage::maximumPackageSize) {
    systemFailure("write", "product.json", EFBIG);
  }
  return record;
}

[[noreturn]] void archiveFailure(const fs::path& target, zip_error_t* error) {
  int code = zip_error_code_system(error) != 0 && zip_error_system_type(error) == ZIP_ET_SYS
                 ? zip_error_code_system(error)
                 : EIO;
  if (zip_error_code_zip(error) == ZIP_ER_MEMORY) code = ENOMEM;
  throw fs::filesystem_error("write", target, std::error_code(code, std::generic_category()));
}

// The single-file form, assembled in memory and then written to `fd`. The first entry is what
// type recognition looks for at fixed offsets, so it goes first, stored and without extras.
void writeArchive(const ProductPackage& package, const std::string& record, int fd,
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
  Bytes chunk(1 << 20);
  for (;;) {
    zip_int64_t n = zip_source_read(buffer, chunk.data(), chunk.size());
    if (n < 0) {
      zip_source_close(buffer);
      archiveFailure(shown, zip_source_error(buffer));
    }
    if (n == 0) break;
    writeAll(fd, ByteView(chunk.data(), static_cast<std::size_t>(n)), shown);
  }
  zip_source_close(buffer);
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
  int error = 0;
  zip_t* archive = zip_fdopen(fd.get(), ZIP_RDONLY | ZIP_CHECKCONS, &error);
  if (!archive) notAPackage();
  fd.release(); // the archive owns it now
  ArchiveSource source(archive);
  return readFrom(source);
}

ProductPackage ProductPackage::decode(ByteView container) {
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

void ProductPackage::write(const ProductPackage& package, const fs::path& location) {
  std::string record = prepare(package);
  Place place = placeOf(location);
  removeLeftovers(place);
  auto temporary = claimTemporary(place, false);
  try {
    writeArchive(package, record, temporary->fd.get(), place.target);
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
