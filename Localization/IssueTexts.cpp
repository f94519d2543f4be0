#include "Localization/IssueTexts.hpp"

#include <cstdio>

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Issue {

std::string nothingToFlash() {
  return tr({"Nothing is ready to flash.", "Er is niets klaar om te flashen.",
             "Es ist nichts zum Flashen bereit.", "Rien n’est prêt à être flashé.",
             "No hay nada listo para flashear."});
}
std::string fileMissing() {
  return tr({"The file is missing.", "Het bestand ontbreekt.", "Die Datei fehlt.",
             "Le fichier est manquant.", "Falta el archivo."});
}
std::string oneSketchOnly() {
  return tr({"An Arduino board takes one sketch.", "Een Arduino-board neemt één sketch.",
             "Ein Arduino-Board nimmt nur einen Sketch auf.",
             "Une carte Arduino ne prend qu’un seul sketch.",
             "Una placa Arduino admite un solo sketch."});
}
std::string tooLargeForBoard(std::int64_t max) {
  return tr({"Too large for this board (at most ", "Te groot voor dit board (hoogstens ",
             "Zu groß für dieses Board (höchstens ", "Trop grand pour cette carte (au plus ",
             "Demasiado grande para esta placa (como máximo "}) +
         std::to_string(max) + tr({" bytes).", " bytes).", " Byte).", " octets).", " bytes)."});
}
std::string overlaps(const std::string& otherName) {
  return tr({"Overlaps ", "Overlapt met ", "Überschneidet sich mit ", "Chevauche ",
             "Se solapa con "}) +
         otherName + ".";
}
std::string notAligned() {
  return tr(
      {"The address must be a multiple of 0x1000.", "Het adres moet een veelvoud van 0x1000 zijn.",
       "Die Adresse muss ein Vielfaches von 0x1000 sein.",
       "L’adresse doit être un multiple de 0x1000.", "La dirección debe ser múltiplo de 0x1000."});
}
std::string notAnImage() {
  return tr({"This is not an ESP firmware image.", "Dit is geen ESP-firmware-image.",
             "Das ist kein ESP-Firmware-Image.", "Ce n’est pas une image de firmware ESP.",
             "No es una imagen de firmware ESP."});
}
std::string builtFor(const std::string& imageChip, const std::string& productChip) {
  return tr({"Built for ", "Gebouwd voor ", "Für ", "Compilé pour ", "Compilado para "}) +
         imageChip +
         tr({", not for ", ", niet voor ", " gebaut, nicht für ", ", pas pour ", ", no para "}) +
         productChip + ".";
}
namespace {
std::string hex(std::uint32_t address) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%X", address);
  return text;
}
} // namespace

std::string bootloaderBelongsAt(std::uint32_t address) {
  const std::string text = hex(address);
  return tr({"The bootloader belongs at ", "De bootloader hoort op ", "Der Bootloader gehört an ",
             "Le bootloader doit se trouver à ", "El bootloader debe ir en "}) +
         text + ".";
}
std::string largerThanPartition(const std::string& label, std::uint32_t kilobytes) {
  return tr({"Larger than partition ", "Groter dan partitie ", "Größer als Partition ",
             "Plus grand que la partition ", "Mayor que la partición "}) +
         label + " (" + std::to_string(kilobytes) +
         tr({" KB).", " KB).", " KB).", " Ko).", " KB)."});
}
std::string notInPartition() {
  return tr({"Does not start at a partition of the partition table.",
             "Begint niet bij een partitie van de partitietabel.",
             "Beginnt nicht an einer Partition der Partitionstabelle.",
             "Ne commence pas au début d’une partition de la table.",
             "No empieza en una partición de la tabla de particiones."});
}

std::string noImageHeaderAt(std::uint32_t address) {
  const std::string at = hex(address);
  return tr({"No ESP image header at " + at + ", where the bootloader starts.",
             "Geen ESP-imageheader op " + at + ", waar de bootloader begint.",
             "Kein ESP-Image-Header an " + at + ", wo der Bootloader beginnt.",
             "Pas d’en-tête d’image ESP à " + at + ", là où commence le bootloader.",
             "No hay cabecera de imagen ESP en " + at + ", donde empieza el bootloader."});
}
std::string partitionBeyondFlash(const std::string& label) {
  return tr({"Partition " + label + " ends beyond 128 MB, more flash than any chip has.",
             "Partitie " + label + " eindigt voorbij 128 MB, meer flash dan een chip heeft.",
             "Partition " + label + " endet jenseits von 128 MB, mehr Flash, als ein Chip hat.",
             "La partition " + label +
                 " se termine au-delà de 128 Mo, plus de flash qu’aucune puce n’en a.",
             "La partición " + label +
                 " termina más allá de 128 MB, más flash del que tiene ningún chip."});
}
std::string beyondFlash() {
  return tr({"Ends beyond 128 MB, more flash than any chip has.",
             "Eindigt voorbij 128 MB, meer flash dan een chip heeft.",
             "Endet jenseits von 128 MB, mehr Flash, als ein Chip hat.",
             "Se termine au-delà de 128 Mo, plus de flash qu’aucune puce n’en a.",
             "Termina más allá de 128 MB, más flash del que tiene ningún chip."});
}
std::string otaDataTooLarge() {
  return tr({"The OTA data partition is larger than 64 KB.",
             "De OTA-gegevenspartitie is groter dan 64 KB.",
             "Die OTA-Datenpartition ist größer als 64 KB.",
             "La partition des données OTA dépasse 64 Ko.",
             "La partición de datos OTA supera los 64 KB."});
}
std::string baudOutOfRange(std::int64_t lowest, std::int64_t highest) {
  const std::string low = std::to_string(lowest), high = std::to_string(highest);
  return tr(
      {"The speed while flashing must be between " + low + " and " + high + " baud.",
       "De snelheid tijdens flashen moet tussen " + low + " en " + high + " baud liggen.",
       "Die Geschwindigkeit beim Flashen muss zwischen " + low + " und " + high + " Baud liegen.",
       "La vitesse de flashage doit être comprise entre " + low + " et " + high + " bauds.",
       "La velocidad de flasheo debe estar entre " + low + " y " + high + " baudios."});
}

} // namespace tarnwick::L10n::Issue
