// The help topics of the two board families: where ESP files go, and which Arduino board speaks
// which bootloader.

#include "Localization/HelpContent.hpp"

namespace tarnwick::L10n::Help::content {

HelpTopic esp() {
  return {
      "esp",
      tr({"ESP32 and ESP8266", "ESP32 en ESP8266", "ESP32 und ESP8266", "ESP32 et ESP8266",
          "ESP32 y ESP8266"}),
      "cpu",
      {
          paragraph(
              {"A build for an ESP chip usually consists of a bootloader, a partition table and "
               "the application, sometimes with OTA data and a file system. Tarnwick recognises "
               "each file by its name and content and puts it here:",
               "Een build voor een ESP-chip bestaat meestal uit een bootloader, een partitietabel "
               "en de applicatie, soms met OTA-gegevens en een bestandssysteem. Tarnwick herkent "
               "elk bestand aan naam en inhoud en zet het hier:",
               "Ein Build für einen ESP-Chip besteht meist aus Bootloader, Partitionstabelle und "
               "Anwendung, manchmal mit OTA-Daten und einem Dateisystem. Tarnwick erkennt jede "
               "Datei an Name und Inhalt und legt sie hierhin:",
               "Un build pour une puce ESP comprend en général un bootloader, une table de "
               "partitions et l’application, parfois des données OTA et un système de fichiers. "
               "Tarnwick reconnaît chaque fichier à son nom et à son contenu et le place "
               "ainsi\u00A0:",
               "Una compilación para un chip ESP suele constar de un bootloader, una tabla de "
               "particiones y la aplicación, a veces con datos OTA y un sistema de archivos. "
               "Tarnwick reconoce cada archivo por su nombre y su contenido y lo coloca así:"}),
          table({
              {{"Bootloader (`bootloader.bin`)", "Bootloader (`bootloader.bin`)",
                "Bootloader (`bootloader.bin`)", "Bootloader (`bootloader.bin`)",
                "Bootloader (`bootloader.bin`)"},
               {"`0x1000` on ESP32 and ESP32-S2; `0x0` on ESP32-S3, ESP32-C3, ESP32-C6 and "
                "ESP8266",
                "`0x1000` op ESP32 en ESP32-S2; `0x0` op ESP32-S3, ESP32-C3, ESP32-C6 en ESP8266",
                "`0x1000` beim ESP32 und ESP32-S2; `0x0` beim ESP32-S3, ESP32-C3, ESP32-C6 und "
                "ESP8266",
                "`0x1000` sur ESP32 et ESP32-S2\u00A0; `0x0` sur ESP32-S3, ESP32-C3, ESP32-C6 et "
                "ESP8266",
                "`0x1000` en ESP32 y ESP32-S2; `0x0` en ESP32-S3, ESP32-C3, ESP32-C6 y ESP8266"}},
              {{"Partition table (`partitions.bin`)", "Partitietabel (`partitions.bin`)",
                "Partitionstabelle (`partitions.bin`)", "Table de partitions (`partitions.bin`)",
                "Tabla de particiones (`partitions.bin`)"},
               {"`0x8000`, always", "`0x8000`, altijd", "`0x8000`, immer", "`0x8000`, toujours",
                "`0x8000`, siempre"}},
              {{"OTA data (`boot_app0.bin`)", "OTA-gegevens (`boot_app0.bin`)",
                "OTA-Daten (`boot_app0.bin`)", "Données OTA (`boot_app0.bin`)",
                "Datos OTA (`boot_app0.bin`)"},
               {"the `otadata` partition of the table, otherwise `0xE000`",
                "de partitie `otadata` uit de tabel, anders `0xE000`",
                "die Partition `otadata` der Tabelle, sonst `0xE000`",
                "la partition `otadata` de la table, sinon `0xE000`",
                "la partición `otadata` de la tabla; si no, `0xE000`"}},
              {{"Application (`firmware.bin`, `….ino.bin`)",
                "Applicatie (`firmware.bin`, `….ino.bin`)",
                "Anwendung (`firmware.bin`, `….ino.bin`)",
                "Application (`firmware.bin`, `….ino.bin`)",
                "Aplicación (`firmware.bin`, `….ino.bin`)"},
               {"the factory or first app partition of the table, otherwise `0x10000`",
                "de factory- of eerste app-partitie uit de tabel, anders `0x10000`",
                "die Factory- oder erste App-Partition der Tabelle, sonst `0x10000`",
                "la partition factory ou la première partition d’application, sinon `0x10000`",
                "la partición factory o la primera de aplicación; si no, `0x10000`"}},
              {{"File system (`littlefs.bin`, `spiffs.bin`, `fatfs.bin`)",
                "Bestandssysteem (`littlefs.bin`, `spiffs.bin`, `fatfs.bin`)",
                "Dateisystem (`littlefs.bin`, `spiffs.bin`, `fatfs.bin`)",
                "Système de fichiers (`littlefs.bin`, `spiffs.bin`, `fatfs.bin`)",
                "Sistema de archivos (`littlefs.bin`, `spiffs.bin`, `fatfs.bin`)"},
               {"the data partition of the table, otherwise `0x290000`",
                "de datapartitie uit de tabel, anders `0x290000`",
                "die Datenpartition der Tabelle, sonst `0x290000`",
                "la partition de données de la table, sinon `0x290000`",
                "la partición de datos de la tabla; si no, `0x290000`"}},
          }),
          paragraph(
              {"So everything after `0x8000` is read from the partition table: add it together "
               "with the other files. A build folder of ESP-IDF brings its own addresses in "
               "`flasher_args.json`; those are used as they are. A merged image "
               "(`….merged.bin`, `factory.bin`) belongs at `0x0`.",
               "Alles na `0x8000` komt dus uit de partitietabel: voeg die samen met de andere "
               "bestanden toe. Een buildmap van ESP-IDF brengt zijn eigen adressen mee in "
               "`flasher_args.json`; die worden gewoon gebruikt. Een samengevoegd image "
               "(`….merged.bin`, `factory.bin`) hoort op `0x0`.",
               "Alles nach `0x8000` wird also aus der Partitionstabelle gelesen: Füge sie "
               "zusammen mit den anderen Dateien hinzu. Ein Build-Ordner von ESP-IDF bringt in "
               "`flasher_args.json` eigene Adressen mit; die werden unverändert übernommen. Ein "
               "zusammengeführtes Image (`….merged.bin`, `factory.bin`) gehört an `0x0`.",
               "Tout ce qui suit `0x8000` est donc lu dans la table de partitions\u00A0: ajoutez-"
               "la avec les autres fichiers. Un dossier de build ESP-IDF apporte ses propres "
               "adresses dans `flasher_args.json`\u00A0; elles sont reprises telles quelles. Une "
               "image fusionnée (`….merged.bin`, `factory.bin`) se place à `0x0`.",
               "Así que todo lo que va después de `0x8000` se lee de la tabla de particiones: "
               "añádela junto con los demás archivos. Una carpeta de compilación de ESP-IDF trae "
               "sus propias direcciones en `flasher_args.json`, que se usan tal cual. Una imagen "
               "combinada (`….merged.bin`, `factory.bin`) va en `0x0`."}),
          heading({"Reset into bootloader", "Reset naar bootloader", "Reset in den Bootloader",
                   "Redémarrage en bootloader", "Reinicio al bootloader"}),
          paragraph(
              {"Before flashing, the chip has to start its ROM bootloader. Tarnwick does that "
               "with the DTR and RTS lines of the USB connection:",
               "Voor het flashen moet de chip zijn ROM-bootloader starten. Tarnwick doet dat met "
               "de DTR- en RTS-lijnen van de USB-verbinding:",
               "Vor dem Flashen muss der Chip seinen ROM-Bootloader starten. Tarnwick erledigt "
               "das über die Leitungen DTR und RTS der USB-Verbindung:",
               "Avant le flashage, la puce doit lancer son bootloader en ROM. Tarnwick s’en "
               "charge avec les lignes DTR et RTS de la liaison USB\u00A0:",
               "Antes de flashear, el chip tiene que arrancar su bootloader de ROM. Tarnwick lo "
               "hace con las líneas DTR y RTS de la conexión USB:"}),
          table({
              {{"Automatic", "Automatisch", "Automatisch", "Automatique", "Automático"},
               {"Tries both methods below in turn. Right for almost every board; a board on "
                "Espressif's own USB port gets the built-in USB method first.",
                "Probeert beide methoden hieronder om de beurt. Goed voor bijna elk board; een "
                "board aan de eigen USB-poort van Espressif krijgt eerst de methode voor "
                "ingebouwde USB.",
                "Versucht die beiden Methoden unten abwechselnd. Richtig für fast jedes Board; "
                "an Espressifs eigenem USB-Anschluss kommt zuerst die Methode für integriertes "
                "USB.",
                "Essaie tour à tour les deux méthodes ci-dessous. Convient à presque toutes les "
                "cartes\u00A0; sur le port USB propre d’Espressif, la méthode USB intégré passe "
                "en premier.",
                "Prueba por turnos los dos métodos de abajo. Sirve para casi todas las placas; "
                "con el puerto USB propio de Espressif se prueba primero el de USB integrado."}},
              {{"USB serial adapter (DTR/RTS)", "USB-serieeladapter (DTR/RTS)",
                "USB-Seriell-Adapter (DTR/RTS)", "Adaptateur USB-série (DTR/RTS)",
                "Adaptador USB-serie (DTR/RTS)"},
               {"Boards with a CP210x, CH340 or FTDI chip next to the ESP.",
                "Boards met een CP210x-, CH340- of FTDI-chip naast de ESP.",
                "Boards mit einem CP210x-, CH340- oder FTDI-Chip neben dem ESP.",
                "Cartes avec une puce CP210x, CH340 ou FTDI à côté de l’ESP.",
                "Placas con un chip CP210x, CH340 o FTDI junto al ESP."}},
              {{"Built-in USB (S3, C3, C6)", "Ingebouwde USB (S3, C3, C6)",
                "Integriertes USB (S3, C3, C6)", "USB intégré (S3, C3, C6)",
                "USB integrado (S3, C3, C6)"},
               {"The chip's own USB port (USB-Serial/JTAG), without an adapter chip.",
                "De eigen USB-poort van de chip (USB-Serial/JTAG), zonder adapterchip.",
                "Der eigene USB-Anschluss des Chips (USB-Serial/JTAG), ohne Adapter-Chip.",
                "Le port USB propre à la puce (USB-Serial/JTAG), sans puce d’adaptation.",
                "El puerto USB propio del chip (USB-Serial/JTAG), sin chip adaptador."}},
              {{"Manual (BOOT button)", "Handmatig (BOOT-knop)", "Manuell (BOOT-Taste)",
                "Manuel (bouton BOOT)", "Manual (botón BOOT)"},
               {"For boards without DTR/RTS: hold BOOT, briefly press RESET (EN), then "
                "release BOOT. Tarnwick keeps trying for about half a minute.",
                "Voor boards zonder DTR/RTS: houd BOOT ingedrukt, druk kort op RESET "
                "(EN) en laat BOOT los. Tarnwick blijft het zo'n halve minuut proberen.",
                "Für Boards ohne DTR/RTS: BOOT gedrückt halten, kurz RESET (EN) drücken, "
                "dann BOOT loslassen. Tarnwick versucht es etwa eine halbe Minute lang.",
                "Pour les cartes sans DTR/RTS\u00A0: maintenez BOOT, appuyez brièvement sur "
                "RESET (EN), puis relâchez BOOT. Tarnwick réessaie pendant environ une "
                "demi-minute.",
                "Para placas sin DTR/RTS: mantén pulsado BOOT, pulsa brevemente RESET "
                "(EN) y suelta BOOT. Tarnwick lo sigue intentando durante medio minuto."}},
          }),
          heading({"Settings", "Instellingen", "Einstellungen", "Réglages", "Ajustes"}),
          bullets({
              {"**Speed while flashing**: the bootloader starts at 115200 baud, then Tarnwick "
               "switches to the chosen speed. With a long or cheap cable choose a lower one. The "
               "ESP8266 always flashes at 115200.",
               "**Snelheid tijdens flashen**: de bootloader begint op 115200 baud, daarna "
               "schakelt Tarnwick over op de gekozen snelheid. Kies bij een lange of goedkope "
               "kabel een lagere. De ESP8266 flasht altijd op 115200.",
               "**Geschwindigkeit beim Flashen**: Der Bootloader beginnt mit 115200 Baud, dann "
               "schaltet Tarnwick auf die gewählte Geschwindigkeit um. Bei einem langen oder "
               "billigen Kabel wähle eine niedrigere. Der ESP8266 flasht immer mit 115200.",
               "**Vitesse de flashage**\u00A0: le bootloader démarre à 115200\u00A0bauds, puis "
               "Tarnwick passe à la vitesse choisie. Avec un câble long ou bas de gamme, "
               "choisissez-en une plus basse. L’ESP8266 flashe toujours à 115200\u00A0bauds.",
               "**Velocidad de flasheo**: el bootloader empieza a 115200 baudios y luego Tarnwick "
               "pasa a la velocidad elegida. Con un cable largo o barato, elige una más baja. El "
               "ESP8266 siempre flashea a 115200."},
              {"**Flash mode** and **Flash size** are written into the bootloader's header. "
               "Leave them on **As in file** unless the module needs something else (DIO almost "
               "always works).",
               "**Flashmodus** en **Flashgrootte** worden in de kop van de bootloader geschreven. "
               "Laat ze op **Zoals in bestand** staan, tenzij de module iets anders nodig heeft "
               "(DIO werkt bijna altijd).",
               "**Flash-Modus** und **Flash-Größe** werden in den Kopf des Bootloaders "
               "geschrieben. Lass sie auf **Wie in der Datei**, außer das Modul braucht etwas "
               "anderes (DIO geht fast immer).",
               "**Mode flash** et **Taille de la flash** sont écrits dans l’en-tête du "
               "bootloader. Laissez-les sur **Comme dans le fichier**, sauf si le module exige "
               "autre chose (DIO fonctionne presque toujours).",
               "**Modo flash** y **Tamaño de la flash** se escriben en la cabecera del "
               "bootloader. Déjalos en **Como en el archivo** salvo que el módulo necesite otra "
               "cosa (DIO funciona casi siempre)."},
              {"**Clear OTA selection** erases the `otadata` partition, so the board starts the "
               "new application and not an older version installed over the air.",
               "**OTA-keuze wissen** wist de partitie `otadata`, zodat het board de nieuwe "
               "applicatie start en niet een oudere versie die via OTA is geïnstalleerd.",
               "**OTA-Auswahl löschen** löscht die Partition `otadata`, damit das Board die neue "
               "Anwendung startet und keine ältere, per OTA installierte Version.",
               "**Effacer la sélection OTA** efface la partition `otadata`, pour que la carte "
               "démarre la nouvelle application et non une version plus ancienne installée par "
               "OTA.",
               "**Borrar la selección OTA** borra la partición `otadata` para que la placa "
               "arranque la aplicación nueva y no una versión anterior instalada por OTA."},
              {"**Verify after writing** lets the chip compute an MD5 of what it wrote and "
               "compares it. The ESP8266 ROM cannot do that; there the bootloader checks every "
               "block as it arrives.",
               "**Controleren na schrijven** laat de chip een MD5 berekenen van wat hij schreef "
               "en vergelijkt die. De ROM van de ESP8266 kan dat niet; daar controleert de "
               "bootloader elk blok bij aankomst.",
               "**Nach dem Schreiben prüfen** lässt den Chip eine MD5 des Geschriebenen "
               "berechnen und vergleicht sie. Das ROM des ESP8266 kann das nicht; dort prüft der "
               "Bootloader jeden Block beim Empfang.",
               "**Vérifier après l’écriture** fait calculer à la puce un MD5 de ce qu’elle a "
               "écrit et le compare. La ROM de l’ESP8266 en est incapable\u00A0; le bootloader y "
               "contrôle chaque bloc à la réception.",
               "**Verificar tras escribir** hace que el chip calcule un MD5 de lo que escribió y "
               "lo compara. La ROM del ESP8266 no puede hacerlo; allí el bootloader comprueba "
               "cada bloque al recibirlo."},
          }),
          screenshot("settings-esp.png", {"The connection settings for an ESP product.",
                                          "De verbindingsinstellingen voor een ESP-product.",
                                          "Die Verbindungseinstellungen für ein ESP-Produkt.",
                                          "Les réglages de connexion d’un produit ESP.",
                                          "Los ajustes de conexión de un producto ESP."}),
          tip({"With **ESP (detect automatically)** one product fits every ESP chip whose files "
               "it holds; pick a fixed chip to have the wrong board refused before anything is "
               "written.",
               "Met **ESP (automatisch herkennen)** past één product op elke ESP-chip waarvoor "
               "het de bestanden heeft; kies een vaste chip om een verkeerd board te weigeren "
               "voordat er iets geschreven wordt.",
               "Mit **ESP (automatisch erkennen)** passt ein Produkt auf jeden ESP-Chip, für den "
               "es Dateien hat; wähle einen festen Chip, damit ein falsches Board abgewiesen "
               "wird, bevor etwas geschrieben ist.",
               "Avec **ESP (détection automatique)**, un produit convient à toute puce ESP dont "
               "il contient les fichiers\u00A0; choisissez une puce précise pour qu’une mauvaise "
               "carte soit refusée avant toute écriture.",
               "Con **ESP (detectar automáticamente)** un producto sirve para cualquier chip ESP "
               "cuyos archivos contenga; elige un chip fijo para que una placa equivocada se "
               "rechace antes de escribir nada."}),
      }};
}

HelpTopic arduino() {
  return {
      "arduino",
      tr(same("Arduino (AVR)")),
      "memorychip",
      {
          paragraph(
              {"An Arduino board takes one sketch per product: the `.hex` file from the Arduino "
               "IDE or PlatformIO *without* bootloader (not `….with_bootloader.hex`), or a "
               "`.bin`. Tarnwick writes it through the bootloader already on the board, so no "
               "programmer is needed.",
               "Een Arduino-board krijgt één sketch per product: het `.hex`-bestand uit de "
               "Arduino IDE of PlatformIO *zonder* bootloader (niet `….with_bootloader.hex`), "
               "of een `.bin`. Tarnwick schrijft het via de bootloader die al op het board "
               "staat; een programmer is niet nodig.",
               "Ein Arduino-Board bekommt einen Sketch pro Produkt: die `.hex`-Datei aus der "
               "Arduino IDE oder PlatformIO *ohne* Bootloader (nicht `….with_bootloader.hex`) "
               "oder eine `.bin`. Tarnwick schreibt ihn über den Bootloader, der schon auf dem "
               "Board ist; ein Programmiergerät ist nicht nötig.",
               "Une carte Arduino reçoit un seul sketch par produit\u00A0: le fichier `.hex` de "
               "l’IDE Arduino ou de PlatformIO *sans* bootloader (pas "
               "`….with_bootloader.hex`), ou un `.bin`. Tarnwick l’écrit par le bootloader déjà "
               "présent sur la carte\u00A0: aucun programmateur n’est nécessaire.",
               "Una placa Arduino lleva un solo sketch por producto: el archivo `.hex` del IDE de "
               "Arduino o de PlatformIO *sin* bootloader (no `….with_bootloader.hex`), o un "
               "`.bin`. Tarnwick lo escribe a través del bootloader que ya tiene la placa, así "
               "que no hace falta un programador."}),
          table({
              {{"Arduino Uno, Arduino Nano", "Arduino Uno, Arduino Nano",
                "Arduino Uno, Arduino Nano", "Arduino Uno, Arduino Nano",
                "Arduino Uno, Arduino Nano"},
               {"Optiboot (STK500), 115200 baud, up to 32256 bytes",
                "Optiboot (STK500), 115200 baud, tot 32256 bytes",
                "Optiboot (STK500), 115200 Baud, bis 32256 Byte",
                "Optiboot (STK500), 115200\u00A0bauds, jusqu’à 32256\u00A0octets",
                "Optiboot (STK500), 115200 baudios, hasta 32256 bytes"}},
              {{"Arduino Nano (old bootloader)", "Arduino Nano (oude bootloader)",
                "Arduino Nano (alter Bootloader)", "Arduino Nano (ancien bootloader)",
                "Arduino Nano (bootloader antiguo)"},
               {"ATmegaBOOT (STK500), 57600 baud, up to 30720 bytes; common on clones",
                "ATmegaBOOT (STK500), 57600 baud, tot 30720 bytes; veel op klonen",
                "ATmegaBOOT (STK500), 57600 Baud, bis 30720 Byte; häufig auf Nachbauten",
                "ATmegaBOOT (STK500), 57600\u00A0bauds, jusqu’à 30720\u00A0octets\u00A0; "
                "fréquent sur les clones",
                "ATmegaBOOT (STK500), 57600 baudios, hasta 30720 bytes; habitual en los clones"}},
              {{"Arduino Mega 2560", "Arduino Mega 2560", "Arduino Mega 2560", "Arduino Mega 2560",
                "Arduino Mega 2560"},
               {"Wiring (STK500v2), 115200 baud, up to 253952 bytes",
                "Wiring (STK500v2), 115200 baud, tot 253952 bytes",
                "Wiring (STK500v2), 115200 Baud, bis 253952 Byte",
                "Wiring (STK500v2), 115200\u00A0bauds, jusqu’à 253952\u00A0octets",
                "Wiring (STK500v2), 115200 baudios, hasta 253952 bytes"}},
              {{"Arduino Leonardo, Arduino Micro, Pro Micro",
                "Arduino Leonardo, Arduino Micro, Pro Micro",
                "Arduino Leonardo, Arduino Micro, Pro Micro",
                "Arduino Leonardo, Arduino Micro, Pro Micro",
                "Arduino Leonardo, Arduino Micro, Pro Micro"},
               {"Caterina (AVR109), 57600 baud, up to 28672 bytes; started with the 1200-baud "
                "touch",
                "Caterina (AVR109), 57600 baud, tot 28672 bytes; gestart door de poort op 1200 "
                "baud "
                "te openen",
                "Caterina (AVR109), 57600 Baud, bis 28672 Byte; gestartet mit dem "
                "1200-Baud-Touch",
                "Caterina (AVR109), 57600\u00A0bauds, jusqu’à 28672\u00A0octets\u00A0; lancé par "
                "une ouverture du port à 1200\u00A0bauds",
                "Caterina (AVR109), 57600 baudios, hasta 28672 bytes; se arranca abriendo el "
                "puerto a 1200 baudios"}},
          }),
          paragraph(
              {"The Uno, Nano and Mega are reset through DTR, as the Arduino IDE does. The "
               "Leonardo, Micro and Pro Micro have USB in the chip itself: Tarnwick opens their "
               "port briefly at 1200 baud, the board restarts into its bootloader and appears as "
               "a new serial port for a few seconds, and Tarnwick follows it there. The log "
               "names the new port.",
               "De Uno, Nano en Mega worden via DTR gereset, net als in de Arduino IDE. De "
               "Leonardo, Micro en Pro Micro hebben USB in de chip zelf: Tarnwick opent hun "
               "poort kort op 1200 baud, het board start opnieuw in zijn bootloader en verschijnt "
               "een paar seconden als nieuwe seriële poort, en Tarnwick volgt het daarheen. Het "
               "logboek noemt de nieuwe poort.",
               "Uno, Nano und Mega werden über DTR zurückgesetzt, wie in der Arduino IDE. "
               "Leonardo, Micro und Pro Micro haben USB im Chip selbst: Tarnwick öffnet ihre "
               "Schnittstelle kurz mit 1200 Baud, das Board startet in seinen Bootloader neu und "
               "erscheint für einige Sekunden als neue serielle Schnittstelle, und Tarnwick folgt "
               "ihm dorthin. Das Protokoll nennt die neue Schnittstelle.",
               "Les Uno, Nano et Mega sont réinitialisées par DTR, comme dans l’IDE Arduino. Les "
               "Leonardo, Micro et Pro Micro ont l’USB dans la puce même\u00A0: Tarnwick ouvre "
               "brièvement leur port à 1200\u00A0bauds, la carte redémarre dans son bootloader "
               "et apparaît quelques secondes comme un nouveau port série, où Tarnwick la suit. "
               "Le journal indique le nouveau port.",
               "Uno, Nano y Mega se reinician por DTR, igual que en el IDE de Arduino. Leonardo, "
               "Micro y Pro Micro llevan el USB en el propio chip: Tarnwick abre su puerto un "
               "momento a 1200 baudios, la placa se reinicia en su bootloader y aparece unos "
               "segundos como un puerto serie nuevo, y Tarnwick la sigue allí. El registro indica "
               "el puerto nuevo."}),
          paragraph(
              {"Before writing, Tarnwick reads the chip's signature and refuses a board whose "
               "chip does not match. With **Verify after writing** the sketch is read back and "
               "compared.",
               "Voor het schrijven leest Tarnwick de signatuur van de chip en weigert een board "
               "waarvan de chip niet klopt. Met **Controleren na schrijven** wordt de sketch "
               "teruggelezen en vergeleken.",
               "Vor dem Schreiben liest Tarnwick die Signatur des Chips und weist ein Board ab, "
               "dessen Chip nicht passt. Mit **Nach dem Schreiben prüfen** wird der Sketch "
               "zurückgelesen und verglichen.",
               "Avant d’écrire, Tarnwick lit la signature de la puce et refuse une carte dont la "
               "puce ne correspond pas. Avec **Vérifier après l’écriture**, le sketch est relu et "
               "comparé.",
               "Antes de escribir, Tarnwick lee la firma del chip y rechaza una placa cuyo chip "
               "no corresponda. Con **Verificar tras escribir** el sketch se vuelve a leer y se "
               "compara."}),
          screenshot("settings-arduino.png",
                     {"The settings of an Arduino product: bootloader, speed and room for the "
                      "sketch.",
                      "De instellingen van een Arduino-product: bootloader, snelheid en ruimte "
                      "voor de sketch.",
                      "Die Einstellungen eines Arduino-Produkts: Bootloader, Geschwindigkeit und "
                      "Platz für den Sketch.",
                      "Les réglages d’un produit Arduino\u00A0: bootloader, vitesse et place pour "
                      "le sketch.",
                      "Los ajustes de un producto Arduino: bootloader, velocidad y espacio para "
                      "el sketch."}),
          tip({"A Nano that does not answer often has the old bootloader: choose **Arduino Nano "
               "(old bootloader)** and flash again.",
               "Een Nano die niet antwoordt, heeft vaak de oude bootloader: kies **Arduino Nano "
               "(oude bootloader)** en flash opnieuw.",
               "Ein Nano, der nicht antwortet, hat oft den alten Bootloader: Wähle **Arduino "
               "Nano (alter Bootloader)** und flashe erneut.",
               "Une Nano qui ne répond pas a souvent l’ancien bootloader\u00A0: choisissez "
               "**Arduino Nano (ancien bootloader)** et relancez le flashage.",
               "Un Nano que no responde suele tener el bootloader antiguo: elige **Arduino Nano "
               "(bootloader antiguo)** y vuelve a flashear."}),
      }};
}

} // namespace tarnwick::L10n::Help::content
