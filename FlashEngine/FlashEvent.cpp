#include "FlashEngine/FlashEvent.hpp"

#include <cstdio>

#include "Localization/EngineTexts.hpp"

namespace tarnwick {

std::string FlashError::message() const {
  namespace T = L10n::Errors;
  struct Visitor {
    std::string operator()(const WrongChip& e) const { return T::wrongChip(e.found, e.expected); }
    std::string operator()(const CommandFailed& e) const {
      return T::commandRefused(e.command, e.code);
    }
    std::string operator()(const NoResponse& e) const { return T::noAnswer(e.command); }
    std::string operator()(const VerifyFailed& e) const { return T::verifyFailed(e.name); }
    std::string operator()(const WrongSignature& e) const {
      std::string signature;
      for (std::uint8_t byte : e.found) {
        char text[4];
        std::snprintf(text, sizeof text, "%02X", byte);
        signature += (signature.empty() ? "" : " ") + std::string(text);
      }
      return T::wrongSignature(signature, e.expected);
    }
    std::string operator()(const SketchTooLarge& e) const {
      return T::sketchTooLarge(e.size, e.max);
    }
    std::string operator()(const NoSync&) const { return T::noSync(); }
    std::string operator()(const BootloaderPortNotFound&) const {
      return T::bootloaderPortNotFound();
    }
    std::string operator()(const AVRNoResponse&) const { return T::avrNoResponse(); }
    std::string operator()(const Cancelled&) const { return T::cancelled(); }
    std::string operator()(const NeedsLocalPort& e) const { return T::needsLocalPort(e.board); }
  };
  return std::visit(Visitor{}, value);
}

} // namespace tarnwick
