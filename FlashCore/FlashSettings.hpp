#pragma once
// The flashing settings a product stores: reset method, SPI flash mode and flash size.

#include <cstdint>
#include <optional>
#include <string_view>

#include "FlashCore/ESPChip.hpp"

namespace tarnwick {

/// How the ESP chip is put into its ROM bootloader.
/// `auto_` is spelled with a trailing underscore because `auto` is a C++ keyword; its text is "auto".
enum class ResetMode { auto_, classic, usbJTAG, manual };

/// SPI flash mode written into the bootloader header; `keep` leaves the file's value.
enum class FlashMode { keep, qio, qout, dio, dout };

/// SPI flash size written into the bootloader header; `keep` leaves the file's value.
enum class FlashSize { keep, mb1, mb2, mb4, mb8, mb16 };

inline constexpr ResetMode allResetModes[] = {ResetMode::auto_, ResetMode::classic,
                                              ResetMode::usbJTAG, ResetMode::manual};
inline constexpr FlashMode allFlashModes[] = {FlashMode::keep, FlashMode::qio, FlashMode::qout,
                                              FlashMode::dio, FlashMode::dout};
inline constexpr FlashSize allFlashSizes[] = {FlashSize::keep, FlashSize::mb1, FlashSize::mb2,
                                              FlashSize::mb4,  FlashSize::mb8, FlashSize::mb16};

/// Texts used in product files and settings ("auto", "qio", "4MB"); decoding is case-sensitive.
std::string_view rawValue(ResetMode mode);
std::string_view rawValue(FlashMode mode);
std::string_view rawValue(FlashSize size);
std::optional<ResetMode> resetModeFromRawValue(std::string_view raw);
std::optional<FlashMode> flashModeFromRawValue(std::string_view raw);
std::optional<FlashSize> flashSizeFromRawValue(std::string_view raw);

/// The value a mode puts into header byte 2; none for `keep`.
std::optional<std::uint8_t> headerValue(FlashMode mode);
/// The size in bytes; none for `keep`.
std::optional<std::uint32_t> byteCount(FlashSize size);
/// The size code for the high four bits of header byte 3, which differs on the ESP8266;
/// none for `keep`.
std::optional<std::uint8_t> sizeCode(FlashSize size, ESPChip chip);

} // namespace tarnwick
