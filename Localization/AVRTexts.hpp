#pragma once
// Names of the Arduino boards and their bootloaders as shown to users.

#include <string>

#include "FlashCore/AVRBoard.hpp"

namespace tarnwick::L10n::Product {
std::string boardName(AVRBoard board);
/// "an ESP": the ESP family inside sentences.
std::string anESP();
} // namespace tarnwick::L10n::Product

namespace tarnwick::L10n::Settings {
std::string bootloaderName(AVRBoard board);
} // namespace tarnwick::L10n::Settings
