#pragma once
// Messages about Intel HEX files. They start in lower case: they follow the file's name.

#include <cstdint>
#include <string>

namespace tarnwick::L10n::Errors {
/// "line {n} is not valid Intel HEX."
std::string hexInvalidLine(std::int64_t line);
/// "line {n} has a wrong checksum."
std::string hexChecksum(std::int64_t line);
/// "the HEX file contains no data."
std::string hexNoData();
/// "the HEX file is larger than 4 MB."
std::string hexTooLarge();
} // namespace tarnwick::L10n::Errors
