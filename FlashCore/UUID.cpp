#include "FlashCore/UUID.hpp"

#include <uuid/uuid.h>

namespace tarnwick {

UUID UUID::random() {
  UUID result;
  uuid_t raw;
  uuid_generate_random(raw);
  std::copy(std::begin(raw), std::end(raw), result.bytes.begin());
  return result;
}

std::optional<UUID> UUID::parse(std::string_view text) {
  // uuid_parse accepts exactly the 36-character form; check the length first since it reads a
  // C string.
  if (text.size() != 36) return std::nullopt;
  std::string copy(text);
  uuid_t raw;
  if (uuid_parse(copy.c_str(), raw) != 0) return std::nullopt;
  UUID result;
  std::copy(std::begin(raw), std::end(raw), result.bytes.begin());
  return result;
}

std::string UUID::text() const {
  uuid_t raw;
  std::copy(bytes.begin(), bytes.end(), std::begin(raw));
  char out[37];
  uuid_unparse_upper(raw, out);
  return out;
}

} // namespace tarnwick
