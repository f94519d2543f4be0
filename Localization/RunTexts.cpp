#include "Localization/RunTexts.hpp"

#include <cmath>
#include <cstdio>

#include "Localization/Text.hpp"

namespace tarnwick {

namespace {

// English writes a decimal point; the four other interface languages a decimal comma.
char decimalSeparator() { return currentLanguage() == Language::en ? '.' : ','; }

std::string fixed(double value, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  std::string result = text;
  if (auto dot = result.find('.'); dot != std::string::npos) result[dot] = decimalSeparator();
  return result;
}

// Picks the sentence for the current language and fills in its pieces.
std::string compose(const Texts& head, const std::string& value, const Texts& tail) {
  return tr(head) + value + tr(tail);
}

} // namespace

std::string formatSeconds(double seconds) {
  if (!std::isfinite(seconds) || seconds < 0) seconds = 0;
  return fixed(seconds, 1) + " s";
}

std::string formatByteCount(std::int64_t bytes) {
  if (bytes < 0) bytes = 0;
  static const Texts byteWord{"bytes", "bytes", "Byte", "octets", "bytes"};
  static const Texts oneByte{"1 byte", "1 byte", "1 Byte", "1 octet", "1 byte"};
  if (bytes == 1) return tr(oneByte);
  if (bytes < 1024) return std::to_string(bytes) + " " + tr(byteWord);
  // French writes kilo-octets as "Ko", the others "KB".
  const bool french = currentLanguage() == Language::fr;
  const char* units[] = {"KB", "MB", "GB", "TB"};
  const char* frenchUnits[] = {"Ko", "Mo", "Go", "To"};
  double value = static_cast<double>(bytes) / 1024.0;
  int unit = 0;
  while (value >= 1023.95 && unit < 3) {
    value /= 1024.0;
    ++unit;
  }
  // Kilobytes are whole numbers; larger units carry one decimal unless it is zero ("1 MB").
  double rounded = std::round(value * 10) / 10;
  std::string number = unit == 0 || rounded == std::floor(rounded)
                           ? std::to_string(static_cast<std::int64_t>(std::llround(value)))
                           : fixed(rounded, 1);
  return number + " " + (french ? frenchUnits[unit] : units[unit]);
}

std::string formatAddress(std::uint32_t address) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%X", address);
  return text;
}

} // namespace tarnwick

namespace tarnwick::L10n::State {
std::string flash() { return tr({"Flash", "Flashen", "Flashen", "Flashage", "Flasheo"}); }
std::string ready() { return tr({"Ready", "Gereed", "Bereit", "Prêt", "Listo"}); }
std::string flashing() {
  return tr({"Flashing", "Bezig met flashen", "Flashen läuft", "Flashage en cours", "Flasheando"});
}
std::string lastFlashSucceeded() {
  return tr({"Last flash succeeded", "Laatste flash gelukt", "Letztes Flashen erfolgreich",
             "Dernier flashage réussi", "Último flasheo correcto"});
}
std::string lastFlashFailed() {
  return tr({"Last flash failed", "Laatste flash mislukt", "Letztes Flashen fehlgeschlagen",
             "Dernier flashage échoué", "Último flasheo fallido"});
}
} // namespace tarnwick::L10n::State

namespace tarnwick::L10n::Stage {
std::string connecting() {
  return tr({"Connecting to the bootloader…", "Verbinden met de bootloader…",
             "Verbindung zum Bootloader wird hergestellt…", "Connexion au bootloader…",
             "Conectando con el bootloader…"});
}
std::string connectingAttempt(int attempt) {
  return connecting() +
         compose({" (attempt ", " (poging ", " (Versuch ", " (tentative ", " (intento "},
                 std::to_string(attempt), {")", ")", ")", ")", ")"});
}
std::string holdBoot() {
  return tr({"Hold BOOT and briefly press RESET…", "Houd BOOT ingedrukt en druk kort op RESET…",
             "BOOT gedrückt halten und kurz RESET drücken…",
             "Maintenez BOOT et appuyez brièvement sur RESET…",
             "Mantén pulsado BOOT y pulsa brevemente RESET…"});
}
std::string writing(const std::string& name) {
  return compose({"Writing ", "", "", "Écriture de ", "Escribiendo "}, name,
                 {"…", " wordt geschreven…", " wird geschrieben…", "…", "…"});
}
std::string verifying(const std::string& name) {
  return compose({"Verifying ", "", "", "Vérification de ", "Verificando "}, name,
                 {"…", " wordt gecontroleerd…", " wird überprüft…", "…", "…"});
}
std::string restarting() {
  return tr({"Restarting the board…", "Board wordt herstart…", "Board wird neu gestartet…",
             "Redémarrage de la carte…", "Reiniciando la placa…"});
}
std::string done() { return tr({"Done", "Klaar", "Fertig", "Terminé", "Listo"}); }
std::string failed() { return tr({"Failed", "Mislukt", "Fehlgeschlagen", "Échec", "Fallido"}); }
std::string stopped() { return tr({"Stopped", "Gestopt", "Gestoppt", "Arrêté", "Detenido"}); }
} // namespace tarnwick::L10n::Stage

namespace tarnwick::L10n::Log {
std::string flashingOn(const std::string& product, const std::string& port) {
  return compose({"Flashing ", "", "", "Flashage de ", "Flasheando "}, product,
                 {" on ", " flashen op ", " auf ", " sur ", " en "}) +
         port + tr({"", "", " flashen", "", ""});
}
std::string connecting() { return Stage::connecting(); }
std::string holdBoot() {
  return tr({"Hold BOOT and briefly press RESET (EN) to start the bootloader…",
             "Houd BOOT ingedrukt en druk kort op RESET (EN) om de bootloader te starten…",
             "BOOT gedrückt halten und kurz RESET (EN) drücken, um den Bootloader zu starten…",
             "Maintenez BOOT et appuyez brièvement sur RESET (EN) pour lancer le bootloader…",
             "Mantén pulsado BOOT y pulsa brevemente RESET (EN) para iniciar el bootloader…"});
}
std::string chip(const std::string& chip) {
  return tr({"Chip: ", "Chip: ", "Chip: ", "Puce : ", "Chip: "}) + chip;
}
std::string chipAndMAC(const std::string& chipName, const std::string& mac) {
  return chip(chipName) + " · MAC " + mac;
}
std::string speed(std::int64_t baud) {
  return compose({"Speed ", "Snelheid ", "Geschwindigkeit ", "Vitesse ", "Velocidad "},
                 std::to_string(baud), {" baud", " baud", " Baud", " bauds", " baudios"});
}
std::string bootloaderOn(const std::string& port) {
  return tr({"Bootloader on ", "Bootloader op ", "Bootloader auf ", "Bootloader sur ",
             "Bootloader en "}) +
         port;
}
std::string writeTo(const std::string& name, const std::string& address, const std::string& size) {
  return name +
         compose({" to ", " naar ", " nach ", " à ", " en "}, address,
                 {" (", " (", " (", " (", " ("}) +
         size + ")";
}
std::string writtenIn(const std::string& name, const std::string& seconds) {
  return name + compose({" written in ", " geschreven in ", " geschrieben in ", " écrit en ",
                         " escrito en "},
                        seconds, {"", "", "", "", ""});
}
std::string verified(const std::string& name) {
  return name + tr({" verified", " gecontroleerd", " überprüft", " vérifié", " verificado"});
}
std::string doneIn(const std::string& seconds) {
  return compose({"Done in ", "Klaar in ", "Fertig in ", "Terminé en ", "Listo en "}, seconds,
                 {"", "", "", "", ""});
}
std::string newBoardOn(const std::string& port) {
  return compose({"New board on ", "Nieuw board op ", "Neues Board an ", "Nouvelle carte sur ",
                  "Nueva placa en "},
                 port,
                 {": flashing automatically", ": wordt automatisch geflasht",
                  ": wird automatisch geflasht", " : flashage automatique",
                  ": flasheo automático"});
}
std::string filesFrom(std::int64_t count, const std::string& folder) {
  return std::to_string(count) + compose({" file(s) from ", " bestand(en) uit ", " Datei(en) aus ",
                                          " fichier(s) de ", " archivo(s) de "},
                                         folder, {"", "", "", "", ""});
}
std::string openedProduct(const std::string& name) {
  return compose({"Opened product ", "Product ", "Produkt ", "Produit ", "Producto "}, name,
                 {"", " geopend", " geöffnet", " ouvert", " abierto"});
}
std::string partitionsApplicationIn(std::int64_t count, const std::string& partition) {
  return std::to_string(count) +
         compose({" partitions, application in ", " partities, applicatie in ",
                  " Partitionen, Anwendung in ", " partitions, application dans ",
                  " particiones, aplicación en "},
                 partition, {"", "", "", "", ""});
}
std::string stopped() { return tr({"Stopped.", "Gestopt.", "Gestoppt.", "Arrêté.", "Detenido."}); }
std::string partlyWritten() {
  return tr({"The board was restarted and is only partly written.",
             "Het board is herstart en maar gedeeltelijk beschreven.",
             "Das Board wurde neu gestartet und ist nur teilweise beschrieben.",
             "La carte a été redémarrée et n’est que partiellement écrite.",
             "La placa se ha reiniciado y solo está escrita en parte."});
}
std::string esp8266Limits() {
  return tr({"The ESP8266 ROM cannot verify (its bootloader checks every block) and flashes at "
             "115200 baud.",
             "Het ROM van de ESP8266 kan niet controleren (de bootloader controleert elk blok) en "
             "flasht op 115200 baud.",
             "Das ROM des ESP8266 kann nicht prüfen (sein Bootloader prüft jeden Block) und flasht "
             "mit 115200 Baud.",
             "La ROM de l’ESP8266 ne sait pas vérifier (son bootloader contrôle chaque bloc) et "
             "flashe à 115200 bauds.",
             "La ROM del ESP8266 no puede verificar (su bootloader comprueba cada bloque) y "
             "flashea a 115200 baudios."});
}
std::string log() { return tr({"Log", "Logboek", "Protokoll", "Journal", "Registro"}); }
} // namespace tarnwick::L10n::Log
