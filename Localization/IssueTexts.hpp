#pragma once
// Messages of the product check's findings.

#include <cstdint>
#include <string>

namespace tarnwick::L10n::Issue {
std::string nothingToFlash();
std::string fileMissing();
std::string oneSketchOnly();
std::string tooLargeForBoard(std::int64_t max);
std::string overlaps(const std::string& otherName);
std::string notAligned();
std::string notAnImage();
std::string builtFor(const std::string& imageChip, const std::string& productChip);
std::string bootloaderBelongsAt(std::uint32_t address);
std::string largerThanPartition(const std::string& label, std::uint32_t kilobytes);
std::string notInPartition();
std::string noImageHeaderAt(std::uint32_t address);
std::string partitionBeyondFlash(const std::string& label);
std::string beyondFlash();
std::string otaDataTooLarge();
/// Also the answer to a refused --baud.
std::string baudOutOfRange(std::int64_t lowest, std::int64_t highest);
} // namespace tarnwick::L10n::Issue
