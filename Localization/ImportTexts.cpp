#include "Localization/ImportTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Errors {

std::string importEmpty() {
  return tr({"the file is empty.", "het bestand is leeg.", "die Datei ist leer.",
             "le fichier est vide.", "el archivo está vacío."});
}

std::string importNothingFound() {
  return tr({"no firmware files found (.bin or .hex, or ESP-IDF's flasher_args.json).",
             "geen firmwarebestanden gevonden (.bin of .hex, of flasher_args.json van ESP-IDF).",
             "keine Firmware-Dateien gefunden (.bin oder .hex oder die flasher_args.json von "
             "ESP-IDF).",
             "aucun fichier de firmware trouvé (.bin ou .hex, ou le flasher_args.json "
             "d’ESP-IDF).",
             "no se han encontrado archivos de firmware (.bin o .hex, o el flasher_args.json de "
             "ESP-IDF)."});
}

} // namespace tarnwick::L10n::Errors
