#include "Localization/CliTexts.hpp"

#include "Localization/MainWindowTexts.hpp"
#include "Localization/Text.hpp"

namespace tarnwick::L10n::Cli {

namespace {
std::string around(const Texts& head, const std::string& value, const Texts& tail) {
  return tr(head) + value + tr(tail);
}
} // namespace

std::string unknownCommand(const std::string& word) {
  return around({"Unknown command “", "Onbekende opdracht ‘", "Unbekannter Befehl „",
                 "Commande inconnue « ", "Orden desconocida «"},
                word, {"”.", "’.", "“.", " ».", "»."});
}
std::string unknownOption(const std::string& option) {
  return around({"Unknown option ", "Onbekende optie ", "Unbekannte Option ", "Option inconnue ",
                 "Opción desconocida "},
                option, {".", ".", ".", ".", "."});
}
std::string missingValue(const std::string& option) {
  return around({"", "", "", "", "Falta el valor de "}, option,
                {" needs a value.", " heeft een waarde nodig.", " braucht einen Wert.",
                 " attend une valeur.", "."});
}
std::string unexpectedValue(const std::string& option) {
  return around({"", "", "", "", ""}, option,
                {" takes no value.", " neemt geen waarde.", " nimmt keinen Wert.",
                 " ne prend pas de valeur.", " no admite ningún valor."});
}
std::string badValue(const std::string& option, const std::string& value) {
  return around({"“", "‘", "„", "« ", "«"}, value,
                {"” is not a valid value for ", "’ is geen geldige waarde voor ",
                 "“ ist kein gültiger Wert für ", " » n’est pas une valeur valide pour ",
                 "» no es un valor válido para "}) +
         option + ".";
}
std::string missingOption(const std::string& option) {
  return around(
      {"", "", "", "L’option ", "Falta la opción "}, option,
      {" is required.", " is verplicht.", " ist erforderlich.", " est obligatoire.", "."});
}
std::string missingInput() {
  return tr(
      {"Name a product file, or firmware files or a build folder.",
       "Geef een productbestand op, of firmwarebestanden of een buildmap.",
       "Gib eine Produktdatei an, oder Firmware-Dateien oder einen Build-Ordner.",
       "Indiquez un fichier produit, ou des fichiers firmware ou un dossier de build.",
       "Indica un archivo de producto, o archivos de firmware o una carpeta de compilación."});
}
std::string oneProductFile() {
  return tr({"Name exactly one product file.", "Geef precies één productbestand op.",
             "Gib genau eine Produktdatei an.", "Indiquez un seul fichier produit.",
             "Indica exactamente un archivo de producto."});
}
std::string noInputs() {
  return tr({"This command takes no files.", "Deze opdracht neemt geen bestanden.",
             "Dieser Befehl nimmt keine Dateien.", "Cette commande ne prend aucun fichier.",
             "Esta orden no admite archivos."});
}
std::string missingCommand() {
  return tr({"Name a command: flash, pack, check, info or ports.",
             "Geef een opdracht op: flash, pack, check, info of ports.",
             "Gib einen Befehl an: flash, pack, check, info oder ports.",
             "Indiquez une commande : flash, pack, check, info ou ports.",
             "Indica una orden: flash, pack, check, info o ports."});
}
std::string didYouMean(const std::string& word) {
  return around({" Did you mean ", " Bedoelde je ", " Meintest du ", " Vouliez-vous dire ",
                 " ¿Quisiste decir "},
                word, {"?", "?", "?", " ?", "?"});
}
namespace {
std::string joined(const std::vector<std::string>& values) {
  std::string list;
  for (const auto& value : values)
    list += (list.empty() ? "" : ", ") + value;
  return list;
}
} // namespace
std::string validValues(const std::vector<std::string>& values) {
  return around({"Valid values: ", "Geldige waarden: ", "Gültige Werte: ", "Valeurs valides : ",
                 "Valores válidos: "},
                joined(values), {".", ".", ".", ".", "."});
}
std::string unknownTarget(const std::string& text, const std::vector<std::string>& valid) {
  return around({"Unknown target ", "Onbekend doel ", "Unbekanntes Ziel ", "Cible inconnue ",
                 "Destino desconocido "},
                text,
                {". Valid targets: ", ". Geldige doelen: ", ". Gültige Ziele: ",
                 ". Cibles valides : ", ". Destinos válidos: "}) +
         joined(valid) + ".";
}
std::string espOnly(const std::string& option) {
  return option + tr({" applies to ESP boards only.", " geldt alleen voor ESP-boards.",
                      " gilt nur für ESP-Boards.", " ne s’applique qu’aux cartes ESP.",
                      " solo se aplica a placas ESP."});
}
std::string targetWithProduct() {
  return tr({"A product file names its own target; leave out --target.",
             "Een productbestand noemt zijn eigen doel; laat --target weg.",
             "Eine Produktdatei nennt ihr eigenes Ziel; lass --target weg.",
             "Un fichier produit indique sa propre cible ; retirez --target.",
             "Un archivo de producto indica su propio destino; quita --target."});
}
std::string noSuchFile() {
  return tr({"No such file or directory.", "Bestand of map bestaat niet.",
             "Datei oder Verzeichnis nicht gefunden.", "Aucun fichier ou dossier de ce nom.",
             "No existe el archivo o el directorio."});
}
std::string alreadyExists(const std::string& file) {
  return file + tr({" already exists. Add --force to replace it.",
                    " bestaat al. Voeg --force toe om het te vervangen.",
                    " existiert bereits. Mit --force wird es ersetzt.",
                    " existe déjà. Ajoutez --force pour le remplacer.",
                    " ya existe. Añade --force para sustituirlo."});
}
std::string notAProductToReplace(const std::string& file) {
  return file + tr({" is not a product; --force replaces only a product. Nothing was changed: "
                    "choose another name with --out.",
                    " is geen product; --force vervangt alleen een product. Er is niets "
                    "gewijzigd: kies een andere naam met --out.",
                    " ist kein Produkt; --force ersetzt nur ein Produkt. Es wurde nichts "
                    "geändert: Wähle mit --out einen anderen Namen.",
                    " n’est pas un produit ; --force ne remplace qu’un produit. Rien n’a été "
                    "modifié : choisissez un autre nom avec --out.",
                    " no es un producto; --force solo sustituye un producto. No se ha cambiado "
                    "nada: elige otro nombre con --out."});
}
std::string labelled(const std::string& label) { return label + tr({":", ":", ":", " :", ":"}); }
std::string invalidNetworkPort(const std::string& name) {
  switch (currentLanguage()) {
  case Language::en:
    return "'" + name +
           "' is not a valid network port: write rfc2217://HOST:PORT (an IPv6 "
           "address in brackets, a port from 1 to 65535).";
  case Language::nl:
    return "'" + name +
           "' is geen geldige netwerkpoort: schrijf rfc2217://HOST:POORT (een "
           "IPv6-adres tussen haken, een poort van 1 tot 65535).";
  case Language::de:
    return "„" + name +
           "“ ist kein gültiger Netzwerkport: Schreibe rfc2217://HOST:PORT (eine "
           "IPv6-Adresse in eckigen Klammern, einen Port von 1 bis 65535).";
  case Language::fr:
    return "« " + name +
           " » n’est pas un port réseau valide : écrivez rfc2217://HÔTE:PORT (une "
           "adresse IPv6 entre crochets, un port de 1 à 65535).";
  case Language::es:
    return "«" + name +
           "» no es un puerto de red válido: escribe rfc2217://HOST:PUERTO (una "
           "dirección IPv6 entre corchetes, un puerto de 1 a 65535).";
  }
  return {};
}

std::string noUSBPort() {
  return tr({"No USB board found. Connect the board with a cable that carries data, or name the "
             "port with --port.",
             "Geen USB-board gevonden. Sluit het board aan met een kabel die data doorgeeft, of "
             "geef de poort op met --port.",
             "Kein USB-Board gefunden. Schließe das Board mit einem Datenkabel an oder gib die "
             "Schnittstelle mit --port an.",
             "Aucune carte USB trouvée. Branchez la carte avec un câble qui transmet les données, "
             "ou indiquez le port avec --port.",
             "No se ha encontrado ninguna placa USB. Conecta la placa con un cable de datos o "
             "indica el puerto con --port."});
}
std::string severalPorts(const std::vector<std::string>& ports) {
  std::string list;
  for (const auto& port : ports)
    list += (list.empty() ? "" : ", ") + port;
  return around({"Several serial ports found (", "Meerdere seriële poorten gevonden (",
                 "Mehrere serielle Schnittstellen gefunden (", "Plusieurs ports série trouvés (",
                 "Se han encontrado varios puertos serie ("},
                list,
                {"). Choose one with --port.", "). Kies er een met --port.",
                 "). Wähle eine mit --port.", "). Choisissez-en un avec --port.",
                 "). Elige uno con --port."});
}
// The same words as the port picker's empty list.
std::string noPortsFound() { return Header::noPortsFound(); }
std::string packed(const std::string& file, int count) {
  return around({"Saved ", "", "", "", "Guardado "}, file,
                {" with ", " opgeslagen met ", " mit ", " enregistré avec ", " con "}) +
         Panel::fileCount(count) + tr({".", ".", " gespeichert.", ".", "."});
}
std::string noFindings() {
  return tr({"No problems found.", "Geen problemen gevonden.", "Keine Probleme gefunden.",
             "Aucun problème trouvé.", "No se han encontrado problemas."});
}
std::string warningPrefix() {
  return tr({"Warning", "Waarschuwing", "Warnung", "Avertissement", "Aviso"});
}
std::string errorPrefix() { return tr({"Error", "Fout", "Fehler", "Erreur", "Error"}); }
std::string yes() { return tr({"yes", "ja", "ja", "oui", "sí"}); }
std::string no() { return tr({"no", "nee", "nein", "non", "no"}); }
std::string seeHelp(const std::string& command) {
  const std::string call = "tarnwick-cli " + (command.empty() ? "" : command + " ") + "--help";
  return around({"See “", "Zie ‘", "Siehe „", "Voir « ", "Consulta «"}, call,
                {"”.", "’.", "“.", " ».", "»."});
}

std::string helpOverview() {
  return tr({R"(Usage: tarnwick-cli COMMAND [options] …

Flashes ESP32, ESP8266 and Arduino AVR boards over a USB serial port, with the same
product files (.twflash) as the Tarnwick app.

Commands:
  flash   flash a product file, or firmware files or a build folder
  pack    save firmware files or a build folder as a product file
  check   list the problems of a product file
  info    show what a product file holds
  ports   list the serial ports
  station flash every board plugged in, several at once

“tarnwick-cli COMMAND --help” describes a command; “tarnwick-cli --version” gives the version.
Exit status: 0 success, 1 the flash run failed, 2 wrong usage or unusable input.
)",
             R"(Gebruik: tarnwick-cli OPDRACHT [opties] …

Flasht ESP32-, ESP8266- en Arduino-AVR-boards via een USB-seriële poort, met dezelfde
productbestanden (.twflash) als de app Tarnwick.

Opdrachten:
  flash   een productbestand, firmwarebestanden of een buildmap flashen
  pack    firmwarebestanden of een buildmap als productbestand opslaan
  check   de problemen van een productbestand tonen
  info    tonen wat een productbestand bevat
  ports   de seriële poorten tonen
  station elk aangesloten board flashen, meerdere tegelijk

‘tarnwick-cli OPDRACHT --help’ beschrijft een opdracht; ‘tarnwick-cli --version’ geeft de versie.
Afsluitstatus: 0 gelukt, 1 flashen mislukt, 2 verkeerd gebruik of onbruikbare invoer.
)",
             R"(Aufruf: tarnwick-cli BEFEHL [Optionen] …

Flasht ESP32-, ESP8266- und Arduino-AVR-Boards über eine serielle USB-Schnittstelle, mit
denselben Produktdateien (.twflash) wie die App Tarnwick.

Befehle:
  flash   eine Produktdatei, Firmware-Dateien oder einen Build-Ordner flashen
  pack    Firmware-Dateien oder einen Build-Ordner als Produktdatei speichern
  check   die Probleme einer Produktdatei auflisten
  info    zeigen, was eine Produktdatei enthält
  ports   die seriellen Schnittstellen auflisten
  station jedes angeschlossene Board flashen, mehrere gleichzeitig

„tarnwick-cli BEFEHL --help“ beschreibt einen Befehl, „tarnwick-cli --version“ nennt die Version.
Exit-Status: 0 Erfolg, 1 Flashen fehlgeschlagen, 2 falscher Aufruf oder unbrauchbare Eingabe.
)",
             R"(Utilisation : tarnwick-cli COMMANDE [options] …

Flashe les cartes ESP32, ESP8266 et Arduino AVR par un port série USB, avec les mêmes
fichiers produit (.twflash) que l’app Tarnwick.

Commandes :
  flash   flasher un fichier produit, des fichiers firmware ou un dossier de build
  pack    enregistrer des fichiers firmware ou un dossier de build comme fichier produit
  check   lister les problèmes d’un fichier produit
  info    montrer le contenu d’un fichier produit
  ports   lister les ports série
  station flasher chaque carte branchée, plusieurs à la fois

« tarnwick-cli COMMANDE --help » décrit une commande ; « tarnwick-cli --version » donne la version.
Code de sortie : 0 réussite, 1 échec du flashage, 2 mauvaise utilisation ou entrée inutilisable.
)",
             R"(Uso: tarnwick-cli ORDEN [opciones] …

Flashea placas ESP32, ESP8266 y Arduino AVR por un puerto serie USB, con los mismos
archivos de producto (.twflash) que la app Tarnwick.

Órdenes:
  flash   flashear un archivo de producto, archivos de firmware o una carpeta de compilación
  pack    guardar archivos de firmware o una carpeta de compilación como archivo de producto
  check   mostrar los problemas de un archivo de producto
  info    mostrar lo que contiene un archivo de producto
  ports   mostrar los puertos serie
  station flashear cada placa que se conecte, varias a la vez

«tarnwick-cli ORDEN --help» describe una orden; «tarnwick-cli --version» muestra la versión.
Código de salida: 0 éxito, 1 el flasheo falló, 2 uso incorrecto o entrada inservible.
)"});
}

std::string helpFlash() {
  return tr({R"(Usage: tarnwick-cli flash [options] PRODUCT.twflash
       tarnwick-cli flash [options] --target TARGET FILE_OR_FOLDER…

Flashes one board. With --target the product is built on the spot: one folder is read as a
build folder (PlatformIO, Arduino IDE, ESP-IDF), otherwise the files are added one by one.
A product file names its own target.

Options:
  -p, --port PORT        serial port (default: the only USB serial port present), or
                         rfc2217://HOST:PORT for a board on another computer
  -t, --target TARGET    esp:auto, esp:esp32, esp:esp32s3, …, avr:uno, avr:mega2560, …
  -b, --baud N           speed while flashing (ESP; 9600 to 3000000)
      --reset MODE       auto, classic, usbJTAG or manual (ESP)
      --no-verify        do not verify after writing
      --flash-mode MODE  keep, qio, qout, dio or dout (ESP)
      --flash-size SIZE  keep, 1MB, 2MB, 4MB, 8MB or 16MB (ESP)
      --keep-otadata     do not erase the OTA selection (ESP)
      --test-device      also accept pseudo-terminals (simulated boards)
Ctrl-C stops the run and restarts the board.
)",
             R"(Gebruik: tarnwick-cli flash [opties] PRODUCT.twflash
         tarnwick-cli flash [opties] --target DOEL BESTAND_OF_MAP…

Flasht één board. Met --target wordt het product ter plekke samengesteld: één map wordt als
buildmap gelezen (PlatformIO, Arduino IDE, ESP-IDF), anders worden de bestanden één voor één
toegevoegd. Een productbestand noemt zijn eigen doel.

Opties:
  -p, --port POORT        seriële poort (standaard: de enige aanwezige USB-seriële poort),
                          of rfc2217://HOST:POORT voor een board aan een andere computer
  -t, --target DOEL       esp:auto, esp:esp32, esp:esp32s3, …, avr:uno, avr:mega2560, …
  -b, --baud N            snelheid tijdens flashen (ESP; 9600 tot 3000000)
      --reset MODUS       auto, classic, usbJTAG of manual (ESP)
      --no-verify         niet controleren na schrijven
      --flash-mode MODUS  keep, qio, qout, dio of dout (ESP)
      --flash-size MAAT   keep, 1MB, 2MB, 4MB, 8MB of 16MB (ESP)
      --keep-otadata      de OTA-keuze niet wissen (ESP)
      --test-device       ook pseudoterminals accepteren (gesimuleerde boards)
Ctrl-C stopt het flashen en herstart het board.
)",
             R"(Aufruf: tarnwick-cli flash [Optionen] PRODUKT.twflash
        tarnwick-cli flash [Optionen] --target ZIEL DATEI_ODER_ORDNER…

Flasht ein Board. Mit --target wird das Produkt an Ort und Stelle erstellt: ein einzelner
Ordner wird als Build-Ordner gelesen (PlatformIO, Arduino IDE, ESP-IDF), sonst werden die
Dateien nacheinander hinzugefügt. Eine Produktdatei nennt ihr eigenes Ziel.

Optionen:
  -p, --port PORT          serielle Schnittstelle (Standard: die einzige vorhandene USB-Schnittstelle)
                           oder rfc2217://HOST:PORT für ein Board an einem anderen Rechner
  -t, --target ZIEL        esp:auto, esp:esp32, esp:esp32s3, …, avr:uno, avr:mega2560, …
  -b, --baud N             Geschwindigkeit beim Flashen (ESP; 9600 bis 3000000)
      --reset MODUS        auto, classic, usbJTAG oder manual (ESP)
      --no-verify          nach dem Schreiben nicht prüfen
      --flash-mode MODUS   keep, qio, qout, dio oder dout (ESP)
      --flash-size GRÖSSE  keep, 1MB, 2MB, 4MB, 8MB oder 16MB (ESP)
      --keep-otadata       die OTA-Auswahl nicht löschen (ESP)
      --test-device        auch Pseudo-Terminals annehmen (simulierte Boards)
Strg-C bricht das Flashen ab und startet das Board neu.
)",
             R"(Utilisation : tarnwick-cli flash [options] PRODUIT.twflash
              tarnwick-cli flash [options] --target CIBLE FICHIER_OU_DOSSIER…

Flashe une carte. Avec --target, le produit est constitué sur-le-champ : un dossier seul est lu
comme dossier de build (PlatformIO, Arduino IDE, ESP-IDF), sinon les fichiers sont ajoutés un
par un. Un fichier produit indique sa propre cible.

Options :
  -p, --port PORT          port série (par défaut : le seul port série USB présent), ou
                           rfc2217://HÔTE:PORT pour une carte branchée sur un autre ordinateur
  -t, --target CIBLE       esp:auto, esp:esp32, esp:esp32s3, …, avr:uno, avr:mega2560, …
  -b, --baud N             vitesse de flashage (ESP ; 9600 à 3000000)
      --reset MODE         auto, classic, usbJTAG ou manual (ESP)
      --no-verify          ne pas vérifier après l’écriture
      --flash-mode MODE    keep, qio, qout, dio ou dout (ESP)
      --flash-size TAILLE  keep, 1MB, 2MB, 4MB, 8MB ou 16MB (ESP)
      --keep-otadata       ne pas effacer la sélection OTA (ESP)
      --test-device        accepter aussi les pseudo-terminaux (cartes simulées)
Ctrl-C arrête le flashage et redémarre la carte.
)",
             R"(Uso: tarnwick-cli flash [opciones] PRODUCTO.twflash
     tarnwick-cli flash [opciones] --target DESTINO ARCHIVO_O_CARPETA…

Flashea una placa. Con --target el producto se crea al momento: una sola carpeta se lee como
carpeta de compilación (PlatformIO, Arduino IDE, ESP-IDF); si no, los archivos se añaden uno a
uno. Un archivo de producto indica su propio destino.

Opciones:
  -p, --port PUERTO        puerto serie (por defecto: el único puerto serie USB presente), o
                           rfc2217://HOST:PUERTO para una placa en otro equipo
  -t, --target DESTINO     esp:auto, esp:esp32, esp:esp32s3, …, avr:uno, avr:mega2560, …
  -b, --baud N             velocidad de flasheo (ESP; 9600 a 3000000)
      --reset MODO         auto, classic, usbJTAG o manual (ESP)
      --no-verify          no verificar tras escribir
      --flash-mode MODO    keep, qio, qout, dio o dout (ESP)
      --flash-size TAMAÑO  keep, 1MB, 2MB, 4MB, 8MB o 16MB (ESP)
      --keep-otadata       no borrar la selección OTA (ESP)
      --test-device        aceptar también pseudoterminales (placas simuladas)
Ctrl-C detiene el flasheo y reinicia la placa.
)"});
}

std::string helpPack() {
  return tr(
      {R"(Usage: tarnwick-cli pack --target TARGET --out NAME.twflash [options] FILE_OR_FOLDER…

Saves firmware files or a build folder as a product file, ready to flash board after board.
The product keeps the settings given here, as flash takes them. A product with an error is not
saved.

Options:
  -t, --target TARGET     esp:auto, esp:esp32, …, avr:uno, … (required)
      --out NAME.twflash  the product file to write (required)
      --name TEXT         product name (default: the file name)
      --notes TEXT        notes kept in the product
      --force             replace an existing product file
      --directory         save a folder instead of one file, for programs that read only folders
  -b, --baud N            speed while flashing (ESP; 9600 to 3000000)
      --reset MODE        auto, classic, usbJTAG or manual (ESP)
      --no-verify         do not verify after writing
      --flash-mode MODE   keep, qio, qout, dio or dout (ESP)
      --flash-size SIZE   keep, 1MB, 2MB, 4MB, 8MB or 16MB (ESP)
      --keep-otadata      do not erase the OTA selection (ESP)
)",
       R"(Gebruik: tarnwick-cli pack --target DOEL --out NAAM.twflash [opties] BESTAND_OF_MAP…

Slaat firmwarebestanden of een buildmap op als productbestand, klaar om board na board te
flashen. Het product bewaart de instellingen die hier worden gegeven, zoals flash ze aanneemt.
Een product met een fout wordt niet opgeslagen.

Opties:
  -t, --target DOEL       esp:auto, esp:esp32, …, avr:uno, … (verplicht)
      --out NAAM.twflash  het productbestand dat wordt geschreven (verplicht)
      --name TEKST        productnaam (standaard: de bestandsnaam)
      --notes TEKST       notities in het product
      --force             een bestaand productbestand vervangen
      --directory         een map opslaan in plaats van één bestand, voor programma's die alleen mappen lezen
  -b, --baud N            snelheid tijdens flashen (ESP; 9600 tot 3000000)
      --reset MODUS       auto, classic, usbJTAG of manual (ESP)
      --no-verify         niet controleren na schrijven
      --flash-mode MODUS  keep, qio, qout, dio of dout (ESP)
      --flash-size MAAT   keep, 1MB, 2MB, 4MB, 8MB of 16MB (ESP)
      --keep-otadata      de OTA-keuze niet wissen (ESP)
)",
       R"(Aufruf: tarnwick-cli pack --target ZIEL --out NAME.twflash [Optionen] DATEI_ODER_ORDNER…

Speichert Firmware-Dateien oder einen Build-Ordner als Produktdatei, bereit zum Flashen Board
für Board. Das Produkt behält die hier angegebenen Einstellungen, wie flash sie annimmt. Ein
Produkt mit einem Fehler wird nicht gespeichert.

Optionen:
  -t, --target ZIEL        esp:auto, esp:esp32, …, avr:uno, … (erforderlich)
      --out NAME.twflash   die zu schreibende Produktdatei (erforderlich)
      --name TEXT          Produktname (Standard: der Dateiname)
      --notes TEXT         Notizen im Produkt
      --force              eine vorhandene Produktdatei ersetzen
      --directory          einen Ordner statt einer Datei speichern, für Programme, die nur Ordner lesen
  -b, --baud N             Geschwindigkeit beim Flashen (ESP; 9600 bis 3000000)
      --reset MODUS        auto, classic, usbJTAG oder manual (ESP)
      --no-verify          nach dem Schreiben nicht prüfen
      --flash-mode MODUS   keep, qio, qout, dio oder dout (ESP)
      --flash-size GRÖSSE  keep, 1MB, 2MB, 4MB, 8MB oder 16MB (ESP)
      --keep-otadata       die OTA-Auswahl nicht löschen (ESP)
)",
       R"(Utilisation : tarnwick-cli pack --target CIBLE --out NOM.twflash [options] FICHIER_OU_DOSSIER…

Enregistre des fichiers firmware ou un dossier de build comme fichier produit, prêt à flasher
carte après carte. Le produit garde les réglages donnés ici, comme flash les accepte. Un produit
qui comporte une erreur n’est pas enregistré.

Options :
  -t, --target CIBLE       esp:auto, esp:esp32, …, avr:uno, … (obligatoire)
      --out NOM.twflash    le fichier produit à écrire (obligatoire)
      --name TEXTE         nom du produit (par défaut : le nom du fichier)
      --notes TEXTE        notes conservées dans le produit
      --force              remplacer un fichier produit existant
      --directory          enregistrer un dossier plutôt qu’un fichier, pour les programmes qui ne lisent que des dossiers
  -b, --baud N             vitesse de flashage (ESP ; 9600 à 3000000)
      --reset MODE         auto, classic, usbJTAG ou manual (ESP)
      --no-verify          ne pas vérifier après l’écriture
      --flash-mode MODE    keep, qio, qout, dio ou dout (ESP)
      --flash-size TAILLE  keep, 1MB, 2MB, 4MB, 8MB ou 16MB (ESP)
      --keep-otadata       ne pas effacer la sélection OTA (ESP)
)",
       R"(Uso: tarnwick-cli pack --target DESTINO --out NOMBRE.twflash [opciones] ARCHIVO_O_CARPETA…

Guarda archivos de firmware o una carpeta de compilación como archivo de producto, listo para
flashear placa tras placa. El producto guarda los ajustes indicados aquí, tal como los acepta
flash. Un producto con un error no se guarda.

Opciones:
  -t, --target DESTINO      esp:auto, esp:esp32, …, avr:uno, … (obligatorio)
      --out NOMBRE.twflash  el archivo de producto que se escribe (obligatorio)
      --name TEXTO          nombre del producto (por defecto: el nombre del archivo)
      --notes TEXTO         notas guardadas en el producto
      --force               sustituir un archivo de producto existente
      --directory           guardar una carpeta en lugar de un archivo, para programas que solo leen carpetas
  -b, --baud N              velocidad de flasheo (ESP; 9600 a 3000000)
      --reset MODO          auto, classic, usbJTAG o manual (ESP)
      --no-verify           no verificar tras escribir
      --flash-mode MODO     keep, qio, qout, dio o dout (ESP)
      --flash-size TAMAÑO   keep, 1MB, 2MB, 4MB, 8MB o 16MB (ESP)
      --keep-otadata        no borrar la selección OTA (ESP)
)"});
}

std::string helpCheck() {
  return tr({"Usage: tarnwick-cli check PRODUCT.twflash\n\nLists every problem of the product "
             "with its severity and the file it concerns.\n",
             "Gebruik: tarnwick-cli check PRODUCT.twflash\n\nToont elk probleem van het product "
             "met de ernst en het bestand waar het om gaat.\n",
             "Aufruf: tarnwick-cli check PRODUKT.twflash\n\nListet jedes Problem des Produkts mit "
             "seiner Schwere und der betroffenen Datei auf.\n",
             "Utilisation : tarnwick-cli check PRODUIT.twflash\n\nListe chaque problème du "
             "produit avec sa gravité et le fichier concerné.\n",
             "Uso: tarnwick-cli check PRODUCTO.twflash\n\nMuestra cada problema del producto con "
             "su gravedad y el archivo al que afecta.\n"});
}

std::string helpInfo() {
  return tr({"Usage: tarnwick-cli info PRODUCT.twflash\n\nShows the product: name, target, "
             "settings, and each file with role, address, size and checksum.\n",
             "Gebruik: tarnwick-cli info PRODUCT.twflash\n\nToont het product: naam, doel, "
             "instellingen en elk bestand met soort, adres, grootte en controlesom.\n",
             "Aufruf: tarnwick-cli info PRODUKT.twflash\n\nZeigt das Produkt: Name, Ziel, "
             "Einstellungen und jede Datei mit Art, Adresse, Größe und Prüfsumme.\n",
             "Utilisation : tarnwick-cli info PRODUIT.twflash\n\nMontre le produit : nom, cible, "
             "réglages, et chaque fichier avec son rôle, son adresse, sa taille et sa somme de "
             "contrôle.\n",
             "Uso: tarnwick-cli info PRODUCTO.twflash\n\nMuestra el producto: nombre, destino, "
             "ajustes y cada archivo con su tipo, dirección, tamaño y suma de comprobación.\n"});
}

std::string helpPorts() {
  return tr({R"(Usage: tarnwick-cli ports [--json] [--watch]

Lists the serial ports, USB boards first: path, name and USB ids (vendor:product).
Then the ports serial servers announce on the network, where an Avahi daemon runs.

Options:
  --json   one JSON array for scripts: path, name, vendorID, productID, productName,
           network
  --watch  print the list again whenever a port of this computer comes or goes, until
           Ctrl-C
)",
             R"(Gebruik: tarnwick-cli ports [--json] [--watch]

Toont de seriële poorten, USB-boards eerst: pad, naam en USB-id's (leverancier:product).
Daarna de poorten die seriële servers op het netwerk aankondigen, als er een Avahi-daemon
draait.

Opties:
  --json   één JSON-array voor scripts: path, name, vendorID, productID, productName,
           network
  --watch  toon de lijst opnieuw zodra een poort van deze computer verschijnt of verdwijnt,
           tot Ctrl-C
)",
             R"(Aufruf: tarnwick-cli ports [--json] [--watch]

Listet die seriellen Schnittstellen auf, USB-Boards zuerst: Pfad, Name und USB-IDs
(Hersteller:Produkt). Danach die Ports, die serielle Server im Netzwerk ankündigen, wo ein
Avahi-Daemon läuft.

Optionen:
  --json   ein JSON-Array für Skripte: path, name, vendorID, productID, productName,
           network
  --watch  die Liste bei jeder neuen oder entfernten Schnittstelle dieses Rechners neu
           ausgeben, bis Strg-C
)",
             R"(Utilisation : tarnwick-cli ports [--json] [--watch]

Liste les ports série, cartes USB en premier : chemin, nom et identifiants USB
(fabricant:produit). Puis les ports que des serveurs série annoncent sur le réseau, là où
tourne un démon Avahi.

Options :
  --json   un tableau JSON pour les scripts : path, name, vendorID, productID, productName,
           network
  --watch  réafficher la liste dès qu’un port de cet ordinateur apparaît ou disparaît,
           jusqu’à Ctrl-C
)",
             R"(Uso: tarnwick-cli ports [--json] [--watch]

Muestra los puertos serie, primero las placas USB: ruta, nombre e identificadores USB
(fabricante:producto). Después, los puertos que los servidores serie anuncian en la red, donde
funciona un demonio Avahi.

Opciones:
  --json   un array JSON para scripts: path, name, vendorID, productID, productName,
           network
  --watch  vuelve a mostrar la lista cada vez que aparece o desaparece un puerto de este
           equipo, hasta Ctrl-C
)"});
}

std::string helpStation() {
  return tr({R"(Usage: tarnwick-cli station [options] PRODUCT.twflash

A flashing station: every board plugged in from now on is flashed at once, several at the same
time, until Ctrl-C. A new board is a USB serial port that appears and is still there 1.2 s
later. A port behind a USB-serial chip that goes and comes back holds the next board. A board
with its own USB (ESP32-S3/C3/C6, Leonardo, Micro, Pro Micro) comes back by itself when it
restarts: for 6 s after its run, its USB serial number or else its MAC address tells whether
it is the same board. A board of the other family (an Uno for an ESP product) is left alone.
Every board left alone is named with the reason. Leonardo, Micro and Pro Micro boards are
flashed one at a time, as their bootloader comes up as a port of its own.

Options:
  -p, --port PATH      watch only this port (repeatable); rfc2217://HOST:PORT names a
                       port on another computer, connected to every second while it
                       has no board; a board found there at start is flashed at once
      --now            also flash the boards already connected
      --limit N        take no new board once N have succeeded or are running; the station
                       ends when N have succeeded
      --json           one JSON object per line and event (started, connected, progress,
                       done, failed, skipped) with port, name, time (UTC) and the event's
                       fields
      --record FILE    append one JSON line per finished board: time, port, name, chip, mac,
                       product, productSHA256, result, message, seconds
      --test-device    also accept pseudo-terminals named with --port (simulated
                       boards); they are flashed when the station starts, without --now
The settings of “flash” apply as well: -b/--baud, --reset, --no-verify, --flash-mode,
--flash-size, --keep-otadata.
The first Ctrl-C takes no new boards and lets the running ones finish; a second one stops
them. A record line that cannot be written, or a reader of the output that went away, takes
no new boards either. Exit status: 0 no board failed, 1 a board failed or was stopped, or the
record or the output was lost, 2 unusable product or wrong option.
)",
             R"(Gebruik: tarnwick-cli station [opties] PRODUCT.twflash

Een flashstation: elk board dat je vanaf nu aansluit, wordt meteen geflasht, meerdere
tegelijk, tot Ctrl-C. Een nieuw board is een USB-seriële poort die verschijnt en 1,2 s later
nog aanwezig is. Een poort achter een USB-seriële chip die verdwijnt en terugkomt, heeft het
volgende board. Een board met eigen USB (ESP32-S3/C3/C6, Leonardo, Micro, Pro Micro) komt
vanzelf terug als het herstart: in de 6 s na zijn flash bepaalt zijn USB-serienummer, of
anders zijn MAC-adres, of het hetzelfde board is. Een board van de andere familie (een Uno bij
een ESP-product) wordt niet aangeraakt. Elk board dat niet wordt aangeraakt, wordt met de
reden genoemd. Leonardo-, Micro- en Pro Micro-boards worden één voor één geflasht, omdat hun
bootloader als eigen poort verschijnt.

Opties:
  -p, --port PAD       alleen deze poort bewaken (mag vaker); rfc2217://HOST:POORT is
                       een poort aan een andere computer, waarmee het station elke
                       seconde opnieuw verbinding maakt zolang er geen board is; een
                       board dat er bij de start al is, wordt meteen geflasht
      --now            ook de boards flashen die al aangesloten zijn
      --limit N        geen nieuwe boards meer nemen zodra er N gelukt zijn of bezig zijn; het
                       station stopt als er N gelukt zijn
      --json           één JSON-object per regel en gebeurtenis (started, connected, progress,
                       done, failed, skipped) met port, name, time (UTC) en de velden van de
                       gebeurtenis
      --record PAD     per afgerond board één JSON-regel toevoegen: time, port, name, chip, mac,
                       product, productSHA256, result, message, seconds
      --test-device    ook pseudoterminals accepteren die met --port genoemd zijn (gesimuleerde
                       boards); die worden bij de start geflasht, ook zonder --now
De instellingen van ‘flash’ gelden ook: -b/--baud, --reset, --no-verify, --flash-mode,
--flash-size, --keep-otadata.
De eerste Ctrl-C neemt geen nieuwe boards meer en laat lopende boards afmaken; een tweede
stopt ze. Een registratieregel die niet geschreven kan worden, of een lezer van de uitvoer die
verdwenen is, laat evenmin nieuwe boards toe. Afsluitstatus: 0 geen board mislukt, 1 een board
mislukt of gestopt, of registratie of uitvoer verloren, 2 onbruikbaar product of verkeerde
optie.
)",
             R"(Aufruf: tarnwick-cli station [Optionen] PRODUKT.twflash

Eine Flash-Station: Jedes ab jetzt angeschlossene Board wird sofort geflasht, mehrere
gleichzeitig, bis Strg-C. Ein neues Board ist eine serielle USB-Schnittstelle, die erscheint
und 1,2 s später noch da ist. Eine Schnittstelle hinter einem USB-Seriell-Chip, die
verschwindet und wiederkommt, hat das nächste Board. Ein Board mit eigenem USB (ESP32-S3/C3/C6,
Leonardo, Micro, Pro Micro) kommt von selbst wieder, wenn es neu startet: In den 6 s nach
seinem Durchlauf entscheidet seine USB-Seriennummer oder sonst seine MAC-Adresse, ob es
dasselbe Board ist. Ein Board der anderen Familie (ein Uno bei einem ESP-Produkt) wird nicht
angerührt. Jedes nicht angerührte Board wird mit dem Grund genannt. Leonardo, Micro und Pro
Micro werden nacheinander geflasht, weil ihr Bootloader als eigene Schnittstelle erscheint.

Optionen:
  -p, --port PFAD      nur diese Schnittstelle beobachten (mehrfach möglich);
                       rfc2217://HOST:PORT ist ein Port an einem anderen Rechner, mit
                       dem jede Sekunde neu verbunden wird, solange kein Board da ist;
                       ein Board, das beim Start schon da ist, wird sofort geflasht
      --now            auch die bereits angeschlossenen Boards flashen
      --limit N        keine neuen Boards mehr annehmen, sobald N erfolgreich sind oder
                       laufen; die Station endet, wenn N erfolgreich sind
      --json           ein JSON-Objekt pro Zeile und Ereignis (started, connected, progress,
                       done, failed, skipped) mit port, name, time (UTC) und den Feldern des
                       Ereignisses
      --record DATEI   pro fertigem Board eine JSON-Zeile anhängen: time, port, name, chip, mac,
                       product, productSHA256, result, message, seconds
      --test-device    auch mit --port genannte Pseudo-Terminals annehmen (simulierte Boards);
                       sie werden beim Start geflasht, auch ohne --now
Die Einstellungen von „flash“ gelten ebenso: -b/--baud, --reset, --no-verify, --flash-mode,
--flash-size, --keep-otadata.
Das erste Strg-C nimmt keine neuen Boards mehr an und lässt laufende fertig werden, ein
zweites bricht sie ab. Eine Protokollzeile, die nicht geschrieben werden kann, oder ein Leser
der Ausgabe, der verschwunden ist, beendet die Annahme neuer Boards ebenso. Exit-Status: 0 kein
Board fehlgeschlagen, 1 ein Board fehlgeschlagen oder abgebrochen oder Protokoll bzw. Ausgabe
verloren, 2 unbrauchbares Produkt oder falsche Option.
)",
             R"(Utilisation : tarnwick-cli station [options] PRODUIT.twflash

Une station de flashage : chaque carte branchée à partir de maintenant est flashée aussitôt,
plusieurs à la fois, jusqu’à Ctrl-C. Une nouvelle carte est un port série USB qui apparaît et
est toujours là 1,2 s plus tard. Un port derrière une puce USB-série qui disparaît puis revient
porte la carte suivante. Une carte à USB intégré (ESP32-S3/C3/C6, Leonardo, Micro, Pro Micro)
revient d’elle-même quand elle redémarre : dans les 6 s qui suivent son flashage, son numéro de
série USB, ou à défaut son adresse MAC, indique s’il s’agit de la même carte. Une carte de
l’autre famille (une Uno pour un produit ESP) est laissée telle quelle. Chaque carte laissée
telle quelle est nommée avec la raison. Les Leonardo, Micro et Pro Micro sont flashées une à
une, car leur bootloader apparaît comme un port à part.

Options :
  -p, --port CHEMIN    ne surveiller que ce port (répétable) ; rfc2217://HÔTE:PORT est
                       un port sur un autre ordinateur, auquel la station se reconnecte
                       chaque seconde tant qu’il n’a pas de carte ; une carte déjà là
                       au démarrage est flashée aussitôt
      --now            flasher aussi les cartes déjà branchées
      --limit N        ne plus prendre de nouvelles cartes dès que N ont réussi ou sont en
                       cours ; la station s’arrête quand N ont réussi
      --json           un objet JSON par ligne et par événement (started, connected, progress,
                       done, failed, skipped) avec port, name, time (UTC) et les champs de
                       l’événement
      --record CHEMIN  ajouter une ligne JSON par carte terminée : time, port, name, chip, mac,
                       product, productSHA256, result, message, seconds
      --test-device    accepter aussi les pseudo-terminaux nommés avec --port (cartes
                       simulées) ; ils sont flashés au démarrage, même sans --now
Les réglages de « flash » s’appliquent aussi : -b/--baud, --reset, --no-verify, --flash-mode,
--flash-size, --keep-otadata.
Le premier Ctrl-C ne prend plus de nouvelles cartes et laisse finir celles en cours ; un
second les arrête. Une ligne de suivi impossible à écrire, ou un lecteur de la sortie disparu,
arrête aussi la prise de nouvelles cartes. Code de sortie : 0 aucune carte en échec, 1 une
carte en échec ou arrêtée, ou le suivi ou la sortie perdus, 2 produit inutilisable ou option
erronée.
)",
             R"(Uso: tarnwick-cli station [opciones] PRODUCTO.twflash

Una estación de flasheo: cada placa que se conecte a partir de ahora se flashea enseguida,
varias a la vez, hasta Ctrl-C. Una placa nueva es un puerto serie USB que aparece y sigue ahí
1,2 s después. Un puerto detrás de un chip USB-serie que desaparece y vuelve tiene la placa
siguiente. Una placa con USB propio (ESP32-S3/C3/C6, Leonardo, Micro, Pro Micro) vuelve sola
cuando se reinicia: en los 6 s posteriores a su flasheo, su número de serie USB, o si no su
dirección MAC, indica si es la misma placa. Una placa de la otra familia (una Uno para un
producto ESP) no se toca. Cada placa que no se toca se nombra con el motivo. Las Leonardo,
Micro y Pro Micro se flashean de una en una, porque su bootloader aparece como un puerto
propio.

Opciones:
  -p, --port RUTA      vigilar solo este puerto (se puede repetir); rfc2217://HOST:PUERTO
                       es un puerto en otro equipo, al que se conecta cada segundo
                       mientras no tenga placa; una placa que ya esté al iniciar se
                       flashea enseguida
      --now            flashear también las placas ya conectadas
      --limit N        no aceptar placas nuevas cuando N hayan salido bien o estén en curso;
                       la estación termina cuando N han salido bien
      --json           un objeto JSON por línea y evento (started, connected, progress,
                       done, failed, skipped) con port, name, time (UTC) y los campos del
                       evento
      --record RUTA    añadir una línea JSON por placa terminada: time, port, name, chip, mac,
                       product, productSHA256, result, message, seconds
      --test-device    aceptar también pseudoterminales indicados con --port (placas
                       simuladas); se flashean al iniciar, incluso sin --now
Los ajustes de «flash» también valen: -b/--baud, --reset, --no-verify, --flash-mode,
--flash-size, --keep-otadata.
El primer Ctrl-C deja de aceptar placas nuevas y deja terminar las que están en curso; un
segundo las detiene. Una línea de registro que no se puede escribir, o un lector de la salida
que ha desaparecido, también detiene la aceptación de placas nuevas. Código de salida: 0
ninguna placa falló, 1 una placa falló o se detuvo, o se perdió el registro o la salida,
2 producto inservible u opción incorrecta.
)"});
}

} // namespace tarnwick::L10n::Cli
