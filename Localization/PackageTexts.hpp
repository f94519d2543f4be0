#pragma once
// Messages of the product file. They begin in lower case: they follow "Cannot open FILE: ".

#include <cstdint>
#include <string>

namespace tarnwick::L10n::Errors {
std::string missingFile(const std::string& fileName);
std::string damagedFile(const std::string& fileName);
std::string newerVersion();
std::string notAPackage();
std::string wrongSize(const std::string& fileName, std::int64_t declared, std::uintmax_t stored);
std::string entryTooLarge(const std::string& fileName, std::uintmax_t limit);
std::string tooMuchFirmware(std::uintmax_t limit);
std::string nestedTooDeeply(int limit);
std::string tooManyImages(std::size_t limit);
std::string unstorableName(const std::string& fileName);
std::string folderInTheWay();
} // namespace tarnwick::L10n::Errors
