// The troubleshooting topic: every message a run, the serial port or a file can end with, and what
// to do about it on Linux.

#include "Localization/HelpContent.hpp"

namespace tarnwick::L10n::Help::content {

HelpTopic troubleshooting() {
  return {
      "troubleshooting",
      tr({"Troubleshooting", "Problemen oplossen", "Fehlerbehebung", "Dépannage",
          "Solución de problemas"}),
      "wrench.and.screwdriver",
      {
          paragraph(
              {"When a run fails, the status line reads **Flashing failed** followed by the "
               "reason, and the log shows it in red with what came before. Look the message up "
               "below.",
               "Als een flash mislukt, staat in de statusregel **Flashen mislukt** met de reden "
               "erachter, en toont het logboek die in rood met wat eraan voorafging. Zoek de "
               "melding hieronder op.",
               "Schlägt ein Durchlauf fehl, zeigt die Statuszeile **Flashen fehlgeschlagen** mit "
               "dem Grund dahinter, und das Protokoll zeigt ihn in Rot mit allem, was davor "
               "geschah. Such die Meldung unten.",
               "Quand un flashage échoue, la ligne d’état indique **Échec du flashage** suivi de "
               "la raison, et le journal l’affiche en rouge avec ce qui précédait. Cherchez le "
               "message ci-dessous.",
               "Cuando un flasheo falla, la línea de estado indica **Error al flashear** seguido "
               "del motivo, y el registro lo muestra en rojo con lo que pasó antes. Busca el "
               "mensaje aquí abajo."}),
          screenshot(
              "window-failure.png",
              {"A failed run: the reason in the status line and in the log.",
               "Een mislukte flash: de reden in de statusregel en in het logboek.",
               "Ein fehlgeschlagener Durchlauf: der Grund in der Statuszeile und im "
               "Protokoll.",
               "Un flashage échoué\u00A0: la raison dans la ligne d’état et dans le journal.",
               "Un flasheo fallido: el motivo en la línea de estado y en el registro."}),

          heading({"No board in the port list", "Geen board in de poortenlijst",
                   "Kein Board in der Schnittstellenliste", "Aucune carte dans la liste des ports",
                   "Ninguna placa en la lista de puertos"}),
          bullets({
              {"Many USB cables only charge. If no port appears when the board is plugged in, "
               "try a cable that you know carries data.",
               "Veel USB-kabels laden alleen op. Verschijnt er geen poort als het board "
               "aangesloten is, probeer dan een kabel waarvan je weet dat hij data doorgeeft.",
               "Viele USB-Kabel laden nur. Erscheint beim Anstecken keine Schnittstelle, nimm "
               "ein Kabel, von dem du weißt, dass es Daten überträgt.",
               "Beaucoup de câbles USB ne font que charger. Si aucun port n’apparaît quand la "
               "carte est branchée, essayez un câble dont vous savez qu’il transmet les données.",
               "Muchos cables USB solo cargan. Si no aparece ningún puerto al conectar la placa, "
               "prueba un cable que sepas que transmite datos."},
              {"Plug the board straight into the computer instead of a hub, and try another USB "
               "socket.",
               "Sluit het board rechtstreeks op de computer aan in plaats van via een hub, en "
               "probeer een andere USB-aansluiting.",
               "Stecke das Board direkt am Rechner an statt an einem Hub und probiere eine andere "
               "USB-Buchse.",
               "Branchez la carte directement sur l’ordinateur plutôt que sur un hub, et essayez "
               "une autre prise USB.",
               "Conecta la placa directamente al ordenador en lugar de a un hub y prueba otra "
               "toma USB."},
              {"`tarnwick-cli ports` lists every serial port with its USB ids. A board that shows "
               "up there as `/dev/ttyUSB0` or `/dev/ttyACM0` is seen by the system.",
               "`tarnwick-cli ports` toont elke seriële poort met zijn USB-id's. Een board dat "
               "daar als `/dev/ttyUSB0` of `/dev/ttyACM0` staat, wordt door het systeem gezien.",
               "`tarnwick-cli ports` listet jede serielle Schnittstelle mit ihren USB-IDs. Ein "
               "Board, das dort als `/dev/ttyUSB0` oder `/dev/ttyACM0` erscheint, sieht das "
               "System.",
               "`tarnwick-cli ports` liste chaque port série avec ses identifiants USB. Une carte "
               "qui y figure comme `/dev/ttyUSB0` ou `/dev/ttyACM0` est vue par le système.",
               "`tarnwick-cli ports` muestra cada puerto serie con sus identificadores USB. Si la "
               "placa aparece ahí como `/dev/ttyUSB0` o `/dev/ttyACM0`, el sistema la ve."},
              {"A CH340 adapter that disappears a moment after plugging in is usually taken by "
               "`brltty`, the braille display service. Remove that package if you use no braille "
               "display.",
               "Een CH340-adapter die kort na het aansluiten verdwijnt, wordt meestal ingepikt "
               "door `brltty`, de dienst voor brailleleesregels. Verwijder dat pakket als je geen "
               "brailleleesregel gebruikt.",
               "Ein CH340-Adapter, der kurz nach dem Anstecken verschwindet, wird meist von "
               "`brltty` belegt, dem Dienst für Braillezeilen. Entferne das Paket, wenn du keine "
               "Braillezeile nutzt.",
               "Un adaptateur CH340 qui disparaît peu après le branchement est en général "
               "accaparé par `brltty`, le service des plages braille. Supprimez ce paquet si vous "
               "n’utilisez pas de plage braille.",
               "Un adaptador CH340 que desaparece poco después de conectarlo suele quedar "
               "capturado por `brltty`, el servicio de líneas braille. Desinstala ese paquete si "
               "no usas una línea braille."},
          }),

          heading({"Permission denied", "Toegang geweigerd", "Keine Berechtigung",
                   "Permission refusée", "Permiso denegado"}),
          paragraph(
              {"**Cannot open /dev/ttyUSB0: Permission denied.** means your user may not use the "
               "port. The Tarnwick package installs a udev rule for the usual boards and USB "
               "serial adapters: it gives the person at the desktop access to them and tells "
               "ModemManager to leave them alone. After installing the package, unplug the board "
               "and plug it in again.",
               "**Kan /dev/ttyUSB0 niet openen: Permission denied.** betekent dat je gebruiker de "
               "poort niet mag gebruiken. Het Tarnwick-pakket installeert een udev-regel voor de "
               "gangbare boards en USB-serieeladapters: die geeft wie achter de computer zit "
               "toegang en zegt ModemManager ze met rust te laten. Koppel het board na het "
               "installeren van het pakket los en sluit het opnieuw aan.",
               "**/dev/ttyUSB0 kann nicht geöffnet werden: Permission denied.** heißt, dass dein "
               "Benutzer die Schnittstelle nicht verwenden darf. Das Tarnwick-Paket installiert "
               "eine udev-Regel für die üblichen Boards und USB-Seriell-Adapter: Sie gibt der "
               "Person am Rechner Zugriff und weist ModemManager an, sie in Ruhe zu lassen. "
               "Zieh das Board nach der Installation des Pakets ab und steck es wieder an.",
               "**Impossible d’ouvrir /dev/ttyUSB0\u00A0: Permission denied.** signifie que votre "
               "utilisateur n’a pas le droit d’utiliser le port. Le paquet Tarnwick installe une "
               "règle udev pour les cartes et adaptateurs USB-série courants\u00A0: elle en donne "
               "l’accès à la personne devant l’ordinateur et demande à ModemManager de les "
               "laisser tranquilles. Après l’installation du paquet, débranchez la carte puis "
               "rebranchez-la.",
               "**No se puede abrir /dev/ttyUSB0: Permission denied.** significa que tu usuario no "
               "puede usar el puerto. El paquete de Tarnwick instala una regla udev para las "
               "placas y adaptadores USB-serie habituales: da acceso a quien está sentado ante el "
               "ordenador y le dice a ModemManager que no los toque. Tras instalar el paquete, "
               "desconecta la placa y vuelve a conectarla."}),
          paragraph(
              {"Without the package, or for an adapter the rule does not know, join the group "
               "that owns the port, usually `dialout`: run `sudo usermod -aG dialout $USER`, then "
               "log out and back in.",
               "Zonder het pakket, of voor een adapter die de regel niet kent, word je lid van de "
               "groep die eigenaar van de poort is, meestal `dialout`: voer `sudo usermod -aG "
               "dialout $USER` uit en meld je daarna af en weer aan.",
               "Ohne das Paket oder bei einem Adapter, den die Regel nicht kennt, tritt der "
               "Gruppe bei, der die Schnittstelle gehört, meist `dialout`: Führe `sudo usermod "
               "-aG dialout $USER` aus, dann ab- und wieder anmelden.",
               "Sans le paquet, ou pour un adaptateur que la règle ne connaît pas, rejoignez le "
               "groupe propriétaire du port, en général `dialout`\u00A0: lancez `sudo usermod -aG "
               "dialout $USER`, puis fermez votre session et rouvrez-la.",
               "Sin el paquete, o con un adaptador que la regla no conoce, únete al grupo dueño "
               "del puerto, normalmente `dialout`: ejecuta `sudo usermod -aG dialout $USER` y "
               "luego cierra la sesión y vuelve a entrar."}),

          heading({"The port is busy", "De poort is bezet", "Die Schnittstelle ist belegt",
                   "Le port est occupé", "El puerto está ocupado"}),
          paragraph(
              {"**… is already in use by another program.** Close serial monitors that still "
               "hold the port (Arduino IDE, PlatformIO, `screen`, `minicom`). Right after a board "
               "is plugged in, ModemManager may probe it for a few seconds; the package's udev "
               "rule prevents that. Without the package, wait a moment and flash again.",
               "**… is al in gebruik door een ander programma.** Sluit seriële monitors die de "
               "poort nog vasthouden (Arduino IDE, PlatformIO, `screen`, `minicom`). Vlak na het "
               "aansluiten kan ModemManager een board een paar seconden aftasten; de udev-regel "
               "van het pakket voorkomt dat. Zonder het pakket wacht je even en flash je "
               "opnieuw.",
               "**… wird bereits von einem anderen Programm verwendet.** Schließe serielle "
               "Monitore, die die Schnittstelle noch halten (Arduino IDE, PlatformIO, `screen`, "
               "`minicom`). Direkt nach dem Anstecken kann ModemManager ein Board einige "
               "Sekunden lang abfragen; die udev-Regel des Pakets verhindert das. Ohne das Paket "
               "warte kurz und flashe erneut.",
               "**… est déjà utilisé par un autre programme.** Fermez les moniteurs série qui "
               "tiennent encore le port (IDE Arduino, PlatformIO, `screen`, `minicom`). Juste "
               "après le branchement, ModemManager peut sonder une carte pendant quelques "
               "secondes\u00A0; la règle udev du paquet l’en empêche. Sans le paquet, attendez un "
               "instant et relancez le flashage.",
               "**… ya está en uso por otro programa.** Cierra los monitores serie que aún tengan "
               "el puerto (IDE de Arduino, PlatformIO, `screen`, `minicom`). Justo después de "
               "conectar una placa, ModemManager puede sondearla unos segundos; la regla udev del "
               "paquete lo evita. Sin el paquete, espera un momento y vuelve a flashear."}),

          heading({"No connection with the bootloader", "Geen verbinding met de bootloader",
                   "Keine Verbindung zum Bootloader", "Pas de connexion avec le bootloader",
                   "No hay conexión con el bootloader"}),
          bullets({
              {"Hold BOOT (also called IO0 or FLASH), briefly press RESET (EN or RST), "
               "release BOOT and flash again. For boards that never start the bootloader by "
               "themselves choose the reset method **Manual (BOOT button)**.",
               "Houd BOOT (ook IO0 of FLASH genoemd) ingedrukt, druk kort op RESET (EN of "
               "RST), laat BOOT los en flash opnieuw. Kies voor boards die de bootloader nooit "
               "zelf starten de resetmethode **Handmatig (BOOT-knop)**.",
               "Halte BOOT (auch IO0 oder FLASH genannt) gedrückt, drücke kurz RESET (EN "
               "oder RST), lass BOOT los und flashe erneut. Für Boards, die den Bootloader nie "
               "von selbst starten, wähle die Reset-Methode **Manuell (BOOT-Taste)**.",
               "Maintenez BOOT (aussi appelé IO0 ou FLASH), appuyez brièvement sur RESET "
               "(EN ou RST), relâchez BOOT et relancez le flashage. Pour les cartes qui ne lancent "
               "jamais le bootloader d’elles-mêmes, choisissez la méthode **Manuel (bouton "
               "BOOT)**.",
               "Mantén pulsado BOOT (también llamado IO0 o FLASH), pulsa brevemente RESET "
               "(EN o RST), suelta BOOT y vuelve a flashear. Para placas que nunca arrancan el "
               "bootloader por sí solas, elige el método **Manual (botón BOOT)**."},
              {"Check that the port belongs to this board and that the target matches it: an "
               "Arduino target on an ESP board, or the reverse, never connects.",
               "Controleer of de poort bij dit board hoort en of het doel erbij past: een "
               "Arduino-doel op een ESP-board, of andersom, maakt nooit verbinding.",
               "Prüfe, ob die Schnittstelle zu diesem Board gehört und das Ziel dazu passt: Ein "
               "Arduino-Ziel auf einem ESP-Board oder umgekehrt verbindet sich nie.",
               "Vérifiez que le port est bien celui de cette carte et que la cible lui "
               "correspond\u00A0: une cible Arduino sur une carte ESP, ou l’inverse, ne se "
               "connecte jamais.",
               "Comprueba que el puerto es el de esta placa y que el destino le corresponde: un "
               "destino Arduino en una placa ESP, o al revés, nunca conecta."},
              {"A board that draws more current than the port supplies resets again and again: "
               "disconnect what is attached to it or use a powered hub.",
               "Een board dat meer stroom trekt dan de poort levert, reset steeds opnieuw: "
               "koppel los wat eraan hangt of gebruik een hub met eigen voeding.",
               "Ein Board, das mehr Strom zieht, als die Buchse liefert, startet immer wieder "
               "neu: Trenne, was daran hängt, oder nimm einen Hub mit eigener Stromversorgung.",
               "Une carte qui consomme plus de courant que le port n’en fournit redémarre sans "
               "cesse\u00A0: débranchez ce qui y est relié ou utilisez un hub alimenté.",
               "Una placa que consume más corriente de la que da el puerto se reinicia una y otra "
               "vez: desconecta lo que tenga enchufado o usa un hub con alimentación propia."},
          }),

          heading({"A board that comes back on another port",
                   "Een board dat op een andere poort terugkomt",
                   "Ein Board, das an einer anderen Schnittstelle wiederkommt",
                   "Une carte qui revient sur un autre port",
                   "Una placa que vuelve en otro puerto"}),
          paragraph(
              {"Boards with USB in the chip (ESP32-S3, C3 and C6 on their own USB port; "
               "Leonardo, Micro, Pro Micro) disconnect and reconnect while they restart, "
               "sometimes under a new name such as `/dev/ttyACM1`. Tarnwick follows an Arduino "
               "board to its bootloader port. **The bootloader did not appear.** Press the reset "
               "button twice quickly and flash again at once: the bootloader then waits about "
               "eight seconds. For an ESP board whose firmware switches USB off, hold BOOT while "
               "plugging it in, choose the port that appears and the reset method **Manual (BOOT "
               "button)**.",
               "Boards met USB in de chip (ESP32-S3, C3 en C6 aan hun eigen USB-poort; Leonardo, "
               "Micro, Pro Micro) verdwijnen en verschijnen weer tijdens een herstart, soms onder "
               "een nieuwe naam zoals `/dev/ttyACM1`. Tarnwick volgt een Arduino-board naar zijn "
               "bootloaderpoort. **De bootloader verscheen niet.** Druk twee keer snel op de "
               "resetknop en flash meteen opnieuw: de bootloader wacht dan zo'n acht seconden. "
               "Houd bij een ESP-board waarvan de firmware USB uitschakelt BOOT ingedrukt tijdens "
               "het aansluiten, kies de poort die verschijnt en de resetmethode **Handmatig "
               "(BOOT-knop)**.",
               "Boards mit USB im Chip (ESP32-S3, C3 und C6 am eigenen USB-Anschluss; Leonardo, "
               "Micro, Pro Micro) melden sich beim Neustart ab und wieder an, manchmal unter "
               "einem neuen Namen wie `/dev/ttyACM1`. Einem Arduino-Board folgt Tarnwick zu "
               "seiner Bootloader-Schnittstelle. **Der Bootloader ist nicht erschienen.** Drücke "
               "zweimal schnell die Reset-Taste und flashe sofort erneut: Der Bootloader wartet "
               "dann etwa acht Sekunden. Bei einem ESP-Board, dessen Firmware USB abschaltet, "
               "halte beim Anstecken BOOT gedrückt und wähle die erscheinende Schnittstelle und "
               "die Reset-Methode **Manuell (BOOT-Taste)**.",
               "Les cartes dont la puce intègre l’USB (ESP32-S3, C3 et C6 sur leur propre port "
               "USB\u00A0; Leonardo, Micro, Pro Micro) se déconnectent et se reconnectent en "
               "redémarrant, parfois sous un nouveau nom comme `/dev/ttyACM1`. Tarnwick suit une "
               "carte Arduino jusqu’au port de son bootloader. **Le bootloader n’est pas "
               "apparu.** Appuyez deux fois rapidement sur le bouton reset et relancez "
               "aussitôt le flashage\u00A0; le bootloader attend alors environ huit secondes. "
               "Pour une carte ESP dont le firmware coupe l’USB, maintenez BOOT en la branchant, "
               "puis choisissez le port qui apparaît et la méthode **Manuel (bouton BOOT)**.",
               "Las placas con el USB en el chip (ESP32-S3, C3 y C6 en su propio puerto USB; "
               "Leonardo, Micro, Pro Micro) se desconectan y se vuelven a conectar al "
               "reiniciarse, a veces con un nombre nuevo como `/dev/ttyACM1`. Tarnwick sigue a "
               "una placa Arduino hasta el puerto de su bootloader. **El bootloader no "
               "apareció.** Pulsa dos veces rápido el botón de reinicio y vuelve a flashear "
               "enseguida; el bootloader espera entonces unos ocho segundos. En una placa ESP "
               "cuyo firmware apaga el USB, mantén pulsado BOOT al conectarla y elige el puerto "
               "que aparece y el método **Manual (botón BOOT)**."}),

          heading({"Messages of a run", "Meldingen tijdens het flashen", "Meldungen beim Flashen",
                   "Messages du flashage", "Mensajes del flasheo"}),
          table({
              {{"… is connected, but this product is for an …",
                "… is aangesloten, maar dit product is voor een …",
                "… ist angeschlossen, aber dieses Produkt ist für einen …",
                "… est connecté, mais ce produit est destiné à un …",
                "… está conectado, pero este producto es para un …"},
               {"Another ESP chip is connected than the product names. Connect the right board "
                "or change the target.",
                "Er is een andere ESP-chip aangesloten dan het product noemt. Sluit het juiste "
                "board aan of verander het doel.",
                "Angeschlossen ist ein anderer ESP-Chip, als das Produkt nennt. Schließe das "
                "richtige Board an oder ändere das Ziel.",
                "La puce ESP branchée n’est pas celle du produit. Branchez la bonne carte ou "
                "changez la cible.",
                "El chip ESP conectado no es el que indica el producto. Conecta la placa correcta "
                "o cambia el destino."}},
              {{"Wrong chip: signature …", "Verkeerde chip: signatuur …",
                "Falscher Chip: Signatur …", "Mauvaise puce\u00A0: signature …",
                "Chip incorrecto: firma …"},
               {"The Arduino's chip does not belong to the chosen board, for example a Mega "
                "chosen for an Uno. Nothing was written; choose the right board.",
                "De chip van de Arduino hoort niet bij het gekozen board, bijvoorbeeld een Mega "
                "gekozen voor een Uno. Er is niets geschreven; kies het juiste board.",
                "Der Chip des Arduino gehört nicht zum gewählten Board, etwa ein Mega, der für "
                "einen Uno gewählt wurde. Es wurde nichts geschrieben; wähle das richtige Board.",
                "La puce de l’Arduino ne correspond pas à la carte choisie, par exemple une Mega "
                "choisie pour une Uno. Rien n’a été écrit\u00A0; choisissez la bonne carte.",
                "El chip del Arduino no corresponde a la placa elegida, por ejemplo una Mega "
                "elegida para un Uno. No se ha escrito nada; elige la placa correcta."}},
              {{"No answer from the bootloader. Is the board right …?",
                "Geen antwoord van de bootloader. Is het juiste board gekozen …?",
                "Keine Antwort vom Bootloader. Ist das richtige Board gewählt …?",
                "Pas de réponse du bootloader. La carte choisie est-elle la bonne…\u00A0?",
                "El bootloader no responde. ¿Es la placa correcta…?"},
               {"The Arduino bootloader stayed silent. On a Nano try the other bootloader (old "
                "or new); check the port and close serial monitors.",
                "De Arduino-bootloader bleef stil. Probeer bij een Nano de andere bootloader "
                "(oud of nieuw); controleer de poort en sluit seriële monitors.",
                "Der Arduino-Bootloader blieb stumm. Versuche beim Nano den anderen Bootloader "
                "(alt oder neu); prüfe die Schnittstelle und schließe serielle Monitore.",
                "Le bootloader Arduino est resté muet. Sur une Nano, essayez l’autre bootloader "
                "(ancien ou nouveau)\u00A0; vérifiez le port et fermez les moniteurs série.",
                "El bootloader de Arduino no contestó. En un Nano prueba el otro bootloader "
                "(antiguo o nuevo); revisa el puerto y cierra los monitores serie."}},
              {{"The sketch is … bytes; this board holds … bytes.",
                "De sketch is … bytes; dit board biedt plaats aan … bytes.",
                "Der Sketch ist … Byte groß; dieses Board fasst … Byte.",
                "Le sketch fait … octets\u00A0; cette carte en contient ….",
                "El sketch ocupa … bytes; esta placa admite … bytes."},
               {"The sketch does not fit beside the bootloader. Build it smaller or for a larger "
                "board.",
                "De sketch past niet naast de bootloader. Maak hem kleiner of bouw voor een "
                "groter board.",
                "Der Sketch passt nicht neben den Bootloader. Mach ihn kleiner oder baue ihn für "
                "ein größeres Board.",
                "Le sketch ne tient pas à côté du bootloader. Réduisez-le ou compilez-le pour une "
                "carte plus grande.",
                "El sketch no cabe junto al bootloader. Redúcelo o compílalo para una placa "
                "mayor."}},
              {{"The bootloader refused command …", "De bootloader weigerde opdracht …",
                "Der Bootloader hat den Befehl … abgelehnt",
                "Le bootloader a refusé la "
                "commande …",
                "El bootloader rechazó la orden …"},
               {"Usually a flash setting the module cannot use: set flash mode and size to **As "
                "in file** or DIO, and check the board's power supply.",
                "Meestal een flashinstelling die de module niet aankan: zet flashmodus en "
                "-grootte op **Zoals in bestand** of DIO, en controleer de voeding van het "
                "board.",
                "Meist eine Flash-Einstellung, die das Modul nicht kann: Stelle Flash-Modus und "
                "-Größe auf **Wie in der Datei** oder DIO und prüfe die Stromversorgung des "
                "Boards.",
                "En général un réglage de flash que le module ne supporte pas\u00A0: mettez le "
                "mode et la taille de la flash sur **Comme dans le fichier** ou DIO, et "
                "vérifiez l’alimentation de la carte.",
                "Suele ser un ajuste de flash que el módulo no admite: pon el modo y el tamaño "
                "de la flash en **Como en el archivo** o DIO, y revisa la alimentación de la "
                "placa."}},
              {{"No answer from the bootloader to command …",
                "Geen antwoord van de bootloader op opdracht …",
                "Keine Antwort des Bootloaders auf den Befehl …",
                "Pas de réponse du bootloader à la commande …",
                "El bootloader no respondió a la orden …"},
               {"The connection broke off during the run. Choose a lower **Speed while "
                "flashing**, a shorter cable, or no hub.",
                "De verbinding viel weg tijdens het flashen. Kies een lagere **Snelheid tijdens "
                "flashen**, een kortere kabel of geen hub.",
                "Die Verbindung ist unterwegs abgerissen. Wähle eine niedrigere "
                "**Geschwindigkeit beim Flashen**, ein kürzeres Kabel oder keinen Hub.",
                "La liaison s’est interrompue en cours de route. Choisissez une **Vitesse de "
                "flashage** plus basse, un câble plus court ou pas de hub.",
                "La conexión se cortó durante el flasheo. Elige una **Velocidad de flasheo** más "
                "baja, un cable más corto o ningún hub."}},
              {{"Verification failed: …", "Controle mislukt: …", "Überprüfung fehlgeschlagen: …",
                "Échec de la vérification\u00A0: …", "La verificación falló: …"},
               {"What the board holds differs from the file. Flash again, at a lower speed if "
                "it repeats; a board that fails every time may have worn-out flash.",
                "Wat op het board staat, wijkt af van het bestand. Flash opnieuw, bij herhaling "
                "op een lagere snelheid; een board dat steeds faalt, kan versleten flash hebben.",
                "Was auf dem Board steht, weicht von der Datei ab. Flashe erneut, bei "
                "Wiederholung langsamer; ein Board, das jedes Mal scheitert, hat vielleicht "
                "verschlissenen Flash-Speicher.",
                "Le contenu de la carte diffère du fichier. Relancez le flashage, plus lentement "
                "si cela se répète\u00A0; une carte qui échoue à chaque fois a peut-être une "
                "flash usée.",
                "Lo que contiene la placa no coincide con el archivo. Vuelve a flashear, más "
                "despacio si se repite; una placa que falla siempre puede tener la flash "
                "gastada."}},
              {{"Stopped.", "Gestopt.", "Gestoppt.", "Arrêté.", "Detenido."},
               {"The run was stopped. The board probably does not start until it is flashed "
                "again.",
                "Het flashen is gestopt. Het board start waarschijnlijk pas weer na opnieuw "
                "flashen.",
                "Der Durchlauf wurde abgebrochen. Das Board startet wahrscheinlich erst wieder "
                "nach erneutem Flashen.",
                "Le flashage a été arrêté. La carte ne démarrera sans doute qu’après un nouveau "
                "flashage.",
                "El flasheo se detuvo. Probablemente la placa no arranque hasta volver a "
                "flashearla."}},
          }),

          heading({"Messages of the serial port", "Meldingen van de seriële poort",
                   "Meldungen der seriellen Schnittstelle", "Messages du port série",
                   "Mensajes del puerto serie"}),
          table({
              {{"… is not a valid serial port.", "… is geen geldige seriële poort.",
                "… ist keine gültige serielle Schnittstelle.", "… n’est pas un port série valide.",
                "… no es un puerto serie válido."},
               {"Only serial devices such as `/dev/ttyUSB0` or `/dev/ttyACM0` can be used. "
                "Choose a port from the list.",
                "Alleen seriële apparaten zoals `/dev/ttyUSB0` of `/dev/ttyACM0` zijn bruikbaar. "
                "Kies een poort uit de lijst.",
                "Nur serielle Geräte wie `/dev/ttyUSB0` oder `/dev/ttyACM0` sind verwendbar. "
                "Wähle eine Schnittstelle aus der Liste.",
                "Seuls les périphériques série comme `/dev/ttyUSB0` ou `/dev/ttyACM0` sont "
                "utilisables. Choisissez un port dans la liste.",
                "Solo sirven dispositivos serie como `/dev/ttyUSB0` o `/dev/ttyACM0`. Elige un "
                "puerto de la lista."}},
              {{"Cannot open …: …", "Kan … niet openen: …", "… kann nicht geöffnet werden: …",
                "Impossible d’ouvrir …\u00A0: …", "No se puede abrir …: …"},
               {"With “Permission denied” see above. “No such file or directory”: the board was "
                "unplugged; plug it in and choose its port again.",
                "Bij „Permission denied” zie hierboven. „No such file or directory”: het board "
                "is losgekoppeld; sluit het aan en kies zijn poort opnieuw.",
                "Bei „Permission denied“ siehe oben. „No such file or directory“: Das Board "
                "wurde abgezogen; steck es an und wähle seine Schnittstelle erneut.",
                "Avec «\u00A0Permission denied\u00A0», voir plus haut. «\u00A0No such file or "
                "directory\u00A0»\u00A0: la carte a été débranchée\u00A0; rebranchez-la et "
                "choisissez de nouveau son port.",
                "Con «Permission denied», mira más arriba. «No such file or directory»: la placa "
                "se desconectó; conéctala y vuelve a elegir su puerto."}},
              {{"Baud rate … is not supported by this adapter.",
                "Baudrate … wordt niet ondersteund door deze adapter.",
                "Baudrate … wird von diesem Adapter nicht unterstützt.",
                "Cet adaptateur ne prend pas en charge le débit de … bauds.",
                "Este adaptador no admite la velocidad de … baudios."},
               {"Choose a lower **Speed while flashing**, such as 460800 or 115200.",
                "Kies een lagere **Snelheid tijdens flashen**, zoals 460800 of 115200.",
                "Wähle eine niedrigere **Geschwindigkeit beim Flashen**, etwa 460800 oder "
                "115200.",
                "Choisissez une **Vitesse de flashage** plus basse, comme 460800 ou 115200.",
                "Elige una **Velocidad de flasheo** más baja, como 460800 o 115200."}},
              {{"The adapter was disconnected.", "De adapter is losgekoppeld.",
                "Der Adapter wurde getrennt.", "L’adaptateur a été déconnecté.",
                "El adaptador se ha desconectado."},
               {"The port vanished during the run: a loose cable, too little power, or a board "
                "that restarted on its own. Connect it firmly and flash again.",
                "De poort verdween tijdens het flashen: een losse kabel, te weinig stroom of een "
                "board dat vanzelf herstartte. Sluit het stevig aan en flash opnieuw.",
                "Die Schnittstelle verschwand mitten im Durchlauf: ein lockeres Kabel, zu wenig "
                "Strom oder ein Board, das von selbst neu startete. Steck es fest an und flashe "
                "erneut.",
                "Le port a disparu pendant le flashage\u00A0: câble mal branché, alimentation "
                "insuffisante ou carte qui a redémarré d’elle-même. Branchez-la bien et "
                "relancez le flashage.",
                "El puerto desapareció durante el flasheo: un cable flojo, poca corriente o una "
                "placa que se reinició sola. Conéctala bien y vuelve a flashear."}},
              {{"Sending failed: …", "Verzenden mislukt: …", "Senden fehlgeschlagen: …",
                "L’envoi a échoué\u00A0: …", "No se pudo enviar: …"},
               {"The adapter took no more data. Unplug it, plug it in again and retry, if need "
                "be at a lower speed.",
                "De adapter nam geen data meer aan. Koppel hem los, sluit hem weer aan en probeer "
                "opnieuw, zo nodig op een lagere snelheid.",
                "Der Adapter nahm keine Daten mehr an. Zieh ihn ab, steck ihn wieder an und "
                "versuche es erneut, notfalls langsamer.",
                "L’adaptateur n’acceptait plus de données. Débranchez-le, rebranchez-le et "
                "réessayez, au besoin à une vitesse plus basse.",
                "El adaptador dejó de aceptar datos. Desconéctalo, vuelve a conectarlo e "
                "inténtalo de nuevo, si hace falta a menor velocidad."}},
              {{"Configuring the serial port failed: …",
                "Instellen van de seriële poort mislukt: …",
                "Die serielle Schnittstelle konnte nicht eingerichtet werden: …",
                "La configuration du port série a échoué\u00A0: …",
                "No se pudo configurar el puerto serie: …"},
               {"The device does not behave like a serial adapter, or its driver is stuck. "
                "Replug the board; check that you chose the right port.",
                "Het apparaat gedraagt zich niet als seriële adapter, of zijn driver hangt. Sluit "
                "het board opnieuw aan; controleer of je de juiste poort hebt gekozen.",
                "Das Gerät verhält sich nicht wie ein serieller Adapter, oder sein Treiber hängt. "
                "Steck das Board neu an; prüfe, ob du die richtige Schnittstelle gewählt hast.",
                "Le périphérique ne se comporte pas comme un adaptateur série, ou son pilote est "
                "bloqué. Rebranchez la carte\u00A0; vérifiez que vous avez choisi le bon port.",
                "El dispositivo no se comporta como un adaptador serie o su controlador se ha "
                "bloqueado. Vuelve a conectar la placa; comprueba que elegiste el puerto "
                "correcto."}},
              {{"The serial port is not open.", "De seriële poort is niet geopend.",
                "Die serielle Schnittstelle ist nicht geöffnet.", "Le port série n’est pas ouvert.",
                "El puerto serie no está abierto."},
               {"The run lost its port. Flash again; if it repeats, save the log and report it.",
                "Het flashen raakte zijn poort kwijt. Flash opnieuw; gebeurt het vaker, bewaar "
                "dan het logboek en meld het.",
                "Der Durchlauf hat seine Schnittstelle verloren. Flashe erneut; wenn es sich "
                "wiederholt, speichere das Protokoll und melde es.",
                "Le flashage a perdu son port. Relancez-le\u00A0; si cela se reproduit, "
                "enregistrez le journal et signalez-le.",
                "El flasheo perdió su puerto. Vuelve a flashear; si se repite, guarda el registro "
                "e informa del problema."}},
          }),

          heading({"Before flashing and when opening files",
                   "Voor het flashen en bij het openen van bestanden",
                   "Vor dem Flashen und beim Öffnen von Dateien",
                   "Avant le flashage et à l’ouverture des fichiers",
                   "Antes de flashear y al abrir archivos"}),
          paragraph(
              {"Tarnwick checks the product before every run; an error in the **Location and "
               "checks** column stops it, a warning does not.",
               "Tarnwick controleert het product voor elke flash; een fout in de kolom "
               "**Locatie en controles** houdt die tegen, een waarschuwing niet.",
               "Tarnwick prüft das Produkt vor jedem Durchlauf; ein Fehler in der Spalte **Ort "
               "und Prüfungen** hält ihn auf, eine Warnung nicht.",
               "Tarnwick contrôle le produit avant chaque flashage\u00A0; une erreur dans la "
               "colonne **Emplacement et contrôles** l’empêche, un avertissement non.",
               "Tarnwick revisa el producto antes de cada flasheo; un error en la columna "
               "**Ubicación y comprobaciones** lo impide, un aviso no."}),
          table({
              {{"Nothing is ready to flash.", "Er is niets klaar om te flashen.",
                "Es ist nichts zum Flashen bereit.", "Rien n’est prêt à être flashé.",
                "No hay nada listo para flashear."},
               {"Add firmware, or tick at least one file.",
                "Voeg firmware toe, of vink minstens één bestand aan.",
                "Füge Firmware hinzu oder hake mindestens eine Datei an.",
                "Ajoutez un firmware, ou cochez au moins un fichier.",
                "Añade firmware o marca al menos un archivo."}},
              {{"Overlaps … / The address must be a multiple of 0x1000.",
                "Overlapt met … / Het adres moet een veelvoud van 0x1000 zijn.",
                "Überschneidet sich mit … / Die Adresse muss ein Vielfaches von 0x1000 sein.",
                "Chevauche … / L’adresse doit être un multiple de 0x1000.",
                "Se solapa con … / La dirección debe ser múltiplo de 0x1000."},
               {"Correct the address; add the partition table so the addresses can be read "
                "from it.",
                "Verbeter het adres; voeg de partitietabel toe, zodat de adressen daaruit gelezen "
                "kunnen worden.",
                "Korrigiere die Adresse; füge die Partitionstabelle hinzu, damit die Adressen "
                "daraus gelesen werden.",
                "Corrigez l’adresse\u00A0; ajoutez la table de partitions pour que les adresses "
                "y soient lues.",
                "Corrige la dirección; añade la tabla de particiones para que las direcciones se "
                "lean de ella."}},
              {{"This is not an ESP firmware image. / Built for …, not for ….",
                "Dit is geen ESP-firmware-image. / Gebouwd voor …, niet voor ….",
                "Das ist kein ESP-Firmware-Image. / Für … gebaut, nicht für ….",
                "Ce n’est pas une image de firmware ESP. / Compilé pour …, pas pour ….",
                "No es una imagen de firmware ESP. / Compilado para …, no para …."},
               {"The file is not a build for this chip. Take the right file from the build "
                "folder, or set its kind to **Other**.",
                "Het bestand is geen build voor deze chip. Neem het juiste bestand uit de "
                "buildmap, of zet de soort op **Overig**.",
                "Die Datei ist kein Build für diesen Chip. Nimm die richtige Datei aus dem "
                "Build-Ordner oder stelle ihre Art auf **Sonstiges**.",
                "Le fichier n’est pas un build pour cette puce. Prenez le bon fichier dans le "
                "dossier de build, ou mettez son type sur **Autre**.",
                "El archivo no es una compilación para este chip. Toma el archivo correcto de la "
                "carpeta de compilación o pon su tipo en **Otro**."}},
              {{"Larger than partition …", "Groter dan partitie …", "Größer als Partition …",
                "Plus grand que la partition …", "Mayor que la partición …"},
               {"The application or file system does not fit its partition: use a partition "
                "table with a larger one.",
                "De applicatie of het bestandssysteem past niet in zijn partitie: gebruik een "
                "partitietabel met een grotere.",
                "Anwendung oder Dateisystem passt nicht in seine Partition: Nimm eine "
                "Partitionstabelle mit einer größeren.",
                "L’application ou le système de fichiers ne tient pas dans sa partition\u00A0: "
                "utilisez une table de partitions qui en prévoit une plus grande.",
                "La aplicación o el sistema de archivos no cabe en su partición: usa una tabla "
                "de particiones con una mayor."}},
              {{"An Arduino board takes one sketch. / Too large for this board …",
                "Een Arduino-board neemt één sketch. / Te groot voor dit board …",
                "Ein Arduino-Board nimmt nur einen Sketch auf. / Zu groß für dieses Board …",
                "Une carte Arduino ne prend qu’un seul sketch. / Trop grand pour cette carte …",
                "Una placa Arduino admite un solo sketch. / Demasiado grande para esta placa …"},
               {"Keep one sketch, without bootloader, that fits the board.",
                "Houd één sketch over, zonder bootloader, die op het board past.",
                "Behalte einen Sketch ohne Bootloader, der auf das Board passt.",
                "Gardez un seul sketch, sans bootloader, qui tienne sur la carte.",
                "Deja un solo sketch, sin bootloader, que quepa en la placa."}},
              {{"… is missing from the product. / … is damaged or changed …",
                "… ontbreekt in het product. / … is beschadigd of gewijzigd …",
                "… fehlt im Produkt. / … ist beschädigt oder verändert …",
                "… est absent du produit. / … est endommagé ou modifié …",
                "… falta en el producto. / … está dañado o modificado …"},
               {"The product file is incomplete or was altered after saving. Open the original "
                "or add the firmware again and save.",
                "Het productbestand is onvolledig of na het opslaan veranderd. Open het origineel "
                "of voeg de firmware opnieuw toe en sla op.",
                "Die Produktdatei ist unvollständig oder wurde nach dem Speichern verändert. Öffne "
                "das Original oder füge die Firmware neu hinzu und speichere.",
                "Le fichier produit est incomplet ou a été modifié après l’enregistrement. Ouvrez "
                "l’original ou ajoutez de nouveau le firmware et enregistrez.",
                "El archivo de producto está incompleto o se modificó después de guardarlo. Abre "
                "el original o vuelve a añadir el firmware y guarda."}},
              {{"…: it is not a product file of this app. / …: the product was made with a "
                "newer version of the app.",
                "…: het is geen productbestand van deze app. / …: het product is gemaakt met een "
                "nieuwere versie van de app.",
                "…: es ist keine Produktdatei dieser App. / …: das Produkt wurde mit einer "
                "neueren Version der App erstellt.",
                "…\u00A0: ce n’est pas un fichier produit de cette app. / …\u00A0: le produit a "
                "été créé avec une version plus récente de l’app.",
                "…: no es un archivo de producto de esta app. / …: el producto se creó con una "
                "versión más reciente de la app."},
               {"Open a `.twflash` file, or update Tarnwick to open a product from a newer "
                "version.",
                "Open een `.twflash`-bestand, of werk Tarnwick bij om een product van een "
                "nieuwere versie te openen.",
                "Öffne eine `.twflash`-Datei oder aktualisiere Tarnwick, um ein Produkt einer "
                "neueren Version zu öffnen.",
                "Ouvrez un fichier `.twflash`, ou mettez Tarnwick à jour pour ouvrir un produit "
                "d’une version plus récente.",
                "Abre un archivo `.twflash` o actualiza Tarnwick para abrir un producto de una "
                "versión más reciente."}},
              {{"…: the file is empty. / …: no firmware files found …",
                "…: het bestand is leeg. / …: geen firmwarebestanden gevonden …",
                "…: die Datei ist leer. / …: keine Firmware-Dateien gefunden …",
                "…\u00A0: le fichier est vide. / …\u00A0: aucun fichier de firmware trouvé …",
                "…: el archivo está vacío. / …: no se han encontrado archivos de firmware …"},
               {"Build the project first; for PlatformIO choose the folder "
                "`.pio/build/<environment>`.",
                "Bouw het project eerst; kies bij PlatformIO de map `.pio/build/<omgeving>`.",
                "Baue das Projekt zuerst; wähle bei PlatformIO den Ordner "
                "`.pio/build/<Umgebung>`.",
                "Compilez d’abord le projet\u00A0; pour PlatformIO, choisissez le dossier "
                "`.pio/build/<environnement>`.",
                "Compila primero el proyecto; en PlatformIO elige la carpeta "
                "`.pio/build/<entorno>`."}},
              {{"…: line … is not valid Intel HEX. / …: the HEX file …",
                "…: regel … is geen geldige Intel HEX. / …: het HEX-bestand …",
                "…: Zeile … ist kein gültiges Intel-HEX. / …: die HEX-Datei …",
                "…\u00A0: la ligne … n’est pas une ligne Intel HEX valide. / …\u00A0: le fichier "
                "HEX …",
                "…: la línea … no es una línea Intel HEX válida. / …: el archivo HEX …"},
               {"The `.hex` file is damaged, empty or larger than 4 MB. Build it again.",
                "Het `.hex`-bestand is beschadigd, leeg of groter dan 4 MB. Bouw het opnieuw.",
                "Die `.hex`-Datei ist beschädigt, leer oder größer als 4 MB. Baue sie neu.",
                "Le fichier `.hex` est endommagé, vide ou dépasse 4\u00A0Mo. Recompilez-le.",
                "El archivo `.hex` está dañado, vacío o supera los 4 MB. Vuelve a compilarlo."}},
          }),
          tip({"The log (Ctrl+L) shows every step of a run. Save it (Ctrl+Alt+S) and attach it "
               "when you ask someone for help.",
               "Het logboek (Ctrl+L) toont elke stap van een flash. Bewaar het (Ctrl+Alt+S) en "
               "stuur het mee als je iemand om hulp vraagt.",
               "Das Protokoll (Strg+L) zeigt jeden Schritt eines Durchlaufs. Speichere es "
               "(Strg+Alt+S) und häng es an, wenn du jemanden um Hilfe bittest.",
               "Le journal (Ctrl+L) montre chaque étape d’un flashage. Enregistrez-le "
               "(Ctrl+Alt+S) et joignez-le quand vous demandez de l’aide.",
               "El registro (Control+L) muestra cada paso de un flasheo. Guárdalo (Control+Alt+S) "
               "y "
               "adjúntalo cuando pidas ayuda."}),
      }};
}

} // namespace tarnwick::L10n::Help::content
