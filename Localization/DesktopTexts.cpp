#include "Localization/DesktopTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Desktop {

std::string commandLineHelp() {
  return tr({"Usage: tarnwick [OPTION]... [FILE.twflash]\n"
             "Puts firmware onto ESP32, ESP8266 and Arduino boards over USB.\n"
             "A product file given here is opened; when Tarnwick is already running, that\n"
             "window opens it.\n\n"
             "  --test-device PATH  offer a pseudo-terminal as a port, to flash a simulated\n"
             "                      board (tarnwick-simboard); may be repeated\n"
             "  --simulated-board[=BOARD]\n"
             "                      start with a board simulated inside Tarnwick plugged in,\n"
             "                      as Help ▸ Try with a Simulated Board does: BOARD as\n"
             "                      “tarnwick-simboard --list” names it (esp32, uno, …), by\n"
             "                      default the product's own; with no firmware yet, a demo\n"
             "                      product for it is opened too; may be repeated\n"
             "  --station           open in station mode (View ▸ Flashing Station) for the\n"
             "                      product given or the last one: Ctrl+R then flashes every\n"
             "                      board plugged in, several at once; the --test-device\n"
             "                      ports are flashed as soon as it starts\n"
             "  --screenshots DIR   save pictures of the window's main states in DIR and quit\n"
             "  --dark              show the window in dark colours\n"
             "  --help              show this help and quit\n"
             "  --version           show the version and quit\n",
             "Gebruik: tarnwick [OPTIE]... [BESTAND.twflash]\n"
             "Zet firmware via USB op ESP32-, ESP8266- en Arduino-boards.\n"
             "Een hier opgegeven productbestand wordt geopend; draait Tarnwick al, dan opent\n"
             "dat venster het.\n\n"
             "  --test-device PAD   een pseudoterminal als poort aanbieden, om een gesimuleerd\n"
             "                      board te flashen (tarnwick-simboard); mag herhaald worden\n"
             "  --simulated-board[=BOARD]\n"
             "                      starten met een board aangesloten dat Tarnwick zelf\n"
             "                      simuleert, zoals Help ▸ Uitproberen met een gesimuleerd\n"
             "                      board: BOARD zoals ‘tarnwick-simboard --list’ het noemt\n"
             "                      (esp32, uno, …), standaard dat van het product; zonder\n"
             "                      firmware wordt er ook een demoproduct voor geopend; mag\n"
             "                      herhaald worden\n"
             "  --station           in stationmodus openen (Beeld ▸ Flashstation) voor het\n"
             "                      opgegeven of het laatste product: Ctrl+R flasht dan elk\n"
             "                      aangesloten board, meerdere tegelijk; de poorten van\n"
             "                      --test-device worden meteen bij het starten geflasht\n"
             "  --screenshots MAP   afbeeldingen van de belangrijkste toestanden van het venster\n"
             "                      in MAP opslaan en stoppen\n"
             "  --dark              het venster in donkere kleuren tonen\n"
             "  --help              deze hulp tonen en stoppen\n"
             "  --version           de versie tonen en stoppen\n",
             "Aufruf: tarnwick [OPTION]... [DATEI.twflash]\n"
             "Schreibt Firmware per USB auf ESP32-, ESP8266- und Arduino-Boards.\n"
             "Eine hier angegebene Produktdatei wird geöffnet; läuft Tarnwick schon, öffnet\n"
             "das vorhandene Fenster sie.\n\n"
             "  --test-device PFAD  ein Pseudo-Terminal als Schnittstelle anbieten, um ein\n"
             "                      simuliertes Board zu flashen (tarnwick-simboard);\n"
             "                      mehrfach möglich\n"
             "  --simulated-board[=BOARD]\n"
             "                      mit einem angeschlossenen Board starten, das Tarnwick\n"
             "                      selbst simuliert, wie Hilfe ▸ Mit simuliertem Board\n"
             "                      ausprobieren: BOARD so, wie „tarnwick-simboard --list“\n"
             "                      es nennt (esp32, uno, …), sonst das des Produkts; ohne\n"
             "                      Firmware wird dazu ein Demo-Produkt geöffnet; mehrfach\n"
             "                      möglich\n"
             "  --station           im Stationsmodus öffnen (Ansicht ▸ Flash-Station), für das\n"
             "                      angegebene oder das letzte Produkt: Strg+R flasht dann\n"
             "                      jedes angeschlossene Board, mehrere gleichzeitig; die\n"
             "                      Schnittstellen von --test-device werden gleich beim Start\n"
             "                      geflasht\n"
             "  --screenshots ORDNER  Bilder der wichtigsten Zustände des Fensters in ORDNER\n"
             "                      speichern und beenden\n"
             "  --dark              das Fenster in dunklen Farben zeigen\n"
             "  --help              diese Hilfe zeigen und beenden\n"
             "  --version           die Version zeigen und beenden\n",
             "Utilisation : tarnwick [OPTION]... [FICHIER.twflash]\n"
             "Transfère un micrologiciel sur des cartes ESP32, ESP8266 et Arduino par USB.\n"
             "Le fichier produit indiqué est ouvert ; si Tarnwick tourne déjà, c’est sa fenêtre\n"
             "qui l’ouvre.\n\n"
             "  --test-device CHEMIN  proposer un pseudo-terminal comme port, pour flasher une\n"
             "                      carte simulée (tarnwick-simboard) ; peut être répété\n"
             "  --simulated-board[=CARTE]\n"
             "                      démarrer avec une carte simulée par Tarnwick lui-même déjà\n"
             "                      branchée, comme Aide ▸ Essayer avec une carte simulée :\n"
             "                      CARTE telle que « tarnwick-simboard --list » la nomme\n"
             "                      (esp32, uno, …), par défaut celle du produit ; sans\n"
             "                      firmware, un produit de démonstration est ouvert aussi ;\n"
             "                      peut être répété\n"
             "  --station           ouvrir en mode station (Affichage ▸ Station de flashage)\n"
             "                      pour le produit indiqué ou le dernier : Ctrl+R flashe\n"
             "                      ensuite chaque carte branchée, plusieurs à la fois ; les\n"
             "                      ports de --test-device sont flashés dès le démarrage\n"
             "  --screenshots DOSSIER  enregistrer des images des principaux états de la\n"
             "                      fenêtre dans DOSSIER, puis quitter\n"
             "  --dark              afficher la fenêtre en couleurs sombres\n"
             "  --help              afficher cette aide et quitter\n"
             "  --version           afficher la version et quitter\n",
             "Uso: tarnwick [OPCIÓN]... [ARCHIVO.twflash]\n"
             "Graba firmware en placas ESP32, ESP8266 y Arduino por USB.\n"
             "Abre el archivo de producto indicado; si Tarnwick ya está abierto, lo abre esa\n"
             "ventana.\n\n"
             "  --test-device RUTA  ofrecer un pseudoterminal como puerto, para flashear una\n"
             "                      placa simulada (tarnwick-simboard); se puede repetir\n"
             "  --simulated-board[=PLACA]\n"
             "                      empezar con una placa que simula el propio Tarnwick ya\n"
             "                      conectada, como Ayuda ▸ Probar con una placa simulada:\n"
             "                      PLACA tal como la nombra «tarnwick-simboard --list»\n"
             "                      (esp32, uno, …), por defecto la del producto; si aún no\n"
             "                      hay firmware, también se abre un producto de\n"
             "                      demostración; se puede repetir\n"
             "  --station           abrir en modo estación (Ver ▸ Estación de flasheo) para el\n"
             "                      producto indicado o el último: Control+R flashea\n"
             "                      entonces cada placa conectada, varias a la vez; los\n"
             "                      puertos de --test-device se flashean nada más iniciar\n"
             "  --screenshots CARPETA  guardar imágenes de los estados principales de la\n"
             "                      ventana en CARPETA y salir\n"
             "  --dark              mostrar la ventana en colores oscuros\n"
             "  --help              mostrar esta ayuda y salir\n"
             "  --version           mostrar la versión y salir\n"});
}

std::string seeHelp() {
  return tr({"Run “tarnwick --help” for the options.", "Gebruik ‘tarnwick --help’ voor de opties.",
             "„tarnwick --help“ zeigt die Optionen.",
             "Lancez « tarnwick --help » pour voir les options.",
             "Ejecuta «tarnwick --help» para ver las opciones."});
}

std::string savedScreenshot(const std::string& path) {
  return tr({"Saved ", "Opgeslagen: ", "Gespeichert: ", "Enregistré : ", "Guardado: "}) + path;
}

std::string cannotWriteScreenshots(const std::string& folder) {
  return tr({"Cannot write pictures into ", "Kan geen afbeeldingen schrijven in ",
             "Bilder können nicht gespeichert werden in ",
             "Impossible d’enregistrer des images dans ", "No se pueden guardar imágenes en "}) +
         folder + ".";
}

std::string noRunToPicture() {
  return tr({"No run to picture: give --test-device and a product.",
             "Geen flash om vast te leggen: geef --test-device en een product op.",
             "Kein Durchlauf zum Abbilden: Gib --test-device und ein Produkt an.",
             "Aucun flashage à photographier : indiquez --test-device et un produit.",
             "No hay ningún flasheo que capturar: indica --test-device y un producto."});
}

std::string notSimulable(const std::string& board, const std::string& boards) {
  return tr({"“", "‘", "„", "« ", "«"}) + board +
         tr({"” is no board that can be simulated; choose one of ",
             "’ is geen board dat gesimuleerd kan worden; kies uit ",
             "“ ist kein Board, das sich simulieren lässt; zur Wahl stehen ",
             " » n’est pas une carte qui peut être simulée ; choisissez parmi ",
             "» no es una placa que se pueda simular; elige entre "}) +
         boards + ".";
}

} // namespace tarnwick::L10n::Desktop
