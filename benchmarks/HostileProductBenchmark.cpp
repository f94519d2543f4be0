// Opens hostile product files with tarnwick-cli, as a user would who was sent them: sizes that
// claim much, entries that inflate far, records nested deep or listing thousands of images,
// sizes that understate. `check` and `flash` must refuse each (status 2) in under 2 s and under
// 200 MB of memory, measured from outside the program (wall time and the child's peak RSS).
//   hostile_product_benchmark [--keep FOLDER]
// With --keep the files are left in FOLDER, for looking at them with other tools.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "FlashCore/Digest.hpp"
#include "FlashCore/ProductPackage.hpp"
#include "support/Containers.hpp"
#include "support/Products.hpp"

using namespace tarnwick;
using namespace tarnwick::testing;
namespace fs = std::filesystem;

namespace {

constexpr double secondsAllowed = 2.0;
constexpr double megabytesAllowed = 200.0;
constexpr std::uint32_t mebibyte = 1024 * 1024;

struct Hostile {
  const char* file;
  const char* what;
  std::string bytes;
};

std::string text(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

std::string storedEntry(const FirmwareImage& image) {
  return "files/" + ProductPackage::storedName(image);
}

// A product with `count` small images, each at its own address.
ProductPackage withImages(std::size_t count) {
  ProductWithFiles many;
  many.product.target = Target::esp(ESPChip::esp32);
  for (std::size_t i = 0; i < count; ++i) {
    many.add(FirmwareImage::Role::application, 0x10000 + static_cast<std::uint32_t>(i) * 0x1000,
             Bytes(100, static_cast<std::uint8_t>(i)), "part" + std::to_string(i) + ".bin");
  }
  return {many.product, many.files};
}

// A container as another tool might make it: the record as given, then one entry per image.
std::string containerOf(const std::string& record,
                        const std::vector<std::pair<FirmwareImage, std::string>>& files) {
  std::vector<ZipEntry> entries = {{"mimetype", std::string(ProductPackage::mimeType), true},
                                   {"product.json", record}};
  for (const auto& [image, bytes] : files)
    entries.push_back({storedEntry(image), bytes});
  return zipOf(entries);
}

// An image of `bytes` whose record says `claimed` bytes, with the bytes' checksum.
FirmwareImage imageOf(const std::string& bytes, std::int64_t claimed, std::uint32_t offset) {
  FirmwareImage image;
  image.id = UUID::random();
  image.role = FirmwareImage::Role::application;
  image.offset = offset;
  image.fileName = "app.bin";
  image.size = claimed;
  image.sha256 = Digest::sha256Hex(
      ByteView(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
  return image;
}

std::vector<Hostile> hostileProducts() {
  std::vector<Hostile> all;
  const ProductWithFiles sensor = espProduct(ESPChip::esp32, 64 * 1024);
  const ProductPackage package{sensor.product, sensor.files};
  const std::string valid = text(ProductPackage::encode(package));
  const std::string record = encodeProduct(package.product);
  const std::string app = storedEntry(package.product.images[2]);
  const std::string fileSystem = storedEntry(package.product.images[3]);

  all.push_back({"huge-declared.twflash", "a small file declaring a 255 MiB entry",
                 withDeclaredSize(valid, app, 255 * mebibyte)});
  {
    // Record and directory agree on 128 MiB; the data ends after 64 KiB.
    const std::string bytes = text(package.files.at(package.product.images[2].id));
    const FirmwareImage a = imageOf(bytes, 128 * mebibyte, 0x10000);
    Product product;
    product.images = {a};
    all.push_back({"declared-at-limit.twflash", "declaring 128 MiB everywhere, holding 64 KiB",
                   withDeclaredSize(containerOf(encodeProduct(product), {{a, bytes}}),
                                    storedEntry(a), 128 * mebibyte)});
  }
  all.push_back(
      {"two-huge.twflash", "two entries declaring 255 MiB each",
       withDeclaredSize(withDeclaredSize(valid, app, 255 * mebibyte), fileSystem, 255 * mebibyte)});
  {
    const ProductPackage many = withImages(200);
    std::string bytes = text(ProductPackage::encode(many));
    for (const auto& image : many.product.images)
      bytes = withDeclaredSize(bytes, storedEntry(image), 100 * mebibyte);
    all.push_back({"many-huge.twflash", "200 entries declaring 100 MiB each", bytes});
  }
  {
    const std::string zeros(100 * mebibyte, '\0');
    const FirmwareImage a = imageOf(zeros, 100 * mebibyte, 0x10000);
    const FirmwareImage b = imageOf(zeros, 100 * mebibyte, 0x7000000);
    Product product;
    product.images = {a, b};
    all.push_back({"two-bombs.twflash", "two entries inflating to 100 MiB each, truthfully",
                   containerOf(encodeProduct(product), {{a, zeros}, {b, zeros}})});
  }
  {
    const std::string zeros(120 * mebibyte, '\0');
    const FirmwareImage a = imageOf(zeros, 3000, 0x10000);
    Product product;
    product.images = {a};
    all.push_back({"bomb-understated.twflash", "inflating to 120 MiB, recorded as 3000 bytes",
                   containerOf(encodeProduct(product), {{a, zeros}})});
  }
  {
    // The most a product may hold, with a checksum that does not match: the reader's largest
    // honest work before it refuses.
    const std::string zeros(128 * mebibyte, '\0');
    FirmwareImage a = imageOf(zeros, 128 * mebibyte, 0);
    a.sha256 = std::string(64, '0');
    Product product;
    product.images = {a};
    all.push_back({"bomb-at-limit.twflash", "inflating to 128 MiB, wrong checksum",
                   containerOf(encodeProduct(product), {{a, zeros}})});
  }
  all.push_back({"brackets-16MiB.twflash", "product.json of 16 MiB of nested brackets",
                 containerOf(std::string(16 * mebibyte, '['), {})});
  all.push_back({"brackets-1MiB.twflash", "product.json of 1 MiB of nested brackets",
                 containerOf(std::string(mebibyte - 1, '['), {})});
  {
    const std::size_t depth = 400000;
    const std::string deep =
        "{\"extra\": " + std::string(depth, '[') + std::string(depth, ']') + "," + record.substr(1);
    std::vector<std::pair<FirmwareImage, std::string>> files;
    for (const auto& image : package.product.images)
      files.emplace_back(image, text(package.files.at(image.id)));
    all.push_back(
        {"deep-unknown.twflash", "400,000 levels under an unknown key", containerOf(deep, files)});
  }
  all.push_back({"images-130000.twflash", "130,000 image records",
                 containerOf(encodeProduct(withImages(130000).product), {})});
  all.push_back({"images-3000.twflash", "3,000 image records, within 1 MiB",
                 containerOf(encodeProduct(withImages(3000).product), {})});
  {
    Product understated = package.product;
    understated.images[2].size -= 1000;
    std::vector<std::pair<FirmwareImage, std::string>> files;
    for (const auto& image : understated.images)
      files.emplace_back(image, text(package.files.at(image.id)));
    all.push_back({"understated.twflash", "a record understating the application's size",
                   containerOf(encodeProduct(understated), files)});
  }
  {
    // An archive comment holding a second end record.
    std::string commented = valid;
    commented[commented.size() - 2] = 22;
    all.push_back({"second-end-record.twflash", "an archive comment hiding a second end record",
                   commented + valid.substr(valid.size() - 22)});
  }
  return all;
}

struct Measured {
  int status = -1;
  double seconds = 0;
  double megabytes = 0;
  std::string message;
};

// Runs tarnwick-cli in English with standard error collected, and measures it from outside.
Measured run(const std::vector<std::string>& arguments, const fs::path& errors) {
  std::vector<std::string> words = {TARNWICK_CLI};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (auto& word : words)
    argv.push_back(word.data());
  argv.push_back(nullptr);
  std::fflush(nullptr); // so that the child does not write this program's output once more
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = ::fork();
  if (child == 0) {
    ::setenv("LANGUAGE", "en", 1);
    if (!std::freopen("/dev/null", "w", stdout) || !std::freopen(errors.c_str(), "w", stderr))
      ::_exit(126);
    ::execv(argv[0], argv.data());
    ::_exit(127);
  }
  int status = 0;
  rusage usage{};
  ::wait4(child, &status, 0, &usage);
  Measured measured;
  measured.seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  measured.megabytes = static_cast<double>(usage.ru_maxrss) / 1024.0;
  measured.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  std::ifstream in(errors);
  std::getline(in, measured.message);
  return measured;
}

} // namespace

int main(int argc, char** argv) {
  fs::path folder;
  bool keep = false;
  if (argc == 3 && std::strcmp(argv[1], "--keep") == 0) {
    folder = argv[2];
    keep = true;
  } else if (argc != 1) {
    std::fprintf(stderr, "usage: hostile_product_benchmark [--keep FOLDER]\n");
    return 1;
  } else {
    folder = fs::temp_directory_path() / ("tw-hostile-" + std::to_string(::getpid()));
  }
  fs::create_directories(folder);

  // Made in a child of its own: building them takes hundreds of megabytes, which a process
  // forked from this one would otherwise count as its own peak.
  std::vector<std::pair<std::string, std::string>> files;
  std::fflush(nullptr);
  const pid_t maker = ::fork();
  if (maker == 0) {
    std::ofstream list(folder / "hostile.list");
    for (const Hostile& hostile : hostileProducts()) {
      std::ofstream(folder / hostile.file, std::ios::binary) << hostile.bytes;
      list << hostile.file << '\t' << hostile.what << '\n';
    }
    list.close();
    ::_exit(list ? 0 : 1);
  }
  int status = 0;
  ::waitpid(maker, &status, 0);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    std::fprintf(stderr, "hostile_product_benchmark: cannot make the files in %s\n",
                 folder.c_str());
    return 1;
  }
  {
    std::ifstream list(folder / "hostile.list");
    for (std::string line; std::getline(list, line);) {
      const auto tab = line.find('\t');
      files.emplace_back(line.substr(0, tab), line.substr(tab + 1));
    }
  }

  if (files.empty()) {
    std::fprintf(stderr, "hostile_product_benchmark: no files were made in %s\n",
                 folder.c_str());
    return 1;
  }
  std::printf("hostile_product_benchmark: each refused with status 2 in under %.0f s and "
              "%.0f MB\n\n",
              secondsAllowed, megabytesAllowed);
  std::printf("%-27s %-6s %6s %8s %8s  %s\n", "file", "command", "status", "seconds", "max MB",
              "what / message");
  bool allWithin = true;
  for (const auto& [file, what] : files) {
    std::printf("%-27s %s\n", file.c_str(), what.c_str());
    const std::string path = (folder / file).string();
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"check", path},
          {"flash", "--test-device", "--port", "/dev/null", path}}) {
      const Measured m = run(command, folder / "stderr.txt");
      const bool within =
          m.status == 2 && m.seconds < secondsAllowed && m.megabytes < megabytesAllowed;
      allWithin = allWithin && within;
      std::printf("%-27s %-6s %6d %8.2f %8.1f  %s%s\n", "", command[0].c_str(), m.status, m.seconds,
                  m.megabytes, within ? "" : "OVER: ", m.message.c_str());
    }
  }
  fs::remove(folder / "stderr.txt");
  if (!keep) fs::remove_all(folder);
  std::printf("\n%s\n", allWithin ? "all within bounds" : "SOME OUTSIDE THE BOUNDS");
  return allWithin ? 0 : 2;
}
