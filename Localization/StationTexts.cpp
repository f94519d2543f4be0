#include "Localization/StationTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Station {

std::string ready(const std::string& product, bool boardsPresentToo) {
  if (boardsPresentToo) {
    switch (currentLanguage()) {
    case Language::en:
      return "Flashing “" + product +
             "” onto every board, those connected now and each one "
             "connected later. Ctrl+C stops.";
    case Language::nl:
      return "‘" + product +
             "’ wordt op elk board geflasht, nu aangesloten of later. "
             "Ctrl+C stopt.";
    case Language::de:
      return "„" + product +
             "“ wird auf jedes Board geflasht, ob schon angeschlossen oder "
             "später. Strg+C beendet.";
    case Language::fr:
      return "« " + product +
             " » est flashé sur chaque carte, déjà branchée ou "
             "branchée ensuite. Ctrl+C arrête.";
    case Language::es:
      return "Se flashea «" + product +
             "» en cada placa, las conectadas ahora y las que se "
             "conecten después. Ctrl+C detiene.";
    }
  }
  switch (currentLanguage()) {
  case Language::en:
    return "Ready to flash “" + product +
           "” onto every board connected from now on. "
           "Ctrl+C stops.";
  case Language::nl:
    return "Klaar om ‘" + product + "’ te flashen op elk board dat je nu aansluit. Ctrl+C stopt.";
  case Language::de:
    return "Bereit, „" + product +
           "“ auf jedes Board zu flashen, das ab jetzt angeschlossen "
           "wird. Strg+C beendet.";
  case Language::fr:
    return "Prêt à flasher « " + product +
           " » sur chaque carte branchée à partir de "
           "maintenant. Ctrl+C arrête.";
  case Language::es:
    return "Listo para flashear «" + product +
           "» en cada placa que se conecte a partir de ahora. "
           "Ctrl+C detiene.";
  }
  return {};
}

std::string oneAtATime() {
  return tr({"These boards are flashed one at a time: their bootloader appears as a port of its "
             "own.",
             "Deze boards worden één voor één geflasht: hun bootloader verschijnt als een eigen "
             "poort.",
             "Diese Boards werden nacheinander geflasht: Ihr Bootloader erscheint als eigene "
             "Schnittstelle.",
             "Ces cartes sont flashées une à une : leur bootloader apparaît comme un port "
             "à part.",
             "Estas placas se flashean de una en una: su bootloader aparece como un puerto "
             "propio."});
}

std::string aboutBoard(const std::string& board, const std::string& text) {
  return board + (currentLanguage() == Language::fr ? " : " : ": ") + text;
}

std::string started() {
  return tr({"Flashing started", "Flashen gestart", "Flashen gestartet", "Flashage démarré",
             "Flasheo iniciado"});
}

std::string failed(const std::string& message) {
  return tr({"Failed: ", "Mislukt: ", "Fehlgeschlagen: ", "Échec : ", "Error: "}) + message;
}

namespace {
// The desktop's counts, with the plain spaces of the command line.
std::string counts(std::int64_t flashed, std::int64_t failed) {
  const std::string good = std::to_string(flashed), bad = std::to_string(failed);
  switch (currentLanguage()) {
  case Language::en: return "Flashed " + good + " · Failed " + bad;
  case Language::nl: return "Geflasht " + good + " · Mislukt " + bad;
  case Language::de: return "Geflasht " + good + " · Fehlgeschlagen " + bad;
  case Language::fr: return "Flashées : " + good + " · Échecs : " + bad;
  case Language::es: return "Flasheadas " + good + " · Fallidas " + bad;
  }
  return {};
}
} // namespace

std::string status(const std::vector<std::pair<std::string, int>>& inProgress, std::int64_t flashed,
                   std::int64_t failed, bool compact) {
  // The counts first: on a narrow terminal the end of the line is what gets cut.
  std::string text = counts(flashed, failed) + " · ";
  if (inProgress.empty()) {
    text += tr({"Waiting for boards", "Wacht op boards", "Warte auf Boards", "En attente de cartes",
                "Esperando placas"});
  } else {
    if (!compact) text += tr({"Flashing ", "Bezig ", "Läuft ", "En cours : ", "En curso: "});
    // German, French and Spanish set a space before the percent sign.
    const bool spaced = currentLanguage() == Language::de || currentLanguage() == Language::fr ||
                        currentLanguage() == Language::es;
    for (std::size_t i = 0; i < inProgress.size(); ++i) {
      if (i > 0) text += compact ? " " : ", ";
      text +=
          inProgress[i].first + " " + std::to_string(inProgress[i].second) + (spaced ? " %" : "%");
    }
  }
  return text;
}

std::string finishing(std::int64_t running) {
  const std::string n = std::to_string(running);
  const bool one = running == 1;
  switch (currentLanguage()) {
  case Language::en:
    return "No new boards are taken. " +
           (one ? std::string("The running board finishes")
                : "The " + n + " running boards finish") +
           "; press Ctrl+C again to stop " + (one ? "it." : "them.");
  case Language::nl:
    return "Er worden geen nieuwe boards meer genomen. " +
           (one ? std::string("Het lopende board wordt") : "De " + n + " lopende boards worden") +
           " afgemaakt; druk nogmaals op Ctrl+C om " + (one ? "het" : "ze") + " te stoppen.";
  case Language::de:
    return "Es werden keine neuen Boards mehr angenommen. " +
           (one ? std::string("Das laufende Board wird")
                : "Die " + n + " laufenden Boards werden") +
           " fertig geflasht; ein weiteres Strg+C bricht " + (one ? "es" : "sie") + " ab.";
  case Language::fr:
    return "Plus aucune nouvelle carte n’est prise. " +
           (one ? std::string("La carte en cours va") : "Les " + n + " cartes en cours vont") +
           " jusqu’au bout ; appuyez de nouveau sur Ctrl+C pour " + (one ? "l’" : "les ") +
           "arrêter.";
  case Language::es:
    return "Ya no se aceptan placas nuevas. " +
           (one ? std::string("La placa en curso termina")
                : "Las " + n + " placas en curso terminan") +
           "; pulsa Ctrl+C otra vez para detener" + (one ? "la." : "las.");
  }
  return {};
}

std::string stopping() {
  return tr({"Stopping the running boards…", "De lopende boards worden gestopt…",
             "Die laufenden Boards werden abgebrochen …", "Arrêt des cartes en cours…",
             "Deteniendo las placas en curso…"});
}

std::string limitReached(std::int64_t limit) {
  const std::string n = std::to_string(limit);
  switch (currentLanguage()) {
  case Language::en: return "Limit of " + n + " reached: no new boards are taken.";
  case Language::nl: return "Limiet van " + n + " bereikt: er worden geen nieuwe boards genomen.";
  case Language::de:
    return "Grenze von " + n + " erreicht: Es werden keine neuen Boards angenommen.";
  case Language::fr:
    return "Limite de " + n + " atteinte : plus aucune nouvelle carte n’est prise.";
  case Language::es: return "Límite de " + n + " alcanzado: no se aceptan placas nuevas.";
  }
  return {};
}

std::string summary(std::int64_t flashed, std::int64_t failed) {
  return counts(flashed, failed) + ".";
}

std::string limitValue() {
  return tr({"Give a whole number of 1 or more.", "Geef een geheel getal van 1 of meer.",
             "Gib eine ganze Zahl ab 1 an.", "Indiquez un nombre entier supérieur ou égal à 1.",
             "Indica un número entero igual o mayor que 1."});
}

std::string cannotOpenRecord(const std::string& file, const std::string& reason) {
  switch (currentLanguage()) {
  case Language::en: return "Cannot open the record file " + file + ": " + reason;
  case Language::nl: return "Kan het registratiebestand " + file + " niet openen: " + reason;
  case Language::de: return "Die Protokolldatei " + file + " kann nicht geöffnet werden: " + reason;
  case Language::fr:
    return "Impossible d’ouvrir le fichier d’enregistrement " + file + " : " + reason;
  case Language::es: return "No se puede abrir el archivo de registro " + file + ": " + reason;
  }
  return {};
}

std::string cannotWriteRecord(const std::string& file, const std::string& reason) {
  switch (currentLanguage()) {
  case Language::en: return "This board is missing from " + file + ": " + reason;
  case Language::nl: return "Dit board ontbreekt in " + file + ": " + reason;
  case Language::de: return "Dieses Board fehlt in " + file + ": " + reason;
  case Language::fr: return "Cette carte manque dans " + file + " : " + reason;
  case Language::es: return "Esta placa falta en " + file + ": " + reason;
  }
  return {};
}

std::string needsTestDevice(const std::string& path) {
  switch (currentLanguage()) {
  case Language::en: return path + " is no serial adapter; only --test-device allows it.";
  case Language::nl: return path + " is geen seriële adapter; alleen --test-device staat dat toe.";
  case Language::de:
    return path + " ist kein serieller Adapter; nur mit --test-device ist das erlaubt.";
  case Language::fr:
    return path + " n’est pas un adaptateur série ; seul --test-device l’autorise.";
  case Language::es: return path + " no es un adaptador serie; solo --test-device lo permite.";
  }
  return {};
}

std::string otherFamily(bool productIsESP) {
  return productIsESP ? tr({"an Arduino board, and this product is for ESP boards.",
                            "een Arduino-board, en dit product is voor ESP-boards.",
                            "ein Arduino-Board, dieses Produkt ist aber für ESP-Boards.",
                            "une carte Arduino, alors que ce produit est destiné aux cartes ESP.",
                            "una placa Arduino, y este producto es para placas ESP."})
                      : tr({"an ESP board, and this product is for Arduino boards.",
                            "een ESP-board, en dit product is voor Arduino-boards.",
                            "ein ESP-Board, dieses Produkt ist aber für Arduino-Boards.",
                            "une carte ESP, alors que ce produit est destiné aux cartes Arduino.",
                            "una placa ESP, y este producto es para placas Arduino."});
}
std::string sameSerialNumber() {
  return tr({"the board whose run just ended, restarting (same USB serial number).",
             "het board waarvan de flash net klaar is, dat herstart (zelfde USB-serienummer).",
             "das Board, dessen Durchlauf gerade endete, beim Neustart (gleiche "
             "USB-Seriennummer).",
             "la carte dont le flashage vient de se terminer, en train de redémarrer (même "
             "numéro de série USB).",
             "la placa cuyo flasheo acaba de terminar, que se está reiniciando (mismo número de "
             "serie USB)."});
}
std::string cannotTell() {
  return tr({"taken for the board whose run just ended, restarting: its port has no USB serial "
             "number that would tell another board. Plug a new board in again after a few "
             "seconds.",
             "aangezien voor het board waarvan de flash net klaar is en dat herstart: de poort "
             "heeft geen USB-serienummer waaraan een ander board te herkennen is. Sluit een nieuw "
             "board na een paar seconden opnieuw aan.",
             "für das Board gehalten, dessen Durchlauf gerade endete und das neu startet: Die "
             "Schnittstelle hat keine USB-Seriennummer, an der ein anderes Board zu erkennen "
             "wäre. Schließe ein neues Board nach einigen Sekunden noch einmal an.",
             "prise pour la carte dont le flashage vient de se terminer et qui redémarre : son "
             "port n’a pas de numéro de série USB qui permettrait de reconnaître une autre carte. "
             "Rebranchez une nouvelle carte après quelques secondes.",
             "se toma por la placa cuyo flasheo acaba de terminar y que se está reiniciando: su "
             "puerto no tiene número de serie USB con el que reconocer otra placa. Vuelve a "
             "conectar una placa nueva pasados unos segundos."});
}
std::string sameBoardByMAC() {
  return tr({"the board whose run just ended (same MAC address); restarted into its firmware.",
             "het board waarvan de flash net klaar is (zelfde MAC-adres); herstart in zijn "
             "firmware.",
             "das Board, dessen Durchlauf gerade endete (gleiche MAC-Adresse); in seine Firmware "
             "neu gestartet.",
             "la carte dont le flashage vient de se terminer (même adresse MAC) ; redémarrée sur "
             "son firmware.",
             "la placa cuyo flasheo acaba de terminar (misma dirección MAC); reiniciada con su "
             "firmware."});
}
std::string notTakingBoards() {
  return tr({"the station takes no new boards.", "het station neemt geen nieuwe boards meer aan.",
             "Die Station nimmt keine neuen Boards mehr an.",
             "la station ne prend plus de nouvelles cartes.",
             "la estación ya no acepta placas nuevas."});
}
std::string leftAlone(const std::string& reason) {
  return tr({"Left alone: ", "Niet aangeraakt: ", "Nicht angerührt: ", "Laissée telle quelle : ",
             "No se toca: "}) +
         reason;
}
std::string recordLost(const std::string& problem) {
  return problem + " " +
         tr({"No new boards are taken: fix the record file and start the station again.",
             "Er worden geen nieuwe boards meer aangenomen: herstel het registratiebestand en "
             "start het station opnieuw.",
             "Es werden keine neuen Boards mehr angenommen: Behebe das Problem mit der "
             "Protokolldatei und starte die Station neu.",
             "Plus aucune nouvelle carte n’est prise : corrigez le fichier de suivi et relancez "
             "la station.",
             "No se aceptan más placas: arregla el archivo de registro y vuelve a iniciar la "
             "estación."});
}
std::string waitingForPort(const std::string& path) {
  return tr({"Waiting for " + path + ": it is not there yet.",
             "Wacht op " + path + ": die is er nog niet.",
             "Warte auf " + path + ": Der Anschluss ist noch nicht da.",
             "En attente de " + path + " : il n’est pas encore là.",
             "Esperando a " + path + ": todavía no está."});
}
std::string cannotReach(const std::string& port, const std::string& reason) {
  return tr(
      {"Cannot reach " + port + ": " + reason + " The station tries again every second.",
       "Kan " + port + " niet bereiken: " + reason +
           " Het station probeert het elke seconde opnieuw.",
       port + " ist nicht erreichbar: " + reason + " Die Station versucht es jede Sekunde erneut.",
       "Impossible de joindre " + port + " : " + reason + " La station réessaie chaque seconde.",
       "No se puede conectar con " + port + ": " + reason +
           " La estación lo vuelve a intentar cada segundo."});
}
std::string outputLost(bool recorded) {
  if (recorded) {
    return tr({"The station’s output was closed (the program reading it ended). No new boards "
               "were taken; the boards already running were finished and recorded.",
               "De uitvoer van het station is gesloten (het programma dat hem las is gestopt). Er "
               "zijn geen nieuwe boards aangenomen; de lopende boards zijn afgemaakt en "
               "geregistreerd.",
               "Die Ausgabe der Station wurde geschlossen (das lesende Programm hat sich "
               "beendet). Es wurden keine neuen Boards angenommen; die laufenden wurden fertig "
               "geflasht und protokolliert.",
               "La sortie de la station a été fermée (le programme qui la lisait s’est arrêté). "
               "Aucune nouvelle carte n’a été prise ; les cartes en cours ont été terminées et "
               "consignées.",
               "La salida de la estación se cerró (el programa que la leía terminó). No se "
               "aceptaron más placas; las que estaban en curso se terminaron y registraron."});
  }
  return tr({"The station’s output was closed (the program reading it ended). No new boards "
             "were taken; the boards already running were finished.",
             "De uitvoer van het station is gesloten (het programma dat hem las is gestopt). Er "
             "zijn geen nieuwe boards aangenomen; de lopende boards zijn afgemaakt.",
             "Die Ausgabe der Station wurde geschlossen (das lesende Programm hat sich beendet). "
             "Es wurden keine neuen Boards angenommen; die laufenden wurden fertig geflasht.",
             "La sortie de la station a été fermée (le programme qui la lisait s’est arrêté). "
             "Aucune nouvelle carte n’a été prise ; les cartes en cours ont été terminées.",
             "La salida de la estación se cerró (el programa que la leía terminó). No se "
             "aceptaron más placas; las que estaban en curso se terminaron."});
}

std::string noDevicePath(const std::string& name) {
  return tr({name + " is no device path.", name + " is geen apparaatpad.",
             name + " ist kein Gerätepfad.", name + " n’est pas un chemin de périphérique.",
             name + " no es una ruta de dispositivo."});
}

std::string didYouMeanDevice(const std::string& path) {
  return tr({"Did you mean " + path + "?", "Bedoel je " + path + "?", "Meintest du " + path + "?",
             "Vouliez-vous dire " + path + " ?", "¿Quisiste decir " + path + "?"});
}

} // namespace tarnwick::L10n::Station
