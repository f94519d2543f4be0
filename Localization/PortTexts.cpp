#include "Localization/PortTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Errors {

// French sets a no-break space before a colon and inside guillemets, so the line never breaks
// between them and the word they belong to.

std::string portInvalidPath(const std::string& path) {
  switch (currentLanguage()) {
  case Language::en: return "'" + path + "' is not a valid serial port.";
  case Language::nl: return "'" + path + "' is geen geldige seriële poort.";
  case Language::de: return "„" + path + "“ ist keine gültige serielle Schnittstelle.";
  case Language::fr: return "« " + path + " » n’est pas un port série valide.";
  case Language::es: return "«" + path + "» no es un puerto serie válido.";
  }
  return {};
}

std::string portOpenFailed(const std::string& path, const std::string& reason) {
  switch (currentLanguage()) {
  case Language::en: return "Cannot open " + path + ": " + reason + ".";
  case Language::nl: return "Kan " + path + " niet openen: " + reason + ".";
  case Language::de: return path + " kann nicht geöffnet werden: " + reason + ".";
  case Language::fr: return "Impossible d’ouvrir " + path + " : " + reason + ".";
  case Language::es: return "No se puede abrir " + path + ": " + reason + ".";
  }
  return {};
}

std::string portBusy(const std::string& path) {
  switch (currentLanguage()) {
  case Language::en:
    return path + " is already in use by another program. Close that program and try again.";
  case Language::nl:
    return path + " is al in gebruik door een ander programma. Sluit dat programma en probeer "
                  "opnieuw.";
  case Language::de:
    return path + " wird bereits von einem anderen Programm verwendet. Beenden Sie dieses "
                  "Programm und versuchen Sie es erneut.";
  case Language::fr:
    return path + " est déjà utilisé par un autre programme. Fermez ce programme et réessayez.";
  case Language::es:
    return path + " ya está en uso por otro programa. Cierra ese programa y vuelve a intentarlo.";
  }
  return {};
}

std::string portConfigurationFailed(const std::string& reason) {
  switch (currentLanguage()) {
  case Language::en: return "Configuring the serial port failed: " + reason + ".";
  case Language::nl: return "Instellen van de seriële poort mislukt: " + reason + ".";
  case Language::de:
    return "Die serielle Schnittstelle konnte nicht eingerichtet werden: " + reason + ".";
  case Language::fr: return "La configuration du port série a échoué : " + reason + ".";
  case Language::es: return "No se pudo configurar el puerto serie: " + reason + ".";
  }
  return {};
}

std::string portUnsupportedBaudRate(std::int64_t rate) {
  const std::string digits = std::to_string(rate);
  switch (currentLanguage()) {
  case Language::en: return "Baud rate " + digits + " is not supported by this adapter.";
  case Language::nl: return "Baudrate " + digits + " wordt niet ondersteund door deze adapter.";
  case Language::de: return "Baudrate " + digits + " wird von diesem Adapter nicht unterstützt.";
  case Language::fr:
    return "Cet adaptateur ne prend pas en charge le débit de " + digits + " bauds.";
  case Language::es: return "Este adaptador no admite la velocidad de " + digits + " baudios.";
  }
  return {};
}

std::string portWriteFailed(const std::string& reason) {
  switch (currentLanguage()) {
  case Language::en: return "Sending failed: " + reason + ".";
  case Language::nl: return "Verzenden mislukt: " + reason + ".";
  case Language::de: return "Senden fehlgeschlagen: " + reason + ".";
  case Language::fr: return "L’envoi a échoué : " + reason + ".";
  case Language::es: return "No se pudo enviar: " + reason + ".";
  }
  return {};
}

std::string portNotOpen() {
  return tr({"The serial port is not open.", "De seriële poort is niet geopend.",
             "Die serielle Schnittstelle ist nicht geöffnet.", "Le port série n’est pas ouvert.",
             "El puerto serie no está abierto."});
}

std::string portDisconnected() {
  return tr({"The adapter was disconnected.", "De adapter is losgekoppeld.",
             "Der Adapter wurde getrennt.", "L’adaptateur a été déconnecté.",
             "El adaptador se ha desconectado."});
}


} // namespace tarnwick::L10n::Errors
