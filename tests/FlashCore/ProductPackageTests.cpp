#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "FlashCore/Digest.hpp"
#include "FlashCore/ProductPackage.hpp"
#include "Localization/Language.hpp"

using namespace tarnwick;
namespace fs = std::filesystem;

namespace {

class ProductFile : public ::testing::Test {
protected:
  void SetUp() override {
    static int counter = 0;
    root = fs::temp_directory_path() /
           ("tw-package-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
    fs::remove_all(root);
    fs::create_directories(root);
    location = root / "Lamp.twflash";
  }
  void TearDown() override {
    std::error_code ignored;
    fs::permissions(root, fs::perms::owner_all, ignored);
    fs::remove_all(root, ignored);
  }

  static FirmwareImage entry(const std::string& name, const Bytes& bytes, bool enabled = true) {
    FirmwareImage image;
    image.id = UUID::random();
    image.enabled = enabled;
    image.role = FirmwareImage::Role::application;
    image.offset = 0x10000;
    image.fileName = name;
    image.size = static_cast<std::int64_t>(bytes.size());
    image.sha256 = Digest::sha256Hex(bytes);
    return image;
  }

  ProductPackage sample() {
    ProductPackage package;
    package.product.name = "Lamp";
    Bytes app(3000), other{1, 2, 3};
    for (std::size_t i = 0; i < app.size(); ++i)
      app[i] = static_cast<std::uint8_t>(i * 7);
    // Two entries with the same file name, one of them disabled.
    for (auto image : {entry("firmware.bin", app), entry("firmware.bin", other, false),
                       entry("empty.bin", {})}) {
      package.product.images.push_back(image);
    }
    package.files[package.product.images[0].id] = app;
    package.files[package.product.images[1].id] = other;
    package.files[package.product.images[2].id] = {};
    return package;
  }

  static std::string slurp(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  static void put(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
  }

  PackageError readFailure() {
    try {
      ProductPackage::read(location);
    } catch (const PackageError& error) {
      return error;
    }
    ADD_FAILURE() << "read succeeded";
    return {};
  }

  fs::path root, location;
};

} // namespace

TEST_F(ProductFile, WriteThenReadGivesTheSamePackageAndReplacesTheOldOne) {
  ProductPackage package = sample();
  // Bytes nobody refers to are not written.
  package.files[UUID::random()] = {9, 9, 9};
  ProductPackage::write(package, location);
  ProductPackage expected = package;
  std::erase_if(expected.files, [&](const auto& item) {
    return std::none_of(package.product.images.begin(), package.product.images.end(),
                        [&](const auto& image) { return image.id == item.first; });
  });
  EXPECT_EQ(ProductPackage::read(location), expected);
  EXPECT_EQ(std::distance(fs::directory_iterator(location / "files"), fs::directory_iterator()), 3);
  std::string stored = ProductPackage::storedName(package.product.images[0]);
  EXPECT_EQ(stored.size(), 9 + std::string("firmware.bin").size());
  EXPECT_EQ(stored.substr(8), "-firmware.bin");
  EXPECT_EQ(stored.find_first_of("ABCDEF"), std::string::npos);

  // Saving again over an existing product swaps it whole and leaves no temporary behind.
  package.product.name = "Lamp v2";
  package.product.images.pop_back();
  ProductPackage::write(package, location);
  EXPECT_EQ(ProductPackage::read(location).product.name, "Lamp v2");
  EXPECT_EQ(std::distance(fs::directory_iterator(root), fs::directory_iterator()), 1);
  EXPECT_EQ(std::distance(fs::directory_iterator(location / "files"), fs::directory_iterator()), 2);
}

TEST_F(ProductFile, FailedWritesLeaveThePreviousFileUntouched) {
  ProductPackage package = sample();
  ProductPackage::write(package, location);
  std::string before = slurp(location / "product.json");

  ProductPackage missing = package;
  missing.product.name = "changed";
  missing.files.erase(missing.product.images[1].id);
  EXPECT_THROW(
      {
        try {
          ProductPackage::write(missing, location);
        } catch (const PackageError& error) {
          EXPECT_EQ(error, (PackageError{PackageError::MissingFile{"firmware.bin"}}));
          throw;
        }
      },
      PackageError);

  // A file name with a path in it never leaves the product, on writing either.
  ProductPackage escaping = package;
  escaping.product.images[0].fileName = "../../escape.bin";
  EXPECT_THROW(ProductPackage::write(escaping, location), fs::filesystem_error);

  // A location whose parent is a plain file cannot be written; nothing else changes.
  put(root / "plain", "x");
  EXPECT_THROW(ProductPackage::write(package, root / "plain" / "P.twflash"), fs::filesystem_error);

  EXPECT_EQ(slurp(location / "product.json"), before);
  EXPECT_EQ(ProductPackage::read(location), package);
  EXPECT_FALSE(fs::exists(root / "escape.bin"));
  EXPECT_EQ(std::distance(fs::directory_iterator(root), fs::directory_iterator()), 2);
}

TEST_F(ProductFile, EveryReadingErrorOnRealDirectories) {
  using E = PackageError;
  EXPECT_EQ(readFailure(), E{E::NotAPackage{}}); // nothing there
  put(location, "a plain file");
  EXPECT_EQ(readFailure(), E{E::NotAPackage{}});
  fs::remove(location);
  fs::create_directories(location);
  EXPECT_EQ(readFailure(), E{E::NotAPackage{}}); // directory without product.json

  put(location / "product.json", "{}");
  EXPECT_EQ(ProductPackage::read(location), ProductPackage{});
  put(location / "product.json", R"({"version": 2})");
  EXPECT_EQ(readFailure(), E{E::NewerVersion{2}});
  put(location / "product.json", R"({"target": "esp:nope"})");
  EXPECT_THROW(ProductPackage::read(location), ProductDecodingError);

  ProductPackage package = sample();
  ProductPackage::write(package, location);
  const FirmwareImage& first = package.product.images[0];
  fs::path stored = location / "files" / ProductPackage::storedName(first);
  std::string original = slurp(stored);

  std::string changed = original;
  changed[1234] ^= 0x01;
  put(stored, changed);
  EXPECT_EQ(readFailure(), E{E::DamagedFile{"firmware.bin"}});

  put(stored, original);
  std::string json = slurp(location / "product.json");
  auto at = json.find(first.sha256);
  std::string upper = json;
  for (std::size_t i = at; i < at + 64; ++i)
    upper[i] = static_cast<char>(std::toupper(upper[i]));
  put(location / "product.json", upper);
  EXPECT_EQ(readFailure(), E{E::DamagedFile{"firmware.bin"}});

  put(location / "product.json", json);
  fs::remove(stored);
  EXPECT_EQ(readFailure(), E{E::MissingFile{"firmware.bin"}});
}

TEST_F(ProductFile, UntrustedFilesNeverReachOutside) {
  using E = PackageError;
  ProductPackage package = sample();
  ProductPackage::write(package, location);
  const FirmwareImage& first = package.product.images[0];
  fs::path stored = location / "files" / ProductPackage::storedName(first);

  // A stored file that is a link to a file outside, even one with the right checksum.
  put(root / "outside.bin", slurp(stored));
  fs::remove(stored);
  fs::create_symlink(root / "outside.bin", stored);
  EXPECT_EQ(readFailure(), E{E::MissingFile{"firmware.bin"}});

  // product.json as a link, and a "files" directory that is a link to somewhere else.
  fs::remove(stored);
  put(stored, slurp(root / "outside.bin"));
  fs::rename(location / "product.json", root / "product.json");
  fs::create_symlink(root / "product.json", location / "product.json");
  EXPECT_EQ(readFailure(), E{E::NotAPackage{}});
  fs::remove(location / "product.json");
  fs::rename(root / "product.json", location / "product.json");
  fs::rename(location / "files", root / "files");
  fs::create_symlink(root / "files", location / "files");
  EXPECT_EQ(readFailure(), E{E::MissingFile{"firmware.bin"}});
  fs::remove(location / "files");
  fs::rename(root / "files", location / "files");
  ASSERT_EQ(ProductPackage::read(location), package);

  // File names that are paths or special names.
  std::string json = slurp(location / "product.json");
  for (std::string bad : {"../outside.bin", "a/b", "", ".", ".."}) {
    std::string edited = json;
    auto key = edited.find("\"firmware.bin\"");
    edited.replace(key, 14, "\"" + bad + "\"");
    put(location / "product.json", edited);
    EXPECT_EQ(readFailure(), E{E::NotAPackage{}}) << bad;
  }

  // A huge record is refused without being read whole.
  {
    std::ofstream huge(location / "product.json", std::ios::binary | std::ios::trunc);
    huge.seekp(static_cast<std::streamoff>(ProductPackage::maximumRecordSize) + 1);
    huge.put('x');
  }
  EXPECT_EQ(readFailure(), E{E::NotAPackage{}});
}

TEST(PackageError, MessagesInEveryLanguage) {
  {
    LanguageOverride english(Language::en);
    EXPECT_EQ(PackageError{PackageError::MissingFile{"a.bin"}}.message(),
              "a.bin is missing from the product.");
    EXPECT_EQ(PackageError{PackageError::DamagedFile{"a.bin"}}.message(),
              "a.bin is damaged or changed (the checksum does not match).");
    EXPECT_EQ(PackageError{PackageError::NewerVersion{3}}.message(),
              "the product was made with a newer version of the app.");
    EXPECT_EQ(PackageError{PackageError::NotAPackage{}}.message(),
              "it is not a product file of this app.");
  }
  for (Language language : allLanguages) {
    LanguageOverride guard(language);
    for (const PackageError& error :
         {PackageError{PackageError::NewerVersion{3}}, PackageError{PackageError::NotAPackage{}}}) {
      std::string text = error.message();
      EXPECT_TRUE(!text.empty() && text.back() == '.');
      EXPECT_TRUE(std::islower(static_cast<unsigned char>(text[0]))) << text;
    }
  }
}
