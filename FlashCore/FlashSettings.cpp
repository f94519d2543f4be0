#include "FlashCore/FlashSettings.hpp"

namespace tarnwick {

namespace {

template <typename Enum, std::size_t N>
std::optional<Enum> fromRaw(const Enum (&all)[N], std::string_view raw) {
  for (Enum value : all) {
    if (rawValue(value) == raw) return value;
  }
  return std::nullopt;
}

} // namespace

std::string_view rawValue(ResetMode mode) {
  switch (mode) {
  case ResetMode::auto_: return "auto";
  case ResetMode::classic: return "classic";
  case ResetMode::usbJTAG: return "usbJTAG";
  case ResetMode::manual: return "manual";
  }
  return "auto";
}

std::string_view rawValue(FlashMode mode) {
  switch (mode) {
  case FlashMode::keep: return "keep";
  case FlashMode::qio: return "qio";
  case FlashMode::qout: return "qout";
  case FlashMode::dio: return "dio";
  case FlashMode::dout: return "dout";
  }
  return "keep";
}

std::string_view rawValue(FlashSize size) {
  switch (size) {
  case FlashSize::keep: return "keep";
  case FlashSize::mb1: return "1MB";
  case FlashSize::mb2: return "2MB";
  case FlashSize::mb4: return "4MB";
  case FlashSize::mb8: return "8MB";
  case FlashSize::mb16: return "16MB";
  }
  return "keep";
}

std::optional<ResetMode> resetModeFromRawValue(std::string_view raw) {
  return fromRaw(allResetModes, raw);
}
std::optional<FlashMode> flashModeFromRawValue(std::string_view raw) {
  return fromRaw(allFlashModes, raw);
}
std::optional<FlashSize> flashSizeFromRawValue(std::string_view raw) {
  return fromRaw(allFlashSizes, raw);
}

std::optional<std::uint8_t> headerValue(FlashMode mode) {
  if (mode == FlashMode::keep) return std::nullopt;
  return static_cast<std::uint8_t>(static_cast<int>(mode) - 1);
}

std::optional<std::uint32_t> byteCount(FlashSize size) {
  switch (size) {
  case FlashSize::keep: return std::nullopt;
  case FlashSize::mb1: return 0x100000;
  case FlashSize::mb2: return 0x200000;
  case FlashSize::mb4: return 0x400000;
  case FlashSize::mb8: return 0x800000;
  case FlashSize::mb16: return 0x1000000;
  }
  return std::nullopt;
}

std::optional<std::uint8_t> sizeCode(FlashSize size, ESPChip chip) {
  static constexpr std::uint8_t esp8266Codes[] = {2, 3, 4, 8, 9};
  if (size == FlashSize::keep) return std::nullopt;
  auto index = static_cast<std::size_t>(size) - 1;
  return chip == ESPChip::esp8266 ? esp8266Codes[index] : static_cast<std::uint8_t>(index);
}

} // namespace tarnwick
