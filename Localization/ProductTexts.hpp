#pragma once
// Texts about products: the new-product name, role names and the product file's messages.

#include <cstdint>
#include <string>

namespace tarnwick::L10n::Product {
/// Name of a new or unnamed product.
std::string newProduct();
/// The product record cannot be decoded; `description` says where.
} // namespace tarnwick::L10n::Product

namespace tarnwick::L10n::Images {
std::string bootloader();
std::string partitionTable();
std::string otaData();
std::string application();
std::string fileSystem();
std::string other();
} // namespace tarnwick::L10n::Images
