// The help topic about boards on other computers, reached through a serial server.

#include "Localization/HelpContent.hpp"

namespace tarnwick::L10n::Help::content {

namespace {

// A ser2net configuration as a code block, its first line a comment in the reader's language.
HelpBlock configuration(const Texts& comment) {
  return {HelpBlock::paragraph{"```yaml\n# " + tr(comment) +
                               "\n"
                               "connection: &board1\n"
                               "  accepter: telnet(rfc2217),tcp,2000\n"
                               "  connector: serialdev,/dev/ttyUSB0,115200n81,local\n"
                               "  options:\n"
                               "    chardelay: false\n"
                               "```"}};
}

} // namespace

HelpTopic network() {
  return {
      "network",
      tr({"Boards on other computers", "Boards aan andere computers", "Boards an anderen Rechnern",
          "Cartes sur d’autres ordinateurs", "Placas en otros equipos"}),
      "network",
      {
          paragraph(
              {"A board does not have to hang on this computer. A small computer beside the boards "
               "(a Raspberry Pi, say) runs the serial server `ser2net`, which offers each "
               "board's serial port on the network with RFC 2217: besides the bytes it carries "
               "the line speed and the DTR and RTS lines, so the board is reset into its "
               "bootloader as over USB. Tarnwick names such a port `rfc2217://HOST:PORT`, for "
               "example `rfc2217://rack3.local:2000`; an IPv6 address goes in brackets: "
               "`rfc2217://[fd00::3]:2000`.",
               "Een board hoeft niet aan deze computer te hangen. Een kleine computer naast de "
               "boards (een Raspberry Pi bijvoorbeeld) draait de seriële server `ser2net`, die "
               "de seriële poort van elk board met RFC 2217 op het netwerk aanbiedt: naast de "
               "bytes draagt die de snelheid en de DTR- en RTS-lijnen, zodat het board net als "
               "via USB in zijn bootloader wordt gereset. Tarnwick noemt zo’n poort "
               "`rfc2217://HOST:POORT`, bijvoorbeeld `rfc2217://rack3.local:2000`; een IPv6-adres "
               "staat tussen haken: `rfc2217://[fd00::3]:2000`.",
               "Ein Board muss nicht an diesem Rechner hängen. Ein kleiner Rechner neben den "
               "Boards (etwa ein Raspberry Pi) betreibt den seriellen Server `ser2net`, der die "
               "serielle Schnittstelle jedes Boards mit RFC 2217 im Netzwerk anbietet: Neben den "
               "Bytes überträgt er die Geschwindigkeit und die Leitungen DTR und RTS, sodass das "
               "Board wie über USB in seinen Bootloader zurückgesetzt wird. Tarnwick nennt so "
               "einen Port `rfc2217://HOST:PORT`, zum Beispiel `rfc2217://rack3.local:2000`; eine "
               "IPv6-Adresse steht in eckigen Klammern: `rfc2217://[fd00::3]:2000`.",
               "Une carte n’a pas besoin d’être branchée sur cet ordinateur. Un petit ordinateur "
               "à côté des cartes (un Raspberry Pi, par exemple) fait tourner le serveur série "
               "`ser2net`, qui offre le port série de chaque carte sur le réseau en RFC "
               "2217\u00A0: outre les octets, il transmet la vitesse et les lignes DTR et RTS, si "
               "bien que la carte est remise dans son bootloader comme par USB. Tarnwick nomme un "
               "tel port `rfc2217://HÔTE:PORT`, par exemple `rfc2217://rack3.local:2000`\u00A0; "
               "une adresse IPv6 se met entre crochets\u00A0: `rfc2217://[fd00::3]:2000`.",
               "Una placa no tiene que estar conectada a este equipo. Un pequeño ordenador junto "
               "a las placas (una Raspberry Pi, por ejemplo) ejecuta el servidor serie "
               "`ser2net`, que ofrece el puerto serie de cada placa en la red con RFC 2217: "
               "además de los bytes, transmite la velocidad y las líneas DTR y RTS, así que la "
               "placa se reinicia en su bootloader igual que por USB. Tarnwick llama a ese puerto "
               "`rfc2217://HOST:PUERTO`, por ejemplo `rfc2217://rack3.local:2000`; una dirección "
               "IPv6 va entre corchetes: `rfc2217://[fd00::3]:2000`."}),
          heading({"Setting up the serial server", "De seriële server inrichten",
                   "Den seriellen Server einrichten", "Installer le serveur série",
                   "Preparar el servidor serie"}),
          paragraph(
              {"On the computer with the boards, install ser2net (`sudo apt install ser2net` on "
               "Debian and Raspberry Pi OS), give each board a connection with a TCP port of its "
               "own in `/etc/ser2net.yaml`, in place of the examples there, and restart it (`sudo "
               "systemctl restart ser2net`):",
               "Installeer op de computer met de boards ser2net (`sudo apt install ser2net` op "
               "Debian en Raspberry Pi OS), geef elk board in `/etc/ser2net.yaml` een verbinding "
               "met een eigen TCP-poort, in plaats van de voorbeelden daar, en herstart het (`sudo "
               "systemctl restart ser2net`):",
               "Installiere auf dem Rechner mit den Boards ser2net (`sudo apt install ser2net` "
               "unter Debian und Raspberry Pi OS), gib jedem Board in `/etc/ser2net.yaml` anstelle "
               "der "
               "Beispiele dort eine Verbindung mit eigenem TCP-Port und starte es neu (`sudo "
               "systemctl restart "
               "ser2net`):",
               "Sur l’ordinateur des cartes, installez ser2net (`sudo apt install ser2net` sous "
               "Debian et Raspberry Pi OS), donnez à chaque carte une connexion avec son propre "
               "port TCP dans `/etc/ser2net.yaml`, à la place des exemples qui s’y trouvent, et "
               "redémarrez-le (`sudo systemctl restart "
               "ser2net`)\u00A0:",
               "En el equipo de las placas, instala ser2net (`sudo apt install ser2net` en Debian "
               "y Raspberry Pi OS), da a cada placa una conexión con su propio puerto TCP en "
               "`/etc/ser2net.yaml`, en lugar de los ejemplos que trae, y reinícialo (`sudo "
               "systemctl restart ser2net`):"}),
          configuration({"one connection per board, each on a TCP port of its own",
                         "één verbinding per board, elk op een eigen TCP-poort",
                         "eine Verbindung pro Board, jede an einem eigenen TCP-Port",
                         "une connexion par carte, chacune sur son propre port TCP",
                         "una conexión por placa, cada una en su propio puerto TCP"}),
          paragraph(
              {"`telnet(rfc2217)` makes it an RFC 2217 port; without it ser2net passes only bytes "
               "and the board cannot be reset. `chardelay: false` has ser2net pass each answer of "
               "the bootloader on at once: by default it holds every answer back for about two "
               "characters' time, at least a millisecond, which makes a flash some 15 % slower. "
               "A name under `/dev/serial/by-id/` instead of `/dev/ttyUSB0` keeps each board on "
               "its TCP port whatever order the boards are plugged in. Then flash with "
               "`tarnwick-cli flash --port rfc2217://rack3.local:2000 Sensor.twflash`.",
               "`telnet(rfc2217)` maakt er een RFC 2217-poort van; zonder geeft ser2net alleen "
               "bytes door en kan het board niet worden gereset. Met `chardelay: false` geeft "
               "ser2net elk antwoord van de bootloader meteen door: standaard houdt het elk "
               "antwoord ongeveer twee tekens lang vast, minstens een milliseconde, en dat maakt "
               "flashen zo’n 15 % trager. Een naam onder `/dev/serial/by-id/` in plaats van "
               "`/dev/ttyUSB0` houdt elk board op zijn TCP-poort, in welke volgorde de boards ook "
               "worden aangesloten. Flash dan met "
               "`tarnwick-cli flash --port rfc2217://rack3.local:2000 Sensor.twflash`.",
               "`telnet(rfc2217)` macht daraus einen RFC-2217-Port; ohne gibt ser2net nur Bytes "
               "weiter, und das Board lässt sich nicht zurücksetzen. Mit `chardelay: false` gibt "
               "ser2net jede Antwort des Bootloaders sofort weiter: Standardmäßig hält es jede "
               "Antwort etwa zwei Zeichen lang zurück, mindestens eine Millisekunde, was das "
               "Flashen um rund 15 % verlangsamt. Ein Name unter `/dev/serial/by-id/` statt "
               "`/dev/ttyUSB0` hält jedes Board an seinem TCP-Port, in welcher Reihenfolge die "
               "Boards auch angesteckt werden. Dann flashst du mit "
               "`tarnwick-cli flash --port rfc2217://rack3.local:2000 Sensor.twflash`.",
               "`telnet(rfc2217)` en fait un port RFC 2217\u00A0; sans lui, ser2net ne transmet "
               "que des octets et la carte ne peut pas être remise à zéro. Avec `chardelay: "
               "false`, ser2net transmet aussitôt chaque réponse du bootloader\u00A0: par défaut, "
               "il retient chaque réponse le temps d’environ deux caractères, au moins une "
               "milliseconde, ce qui ralentit le flashage d’environ 15\u00A0%. Un nom sous "
               "`/dev/serial/by-id/` au lieu de `/dev/ttyUSB0` garde chaque carte sur son port "
               "TCP, quel que soit l’ordre de branchement. Flashez ensuite avec "
               "`tarnwick-cli flash --port rfc2217://rack3.local:2000 Sensor.twflash`.",
               "`telnet(rfc2217)` lo convierte en un puerto RFC 2217; sin él, ser2net solo pasa "
               "bytes y la placa no se puede reiniciar. Con `chardelay: false`, ser2net pasa "
               "enseguida cada respuesta del bootloader: por defecto retiene cada respuesta "
               "durante unos dos caracteres, al menos un milisegundo, lo que hace el flasheo "
               "un 15 % más lento. Un nombre bajo `/dev/serial/by-id/` en lugar de "
               "`/dev/ttyUSB0` mantiene cada placa en su puerto TCP, sea cual sea el orden en que "
               "se conecten. Luego flashea con "
               "`tarnwick-cli flash --port rfc2217://rack3.local:2000 Sensor.twflash`."}),
          heading({"In the window", "In het venster", "Im Fenster", "Dans la fenêtre",
                   "En la ventana"}),
          paragraph(
              {"Choose **Add Network Port…** at the end of the **Serial port** list and enter the "
               "server's host and the board's TCP port, or paste the whole `rfc2217://` address. "
               "Tarnwick checks it as you type, remembers the port for the next start and lists "
               "it after the ports of this computer, marked as a network port. "
               "**Remove Network Port** in the same list forgets the selected one. Automatic "
               "flashing waits for boards plugged into this computer; for a board on the network "
               "press **Flash**.",
               "Kies **Netwerkpoort toevoegen…** onderaan de lijst **Seriële poort** en vul de "
               "host van de server en de TCP-poort van het board in, of plak het hele "
               "`rfc2217://`-adres. Tarnwick controleert het terwijl je typt, onthoudt de poort "
               "voor de volgende keer en zet hem na de poorten van deze computer, gemarkeerd als "
               "netwerkpoort. **Netwerkpoort verwijderen** in dezelfde lijst vergeet de gekozen "
               "poort weer. Automatisch flashen wacht op boards die op deze computer worden "
               "aangesloten; voor een board op het netwerk klik je op **Flashen**.",
               "Wähle **Netzwerkport hinzufügen …** am Ende der Liste **Serielle Schnittstelle** "
               "und gib den Host des Servers und den TCP-Port des Boards ein oder füge die ganze "
               "`rfc2217://`-Adresse ein. Tarnwick prüft sie schon beim Tippen, merkt sich den "
               "Port für den nächsten Start und führt ihn nach den Schnittstellen dieses Rechners "
               "auf, als Netzwerkport gekennzeichnet. **Netzwerkport entfernen** in derselben "
               "Liste vergisst den gewählten wieder. Automatisches Flashen wartet auf Boards, die "
               "an diesem Rechner angesteckt werden; für ein Board im Netzwerk klickst du auf "
               "**Flashen**.",
               "Choisissez **Ajouter un port réseau…** en bas de la liste **Port série** et "
               "saisissez l’hôte du serveur et le port TCP de la carte, ou collez l’adresse "
               "`rfc2217://` entière. Tarnwick la vérifie pendant la saisie, retient le port pour "
               "le prochain démarrage et le place après les ports de cet ordinateur, marqué comme "
               "port réseau. **Retirer le port réseau** dans la même liste oublie celui qui est "
               "choisi. Le flashage automatique attend les cartes branchées sur cet "
               "ordinateur\u00A0; pour une carte sur le réseau, cliquez sur **Flashage**.",
               "Elige **Añadir puerto de red…** al final de la lista **Puerto serie** y escribe el "
               "host del servidor y el puerto TCP de la placa, o pega la dirección `rfc2217://` "
               "completa. Tarnwick la comprueba mientras escribes, recuerda el puerto para el "
               "próximo inicio y lo pone después de los puertos de este equipo, marcado como "
               "puerto de red. **Quitar el puerto de red** en la misma lista olvida el elegido. "
               "El flasheo automático espera a placas conectadas a este equipo; para una placa en "
               "la red, pulsa **Flasheo**."}),
          paragraph(
              {"Where the computer with the boards announces its ports (add `mdns: true` to a "
               "connection's options in `/etc/ser2net.yaml`, and `mdns-sysattrs: true` for the "
               "board's USB ids too) and this computer runs the Avahi daemon (`avahi-daemon`), "
               "Tarnwick finds them by itself: they appear in the **Serial port** list under the "
               "name they are announced under, marked as network ports, and in `tarnwick-cli "
               "ports`. Tarnwick connects to such a port only when you choose it; the flashing "
               "station watches only the network ports you added yourself.",
               "Als de computer met de boards zijn poorten aankondigt (zet `mdns: true` bij de "
               "opties van een verbinding in `/etc/ser2net.yaml`, en `mdns-sysattrs: true` voor "
               "ook de USB-id’s van het board) en op deze computer de Avahi-daemon "
               "(`avahi-daemon`) draait, vindt Tarnwick ze zelf: ze verschijnen in de lijst "
               "**Seriële poort** onder de naam waarmee ze worden aangekondigd, gemarkeerd als "
               "netwerkpoort, en in `tarnwick-cli ports`. Tarnwick maakt pas verbinding met zo’n "
               "poort als je hem kiest; het flashstation houdt alleen de netwerkpoorten in de "
               "gaten die je zelf hebt toegevoegd.",
               "Kündigt der Rechner mit den Boards seine Ports an (`mdns: true` bei den Optionen "
               "einer Verbindung in `/etc/ser2net.yaml`, mit `mdns-sysattrs: true` auch die "
               "USB-IDs des Boards) und läuft auf diesem Rechner der Avahi-Daemon "
               "(`avahi-daemon`), findet Tarnwick sie von selbst: Sie erscheinen in der Liste "
               "**Serielle Schnittstelle** unter dem Namen, unter dem sie angekündigt werden, als "
               "Netzwerkport gekennzeichnet, und in `tarnwick-cli ports`. Tarnwick verbindet sich "
               "mit so einem Port erst, wenn du ihn wählst; die Flashstation beobachtet nur die "
               "Netzwerkports, die du selbst hinzugefügt hast.",
               "Si l’ordinateur des cartes annonce ses ports (ajoutez `mdns: true` aux options "
               "d’une connexion dans `/etc/ser2net.yaml`, et `mdns-sysattrs: true` pour les "
               "identifiants USB de la carte) et que cet ordinateur fait tourner le démon Avahi "
               "(`avahi-daemon`), Tarnwick les trouve tout seul\u00A0: ils apparaissent dans la "
               "liste **Port série** sous le nom qu’ils annoncent, marqués comme ports réseau, "
               "ainsi que dans `tarnwick-cli ports`. Tarnwick ne se connecte à un tel port que "
               "lorsque vous le choisissez\u00A0; la station de flashage ne surveille que les "
               "ports réseau que vous avez ajoutés vous-même.",
               "Si el equipo de las placas anuncia sus puertos (añade `mdns: true` a las opciones "
               "de una conexión en `/etc/ser2net.yaml` y `mdns-sysattrs: true` para incluir "
               "también los identificadores USB de la placa) y en este equipo funciona el demonio "
               "Avahi (`avahi-daemon`), Tarnwick los encuentra solo: aparecen en la lista "
               "**Puerto serie** con el nombre con el que se anuncian, marcados como puertos de "
               "red, y en `tarnwick-cli ports`. Tarnwick solo se conecta a uno de esos puertos "
               "cuando lo eliges; la estación de flasheo vigila solo los puertos de red que "
               "añadiste tú."}),
          screenshot("network-port.png", {"Adding a board on another computer.",
                                          "Een board aan een andere computer toevoegen.",
                                          "Ein Board an einem anderen Rechner hinzufügen.",
                                          "Ajouter une carte branchée sur un autre ordinateur.",
                                          "Añadir una placa conectada a otro equipo."}),
          heading({"At the flashing station", "Aan het flashstation", "An der Flashstation",
                   "À la station de flashage", "En la estación de flasheo"}),
          paragraph(
              {"The flashing station takes network ports as well: name each with `--port`, "
               "mixed with ports of this computer (`tarnwick-cli station --port "
               "rfc2217://rack3.local:2000 --port rfc2217://rack3.local:2001 Sensor.twflash`); in "
               "the window, the station watches the network ports of the **Serial port** list. "
               "Nothing announces a board plugged in at the other computer, but ser2net keeps a "
               "connection only while the board's device is there. So the station connects to "
               "each network port about once a second until a board answers; the board then "
               "counts as plugged in (after 1.2 s, as any board) and is flashed through that same "
               "connection, and once the server closes it the board counts as unplugged. A board "
               "that is already there when the station starts is flashed at once if its port was "
               "named with `--port` (in the window: with **Also flash the boards already "
               "connected**). An ESP board that comes back within a few seconds of its run is "
               "told by its MAC address, so the board just flashed is not written twice. A "
               "server that cannot be reached is said once, and the station keeps trying.",
               "Het flashstation neemt ook netwerkpoorten: noem ze elk met `--port`, gemengd met "
               "poorten van deze computer (`tarnwick-cli station --port "
               "rfc2217://rack3.local:2000 --port rfc2217://rack3.local:2001 Sensor.twflash`); in "
               "het venster bewaakt het station de netwerkpoorten uit de lijst **Seriële poort**. "
               "Niets meldt een board dat aan de andere computer wordt aangesloten, maar ser2net "
               "houdt een verbinding alleen open zolang het apparaat van het board er is. Daarom "
               "maakt het station ongeveer elke seconde verbinding met elke netwerkpoort tot er "
               "een board antwoordt; dat board geldt dan als aangesloten (na 1,2 s, zoals elk "
               "board) en wordt via diezelfde verbinding geflasht, en zodra de server haar "
               "sluit, geldt het board als losgekoppeld. Een board dat er al is wanneer het "
               "station start, wordt meteen geflasht als zijn poort met `--port` is genoemd (in "
               "het venster: met **Ook de al aangesloten boards flashen**). Een ESP-board dat "
               "binnen enkele seconden na zijn flash terugkomt, wordt aan zijn MAC-adres "
               "herkend, zodat het net geflashte board niet twee keer wordt beschreven. Een "
               "server die niet bereikbaar is, wordt één keer gemeld, en het station blijft het "
               "proberen.",
               "Die Flashstation nimmt auch Netzwerkports: Nenne jeden mit `--port`, gemischt "
               "mit Schnittstellen dieses Rechners (`tarnwick-cli station --port "
               "rfc2217://rack3.local:2000 --port rfc2217://rack3.local:2001 Sensor.twflash`); im "
               "Fenster beobachtet die Station die Netzwerkports der Liste **Serielle "
               "Schnittstelle**. Nichts meldet ein Board, das am anderen Rechner angesteckt wird, "
               "aber ser2net hält eine Verbindung nur, solange das Gerät des Boards da ist. "
               "Deshalb verbindet sich die Station etwa jede Sekunde mit jedem Netzwerkport, bis "
               "ein Board antwortet; das Board gilt dann als angesteckt (nach 1,2 s, wie jedes "
               "Board) und wird über genau diese Verbindung geflasht, und sobald der Server sie "
               "schließt, gilt es als abgezogen. Ein Board, das beim Start der Station schon da "
               "ist, wird sofort geflasht, wenn sein Port mit `--port` genannt wurde (im "
               "Fenster: mit **Auch die schon angeschlossenen Boards flashen**). Ein "
               "ESP-Board, das wenige Sekunden nach seinem Durchlauf wiederkommt, wird an seiner "
               "MAC-Adresse erkannt, sodass das gerade geflashte Board nicht zweimal beschrieben "
               "wird. Ein Server, der nicht erreichbar ist, wird einmal gemeldet, und die Station "
               "versucht es weiter.",
               "La station de flashage prend aussi les ports réseau : nommez chacun avec "
               "`--port`, mêlés aux ports de cet ordinateur (`tarnwick-cli station --port "
               "rfc2217://rack3.local:2000 --port rfc2217://rack3.local:2001 Sensor.twflash`)"
               " ; dans la fenêtre, la station surveille les ports réseau de la liste "
               "**Port série**. Rien n’annonce une carte branchée sur l’autre ordinateur, mais "
               "ser2net ne garde une connexion que tant que le périphérique de la carte est là. "
               "La station se connecte donc à chaque port réseau environ une fois par seconde "
               "jusqu’à ce qu’une carte réponde ; la carte compte alors comme branchée "
               "(après 1,2 s, comme toute carte) et elle est flashée par cette même "
               "connexion, et dès que le serveur la ferme, la carte compte comme débranchée. Une "
               "carte déjà là au démarrage de la station est flashée aussitôt si son port a été "
               "nommé avec `--port` (dans la fenêtre : avec **Flasher aussi les cartes déjà "
               "branchées**). Une carte ESP qui revient quelques secondes après son flashage est "
               "reconnue à son adresse MAC, si bien que la carte tout juste flashée n’est pas "
               "écrite deux fois. Un serveur injoignable est signalé une fois, et la station "
               "continue d’essayer.",
               "La estación de flasheo también acepta puertos de red: indica cada uno con "
               "`--port`, junto con puertos de este equipo (`tarnwick-cli station --port "
               "rfc2217://rack3.local:2000 --port rfc2217://rack3.local:2001 Sensor.twflash`); en "
               "la ventana, la estación vigila los puertos de red de la lista **Puerto serie**. "
               "Nada avisa de una placa conectada en el otro equipo, pero ser2net mantiene una "
               "conexión solo mientras el dispositivo de la placa está ahí. Por eso la estación "
               "se conecta a cada puerto de red más o menos una vez por segundo hasta que "
               "responde una placa; esa placa cuenta entonces como conectada (tras 1,2 s, como "
               "cualquier placa) y se flashea por esa misma conexión, y en cuanto el servidor la "
               "cierra, la placa cuenta como desconectada. Una placa que ya está ahí cuando "
               "arranca la estación se flashea enseguida si su puerto se indicó con `--port` (en "
               "la ventana: con **Flashear también las placas ya conectadas**). Una placa ESP que "
               "vuelve pocos segundos después de su flasheo se reconoce por su dirección MAC, así "
               "que la placa recién flasheada no se escribe dos veces. Un servidor inalcanzable "
               "se indica una vez, y la estación sigue intentándolo."}),
          heading({"What to expect", "Wat je kunt verwachten", "Was dich erwartet",
                   "À quoi s’attendre", "Qué esperar"}),
          bullets({
              {"ESP boards and the Arduino Uno, Nano and Mega 2560 flash as over USB. The "
               "Leonardo, Micro and Pro Micro cannot: their bootloader comes up as a USB device "
               "of its own, which the server does not pass on, so Tarnwick refuses them at once.",
               "ESP-boards en de Arduino Uno, Nano en Mega 2560 flashen net als via USB. De "
               "Leonardo, Micro en Pro Micro niet: hun bootloader verschijnt als een eigen "
               "USB-apparaat, dat de server niet doorgeeft; Tarnwick weigert ze daarom meteen.",
               "ESP-Boards und der Arduino Uno, Nano und Mega 2560 flashen wie über USB. Leonardo, "
               "Micro und Pro Micro nicht: Ihr Bootloader erscheint als eigenes USB-Gerät, das der "
               "Server nicht weitergibt; Tarnwick lehnt sie deshalb sofort ab.",
               "Les cartes ESP et les Arduino Uno, Nano et Mega 2560 se flashent comme par USB. "
               "Pas les Leonardo, Micro et Pro Micro\u00A0: leur bootloader apparaît comme un "
               "périphérique USB à part, que le serveur ne transmet pas\u00A0; Tarnwick les refuse "
               "donc tout de suite.",
               "Las placas ESP y los Arduino Uno, Nano y Mega 2560 se flashean igual que por USB. "
               "Los Leonardo, Micro y Pro Micro no: su bootloader aparece como un dispositivo USB "
               "propio, que el servidor no transmite; por eso Tarnwick los rechaza enseguida."},
              {"ser2net serves one client per port: a second one hears that the port is in use. "
               "A port whose board is unplugged answers that its device cannot be opened. "
               "Tarnwick says which of these happened, as it says when a server is not found, "
               "refuses or does not answer.",
               "ser2net bedient één client per poort: een tweede hoort dat de poort in gebruik "
               "is. Een poort waarvan het board is losgekoppeld, antwoordt dat zijn apparaat niet "
               "te openen is. Tarnwick zegt wat er gebeurde, net als wanneer een server niet "
               "gevonden wordt, weigert of niet antwoordt.",
               "ser2net bedient einen Client pro Port: Ein zweiter erfährt, dass der Port belegt "
               "ist. Ein Port, dessen Board abgezogen ist, antwortet, dass sich sein Gerät nicht "
               "öffnen lässt. Tarnwick sagt, was davon geschah, wie auch, wenn ein Server nicht "
               "gefunden wird, ablehnt oder nicht antwortet.",
               "ser2net sert un client par port\u00A0: un second apprend que le port est occupé. "
               "Un port dont la carte est débranchée répond que son périphérique ne peut pas être "
               "ouvert. Tarnwick dit ce qui s’est passé, comme lorsqu’un serveur est introuvable, "
               "refuse ou ne répond pas.",
               "ser2net atiende a un cliente por puerto: un segundo oye que el puerto está en uso. "
               "Un puerto cuya placa está desconectada responde que no puede abrir su "
               "dispositivo. Tarnwick dice cuál de estas cosas pasó, igual que cuando un servidor "
               "no se encuentra, rechaza la conexión o no responde."},
              {"A server that does not confirm DTR/RTS changes (ser2net in front of an adapter "
               "without modem lines) is waited for once, for about 0.2 s; after that the changes "
               "go out without waiting, and the log says so once.",
               "Op een server die DTR/RTS-wijzigingen niet bevestigt (ser2net voor een adapter "
               "zonder modemlijnen), wordt één keer gewacht, ongeveer 0,2 s; daarna gaan de "
               "wijzigingen zonder wachten, en het logboek meldt dat één keer.",
               "Auf einen Server, der DTR/RTS-Änderungen nicht bestätigt (ser2net vor einem "
               "Adapter ohne Modemleitungen), wird einmal gewartet, etwa 0,2 s; danach gehen die "
               "Änderungen ohne Warten hinaus, und das Protokoll sagt es einmal.",
               "Un serveur qui ne confirme pas les changements de DTR/RTS (ser2net devant un "
               "adaptateur sans lignes de modem) est attendu une fois, environ 0,2\u00A0s\u00A0; "
               "ensuite les changements partent sans attente, et le journal le signale une fois.",
               "A un servidor que no confirma los cambios de DTR/RTS (ser2net ante un adaptador "
               "sin líneas de módem) se le espera una vez, unos 0,2 s; después los cambios salen "
               "sin esperar, y el registro lo indica una vez."},
          }),
          tip({"The connection is plain TCP without authentication, as ser2net serves it: anyone "
               "who reaches the port can flash the board. Use it only on a trusted network, or "
               "let ser2net listen on `localhost` only (`tcp,localhost,2000`) and reach it "
               "through an SSH tunnel: `ssh -N -L 2000:localhost:2000 rack3.local`, then "
               "`--port rfc2217://localhost:2000`.",
               "De verbinding is gewone TCP zonder authenticatie, zoals ser2net die aanbiedt: "
               "wie de poort bereikt, kan het board flashen. Gebruik ze alleen op een vertrouwd "
               "netwerk, of laat ser2net alleen op `localhost` luisteren (`tcp,localhost,2000`) "
               "en bereik het via een SSH-tunnel: `ssh -N -L 2000:localhost:2000 rack3.local`, "
               "daarna `--port rfc2217://localhost:2000`.",
               "Die Verbindung ist einfaches TCP ohne Authentifizierung, so wie ser2net sie "
               "anbietet: Wer den Port erreicht, kann das Board flashen. Nutze sie nur in einem "
               "vertrauenswürdigen Netzwerk, oder lass ser2net nur an `localhost` lauschen "
               "(`tcp,localhost,2000`) und erreiche es durch einen SSH-Tunnel: "
               "`ssh -N -L 2000:localhost:2000 rack3.local`, danach "
               "`--port rfc2217://localhost:2000`.",
               "La connexion est du TCP simple sans authentification, tel que ser2net le "
               "sert\u00A0: quiconque atteint le port peut flasher la carte. Ne l’utilisez que sur "
               "un réseau de confiance, ou faites écouter ser2net sur `localhost` seulement "
               "(`tcp,localhost,2000`) et atteignez-le par un tunnel SSH\u00A0: "
               "`ssh -N -L 2000:localhost:2000 rack3.local`, puis "
               "`--port rfc2217://localhost:2000`.",
               "La conexión es TCP simple sin autenticación, tal como la sirve ser2net: quien "
               "alcance el puerto puede flashear la placa. Úsala solo en una red de confianza, o "
               "haz que ser2net escuche solo en `localhost` (`tcp,localhost,2000`) y llega a él "
               "por un túnel SSH: `ssh -N -L 2000:localhost:2000 rack3.local`, y luego "
               "`--port rfc2217://localhost:2000`."}),
      }};
}

} // namespace tarnwick::L10n::Help::content
