#pragma once
// Messages of the product file. They begin in lower case: they follow "Cannot open FILE: ".

#include <string>

namespace tarnwick::L10n::Errors {
std::string missingFile(const std::string& fileName);
std::string damagedFile(const std::string& fileName);
std::string newerVersion();
std::string notAPackage();
} // namespace tarnwick::L10n::Errors
