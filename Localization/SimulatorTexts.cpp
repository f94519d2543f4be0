#include "Localization/SimulatorTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Simulator {

std::string help() {
  return tr({R"(Usage: tarnwick-simboard BOARD [--pace] [--demo-folder FOLDER]
                         [--rfc2217 PORT [--bind ADDRESS] [--reset-circuit CIRCUIT]]
       tarnwick-simboard --list

Simulates the bootloader of a board on a pseudo-terminal, so that Tarnwick can be tried
without hardware. The first line printed is the terminal's path; give it to
“tarnwick-cli flash --test-device --port PATH”. Runs until Ctrl-C.

With --rfc2217 the board is served on a TCP port as a serial server serves a real one
(RFC 2217), and its DTR and RTS lines drive the board's reset circuit: it reaches its
bootloader only through the right reset sequence. The first line is then the port's name,
for “tarnwick-cli flash --port rfc2217://…”.

Options:
  --pace                   let bytes take as long as on a real serial line
  --demo-folder FOLDER     first write a build for this board into FOLDER
  --rfc2217 PORT           serve the board on this TCP port (0: any free port)
  --bind ADDRESS           listen on this address instead of 127.0.0.1
  --reset-circuit CIRCUIT  an ESP board's reset: classic (two transistors, the default) or
                           usbJTAG (the chip's own USB; ESP32-S3, -C3 and -C6)
  --list                   list the boards that can be simulated
  -h, --help               show this help

Exit status: 0 after Ctrl-C, 1 when the board cannot be started, 2 wrong usage.
)",
             R"(Gebruik: tarnwick-simboard BOARD [--pace] [--demo-folder MAP]
                           [--rfc2217 POORT [--bind ADRES] [--reset-circuit SCHAKELING]]
         tarnwick-simboard --list

Simuleert de bootloader van een board op een pseudoterminal, zodat je Tarnwick zonder
hardware kunt uitproberen. De eerste regel is het pad van de terminal; geef dat door aan
‘tarnwick-cli flash --test-device --port PAD’. Draait tot Ctrl-C.

Met --rfc2217 wordt het board op een TCP-poort aangeboden zoals een seriële server een echt
board aanbiedt (RFC 2217), en zijn DTR- en RTS-lijnen sturen de resetschakeling van het
board: de bootloader start alleen met de juiste resetvolgorde. De eerste regel is dan de
naam van de poort, voor ‘tarnwick-cli flash --port rfc2217://…’.

Opties:
  --pace                      bytes duren even lang als op een echte seriële lijn
  --demo-folder MAP           eerst een build voor dit board in MAP schrijven
  --rfc2217 POORT             het board op deze TCP-poort aanbieden (0: een vrije poort)
  --bind ADRES                op dit adres luisteren in plaats van 127.0.0.1
  --reset-circuit SCHAKELING  de reset van een ESP-board: classic (twee transistors, de
                              standaard) of usbJTAG (de eigen USB van de chip; ESP32-S3,
                              -C3 en -C6)
  --list                      de boards tonen die gesimuleerd kunnen worden
  -h, --help                  deze hulp tonen

Afsluitstatus: 0 na Ctrl-C, 1 als het board niet kan starten, 2 verkeerd gebruik.
)",
             R"(Aufruf: tarnwick-simboard BOARD [--pace] [--demo-folder ORDNER]
                          [--rfc2217 PORT [--bind ADRESSE] [--reset-circuit SCHALTUNG]]
        tarnwick-simboard --list

Simuliert den Bootloader eines Boards auf einem Pseudoterminal, damit sich Tarnwick ohne
Hardware ausprobieren lässt. Die erste Zeile ist der Pfad des Terminals; er gehört zu
„tarnwick-cli flash --test-device --port PFAD“. Läuft bis Strg+C.

Mit --rfc2217 wird das Board an einem TCP-Port bereitgestellt, wie ein serieller Server ein
echtes bereitstellt (RFC 2217), und seine DTR- und RTS-Leitungen steuern die Reset-Schaltung
des Boards: Es erreicht seinen Bootloader nur mit der richtigen Reset-Folge. Die erste Zeile
ist dann der Name des Ports, für „tarnwick-cli flash --port rfc2217://…“.

Optionen:
  --pace                     Bytes brauchen so lange wie auf einer echten seriellen Leitung
  --demo-folder ORDNER       zuerst einen Build für dieses Board in ORDNER schreiben
  --rfc2217 PORT             das Board an diesem TCP-Port bereitstellen (0: ein freier Port)
  --bind ADRESSE             an dieser Adresse statt 127.0.0.1 lauschen
  --reset-circuit SCHALTUNG  der Reset eines ESP-Boards: classic (zwei Transistoren, die
                             Vorgabe) oder usbJTAG (der eigene USB des Chips; ESP32-S3,
                             -C3 und -C6)
  --list                     die Boards auflisten, die sich simulieren lassen
  -h, --help                 diese Hilfe anzeigen

Exit-Status: 0 nach Strg+C, 1 wenn das Board nicht startet, 2 falscher Aufruf.
)",
             R"(Utilisation : tarnwick-simboard CARTE [--pace] [--demo-folder DOSSIER]
                              [--rfc2217 PORT [--bind ADRESSE] [--reset-circuit CIRCUIT]]
              tarnwick-simboard --list

Simule le bootloader d’une carte sur un pseudo-terminal, pour essayer Tarnwick sans
matériel. La première ligne affichée est le chemin du terminal ; passez-le à
« tarnwick-cli flash --test-device --port CHEMIN ». Tourne jusqu’à Ctrl+C.

Avec --rfc2217, la carte est servie sur un port TCP comme un serveur série sert une vraie
carte (RFC 2217), et ses lignes DTR et RTS pilotent le circuit de reset de la carte : elle
n’atteint son bootloader qu’avec la bonne séquence de reset. La première ligne est alors le
nom du port, pour « tarnwick-cli flash --port rfc2217://… ».

Options :
  --pace                   les octets prennent autant de temps que sur une vraie ligne série
  --demo-folder DOSSIER    écrire d’abord un build pour cette carte dans DOSSIER
  --rfc2217 PORT           servir la carte sur ce port TCP (0 : un port libre quelconque)
  --bind ADRESSE           écouter sur cette adresse au lieu de 127.0.0.1
  --reset-circuit CIRCUIT  le reset d’une carte ESP : classic (deux transistors, par défaut)
                           ou usbJTAG (l’USB propre à la puce ; ESP32-S3, -C3 et -C6)
  --list                   lister les cartes qui peuvent être simulées
  -h, --help               afficher cette aide

Code de sortie : 0 après Ctrl+C, 1 si la carte ne démarre pas, 2 mauvaise utilisation.
)",
             R"(Uso: tarnwick-simboard PLACA [--pace] [--demo-folder CARPETA]
                       [--rfc2217 PUERTO [--bind DIRECCIÓN] [--reset-circuit CIRCUITO]]
     tarnwick-simboard --list

Simula el bootloader de una placa en un pseudoterminal, para probar Tarnwick sin
hardware. La primera línea es la ruta del terminal; pásela a
«tarnwick-cli flash --test-device --port RUTA». Funciona hasta pulsar Ctrl+C.

Con --rfc2217 la placa se sirve en un puerto TCP como un servidor serie sirve una placa real
(RFC 2217), y sus líneas DTR y RTS controlan el circuito de reinicio de la placa: solo llega
a su bootloader con la secuencia de reinicio correcta. La primera línea es entonces el
nombre del puerto, para «tarnwick-cli flash --port rfc2217://…».

Opciones:
  --pace                   los bytes tardan lo mismo que en una línea serie real
  --demo-folder CARPETA    escribir antes una compilación para esta placa en CARPETA
  --rfc2217 PUERTO         servir la placa en este puerto TCP (0: cualquier puerto libre)
  --bind DIRECCIÓN         escuchar en esta dirección en lugar de 127.0.0.1
  --reset-circuit CIRCUITO el reinicio de una placa ESP: classic (dos transistores, por
                           defecto) o usbJTAG (el USB propio del chip; ESP32-S3, -C3 y -C6)
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

std::string missingSetting(const std::string& option) {
  return tr({"", "", "", "", "Falta el valor de "}) + option +
         tr({" needs a value.", " heeft een waarde nodig.", " braucht einen Wert.",
             " attend une valeur.", "."});
}

std::string invalidTCPPort(const std::string& value) {
  return tr({"“", "‘", "„", "« ", "«"}) + value +
         tr({"” is not a TCP port: give a number from 0 to 65535 (0: any free port).",
             "’ is geen TCP-poort: geef een getal van 0 tot 65535 (0: een vrije poort).",
             "“ ist kein TCP-Port: Gib eine Zahl von 0 bis 65535 an (0: ein freier Port).",
             " » n’est pas un port TCP : indiquez un nombre de 0 à 65535 (0 : un port libre).",
             "» no es un puerto TCP: indique un número de 0 a 65535 (0: un puerto libre)."});
}

std::string invalidResetCircuit(const std::string& value, const std::string& board) {
  return tr({"“", "‘", "„", "« ", "«"}) + value +
         tr({"” is no reset circuit of the ", "’ is geen resetschakeling van het board ",
             "“ ist keine Reset-Schaltung des Boards ", " » n’est pas un circuit de reset de la "
             "carte ", "» no es un circuito de reinicio de la placa "}) +
         board +
         tr({": an ESP board has classic, and an ESP32-S3, -C3 or -C6 also usbJTAG.",
             ": een ESP-board heeft classic, en een ESP32-S3, -C3 of -C6 ook usbJTAG.",
             ": Ein ESP-Board hat classic, ein ESP32-S3, -C3 oder -C6 auch usbJTAG.",
             " : une carte ESP a classic, et une ESP32-S3, -C3 ou -C6 aussi usbJTAG.",
             ": una placa ESP tiene classic, y una ESP32-S3, -C3 o -C6 también usbJTAG."});
}

std::string needsRFC2217(const std::string& option) {
  return option + tr({" works only with --rfc2217.", " werkt alleen met --rfc2217.",
                      " wirkt nur zusammen mit --rfc2217.", " ne s’emploie qu’avec --rfc2217.",
                      " solo funciona con --rfc2217."});
}

std::string cannotListen(const std::string& address, const std::string& reason) {
  return tr({"Cannot serve the board on ", "Kan het board niet aanbieden op ",
             "Das Board lässt sich nicht bereitstellen an ",
             "Impossible de servir la carte sur ", "No se puede servir la placa en "}) +
         address + tr({": ", ": ", ": ", " : ", ": "}) + reason;
}

std::string servingNetwork(const std::string& board, const std::string& name) {
  return tr({"Simulated ", "Gesimuleerd board ", "Simuliertes Board ", "Carte simulée ",
             "Placa simulada "}) +
         board + tr({" on ", " op ", " an ", " sur ", " en "}) + name +
         tr({". Flash it with “tarnwick-cli flash --port ",
             ". Flash het met ‘tarnwick-cli flash --port ", ". Flashen mit „tarnwick-cli flash --port ",
             ". Flashez-la avec « tarnwick-cli flash --port ",
             ". Flashéela con «tarnwick-cli flash --port "}) +
         name +
         tr({" …”; Ctrl-C ends.", " …’; Ctrl-C stopt.", " …“; Strg+C beendet.",
             " … » ; Ctrl+C arrête.", " …»; Ctrl+C termina."});
}

std::string demoWritten(const std::string& folder) {
  return tr({"Demo build in ", "Demobuild in ", "Demo-Build in ", "Build de démonstration dans ",
             "Compilación de demostración en "}) +
         folder + ".";
}

} // namespace tarnwick::L10n::Simulator
