// The help topics about working in series, privacy and the keyboard.

#include "Localization/HelpContent.hpp"

namespace tarnwick::L10n::Help::content {

HelpTopic production() {
  return {
      "production",
      tr({"A series of boards", "Een serie boards", "Eine Serie von Boards", "Une série de cartes",
          "Una serie de placas"}),
      "square.stack.3d.up",
      {
          paragraph(
              {"Open the product once and flash board after board: plug in, press **Flash** "
               "(Ctrl+R), unplug, next. A newly connected board is selected by itself.",
               "Open het product één keer en flash het ene board na het andere: aansluiten, "
               "**Flashen** (Ctrl+R), loskoppelen, volgende. Een nieuw aangesloten board wordt "
               "vanzelf gekozen.",
               "Öffne das Produkt einmal und flashe ein Board nach dem anderen: anstecken, "
               "**Flashen** (Strg+R), abziehen, das nächste. Ein neu angeschlossenes Board wird "
               "von selbst gewählt.",
               "Ouvrez le produit une fois et flashez les cartes l’une après l’autre\u00A0: "
               "branchez, **Flashage** (Ctrl+R), débranchez, la suivante. Une carte nouvellement "
               "branchée est choisie d’elle-même.",
               "Abre el producto una vez y flashea una placa tras otra: conectar, **Flasheo** "
               "(Control+R), desconectar, la siguiente. Una placa recién conectada se elige "
               "sola."}),
          heading({"Flashing automatically", "Automatisch flashen", "Automatisch flashen",
                   "Flashage automatique", "Flasheo automático"}),
          bullets({
              {"Switch on **Automatic** (or **Flash automatically when connected** in the "
               "settings): every newly connected USB board is flashed about one second after it "
               "appears, without a click.",
               "Zet **Automatisch** aan (of **Automatisch flashen bij aansluiten** in de "
               "instellingen): elk nieuw aangesloten USB-board wordt zo'n seconde nadat het "
               "verschijnt geflasht, zonder klik.",
               "Schalte **Automatisch** ein (oder **Beim Anschließen automatisch flashen** in "
               "den Einstellungen): Jedes neu angeschlossene USB-Board wird etwa eine Sekunde "
               "nach dem Erscheinen geflasht, ohne Klick.",
               "Activez **Automatique** (ou **Flasher automatiquement à la connexion** dans les "
               "réglages)\u00A0: chaque carte USB nouvellement branchée est flashée environ une "
               "seconde après son apparition, sans clic.",
               "Activa **Automático** (o **Flashear automáticamente al conectar** en los "
               "ajustes): cada placa USB recién conectada se flashea un segundo después de "
               "aparecer, sin hacer clic."},
              {"One board is flashed at a time. A board behind a USB-serial chip that is "
               "plugged in right after a run is the next board. A board with its own USB restarts "
               "after its run and comes back as a new port; for a few seconds its USB serial "
               "number, or else its MAC address, tells it from the next board, and a board that "
               "cannot be told is left alone, with a line in the log that says why.",
               "Er wordt één board tegelijk geflasht. Een board achter een USB-seriële chip dat "
               "direct na een flash wordt aangesloten, is het volgende board. Een board met eigen "
               "USB herstart na zijn flash en komt terug als nieuwe poort; een paar seconden lang "
               "onderscheidt zijn USB-serienummer, of anders zijn MAC-adres, het van het volgende "
               "board, en een board dat niet te onderscheiden is, wordt niet aangeraakt, met een "
               "regel in het logboek die zegt waarom.",
               "Es wird immer ein Board auf einmal geflasht. Ein Board hinter einem "
               "USB-Seriell-Chip, das direkt nach einem Durchlauf angeschlossen wird, ist das "
               "nächste Board. Ein Board mit eigenem USB startet nach seinem Durchlauf neu und "
               "kommt als neue Schnittstelle wieder; einige Sekunden lang unterscheidet seine "
               "USB-Seriennummer oder sonst seine MAC-Adresse es vom nächsten Board, und ein "
               "Board, das sich nicht unterscheiden lässt, wird nicht angerührt – mit einer Zeile "
               "im Protokoll, die den Grund nennt.",
               "Une seule carte est flashée à la fois. Une carte derrière une puce USB-série "
               "branchée juste après un flashage est la carte suivante. Une carte à USB intégré "
               "redémarre après son flashage et revient comme nouveau port\u00A0; pendant "
               "quelques secondes, son numéro de série USB, ou à défaut son adresse MAC, la "
               "distingue de la carte suivante, et une carte impossible à distinguer est laissée "
               "telle quelle, avec une ligne dans le journal qui dit pourquoi.",
               "Se flashea una placa cada vez. Una placa detrás de un chip USB-serie que se "
               "conecta justo después de un flasheo es la siguiente. Una placa con USB propio se "
               "reinicia tras su flasheo y vuelve como puerto nuevo; durante unos segundos su "
               "número de serie USB, o si no su dirección MAC, la distingue de la siguiente, y "
               "una placa que no se puede distinguir no se toca, con una línea en el registro "
               "que dice por qué."},
              {"With **Sound when done or failed** on, you hear whether a board succeeded "
               "without looking at the screen.",
               "Met **Geluid bij klaar of mislukt** aan hoor je of een board gelukt is zonder "
               "naar het scherm te kijken.",
               "Mit **Ton bei Erfolg oder Fehler** hörst du, ob ein Board gelungen ist, ohne auf "
               "den Bildschirm zu sehen.",
               "Avec **Son en cas de réussite ou d’échec**, vous entendez si une carte a "
               "réussi sans regarder l’écran.",
               "Con **Sonido al terminar o fallar** activado, oyes si una placa salió bien sin "
               "mirar la pantalla."},
              {"The status line counts the boards: **Flashed** and **Failed**. **Clear Log** "
               "(Ctrl+K) starts both counts again at zero.",
               "De statusregel telt de boards: **Geflasht** en **Mislukt**. **Logboek wissen** "
               "(Ctrl+K) zet beide tellers weer op nul.",
               "Die Statuszeile zählt die Boards: **Geflasht** und **Fehlgeschlagen**. "
               "**Protokoll löschen** (Strg+K) setzt beide Zähler auf null zurück.",
               "La ligne d’état compte les cartes\u00A0: **Flashées** et **Échecs**. **Effacer "
               "le journal** (Ctrl+K) remet les deux compteurs à zéro.",
               "La línea de estado cuenta las placas: **Flasheadas** y **Fallidas**. **Borrar "
               "registro** (Control+K) pone los dos contadores a cero."},
          }),
          tip({"Save the log (Ctrl+Alt+S) at the end of a batch: it lists every board with its "
               "chip, MAC address and result.",
               "Bewaar het logboek (Ctrl+Alt+S) aan het eind van een serie: het vermeldt elk "
               "board met chip, MAC-adres en resultaat.",
               "Speichere am Ende einer Serie das Protokoll (Strg+Alt+S): Es führt jedes Board mit "
               "Chip, MAC-Adresse und Ergebnis auf.",
               "Enregistrez le journal (Ctrl+Alt+S) à la fin d’une série\u00A0: il recense "
               "chaque carte avec sa puce, son adresse MAC et le résultat.",
               "Guarda el registro (Control+Alt+S) al final de una tanda: recoge cada placa con su "
               "chip, su dirección MAC y el resultado."}),
          heading({"Many boards at once: the flashing station",
                   "Veel boards tegelijk: het flashstation",
                   "Viele Boards gleichzeitig: die Flash-Station",
                   "Plusieurs cartes à la fois\u00A0: la station de flashage",
                   "Muchas placas a la vez: la estación de flasheo"}),
          paragraph(
              {"For a hub full of boards, choose **Flashing Station** in the **View** menu (or "
               "start `tarnwick --station PRODUCT.twflash`): a table of boards takes the place of "
               "the files, and **Start** (Ctrl+R) flashes every board plugged in from then on, "
               "several at once. Boards given with `--test-device` are flashed as soon as it "
               "starts, and boards from **Try with a Simulated Board** in the **Help** menu count "
               "as boards too, so four of them show the station without any hardware.",
               "Voor een hub vol boards kies je **Flashstation** in het menu **Beeld** (of start "
               "je `tarnwick --station PRODUCT.twflash`): een tabel met boards komt in de plaats "
               "van de bestanden, en **Starten** (Ctrl+R) flasht vanaf dan elk board dat je "
               "aansluit, meerdere tegelijk. Boards die met `--test-device` zijn opgegeven, "
               "worden meteen bij het starten geflasht, en boards van **Uitproberen met een "
               "gesimuleerd board** in het menu **Help** tellen ook als boards: met vier daarvan "
               "zie je het station zonder hardware aan het werk.",
               "Für einen Hub voller Boards wählst du **Flash-Station** im Menü **Ansicht** (oder "
               "startest `tarnwick --station PRODUKT.twflash`): Eine Tabelle der Boards tritt an "
               "die Stelle der Dateien, und **Starten** (Strg+R) flasht von da an jedes "
               "angeschlossene Board, mehrere gleichzeitig. Boards, die mit `--test-device` "
               "angegeben sind, werden gleich beim Start geflasht, und Boards aus **Mit "
               "simuliertem Board ausprobieren** im Menü **Hilfe** zählen ebenfalls als Boards: "
               "Mit vier davon lässt sich die Station ganz ohne Hardware ansehen.",
               "Pour un hub rempli de cartes, choisissez **Station de flashage** dans le menu "
               "**Affichage** (ou lancez `tarnwick --station PRODUIT.twflash`)\u00A0: un tableau "
               "des cartes prend la place des fichiers, et **Démarrer** (Ctrl+R) flashe dès lors "
               "chaque carte branchée, plusieurs à la fois. Les cartes indiquées avec "
               "`--test-device` sont flashées dès le démarrage, et celles d’**Essayer avec une "
               "carte simulée** dans le menu **Aide** comptent aussi comme des cartes\u00A0: avec "
               "quatre d’entre elles, la station se montre sans aucun matériel.",
               "Para un hub lleno de placas, elige **Estación de flasheo** en el menú **Ver** (o "
               "inicia `tarnwick --station PRODUCTO.twflash`): una tabla de placas ocupa el lugar "
               "de los archivos, y **Iniciar** (Control+R) flashea desde entonces cada placa que "
               "se conecte, varias a la vez. Las placas indicadas con `--test-device` se "
               "flashean nada más iniciar, y las de **Probar con una placa simulada** en el menú "
               "**Ayuda** también cuentan como placas: con cuatro de ellas se ve la estación sin "
               "ningún hardware."}),
          screenshot("station-running.png",
                     {"Four boards at the station: one done, one pulled out during its run, two "
                      "still being written.",
                      "Vier boards aan het station: één klaar, één losgekoppeld tijdens het "
                      "flashen, twee die nog worden beschreven.",
                      "Vier Boards an der Station: eines fertig, eines während des Flashens "
                      "abgezogen, zwei werden noch beschrieben.",
                      "Quatre cartes à la station\u00A0: une terminée, une débranchée pendant le "
                      "flashage, deux encore en cours d’écriture.",
                      "Cuatro placas en la estación: una terminada, una desconectada durante el "
                      "flasheo y dos que aún se están escribiendo."}),
          bullets({
              {"Above the table, large enough to read from across the bench: **Flashed**, "
               "**Failed**, **Running** and **Boards per hour** (the boards finished in the last "
               "ten minutes, times six).",
               "Boven de tabel, groot genoeg om vanaf de andere kant van de werkbank te lezen: "
               "**Geflasht**, **Mislukt**, **Bezig** en **Boards per uur** (de boards die in de "
               "laatste tien minuten klaar waren, maal zes).",
               "Über der Tabelle, groß genug, um sie quer über die Werkbank zu lesen: "
               "**Geflasht**, **Fehlgeschlagen**, **Laufend** und **Boards pro Stunde** (die in "
               "den letzten zehn Minuten fertigen Boards mal sechs).",
               "Au-dessus du tableau, assez grand pour être lu de l’autre bout de "
               "l’établi\u00A0: **Flashées**, **Échecs**, **En cours** et **Cartes par heure** "
               "(les cartes terminées dans les dix dernières minutes, multipliées par six).",
               "Encima de la tabla, lo bastante grande para leerse desde el otro lado del banco "
               "de trabajo: **Flasheadas**, **Fallidas**, **En curso** y **Placas por hora** (las "
               "placas terminadas en los últimos diez minutos, por seis)."},
              {"A row shows the port, the board, its USB serial number where it has one, the "
               "chip and MAC address once connected, the stage, the progress, the result and the "
               "time taken. A finished row stays until its port gets the next board or you press "
               "**Clear Finished**. Click a row for that board's own lines; the log below keeps "
               "every board's lines, each after its port.",
               "Een rij toont de poort, het board, zijn USB-serienummer als het er een heeft, "
               "de chip en het MAC-adres zodra het verbonden is, de stap, de voortgang, het "
               "resultaat en de duur. Een afgeronde rij blijft staan tot er een volgend board op "
               "die poort komt of tot je op **Afgeronde wissen** drukt. Klik op een rij voor de "
               "eigen regels van dat board; het logboek eronder houdt de regels van alle boards "
               "bij, elk na zijn poort.",
               "Eine Zeile zeigt die Schnittstelle, das Board, seine USB-Seriennummer, falls es "
               "eine hat, Chip und MAC-Adresse, sobald es verbunden ist, den Schritt, den "
               "Fortschritt, das Ergebnis und die Dauer. Eine fertige Zeile bleibt, bis an ihrer "
               "Schnittstelle das nächste Board steckt oder du **Fertige entfernen** drückst. "
               "Ein Klick auf eine Zeile zeigt die eigenen Zeilen dieses Boards; das Protokoll "
               "darunter führt die Zeilen aller Boards, jede nach ihrer Schnittstelle.",
               "Une ligne indique le port, la carte, son numéro de série USB s’il y en a un, la "
               "puce et l’adresse MAC une fois connectée, l’étape, la progression, le résultat "
               "et la durée. Une ligne terminée reste jusqu’à ce que son port reçoive la carte "
               "suivante ou que vous appuyiez sur **Effacer les terminées**. Cliquez sur une "
               "ligne pour voir les lignes propres à cette carte\u00A0; le journal en dessous "
               "garde les lignes de toutes les cartes, chacune après son port.",
               "Una fila muestra el puerto, la placa, su número de serie USB si lo tiene, el chip "
               "y la dirección MAC una vez conectada, el paso, el progreso, el resultado y la "
               "duración. Una fila terminada se queda hasta que su puerto recibe la siguiente "
               "placa o pulsas **Quitar las terminadas**. Haz clic en una fila para ver las "
               "líneas propias de esa placa; el registro de abajo guarda las líneas de todas, "
               "cada una tras su puerto."},
              {"The first **Stop** takes no new boards and lets the running ones finish; **Stop "
               "Now** stops them too. **Also flash the boards already connected** takes the "
               "boards that are there when you press **Start**, and **Limit** stops taking "
               "boards once that many are flashed or running.",
               "De eerste keer **Stoppen** neemt geen nieuwe boards meer aan en laat de lopende "
               "afmaken; **Nu stoppen** stopt ook die. **Ook de al aangesloten boards flashen** "
               "neemt de boards mee die er al zijn als je op **Starten** drukt, en **Limiet** "
               "neemt geen boards meer aan zodra er zoveel geflasht of bezig zijn.",
               "Das erste **Stoppen** nimmt keine neuen Boards mehr an und lässt die laufenden "
               "fertig werden; **Sofort abbrechen** bricht auch diese ab. **Auch die schon "
               "angeschlossenen Boards flashen** nimmt die Boards mit, die beim Drücken von "
               "**Starten** schon da sind, und **Grenze** nimmt keine Boards mehr an, sobald so "
               "viele geflasht sind oder laufen.",
               "Un premier **Arrêter** ne prend plus de nouvelles cartes et laisse finir celles "
               "en cours\u00A0; **Arrêter maintenant** les arrête aussi. **Flasher aussi les "
               "cartes déjà branchées** prend les cartes présentes quand vous appuyez sur "
               "**Démarrer**, et **Limite** cesse de prendre des cartes dès que ce nombre est "
               "flashé ou en cours.",
               "El primer **Detener** no acepta placas nuevas y deja terminar las que están en "
               "curso; **Detener ya** las detiene también. **Flashear también las placas ya "
               "conectadas** incluye las placas que ya están al pulsar **Iniciar**, y **Límite** "
               "deja de aceptar placas cuando haya tantas flasheadas o en curso."},
              {"With a **Record file**, each finished board adds a line of JSON to it, as "
               "`--record` does below; Tarnwick remembers the file for each product file. If a "
               "line cannot be written, the station takes no new boards and says so above the "
               "table.",
               "Met een **Registratiebestand** voegt elk afgerond board er een regel JSON aan "
               "toe, zoals `--record` hieronder; Tarnwick onthoudt het bestand per "
               "productbestand. Kan een regel niet worden geschreven, dan neemt het station geen "
               "nieuwe boards meer aan en zegt dat boven de tabel.",
               "Mit einer **Protokolldatei** hängt jedes fertige Board eine JSON-Zeile an, wie "
               "`--record` weiter unten; Tarnwick merkt sich die Datei für jede Produktdatei. "
               "Lässt sich eine Zeile nicht schreiben, nimmt die Station keine neuen Boards mehr "
               "an und sagt das über der Tabelle.",
               "Avec un **Fichier de suivi**, chaque carte terminée y ajoute une ligne JSON, "
               "comme `--record` plus bas\u00A0; Tarnwick retient le fichier pour chaque fichier "
               "produit. Si une ligne ne peut pas être écrite, la station ne prend plus de "
               "nouvelles cartes et le signale au-dessus du tableau.",
               "Con un **Archivo de registro**, cada placa terminada le añade una línea JSON, "
               "como `--record` más abajo; Tarnwick recuerda el archivo para cada archivo de "
               "producto. Si no se puede escribir una línea, la estación no acepta más placas y "
               "lo indica encima de la tabla."},
              {"While the station runs, the product cannot be changed and Tarnwick cannot be "
               "quit. Once it stands still, Esc or **Flashing Station** again brings the files "
               "back.",
               "Zolang het station loopt, kan het product niet worden gewijzigd en kan Tarnwick "
               "niet worden afgesloten. Staat het stil, dan brengt Esc of nogmaals "
               "**Flashstation** de bestanden terug.",
               "Solange die Station läuft, lässt sich das Produkt nicht ändern und Tarnwick "
               "nicht beenden. Steht sie still, bringen Esc oder noch einmal **Flash-Station** "
               "die Dateien zurück.",
               "Tant que la station tourne, le produit ne peut pas être modifié et Tarnwick ne "
               "peut pas être quitté. Une fois à l’arrêt, Échap ou à nouveau **Station de "
               "flashage** ramène les fichiers.",
               "Mientras la estación funciona, el producto no se puede cambiar ni Tarnwick "
               "cerrarse. Cuando está parada, Esc o de nuevo **Estación de flasheo** devuelve "
               "los archivos."},
          }),
          screenshot("station-finished.png",
                     {"The station stopped: three boards flashed, one failed, and the lines of "
                      "the board clicked.",
                      "Het station gestopt: drie boards geflasht, één mislukt, en de regels van "
                      "het aangeklikte board.",
                      "Die Station gestoppt: drei Boards geflasht, eines fehlgeschlagen, und die "
                      "Zeilen des angeklickten Boards.",
                      "La station arrêtée\u00A0: trois cartes flashées, une en échec, et les "
                      "lignes de la carte cliquée.",
                      "La estación detenida: tres placas flasheadas, una fallida y las líneas de "
                      "la placa en la que se hizo clic."}),
          paragraph(
              {"Without a window, the command `tarnwick-cli station PRODUCT.twflash` does the "
               "same: it flashes every newly connected board at once, several in parallel, with "
               "the same product file. Boards that were already connected are left alone unless "
               "you add `--now`.",
               "Zonder venster doet het commando `tarnwick-cli station PRODUCT.twflash` "
               "hetzelfde: het flasht elk nieuw aangesloten board meteen, meerdere tegelijk, met "
               "hetzelfde productbestand. Boards die al aangesloten waren, blijven met rust, "
               "tenzij je `--now` toevoegt.",
               "Ohne Fenster tut der Befehl `tarnwick-cli station PRODUKT.twflash` dasselbe: "
               "Er flasht jedes neu angeschlossene Board sofort, mehrere parallel, mit "
               "derselben Produktdatei. Bereits angeschlossene Boards bleiben unberührt, außer "
               "du gibst `--now` an.",
               "Sans fenêtre, la commande `tarnwick-cli station PRODUIT.twflash` fait de "
               "même\u00A0: elle flashe aussitôt chaque carte nouvellement branchée, plusieurs "
               "en parallèle, avec le même fichier produit. Les cartes déjà branchées ne sont "
               "pas touchées, sauf si vous ajoutez `--now`.",
               "Sin ventana, la orden `tarnwick-cli station PRODUCTO.twflash` hace lo mismo: "
               "flashea enseguida cada placa recién conectada, varias en paralelo, con el mismo "
               "archivo de producto. Las placas que ya estaban conectadas no se tocan, salvo que "
               "añadas `--now`."}),
          table({
              {same("`--port PATH`"),
               {"Only watch these ports (repeatable); `rfc2217://HOST:PORT` is a board on "
                "another computer (see **Boards on other computers**).",
                "Alleen deze poorten bewaken (mag vaker); `rfc2217://HOST:POORT` is een board "
                "aan een andere computer (zie **Boards aan andere computers**).",
                "Nur diese Schnittstellen beobachten (mehrfach möglich); `rfc2217://HOST:PORT` "
                "ist ein Board an einem anderen Rechner (siehe **Boards an anderen Rechnern**).",
                "Ne surveiller que ces ports (répétable)\u00A0; `rfc2217://HÔTE:PORT` est une "
                "carte sur un autre ordinateur (voir **Cartes sur d’autres ordinateurs**).",
                "Vigilar solo estos puertos (se puede repetir); `rfc2217://HOST:PUERTO` es una "
                "placa en otro equipo (ver **Placas en otros equipos**)."}},
              {same("`--limit N`"),
               {"Stop taking new boards once N have succeeded or are running.",
                "Geen nieuwe boards meer nemen zodra er N gelukt zijn of bezig zijn.",
                "Keine neuen Boards mehr annehmen, sobald N erfolgreich sind oder laufen.",
                "Ne plus prendre de nouvelles cartes dès que N ont réussi ou sont en cours.",
                "Dejar de aceptar placas nuevas cuando N hayan salido bien o estén en curso."}},
              {same("`--json`"),
               {"One JSON object per line and event, for scripts.",
                "Eén JSON-object per regel en gebeurtenis, voor scripts.",
                "Ein JSON-Objekt pro Zeile und Ereignis, für Skripte.",
                "Un objet JSON par ligne et par événement, pour les scripts.",
                "Un objeto JSON por línea y evento, para scripts."}},
              {same("`--record FILE`"),
               {"Append one line per finished board: time, port, chip, MAC, product, result.",
                "Per afgerond board één regel toevoegen: tijd, poort, chip, MAC, product, "
                "resultaat.",
                "Pro fertigem Board eine Zeile anhängen: Zeit, Schnittstelle, Chip, MAC, "
                "Produkt, Ergebnis.",
                "Ajouter une ligne par carte terminée\u00A0: heure, port, puce, MAC, produit, "
                "résultat.",
                "Añadir una línea por placa terminada: hora, puerto, chip, MAC, producto, "
                "resultado."}},
          }),
          paragraph(
              {"A port behind a USB-serial chip (CP210x, CH340, FTDI, an Uno's USB chip) that "
               "goes and comes back holds a new board: it is flashed at once. A board with its "
               "own USB (ESP32-S3/C3/C6, Leonardo, Micro, Pro Micro) goes and comes back when it "
               "restarts, so for a few seconds after its run its USB serial number, or else its "
               "MAC address, tells whether it is the same board (left alone) or the next one "
               "(flashed). A board of the other family (an Arduino for an ESP product) is left "
               "alone. Every board left alone is named with the reason (`skipped` with --json). "
               "A board whose record line cannot be written counts as failed and no new boards "
               "are taken; so it is when the program reading the station's output ends, and "
               "either way the station ends with exit status 1. Leonardo, Micro and Pro Micro "
               "boards are flashed one at a time, because their bootloader appears as a new "
               "port. The first `Ctrl+C` lets running boards finish; a second one stops them.",
               "Een poort achter een USB-seriële chip (CP210x, CH340, FTDI, de USB-chip van een "
               "Uno) die verdwijnt en terugkomt, heeft een nieuw board: dat wordt meteen "
               "geflasht. Een board met eigen USB (ESP32-S3/C3/C6, Leonardo, Micro, Pro Micro) "
               "verdwijnt en komt terug wanneer het herstart; daarom bepaalt een paar seconden "
               "na zijn flash het USB-serienummer, of anders het MAC-adres, of het hetzelfde "
               "board is (niet aangeraakt) of het volgende (geflasht). Een board van de andere "
               "familie (een Arduino bij een ESP-product) wordt niet aangeraakt. Elk board dat "
               "niet wordt aangeraakt, wordt met de reden genoemd (`skipped` met --json). Een "
               "board waarvan de registratieregel niet geschreven kan worden, telt als mislukt "
               "en er worden geen nieuwe boards meer aangenomen; zo gaat het ook wanneer het "
               "programma stopt dat de uitvoer van het station leest, en in beide gevallen "
               "eindigt het station met afsluitcode 1. Leonardo-, Micro- en Pro Micro-boards "
               "worden één voor één geflasht, omdat hun bootloader als nieuwe poort verschijnt. "
               "De eerste `Ctrl+C` laat lopende boards afmaken; een tweede stopt ze.",
               "Eine Schnittstelle hinter einem USB-Seriell-Chip (CP210x, CH340, FTDI, der "
               "USB-Chip eines Uno), die verschwindet und wiederkommt, hat ein neues Board: Es "
               "wird sofort geflasht. Ein Board mit eigenem USB (ESP32-S3/C3/C6, Leonardo, "
               "Micro, Pro Micro) verschwindet und kommt wieder, wenn es neu startet; deshalb "
               "entscheidet einige Sekunden nach seinem Durchlauf seine USB-Seriennummer oder "
               "sonst seine MAC-Adresse, ob es dasselbe Board ist (nicht angerührt) oder das "
               "nächste (geflasht). Ein Board der anderen Familie (ein Arduino bei einem "
               "ESP-Produkt) wird nicht angerührt. Jedes nicht angerührte Board wird mit dem "
               "Grund genannt (`skipped` mit --json). Ein Board, dessen Protokollzeile nicht "
               "geschrieben werden kann, zählt als fehlgeschlagen, und es werden keine neuen "
               "Boards mehr angenommen; ebenso, wenn sich das Programm beendet, das die Ausgabe "
               "der Station liest, und in beiden Fällen endet die Station mit dem Exit-Status 1. "
               "Leonardo, Micro und Pro Micro werden nacheinander geflasht, weil ihr Bootloader "
               "als neue Schnittstelle erscheint. Das erste `Strg+C` lässt laufende Boards fertig "
               "werden, ein zweites bricht sie ab.",
               "Un port derrière une puce USB-série (CP210x, CH340, FTDI, la puce USB d’une Uno) "
               "qui disparaît puis revient porte une nouvelle carte\u00A0: elle est flashée "
               "aussitôt. Une carte à USB intégré (ESP32-S3/C3/C6, Leonardo, Micro, Pro Micro) "
               "disparaît et revient quand elle redémarre\u00A0; quelques secondes après son "
               "flashage, son numéro de série USB, ou à défaut son adresse MAC, indique donc "
               "s’il s’agit de la même carte (laissée telle quelle) ou de la suivante "
               "(flashée). Une carte de l’autre famille (une Arduino pour un produit ESP) est "
               "laissée telle quelle. Chaque carte laissée telle quelle est nommée avec la "
               "raison (`skipped` avec --json). Une carte dont la ligne de suivi ne peut pas "
               "être écrite compte comme échouée et plus aucune nouvelle carte n’est prise\u00A0; "
               "il en va de même quand le programme qui lit la sortie de la station s’arrête, "
               "et dans les deux cas la station se termine avec le code de sortie 1. Les "
               "Leonardo, Micro et Pro Micro sont flashées une par une, car leur bootloader "
               "apparaît comme un nouveau port. Un premier `Ctrl+C` laisse finir les cartes en "
               "cours\u00A0; un second les arrête.",
               "Un puerto detrás de un chip USB-serie (CP210x, CH340, FTDI, el chip USB de una "
               "Uno) que desaparece y vuelve tiene una placa nueva: se flashea enseguida. Una "
               "placa con USB propio (ESP32-S3/C3/C6, Leonardo, Micro, Pro Micro) desaparece y "
               "vuelve cuando se reinicia; por eso, unos segundos después de su flasheo, su "
               "número de serie USB, o si no su dirección MAC, indica si es la misma placa (no "
               "se toca) o la siguiente (se flashea). Una placa de la otra familia (una Arduino "
               "para un producto ESP) no se toca. Cada placa que no se toca se nombra con el "
               "motivo (`skipped` con --json). Una placa cuya línea de registro no se puede "
               "escribir cuenta como fallida y no se aceptan más placas; lo mismo ocurre cuando "
               "termina el programa que lee la salida de la estación, y en ambos casos la "
               "estación termina con el código de salida 1. Las Leonardo, Micro y Pro Micro se "
               "flashean de una en una, porque su bootloader aparece como un puerto nuevo. El "
               "primer `Ctrl+C` deja terminar las placas en curso; un segundo las detiene."}),
      }};
}

HelpTopic privacy() {
  return {
      "privacy",
      tr({"Privacy and security", "Privacy en veiligheid", "Datenschutz und Sicherheit",
          "Confidentialité et sécurité", "Privacidad y seguridad"}),
      "lock.shield",
      {
          paragraph(
              {"Tarnwick collects nothing and sends nothing anywhere. It opens a network "
               "connection only to a port you named (`rfc2217://…`, see **Boards on other "
               "computers**) and never listens itself. Besides that it opens only the serial port "
               "you pick and the files and folders you choose, save or drop yourself, and keeps "
               "your settings and the work in progress in your own home folder. (The simulated "
               "boards of `tarnwick-simboard` listen only when started with `--rfc2217`.)",
               "Tarnwick verzamelt niets en verstuurt nergens iets heen. Het opent alleen een "
               "netwerkverbinding naar een poort die je zelf hebt genoemd (`rfc2217://…`, zie "
               "**Boards aan andere computers**) en luistert zelf nooit. Verder opent het alleen "
               "de seriële poort die je kiest en de bestanden en mappen die je zelf kiest, opslaat "
               "of erheen sleept, en bewaart het je instellingen en je lopende werk in je eigen "
               "thuismap. (De gesimuleerde boards van `tarnwick-simboard` luisteren alleen als ze "
               "met `--rfc2217` gestart zijn.)",
               "Tarnwick sammelt nichts und sendet nichts irgendwohin. Es öffnet eine "
               "Netzwerkverbindung nur zu einem Port, den du selbst genannt hast (`rfc2217://…`, "
               "siehe **Boards an anderen Rechnern**), und lauscht selbst nie. Ansonsten öffnet "
               "es nur die serielle Schnittstelle, die du wählst, und die Dateien und Ordner, die "
               "du selbst auswählst, speicherst oder hineinziehst, und legt deine Einstellungen "
               "und die laufende Arbeit in deinem eigenen Home-Ordner ab. (Die simulierten Boards "
               "von `tarnwick-simboard` lauschen nur, wenn sie mit `--rfc2217` gestartet sind.)",
               "Tarnwick ne collecte rien et n’envoie rien nulle part. Il n’ouvre une connexion "
               "réseau que vers un port que vous avez nommé (`rfc2217://…`, voir **Cartes sur "
               "d’autres ordinateurs**) et n’écoute jamais lui-même. Pour le reste, il n’ouvre que "
               "le port série que vous choisissez et les fichiers et dossiers que vous "
               "sélectionnez, enregistrez ou glissez vous-même, et conserve vos réglages et le "
               "travail en cours dans votre dossier personnel. (Les cartes simulées de "
               "`tarnwick-simboard` n’écoutent que si elles sont lancées avec `--rfc2217`.)",
               "Tarnwick no recoge nada ni envía nada a ningún sitio. Solo abre una conexión de "
               "red hacia un puerto que tú has indicado (`rfc2217://…`, ver **Placas en otros "
               "equipos**) y nunca escucha por sí mismo. Aparte de eso, solo abre el puerto serie "
               "que eliges y los archivos y carpetas que tú mismo seleccionas, guardas o "
               "arrastras, y guarda tus ajustes y el trabajo en curso en tu propia carpeta "
               "personal. (Las placas simuladas de `tarnwick-simboard` solo escuchan si se inician "
               "con `--rfc2217`.)"}),
          paragraph(
              {"The serial port is opened exclusively, so no other program can interfere while "
               "flashing. The app cannot be quit while flashing: a half-written board does not "
               "start.",
               "De seriële poort wordt exclusief geopend, zodat geen ander programma tijdens het "
               "flashen kan storen. Tarnwick kan tijdens het flashen niet worden afgesloten: een "
               "half beschreven board start niet.",
               "Die serielle Schnittstelle wird exklusiv geöffnet, sodass kein anderes Programm "
               "beim Flashen dazwischenfunken kann. Während des Flashens lässt sich Tarnwick "
               "nicht beenden: Ein halb beschriebenes Board startet nicht.",
               "Le port série est ouvert en exclusivité\u00A0: aucun autre programme ne peut "
               "interférer pendant le flashage. Tarnwick ne peut pas être quitté pendant le "
               "flashage\u00A0: une carte à moitié écrite ne démarre pas.",
               "El puerto serie se abre en exclusiva, así que ningún otro programa puede "
               "interferir durante el flasheo. Tarnwick no se puede cerrar mientras flashea: una "
               "placa escrita a medias no arranca."}),
          paragraph(
              {"On Linux, Tarnwick runs with your user's rights, without a sandbox. Whether you "
               "may open a serial port is decided by the system: the package's udev rule or "
               "membership of the `dialout` group (see **Troubleshooting**).",
               "Onder Linux draait Tarnwick met de rechten van je gebruiker, zonder sandbox. Of "
               "je een seriële poort mag openen, bepaalt het systeem: de udev-regel van het "
               "pakket of lidmaatschap van de groep `dialout` (zie **Problemen oplossen**).",
               "Unter Linux läuft Tarnwick mit den Rechten deines Benutzers, ohne Sandbox. Ob du "
               "eine serielle Schnittstelle öffnen darfst, entscheidet das System: die "
               "udev-Regel des Pakets oder die Mitgliedschaft in der Gruppe `dialout` (siehe "
               "**Fehlerbehebung**).",
               "Sous Linux, Tarnwick s’exécute avec les droits de votre utilisateur, sans bac à "
               "sable. Le droit d’ouvrir un port série relève du système\u00A0: la règle udev du "
               "paquet ou l’appartenance au groupe `dialout` (voir **Dépannage**).",
               "En Linux, Tarnwick se ejecuta con los permisos de tu usuario, sin sandbox. Si "
               "puedes abrir un puerto serie lo decide el sistema: la regla udev del paquete o "
               "pertenecer al grupo `dialout` (ver **Solución de problemas**)."}),
      }};
}

HelpTopic shortcuts() {
  return {
      "shortcuts",
      tr({"Keyboard shortcuts", "Sneltoetsen", "Tastenkürzel", "Raccourcis clavier",
          "Atajos de teclado"}),
      "keyboard",
      {
          table({
              {{"Ctrl+R", "Ctrl+R", "Strg+R", "Ctrl+R", "Control+R"},
               {"Flash / stop; start or stop the station",
                "Flashen / stoppen; het station starten of stoppen",
                "Flashen / stoppen; die Station starten oder stoppen",
                "Flasher / arrêter\u00A0; démarrer ou arrêter la station",
                "Flashear / detener; iniciar o detener la estación"}},
              {{"Ctrl+N / Ctrl+O", "Ctrl+N / Ctrl+O", "Strg+N / Strg+O", "Ctrl+N / Ctrl+O",
                "Control+N / Control+O"},
               {"New product / open product", "Nieuw product / product openen",
                "Neues Produkt / Produkt öffnen", "Nouveau produit / ouvrir un produit",
                "Producto nuevo / abrir producto"}},
              {{"Ctrl+S / Ctrl+Shift+S", "Ctrl+S / Ctrl+Shift+S", "Strg+S / Strg+Umschalt+S",
                "Ctrl+S / Ctrl+Maj+S", "Control+S / Control+Mayúsculas+S"},
               {"Save product / save as", "Product opslaan / opslaan als",
                "Produkt speichern / speichern unter", "Enregistrer le produit / enregistrer sous",
                "Guardar producto / guardar como"}},
              {{"Del", "Del", "Entf", "Suppr", "Suprimir"},
               {"Remove the selected files", "Geselecteerde bestanden verwijderen",
                "Ausgewählte Dateien entfernen", "Retirer les fichiers sélectionnés",
                "Quitar los archivos seleccionados"}},
              {{"Ctrl+L", "Ctrl+L", "Strg+L", "Ctrl+L", "Control+L"},
               {"Show or hide the log", "Logboek tonen of verbergen",
                "Protokoll ein- oder ausblenden", "Afficher ou masquer le journal",
                "Mostrar u ocultar el registro"}},
              {{"Ctrl+Alt+S", "Ctrl+Alt+S", "Strg+Alt+S", "Ctrl+Alt+S", "Control+Alt+S"},
               {"Save log", "Logboek opslaan", "Protokoll speichern", "Enregistrer le journal",
                "Guardar el registro"}},
              {{"Ctrl+F", "Ctrl+F", "Strg+F", "Ctrl+F", "Control+F"},
               {"Find in the log", "Zoeken in het logboek", "Im Protokoll suchen",
                "Rechercher dans le journal", "Buscar en el registro"}},
              {{"F3 / Shift+F3", "F3 / Shift+F3", "F3 / Umschalt+F3", "F3 / Maj+F3",
                "F3 / Mayúsculas+F3"},
               {"Next / previous match in the log", "Volgende / vorige overeenkomst in het logboek",
                "Nächster / vorheriger Treffer im Protokoll",
                "Occurrence suivante / précédente dans le journal",
                "Coincidencia siguiente / anterior en el registro"}},
              {{"Ctrl+K", "Ctrl+K", "Strg+K", "Ctrl+K", "Control+K"},
               {"Clear log and counters", "Logboek en tellers wissen",
                "Protokoll und Zähler leeren", "Effacer le journal et les compteurs",
                "Borrar el registro y los contadores"}},
              {{"Ctrl+Q", "Ctrl+Q", "Strg+Q", "Ctrl+Q", "Control+Q"},
               {"Quit", "Afsluiten", "Beenden", "Quitter", "Salir"}},
              {same("F1"),
               {"Open this help", "Deze help openen", "Diese Hilfe öffnen", "Ouvrir cette aide",
                "Abrir esta ayuda"}},
          }),
          paragraph(
              {"F1 opens this help from anywhere in Tarnwick. The search field above the topics "
               "lists every topic that mentions what you type, such as `dialout` or an error "
               "message.",
               "F1 opent deze help vanuit elke plek in Tarnwick. Het zoekveld boven de "
               "onderwerpen toont elk onderwerp dat noemt wat je typt, zoals `dialout` of een "
               "foutmelding.",
               "F1 öffnet diese Hilfe überall in Tarnwick. Das Suchfeld über den Themen zeigt "
               "jedes Thema, das erwähnt, was du eintippst, etwa `dialout` oder eine "
               "Fehlermeldung.",
               "F1 ouvre cette aide depuis n’importe quel endroit de Tarnwick. Le champ de "
               "recherche au-dessus des rubriques affiche chaque rubrique qui mentionne ce que "
               "vous tapez, comme `dialout` ou un message d’erreur.",
               "F1 abre esta ayuda desde cualquier parte de Tarnwick. El campo de búsqueda sobre "
               "los temas muestra cada tema que menciona lo que escribes, como `dialout` o un "
               "mensaje de error."}),
          screenshot("help.png", {"The help window with its topics and the search field.",
                                  "Het helpvenster met de onderwerpen en het zoekveld.",
                                  "Das Hilfefenster mit den Themen und dem Suchfeld.",
                                  "La fenêtre d’aide avec ses rubriques et le champ de recherche.",
                                  "La ventana de ayuda con sus temas y el campo de búsqueda."}),
      }};
}

} // namespace tarnwick::L10n::Help::content
