#pragma once
// Intel HEX text to a flat binary image, so that a .hex sketch is handled exactly like a .bin.

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "FlashCore/Bytes.hpp"

namespace tarnwick::IntelHex {

/// What is wrong with a HEX file. Line numbers count the non-empty lines from 1.
struct ParseError {
  /// A line that is not a well-formed record.
  struct invalidLine {
    std::int64_t line;
    bool operator==(const invalidLine&) const = default;
  };
  /// A record whose bytes do not add up to zero.
  struct checksum {
    std::int64_t line;
    bool operator==(const checksum&) const = default;
  };
  /// No data record stored a single byte.
  struct noData {
    bool operator==(const noData&) const = default;
  };
  /// A data byte at or beyond the size limit.
  struct tooLarge {
    bool operator==(const tooLarge&) const = default;
  };

  std::variant<invalidLine, checksum, noData, tooLarge> value;

  bool operator==(const ParseError&) const = default;
  /// The message in the interface language, in lower case to follow the file's name.
  std::string message() const;
};

/// The image from address 0 up to the highest byte the records write, gaps filled with 0xFF.
/// Every data byte must lie below `limit`. Throws `ParseError` at the first fault.
Bytes parse(std::string_view text, std::int64_t limit);

} // namespace tarnwick::IntelHex
