#include "Localization/PackageTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Errors {
std::string missingFile(const std::string& fileName) {
  return fileName + tr({" is missing from the product.", " ontbreekt in het product.",
                        " fehlt im Produkt.", " est absent du produit.", " falta en el producto."});
}
std::string damagedFile(const std::string& fileName) {
  return fileName + tr({" is damaged or changed (the checksum does not match).",
                        " is beschadigd of gewijzigd (de controlesom klopt niet).",
                        " ist beschädigt oder verändert (die Prüfsumme stimmt nicht).",
                        " est endommagé ou modifié (la somme de contrôle ne correspond pas).",
                        " está dañado o modificado (la suma de comprobación no coincide)."});
}
std::string newerVersion() {
  return tr({"the product was made with a newer version of the app.",
             "het product is gemaakt met een nieuwere versie van de app.",
             "das Produkt wurde mit einer neueren Version der App erstellt.",
             "le produit a été créé avec une version plus récente de l’app.",
             "el producto se creó con una versión más reciente de la app."});
}
std::string notAPackage() {
  return tr({"it is not a product file of this app.", "het is geen productbestand van deze app.",
             "es ist keine Produktdatei dieser App.",
             "ce n’est pas un fichier produit de cette app.",
             "no es un archivo de producto de esta app."});
}
} // namespace tarnwick::L10n::Errors

namespace tarnwick::L10n::Errors {
namespace {
std::string mebibytes(std::uintmax_t bytes) { return std::to_string(bytes / (1024 * 1024)); }
} // namespace

std::string wrongSize(const std::string& fileName, std::int64_t declared, std::uintmax_t stored) {
  const std::string d = std::to_string(declared), s = std::to_string(stored);
  return fileName +
         tr({" is damaged: the product lists it with " + d + " bytes, but it holds " + s + ".",
             " is beschadigd: het product vermeldt " + d + " bytes, maar het bevat er " + s + ".",
             " ist beschädigt: Das Produkt gibt " + d + " Bytes an, enthält aber " + s + ".",
             " est endommagé : le produit annonce " + d + " octets, mais en contient " + s + ".",
             " está dañado: el producto indica " + d + " bytes, pero contiene " + s + "."});
}
std::string entryTooLarge(const std::string& fileName, std::uintmax_t limit) {
  const std::string m = mebibytes(limit);
  return fileName +
         tr({" is larger than " + m + " MiB, far more than any product needs.",
             " is groter dan " + m + " MiB, veel meer dan een product ooit nodig heeft.",
             " ist größer als " + m + " MiB, weit mehr, als ein Produkt je braucht.",
             " dépasse " + m + " Mio, bien plus que ce dont un produit a jamais besoin.",
             " ocupa más de " + m + " MiB, mucho más de lo que necesita cualquier producto."});
}
std::string tooMuchFirmware(std::uintmax_t limit) {
  const std::string m = mebibytes(limit);
  return tr({"the firmware files together are larger than " + m +
                 " MiB, more than the flash of any supported chip holds.",
             "de firmwarebestanden zijn samen groter dan " + m +
                 " MiB, meer dan in het flashgeheugen van een ondersteunde chip past.",
             "die Firmware-Dateien sind zusammen größer als " + m +
                 " MiB – mehr, als der Flash-Speicher eines unterstützten Chips fasst.",
             "les fichiers de firmware dépassent ensemble " + m +
                 " Mio, plus que ne peut contenir la mémoire flash d’une puce prise en charge.",
             "los archivos de firmware ocupan en total más de " + m +
                 " MiB, más de lo que cabe en la memoria flash de un chip compatible."});
}
std::string nestedTooDeeply(int limit) {
  const std::string n = std::to_string(limit);
  return tr({"product.json is nested more than " + n +
                 " levels deep, where a product needs 3. It was not made by this app.",
             "product.json is meer dan " + n +
                 " niveaus diep genest, terwijl een product er 3 nodig heeft. Het is niet met "
                 "deze app gemaakt.",
             "product.json ist mehr als " + n +
                 " Ebenen tief verschachtelt, ein Produkt braucht 3. Es wurde nicht mit dieser "
                 "App erstellt.",
             "product.json est imbriqué sur plus de " + n +
                 " niveaux, alors qu’un produit en utilise 3. Il n’a pas été créé avec cette app.",
             "product.json está anidado en más de " + n +
                 " niveles, cuando un producto necesita 3. No se creó con esta app."});
}
std::string tooManyImages(std::size_t limit) {
  const std::string n = std::to_string(limit);
  return tr({"the product lists more than " + n + " files; no real product has that many.",
             "het product bevat meer dan " + n + " bestanden; geen echt product heeft er zoveel.",
             "das Produkt führt mehr als " + n + " Dateien auf; kein echtes Produkt hat so viele.",
             "le produit répertorie plus de " + n + " fichiers ; aucun produit réel n’en a autant.",
             "el producto incluye más de " + n + " archivos; ningún producto real tiene tantos."});
}
std::string folderInTheWay() {
  return tr({"a folder of that name is in the way, and it holds no product; nothing in it was "
             "changed.",
             "er staat een map met die naam in de weg, en die bevat geen product; er is niets in "
             "gewijzigd.",
             "ein Ordner mit diesem Namen ist im Weg und enthält kein Produkt; darin wurde nichts "
             "geändert.",
             "un dossier portant ce nom est déjà là et ne contient pas de produit ; rien n’y a été "
             "modifié.",
             "ya hay una carpeta con ese nombre que no contiene ningún producto; no se ha cambiado "
             "nada en ella."});
}
std::string unstorableName(const std::string& fileName) {
  return tr({"the file name “" + fileName +
                 "” contains a character that a product cannot store (a control character, a "
                 "slash or a byte that is not UTF-8 text). Rename the file and try again.",
             "de bestandsnaam „" + fileName +
                 "” bevat een teken dat een product niet kan opslaan (een stuurteken, een schuine "
                 "streep of een byte die geen UTF-8-tekst is). Geef het bestand een andere naam "
                 "en probeer het opnieuw.",
             "der Dateiname „" + fileName +
                 "“ enthält ein Zeichen, das ein Produkt nicht speichern kann (ein Steuerzeichen, "
                 "einen Schrägstrich oder ein Byte, das kein UTF-8-Text ist). Benenne die Datei "
                 "um und versuche es erneut.",
             "le nom de fichier « " + fileName +
                 " » contient un caractère qu’un produit ne peut pas enregistrer (un caractère de "
                 "contrôle, une barre oblique ou un octet qui n’est pas du texte UTF-8). Renommez "
                 "le fichier et réessayez.",
             "el nombre de archivo «" + fileName +
                 "» contiene un carácter que un producto no puede guardar (un carácter de control, "
                 "una barra o un byte que no es texto UTF-8). Cambia el nombre del archivo y "
                 "vuelve a intentarlo."});
}
} // namespace tarnwick::L10n::Errors
