#include "Localization/ProductTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Product {
std::string newProduct() {
  return tr({"New product", "Nieuw product", "Neues Produkt", "Nouveau produit", "Producto nuevo"});
}
} // namespace tarnwick::L10n::Product

namespace tarnwick::L10n::Images {
std::string bootloader() {
  return tr({"Bootloader", "Bootloader", "Bootloader", "Bootloader", "Bootloader"});
}
std::string partitionTable() {
  return tr({"Partition table", "Partitietabel", "Partitionstabelle", "Table de partitions",
             "Tabla de particiones"});
}
std::string otaData() {
  return tr({"OTA data", "OTA-gegevens", "OTA-Daten", "Données OTA", "Datos OTA"});
}
std::string application() {
  return tr({"Application", "Applicatie", "Anwendung", "Application", "Aplicación"});
}
std::string fileSystem() {
  return tr({"File system", "Bestandssysteem", "Dateisystem", "Système de fichiers",
             "Sistema de archivos"});
}
std::string other() { return tr({"Other", "Overig", "Sonstiges", "Autre", "Otro"}); }
} // namespace tarnwick::L10n::Images
