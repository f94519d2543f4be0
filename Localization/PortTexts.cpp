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
    return path + " wird bereits von einem anderen Programm verwendet. Beende dieses Programm "
                  "und versuche es erneut.";
  case Language::fr:
    return path + " est déjà utilisé par un autre programme. Fermez ce programme et réessayez.";
  case Language::es:
    return path + " ya está en uso por otro programa. Cierra ese programa y vuelve a intentarlo.";
  }
  return {};
}

std::string portBusyWith(const std::string& path, const std::string& program, int pid) {
  const std::string id = std::to_string(pid);
  switch (currentLanguage()) {
  case Language::en:
    return path + " is already in use by " + program + " (process " + id +
           "). Close that program and try again.";
  case Language::nl:
    return path + " is al in gebruik door " + program + " (proces " + id +
           "). Sluit dat programma en probeer opnieuw.";
  case Language::de:
    return path + " wird bereits von " + program + " (Prozess " + id +
           ") verwendet. Beende dieses Programm und versuche es erneut.";
  case Language::fr:
    return path + " est déjà utilisé par " + program + " (processus " + id +
           "). Fermez ce programme et réessayez.";
  case Language::es:
    return path + " ya está en uso por " + program + " (proceso " + id +
           "). Cierra ese programa y vuelve a intentarlo.";
  }
  return {};
}

std::string portAccessDenied(const std::string& path, const std::string& group) {
  const std::string command = "sudo usermod -aG " + group + " $USER";
  switch (currentLanguage()) {
  case Language::en:
    return "You may not open " + path + ": only members of the group “" + group +
           "” may use it. Add yourself to that group with “" + command +
           "”, then log out and back in.";
  case Language::nl:
    return "Je mag " + path + " niet openen: alleen leden van de groep ‘" + group +
           "’ hebben er toegang toe. Voeg jezelf aan die groep toe met ‘" + command +
           "’ en meld je daarna af en weer aan.";
  case Language::de:
    return "Du darfst " + path + " nicht öffnen: Nur Mitglieder der Gruppe „" + group +
           "“ haben Zugriff darauf. Tritt der Gruppe mit „" + command +
           "“ bei und melde dich danach ab und wieder an.";
  case Language::fr:
    return "Vous n’avez pas le droit d’ouvrir " + path + " : seuls les membres du groupe « " +
           group + " » peuvent l’utiliser. Ajoutez-vous à ce groupe avec « " + command +
           " », puis fermez votre session et rouvrez-la.";
  case Language::es:
    return "No tienes permiso para abrir " + path + ": solo los miembros del grupo «" + group +
           "» pueden usarlo. Añádete a ese grupo con «" + command +
           "» y después cierra la sesión y vuelve a entrar.";
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

std::string networkHostNotFound(const std::string& host) {
  switch (currentLanguage()) {
  case Language::en:
    return "The computer '" + host + "' was not found. Check its name in the port address.";
  case Language::nl:
    return "De computer '" + host + "' is niet gevonden. Controleer de naam in het poortadres.";
  case Language::de:
    return "Der Rechner „" + host +
           "“ wurde nicht gefunden. Prüfe seinen Namen in der Portadresse.";
  case Language::fr:
    return "L’ordinateur « " + host + " » est introuvable. Vérifiez son nom dans l’adresse du port.";
  case Language::es:
    return "No se encuentra el equipo «" + host +
           "». Comprueba su nombre en la dirección del puerto.";
  }
  return {};
}

std::string networkConnectionRefused(const std::string& server) {
  switch (currentLanguage()) {
  case Language::en:
    return server + " refused the connection. Check that the serial server runs there and "
                    "serves this port.";
  case Language::nl:
    return server + " weigert de verbinding. Controleer of de seriële server daar draait en "
                    "deze poort aanbiedt.";
  case Language::de:
    return server + " hat die Verbindung abgelehnt. Prüfe, ob der serielle Server dort "
                    "läuft und diesen Port bereitstellt.";
  case Language::fr:
    return server + " a refusé la connexion. Vérifiez que le serveur série y fonctionne et "
                    "qu’il sert ce port.";
  case Language::es:
    return server + " ha rechazado la conexión. Comprueba que el servidor serie se ejecuta allí "
                    "y sirve este puerto.";
  }
  return {};
}

std::string networkNoAnswer(const std::string& server) {
  switch (currentLanguage()) {
  case Language::en:
    return "No answer from " + server +
           ". Check the address and the network, and that the serial server serves this port "
           "with RFC 2217.";
  case Language::nl:
    return "Geen antwoord van " + server +
           ". Controleer het adres en het netwerk, en of de seriële server deze poort met RFC "
           "2217 aanbiedt.";
  case Language::de:
    return "Keine Antwort von " + server +
           ". Prüfe Adresse und Netzwerk und ob der serielle Server diesen Port mit RFC "
           "2217 bereitstellt.";
  case Language::fr:
    return "Aucune réponse de " + server +
           ". Vérifiez l’adresse et le réseau, et que le serveur série sert ce port en RFC 2217.";
  case Language::es:
    return "No hay respuesta de " + server +
           ". Comprueba la dirección y la red, y que el servidor serie sirve este puerto con RFC "
           "2217.";
  }
  return {};
}

std::string networkNotRFC2217(const std::string& server) {
  switch (currentLanguage()) {
  case Language::en:
    return server + " does not speak RFC 2217. Serve the port as telnet(rfc2217) in the "
                    "serial server's configuration.";
  case Language::nl:
    return server + " spreekt geen RFC 2217. Bied de poort aan als telnet(rfc2217) in de "
                    "configuratie van de seriële server.";
  case Language::de:
    return server + " spricht kein RFC 2217. Stelle den Port in der Konfiguration des "
                    "seriellen Servers als telnet(rfc2217) bereit.";
  case Language::fr:
    return server + " ne parle pas RFC 2217. Servez le port en telnet(rfc2217) dans la "
                    "configuration du serveur série.";
  case Language::es:
    return server + " no habla RFC 2217. Sirve el puerto como telnet(rfc2217) en la "
                    "configuración del servidor serie.";
  }
  return {};
}

std::string networkNoBoard(const std::string& server) {
  switch (currentLanguage()) {
  case Language::en:
    return "No board at " + server +
           ": the serial server cannot open its device. Check the board's cable at that "
           "computer.";
  case Language::nl:
    return "Geen board op " + server +
           ": de seriële server kan zijn apparaat niet openen. Controleer de kabel van het "
           "board bij die computer.";
  case Language::de:
    return "Kein Board an " + server +
           ": Der serielle Server kann sein Gerät nicht öffnen. Prüfe das Kabel des Boards "
           "an diesem Rechner.";
  case Language::fr:
    return "Aucune carte sur " + server +
           " : le serveur série ne peut pas ouvrir son périphérique. Vérifiez le câble de la "
           "carte sur cet ordinateur.";
  case Language::es:
    return "No hay ninguna placa en " + server +
           ": el servidor serie no puede abrir su dispositivo. Comprueba el cable de la placa en "
           "ese equipo.";
  }
  return {};
}

std::string networkPortInUse(const std::string& server) {
  switch (currentLanguage()) {
  case Language::en:
    return server + " is already in use by another client. Close that connection and try again.";
  case Language::nl:
    return server + " is al in gebruik door een andere client. Sluit die verbinding en probeer "
                    "opnieuw.";
  case Language::de:
    return server + " wird bereits von einem anderen Client verwendet. Trenne diese "
                    "Verbindung und versuche es erneut.";
  case Language::fr:
    return server + " est déjà utilisé par un autre client. Fermez cette connexion et réessayez.";
  case Language::es:
    return server + " ya está en uso por otro cliente. Cierra esa conexión y vuelve a intentarlo.";
  }
  return {};
}

std::string networkConnectionLost(const std::string& server) {
  switch (currentLanguage()) {
  case Language::en: return "The connection to " + server + " was lost.";
  case Language::nl: return "De verbinding met " + server + " is verbroken.";
  case Language::de: return "Die Verbindung zu " + server + " wurde unterbrochen.";
  case Language::fr: return "La connexion à " + server + " a été perdue.";
  case Language::es: return "Se ha perdido la conexión con " + server + ".";
  }
  return {};
}

} // namespace tarnwick::L10n::Errors

namespace tarnwick::L10n::Ports {

std::string usbSerial(const std::string& chip) {
  switch (currentLanguage()) {
  case Language::en: return "USB serial (" + chip + ")";
  case Language::nl: return "USB-serieel (" + chip + ")";
  case Language::de: return "USB-Seriell (" + chip + ")";
  case Language::fr: return "Port série USB (" + chip + ")";
  case Language::es: return "Puerto serie USB (" + chip + ")";
  }
  return {};
}

std::string severalUSBBoards() {
  return tr({"Several USB boards are connected. Choose one with --port:",
             "Er zijn meerdere USB-boards aangesloten. Kies er een met --port:",
             "Mehrere USB-Boards sind angeschlossen. Wähle eines mit --port:",
             "Plusieurs cartes USB sont branchées. Choisissez-en une avec --port :",
             "Hay varias placas USB conectadas. Elige una con --port:"});
}

std::string cannotWatch() {
  return tr({"Changes of the serial ports cannot be followed on this system.",
             "Wijzigingen van de seriële poorten kunnen op dit systeem niet worden gevolgd.",
             "Änderungen der seriellen Schnittstellen lassen sich auf diesem System nicht "
             "verfolgen.",
             "Impossible de suivre les changements des ports série sur ce système.",
             "En este sistema no se pueden seguir los cambios de los puertos serie."});
}

std::string announced(const std::string& service) {
  return tr({"\u201C" + service + "\u201D on the network",
             "\u2018" + service + "\u2019 op het netwerk",
             "\u201E" + service + "\u201C im Netzwerk",
             "\u00AB\u00A0" + service + "\u00A0\u00BB sur le r\u00E9seau",
             "\u00AB" + service + "\u00BB en la red"});
}

} // namespace tarnwick::L10n::Ports
