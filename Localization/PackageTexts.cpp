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
