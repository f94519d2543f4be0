#include "Localization/SimulatorTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Simulator {

std::string help() {
  return tr({R"(Usage: tarnwick-simboard BOARD [--pace] [--demo-folder FOLDER]
       tarnwick-simboard --list

Simulates the bootloader of a board on a pseudo-terminal, so that Tarnwick can be tried
without hardware. The first line printed is the terminal's path; give it to
“tarnwick-cli flash --test-device --port PATH”. Runs until Ctrl-C.

Options:
  --pace                   let bytes take as long as on a real serial line
  --demo-folder FOLDER     first write a build for this board into FOLDER
  --list                   list the boards that can be simulated
  -h, --help               show this help

Exit status: 0 after Ctrl-C, 1 when the board cannot be started, 2 wrong usage.
)",
             R"(Gebruik: tarnwick-simboard BOARD [--pace] [--demo-folder MAP]
         tarnwick-simboard --list

Simuleert de bootloader van een board op een pseudoterminal, zodat je Tarnwick zonder
hardware kunt uitproberen. De eerste regel is het pad van de terminal; geef dat door aan
‘tarnwick-cli flash --test-device --port PAD’. Draait tot Ctrl-C.

Opties:
  --pace                   bytes duren even lang als op een echte seriële lijn
  --demo-folder MAP        eerst een build voor dit board in MAP schrijven
  --list                   de boards tonen die gesimuleerd kunnen worden
  -h, --help               deze hulp tonen

Afsluitstatus: 0 na Ctrl-C, 1 als het board niet kan starten, 2 verkeerd gebruik.
)",
             R"(Aufruf: tarnwick-simboard BOARD [--pace] [--demo-folder ORDNER]
        tarnwick-simboard --list

Simuliert den Bootloader eines Boards auf einem Pseudoterminal, damit sich Tarnwick ohne
Hardware ausprobieren lässt. Die erste Zeile ist der Pfad des Terminals; er gehört zu
„tarnwick-cli flash --test-device --port PFAD“. Läuft bis Strg+C.

Optionen:
  --pace                   Bytes brauchen so lange wie auf einer echten seriellen Leitung
  --demo-folder ORDNER     zuerst einen Build für dieses Board in ORDNER schreiben
  --list                   die Boards auflisten, die sich simulieren lassen
  -h, --help               diese Hilfe anzeigen

Exit-Status: 0 nach Strg+C, 1 wenn das Board nicht startet, 2 falscher Aufruf.
)",
             R"(Utilisation : tarnwick-simboard CARTE [--pace] [--demo-folder DOSSIER]
              tarnwick-simboard --list

Simule le bootloader d’une carte sur un pseudo-terminal, pour essayer Tarnwick sans
matériel. La première ligne affichée est le chemin du terminal ; passez-le à
« tarnwick-cli flash --test-device --port CHEMIN ». Tourne jusqu’à Ctrl+C.

Options :
  --pace                   les octets prennent autant de temps que sur une vraie ligne série
  --demo-folder DOSSIER    écrire d’abord un build pour cette carte dans DOSSIER
  --list                   lister les cartes qui peuvent être simulées
  -h, --help               afficher cette aide

Code de sortie : 0 après Ctrl+C, 1 si la carte ne démarre pas, 2 mauvaise utilisation.
)",
             R"(Uso: tarnwick-simboard PLACA [--pace] [--demo-folder CARPETA]
     tarnwick-simboard --list

Simula el bootloader de una placa en un pseudoterminal, para probar Tarnwick sin
hardware. La primera línea es la ruta del terminal; pásela a
«tarnwick-cli flash --test-device --port RUTA». Funciona hasta pulsar Ctrl+C.

Opciones:
  --pace                   los bytes tardan lo mismo que en una línea serie real
  --demo-folder CARPETA    escribir antes una compilación para esta placa en CARPETA
  --list                   mostrar las placas que se pueden simular
  -h, --help               mostrar esta ayuda

Estado de salida: 0 tras Ctrl+C, 1 si la placa no puede arrancar, 2 uso incorrecto.
)"});
}

std::string boardsHeading() { return tr({"Boards:", "Boards:", "Boards:", "Cartes :", "Placas:"}); }

std::string unknownBoard(const std::string& board) {
  return tr({"Unknown board “", "Onbekend board ‘", "Unbekanntes Board „", "Carte inconnue « ",
             "Placa desconocida «"}) +
         board +
         tr({"”. “tarnwick-simboard --list” shows the boards.",
             "’. ‘tarnwick-simboard --list’ toont de boards.",
             "“. „tarnwick-simboard --list“ zeigt die Boards.",
             " ». « tarnwick-simboard --list » affiche les cartes.",
             "». «tarnwick-simboard --list» muestra las placas."});
}

std::string cannotSimulate(const std::string& board) {
  return tr({"The ", "De ", "Das ", "La carte ", "La placa "}) + board +
         tr({" cannot be simulated: it starts its bootloader on a new port, which a "
             "pseudo-terminal cannot do.",
             " kan niet gesimuleerd worden: de bootloader start op een nieuwe poort, en dat kan "
             "een pseudoterminal niet.",
             " lässt sich nicht simulieren: sein Bootloader startet an einem neuen Port, und das "
             "kann ein Pseudoterminal nicht.",
             " ne peut pas être simulée : son bootloader démarre sur un nouveau port, ce "
             "qu’un pseudo-terminal ne sait pas faire.",
             " no se puede simular: su bootloader arranca en un puerto nuevo, y un pseudoterminal "
             "no puede hacerlo."});
}

std::string unknownOption(const std::string& option) {
  return tr({"Unknown option ", "Onbekende optie ", "Unbekannte Option ", "Option inconnue ",
             "Opción desconocida "}) +
         option + ".";
}

std::string missingValue(const std::string& option) {
  return tr({"", "", "", "", "Falta el valor de "}) + option +
         tr({" needs a folder.", " heeft een map nodig.", " braucht einen Ordner.",
             " attend un dossier.", "."});
}

std::string missingBoard() {
  return tr({"Which board? Name one, for example esp32 or uno.",
             "Welk board? Noem er een, bijvoorbeeld esp32 of uno.",
             "Welches Board? Nenne eines, zum Beispiel esp32 oder uno.",
             "Quelle carte ? Nommez-en une, par exemple esp32 ou uno.",
             "¿Qué placa? Indica una, por ejemplo esp32 o uno."});
}

std::string seeHelp() {
  return tr({"See “tarnwick-simboard --help”.", "Zie ‘tarnwick-simboard --help’.",
             "Siehe „tarnwick-simboard --help“.", "Voir « tarnwick-simboard --help ».",
             "Consulte «tarnwick-simboard --help»."});
}

std::string cannotOpenTerminal(const std::string& reason) {
  return tr({"Cannot open a pseudo-terminal: ", "Kan geen pseudoterminal openen: ",
             "Kein Pseudoterminal verfügbar: ", "Impossible d’ouvrir un pseudo-terminal : ",
             "No se puede abrir un pseudoterminal: "}) +
         reason;
}

std::string cannotWriteDemo(const std::string& folder, const std::string& reason) {
  return tr({"Cannot write the demo build into ", "Kan de demobuild niet in ",
             "Der Demo-Build lässt sich nicht in ",
             "Impossible d’écrire le build de démonstration dans ",
             "No se puede escribir la compilación de demostración en "}) +
         folder + tr({": ", " schrijven: ", " schreiben: ", " : ", ": "}) + reason;
}

std::string serving(const std::string& board, const std::string& path) {
  return tr({"Simulated ", "Gesimuleerd board ", "Simuliertes Board ", "Carte simulée ",
             "Placa simulada "}) +
         board + tr({" on ", " op ", " an ", " sur ", " en "}) + path +
         tr({". Flash it with “tarnwick-cli flash --test-device --port ",
             ". Flash het met ‘tarnwick-cli flash --test-device --port ",
             ". Flashen mit „tarnwick-cli flash --test-device --port ",
             ". Flashez-la avec « tarnwick-cli flash --test-device --port ",
             ". Flashéela con «tarnwick-cli flash --test-device --port "}) +
         path +
         tr({" …”; Ctrl-C ends.", " …’; Ctrl-C stopt.", " …“; Strg+C beendet.",
             " … » ; Ctrl+C arrête.", " …»; Ctrl+C termina."});
}

std::string demoWritten(const std::string& folder) {
  return tr({"Demo build in ", "Demobuild in ", "Demo-Build in ", "Build de démonstration dans ",
             "Compilación de demostración en "}) +
         folder + ".";
}

} // namespace tarnwick::L10n::Simulator
