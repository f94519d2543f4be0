#include "FlashSerial/FlashPortError.hpp"

#include <cerrno>
#include <cstring>

#include "FlashSerial/DeviceUsers.hpp"
#include "Localization/PortTexts.hpp"

namespace tarnwick {

namespace {

// strerror_r comes in two flavours: GNU returns the text, XSI fills the buffer and returns 0.
[[maybe_unused]] const char* chosenText(const char* gnuResult, const char*) { return gnuResult; }
[[maybe_unused]] const char* chosenText(int xsiResult, const char* buffer) {
  return xsiResult == 0 ? buffer : nullptr;
}

template <class... Cases> struct Overloaded : Cases... { using Cases::operator()...; };
template <class... Cases> Overloaded(Cases...) -> Overloaded<Cases...>;

} // namespace

std::string systemErrorText(int code) {
  char buffer[256] = {};
  const char* text = chosenText(strerror_r(code, buffer, sizeof buffer), buffer);
  if (text == nullptr || *text == '\0') return "error " + std::to_string(code);
  return text;
}

std::string FlashPortError::message() const {
  namespace Errors = L10n::Errors;
  return std::visit(
      Overloaded{
          [](const InvalidPath& e) { return Errors::portInvalidPath(e.path); },
          [](const OpenFailed& e) {
            // The classic first failure on Linux: the device belongs to a group (dialout) the
            // user has not joined yet.
            if (e.code == EACCES) {
              if (auto group = accessGroup(e.path)) return Errors::portAccessDenied(e.path, *group);
            }
            return Errors::portOpenFailed(e.path, systemErrorText(e.code));
          },
          [](const Busy& e) {
            if (auto holder = deviceHolder(e.path))
              return Errors::portBusyWith(e.path, holder->program, holder->pid);
            return Errors::portBusy(e.path);
          },
          [](const ConfigurationFailed& e) {
            return Errors::portConfigurationFailed(systemErrorText(e.code));
          },
          [](const UnsupportedBaudRate& e) { return Errors::portUnsupportedBaudRate(e.rate); },
          [](const WriteFailed& e) { return Errors::portWriteFailed(systemErrorText(e.code)); },
          [](const NotOpen&) { return Errors::portNotOpen(); },
          [](const Disconnected& e) {
            return e.server.empty() ? Errors::portDisconnected()
                                    : Errors::networkConnectionLost(e.server);
          },
          [](const HostNotFound& e) { return Errors::networkHostNotFound(e.host); },
          [](const ConnectionRefused& e) { return Errors::networkConnectionRefused(e.server); },
          [](const NoAnswer& e) { return Errors::networkNoAnswer(e.server); },
          [](const NotRFC2217& e) { return Errors::networkNotRFC2217(e.server); },
          [](const NoBoard& e) { return Errors::networkNoBoard(e.server); },
          [](const PortInUse& e) { return Errors::networkPortInUse(e.server); },
      },
      value);
}

} // namespace tarnwick
