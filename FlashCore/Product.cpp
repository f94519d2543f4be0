#include "FlashCore/Product.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <unordered_set>

#include "Localization/GeneralTexts.hpp"

namespace tarnwick {

using nlohmann::json;

// ---- Target ----

const std::vector<Target>& Target::all() {
  static const std::vector<Target> targets = [] {
    std::vector<Target> list{Target::esp()};
    for (ESPChip chip : ESPChips::all)
      list.push_back(Target::esp(chip));
    for (AVRBoard board : AVRBoards::all)
      list.push_back(Target::avr(board));
    return list;
  }();
  return targets;
}

std::optional<Target> Target::parse(std::string_view text) {
  auto colon = text.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  std::string_view family = text.substr(0, colon);
  std::string_view rest = text.substr(colon + 1);
  // Only the first ":" splits; a second one stays in the name and makes it unknown.
  if (family == "esp") {
    if (rest == "auto") return Target::esp();
    if (auto chip = espChipFromRawValue(rest)) return Target::esp(*chip);
  } else if (family == "avr") {
    if (auto board = avrBoardFromRawValue(rest)) return Target::avr(*board);
  }
  return std::nullopt;
}

std::string Target::text() const {
  if (auto* esp = std::get_if<ESP>(&value_)) {
    return esp->chip ? "esp:" + std::string(rawValue(*esp->chip)) : "esp:auto";
  }
  return "avr:" + std::string(rawValue(std::get<AVR>(value_).board));
}

std::optional<ESPChip> Target::espChip() const {
  if (auto* esp = std::get_if<ESP>(&value_)) return esp->chip;
  return std::nullopt;
}

std::optional<AVRBoard> Target::avrBoard() const {
  if (auto* avr = std::get_if<AVR>(&value_)) return avr->board;
  return std::nullopt;
}

// ---- Roles and entries ----

std::string_view rawValue(FirmwareImage::Role role) {
  switch (role) {
  case FirmwareImage::Role::bootloader: return "bootloader";
  case FirmwareImage::Role::partitionTable: return "partitionTable";
  case FirmwareImage::Role::otaData: return "otaData";
  case FirmwareImage::Role::application: return "application";
  case FirmwareImage::Role::fileSystem: return "fileSystem";
  case FirmwareImage::Role::other: return "other";
  }
  return "other";
}

std::optional<FirmwareImage::Role> roleFromRawValue(std::string_view raw) {
  for (auto role : allRoles) {
    if (rawValue(role) == raw) return role;
  }
  return std::nullopt;
}

std::vector<FirmwareImage> Product::enabledImages() const {
  std::vector<FirmwareImage> result;
  std::copy_if(images.begin(), images.end(), std::back_inserter(result),
               [](const FirmwareImage& image) { return image.enabled; });
  std::stable_sort(result.begin(), result.end(),
                   [](const auto& a, const auto& b) { return a.offset < b.offset; });
  return result;
}

// ---- JSON ----

std::string ProductDecodingError::message(const std::string& file) const {
  return L10n::Errors::cannotRead(file);
}

namespace {

[[noreturn]] void corrupt(const std::string& description) {
  throw ProductDecodingError{description};
}

json encodeImage(const FirmwareImage& image) {
  return json{{"id", image.id.text()},        {"enabled", image.enabled},
              {"role", rawValue(image.role)}, {"offset", image.offset},
              {"fileName", image.fileName},   {"size", image.size},
              {"sha256", image.sha256}};
}

const json& required(const json& object, const char* key) {
  auto it = object.find(key);
  if (it == object.end()) corrupt(std::string("No value for key \"") + key + "\"");
  return *it;
}

std::string stringValue(const json& value, const char* key) {
  if (!value.is_string()) corrupt(std::string("Expected text for \"") + key + "\"");
  return value.get<std::string>();
}

bool boolValue(const json& value, const char* key) {
  if (!value.is_boolean()) corrupt(std::string("Expected a boolean for \"") + key + "\"");
  return value.get<bool>();
}

std::int64_t integerValue(const json& value, const char* key, std::int64_t low, std::int64_t high) {
  bool fits = false;
  std::int64_t result = 0;
  if (value.is_number_unsigned()) {
    auto raw = value.get<std::uint64_t>();
    fits = raw <= static_cast<std::uint64_t>(high);
    result = static_cast<std::int64_t>(raw);
  } else if (value.is_number_integer()) {
    result = value.get<std::int64_t>();
    fits = true;
  }
  if (!fits || result < low || result > high) {
    corrupt(std::string("Expected a whole number in range for \"") + key + "\"");
  }
  return result;
}

template <typename T, typename Parse> T enumValue(const json& value, const char* key, Parse parse) {
  auto text = stringValue(value, key);
  auto result = parse(text);
  if (!result) corrupt(std::string("Unknown value \"") + text + "\" for \"" + key + "\"");
  return *result;
}

FirmwareImage decodeImage(const json& object) {
  if (!object.is_object()) corrupt("Expected an object for an image");
  FirmwareImage image;
  auto idText = stringValue(required(object, "id"), "id");
  auto id = UUID::parse(idText);
  if (!id) corrupt("Invalid UUID \"" + idText + "\"");
  image.id = *id;
  image.enabled = boolValue(required(object, "enabled"), "enabled");
  image.role = enumValue<FirmwareImage::Role>(
      required(object, "role"), "role", [](const std::string& t) { return roleFromRawValue(t); });
  image.offset =
      static_cast<std::uint32_t>(integerValue(required(object, "offset"), "offset", 0, 0xFFFFFFFF));
  image.fileName = stringValue(required(object, "fileName"), "fileName");
  image.size = integerValue(required(object, "size"), "size", 0, 0xFFFFFFFF);
  image.sha256 = stringValue(required(object, "sha256"), "sha256");
  return image;
}

// A key that is absent or null keeps the default.
const json* optional(const json& object, const char* key) {
  auto it = object.find(key);
  if (it == object.end() || it->is_null()) return nullptr;
  return &*it;
}

} // namespace

std::string encodeProduct(const Product& product) {
  json images = json::array();
  for (const auto& image : product.images)
    images.push_back(encodeImage(image));
  json object{{"version", product.version},
              {"name", product.name},
              {"notes", product.notes},
              {"target", product.target.text()},
              {"flashBaud", product.flashBaud},
              {"resetMode", rawValue(product.resetMode)},
              {"verify", product.verify},
              {"flashMode", rawValue(product.flashMode)},
              {"flashSize", rawValue(product.flashSize)},
              {"clearOTAData", product.clearOTAData},
              {"images", images}};
  // nlohmann's objects keep their keys sorted, so the output is stable. Text that is not UTF-8
  // (a Linux file name may hold any byte) is stored with U+FFFD, so the record always reads back.
  return object.dump(2, ' ', false, json::error_handler_t::replace);
}

Product decodeProduct(std::string_view text) {
  // The depth is counted while parsing, so a record of nothing but brackets is refused before
  // it is built.
  struct TooDeep {};
  json object;
  try {
    object = json::parse(
        text.begin(), text.end(),
        [](int depth, json::parse_event_t event, json&) {
          if ((event == json::parse_event_t::object_start ||
               event == json::parse_event_t::array_start) &&
              depth >= maximumRecordNesting) {
            throw TooDeep{};
          }
          return true;
        },
        false);
  } catch (const TooDeep&) {
    throw ProductDecodingError{"The record is nested too deeply",
                               ProductDecodingError::Limit::nesting};
  }
  if (object.is_discarded()) corrupt("The data is not valid JSON");
  if (!object.is_object()) corrupt("Expected an object for the product");

  Product product;
  constexpr std::int64_t int64Max = std::numeric_limits<std::int64_t>::max();
  constexpr std::int64_t int64Min = std::numeric_limits<std::int64_t>::min();
  if (auto* v = optional(object, "version"))
    product.version = integerValue(*v, "version", int64Min, int64Max);
  if (auto* v = optional(object, "name")) product.name = stringValue(*v, "name");
  if (auto* v = optional(object, "notes")) product.notes = stringValue(*v, "notes");
  if (auto* v = optional(object, "target")) {
    auto text = stringValue(*v, "target");
    auto target = Target::parse(text);
    if (!target) corrupt("Unknown target " + text);
    product.target = *target;
  }
  if (auto* v = optional(object, "flashBaud"))
    product.flashBaud = integerValue(*v, "flashBaud", int64Min, int64Max);
  if (auto* v = optional(object, "resetMode"))
    product.resetMode = enumValue<ResetMode>(
        *v, "resetMode", [](const std::string& t) { return resetModeFromRawValue(t); });
  if (auto* v = optional(object, "verify")) product.verify = boolValue(*v, "verify");
  if (auto* v = optional(object, "flashMode"))
    product.flashMode = enumValue<FlashMode>(
        *v, "flashMode", [](const std::string& t) { return flashModeFromRawValue(t); });
  if (auto* v = optional(object, "flashSize"))
    product.flashSize = enumValue<FlashSize>(
        *v, "flashSize", [](const std::string& t) { return flashSizeFromRawValue(t); });
  if (auto* v = optional(object, "clearOTAData"))
    product.clearOTAData = boolValue(*v, "clearOTAData");
  if (auto* v = optional(object, "images")) {
    if (!v->is_array()) corrupt("Expected an array for \"images\"");
    if (v->size() > maximumImageCount) {
      throw ProductDecodingError{"The record lists too many images",
                                 ProductDecodingError::Limit::images};
    }
    std::unordered_set<std::string> ids;
    for (const auto& image : *v) {
      product.images.push_back(decodeImage(image));
      // Files are kept by id, so a second entry with the same id has no file of its own.
      const UUID& id = product.images.back().id;
      if (!ids.insert(id.text()).second) corrupt("Two images share the id " + id.text());
    }
  }
  return product;
}

} // namespace tarnwick
