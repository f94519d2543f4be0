#include "FlashCore/ProductPackage.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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

class Descriptor {
public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return fd_; }

private:
  int fd_;
};

[[noreturn]] void systemFailure(const char* what, const fs::path& path, int code) {
  throw fs::filesystem_error(what, path, std::error_code(code, std::generic_category()));
}

// Reads a regular file inside `directory` without following a link; absent when it cannot be
// read, is no regular file or is larger than `limit`.
std::optional<Bytes> readInside(int directory, const std::string& name, std::uintmax_t limit) {
  Descriptor fd(::openat(directory, name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
  if (fd.get() < 0) return std::nullopt;
  struct stat info {};
  if (::fstat(fd.get(), &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
  if (static_cast<std::uintmax_t>(info.st_size) > limit) return std::nullopt;
  Bytes bytes(static_cast<std::size_t>(info.st_size));
  std::size_t done = 0;
  while (done < bytes.size()) {
    ssize_t n = ::read(fd.get(), bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return std::nullopt;
    done += static_cast<std::size_t>(n);
  }
  return bytes;
}

void writeWhole(int directory, const std::string& name, ByteView bytes, const fs::path& shown) {
  Descriptor fd(::openat(directory, name.c_str(),
                         O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644));
  if (fd.get() < 0) systemFailure("write", shown, errno);
  std::size_t done = 0;
  while (done < bytes.size()) {
    ssize_t n = ::write(fd.get(), bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) systemFailure("write", shown, n < 0 ? errno : EIO);
    done += static_cast<std::size_t>(n);
  }
  if (::fsync(fd.get()) != 0) systemFailure("write", shown, errno);
}

} // namespace

ProductPackage ProductPackage::read(const fs::path& location) {
  Descriptor root(::open(location.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (root.get() < 0) throw PackageError{PackageError::NotAPackage{}};
  auto record = readInside(root.get(), "product.json", maximumRecordSize);
  if (!record) throw PackageError{PackageError::NotAPackage{}};

  ProductPackage package;
  package.product = decodeProduct(
      std::string_view(reinterpret_cast<const char*>(record->data()), record->size()));
  if (package.product.version > Product::currentVersion) {
    throw PackageError{PackageError::NewerVersion{package.product.version}};
  }

  // Opened once and without following a link, so every file below comes from inside.
  Descriptor files(::openat(root.get(), "files", O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  for (const FirmwareImage& image : package.product.images) {
    // A name with a path in it would reach outside the product: such a file was not made here.
    if (!isPlainFileName(image.fileName)) throw PackageError{PackageError::NotAPackage{}};
    std::optional<Bytes> bytes;
    if (files.get() >= 0) bytes = readInside(files.get(), storedName(image), maximumFileSize);
    if (!bytes) throw PackageError{PackageError::MissingFile{image.fileName}};
    if (Digest::sha256Hex(*bytes) != image.sha256) {
      throw PackageError{PackageError::DamagedFile{image.fileName}};
    }
    package.files[image.id] = std::move(*bytes);
  }
  return package;
}

void ProductPackage::write(const ProductPackage& package, const fs::path& location) {
  for (const FirmwareImage& image : package.product.images) {
    if (!package.files.contains(image.id)) {
      throw PackageError{PackageError::MissingFile{image.fileName}};
    }
    // A name that is not UTF-8 would be stored altered in the record and not be found again.
    if (!isPlainFileName(image.fileName) || validUTF8(image.fileName) != image.fileName) {
      systemFailure("write", image.fileName, EINVAL);
    }
  }
  std::string record = encodeProduct(package.product);

  fs::path target = fs::absolute(location).lexically_normal();
  if (target.filename().empty()) target = target.parent_path();
  fs::path parent = target.parent_path();
  // The new directory is built beside the old one, so the final swap stays on one file system.
  std::string pattern = (parent / ("." + target.filename().string() + ".saving-XXXXXX")).string();
  if (!::mkdtemp(pattern.data())) systemFailure("write", target, errno);
  fs::path temporary = pattern;

  try {
    Descriptor root(::open(temporary.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (root.get() < 0) systemFailure("write", temporary, errno);
    writeWhole(root.get(), "product.json",
               ByteView(reinterpret_cast<const std::uint8_t*>(record.data()), record.size()),
               target / "product.json");
    if (::mkdirat(root.get(), "files", 0755) != 0) systemFailure("write", target / "files", errno);
    Descriptor files(::openat(root.get(), "files", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (files.get() < 0) systemFailure("write", target / "files", errno);
    for (const FirmwareImage& image : package.product.images) {
      writeWhole(files.get(), storedName(image), package.files.at(image.id),
                 target / "files" / storedName(image));
    }
    ::fsync(files.get());
    ::fsync(root.get());

    if (::renameat2(AT_FDCWD, temporary.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE) == 0) {
      // The old product now sits at the temporary name.
      std::error_code ignored;
      fs::remove_all(temporary, ignored);
    } else if (errno == ENOENT) {
      if (::renameat2(AT_FDCWD, temporary.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) !=
          0) {
        systemFailure("write", target, errno);
      }
    } else {
      systemFailure("write", target, errno);
    }
  } catch (...) {
    std::error_code ignored;
    fs::remove_all(temporary, ignored);
    throw;
  }
  Descriptor directory(::open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (directory.get() >= 0) ::fsync(directory.get());
}

} // namespace tarnwick
