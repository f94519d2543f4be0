#include "Localization/MainWindowTexts.hpp"

#include "Localization/Text.hpp"

// French sets a no-break space before a colon and a percent sign, so the line never breaks
// between them and the word they belong to.
#define NBSP "\u00A0"

namespace tarnwick::L10n::Menu {
std::string newProduct() {
  return tr(
      {"&New Product", "&Nieuw product", "&Neues Produkt", "&Nouveau produit", "&Nuevo producto"});
}
std::string openProduct() {
  return tr({"&Open Product…", "Product &openen…", "Produkt ö&ffnen …", "&Ouvrir un produit…",
             "&Abrir producto…"});
}
std::string saveProduct() {
  return tr({"&Save Product", "&Product opslaan", "Produkt &speichern", "&Enregistrer le produit",
             "&Guardar producto"});
}
std::string saveProductAs() {
  return tr({"Save Product &As…", "Product opslaan &als…", "Produkt speichern &unter …",
             "Enregistrer le produit &sous…", "Guardar producto &como…"});
}
std::string saveLog() {
  return tr({"Save &Log…", "&Logboek opslaan…", "&Protokoll speichern …",
             "Enregistrer le &journal…", "Guardar r&egistro…"});
}
std::string clearLog() {
  return tr({"&Clear Log", "Logboek &wissen", "Protokoll &löschen", "&Effacer le journal",
             "&Borrar registro"});
}
} // namespace tarnwick::L10n::Menu

namespace tarnwick::L10n::Panel {
std::string readyToFlash() {
  return tr({"Ready to flash", "Klaar om te flashen", "Bereit zum Flashen", "Prêt à flasher",
             "Listo para flashear"});
}
std::string addFirmwareToBegin() {
  return tr({"Add firmware to begin", "Voeg firmware toe om te beginnen",
             "Firmware hinzufügen, um zu beginnen", "Ajoutez un firmware pour commencer",
             "Añade firmware para empezar"});
}
std::string noPort() {
  return tr({"no port", "geen poort", "keine Schnittstelle", "aucun port", "sin puerto"});
}
std::string flashingFailed() {
  return tr({"Flashing failed", "Flashen mislukt", "Flashen fehlgeschlagen", "Échec du flashage",
             "Error al flashear"});
}
std::string fileCount(std::int64_t count) {
  const bool one = count == 1;
  return std::to_string(count) +
         (one ? tr({" file", " bestand", " Datei", " fichier", " archivo"})
              : tr({" files", " bestanden", " Dateien", " fichiers", " archivos"}));
}
std::string plannedRun(std::int64_t files, const std::string& addressRange,
                       const std::string& port) {
  std::string text = fileCount(files);
  if (!addressRange.empty()) text += " · " + addressRange;
  return text + " · " + port;
}
std::string addressRange(const std::string& first, const std::string& last) {
  return first + "–" + last;
}
std::string lastSuccess(const std::string& chip, const std::string& size,
                        const std::string& seconds) {
  return chip + " · " + size + tr({" in ", " in ", " in ", " en ", " en "}) + seconds;
}
std::string lastFailure(const std::string& message) {
  return flashingFailed() + tr({": ", ": ", ": ", NBSP ": ", ": "}) + message;
}
} // namespace tarnwick::L10n::Panel

namespace tarnwick::L10n::Notice {
std::string noUSBBoard() {
  return tr({"No USB board found. Connect the board with a cable that carries data (not a "
             "charge-only cable).",
             "Geen USB-board gevonden. Sluit het board aan met een kabel die data doorgeeft "
             "(geen laadkabel).",
             "Kein USB-Board gefunden. Schließe das Board mit einem Datenkabel an (kein reines "
             "Ladekabel).",
             "Aucune carte USB trouvée. Branchez la carte avec un câble qui transmet les données "
             "(pas un câble de charge seule).",
             "No se ha encontrado ninguna placa USB. Conecta la placa con un cable de datos (no "
             "uno solo de carga)."});
}
std::string dismiss() { return tr({"Dismiss", "Sluiten", "Ausblenden", "Masquer", "Descartar"}); }
std::string waitUntilFinished() {
  return tr({"Wait until flashing has finished. Stopping halfway leaves a board that does not "
             "start.",
             "Wacht tot het flashen klaar is. Halverwege stoppen laat een board achter dat niet "
             "opstart.",
             "Warte, bis das Flashen abgeschlossen ist. Ein Abbruch mittendrin hinterlässt ein "
             "Board, das nicht startet.",
             "Attendez la fin du flashage. L’interrompre en cours de route laisse une carte qui ne "
             "démarre plus.",
             "Espera a que termine el flasheo. Si se interrumpe a medias, la placa no arrancará."});
}
} // namespace tarnwick::L10n::Notice

namespace tarnwick::L10n::Header {
std::string applicationName() { return "Tarnwick"; }
std::string flashTooltip() {
  return tr({"Put the product onto the connected board (Ctrl+R)",
             "Zet het product op het aangesloten board (Ctrl+R)",
             "Das Produkt auf das angeschlossene Board bringen (Strg+R)",
             "Installer le produit sur la carte connectée (Ctrl+R)",
             "Grabar el producto en la placa conectada (Control+R)"});
}
std::string stopTooltip() {
  return tr({"Stop (Ctrl+R)", "Stoppen (Ctrl+R)", "Stoppen (Strg+R)", "Arrêter (Ctrl+R)",
             "Detener (Control+R)"});
}
std::string waitUntilFlashingFinished() {
  return tr({"Wait until flashing has finished", "Wacht tot het flashen klaar is",
             "Warte, bis das Flashen abgeschlossen ist", "Attendez la fin du flashage",
             "Espera a que termine el flasheo"});
}
std::string connectionSettingsTooltip() {
  return tr({"Speed, reset, flash settings and verification",
             "Snelheid, reset, flashinstellingen en controle",
             "Geschwindigkeit, Reset, Flash-Einstellungen und Prüfung",
             "Vitesse, redémarrage, réglages de la flash et vérification",
             "Velocidad, reinicio, ajustes de la flash y verificación"});
}
std::string automatic() {
  return tr({"Automatic", "Automatisch", "Automatisch", "Automatique", "Automático"});
}
std::string serialPort() {
  return tr(
      {"Serial port", "Seriële poort", "Serielle Schnittstelle", "Port série", "Puerto serie"});
}
std::string noPortsFound() {
  return tr({"No ports found", "Geen poorten gevonden", "Keine Schnittstellen gefunden",
             "Aucun port trouvé", "No se han encontrado puertos"});
}
std::string selectPort() {
  return tr({"Select a port…", "Kies een poort…", "Schnittstelle auswählen …",
             "Choisissez un port…", "Elige un puerto…"});
}
std::string stop() { return tr({"&Stop", "&Stoppen", "&Stoppen", "&Arrêter", "&Detener"}); }
} // namespace tarnwick::L10n::Header

namespace tarnwick::L10n::Footer {
std::string logOptions() {
  return tr({"Log options", "Logboekopties", "Protokolloptionen", "Options du journal",
             "Opciones del registro"});
}
std::string showLog() {
  return tr({"Show &Log", "Logboek &tonen", "Protokoll &einblenden", "A&fficher le journal",
             "&Mostrar registro"});
}
std::string showLogTooltip() {
  return tr({"Show or hide the log (Ctrl+L)", "Logboek tonen of verbergen (Ctrl+L)",
             "Protokoll ein- oder ausblenden (Strg+L)", "Afficher ou masquer le journal (Ctrl+L)",
             "Mostrar u ocultar el registro (Control+L)"});
}
std::string counters(std::int64_t flashed, std::int64_t failed) {
  const std::string good = std::to_string(flashed), bad = std::to_string(failed);
  switch (currentLanguage()) {
  case Language::en: return "Flashed " + good + " · Failed " + bad;
  case Language::nl: return "Geflasht " + good + " · Mislukt " + bad;
  case Language::de: return "Geflasht " + good + " · Fehlgeschlagen " + bad;
  case Language::fr: return "Flashées" NBSP ": " + good + " · Échecs" NBSP ": " + bad;
  case Language::es: return "Flasheadas " + good + " · Fallidas " + bad;
  }
  return {};
}
std::string autoscroll() {
  return tr({"&Autoscroll", "&Automatisch scrollen", "&Automatisch scrollen",
             "&Défilement automatique", "&Desplazamiento automático"});
}
std::string timestamps() {
  return tr({"&Timestamps", "T&ijdstempels", "&Zeitstempel", "&Horodatage", "Marcas de &tiempo"});
}
std::string save() {
  return tr({"&Save…", "&Opslaan…", "&Speichern …", "E&nregistrer…", "&Guardar…"});
}
std::string saveTooltip() {
  return tr({"Save the log as a text file (Ctrl+Alt+S)",
             "Logboek opslaan als tekstbestand (Ctrl+Alt+S)",
             "Protokoll als Textdatei speichern (Strg+Alt+S)",
             "Enregistrer le journal dans un fichier texte (Ctrl+Alt+S)",
             "Guardar el registro como archivo de texto (Control+Alt+S)"});
}
std::string clearLog() {
  return tr({"&Clear log", "Logboek &wissen", "Protokoll &löschen", "&Effacer le journal",
             "&Borrar el registro"});
}
std::string clearLogTooltip() {
  return tr({"Clear the log and counters (Ctrl+K)", "Logboek en tellers wissen (Ctrl+K)",
             "Protokoll und Zähler löschen (Strg+K)",
             "Effacer le journal et les compteurs (Ctrl+K)",
             "Borrar el registro y los contadores (Control+K)"});
}
} // namespace tarnwick::L10n::Footer

namespace tarnwick::L10n::Board {
std::string notConnected(const std::string& path) {
  return path + tr({" (not connected)", " (niet aangesloten)", " (nicht angeschlossen)",
                    " (non connecté)", " (no conectado)"});
}
std::string baud(std::int64_t rate) {
  return std::to_string(rate) + tr({" baud", " baud", " Baud", NBSP "bauds", " baudios"});
}
std::string baudRate() {
  return tr({"Baud rate", "Baudrate", "Baudrate", "Débit en bauds", "Velocidad en baudios"});
}
} // namespace tarnwick::L10n::Board

namespace tarnwick::L10n::Errors {
std::string ok() { return tr({"OK", "OK", "OK", "OK", "Aceptar"}); }
} // namespace tarnwick::L10n::Errors

#undef NBSP
