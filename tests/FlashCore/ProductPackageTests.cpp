#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sys/file.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "FlashCore/Digest.hpp"
#include "FlashCore/ProductPackage.hpp"
#include "Localization/Language.hpp"
#include "support/Containers.hpp"

using namespace tarnwick;
using namespace tarnwick::testing;
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
  ProductPackage::writeDirectory(package, location);
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
  ProductPackage::writeDirectory(package, location);
  EXPECT_EQ(ProductPackage::read(location).product.name, "Lamp v2");
  EXPECT_EQ(std::distance(fs::directory_iterator(root), fs::directory_iterator()), 1);
  EXPECT_EQ(std::distance(fs::directory_iterator(location / "files"), fs::directory_iterator()), 2);
}

TEST_F(ProductFile, FailedWritesLeaveThePreviousFileUntouched) {
  ProductPackage package = sample();
  ProductPackage::writeDirectory(package, location);
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

  // A file name with a path in it never leaves the product, on writing either; one with a
  // control character or bytes that are no UTF-8 could not be stored in the container. Each is
  // said, with the name.
  for (const std::string name :
       {"../../escape.bin", "tab\there.bin", "\x1b]0;title\a.bin", "caf\xE9.bin"}) {
    ProductPackage unstorable = package;
    unstorable.product.images[0].fileName = name;
    try {
      ProductPackage::write(unstorable, location);
      ADD_FAILURE() << name;
    } catch (const PackageError& error) {
      EXPECT_EQ(error, (PackageError{PackageError::UnstorableName{name}}));
    }
  }

  // A location whose parent is a plain file cannot be written; nothing else changes.
  put(root / "plain", "x");
  EXPECT_THROW(ProductPackage::write(package, root / "plain" / "P.twflash"), fs::filesystem_error);

  // A folder that holds anything but a product is never replaced, in either form: one of
  // photos, or one whose product.json cannot be read; a product folder is (checked above).
  fs::create_directories(root / "Photos.twflash" / "files");
  put(root / "Photos.twflash" / "holiday.jpg", "jpeg");
  put(root / "Broken.twflash" / "product.json", "{");
  for (const auto& save : {&ProductPackage::write, &ProductPackage::writeDirectory}) {
    for (const char* folder : {"Photos.twflash", "Broken.twflash"}) {
      try {
        save(package, root / folder);
        ADD_FAILURE() << folder << " was replaced";
      } catch (const PackageError& error) {
        EXPECT_EQ(error, (PackageError{PackageError::FolderInTheWay{}}));
      }
    }
  }
  EXPECT_EQ(slurp(root / "Photos.twflash" / "holiday.jpg"), "jpeg");
  EXPECT_EQ(slurp(root / "Broken.twflash" / "product.json"), "{");
  fs::remove_all(root / "Photos.twflash");
  fs::remove_all(root / "Broken.twflash");

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
  fs::remove_all(location); // no product, so no save replaces it
  ProductPackage::writeDirectory(package, location);
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
  fs::remove_all(location); // no product, so no save replaces it
  ProductPackage::writeDirectory(package, location);
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
  EXPECT_EQ(readFailure(), (E{E::TooLarge{"product.json", ProductPackage::maximumRecordSize}}));

  // A record that understates a file's size would let the checks pass and the plan overwrite
  // the next image.
  std::string understated = json;
  const std::string size = "\"size\": 3000";
  understated.replace(understated.find(size), size.size(), "\"size\": 2000");
  put(location / "product.json", understated);
  EXPECT_EQ(readFailure(), (E{E::WrongSize{"firmware.bin", 2000, 3000}}));
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
  using E = PackageError;
  // Each with the name it must show (file names from a product are shown escaped).
  const std::vector<std::pair<PackageError, std::string>> errors = {
      {E{E::MissingFile{"a.bin"}}, "a.bin"},
      {E{E::DamagedFile{"a\x1B.bin"}}, "a\\x1B.bin"},
      {E{E::NewerVersion{3}}, ""},
      {E{E::NotAPackage{}}, ""},
      {E{E::WrongSize{"a.bin", 10, 3000}}, "a.bin"},
      {E{E::TooLarge{"a\u202E.bin", 128u << 20}}, "a\\u202E.bin"},
      {E{E::TooMuchFirmware{128u << 20}}, "128"},
      {E{E::TooDeep{16}}, "product.json"},
      {E{E::TooManyImages{256}}, "256"},
      {E{E::UnstorableName{"a\tb.bin"}}, "a\\x09b.bin"},
  };
  for (Language language : allLanguages) {
    LanguageOverride guard(language);
    for (const auto& [error, name] : errors) {
      std::string text = error.message();
      EXPECT_TRUE(!text.empty() && text.back() == '.') << text;
      EXPECT_TRUE(std::islower(static_cast<unsigned char>(text[0]))) << text;
      EXPECT_NE(text.find(name), std::string::npos) << text;
      EXPECT_EQ(text.find_first_of("\t\x1B"), std::string::npos) << text;
      EXPECT_EQ(text.find("\u202E"), std::string::npos) << text;
    }
  }
}

TEST_F(ProductFile, BothFormsRoundTripAndConvertIntoEachOther) {
  ProductPackage package = sample();
  ProductPackage::write(package, location);
  ASSERT_TRUE(fs::is_regular_file(location));
  EXPECT_EQ(ProductPackage::read(location), package);
  std::string bytes = slurp(location);
  EXPECT_EQ(ProductPackage::decode(
                ByteView(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size())),
            package);

  // The first entry is what type recognition reads at fixed offsets: a stored "mimetype"
  // without data descriptor or extra field, so its content starts at byte 38.
  ASSERT_GT(bytes.size(), 68u);
  EXPECT_EQ(bytes.substr(0, 4), "PK\x03\x04");
  EXPECT_EQ(bytes[6] & 0x08, 0);                       // no data descriptor
  EXPECT_EQ(bytes.substr(8, 2), std::string(2, '\0')); // stored
  EXPECT_EQ(bytes.substr(26, 4), std::string("\x08\0\0\0", 4));
  EXPECT_EQ(bytes.substr(30, 8), "mimetype");
  EXPECT_EQ(bytes.substr(38, 30), "application/x-tarnwick-product");
  EXPECT_EQ(bytes.substr(68, 4), "PK\x03\x04");

  // Directory → file → directory gives back the same directory, byte for byte.
  fs::path folder = root / "Folder.twflash";
  ProductPackage::writeDirectory(package, folder);
  auto listing = [](const fs::path& directory) {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(directory)) {
      if (entry.is_regular_file())
        files[fs::relative(entry.path(), directory).string()] = slurp(entry.path());
    }
    return files;
  };
  auto original = listing(folder);
  ProductPackage::write(ProductPackage::read(folder), folder);
  ASSERT_TRUE(fs::is_regular_file(folder));
  ProductPackage::writeDirectory(ProductPackage::read(folder), folder);
  ASSERT_TRUE(fs::is_directory(folder));
  EXPECT_EQ(listing(folder), original);

  // Saving a file over the file replaces it; nothing is left beside either product.
  package.product.name = "Lamp v2";
  ProductPackage::write(package, location);
  EXPECT_EQ(ProductPackage::read(location), package);
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(root))
    names.insert(entry.path().filename().string());
  EXPECT_EQ(names, (std::set<std::string>{"Folder.twflash", "Lamp.twflash"}));
}

TEST_F(ProductFile, HostileContainersAreRefusedWithoutWritingAnything) {
  using E = PackageError;
  ProductPackage package = sample();
  const FirmwareImage& first = package.product.images[0];
  const std::string record = encodeProduct(package.product);
  const std::string firmwareName = "files/" + ProductPackage::storedName(first);
  const std::string firmware(package.files[first.id].begin(), package.files[first.id].end());
  std::vector<ZipEntry> sound = {{"product.json", record}, {firmwareName, firmware}};
  for (const auto& image : package.product.images) {
    if (image.id == first.id) continue;
    const Bytes& data = package.files[image.id];
    sound.push_back({"files/" + ProductPackage::storedName(image), {data.begin(), data.end()}});
  }
  auto with = [&](std::vector<ZipEntry> extra) {
    auto entries = sound;
    entries.insert(entries.end(), extra.begin(), extra.end());
    return zipOf(entries);
  };
  const std::string valid = zipOf(sound);
  const std::string secondName = "files/" + ProductPackage::storedName(package.product.images[1]);
  auto withRecord = [&](const std::string& edited) {
    auto entries = sound;
    entries[0].data = edited;
    return zipOf(entries);
  };
  ProductPackage smaller = package;
  smaller.product.images[0].size -= 1;
  const std::string understated = encodeProduct(smaller.product);
  // The record with an unknown key holding `depth` levels of arrays (with the record's own
  // object around them).
  auto nested = [](const std::string& text, int depth) {
    return "{\"extra\": " + std::string(static_cast<std::size_t>(depth - 1), '[') +
           std::string(static_cast<std::size_t>(depth - 1), ']') + "," + text.substr(1);
  };
  std::string manyImages = "{}";
  for (int i = 0; i < 256; ++i)
    manyImages += ",{}";
  // An archive comment is the last field of the end record, its length the two bytes before.
  auto withComment = [](std::string container, const std::string& comment) {
    container[container.size() - 2] = static_cast<char>(comment.size() & 0xFF);
    container[container.size() - 1] = static_cast<char>(comment.size() >> 8);
    return container + comment;
  };
  // A record of a few kilobytes that claims to be smaller and would inflate much further.
  std::string bomb = zipOf({{"product.json", "{}" + std::string(8 << 20, ' ')}});

  // Written by another tool: no mimetype entry, a directory entry, stored record and firmware.
  auto tolerant = sound;
  tolerant[0].stored = tolerant[1].stored = true;
  tolerant.insert(tolerant.begin(), {"files/", "", false, S_IFDIR | 0755});
  std::string flipped = valid;
  flipped[flipped.find(firmwareName) + firmwareName.size() + 100] ^= 0x10;

  struct Case {
    const char* what;
    std::string bytes;
    std::optional<E> error; // absent: reads as the package
  };
  const std::vector<Case> cases = {
      {"another tool's layout", zipOf(tolerant), std::nullopt},
      {"empty", "", E{E::NotAPackage{}}},
      {"not a container", std::string(4096, 'x'), E{E::NotAPackage{}}},
      {"truncated", valid.substr(0, valid.size() / 2), E{E::NotAPackage{}}},
      {"truncated end", valid.substr(0, valid.size() - 1), E{E::NotAPackage{}}},
      {"no record", zipOf({{"other.json", record}}), E{E::NotAPackage{}}},
      {"another type", with({{"mimetype", "application/epub+zip", true}}), E{E::NotAPackage{}}},
      {"damaged type",
       patched(with({{"mimetype", std::string(ProductPackage::mimeType), true}}),
               "tarnwick-product", "tarnwick-produXt"),
       E{E::NotAPackage{}}},
      {"duplicate record", patched(with({{"product.jsoX", "{}"}}), "product.jsoX", "product.json"),
       E{E::NotAPackage{}}},
      {"absolute name", patched(with({{"Xetc/passwd", "x"}}), "Xetc/passwd", "/etc/passwd"),
       E{E::NotAPackage{}}},
      {"dot-dot name",
       patched(with({{"files/XX/escape", "x"}}), "files/XX/escape", "files/../escape"),
       E{E::NotAPackage{}}},
      {"link entry", with({{"files/link", "/etc/passwd", true, S_IFLNK | 0777}}),
       E{E::NotAPackage{}}},
      {"device entry", with({{"files/dev", "", true, S_IFCHR | 0666}}), E{E::NotAPackage{}}},
      {"firmware as a link",
       [&] {
         auto entries = sound;
         entries[1].unixMode = S_IFLNK | 0777;
         return zipOf(entries);
       }(),
       E{E::NotAPackage{}}},
      {"declared too large", withDeclaredSize(valid, firmwareName, 255u << 20),
       E{E::TooLarge{"firmware.bin", ProductPackage::maximumFileSize}}},
      {"record declared too large", withDeclaredSize(valid, "product.json", 2u << 20),
       E{E::TooLarge{"product.json", ProductPackage::maximumRecordSize}}},
      // At the bounds the sizes are allowed, and the data then falls short of them.
      {"record declared at the bound", withDeclaredSize(valid, "product.json", 1u << 20),
       E{E::NotAPackage{}}},
      {"record declared a byte over", withDeclaredSize(valid, "product.json", (1u << 20) + 1),
       E{E::TooLarge{"product.json", ProductPackage::maximumRecordSize}}},
      {"firmware declared at the bound", withDeclaredSize(valid, firmwareName, (128u << 20) - 3),
       E{E::WrongSize{"firmware.bin", 3000, (128u << 20) - 3}}},
      {"firmware declared a byte over", withDeclaredSize(valid, firmwareName, (128u << 20) + 1),
       E{E::TooLarge{"firmware.bin", ProductPackage::maximumFileSize}}},
      {"firmware a byte over in all", withDeclaredSize(valid, firmwareName, (128u << 20) - 2),
       E{E::TooMuchFirmware{ProductPackage::maximumFirmwareSize}}},
      {"sum too large",
       withDeclaredSize(withDeclaredSize(valid, firmwareName, 100u << 20), secondName, 100u << 20),
       E{E::TooMuchFirmware{ProductPackage::maximumFirmwareSize}}},
      {"size understated", withRecord(understated), E{E::WrongSize{"firmware.bin", 2999, 3000}}},
      // Compared with the directory's size before inflating: reading would stop at the end of
      // the data and find the entry damaged instead.
      {"declared larger than the record says", withDeclaredSize(valid, firmwareName, 100u << 20),
       E{E::WrongSize{"firmware.bin", 3000, 100u << 20}}},
      {"nested too deeply", withRecord(nested(record, 17)), E{E::TooDeep{16}}},
      {"nested as deeply as allowed", withRecord(nested(record, 16)), std::nullopt},
      {"too many images", withRecord(R"({"version": 1, "images": [)" + manyImages + "]}"),
       E{E::TooManyImages{256}}},
      {"archive comment", withComment(valid, "made elsewhere"), E{E::NotAPackage{}}},
      {"hidden second end record", withComment(valid, valid.substr(valid.size() - 22)),
       E{E::NotAPackage{}}},
      {"bytes after the end record", valid + std::string(valid.substr(valid.size() - 22)),
       E{E::NotAPackage{}}},
      {"inflates beyond its size", withDeclaredSize(bomb, "product.json", 1000),
       E{E::NotAPackage{}}},
      {"missing firmware", zipOf({sound[0]}), E{E::MissingFile{"firmware.bin"}}},
      {"changed firmware", flipped, E{E::DamagedFile{"firmware.bin"}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    fs::remove_all(location);
    put(location, c.bytes);
    auto before = fs::directory_iterator(root);
    ByteView view(reinterpret_cast<const std::uint8_t*>(c.bytes.data()), c.bytes.size());
    for (int fromMemory = 0; fromMemory < 2; ++fromMemory) {
      try {
        ProductPackage read =
            fromMemory ? ProductPackage::decode(view) : ProductPackage::read(location);
        EXPECT_FALSE(c.error);
        if (!c.error) {
          EXPECT_EQ(read, package);
        }
      } catch (const PackageError& error) {
        EXPECT_EQ(std::optional<E>(error), c.error);
      }
    }
    // Entries are only ever read into memory.
    EXPECT_EQ(std::distance(fs::directory_iterator(root), fs::directory_iterator()), 1);
    EXPECT_FALSE(fs::exists("escape") || fs::exists(root / "escape") || fs::exists("files"));
  }
}

TEST_F(ProductFile, LeftoversOfAnInterruptedSaveGoWithTheNextSave) {
  ProductPackage package = sample();
  put(root / ".Lamp.twflash.saving-abcd1234", "half a file");
  fs::create_directories(root / ".Lamp.twflash.saving-efgh5678" / "files");
  put(root / ".Lamp.twflash.saving-locked00", "a save still running");
  // Another product's: a fresh one may belong to a save just starting; an old one is left over.
  put(root / ".Other.twflash.saving-abcd1234", "another product's, just begun");
  put(root / ".Old.twflash.saving-abcd1234", "another product's, killed long ago");
  put(root / ".Old.twflash.saving-ab", "not a name a save makes");
  put(root / "notes.saving-abcd1234", "not a product's");
  const auto longAgo = fs::file_time_type::clock::now() - std::chrono::minutes(5);
  for (const char* name :
       {".Old.twflash.saving-abcd1234", ".Old.twflash.saving-ab", "notes.saving-abcd1234"})
    fs::last_write_time(root / name, longAgo);
  int running = ::open((root / ".Lamp.twflash.saving-locked00").c_str(), O_RDONLY);
  ASSERT_EQ(::flock(running, LOCK_EX), 0);
  ProductPackage::write(package, location);
  ::close(running);
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(root))
    names.insert(entry.path().filename().string());
  EXPECT_EQ(names, (std::set<std::string>{"Lamp.twflash", ".Lamp.twflash.saving-locked00",
                                          ".Other.twflash.saving-abcd1234",
                                          ".Old.twflash.saving-ab", "notes.saving-abcd1234"}));
}

TEST_F(ProductFile, ASaveKilledAtAnyMomentLeavesTheOldOrTheNewProduct) {
  // Large enough that a save takes a few milliseconds, so the kills land inside it.
  ProductPackage older = sample(), newer = sample();
  std::mt19937 random(42);
  for (auto* package : {&older, &newer}) {
    Bytes big(2 << 20);
    for (auto& byte : big)
      byte = static_cast<std::uint8_t>(random());
    package->product.images[0].size = static_cast<std::int64_t>(big.size());
    package->product.images[0].sha256 = Digest::sha256Hex(big);
    package->files[package->product.images[0].id] = big;
  }
  newer.product.name = "Lamp v2";

  for (int round = 0; round < 16; ++round) {
    // Half of the rounds start from a directory that the single file replaces.
    if (round % 2 == 0) {
      fs::remove_all(location);
      ProductPackage::writeDirectory(older, location);
    }
    pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      try {
        for (int i = 0;; ++i)
          ProductPackage::write(i % 2 ? older : newer, location);
      } catch (...) {
      }
      ::_exit(1);
    }
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 60000));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ProductPackage found = ProductPackage::read(location);
    EXPECT_TRUE(found == older || found == newer) << "round " << round;
  }
  ProductPackage::write(older, location);
  EXPECT_EQ(std::distance(fs::directory_iterator(root), fs::directory_iterator()), 1);
  EXPECT_EQ(ProductPackage::read(location), older);
}
