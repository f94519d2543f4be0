#include "Localization/RunTexts.hpp"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <langinfo.h>
#include <locale.h>

#include "Localization/MainWindowTexts.hpp"
#include "Localization/Text.hpp"

namespace tarnwick {

namespace {

thread_local std::optional<std::string> numericOverride;

// Where the system does not have the locale installed (containers often carry only C.UTF-8),
// the separator comes from the language and region, as the common locales define them.
char usualDecimalSeparator(std::string_view name) {
  auto letters = [](std::string_view text) {
    std::string result;
    for (char c : text) {
      if (c == '_' || c == '-' || c == '.' || c == '@') break;
      result += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return result;
  };
  const std::string language = letters(name);
  const auto separator = name.find_first_of("_-");
  const std::string region =
      separator == std::string_view::npos ? "" : letters(name.substr(separator + 1));
  static const char* const commaLanguages[] = {
      "af", "az", "be", "bg", "bs", "ca", "cs", "da", "de", "el", "es", "et",
      "eu", "fi", "fo", "fr", "gl", "hr", "hu", "hy", "id", "is", "it", "ka",
      "kk", "ky", "lb", "lt", "lv", "mk", "mn", "nb", "nl", "nn", "no", "pl",
      "pt", "ro", "ru", "sk", "sl", "sq", "sr", "sv", "tr", "uk", "uz", "vi"};
  bool comma = false;
  for (const char* code : commaLanguages)
    comma = comma || language == code;
  if (!comma) return '.';
  // Switzerland and Liechtenstein write a point in German and Italian; so does much of Spanish
  // America.
  if ((language == "de" || language == "it") && (region == "ch" || region == "li")) return '.';
  static const char* const spanishPointRegions[] = {"mx", "us", "pr", "do", "gt",
                                                    "hn", "ni", "pa", "pe", "sv"};
  if (language == "es") {
    for (const char* code : spanishPointRegions) {
      if (region == code) return '.';
    }
  }
  return ',';
}

char decimalSeparator() { return decimalSeparatorOf(numericLocale()); }

std::string fixed(double value, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  std::string result = text;
  // The process's own C locale may already have written a comma (a Qt program adopts the
  // environment's locale); either way the separator is the one chosen here.
  if (auto mark = result.find_first_of(".,"); mark != std::string::npos)
    result[mark] = decimalSeparator();
  return result;
}

// Picks the sentence for the current language and fills in its pieces.
std::string compose(const Texts& head, const std::string& value, const Texts& tail) {
  return tr(head) + value + tr(tail);
}

} // namespace

std::string numericLocale() {
  if (numericOverride) return *numericOverride;
  for (const char* name : {"LC_ALL", "LC_NUMERIC", "LANG"}) {
    if (const char* value = std::getenv(name); value && *value) return value;
  }
  return "C";
}

char decimalSeparatorOf(std::string_view localeName) {
  if (localeName.empty()) return '.';
  const std::string name(localeName);
  if (locale_t locale = newlocale(LC_NUMERIC_MASK, name.c_str(), locale_t{})) {
    const char* radix = nl_langinfo_l(RADIXCHAR, locale);
    const char separator = radix && radix[0] && !radix[1] ? radix[0] : '\0';
    freelocale(locale);
    if (separator == '.' || separator == ',') return separator;
  }
  return usualDecimalSeparator(localeName);
}

NumericLocaleOverride::NumericLocaleOverride(std::string localeName) : previous_(numericOverride) {
  numericOverride = std::move(localeName);
}

NumericLocaleOverride::~NumericLocaleOverride() { numericOverride = previous_; }

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
std::string flash() { return tr({"&Flash", "&Flashen", "&Flashen", "&Flashage", "&Flasheo"}); }
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
  return Panel::fileCount(count) +
         compose({" from ", " uit ", " aus ", " de ", " de "}, folder, {"", "", "", "", ""});
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
std::string notWritten() {
  return tr({"It was stopped before the board answered: nothing was written.",
             "Gestopt voordat het board antwoordde: er is niets geschreven.",
             "Angehalten, bevor das Board antwortete: Es wurde nichts geschrieben.",
             "Arrêté avant que la carte ne réponde : rien n’a été écrit.",
             "Se detuvo antes de que la placa respondiera: no se ha escrito nada."});
}
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
std::string linesUnconfirmed() {
  return tr({"The serial server does not confirm DTR/RTS changes; they are sent without waiting "
             "for it.",
             "De seriële server bevestigt DTR/RTS-wijzigingen niet; ze worden verstuurd zonder "
             "daarop te wachten.",
             "Der serielle Server bestätigt DTR/RTS-Änderungen nicht; sie werden gesendet, ohne "
             "darauf zu warten.",
             "Le serveur série ne confirme pas les changements de DTR/RTS ; ils sont envoyés sans "
             "attendre sa réponse.",
             "El servidor serie no confirma los cambios de DTR/RTS; se envían sin esperar su "
             "respuesta."});
}
std::string log() { return tr({"Log", "Logboek", "Protokoll", "Journal", "Registro"}); }
} // namespace tarnwick::L10n::Log
