// The help topics for a newcomer: what the program does, products, and the two board families.

#include "Localization/HelpContent.hpp"

namespace tarnwick::L10n::Help::content {

HelpTopic start() {
  return {
      "start",
      tr({"Getting started", "Aan de slag", "Erste Schritte", "Premiers pas", "Primeros pasos"}),
      "play.circle",
      {
          paragraph(
              {"Tarnwick puts firmware onto ESP32 and ESP8266 boards and onto Arduino boards "
               "over a USB cable. Everything one kind of board needs (the firmware files, their "
               "addresses and the settings) is kept together in a *product*.",
               "Tarnwick zet firmware op ESP32- en ESP8266-boards en op Arduino-boards, via een "
               "USB-kabel. Alles wat één soort board nodig heeft (de firmwarebestanden, hun "
               "adressen en de instellingen) staat bij elkaar in een *product*.",
               "Tarnwick spielt Firmware über ein USB-Kabel auf ESP32- und ESP8266-Boards und auf "
               "Arduino-Boards. Alles, was eine Board-Sorte braucht (die Firmware-Dateien, ihre "
               "Adressen und die Einstellungen), steht zusammen in einem *Produkt*.",
               "Tarnwick installe un firmware sur les cartes ESP32 et ESP8266 et sur les cartes "
               "Arduino, par un câble USB. Tout ce dont un type de carte a besoin (les fichiers "
               "du firmware, leurs adresses et les réglages) est réuni dans un *produit*.",
               "Tarnwick graba firmware en placas ESP32 y ESP8266 y en placas Arduino a través de "
               "un cable USB. Todo lo que necesita un tipo de placa (los archivos de firmware, sus "
               "direcciones y los ajustes) se guarda junto en un *producto*."}),
          heading({"Your first flash in four steps", "Je eerste flash in vier stappen",
                   "Das erste Flashen in vier Schritten", "Un premier flashage en quatre étapes",
                   "Tu primer flasheo en cuatro pasos"}),
          bullets({
              {"Connect the board with a USB cable that carries data. A newly connected "
               "board is chosen under **Serial port** by itself.",
               "Sluit het board aan met een USB-kabel die data doorgeeft. Een nieuw "
               "aangesloten board wordt vanzelf gekozen bij **Seriële poort**.",
               "Schließe das Board mit einem USB-Kabel an, das Daten überträgt. Ein neu "
               "angeschlossenes Board wird unter **Serielle Schnittstelle** von selbst gewählt.",
               "Branchez la carte avec un câble USB qui transmet les données. Une carte "
               "nouvellement branchée est choisie d’elle-même dans **Port série**.",
               "Conecta la placa con un cable USB que transmita datos. Una placa recién "
               "conectada se elige sola en **Puerto serie**."},
              {"Choose the target: an Arduino board, a particular ESP chip, or **ESP (detect "
               "automatically)** when any ESP chip will do.",
               "Kies het doel: een Arduino-board, een bepaalde ESP-chip, of **ESP "
               "(automatisch herkennen)** als elke ESP-chip goed is.",
               "Wähle das Ziel: ein Arduino-Board, einen bestimmten ESP-Chip oder **ESP "
               "(automatisch erkennen)**, wenn jeder ESP-Chip passt.",
               "Choisissez la cible\u00A0: une carte Arduino, une puce ESP précise, ou **ESP "
               "(détection automatique)** si n’importe quelle puce ESP convient.",
               "Elige el destino: una placa Arduino, un chip ESP concreto o **ESP (detectar "
               "automáticamente)** si sirve cualquier chip ESP."},
              {"Add the firmware: click **Files…** or drag the `.bin` or `.hex` files onto "
               "the list. A whole build folder of PlatformIO, the Arduino IDE or ESP-IDF works "
               "too (**Build Folder…**): each file is recognised and put at the right address.",
               "Voeg de firmware toe: klik op **Bestanden…** of sleep de `.bin`- of "
               "`.hex`-bestanden naar de lijst. Een hele buildmap van PlatformIO, de Arduino IDE "
               "of ESP-IDF kan ook (**Buildmap…**): elk bestand wordt herkend en op het juiste "
               "adres gezet.",
               "Füge die Firmware hinzu: Klicke auf **Dateien …** oder ziehe die `.bin`- oder "
               "`.hex`-Dateien in die Liste. Auch ein ganzer Build-Ordner von PlatformIO, der "
               "Arduino IDE oder ESP-IDF geht (**Build-Ordner …**): Jede Datei wird erkannt und an "
               "die richtige Adresse gelegt.",
               "Ajoutez le firmware\u00A0: cliquez sur **Fichiers…** ou glissez les fichiers "
               "`.bin` ou `.hex` dans la liste. Un dossier de compilation complet de PlatformIO, "
               "de "
               "l’IDE Arduino ou d’ESP-IDF convient aussi (**Dossier de compilation…**)\u00A0: "
               "chaque "
               "fichier est reconnu et placé à la bonne adresse.",
               "Añade el firmware: pulsa **Archivos…** o arrastra los archivos `.bin` o "
               "`.hex` a la lista. También sirve una carpeta de compilación entera de PlatformIO, "
               "el IDE de Arduino o ESP-IDF (**Carpeta de compilación…**): cada archivo se "
               "reconoce y se coloca en la dirección correcta."},
              {"Press **Flash** (Ctrl+R). The status line shows each step; when it is done the "
               "board restarts with the new firmware.",
               "Druk op **Flashen** (Ctrl+R). De statusregel toont elke stap; daarna start het "
               "board opnieuw op met de nieuwe firmware.",
               "Drücke auf **Flashen** (Strg+R). Die Statuszeile zeigt jeden Schritt; am Ende "
               "startet das Board mit der neuen Firmware neu.",
               "Appuyez sur **Flashage** (Ctrl+R). La ligne d’état affiche chaque étape\u00A0; à "
               "la fin, la carte redémarre avec le nouveau firmware.",
               "Pulsa **Flasheo** (Control+R). La línea de estado muestra cada paso; al terminar, "
               "la "
               "placa se reinicia con el firmware nuevo."},
          }),
          tip({"No board at hand? **Try with a Simulated Board** in the **Help** menu plugs in a "
               "board that Tarnwick simulates itself, as if it were connected over USB. Without "
               "firmware yet it also opens a demo product, so **Flash** works right away. The "
               "same menu pulls the board out again.",
               "Geen board bij de hand? **Uitproberen met een gesimuleerd board** in het menu "
               "**Help** sluit een board aan dat Tarnwick zelf simuleert, alsof het via USB "
               "verbonden is. Is er nog geen firmware, dan opent het ook een demoproduct, zodat "
               "**Flashen** meteen werkt. In hetzelfde menu koppel je het board weer los.",
               "Kein Board zur Hand? **Mit simuliertem Board ausprobieren** im Menü **Hilfe** "
               "schließt ein Board an, das Tarnwick selbst simuliert, als wäre es per USB "
               "verbunden. Gibt es noch keine Firmware, öffnet es dazu ein Demo-Produkt, sodass "
               "**Flashen** sofort funktioniert. Im selben Menü ziehst du das Board wieder ab.",
               "Pas de carte sous la main\u00A0? **Essayer avec une carte simulée** dans le menu "
               "**Aide** branche une carte que Tarnwick simule lui-même, comme si elle était "
               "reliée en USB. S’il n’y a pas encore de firmware, un produit de démonstration "
               "s’ouvre aussi, et **Flashage** fonctionne tout de suite. Le même menu permet de "
               "la débrancher.",
               "¿No tienes una placa a mano? **Probar con una placa simulada** en el menú "
               "**Ayuda** conecta una placa que simula el propio Tarnwick, como si estuviera "
               "conectada por USB. Si aún no hay firmware, también abre un producto de "
               "demostración, así que **Flasheo** funciona enseguida. En el mismo menú la "
               "desconectas de nuevo."}),
          screenshot("window-empty.png", {"The window before any firmware is added.",
                                          "Het venster voordat er firmware is toegevoegd.",
                                          "Das Fenster, bevor Firmware hinzugefügt wurde.",
                                          "La fenêtre avant l’ajout d’un firmware.",
                                          "La ventana antes de añadir firmware."}),
          screenshot("window-product.png",
                     {"A product with bootloader, partition table and application, ready to "
                      "flash.",
                      "Een product met bootloader, partitietabel en applicatie, klaar om te "
                      "flashen.",
                      "Ein Produkt mit Bootloader, Partitionstabelle und Anwendung, bereit zum "
                      "Flashen.",
                      "Un produit avec bootloader, table de partitions et application, prêt à "
                      "être flashé.",
                      "Un producto con bootloader, tabla de particiones y aplicación, listo para "
                      "flashear."}),
          heading({"While flashing", "Tijdens het flashen", "Während des Flashens",
                   "Pendant le flashage", "Durante el flasheo"}),
          paragraph(
              {"The progress bar shows how far the run has come. **Stop** (Ctrl+R) ends it, but "
               "a board stopped halfway does not start until it is flashed again.",
               "De voortgangsbalk laat zien hoe ver het flashen is. **Stoppen** (Ctrl+R) breekt "
               "het "
               "af, maar een board dat halverwege gestopt is, start pas weer na opnieuw flashen.",
               "Der Fortschrittsbalken zeigt, wie weit der Vorgang ist. **Stoppen** (Strg+R) "
               "bricht ihn ab, aber ein halb beschriebenes Board startet erst wieder, wenn es "
               "erneut geflasht wurde.",
               "La barre de progression indique où en est le flashage. **Arrêter** (Ctrl+R) "
               "l’interrompt, mais une carte arrêtée en cours de route ne démarre plus tant "
               "qu’elle n’a pas été reflashée.",
               "La barra de progreso muestra cuánto falta. **Detener** (Control+R) lo interrumpe, "
               "pero una placa detenida a medias no arranca hasta que se vuelve a flashear."}),
          screenshot("window-flashing.png",
                     {"Flashing: the current step and the progress.",
                      "Flashen: de huidige stap en de voortgang.",
                      "Beim Flashen: der aktuelle Schritt und der Fortschritt.",
                      "Flashage en cours\u00A0: l’étape actuelle et la progression.",
                      "Flasheo en curso: el paso actual y el progreso."}),
          paragraph(
              {"After a successful run the log names the chip, its MAC address (ESP), the number "
               "of bytes and the time it took. **Show Log** (Ctrl+L) opens the log; it can be "
               "saved as a text file.",
               "Na een geslaagde flash noemt het logboek de chip, het MAC-adres (ESP), het aantal "
               "bytes en de duur. **Logboek tonen** (Ctrl+L) opent het logboek; je kunt het als "
               "tekstbestand bewaren.",
               "Nach einem erfolgreichen Durchlauf nennt das Protokoll den Chip, seine "
               "MAC-Adresse (ESP), die Anzahl der Bytes und die Dauer. **Protokoll einblenden** "
               "(Strg+L) öffnet es; es lässt sich als Textdatei speichern.",
               "Après un flashage réussi, le journal indique la puce, son adresse MAC (ESP), le "
               "nombre d’octets et la durée. **Afficher le journal** (Ctrl+L) l’ouvre\u00A0; il "
               "peut être enregistré comme fichier texte.",
               "Tras un flasheo correcto, el registro indica el chip, su dirección MAC (ESP), el "
               "número de bytes y el tiempo empleado. **Mostrar registro** (Control+L) lo abre; se "
               "puede guardar como archivo de texto."}),
          screenshot("window-success.png", {"The board has been flashed and verified.",
                                            "Het board is geflasht en gecontroleerd.",
                                            "Das Board wurde geflasht und geprüft.",
                                            "La carte a été flashée et vérifiée.",
                                            "La placa se ha flasheado y verificado."}),
          tip({"Tarnwick works out the addresses itself. Check the **Location and checks** column: "
               "it shows the partition that holds each file, and a warning or error when "
               "something does not fit.",
               "Tarnwick bepaalt de adressen zelf. Kijk in de kolom **Locatie en controles**: "
               "daar staat de partitie van elk bestand, en een waarschuwing of fout als iets niet "
               "past.",
               "Tarnwick ermittelt die Adressen selbst. Sieh in die Spalte **Ort und Prüfungen**: "
               "Sie zeigt die Partition jeder Datei und eine Warnung oder einen Fehler, wenn "
               "etwas nicht passt.",
               "Tarnwick détermine lui-même les adresses. Regardez la colonne **Emplacement et "
               "contrôles**\u00A0: elle indique la partition de chaque fichier, et un "
               "avertissement ou une erreur quand quelque chose ne va pas.",
               "Tarnwick calcula las direcciones por sí mismo. Mira la columna **Ubicación y "
               "comprobaciones**: muestra la partición de cada archivo y un aviso o un error "
               "cuando algo no encaja."}),
      }};
}

HelpTopic products() {
  return {
      "products",
      tr({"Products", "Producten", "Produkte", "Produits", "Productos"}),
      "shippingbox",
      {
          paragraph(
              {"A product holds everything needed to flash one kind of board: the target chip or "
               "board, a copy of every firmware file with its address and role, the flashing "
               "settings (speed, reset method, verification, flash mode and size, clearing of the "
               "OTA data) and your notes.",
               "Een product bevat alles om één soort board te flashen: de doelchip of het "
               "doelboard, een kopie van elk firmwarebestand met adres en rol, de "
               "flashinstellingen (snelheid, resetmethode, controle, flashmodus en -grootte, "
               "wissen van de OTA-gegevens) en je notities.",
               "Ein Produkt enthält alles, um eine Board-Sorte zu flashen: den Ziel-Chip oder "
               "das Ziel-Board, eine Kopie jeder Firmware-Datei mit Adresse und Rolle, die "
               "Flash-Einstellungen (Geschwindigkeit, Reset-Methode, Prüfung, Flash-Modus und "
               "-Größe, Löschen der OTA-Daten) und deine Notizen.",
               "Un produit contient tout ce qu’il faut pour flasher un type de carte\u00A0: la "
               "puce ou la carte cible, une copie de chaque fichier de firmware avec son adresse "
               "et son rôle, les réglages de flashage (vitesse, méthode de redémarrage, "
               "vérification, mode et taille de la flash, effacement des données OTA) et vos "
               "notes.",
               "Un producto contiene todo lo necesario para flashear un tipo de placa: el chip o "
               "la placa de destino, una copia de cada archivo de firmware con su dirección y su "
               "función, los ajustes de flasheo (velocidad, método de reinicio, verificación, "
               "modo y tamaño de la flash, borrado de los datos OTA) y tus notas."}),
          heading({"The product file", "Het productbestand", "Die Produktdatei",
                   "Le fichier produit", "El archivo de producto"}),
          paragraph(
              {"**Save Product** (Ctrl+S) writes it as one file with the extension `.twflash`. "
               "The firmware files are inside, each with its SHA-256 checksum, so the file can be "
               "copied to another computer and a damaged or changed file is noticed when it is "
               "opened.",
               "**Product opslaan** (Ctrl+S) schrijft het als één bestand met de extensie "
               "`.twflash`. De firmwarebestanden zitten erin, elk met zijn SHA-256-controlesom; "
               "zo kun je het bestand naar een andere computer kopiëren en valt een beschadigd "
               "of gewijzigd bestand bij het openen op.",
               "**Produkt speichern** (Strg+S) schreibt es als eine Datei mit der Endung "
               "`.twflash`. Die Firmware-Dateien stecken darin, jede mit ihrer "
               "SHA-256-Prüfsumme: So lässt sich die Datei auf einen anderen Rechner kopieren, "
               "und eine beschädigte oder veränderte Datei fällt beim Öffnen auf.",
               "**Enregistrer le produit** (Ctrl+S) l’écrit dans un seul fichier d’extension "
               "`.twflash`. Les fichiers de firmware y sont inclus, chacun avec sa somme de "
               "contrôle SHA-256\u00A0: le fichier peut ainsi être copié sur un autre ordinateur, "
               "et un fichier endommagé ou modifié est détecté à l’ouverture.",
               "**Guardar producto** (Control+S) lo escribe en un solo archivo con la extensión "
               "`.twflash`. Los archivos de firmware van dentro, cada uno con su suma SHA-256, "
               "así que el archivo se puede copiar a otro ordenador y un archivo dañado o "
               "modificado se detecta al abrirlo."}),
          bullets({
              {"Inside, a product file is a ZIP archive holding `product.json` and a folder "
               "`files`. A folder named `….twflash` with the same contents opens just as "
               "well.",
               "Van binnen is een productbestand een ZIP-archief met `product.json` en een map "
               "`files`. Een map met de naam `….twflash` en dezelfde inhoud opent net zo "
               "goed.",
               "Innen ist eine Produktdatei ein ZIP-Archiv mit `product.json` und einem Ordner "
               "`files`. Ein Ordner namens `….twflash` mit demselben Inhalt öffnet sich "
               "genauso.",
               "À l’intérieur, un fichier produit est une archive ZIP contenant `product.json` "
               "et un dossier `files`. Un dossier nommé `….twflash` au même contenu s’ouvre "
               "tout aussi "
               "bien.",
               "Por dentro, un archivo de producto es un archivo ZIP con `product.json` y una "
               "carpeta `files`. Una carpeta llamada `….twflash` con el mismo contenido se "
               "abre igual de bien."},
              {"A product file may come from anyone, so the app opens only what a real product "
               "can be: at most 256 files, none larger than 128 MiB (the largest flash a "
               "supported chip addresses) and 128 MiB of firmware in all, a `product.json` of "
               "at most 1 MiB nested no deeper than 16 levels, and every file exactly as large "
               "as the product says. These bounds are the app's own; anything beyond them is "
               "refused with the reason before it is read.",
               "Een productbestand kan van iedereen komen, dus de app opent alleen wat een echt "
               "product kan zijn: hoogstens 256 bestanden, geen groter dan 128 MiB (het grootste "
               "flashgeheugen dat een ondersteunde chip adresseert) en samen hoogstens 128 MiB "
               "firmware, een `product.json` van hoogstens 1 MiB en niet dieper genest dan 16 "
               "niveaus, en elk bestand precies zo groot als het product zegt. Deze grenzen "
               "stelt de app zelf; wat erbuiten valt, wordt met de reden geweigerd voordat het "
               "wordt gelezen.",
               "Eine Produktdatei kann von überall kommen, daher öffnet die App nur, was ein "
               "echtes Produkt sein kann: höchstens 256 Dateien, keine größer als 128 MiB (der "
               "größte Flash-Speicher, den ein unterstützter Chip adressiert) und zusammen "
               "höchstens 128 MiB Firmware, eine `product.json` von höchstens 1 MiB, nicht "
               "tiefer als 16 Ebenen verschachtelt, und jede Datei genau so groß, wie das "
               "Produkt angibt. Diese Grenzen setzt die App selbst; was darüber hinausgeht, "
               "wird mit dem Grund abgelehnt, bevor es gelesen wird.",
               "Un fichier produit peut venir de n’importe qui\u00A0: l’app n’ouvre donc que ce "
               "qu’un vrai produit peut être, soit 256 fichiers au plus, aucun de plus de "
               "128 Mio (la plus grande mémoire flash qu’adresse une puce prise en charge) et "
               "128 Mio de firmware au total, un `product.json` de 1 Mio au plus, imbriqué sur "
               "16 niveaux au plus, et chaque fichier exactement de la taille indiquée par le "
               "produit. Ces limites sont propres à l’app\u00A0; ce qui les dépasse est refusé, "
               "avec "
               "la raison, avant d’être lu.",
               "Un archivo de producto puede venir de cualquiera, así que la app solo abre lo "
               "que puede ser un producto real: como mucho 256 archivos, ninguno de más de "
               "128 MiB (la mayor memoria flash que direcciona un chip compatible) y 128 MiB de "
               "firmware en total, un `product.json` de como mucho 1 MiB anidado en 16 niveles "
               "como máximo, y cada archivo exactamente del tamaño que indica el producto. Estos "
               "límites son propios de la app; lo que los supera se rechaza, con el motivo, "
               "antes de leerlo."},
              {"**Open Product…** (Ctrl+O), a double click in the file manager or dragging the "
               "file onto the list opens it.",
               "Je opent het met **Product openen…** (Ctrl+O), door te dubbelklikken in het "
               "bestandsbeheer of door het naar de lijst te slepen.",
               "Geöffnet wird es mit **Produkt öffnen …** (Strg+O), per Doppelklick in der "
               "Dateiverwaltung oder indem du die Datei in die Liste ziehst.",
               "On l’ouvre avec **Ouvrir un produit…** (Ctrl+O), par un double-clic dans le "
               "gestionnaire de fichiers ou en le glissant dans la liste.",
               "Se abre con **Abrir producto…** (Control+O), con un doble clic en el gestor de "
               "archivos o arrastrándolo a la lista."},
              {"The work in progress is saved by itself and is back at the next start, even "
               "when it was never saved as a product.",
               "Je werk wordt vanzelf bewaard en is er bij de volgende start weer, ook als je "
               "het nooit als product hebt opgeslagen.",
               "Die laufende Arbeit wird von selbst gespeichert und ist beim nächsten Start wieder "
               "da, auch wenn sie nie als Produkt gespeichert wurde.",
               "Le travail en cours est enregistré automatiquement et revient au prochain "
               "démarrage, même s’il n’a jamais été enregistré comme produit.",
               "El trabajo en curso se guarda solo y vuelve a estar ahí en el siguiente inicio, "
               "aunque nunca se haya guardado como producto."},
          }),
          heading({"Files and their kinds", "Bestanden en hun soort", "Dateien und ihre Art",
                   "Les fichiers et leur type", "Los archivos y su tipo"}),
          paragraph(
              {"Each file has a kind (bootloader, partition table, OTA data, application, file "
               "system or other), an address and a checkbox: only checked files are flashed. "
               "Addresses are hexadecimal; type `0x10000` or simply `10000`. **Del** removes "
               "the selected files.",
               "Elk bestand heeft een soort (bootloader, partitietabel, OTA-gegevens, applicatie, "
               "bestandssysteem of overig), een adres en een vinkje: alleen aangevinkte bestanden "
               "worden geflasht. Adressen zijn hexadecimaal; typ `0x10000` of gewoon `10000`. "
               "**Del** verwijdert de geselecteerde bestanden.",
               "Jede Datei hat eine Art (Bootloader, Partitionstabelle, OTA-Daten, Anwendung, "
               "Dateisystem oder Sonstiges), eine Adresse und ein Häkchen: Nur angehakte Dateien "
               "werden geflasht. Adressen sind hexadezimal; tippe `0x10000` oder einfach "
               "`10000`. **Entf** entfernt die ausgewählten Dateien.",
               "Chaque fichier a un type (bootloader, table de partitions, données OTA, "
               "application, système de fichiers ou autre), une adresse et une case à "
               "cocher\u00A0: seuls les fichiers cochés sont flashés. Les adresses sont en "
               "hexadécimal\u00A0; tapez `0x10000` ou simplement `10000`. **Suppr** retire les "
               "fichiers sélectionnés.",
               "Cada archivo tiene un tipo (bootloader, tabla de particiones, datos OTA, "
               "aplicación, sistema de archivos u otro), una dirección y una casilla: solo se "
               "flashean los archivos marcados. Las direcciones van en hexadecimal; escribe "
               "`0x10000` o simplemente `10000`. **Suprimir** quita los archivos seleccionados."}),
          tip({"Write the hardware revision or where the source code lives into **Notes**: they "
               "travel with the product file.",
               "Zet de hardwarerevisie of de plek van de broncode in **Notities**: die reizen "
               "mee in het productbestand.",
               "Trage die Hardware-Revision oder den Ort des Quellcodes unter **Notizen** ein: "
               "Sie reisen in der Produktdatei mit.",
               "Notez la révision matérielle ou l’emplacement du code source dans **Notes**\u00A0: "
               "elles voyagent avec le fichier produit.",
               "Apunta la revisión del hardware o dónde está el código fuente en **Notas**: "
               "viajan con el archivo de producto."}),
      }};
}

} // namespace tarnwick::L10n::Help::content
