#include "Localization/WindowTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Window {

std::string fileMenu() { return tr({"&File", "&Bestand", "&Datei", "&Fichier", "&Archivo"}); }
std::string boardMenu() { return tr({"&Board", "B&ord", "&Board", "&Carte", "&Placa"}); }
std::string viewMenu() { return tr({"&View", "Beel&d", "&Ansicht", "&Affichage", "&Ver"}); }
std::string helpMenu() { return tr({"&Help", "&Help", "&Hilfe", "Ai&de", "Ay&uda"}); }
std::string newProduct() {
  return tr({"New Product", "Nieuw product", "Neues Produkt", "Nouveau produit", "Nuevo producto"});
}
std::string openProduct() {
  return tr({"Open Product…", "Product openen…", "Produkt öffnen …", "Ouvrir un produit…",
             "Abrir producto…"});
}
std::string openRecent() {
  return tr({"Open Recent", "Recent geopend", "Zuletzt geöffnet", "Ouvrir un fichier récent",
             "Abrir reciente"});
}
std::string clearRecent() {
  return tr({"Clear Menu", "Menu wissen", "Liste leeren", "Effacer la liste", "Borrar la lista"});
}
std::string saveProduct() {
  return tr({"Save Product", "Product opslaan", "Produkt speichern", "Enregistrer le produit",
             "Guardar producto"});
}
std::string saveProductAs() {
  return tr({"Save Product As…", "Product opslaan als…", "Produkt speichern unter …",
             "Enregistrer le produit sous…", "Guardar producto como…"});
}
std::string saveLog() {
  return tr({"Save Log…", "Log opslaan…", "Protokoll speichern …", "Enregistrer le journal…",
             "Guardar registro…"});
}
std::string clearLog() {
  return tr(
      {"Clear Log", "Log wissen", "Protokoll leeren", "Effacer le journal", "Borrar registro"});
}
std::string quit() { return tr({"&Quit", "&Stoppen", "&Beenden", "&Quitter", "&Salir"}); }
std::string showLog() {
  return tr(
      {"Show Log", "Log tonen", "Protokoll einblenden", "Afficher le journal", "Mostrar registro"});
}
std::string autoscroll() {
  return tr({"Autoscroll", "Automatisch scrollen", "Automatisch scrollen", "Défilement auto",
             "Desplazamiento automático"});
}
std::string timestamps() {
  return tr({"Timestamps", "Tijdstempels", "Zeitstempel", "Horodatage", "Marcas de tiempo"});
}
std::string stop() { return tr({"Stop", "Stoppen", "Stopp", "Arrêter", "Detener"}); }

std::string flashTooltip(const std::string& shortcut) {
  return tr({"Put the product onto the connected board (",
             "Het product op het aangesloten bord "
             "zetten (",
             "Das Produkt auf das angeschlossene Board schreiben (",
             "Transférer le produit sur la carte connectée (",
             "Grabar el producto en la placa conectada ("}) +
         shortcut + ")";
}
std::string stopTooltip(const std::string& shortcut) { return stop() + " (" + shortcut + ")"; }
std::string waitUntilFinished() {
  return tr({"Wait until flashing has finished", "Wacht tot het flashen klaar is",
             "Warte, bis das Flashen abgeschlossen ist", "Attendez la fin du flashage",
             "Espera a que termine el flasheo"});
}
std::string settingsTooltip() {
  return tr({"Speed, reset, flash settings and verification",
             "Snelheid, reset, flashinstellingen en controle",
             "Geschwindigkeit, Reset, Flash-Einstellungen und Prüfung",
             "Vitesse, réinitialisation, réglages de la flash et vérification",
             "Velocidad, reinicio, ajustes de flash y verificación"});
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
             "Aucun port trouvé", "No se encontraron puertos"});
}
std::string selectAPort() {
  return tr({"Select a port…", "Kies een poort…", "Schnittstelle wählen …", "Choisissez un port…",
             "Elige un puerto…"});
}
std::string notConnected(const std::string& path) {
  return path + tr({" (not connected)", " (niet aangesloten)", " (nicht verbunden)",
                    " (non connecté)", " (no conectado)"});
}

std::string noUSBBoard() {
  return tr({"No USB board found. Connect the board with a cable that carries data (not a "
             "charge-only cable).",
             "Geen USB-bord gevonden. Sluit het bord aan met een kabel die data doorgeeft (geen "
             "oplaadkabel).",
             "Kein USB-Board gefunden. Schließe das Board mit einem Datenkabel an (nicht mit "
             "einem reinen Ladekabel).",
             "Aucune carte USB trouvée. Branchez la carte avec un câble qui transmet les données "
             "(pas un câble de charge seule).",
             "No se encontró ninguna placa USB. Conecta la placa con un cable de datos (no uno "
             "solo de carga)."});
}
std::string dismiss() { return tr({"Dismiss", "Sluiten", "Ausblenden", "Masquer", "Descartar"}); }

std::string productTitle() { return tr({"Product", "Product", "Produkt", "Produit", "Producto"}); }
std::string productButtonsTooltip() {
  return tr({"Start a new product, open a product or save this one, with all its files inside",
             "Een nieuw product beginnen, een product openen of dit opslaan, met al zijn "
             "bestanden erin",
             "Ein neues Produkt beginnen, ein Produkt öffnen oder dieses speichern, mit allen "
             "Dateien darin",
             "Créer un produit, en ouvrir un ou enregistrer celui-ci avec tous ses fichiers",
             "Crear un producto, abrir uno o guardar este con todos sus archivos dentro"});
}
std::string newButton() { return tr({"New", "Nieuw", "Neu", "Nouveau", "Nuevo"}); }
std::string openButton() { return tr({"Open…", "Openen…", "Öffnen …", "Ouvrir…", "Abrir…"}); }
std::string saveButton() { return tr({"Save", "Opslaan", "Speichern", "Enregistrer", "Guardar"}); }
std::string targetTooltip() {
  return tr({"What this product goes onto: an ESP chip (or whichever chip is connected) or an "
             "Arduino board",
             "Waar dit product op gaat: een ESP-chip (of de chip die aangesloten is) of een "
             "Arduino-bord",
             "Wofür dieses Produkt ist: ein ESP-Chip (oder der gerade angeschlossene) oder ein "
             "Arduino-Board",
             "Ce sur quoi va ce produit : une puce ESP (ou celle qui est connectée) ou une carte "
             "Arduino",
             "A qué va destinado este producto: un chip ESP (o el que esté conectado) o una "
             "placa Arduino"});
}
std::string notesPlaceholder() {
  return tr({"For example the hardware revision or where the source code is; saved in the "
             "product.",
             "Bijvoorbeeld de hardwarerevisie of waar de broncode staat; wordt in het product "
             "opgeslagen.",
             "Zum Beispiel die Hardware-Revision oder wo der Quellcode liegt; wird im Produkt "
             "gespeichert.",
             "Par exemple la révision du matériel ou l’emplacement du code source ; enregistré "
             "dans le produit.",
             "Por ejemplo, la revisión del hardware o dónde está el código fuente; se guarda en "
             "el producto."});
}
std::string saveCurrentProduct() {
  return tr({"Save the current product?", "Het huidige product opslaan?",
             "Aktuelles Produkt speichern?", "Enregistrer le produit actuel ?",
             "¿Guardar el producto actual?"});
}
std::string unsavedChangesText() {
  return tr({"The current product has changes that have not been saved.",
             "Het huidige product heeft wijzigingen die nog niet zijn opgeslagen.",
             "Das aktuelle Produkt hat Änderungen, die noch nicht gespeichert sind.",
             "Le produit actuel comporte des modifications non enregistrées.",
             "El producto actual tiene cambios sin guardar."});
}
std::string saveEllipsis() {
  return tr({"Save…", "Opslaan…", "Speichern …", "Enregistrer…", "Guardar…"});
}
std::string dontSave() {
  return tr({"Don't Save", "Niet opslaan", "Nicht speichern", "Ne pas enregistrer", "No guardar"});
}
std::string cancel() { return tr({"Cancel", "Annuleren", "Abbrechen", "Annuler", "Cancelar"}); }
std::string productFileFilter() {
  return tr({"Tarnwick products (*.twflash)", "Tarnwick-producten (*.twflash)",
             "Tarnwick-Produkte (*.twflash)", "Produits Tarnwick (*.twflash)",
             "Productos de Tarnwick (*.twflash)"});
}
std::string firmwareFileFilter() {
  return tr({"Firmware (*.bin *.hex)", "Firmware (*.bin *.hex)", "Firmware (*.bin *.hex)",
             "Micrologiciel (*.bin *.hex)", "Firmware (*.bin *.hex)"});
}
std::string textFileFilter() {
  return tr({"Text files (*.txt)", "Tekstbestanden (*.txt)", "Textdateien (*.txt)",
             "Fichiers texte (*.txt)", "Archivos de texto (*.txt)"});
}

std::string speedExplanation() {
  return tr({"The bootloader starts at 115200 baud; then the app switches to this speed. If it "
             "fails with a long or cheap cable, choose a lower speed. The ESP8266 always flashes "
             "at 115200.",
             "De bootloader begint op 115200 baud; daarna schakelt de app over op deze snelheid. "
             "Mislukt het met een lange of goedkope kabel, kies dan een lagere snelheid. De "
             "ESP8266 flasht altijd op 115200.",
             "Der Bootloader startet mit 115200 Baud; danach wechselt die App auf diese "
             "Geschwindigkeit. Klappt es mit einem langen oder billigen Kabel nicht, wähle eine "
             "niedrigere. Der ESP8266 wird immer mit 115200 geflasht.",
             "Le bootloader démarre à 115200 bauds, puis l’app passe à cette vitesse. En cas "
             "d’échec avec un câble long ou bon marché, choisissez une vitesse plus basse. "
             "L’ESP8266 est toujours flashé à 115200.",
             "El bootloader arranca a 115200 baudios y después la app cambia a esta velocidad. "
             "Si falla con un cable largo o barato, elige una velocidad menor. El ESP8266 "
             "siempre se flashea a 115200."});
}
std::string resetExplanation() {
  return tr({"How the app puts the board into its bootloader. Automatic tries both methods; "
             "choose Manual for a board without DTR/RTS.",
             "Hoe de app het bord in zijn bootloader zet. Automatisch probeert beide methoden; "
             "kies Handmatig voor een bord zonder DTR/RTS.",
             "Wie die App das Board in den Bootloader bringt. Automatisch probiert beide "
             "Methoden; wähle Manuell für ein Board ohne DTR/RTS.",
             "Comment l’app fait passer la carte dans son bootloader. Automatique essaie les "
             "deux méthodes ; choisissez Manuel pour une carte sans DTR/RTS.",
             "Cómo pone la app la placa en su bootloader. Automático prueba ambos métodos; elige "
             "Manual para una placa sin DTR/RTS."});
}
std::string flashModeExplanation() {
  return tr({"Written into the bootloader. Leave it on As in file unless the module needs "
             "another mode (DIO almost always works).",
             "Wordt in de bootloader geschreven. Laat op Zoals in bestand, tenzij de module een "
             "andere modus nodig heeft (DIO werkt bijna altijd).",
             "Wird in den Bootloader geschrieben. Lass es auf Wie in der Datei, außer das Modul "
             "braucht einen anderen Modus (DIO geht fast immer).",
             "Écrit dans le bootloader. Laissez Comme dans le fichier, sauf si le module exige "
             "un autre mode (DIO fonctionne presque toujours).",
             "Se escribe en el bootloader. Déjalo en Como en el archivo salvo que el módulo "
             "necesite otro modo (DIO casi siempre funciona)."});
}
std::string flashSizeExplanation() {
  return tr({"Written into the bootloader. As in file usually works; choose the real size if "
             "the firmware must see more flash.",
             "Wordt in de bootloader geschreven. Zoals in bestand werkt meestal; kies de echte "
             "grootte als de firmware meer flash moet zien.",
             "Wird in den Bootloader geschrieben. Wie in der Datei passt meist; wähle die echte "
             "Größe, wenn die Firmware mehr Flash sehen muss.",
             "Écrit dans le bootloader. Comme dans le fichier convient en général ; choisissez "
             "la taille réelle si le micrologiciel doit voir plus de flash.",
             "Se escribe en el bootloader. Como en el archivo suele bastar; elige el tamaño real "
             "si el firmware debe ver más flash."});
}
std::string clearOTAExplanation() {
  return tr({"Erases the otadata partition, so the board starts the new app and not an older "
             "OTA version.",
             "Wist de otadata-partitie, zodat het bord de nieuwe app start en geen oudere "
             "OTA-versie.",
             "Löscht die otadata-Partition, damit das Board die neue App startet und keine "
             "ältere OTA-Version.",
             "Efface la partition otadata, pour que la carte démarre la nouvelle app et non une "
             "ancienne version OTA.",
             "Borra la partición otadata para que la placa arranque la app nueva y no una "
             "versión OTA anterior."});
}
std::string bootloader() {
  return tr({"Bootloader", "Bootloader", "Bootloader", "Bootloader", "Bootloader"});
}
std::string speed() { return tr({"Speed", "Snelheid", "Geschwindigkeit", "Vitesse", "Velocidad"}); }
std::string roomForSketch() {
  return tr({"Room for the sketch", "Ruimte voor de sketch", "Platz für den Sketch",
             "Place pour le croquis", "Espacio para el sketch"});
}
std::string verificationAndProduction() {
  return tr({"Verification and production", "Controle en productie", "Prüfung und Produktion",
             "Vérification et production", "Verificación y producción"});
}
std::string verifyExplanation() {
  return tr({"Reads back (Arduino) or lets the chip compute an MD5 (ESP32) and compares. The "
             "ESP8266 ROM cannot; there the bootloader checks every block.",
             "Leest terug (Arduino) of laat de chip een MD5 berekenen (ESP32) en vergelijkt. "
             "Het ROM van de ESP8266 kan dat niet; daar controleert de bootloader elk blok.",
             "Liest zurück (Arduino) oder lässt den Chip eine MD5 berechnen (ESP32) und "
             "vergleicht. Das ROM des ESP8266 kann das nicht; dort prüft der Bootloader jeden "
             "Block.",
             "Relit la mémoire (Arduino) ou fait calculer un MD5 par la puce (ESP32) et compare. "
             "La ROM de l’ESP8266 ne le peut pas ; là, le bootloader vérifie chaque bloc.",
             "Vuelve a leer (Arduino) o hace que el chip calcule un MD5 (ESP32) y compara. La "
             "ROM del ESP8266 no puede; allí el bootloader comprueba cada bloque."});
}
std::string flashAutomatically() {
  return tr({"Flash automatically when connected", "Automatisch flashen bij aansluiten",
             "Beim Anschließen automatisch flashen", "Flasher automatiquement à la connexion",
             "Flashear automáticamente al conectar"});
}
std::string flashAutomaticallyExplanation() {
  return tr({"Flashes the product as soon as a new USB board is connected: handy for a series "
             "of boards.",
             "Flasht het product zodra er een nieuw USB-bord wordt aangesloten: handig voor een "
             "serie borden.",
             "Flasht das Produkt, sobald ein neues USB-Board angeschlossen wird: praktisch für "
             "eine Serie von Boards.",
             "Flashe le produit dès qu’une nouvelle carte USB est branchée : pratique pour une "
             "série de cartes.",
             "Flashea el producto en cuanto se conecta una placa USB nueva: práctico para una "
             "serie de placas."});
}
std::string soundWhenDone() {
  return tr({"Sound when done or failed", "Geluid bij klaar of mislukt",
             "Ton bei Erfolg oder Fehler", "Son à la fin ou en cas d’échec",
             "Sonido al terminar o fallar"});
}
std::string baud(std::int64_t rate) {
  return std::to_string(rate) + tr({" baud", " baud", " Baud", " bauds", " baudios"});
}
std::string close() { return tr({"Close", "Sluiten", "Schließen", "Fermer", "Cerrar"}); }

std::string addFiles() {
  return tr({"Files…", "Bestanden…", "Dateien …", "Fichiers…", "Archivos…"});
}
std::string addFilesTooltip() {
  return tr({"Add firmware files (.bin or .hex)", "Firmwarebestanden toevoegen (.bin of .hex)",
             "Firmware-Dateien hinzufügen (.bin oder .hex)",
             "Ajouter des fichiers de micrologiciel (.bin ou .hex)",
             "Añadir archivos de firmware (.bin o .hex)"});
}
std::string buildFolder() {
  return tr({"Build Folder…", "Buildmap…", "Build-Ordner …", "Dossier de build…",
             "Carpeta de compilación…"});
}
std::string buildFolderTooltip() {
  return tr({"Take all files from a PlatformIO, Arduino IDE or ESP-IDF build folder, with their "
             "addresses",
             "Alle bestanden uit een buildmap van PlatformIO, de Arduino IDE of ESP-IDF nemen, "
             "met hun adressen",
             "Alle Dateien aus einem Build-Ordner von PlatformIO, der Arduino IDE oder ESP-IDF "
             "übernehmen, mit ihren Adressen",
             "Prendre tous les fichiers d’un dossier de build PlatformIO, Arduino IDE ou ESP-IDF, "
             "avec leurs adresses",
             "Tomar todos los archivos de una carpeta de compilación de PlatformIO, Arduino IDE o "
             "ESP-IDF, con sus direcciones"});
}
std::string remove() { return tr({"Remove", "Verwijderen", "Entfernen", "Retirer", "Quitar"}); }
std::string chooseAnotherFile() {
  return tr({"Choose Another File…", "Ander bestand kiezen…", "Andere Datei wählen …",
             "Choisir un autre fichier…", "Elegir otro archivo…"});
}
std::string columnFile() { return tr({"File", "Bestand", "Datei", "Fichier", "Archivo"}); }
std::string columnSketch() { return tr({"Sketch", "Sketch", "Sketch", "Croquis", "Sketch"}); }
std::string columnKind() { return tr({"Kind", "Soort", "Art", "Type", "Tipo"}); }
std::string columnAddress() { return tr({"Address", "Adres", "Adresse", "Adresse", "Dirección"}); }
std::string columnSize() { return tr({"Size", "Grootte", "Größe", "Taille", "Tamaño"}); }
std::string columnLocation() {
  return tr({"Location and checks", "Plaats en controles", "Ort und Prüfungen",
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
             "Adresse dans la mémoire flash, en hexadécimal (par exemple 0x10000)",
             "Dirección en la memoria flash, en hexadecimal (por ejemplo 0x10000)"});
}
std::string chooseFirmwareFiles() {
  return tr({"Choose the firmware files: bootloader, partition table, application and possibly "
             "a file system.",
             "Kies de firmwarebestanden: bootloader, partitietabel, applicatie en eventueel een "
             "bestandssysteem.",
             "Wähle die Firmware-Dateien: Bootloader, Partitionstabelle, Anwendung und eventuell "
             "ein Dateisystem.",
             "Choisissez les fichiers du micrologiciel : bootloader, table des partitions, "
             "application et éventuellement un système de fichiers.",
             "Elige los archivos de firmware: bootloader, tabla de particiones, aplicación y, si "
             "hay, un sistema de archivos."});
}
std::string chooseSketch() {
  return tr({"Choose the sketch (.hex or .bin, without bootloader).",
             "Kies de sketch (.hex of .bin, zonder bootloader).",
             "Wähle den Sketch (.hex oder .bin, ohne Bootloader).",
             "Choisissez le croquis (.hex ou .bin, sans bootloader).",
             "Elige el sketch (.hex o .bin, sin bootloader)."});
}
std::string chooseBuildFolder() {
  return tr({"Choose the build folder, for example .pio/build/esp32dev or the Arduino IDE export "
             "folder.",
             "Kies de buildmap, bijvoorbeeld .pio/build/esp32dev of de exportmap van de Arduino "
             "IDE.",
             "Wähle den Build-Ordner, zum Beispiel .pio/build/esp32dev oder den Exportordner der "
             "Arduino IDE.",
             "Choisissez le dossier de build, par exemple .pio/build/esp32dev ou le dossier "
             "d’export de l’Arduino IDE.",
             "Elige la carpeta de compilación, por ejemplo .pio/build/esp32dev o la carpeta de "
             "exportación del Arduino IDE."});
}
std::string noFirmwareYet() {
  return tr({"No firmware yet", "Nog geen firmware", "Noch keine Firmware",
             "Pas encore de micrologiciel", "Aún no hay firmware"});
}
std::string emptyHintESP() {
  return tr({"Add the files or drag them here; a whole build folder works too. The app "
             "recognises bootloader, partition table, application and file system and puts them "
             "at the right address.",
             "Voeg de bestanden toe of sleep ze hierheen; een hele buildmap kan ook. De app "
             "herkent bootloader, partitietabel, applicatie en bestandssysteem en zet ze op het "
             "juiste adres.",
             "Füge die Dateien hinzu oder ziehe sie hierher; ein ganzer Build-Ordner geht auch. "
             "Die App erkennt Bootloader, Partitionstabelle, Anwendung und Dateisystem und legt "
             "sie an die richtige Adresse.",
             "Ajoutez les fichiers ou glissez-les ici ; un dossier de build entier fonctionne "
             "aussi. L’app reconnaît bootloader, table des partitions, application et système de "
             "fichiers et les place à la bonne adresse.",
             "Añade los archivos o arrástralos aquí; también sirve una carpeta de compilación "
             "entera. La app reconoce bootloader, tabla de particiones, aplicación y sistema de "
             "archivos y los coloca en la dirección correcta."});
}
std::string emptyHintArduino() {
  return tr({"Add the sketch (.hex from the Arduino IDE or PlatformIO) or drag it here.",
             "Voeg de sketch toe (.hex uit de Arduino IDE of PlatformIO) of sleep hem hierheen.",
             "Füge den Sketch hinzu (.hex aus der Arduino IDE oder PlatformIO) oder ziehe ihn "
             "hierher.",
             "Ajoutez le croquis (.hex de l’Arduino IDE ou de PlatformIO) ou glissez-le ici.",
             "Añade el sketch (.hex del Arduino IDE o de PlatformIO) o arrástralo aquí."});
}
std::string partitionCount(std::int64_t count) {
  return std::to_string(count) +
         tr({" partitions", " partities", " Partitionen", " partitions", " particiones"});
}
std::string partitionUse(const std::string& label, const std::string& size, int percent) {
  return label + " (" + size + ", " + std::to_string(percent) +
         tr({" % used)", " % gebruikt)", " % belegt)", " % utilisés)", " % usado)"});
}

std::string readyToFlash() {
  return tr({"Ready to flash", "Klaar om te flashen", "Bereit zum Flashen", "Prêt à flasher",
             "Listo para flashear"});
}
std::string addFirmwareToBegin() {
  return tr({"Add firmware to begin", "Voeg firmware toe om te beginnen",
             "Füge Firmware hinzu, um zu beginnen", "Ajoutez un micrologiciel pour commencer",
             "Añade firmware para empezar"});
}
std::string noPort() {
  return tr({"no port", "geen poort", "keine Schnittstelle", "aucun port", "sin puerto"});
}
std::string counters(int flashed, int failed) {
  return tr({"Flashed ", "Geflasht ", "Geflasht ", "Flashées ", "Flasheadas "}) +
         std::to_string(flashed) +
         tr({" · Failed ", " · Mislukt ", " · Fehlgeschlagen ", " · Échecs ", " · Fallidas "}) +
         std::to_string(failed);
}
std::string logOptions() {
  return tr({"Log options", "Logopties", "Protokolloptionen", "Options du journal",
             "Opciones del registro"});
}
std::string logToggleTooltip(const std::string& shortcut) {
  return tr({"Show or hide the log (", "Log tonen of verbergen (",
             "Protokoll zeigen oder "
             "ausblenden (",
             "Afficher ou masquer le journal (", "Mostrar u ocultar el registro ("}) +
         shortcut + ")";
}
std::string saveLogButton() { return saveEllipsis(); }
std::string saveLogTooltip(const std::string& shortcut) {
  return tr({"Save the log as a text file (", "Het log als tekstbestand opslaan (",
             "Das Protokoll als Textdatei speichern (",
             "Enregistrer le journal comme fichier texte (",
             "Guardar el registro como archivo de texto ("}) +
         shortcut + ")";
}
std::string clearLogButton() {
  return tr(
      {"Clear log", "Log wissen", "Protokoll leeren", "Effacer le journal", "Borrar registro"});
}
std::string clearLogTooltip(const std::string& shortcut) {
  return tr({"Clear the log and counters (", "Log en tellers wissen (",
             "Protokoll und Zähler leeren (", "Effacer le journal et les compteurs (",
             "Borrar el registro y los contadores ("}) +
         shortcut + ")";
}
std::string ok() { return tr({"OK", "OK", "OK", "OK", "Aceptar"}); }

} // namespace tarnwick::L10n::Window
