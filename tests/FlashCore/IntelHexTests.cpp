#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <vector>

#include "FlashCore/IntelHex.hpp"
#include "Localization/Language.hpp"
#include "support/HexFiles.hpp"

using namespace tarnwick;
using tarnwick::testing::hexRecord;
using tarnwick::testing::intelHexOf;
using Error = IntelHex::ParseError;

namespace {

constexpr std::int64_t importLimit = 4194304;

// The outcome of a parse: the image or the error, so that tests can compare either.
struct Outcome {
  std::optional<Bytes> image;
  std::optional<Error> error;
};

Outcome run(std::string_view text, std::int64_t limit = importLimit) {
  try {
    return {IntelHex::parse(text, limit), std::nullopt};
  } catch (const Error& error) {
    return {std::nullopt, error};
  }
}

Error errorOf(std::string_view text, std::int64_t limit = importLimit) {
  Outcome outcome = run(text, limit);
  EXPECT_TRUE(outcome.error) << "parsed without error: " << text;
  return outcome.error.value_or(Error{Error::noData{}});
}

Error invalidLine(std::int64_t n) { return {Error::invalidLine{n}}; }
Error checksum(std::int64_t n) { return {Error::checksum{n}}; }

const std::string eof = ":00000001FF";

} // namespace

TEST(IntelHex, RecordsBuildTheImageFromAddressZero) {
  EXPECT_EQ(errorOf(eof), Error{Error::noData{}});
  EXPECT_EQ(errorOf(""), Error{Error::noData{}});
  EXPECT_EQ(errorOf(" \n\t\n"), Error{Error::noData{}});
  EXPECT_EQ(IntelHex::parse(":0100000041BE\n" + eof, importLimit), Bytes{0x41});

  // Only data at 0x0010: the image still starts at 0 with sixteen bytes of 0xFF.
  Bytes image = IntelHex::parse(hexRecord(0, 0x0010, Bytes{1, 2, 3}) + "\n" + eof, importLimit);
  Bytes expected(19, 0xFF);
  expected[16] = 1;
  expected[17] = 2;
  expected[18] = 3;
  EXPECT_EQ(image, expected);

  image = IntelHex::parse(":020000040001F9\n" + hexRecord(0, 0, Bytes{0x5A}), importLimit);
  ASSERT_EQ(image.size(), 0x10001u);
  EXPECT_EQ(image[0x10000], 0x5A);
  EXPECT_EQ(image[0xFFFF], 0xFF);

  // Segment 0x1000 is 0x10000; a later segment or linear record replaces the base, never adds.
  image = IntelHex::parse(":020000021000EC\n" + hexRecord(0, 2, Bytes{7}), importLimit);
  EXPECT_EQ(image.size(), 0x10003u);
  EXPECT_EQ(image.back(), 7);
  image = IntelHex::parse(":020000040001F9\n:020000021000EC\n" + hexRecord(0, 0, Bytes{9}),
                          importLimit);
  EXPECT_EQ(image.size(), 0x10001u);
  image = IntelHex::parse(":020000021000EC\n:020000040000FA\n" + hexRecord(0, 1, Bytes{9}),
                          importLimit);
  EXPECT_EQ(image, (Bytes{0xFF, 9}));

  // Addresses count on past 0xFFFF instead of wrapping to the segment's start.
  image = IntelHex::parse(hexRecord(0, 0xFFFE, Bytes{1, 2, 3, 4}), importLimit);
  ASSERT_EQ(image.size(), 0x10002u);
  EXPECT_EQ(image[0], 0xFF);
  EXPECT_EQ(image[0x10001], 4);

  // Records in falling order, overlapping: the later record wins where they meet.
  image = IntelHex::parse(hexRecord(0, 4, Bytes{0xA4, 0xA5}) + "\n" +
                              hexRecord(0, 0, Bytes{0xB0, 0xB1, 0xB2, 0xB3, 0xB4}),
                          importLimit);
  EXPECT_EQ(image, (Bytes{0xB0, 0xB1, 0xB2, 0xB3, 0xB4, 0xA5}));

  // The end-of-file record does not end reading; start addresses and empty data are ignored;
  // lower-case digits are as good as upper case.
  image = IntelHex::parse(eof + "\n:0100000041be\n:0400000300003800C1\n:0400000500000000F7\n" +
                              hexRecord(0, 0x40),
                          importLimit);
  EXPECT_EQ(image, Bytes{0x41});
  // An end-of-file record that carries data is still only an end-of-file record.
  EXPECT_EQ(errorOf(hexRecord(1, 0, Bytes{1, 2})), Error{Error::noData{}});
}

TEST(IntelHex, MalformedRecordsNameTheirLine) {
  // One off in the checksum; the checksum byte missing; an even number of characters.
  EXPECT_EQ(errorOf(":0100000041BF"), checksum(1));
  EXPECT_EQ(errorOf(":0100000041"), invalidLine(1));
  EXPECT_EQ(errorOf(":0100000041BEX"), invalidLine(1));
  EXPECT_EQ(errorOf(":0100000041BE0"), invalidLine(1));
  EXPECT_EQ(errorOf("0100000041BE0"), invalidLine(1));
  EXPECT_EQ(errorOf(":00000001F"), invalidLine(1));
  EXPECT_EQ(errorOf(":0100000G41BE"), invalidLine(1));
  EXPECT_EQ(errorOf(":01000000 41BE"), invalidLine(1));
  // A byte more than the length byte announces, with a checksum that would match.
  EXPECT_EQ(errorOf(":010000004142FC"), invalidLine(1));
  // A line too long for any length byte.
  EXPECT_EQ(errorOf(":" + std::string(600, '0') + "0"), invalidLine(1));
  // Unknown type, and address records of the wrong length.
  EXPECT_EQ(errorOf(hexRecord(6, 0)), invalidLine(1));
  EXPECT_EQ(errorOf(hexRecord(0x02, 0, Bytes{0x10, 0, 0})), invalidLine(1));
  EXPECT_EQ(errorOf(hexRecord(0x04, 0, Bytes{0x01})), invalidLine(1));
  // The checksum is judged before the type.
  EXPECT_EQ(errorOf(":00000006FB"), checksum(1));

  // Empty pieces between breaks are not counted; a line of blanks is.
  const std::string good = ":0100000041BE";
  EXPECT_EQ(errorOf(good + "\n\n:0100000041BF"), checksum(2));
  EXPECT_EQ(errorOf(good + "\n  \t \n:0100000041BF"), checksum(3));
  EXPECT_EQ(errorOf("\n\n\n" + good + "\r\n\r\n" + good + "\n\r" + "nonsense"), invalidLine(3));

  // Processing stops at the first fault, whichever kind comes later.
  EXPECT_EQ(errorOf(good + "\n:0100000041BF\n:01\n"), checksum(2));
  EXPECT_EQ(errorOf(hexRecord(0, 0, Bytes{1, 2}) + "\n:01\n", 1), Error{Error::tooLarge{}});
}

TEST(IntelHex, EveryLineBreakSeparatesLinesAndBlanksAtTheEndsAreIgnored) {
  const std::string a = hexRecord(0, 0, Bytes{0x11});
  const std::string b = hexRecord(0, 1, Bytes{0x22});
  const std::string bad = ":0100020033CB"; // checksum one off
  const char* breaks[] = {"\n",   "\v",       "\f",           "\r",
                          "\r\n", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"};
  for (const char* br : breaks) {
    SCOPED_TRACE(::testing::PrintToString(std::string(br)));
    EXPECT_EQ(IntelHex::parse(a + br + b + br + eof + br, importLimit), (Bytes{0x11, 0x22}));
    EXPECT_EQ(errorOf(a + br + br + b + br + bad + br + eof), checksum(3));
  }
  // Blanks and tabs at either end, and Windows line ends, parse like clean lines.
  EXPECT_EQ(IntelHex::parse("  " + a + "\t\r\n\t " + b + "  \r\n" + eof + "\r\n", importLimit),
            (Bytes{0x11, 0x22}));
  // Other white space is not trimmed: a no-break space or a BOM spoils the line.
  EXPECT_EQ(errorOf("\xC2\xA0" + a), invalidLine(1));
  EXPECT_EQ(errorOf("\xEF\xBB\xBF" + a), invalidLine(1));
  // A lone 0x85 byte or an unrelated three-byte character is no break.
  EXPECT_EQ(errorOf(a + "\x85" + b), invalidLine(1));
  EXPECT_EQ(errorOf(a + "\xE2\x80\xA7" + b), invalidLine(1));
}

TEST(IntelHex, SizeLimitIsCheckedForEveryByte) {
  Bytes one{0x5A};
  // Extended linear 0x0040 puts offset 0 at 4194304, the import's limit.
  const std::string at4M = ":020000040040BA\n" + hexRecord(0, 0, one);
  EXPECT_EQ(errorOf(at4M), Error{Error::tooLarge{}});
  Bytes image = IntelHex::parse(":02000004003FBB\n" + hexRecord(0, 0xFFFF, one), importLimit);
  ASSERT_EQ(image.size(), 4194304u);
  EXPECT_EQ(image.back(), 0x5A);
  EXPECT_EQ(image.front(), 0xFF);

  // Sixteen bytes ending exactly at the limit pass; shifted by one only the last byte is over.
  Bytes sixteen(16, 0x33);
  EXPECT_EQ(IntelHex::parse(hexRecord(0, 0x100 - 16, sixteen), 0x100).size(), 0x100u);
  EXPECT_EQ(errorOf(hexRecord(0, 0x100 - 15, sixteen), 0x100), Error{Error::tooLarge{}});
  EXPECT_EQ(errorOf(hexRecord(0, 0, one), 0), Error{Error::tooLarge{}});
  // A segment base counts towards the limit too.
  EXPECT_EQ(errorOf(":020000020010EC\n" + hexRecord(0, 0, one), 0x100), Error{Error::tooLarge{}});
  // Only data bytes count: address records and empty data beyond the limit are fine.
  EXPECT_EQ(IntelHex::parse(hexRecord(0, 0, one) + "\n" + hexRecord(0, 0x200), 0x100), one);
}

// Every language is checked by the catalogue test; here, the exact English and the line number.
TEST(IntelHex, MessagesNameTheirLine) {
  {
    LanguageOverride english(Language::en);
    EXPECT_EQ(invalidLine(12).message(), "line 12 is not valid Intel HEX.");
    EXPECT_EQ(checksum(3).message(), "line 3 has a wrong checksum.");
    EXPECT_EQ(Error{Error::noData{}}.message(), "the HEX file contains no data.");
    EXPECT_EQ(Error{Error::tooLarge{}}.message(), "the HEX file is larger than 4 MB.");
    EXPECT_EQ(invalidLine(1234567890123).message(), "line 1234567890123 is not valid Intel HEX.");
  }
  for (Language language : allLanguages) {
    LanguageOverride guard(language);
    for (const Error& error : {invalidLine(5), checksum(5)})
      EXPECT_NE(error.message().find(" 5 "), std::string::npos) << error.message();
  }
  EXPECT_NE(invalidLine(2), invalidLine(3));
  EXPECT_NE(invalidLine(2), checksum(2));
}

namespace {

// A small file that uses every record type, LF line ends, and its image.
struct SampleFile {
  std::vector<std::string> lines;
  std::string text;
  std::vector<Bytes> imageAfterLine; // the image once lines 1…n were read; empty for none
};

SampleFile sampleFile() {
  Bytes first;
  for (int i = 0; i < 16; ++i)
    first.push_back(static_cast<std::uint8_t>(0x30 + i * 7));
  const Bytes second{0xDE, 0xAD, 0xBE, 0xEF, 0x01};
  const Bytes third{0x0C, 0xA1, 0x7E};
  SampleFile file;
  file.lines = {hexRecord(0x04, 0, Bytes{0x00, 0x00}),
                hexRecord(0x00, 0x0000, first),
                hexRecord(0x00, 0x0020, second),
                hexRecord(0x02, 0, Bytes{0x00, 0x10}),
                hexRecord(0x00, 0x0004, third),
                hexRecord(0x05, 0, Bytes{0, 0, 1, 0x23}),
                hexRecord(0x01, 0)};
  for (const std::string& line : file.lines)
    file.text += line + "\n";

  Bytes image = first;
  file.imageAfterLine = {{}, {}, image};
  image.resize(0x20, 0xFF);
  image.insert(image.end(), second.begin(), second.end());
  file.imageAfterLine.push_back(image);
  file.imageAfterLine.push_back(image);
  image.resize(0x104, 0xFF); // segment 0x0010 moved the base to 0x100
  image.insert(image.end(), third.begin(), third.end());
  file.imageAfterLine.insert(file.imageAfterLine.end(), 3, image);
  return file;
}

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

bool isBreak(const std::string& s) {
  return s == "\n" || s == "\r" || s == "\v" || s == "\xC2\x85" || s == "\xE2\x80\xA8";
}
bool isBlank(const std::string& s) { return s == " " || s == "\t"; }

void expectSame(const Outcome& outcome, const Outcome& expected) {
  ASSERT_EQ(outcome.error.has_value(), expected.error.has_value());
  if (expected.error) {
    EXPECT_EQ(*outcome.error, *expected.error) << outcome.error->message();
  } else {
    EXPECT_EQ(outcome.image, expected.image);
  }
}

} // namespace

TEST(IntelHex, EverySingleCorruptedCharacterIsReportedOnItsLine) {
  const SampleFile file = sampleFile();
  ASSERT_EQ(IntelHex::parse(file.text, importLimit), file.imageAfterLine.back());
  const std::vector<std::string> replacements = {"0",
                                                 "7",
                                                 "A",
                                                 "f",
                                                 "G",
                                                 "x",
                                                 ":",
                                                 " ",
                                                 "\t",
                                                 "\n",
                                                 "\r",
                                                 "\v",
                                                 std::string(1, '\0'),
                                                 "\xFF",
                                                 "\xC2\x85",
                                                 "\xE2\x80\xA8",
                                                 "\xC3\xA9"};
  const Outcome intact{file.imageAfterLine.back(), std::nullopt};

  std::size_t position = 0;
  int checked = 0;
  for (std::size_t n = 1; n <= file.lines.size(); ++n) {
    const std::string& line = file.lines[n - 1];
    const bool lastLine = n == file.lines.size();
    // Column `line.size()` is the line feed that ends the line.
    for (std::size_t column = 0; column <= line.size(); ++column, ++position) {
      const char original = file.text[position];
      for (const std::string& replacement : replacements) {
        if (replacement.size() == 1 && replacement[0] == original) continue;
        std::optional<Outcome> expected;
        if (column == line.size()) {
          // Another break keeps the lines apart; anything else glues two records into one bad
          // line, except blanks after the last line, which are trimmed away.
          if (isBreak(replacement) || (lastLine && isBlank(replacement)))
            expected = intact;
          else
            expected = Outcome{std::nullopt, invalidLine(n)};
        } else if (column == 0) {
          expected = Outcome{std::nullopt, invalidLine(n)};
        } else if (hexValue(replacement[0]) >= 0 && replacement.size() == 1) {
          if (hexValue(replacement[0]) == hexValue(original)) continue;
          // A changed length byte no longer matches the byte count; any other byte breaks the sum.
          expected = Outcome{std::nullopt, column <= 2 ? invalidLine(n) : checksum(n)};
        } else {
          expected = Outcome{std::nullopt, invalidLine(n)};
        }
        std::string mutated = file.text;
        mutated.replace(position, 1, replacement);
        SCOPED_TRACE("line " + std::to_string(n) + " column " + std::to_string(column) +
                     " replaced by " + ::testing::PrintToString(replacement));
        expectSame(run(mutated), *expected);
        ++checked;
      }
    }
  }
  EXPECT_GT(checked, 1500);
}

TEST(IntelHex, TruncatedFilesFailOnTheirLastLine) {
  const SampleFile file = sampleFile();
  std::size_t lineStart = 0;
  for (std::size_t n = 1; n <= file.lines.size(); ++n) {
    const std::size_t length = file.lines[n - 1].size();
    for (std::size_t cut = lineStart; cut <= lineStart + length + 1; ++cut) {
      SCOPED_TRACE("cut at " + std::to_string(cut));
      Outcome outcome = run(std::string_view(file.text).substr(0, cut));
      const std::size_t column = cut - lineStart;
      // Complete lines: what they hold so far. Part of a line: that line is invalid.
      std::optional<std::size_t> completeLines;
      if (column == 0)
        completeLines = n - 1;
      else if (column >= length)
        completeLines = n;
      if (!completeLines) {
        expectSame(outcome, {std::nullopt, invalidLine(n)});
      } else if (file.imageAfterLine[*completeLines].empty()) {
        expectSame(outcome, {std::nullopt, Error{Error::noData{}}});
      } else {
        expectSame(outcome, {file.imageAfterLine[*completeLines], std::nullopt});
      }
    }
    lineStart += length + 1;
  }
}

TEST(IntelHex, RandomInputNeverCrashes) {
  std::mt19937 random(20240611);
  const std::string alphabet = "0123456789ABCDEFabcdef:::\n\r \tGx\x85\xC2\xE2\x80\xA8\xFF";
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    const int length = std::uniform_int_distribution<>(0, 300)(random);
    const bool anyByte = round % 3 == 0;
    for (int i = 0; i < length; ++i) {
      text += anyByte ? static_cast<char>(random() & 0xFF) : alphabet[random() % alphabet.size()];
    }
    std::int64_t pieces = 1;
    for (char c : text)
      pieces += (c >= 0x0A && c <= 0x0D) || c == '\x85' || c == '\xA8';
    Outcome outcome = run(text, 0x1000);
    if (outcome.image) {
      EXPECT_FALSE(outcome.image->empty());
      EXPECT_LE(outcome.image->size(), 0x1000u);
    } else if (auto* e = std::get_if<Error::invalidLine>(&outcome.error->value)) {
      EXPECT_GE(e->line, 1);
      EXPECT_LE(e->line, pieces);
    }
  }

  // Well-formed records of any type, length and address, some with a broken sum.
  for (int round = 0; round < 500; ++round) {
    std::string text;
    const int records = std::uniform_int_distribution<>(1, 12)(random);
    for (int r = 0; r < records; ++r) {
      Bytes data(std::uniform_int_distribution<>(0, 40)(random));
      for (auto& b : data)
        b = static_cast<std::uint8_t>(random());
      std::string line = hexRecord(static_cast<std::uint8_t>(random() % 8),
                                   static_cast<std::uint16_t>(random()), data);
      if (random() % 20 == 0) line[line.size() - 1] = line.back() == '0' ? '1' : '0';
      text += line + "\n";
    }
    Outcome outcome = run(text, 0x20000);
    if (outcome.image) {
      EXPECT_LE(outcome.image->size(), 0x20000u);
    }
  }
}

TEST(IntelHex, WrittenImagesReadBackExactly) {
  std::mt19937 random(7);
  Bytes image(70000);
  for (auto& b : image)
    b = static_cast<std::uint8_t>(random());
  // Crossing a 64 KB segment, with an odd record length and Windows line ends.
  EXPECT_EQ(IntelHex::parse(intelHexOf(image, 0, 27, "\r\n"), importLimit), image);
  Bytes shifted = IntelHex::parse(intelHexOf(image, 0x1F000, 32), importLimit);
  ASSERT_EQ(shifted.size(), 0x1F000u + image.size());
  EXPECT_TRUE(std::equal(image.begin(), image.end(), shifted.begin() + 0x1F000));
  EXPECT_EQ(shifted[0x1EFFF], 0xFF);
}
