#pragma once
// Messages of the flashing engine's errors.

#include <cstdint>
#include <string>

namespace tarnwick::L10n::Errors {
std::string wrongChip(const std::string& found, const std::string& expected);
std::string commandRefused(std::uint8_t command, std::uint8_t code);
std::string noAnswer(std::uint8_t command);
std::string verifyFailed(const std::string& name);
/// `signature`: the bytes as "%02X" separated by spaces.
std::string wrongSignature(const std::string& signature, const std::string& expected);
std::string sketchTooLarge(std::int64_t size, std::int64_t max);
std::string noSync();
std::string bootloaderPortNotFound();
std::string avrNoResponse();
std::string cancelled();
/// A board whose bootloader is a USB device of its own, named for a network port.
std::string needsLocalPort(const std::string& board);
} // namespace tarnwick::L10n::Errors
