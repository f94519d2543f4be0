#include "Localization/SettingsTexts.hpp"

#include "Localization/Text.hpp"

// French sets a no-break space before a percent sign, as before a colon.
#define NBSP "\u00A0"

namespace tarnwick::L10n::Product {
std::string edited() {
  return tr({" (edited)", " (gewijzigd)", " (bearbeitet)", " (modifié)", " (editado)"});
}
std::string panelTitle() { return tr({"Product", "Product", "Produkt", "Produit", "Producto"}); }
std::string productButtonsTooltip() {
  return tr({"Start a new product, open a product or save this one, with all its files inside",
             "Begin een nieuw product, open een product of sla dit op, met al zijn bestanden erin",
             "Ein neues Produkt beginnen, ein Produkt öffnen oder dieses speichern, mit allen "
             "seinen Dateien darin",
             "Créer un produit, ouvrir un produit ou enregistrer celui-ci, avec tous ses fichiers",
             "Empezar un producto nuevo, abrir uno o guardar este, con todos sus archivos dentro"});
}
std::string targetTooltip() {
  return tr(
      {"What this product goes onto: an ESP chip (or whichever chip is connected) or an "
       "Arduino board",
       "Waar dit product op komt: een ESP-chip (of welke chip er ook is aangesloten) of een "
       "Arduino-board",
       "Wofür dieses Produkt bestimmt ist: ein ESP-Chip (oder der gerade angeschlossene) "
       "oder ein Arduino-Board",
       "Ce sur quoi va ce produit\u00A0: une puce ESP (ou celle qui est connectée) ou une carte "
       "Arduino",
       "Dónde va este producto: un chip ESP (o el que esté conectado) o una placa Arduino"});
}
std::string espFamily() { return "ESP"; }
std::string arduinoFamily() { return "Arduino (AVR)"; }
std::string notesPlaceholder() {
  return tr(
      {"For example the hardware revision or where the source code is; saved in the "
       "product.",
       "Bijvoorbeeld de hardwarerevisie of waar de broncode staat; wordt in het product "
       "bewaard.",
       "Zum Beispiel die Hardware-Revision oder wo der Quellcode liegt; wird im Produkt "
       "gespeichert.",
       "Par exemple la révision du matériel ou l’emplacement du code source\u00A0; enregistré "
       "dans le produit.",
       "Por ejemplo, la revisión del hardware o dónde está el código fuente; se guarda en "
       "el producto."});
}
std::string saveQuestion() {
  return tr({"Save the current product?", "Het huidige product opslaan?",
             "Das aktuelle Produkt speichern?", "Enregistrer le produit actuel\u00A0?",
             "¿Guardar el producto actual?"});
}
std::string unsavedChanges() {
  return tr({"The current product has changes that have not been saved.",
             "Het huidige product heeft wijzigingen die niet zijn opgeslagen.",
             "Das aktuelle Produkt hat Änderungen, die noch nicht gespeichert wurden.",
             "Le produit actuel comporte des modifications qui n’ont pas été enregistrées.",
             "El producto actual tiene cambios que no se han guardado."});
}
std::string saveButton() {
  return tr({"Save…", "Opslaan…", "Speichern …", "Enregistrer…", "Guardar…"});
}
std::string dontSave() {
  return tr({"Don't Save", "Niet opslaan", "Nicht speichern", "Ne pas enregistrer", "No guardar"});
}
std::string cancel() { return tr({"Cancel", "Annuleren", "Abbrechen", "Annuler", "Cancelar"}); }
} // namespace tarnwick::L10n::Product

namespace tarnwick::L10n::Settings {
std::string speedExplanation() {
  return tr(
      {"The bootloader starts at 115200 baud; then the app switches to this speed. If it fails "
       "with a long or cheap cable, choose a lower speed. The ESP8266 always flashes at 115200.",
       "De bootloader start op 115200 baud; daarna schakelt de app over op deze snelheid. Mislukt "
       "het met een lange of goedkope kabel, kies dan een lagere snelheid. De ESP8266 flasht "
       "altijd op 115200.",
       "Der Bootloader startet mit 115200 Baud; danach wechselt die App auf diese "
       "Geschwindigkeit. Schlägt das mit einem langen oder billigen Kabel fehl, wähle eine "
       "niedrigere. Der ESP8266 flasht immer mit 115200.",
       "Le bootloader démarre à 115200 bauds, puis l’app passe à cette vitesse. En cas d’échec "
       "avec un câble long ou bas de gamme, choisissez une vitesse plus basse. L’ESP8266 est "
       "toujours flashé à 115200.",
       "El bootloader arranca a 115200 baudios; después la app cambia a esta velocidad. Si falla "
       "con un cable largo o barato, elige una velocidad menor. El ESP8266 siempre se flashea a "
       "115200."});
}
std::string resetExplanation() {
  return tr({"How the app puts the board into its bootloader. Automatic tries both methods; "
             "choose Manual for a board without DTR/RTS.",
             "Hoe de app het board in de bootloader zet. Automatisch probeert beide methoden; "
             "kies Handmatig voor een board zonder DTR/RTS.",
             "Wie die App das Board in den Bootloader versetzt. Automatisch probiert beide "
             "Methoden; wähle Manuell für ein Board ohne DTR/RTS.",
             "La manière dont l’app fait passer la carte en bootloader. Automatique essaie les "
             "deux méthodes\u00A0; choisissez Manuel pour une carte sans DTR/RTS.",
             "Cómo pone la app la placa en su bootloader. Automático prueba ambos métodos; elige "
             "Manual para una placa sin DTR/RTS."});
}
std::string flashModeExplanation() {
  return tr({"Written into the bootloader. Leave it on As in file unless the module needs "
             "another mode (DIO almost always works).",
             "Wordt in de bootloader geschreven. Laat dit op Zoals in bestand staan, tenzij de "
             "module een andere modus nodig heeft (DIO werkt bijna altijd).",
             "Wird in den Bootloader geschrieben. Auf Wie in der Datei lassen, außer das Modul "
             "braucht einen anderen Modus (DIO funktioniert fast immer).",
             "Inscrit dans le bootloader. Laissez Comme dans le fichier, sauf si le module "
             "exige un autre mode (DIO fonctionne presque toujours).",
             "Se escribe en el bootloader. Déjalo en Como en el archivo salvo que el módulo "
             "necesite otro modo (DIO funciona casi siempre)."});
}
std::string flashSizeExplanation() {
  return tr(
      {"Written into the bootloader. As in file usually works; choose the real size if "
       "the firmware must see more flash.",
       "Wordt in de bootloader geschreven. Zoals in bestand werkt meestal; kies de echte "
       "grootte als de firmware meer flash moet zien.",
       "Wird in den Bootloader geschrieben. Wie in der Datei passt meistens; wähle die "
       "tatsächliche Größe, wenn die Firmware mehr Flash sehen muss.",
       "Inscrit dans le bootloader. Comme dans le fichier convient en général\u00A0; choisissez "
       "la taille réelle si le firmware doit voir plus de flash.",
       "Se escribe en el bootloader. Como en el archivo suele funcionar; elige el tamaño "
       "real si el firmware debe ver más flash."});
}
std::string clearOTAExplanation() {
  return tr({"Erases the otadata partition, so the board starts the new app and not an older "
             "OTA version.",
             "Wist de otadata-partitie, zodat het board de nieuwe app start en geen oudere "
             "OTA-versie.",
             "Löscht die otadata-Partition, damit das Board die neue App startet und keine ältere "
             "OTA-Version.",
             "Efface la partition otadata\u00A0: la carte démarre ainsi la nouvelle app et non une "
             "ancienne version OTA.",
             "Borra la partición otadata para que la placa arranque la app nueva y no una versión "
             "OTA anterior."});
}
std::string bootloader() {
  return tr({"Bootloader", "Bootloader", "Bootloader", "Bootloader", "Bootloader"});
}
std::string speed() { return tr({"Speed", "Snelheid", "Geschwindigkeit", "Vitesse", "Velocidad"}); }
std::string roomForSketch() {
  return tr({"Room for the sketch", "Ruimte voor de sketch", "Platz für den Sketch",
             "Place pour le sketch", "Espacio para el sketch"});
}
std::string verificationAndProduction() {
  return tr({"Verification and production", "Controle en productie", "Prüfung und Produktion",
             "Vérification et production", "Verificación y producción"});
}
std::string verifyExplanation() {
  return tr({"Reads back (Arduino) or lets the chip compute an MD5 (ESP32) and compares. The "
             "ESP8266 ROM cannot; there the bootloader checks every block.",
             "Leest terug (Arduino) of laat de chip een MD5 berekenen (ESP32) en vergelijkt. De "
             "ROM van de ESP8266 kan dat niet; daar controleert de bootloader elk blok.",
             "Liest zurück (Arduino) oder lässt den Chip eine MD5 berechnen (ESP32) und "
             "vergleicht. Das ROM des ESP8266 kann das nicht; dort prüft der Bootloader jeden "
             "Block.",
             "Relit la mémoire (Arduino) ou fait calculer un MD5 par la puce (ESP32), puis "
             "compare. La ROM de l’ESP8266 ne le permet pas\u00A0; le bootloader y vérifie chaque "
             "bloc.",
             "Vuelve a leer (Arduino) o hace que el chip calcule un MD5 (ESP32) y compara. La ROM "
             "del ESP8266 no puede; allí el bootloader comprueba cada bloque."});
}
std::string flashAutomatically() {
  return tr({"Flash &automatically when connected", "&Automatisch flashen bij aansluiten",
             "Beim Anschließen &automatisch flashen", "Flasher automatiquement à la &connexion",
             "Flashear &automáticamente al conectar"});
}
std::string flashAutomaticallyExplanation() {
  return tr(
      {"Flashes the product as soon as a new USB board is connected: handy for a series "
       "of boards.",
       "Flasht het product zodra er een nieuw USB-board wordt aangesloten: handig voor een "
       "serie boards.",
       "Flasht das Produkt, sobald ein neues USB-Board angeschlossen wird: praktisch für "
       "eine Serie von Boards.",
       "Flashe le produit dès qu’une nouvelle carte USB est connectée\u00A0: pratique pour une "
       "série de cartes.",
       "Flashea el producto en cuanto se conecta una placa USB nueva: práctico para una "
       "serie de placas."});
}
std::string soundWhenDone() {
  return tr({"Sound when done or failed", "Geluid bij klaar of mislukt",
             "Ton bei Erfolg oder Fehler", "Son en cas de réussite ou d’échec",
             "Sonido al terminar o fallar"});
}
} // namespace tarnwick::L10n::Settings

namespace tarnwick::L10n::Images {
std::string addFiles() {
  return tr({"Files…", "Bestanden…", "Dateien …", "Fichiers…", "Archivos…"});
}
std::string addFilesTooltip() {
  return tr({"Add firmware files (.bin or .hex)", "Firmwarebestanden toevoegen (.bin of .hex)",
             "Firmware-Dateien hinzufügen (.bin oder .hex)",
             "Ajouter des fichiers de firmware (.bin ou .hex)",
             "Añadir archivos de firmware (.bin o .hex)"});
}
std::string buildFolder() {
  return tr({"Build Folder…", "Buildmap…", "Build-Ordner …", "Dossier de compilation…",
             "Carpeta de compilación…"});
}
std::string buildFolderTooltip() {
  return tr({"Take all files from a PlatformIO, Arduino IDE or ESP-IDF build folder, with their "
             "addresses",
             "Alle bestanden uit een buildmap van PlatformIO, Arduino IDE of ESP-IDF overnemen, "
             "met hun adressen",
             "Alle Dateien aus einem Build-Ordner von PlatformIO, Arduino IDE oder ESP-IDF "
             "übernehmen, mit ihren Adressen",
             "Reprendre tous les fichiers d’un dossier de compilation PlatformIO, Arduino IDE ou "
             "ESP-IDF, avec leurs adresses",
             "Tomar todos los archivos de una carpeta de compilación de PlatformIO, Arduino IDE o "
             "ESP-IDF, con sus direcciones"});
}
std::string remove() {
  return tr({"&Remove", "&Verwijderen", "&Entfernen", "&Retirer", "&Quitar"});
}
std::string chooseAnotherFile() {
  return tr({"&Choose Another File…", "&Ander bestand kiezen…", "&Andere Datei wählen …",
             "&Choisir un autre fichier…", "&Elegir otro archivo…"});
}
std::string file() { return tr({"File", "Bestand", "Datei", "Fichier", "Archivo"}); }
std::string sketch() { return tr({"Sketch", "Sketch", "Sketch", "Sketch", "Sketch"}); }
std::string kind() { return tr({"Kind", "Soort", "Art", "Type", "Tipo"}); }
std::string address() { return tr({"Address", "Adres", "Adresse", "Adresse", "Dirección"}); }
std::string size() { return tr({"Size", "Grootte", "Größe", "Taille", "Tamaño"}); }
std::string locationAndChecks() {
  return tr({"Location and checks", "Locatie en controles", "Ort und Prüfungen",
             "Emplacement et contrôles", "Ubicación y comprobaciones"});
}
std::string flashThisFile() {
  return tr({"Flash this file", "Dit bestand flashen", "Diese Datei flashen", "Flasher ce fichier",
             "Flashear este archivo"});
}
std::string addressTooltip() {
  return tr({"Address in flash memory, hexadecimal (for example 0x10000)",
             "Adres in het flashgeheugen, hexadecimaal (bijvoorbeeld 0x10000)",
             "Adresse im Flash-Speicher, hexadezimal (zum Beispiel 0x10000)",
             "Adresse en mémoire flash, en hexadécimal (par exemple 0x10000)",
             "Dirección en la memoria flash, en hexadecimal (por ejemplo, 0x10000)"});
}
std::string chooseFirmwareFiles() {
  return tr(
      {"Choose the firmware files: bootloader, partition table, application and possibly "
       "a file system.",
       "Kies de firmwarebestanden: bootloader, partitietabel, applicatie en eventueel een "
       "bestandssysteem.",
       "Wähle die Firmware-Dateien: Bootloader, Partitionstabelle, Anwendung und eventuell "
       "ein Dateisystem.",
       "Choisissez les fichiers de firmware\u00A0: bootloader, table de partitions, application "
       "et éventuellement un système de fichiers.",
       "Elige los archivos de firmware: bootloader, tabla de particiones, aplicación y, si "
       "hace falta, un sistema de archivos."});
}
std::string chooseSketch() {
  return tr({"Choose the sketch (.hex or .bin, without bootloader).",
             "Kies de sketch (.hex of .bin, zonder bootloader).",
             "Wähle den Sketch (.hex oder .bin, ohne Bootloader).",
             "Choisissez le sketch (.hex ou .bin, sans bootloader).",
             "Elige el sketch (.hex o .bin, sin bootloader)."});
}
std::string chooseBuildFolder() {
  return tr({"Choose the build folder, for example .pio/build/esp32dev or the Arduino IDE export "
             "folder.",
             "Kies de buildmap, bijvoorbeeld .pio/build/esp32dev of de exportmap van de Arduino "
             "IDE.",
             "Wähle den Build-Ordner, zum Beispiel .pio/build/esp32dev oder den Exportordner der "
             "Arduino IDE.",
             "Choisissez le dossier de compilation, par exemple .pio/build/esp32dev ou le dossier "
             "d’exportation de l’Arduino IDE.",
             "Elige la carpeta de compilación, por ejemplo .pio/build/esp32dev o la carpeta de "
             "exportación del Arduino IDE."});
}
std::string noFirmwareYet() {
  return tr({"No firmware yet", "Nog geen firmware", "Noch keine Firmware",
             "Pas encore de firmware", "Todavía no hay firmware"});
}
std::string addFilesHint() {
  return tr(
      {"Add the files or drag them here; a whole build folder works too. The app recognises "
       "bootloader, partition table, application and file system and puts them at the "
       "right address.",
       "Voeg de bestanden toe of sleep ze hierheen; een hele buildmap kan ook. De app "
       "herkent bootloader, partitietabel, applicatie en bestandssysteem en zet ze op het "
       "juiste adres.",
       "Füge die Dateien hinzu oder ziehe sie hierher; ein ganzer Build-Ordner geht auch. "
       "Die App erkennt Bootloader, Partitionstabelle, Anwendung und Dateisystem und legt "
       "sie an die richtige Adresse.",
       "Ajoutez les fichiers ou faites-les glisser ici\u00A0; un dossier de compilation entier "
       "convient aussi. L’app reconnaît le bootloader, la table de partitions, "
       "l’application et le système de fichiers, et les place à la bonne adresse.",
       "Añade los archivos o arrástralos aquí; también sirve una carpeta de compilación "
       "entera. La app reconoce bootloader, tabla de particiones, aplicación y sistema de "
       "archivos y los coloca en la dirección correcta."});
}
std::string addSketchHint() {
  return tr({"Add the sketch (.hex from the Arduino IDE or PlatformIO) or drag it here.",
             "Voeg de sketch toe (.hex uit de Arduino IDE of PlatformIO) of sleep hem hierheen.",
             "Füge den Sketch hinzu (.hex aus der Arduino IDE oder PlatformIO) oder ziehe ihn "
             "hierher.",
             "Ajoutez le sketch (.hex de l’Arduino IDE ou de PlatformIO) ou faites-le glisser "
             "ici.",
             "Añade el sketch (.hex del Arduino IDE o de PlatformIO) o arrástralo aquí."});
}
std::string partitionCount(std::int64_t count) {
  return std::to_string(count) +
         tr({" partitions", " partities", " Partitionen", " partitions", " particiones"});
}
std::string partitionUsage(const std::string& label, const std::string& size,
                           const std::string& percentage) {
  return label + " (" + size + ", " + percentage +
         tr({" % used)", "% gebruikt)", " % belegt)", NBSP "% utilisés)", " % usado)"});
}
} // namespace tarnwick::L10n::Images

#undef NBSP
