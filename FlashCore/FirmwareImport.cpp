#include "FlashCore/FirmwareImport.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "FlashCore/Digest.hpp"
#include "FlashCore/ESPImage.hpp"
#include "Localization/ImportTexts.hpp"

namespace tarnwick::FirmwareImport {

namespace {

using Role = FirmwareImage::Role;

std::string lowercased(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : static_cast<char>(c);
  });
  return lower;
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

bool startsWith(ByteView bytes, std::initializer_list<std::uint8_t> prefix) {
  return bytes.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), bytes.begin());
}

std::string lastComponent(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// UTF-8 text with every ill-formed sequence replaced by U+FFFD, as text decoders do.
std::string decodeUTF8(ByteView bytes) {
  static constexpr char replacement[] = "\xEF\xBF\xBD";
  std::string text;
  text.reserve(bytes.size());
  std::size_t i = 0;
  while (i < bytes.size()) {
    const std::uint8_t lead = bytes[i];
    if (lead < 0x80) {
      text += static_cast<char>(lead);
      ++i;
      continue;
    }
    std::size_t length = 0;
    std::uint8_t low = 0x80, high = 0xBF; // allowed range of the second byte
    if (lead >= 0xC2 && lead <= 0xDF)
      length = 2;
    else if (lead >= 0xE0 && lead <= 0xEF) {
      length = 3;
      if (lead == 0xE0) low = 0xA0;  // no overlong forms
      if (lead == 0xED) high = 0x9F; // no surrogates
    } else if (lead >= 0xF0 && lead <= 0xF4) {
      length = 4;
      if (lead == 0xF0) low = 0x90;
      if (lead == 0xF4) high = 0x8F; // nothing above U+10FFFF
    }
    // The longest valid start of a sequence is replaced as one unit.
    std::size_t valid = 1;
    while (length != 0 && valid < length && i + valid < bytes.size()) {
      const std::uint8_t next = bytes[i + valid];
      const bool ok = valid == 1 ? next >= low && next <= high : next >= 0x80 && next <= 0xBF;
      if (!ok) break;
      ++valid;
    }
    if (length != 0 && valid == length) {
      text.append(reinterpret_cast<const char*>(bytes.data() + i), length);
    } else {
      text += replacement;
    }
    i += valid;
  }
  return text;
}

std::optional<ESPChip> chipOfHeader(ByteView bytes) {
  const auto header = ESPImage::readHeader(bytes, true);
  if (!header || !header->chipID) return std::nullopt;
  return espChipFromImageChipID(*header->chipID);
}

// Where the second-stage bootloader starts: the two oldest chips keep the first 4 KB free.
std::uint32_t bootloaderAddress(std::optional<ESPChip> chip) {
  if (chip && *chip != ESPChip::esp32 && *chip != ESPChip::esp32s2) return 0x0;
  return 0x1000;
}

// "0x1000", "0X1000" or "1000" as a 32-bit address.
std::optional<std::uint32_t> parseAddress(const std::string& text) {
  std::string digits;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '0' && i + 1 < text.size() && (text[i + 1] == 'x' || text[i + 1] == 'X')) {
      ++i;
      continue;
    }
    digits += text[i];
  }
  if (digits.empty()) return std::nullopt;
  std::uint64_t value = 0;
  for (char c : digits) {
    int digit;
    if (c >= '0' && c <= '9')
      digit = c - '0';
    else if (c >= 'a' && c <= 'f')
      digit = c - 'a' + 10;
    else if (c >= 'A' && c <= 'F')
      digit = c - 'A' + 10;
    else
      return std::nullopt;
    value = value * 16 + static_cast<std::uint64_t>(digit);
    if (value > 0xFFFFFFFF) return std::nullopt;
  }
  return static_cast<std::uint32_t>(value);
}

bool isObjectOfStrings(const nlohmann::json& value) {
  if (!value.is_object()) return false;
  return std::all_of(value.begin(), value.end(),
                     [](const nlohmann::json& item) { return item.is_string(); });
}

void sortByOffset(std::vector<Imported>& images) {
  std::stable_sort(images.begin(), images.end(), [](const Imported& a, const Imported& b) {
    return a.image.offset < b.image.offset;
  });
}

template <class... F> struct Overloaded : F... { using F::operator()...; };
template <class... F> Overloaded(F...) -> Overloaded<F...>;

} // namespace

std::string ImportError::message() const {
  return std::visit(
      Overloaded{[](const empty&) { return L10n::Errors::importEmpty(); },
                 [](const hex& e) { return e.error.message(); },
                 [](const nothingFound&) { return L10n::Errors::importNothingFound(); }},
      value);
}

Bytes content(const std::string& fileName, ByteView bytes) {
  if (bytes.empty()) throw ImportError{ImportError::empty{fileName}};
  if (!lowercased(fileName).ends_with(".hex")) return Bytes(bytes.begin(), bytes.end());
  try {
    return IntelHex::parse(decodeUTF8(bytes), hexSizeLimit);
  } catch (const IntelHex::ParseError& error) {
    throw ImportError{ImportError::hex{fileName, error}};
  }
}

Role role(std::string_view fileName, ByteView bytes, const Target& target) {
  if (!target.isESP()) return Role::application;
  if (startsWith(bytes, {0xAA, 0x50})) return Role::partitionTable;
  const std::string name = lowercased(fileName);
  if (contains(name, "partition")) return Role::partitionTable;
  if (contains(name, "boot_app0") || contains(name, "otadata")) return Role::otaData;
  if (contains(name, "merged") || contains(name, "factory")) return Role::other;
  if (contains(name, "bootloader")) return Role::bootloader;
  for (std::string_view fs : {"littlefs", "spiffs", "fatfs", "filesystem"})
    if (contains(name, fs)) return Role::fileSystem;
  return startsWith(bytes, {0xE9}) ? Role::application : Role::other;
}

std::uint32_t address(Role role, ByteView bytes, const Target& target,
                      const std::vector<Imported>& existing) {
  if (!target.isESP()) return 0x0;

  std::optional<std::vector<Partition>> partitions;
  auto table = std::find_if(existing.begin(), existing.end(), [](const Imported& entry) {
    return entry.image.role == Role::partitionTable;
  });
  if (table != existing.end()) partitions = Partition::parseTable(table->bytes);

  std::optional<ESPChip> chip = target.espChip();
  if (!chip) chip = chipOfHeader(bytes);
  for (auto it = existing.begin(); !chip && it != existing.end(); ++it)
    chip = chipOfHeader(it->bytes);

  switch (role) {
  case Role::bootloader: return bootloaderAddress(chip);
  case Role::partitionTable: return 0x8000;
  case Role::otaData:
    if (partitions) {
      for (const Partition& p : *partitions)
        if (p.type == 1 && p.subtype == 0) return p.offset;
    }
    return 0xE000;
  case Role::application:
    if (partitions) {
      if (auto app = Partition::appPartition(*partitions)) return app->offset;
    }
    return 0x10000;
  case Role::fileSystem:
    if (partitions) {
      if (auto fs = Partition::fileSystemPartition(*partitions)) return fs->offset;
    }
    return 0x290000;
  case Role::other: return 0x0;
  }
  return 0x0;
}

Imported makeImage(const std::string& fileName, Bytes content, const Target& target,
                   const std::vector<Imported>& existing) {
  FirmwareImage image;
  image.id = UUID::random();
  image.enabled = true;
  image.role = role(fileName, content, target);
  image.offset = address(image.role, content, target, existing);
  // A Linux file name may hold any byte; the product record holds text.
  image.fileName = validUTF8(fileName);
  image.size = static_cast<std::int64_t>(content.size());
  image.sha256 = Digest::sha256Hex(content);
  return {std::move(image), std::move(content)};
}

std::optional<BuildFolder> readFlasherArgs(ByteView flasherArgs, const Files& files) {
  const auto json = nlohmann::json::parse(flasherArgs.begin(), flasherArgs.end(), nullptr, false);
  if (json.is_discarded() || !json.is_object()) return std::nullopt;
  const auto flashFiles = json.find("flash_files");
  if (flashFiles == json.end() || !isObjectOfStrings(*flashFiles)) return std::nullopt;

  BuildFolder folder;
  if (auto extra = json.find("extra_esptool_args"); extra != json.end() && extra->is_object()) {
    if (auto chip = extra->find("chip"); chip != extra->end() && chip->is_string())
      folder.chip = espChipFromRawValue(chip->get<std::string>());
  }

  std::vector<std::pair<std::string, std::string>> pairs;
  for (auto it = flashFiles->begin(); it != flashFiles->end(); ++it)
    pairs.emplace_back(it.key(), it.value().get<std::string>());
  std::sort(pairs.begin(), pairs.end());
  const Target target = Target::esp(folder.chip);
  for (const auto& [addressText, path] : pairs) {
    const auto offset = parseAddress(addressText);
    const auto file = files.find(path);
    if (!offset || file == files.end()) continue;
    Imported entry = makeImage(lastComponent(path), file->second, target, folder.images);
    entry.image.offset = *offset;
    folder.images.push_back(std::move(entry));
  }
  if (folder.images.empty()) throw ImportError{ImportError::nothingFound{}};

  if (auto settings = json.find("flash_settings");
      settings != json.end() && isObjectOfStrings(*settings)) {
    if (auto mode = settings->find("flash_mode"); mode != settings->end())
      folder.flashMode = flashModeFromRawValue(mode->get<std::string>());
    if (auto size = settings->find("flash_size"); size != settings->end())
      folder.flashSize = flashSizeFromRawValue(size->get<std::string>());
  }
  sortByOffset(folder.images);
  return folder;
}

BuildFolder scanFolder(const Files& files, const std::optional<Bytes>& flasherArgs,
                       const Target& target) {
  if (flasherArgs) {
    if (auto folder = readFlasherArgs(*flasherArgs, files)) return std::move(*folder);
  }
  // Files is ordered by path already, which is the order in which candidates are tried.

  if (!target.isESP()) {
    const Files::value_type* sketch = nullptr;
    for (const auto& file : files) {
      const std::string path = lowercased(file.first);
      if (path.ends_with(".hex") && !contains(path, "with_bootloader")) {
        sketch = &file;
        break;
      }
    }
    for (auto it = files.begin(); !sketch && it != files.end(); ++it)
      if (lowercased(it->first).ends_with(".bin")) sketch = &*it;
    if (!sketch) throw ImportError{ImportError::nothingFound{}};
    const std::string name = lastComponent(sketch->first);
    BuildFolder folder;
    folder.images.push_back(makeImage(name, content(lowercased(name), sketch->second), target, {}));
    return folder;
  }

  // Each kind of file by its name; the first match in path order wins.
  using Rule = bool (*)(const std::string& name, const std::string& path);
  const Rule rules[] = {
      [](const std::string& name, const std::string&) { return name.ends_with("partitions.bin"); },
      [](const std::string& name, const std::string&) { return name.ends_with("bootloader.bin"); },
      [](const std::string& name, const std::string&) { return name == "boot_app0.bin"; },
      [](const std::string& name, const std::string& path) {
        return name == "firmware.bin" || path.ends_with(".ino.bin");
      },
      [](const std::string& name, const std::string&) {
        return name == "littlefs.bin" || name == "spiffs.bin" || name == "fatfs.bin";
      },
  };
  std::vector<const Files::value_type*> picked;
  for (Rule rule : rules) {
    for (const auto& file : files) {
      const std::string path = lowercased(file.first);
      if (rule(lastComponent(path), path)) {
        picked.push_back(&file);
        break;
      }
    }
  }
  if (picked.empty()) throw ImportError{ImportError::nothingFound{}};

  BuildFolder folder;
  for (const auto* file : picked)
    folder.images.push_back(
        makeImage(lastComponent(file->first), file->second, target, folder.images));

  for (const Imported& entry : folder.images) {
    if ((folder.chip = chipOfHeader(entry.bytes))) break;
  }
  if (const std::optional<ESPChip> chip = target.espChip() ? target.espChip() : folder.chip) {
    for (Imported& entry : folder.images)
      if (entry.image.role == Role::bootloader) entry.image.offset = bootloaderAddress(chip);
  }
  sortByOffset(folder.images);
  return folder;
}

} // namespace tarnwick::FirmwareImport
