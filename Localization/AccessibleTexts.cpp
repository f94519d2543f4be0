#include "Localization/AccessibleTexts.hpp"

#include "Localization/Text.hpp"

// French sets a no-break space before a colon and a percent sign.
#define NBSP "\u00A0"

namespace tarnwick::L10n::Accessible {

std::string statusLine() { return tr({"Status", "Status", "Status", "État", "Estado"}); }

std::string progress() {
  return tr({"Progress", "Voortgang", "Fortschritt", "Progression", "Progreso"});
}

std::string progressValue(const std::string& file, int percent) {
  const std::string amount = std::to_string(percent) + tr({" %", "%", " %", NBSP "%", " %"});
  return file.empty() ? amount : file + ", " + amount;
}

std::string fileTable() {
  return tr({"Firmware files", "Firmwarebestanden", "Firmware-Dateien", "Fichiers de firmware",
             "Archivos de firmware"});
}

std::string flashFile(const std::string& file) {
  switch (currentLanguage()) {
  case Language::en: return "Flash " + file;
  case Language::nl: return file + " flashen";
  case Language::de: return file + " flashen";
  case Language::fr: return "Flasher " + file;
  case Language::es: return "Flashear " + file;
  }
  return file;
}

std::string flashThisFileAnswer(bool on) {
  if (on)
    return tr({"Flash this file: yes", "Dit bestand flashen: ja", "Diese Datei flashen: ja",
               "Flasher ce fichier" NBSP ": oui", "Flashear este archivo: sí"});
  return tr({"Flash this file: no", "Dit bestand flashen: nee", "Diese Datei flashen: nein",
             "Flasher ce fichier" NBSP ": non", "Flashear este archivo: no"});
}

std::string ofFile(const std::string& column, const std::string& file) {
  return column + tr({" of ", " van ", " von ", " de ", " de "}) + file;
}

std::string nothingToReport() {
  return tr({"Nothing to report", "Niets te melden", "Nichts zu melden", "Rien à signaler",
             "Nada que señalar"});
}

std::string notAValidAddress(const std::string& typed) {
  return typed + tr({": not a valid address", ": geen geldig adres", ": keine gültige Adresse",
                     NBSP ": adresse non valide", ": no es una dirección válida"});
}

std::string clearField() { return tr({"Clear", "Wissen", "Leeren", "Effacer", "Borrar"}); }

std::string unknown() { return tr({"Unknown", "Onbekend", "Unbekannt", "Inconnu", "Desconocido"}); }

std::string stationTable() { return tr({"Boards", "Boards", "Boards", "Cartes", "Placas"}); }

std::string helpTopics() {
  return tr(
      {"Help topics", "Helponderwerpen", "Hilfethemen", "Rubriques d’aide", "Temas de ayuda"});
}

} // namespace tarnwick::L10n::Accessible

#undef NBSP
