#pragma once
// Messages about imported firmware files and build folders. They start in lower case: they
// follow a prefix that names the file or folder.

#include <string>

namespace tarnwick::L10n::Errors {
/// "the file is empty."
std::string importEmpty();
/// "no firmware files found (.bin or .hex, or ESP-IDF's flasher_args.json)."
std::string importNothingFound();
} // namespace tarnwick::L10n::Errors
