#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "FlashCore/Product.hpp"
#include "Localization/Language.hpp"

using namespace tarnwick;

namespace {

FirmwareImage image(std::uint32_t offset, bool enabled = true, std::string name = "a.bin") {
  FirmwareImage result;
  result.id = UUID::random();
  result.enabled = enabled;
  result.role = FirmwareImage::Role::application;
  result.offset = offset;
  result.fileName = std::move(name);
  result.size = 16;
  result.sha256 = std::string(64, 'a');
  return result;
}

std::string decodeFailure(const std::string& json) {
  try {
    decodeProduct(json);
  } catch (const ProductDecodingError& error) {
    return error.description;
  }
  return "decoded";
}

} // namespace

TEST(Target, TextFormRoundTripsAndRejectsNearMisses) {
  ASSERT_EQ(Target::all().size(), 14u);
  EXPECT_EQ(Target::all().front(), Target::esp());
  EXPECT_EQ(Target::all()[4].text(), "esp:esp32s3");
  EXPECT_EQ(Target::all().back().text(), "avr:proMicro");
  for (const Target& target : Target::all())
    EXPECT_EQ(Target::parse(target.text()), target);

  auto nano = Target::parse("avr:nanoOldBootloader");
  ASSERT_TRUE(nano);
  EXPECT_EQ(nano->avrBoard(), AVRBoard::nanoOldBootloader);
  EXPECT_FALSE(nano->isESP());
  EXPECT_FALSE(nano->espChip());
  EXPECT_NE(Target::esp(), Target::esp(ESPChip::esp32));
  for (const char* text : {"esp:ESP32", "esp:", ":esp32", "esp:auto:x", "esp32", "stm:x", ""}) {
    EXPECT_EQ(decodeFailure(nlohmann::json{{"target", text}}.dump()),
              std::string("Unknown target ") + text);
  }
}

TEST(Product, EmptyObjectDecodesToDefaultsAndRoundTripsKeepEverything) {
  Product defaults = decodeProduct("{}");
  EXPECT_EQ(defaults, Product{});
  EXPECT_EQ(defaults.version, 1);
  EXPECT_EQ(defaults.flashBaud, 460800);
  EXPECT_EQ(defaults.resetMode, ResetMode::auto_);
  EXPECT_TRUE(defaults.verify && defaults.clearOTAData);
  EXPECT_EQ(decodeProduct(R"({"name": null, "images": null})"), Product{});

  Product product;
  product.name = "Lamp \"v2\" ü";
  product.notes = "line\nbreak";
  product.target = Target::avr(AVRBoard::mega2560);
  product.flashBaud = 921600;
  product.resetMode = ResetMode::usbJTAG;
  product.verify = false;
  product.flashMode = FlashMode::dio;
  product.flashSize = FlashSize::mb16;
  product.clearOTAData = false;
  product.images = {image(0x10000), image(0xFFFFFFFF, false, "b.bin")};
  product.images[1].size = 0xFFFFFFFF;
  EXPECT_EQ(decodeProduct(encodeProduct(product)), product);

  // Every key is written, images with all seven keys, ids in upper case.
  auto json = nlohmann::json::parse(encodeProduct(product));
  EXPECT_EQ(json.size(), 11u);
  EXPECT_EQ(json["images"][0].size(), 7u);
  EXPECT_EQ(json["target"], "avr:mega2560");
  EXPECT_EQ(json["flashSize"], "16MB");
  std::string id = json["images"][0]["id"];
  EXPECT_EQ(id, product.images[0].id.text());
  EXPECT_EQ(id.find_first_of("abcdef"), std::string::npos);
}

TEST(Product, DecodingFailsWholeOnAnyBadValue) {
  Product one;
  one.images = {image(0x1000)};
  auto json = nlohmann::json::parse(encodeProduct(one));
  auto without = [&](const char* key) {
    auto copy = json;
    copy["images"][0].erase(key);
    return copy.dump();
  };
  EXPECT_NE(decodeFailure(without("sha256")), "decoded");
  EXPECT_NE(decodeFailure(without("id")), "decoded");
  auto changed = [&](const char* key, nlohmann::json value) {
    auto copy = json;
    copy["images"][0][key] = value;
    return copy.dump();
  };
  EXPECT_NE(decodeFailure(changed("offset", -1)), "decoded");
  EXPECT_NE(decodeFailure(changed("offset", 0x100000000)), "decoded");
  EXPECT_NE(decodeFailure(changed("offset", "4096")), "decoded");
  EXPECT_NE(decodeFailure(changed("size", 1.5)), "decoded");
  EXPECT_NE(decodeFailure(changed("role", "firmware")), "decoded");
  EXPECT_NE(decodeFailure(changed("id", "not-a-uuid")), "decoded");
  EXPECT_NE(decodeFailure(changed("enabled", 1)), "decoded");
  EXPECT_NE(decodeFailure(R"({"flashSize": "4mb"})"), "decoded");
  EXPECT_NE(decodeFailure(R"({"verify": "yes"})"), "decoded");
  EXPECT_NE(decodeFailure(R"({"images": {}})"), "decoded");
  EXPECT_NE(decodeFailure("[]"), "decoded");
  EXPECT_NE(decodeFailure("{\"name\": \"cut"), "decoded");
  EXPECT_NE(decodeFailure(std::string(100000, '[')), "decoded");
  auto twins = json;
  twins["images"].push_back(json["images"][0]);
  EXPECT_NE(decodeFailure(twins.dump()), "decoded");
  // Unknown keys are ignored.
  EXPECT_EQ(decodeProduct(R"({"colour": "red", "version": 0})").version, 0);

  for (Language language : allLanguages) {
    LanguageOverride guard(language);
    EXPECT_NE(ProductDecodingError{"x"}.message("P.twflash").find("P.twflash"), std::string::npos);
  }
  LanguageOverride english(Language::en);
  EXPECT_EQ(ProductDecodingError{"x"}.message("P.twflash"),
            "Cannot read P.twflash. Is it a file of this app?");

  // Linux file names may hold any byte; the record still saves and reads back.
  one.images[0].fileName = "app\xff.bin";
  EXPECT_EQ(decodeProduct(encodeProduct(one)).images[0].fileName, "app\xEF\xBF\xBD.bin");
}

TEST(Product, EnabledImagesSortStablyAndEndWraps) {
  Product product;
  auto high = image(0x10000), low = image(0x1000), off = image(0x8000, false);
  auto twinA = image(0x20000, true, "first"), twinB = image(0x20000, true, "second");
  product.images = {high, twinA, low, off, twinB};
  auto enabled = product.enabledImages();
  ASSERT_EQ(enabled.size(), 4u);
  EXPECT_EQ(enabled[0], low);
  EXPECT_EQ(enabled[1], high);
  EXPECT_EQ(enabled[2].fileName, "first");
  EXPECT_EQ(enabled[3].fileName, "second");

  auto wrapping = image(0xFFFFF000);
  wrapping.size = 0x2000;
  EXPECT_EQ(wrapping.end(), 0x1000u);
}

TEST(UUID, TextIsCanonicalUpperCaseAndParsesBack) {
  UUID id = UUID::random();
  std::string text = id.text();
  ASSERT_EQ(text.size(), 36u);
  EXPECT_EQ(text[14], '4'); // version 4
  EXPECT_EQ(UUID::parse(text), id);
  std::string lower = text;
  for (char& c : lower)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  EXPECT_EQ(UUID::parse(lower), id);
  EXPECT_NE(UUID::random(), id);
  EXPECT_FALSE(UUID::parse(text.substr(1)));
  EXPECT_FALSE(UUID::parse(text + "0"));
  EXPECT_FALSE(UUID::parse("ZZZZZZZZ-ZZZZ-ZZZZ-ZZZZ-ZZZZZZZZZZZZ"));
}

TEST(Product, RecordsBeyondAnyRealProductAreRefusedByTheirBound) {
  using Limit = ProductDecodingError::Limit;
  // `depth` levels in all: the record's object, then arrays under a key this version ignores.
  auto nested = [](int depth, const std::string& inner = "") {
    const auto arrays = static_cast<std::size_t>(depth - 1);
    return "{\"extra\": " + std::string(arrays, '[') + inner + std::string(arrays, ']') + "}";
  };
  auto withImages = [](std::size_t count, bool twins = false) {
    Product product;
    for (std::size_t i = 0; i < count; ++i)
      product.images.push_back(image(static_cast<std::uint32_t>(i * 0x1000)));
    if (twins) product.images.back().id = product.images.front().id;
    return encodeProduct(product);
  };
  // Counted before any is decoded: too many of anything is refused as too many.
  auto manyNumbers = [](std::size_t count) {
    std::string json = R"({"images": [0)";
    for (std::size_t i = 1; i < count; ++i)
      json += ",0";
    return json + "]}";
  };
  struct Case {
    const char* what;
    std::string json;
    std::optional<Limit> refusal; // absent: decodes
  };
  const std::vector<Case> cases = {
      {"as deep as allowed", nested(maximumRecordNesting), std::nullopt},
      {"one level deeper", nested(maximumRecordNesting + 1), Limit::nesting},
      {"objects nested too deeply", nested(maximumRecordNesting, "{\"a\": {}}"), Limit::nesting},
      {"brackets only", std::string(1 << 20, '['), Limit::nesting},
      {"as many images as allowed", withImages(maximumImageCount), std::nullopt},
      {"one image more", withImages(maximumImageCount + 1), Limit::images},
      {"as many numbers as images", manyNumbers(maximumImageCount), Limit::none},
      {"a number more than images", manyNumbers(maximumImageCount + 1), Limit::images},
      {"twins far apart", withImages(maximumImageCount, true), Limit::none},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    try {
      decodeProduct(c.json);
      EXPECT_FALSE(c.refusal);
    } catch (const ProductDecodingError& error) {
      EXPECT_EQ(std::optional(error.limit), c.refusal) << error.description;
    }
  }
}
