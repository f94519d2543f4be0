#include "Localization/StationWindowTexts.hpp"

#include "Localization/Text.hpp"

// French sets a no-break space before a colon, so the line never breaks between the colon and
// the word it belongs to.
#define NBSP "\u00A0"

namespace tarnwick::L10n::StationWindow {

std::string menuItem() {
  return tr({"Flashing &Station", "&Flashstation", "&Flash-Station", "S&tation de flashage",
             "&Estación de flasheo"});
}
std::string menuItemTooltip() {
  return tr({"Flash every board plugged in with this product, several at once",
             "Elk aangesloten board met dit product flashen, meerdere tegelijk",
             "Jedes angeschlossene Board mit diesem Produkt flashen, mehrere gleichzeitig",
             "Flasher chaque carte branchée avec ce produit, plusieurs à la fois",
             "Flashear cada placa conectada con este producto, varias a la vez"});
}

std::string start() { return tr({"Start", "Starten", "Starten", "Démarrer", "Iniciar"}); }
std::string stop() { return tr({"Stop", "Stoppen", "Stoppen", "Arrêter", "Detener"}); }
std::string stopNow() {
  return tr({"Stop Now", "Nu stoppen", "Sofort abbrechen", "Arrêter maintenant", "Detener ya"});
}
std::string startTooltip() {
  return tr({"Flash every board plugged in from now on, several at once (Ctrl+R)",
             "Elk board flashen dat je vanaf nu aansluit, meerdere tegelijk (Ctrl+R)",
             "Jedes ab jetzt angeschlossene Board flashen, mehrere gleichzeitig (Strg+R)",
             "Flasher chaque carte branchée à partir de maintenant, plusieurs à la fois "
             "(Ctrl+R)",
             "Flashear cada placa que se conecte a partir de ahora, varias a la vez (Control+R)"});
}
std::string stopTooltip() {
  return tr({"Take no new boards; the running ones finish (Ctrl+R)",
             "Geen nieuwe boards meer nemen; de lopende worden afgemaakt (Ctrl+R)",
             "Keine neuen Boards mehr annehmen; die laufenden werden fertig geflasht (Strg+R)",
             "Ne plus prendre de nouvelles cartes\u00A0; celles en cours vont jusqu’au bout "
             "(Ctrl+R)",
             "No aceptar más placas; las que están en curso terminan (Control+R)"});
}
std::string stopNowTooltip() {
  return tr({"Stop the running boards too: they are left only partly written (Ctrl+R)",
             "Ook de lopende boards stoppen: die blijven maar half beschreven (Ctrl+R)",
             "Auch die laufenden Boards abbrechen: Sie bleiben nur teilweise beschrieben (Strg+R)",
             "Arrêter aussi les cartes en cours\u00A0: elles restent à moitié écrites (Ctrl+R)",
             "Detener también las placas en curso: quedan escritas solo en parte (Control+R)"});
}

std::string alsoConnected() {
  return tr({"Also flash the boards already connected", "Ook de al aangesloten boards flashen",
             "Auch die schon angeschlossenen Boards flashen",
             "Flasher aussi les cartes déjà branchées",
             "Flashear también las placas ya conectadas"});
}
std::string alsoConnectedTooltip() {
  return tr({"Without it, only boards plugged in after pressing Start are flashed",
             "Zonder deze optie worden alleen boards geflasht die je na Starten aansluit",
             "Ohne diese Option werden nur Boards geflasht, die nach einem Klick auf Starten "
             "angeschlossen werden",
             "Sans cette option, seules les cartes branchées après avoir appuyé sur Démarrer "
             "sont flashées",
             "Sin esta opción solo se flashean las placas que se conecten después de pulsar "
             "Iniciar"});
}

std::string limit() { return tr({"Limit:", "Limiet:", "Grenze:", "Limite" NBSP ":", "Límite:"}); }
std::string noLimit() {
  return tr({"No limit", "Geen limiet", "Keine Grenze", "Aucune limite", "Sin límite"});
}
std::string limitTooltip() {
  return tr({"Take no new boards once this many have been flashed or are running",
             "Geen nieuwe boards meer nemen zodra er zoveel geflasht of bezig zijn",
             "Keine neuen Boards mehr annehmen, sobald so viele geflasht sind oder laufen",
             "Ne plus prendre de nouvelles cartes dès que ce nombre est flashé ou en cours",
             "No aceptar más placas cuando haya tantas flasheadas o en curso"});
}

std::string recordFile() {
  return tr({"Record file:", "Registratiebestand:", "Protokolldatei:", "Fichier de suivi" NBSP ":",
             "Archivo de registro:"});
}
std::string noRecordFile() { return tr({"None", "Geen", "Keine", "Aucun", "Ninguno"}); }
std::string chooseRecordFile() {
  return tr({"Choose…", "Kiezen…", "Auswählen …", "Choisir…", "Elegir…"});
}
std::string forgetRecordFile() {
  return tr({"No Record", "Geen registratie", "Ohne Protokolldatei", "Sans suivi", "Sin registro"});
}
std::string recordFileTooltip() {
  return tr({"Each finished board is added to this file as a line of JSON: time, port, chip, MAC "
             "address, product and result",
             "Elk afgerond board komt als een regel JSON in dit bestand: tijd, poort, chip, "
             "MAC-adres, product en resultaat",
             "Jedes fertige Board wird als JSON-Zeile an diese Datei angehängt: Zeit, "
             "Schnittstelle, Chip, MAC-Adresse, Produkt und Ergebnis",
             "Chaque carte terminée est ajoutée à ce fichier sous forme d’une ligne JSON\u00A0: "
             "heure, port, puce, adresse MAC, produit et résultat",
             "Cada placa terminada se añade a este archivo como una línea JSON: hora, puerto, "
             "chip, dirección MAC, producto y resultado"});
}
std::string recordDialogTitle() {
  return tr({"Record File of the Station", "Registratiebestand van het station",
             "Protokolldatei der Station", "Fichier de suivi de la station",
             "Archivo de registro de la estación"});
}
std::string recordFileFilter() {
  return tr({"JSON lines (*.jsonl)", "JSON-regels (*.jsonl)", "JSON-Zeilen (*.jsonl)",
             "Lignes JSON (*.jsonl)", "Líneas JSON (*.jsonl)"});
}

std::string clearFinished() {
  return tr({"Clear Finished", "Afgeronde wissen", "Fertige entfernen", "Effacer les terminées",
             "Quitar las terminadas"});
}

std::string portColumn() { return tr({"Port", "Poort", "Schnittstelle", "Port", "Puerto"}); }
std::string boardColumn() { return tr({"Board", "Board", "Board", "Carte", "Placa"}); }
std::string serialNumberColumn() {
  return tr({"Serial Number", "Serienummer", "Seriennummer", "Numéro de série", "Número de serie"});
}
std::string chipColumn() { return tr({"Chip", "Chip", "Chip", "Puce", "Chip"}); }
std::string macColumn() {
  return tr({"MAC Address", "MAC-adres", "MAC-Adresse", "Adresse MAC", "Dirección MAC"});
}
std::string stageColumn() { return tr({"Stage", "Stap", "Schritt", "Étape", "Paso"}); }
std::string progressColumn() {
  return tr({"Progress", "Voortgang", "Fortschritt", "Progression", "Progreso"});
}
std::string resultColumn() {
  return tr({"Result", "Resultaat", "Ergebnis", "Résultat", "Resultado"});
}
std::string timeColumn() { return tr({"Time", "Tijd", "Dauer", "Durée", "Tiempo"}); }

std::string running() { return tr({"Running", "Bezig", "Läuft", "En cours", "En curso"}); }
std::string done() { return tr({"Done", "Klaar", "Fertig", "Terminée", "Terminada"}); }
std::string failed() { return tr({"Failed", "Mislukt", "Fehlgeschlagen", "Échec", "Fallida"}); }
std::string stopped() { return tr({"Stopped", "Gestopt", "Abgebrochen", "Arrêtée", "Detenida"}); }
std::string leftAlone() {
  return tr(
      {"Left alone", "Niet aangeraakt", "Nicht angerührt", "Laissée telle quelle", "No se toca"});
}

std::string percent(std::int64_t value) {
  // German, French and Spanish set a space before the percent sign, French a no-break one.
  switch (currentLanguage()) {
  case Language::en:
  case Language::nl: return std::to_string(value) + "%";
  case Language::de:
  case Language::es: return std::to_string(value) + " %";
  case Language::fr: return std::to_string(value) + NBSP "%";
  }
  return {};
}

std::string flashedCount() {
  return tr({"Flashed", "Geflasht", "Geflasht", "Flashées", "Flasheadas"});
}
std::string failedCount() {
  return tr({"Failed", "Mislukt", "Fehlgeschlagen", "Échecs", "Fallidas"});
}
std::string runningCount() { return tr({"Running", "Bezig", "Laufend", "En cours", "En curso"}); }
std::string boardsPerHour() {
  return tr({"Boards per hour", "Boards per uur", "Boards pro Stunde", "Cartes par heure",
             "Placas por hora"});
}

std::string idleState() {
  return tr({"Press Start: then every board plugged in is flashed at once.",
             "Druk op Starten: daarna wordt elk board dat je aansluit meteen geflasht.",
             "Drücke Starten: Danach wird jedes angeschlossene Board sofort geflasht.",
             "Appuyez sur Démarrer\u00A0: chaque carte branchée ensuite est flashée aussitôt.",
             "Pulsa Iniciar: después, cada placa que conectes se flashea enseguida."});
}
std::string runningState() {
  return tr({"Plug boards in: each one is flashed as soon as it is there.",
             "Sluit boards aan: elk board wordt geflasht zodra het er is.",
             "Schließe Boards an: Jedes wird geflasht, sobald es da ist.",
             "Branchez des cartes\u00A0: chacune est flashée dès qu’elle est là.",
             "Conecta placas: cada una se flashea en cuanto está ahí."});
}
std::string finishingState() {
  return tr({"No new boards are taken; the running ones finish.",
             "Er worden geen nieuwe boards meer aangenomen; de lopende worden afgemaakt.",
             "Es werden keine neuen Boards mehr angenommen; die laufenden werden fertig.",
             "Plus aucune nouvelle carte n’est prise\u00A0; celles en cours vont jusqu’au bout.",
             "Ya no se aceptan placas nuevas; las que están en curso terminan."});
}
std::string productLocked() {
  return tr({"The station flashes this product: it cannot be changed until the station is "
             "stopped.",
             "Het station flasht dit product: het kan pas worden gewijzigd als het station is "
             "gestopt.",
             "Die Station flasht dieses Produkt: Es lässt sich erst ändern, wenn die Station "
             "gestoppt ist.",
             "La station flashe ce produit\u00A0: il ne peut pas être modifié avant l’arrêt de "
             "la station.",
             "La estación flashea este producto: no se puede cambiar hasta que se detenga la "
             "estación."});
}

std::string stopBeforeQuitting() {
  return tr({"Stop the station first. Boards are flashed with this product until it is stopped, "
             "and a board stopped halfway does not start.",
             "Stop eerst het station. Tot het gestopt is worden boards met dit product geflasht, "
             "en een board dat halverwege wordt gestopt, start niet.",
             "Stoppe zuerst die Station. Bis dahin werden Boards mit diesem Produkt geflasht, und "
             "ein mittendrin abgebrochenes Board startet nicht.",
             "Arrêtez d’abord la station. Jusque-là, des cartes sont flashées avec ce produit, et "
             "une carte interrompue en cours de route ne démarre pas.",
             "Detén primero la estación. Hasta entonces se flashean placas con este producto, y "
             "una placa detenida a medias no arranca."});
}

std::string ready(const std::string& product, std::int64_t boardsNow) {
  if (boardsNow > 0) {
    switch (currentLanguage()) {
    case Language::en:
      return "--- Station: flashing “" + product +
             "” onto the boards connected now and each one plugged in later ---";
    case Language::nl:
      return "--- Station: ‘" + product +
             "’ wordt geflasht op de boards die nu zijn aangesloten en op elk board dat je "
             "later aansluit ---";
    case Language::de:
      return "--- Station: „" + product +
             "“ wird auf die jetzt angeschlossenen Boards geflasht und auf jedes, das später "
             "dazukommt ---";
    case Language::fr:
      return "--- Station\u00A0: « " + product +
             " » est flashé sur les cartes branchées maintenant et sur chaque carte branchée "
             "ensuite ---";
    case Language::es:
      return "--- Estación: se flashea «" + product +
             "» en las placas conectadas ahora y en cada una que se conecte después ---";
    }
  }
  switch (currentLanguage()) {
  case Language::en:
    return "--- Station: flashing “" + product + "” onto each board plugged in from now on ---";
  case Language::nl:
    return "--- Station: ‘" + product +
           "’ wordt geflasht op elk board dat je vanaf nu aansluit ---";
  case Language::de:
    return "--- Station: „" + product +
           "“ wird auf jedes Board geflasht, das ab jetzt angeschlossen wird ---";
  case Language::fr:
    return "--- Station\u00A0: « " + product +
           " » est flashé sur chaque carte branchée à partir de maintenant ---";
  case Language::es:
    return "--- Estación: se flashea «" + product +
           "» en cada placa que se conecte a partir de ahora ---";
  }
  return {};
}

std::string finishing(std::int64_t running) {
  const std::string n = std::to_string(running);
  const bool one = running == 1;
  switch (currentLanguage()) {
  case Language::en:
    return "No new boards are taken. " +
           (one ? std::string("The running board finishes; Stop Now stops it.")
                : "The " + n + " running boards finish; Stop Now stops them.");
  case Language::nl:
    return "Er worden geen nieuwe boards meer aangenomen. " +
           (one ? std::string("Het lopende board wordt afgemaakt; Nu stoppen stopt het.")
                : "De " + n + " lopende boards worden afgemaakt; Nu stoppen stopt ze.");
  case Language::de:
    return "Es werden keine neuen Boards mehr angenommen. " +
           (one ? std::string(
                      "Das laufende Board wird fertig geflasht; Sofort abbrechen bricht es ab.")
                : "Die " + n +
                      " laufenden Boards werden fertig geflasht; Sofort abbrechen bricht sie "
                      "ab.");
  case Language::fr:
    return "Plus aucune nouvelle carte n’est prise. " +
           (one ? std::string("La carte en cours va jusqu’au bout\u00A0; Arrêter maintenant "
                              "l’arrête.")
                : "Les " + n +
                      " cartes en cours vont jusqu’au bout\u00A0; Arrêter maintenant les "
                      "arrête.");
  case Language::es:
    return "Ya no se aceptan placas nuevas. " +
           (one ? std::string("La placa en curso termina; Detener ya la detiene.")
                : "Las " + n + " placas en curso terminan; Detener ya las detiene.");
  }
  return {};
}

std::string boardLogPlaceholder() {
  return tr({"Click a board to see its own lines of the log.",
             "Klik op een board om zijn eigen regels van het logboek te zien.",
             "Klicke auf ein Board, um seine eigenen Protokollzeilen zu sehen.",
             "Cliquez sur une carte pour voir ses propres lignes du journal.",
             "Haz clic en una placa para ver sus propias líneas del registro."});
}
std::string boardLogTitle(const std::string& port) {
  switch (currentLanguage()) {
  case Language::en: return "Log of the board on " + port;
  case Language::nl: return "Logboek van het board op " + port;
  case Language::de: return "Protokoll des Boards an " + port;
  case Language::fr: return "Journal de la carte sur " + port;
  case Language::es: return "Registro de la placa en " + port;
  }
  return {};
}

} // namespace tarnwick::L10n::StationWindow
