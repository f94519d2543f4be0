#pragma once
// Identities of image entries: random (version 4) UUIDs.

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

/// A 128-bit universally unique identifier.
struct UUID {
  std::array<std::uint8_t, 16> bytes{};

  /// A new random (version 4) UUID.
  static UUID random();
  /// Parses the canonical 8-4-4-4-12 form, hexadecimal digits in either case.
  static std::optional<UUID> parse(std::string_view text);
  /// The canonical 36-character form in upper case.
  std::string text() const;

  auto operator<=>(const UUID&) const = default;
};

} // namespace tarnwick
