#include "Localization/HexTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Errors {

std::string hexInvalidLine(std::int64_t line) {
  const std::string n = std::to_string(line);
  switch (currentLanguage()) {
  case Language::en: return "line " + n + " is not valid Intel HEX.";
  case Language::nl: return "regel " + n + " is geen geldige Intel HEX.";
  case Language::de: return "Zeile " + n + " ist kein gültiges Intel-HEX.";
  case Language::fr: return "la ligne " + n + " n’est pas une ligne Intel HEX valide.";
  case Language::es: return "la línea " + n + " no es una línea Intel HEX válida.";
  }
  return "line " + n + " is not valid Intel HEX.";
}

std::string hexChecksum(std::int64_t line) {
  const std::string n = std::to_string(line);
  switch (currentLanguage()) {
  case Language::en: return "line " + n + " has a wrong checksum.";
  case Language::nl: return "regel " + n + " heeft een verkeerde checksum.";
  case Language::de: return "Zeile " + n + " hat eine falsche Prüfsumme.";
  case Language::fr: return "la ligne " + n + " a une somme de contrôle incorrecte.";
  case Language::es: return "la línea " + n + " tiene una suma de comprobación incorrecta.";
  }
  return "line " + n + " has a wrong checksum.";
}

std::string hexNoData() {
  return tr({"the HEX file contains no data.", "het HEX-bestand bevat geen data.",
             "die HEX-Datei enthält keine Daten.", "le fichier HEX ne contient aucune donnée.",
             "el archivo HEX no contiene datos."});
}

std::string hexTooLarge() {
  return tr({"the HEX file is larger than 4 MB.", "het HEX-bestand is groter dan 4 MB.",
             "die HEX-Datei ist größer als 4 MB.", "le fichier HEX dépasse 4 Mo.",
             "el archivo HEX ocupa más de 4 MB."});
}

} // namespace tarnwick::L10n::Errors
