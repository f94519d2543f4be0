#include "Localization/AVRTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Product {
std::string boardName(AVRBoard board) {
  switch (board) {
  case AVRBoard::uno: return "Arduino Uno";
  case AVRBoard::nano: return "Arduino Nano";
  case AVRBoard::nanoOldBootloader:
    return tr({"Arduino Nano (old bootloader)", "Arduino Nano (oude bootloader)",
               "Arduino Nano (alter Bootloader)", "Arduino Nano (ancien bootloader)",
               "Arduino Nano (bootloader antiguo)"});
  case AVRBoard::mega2560: return "Arduino Mega 2560";
  case AVRBoard::leonardo: return "Arduino Leonardo";
  case AVRBoard::micro: return "Arduino Micro";
  case AVRBoard::proMicro: return "Pro Micro (ATmega32U4)";
  }
  return {};
}
std::string anESP() { return tr({"an ESP", "een ESP", "einen ESP", "un ESP", "un ESP"}); }
} // namespace tarnwick::L10n::Product

namespace tarnwick::L10n::Settings {
std::string bootloaderName(AVRBoard board) {
  switch (board) {
  case AVRBoard::uno:
  case AVRBoard::nano: return "Optiboot (STK500)";
  case AVRBoard::nanoOldBootloader: return "ATmegaBOOT (STK500)";
  case AVRBoard::mega2560: return "Wiring (STK500v2)";
  default: return "Caterina (AVR109)";
  }
}
} // namespace tarnwick::L10n::Settings
