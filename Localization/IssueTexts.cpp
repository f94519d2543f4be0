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
std::string bootloaderBelongsAt(std::uint32_t address) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%X", address);
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

} // namespace tarnwick::L10n::Issue
