#include "Localization/WindowTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Window {

std::string fileMenu() { return tr({"&File", "&Bestand", "&Datei", "&Fichier", "&Archivo"}); }
std::string boardMenu() { return tr({"&Board", "B&oard", "&Board", "&Carte", "&Placa"}); }
std::string viewMenu() { return tr({"&View", "Beel&d", "&Ansicht", "&Affichage", "&Ver"}); }
std::string helpMenu() { return tr({"&Help", "&Help", "&Hilfe", "Ai&de", "Ay&uda"}); }
std::string openRecent() {
  return tr({"Open &Recent", "&Recent geopend", "&Zuletzt geöffnet", "Ouvrir un fichier &récent",
             "Abrir &reciente"});
}
std::string clearRecent() {
  return tr(
      {"&Clear Menu", "Menu &wissen", "Liste &leeren", "&Effacer la liste", "&Borrar la lista"});
}
std::string quit() { return tr({"&Quit", "&Stoppen", "&Beenden", "&Quitter", "&Salir"}); }
std::string newButton() { return tr({"New", "Nieuw", "Neu", "Nouveau", "Nuevo"}); }
std::string openButton() { return tr({"Open…", "Openen…", "Öffnen …", "Ouvrir…", "Abrir…"}); }
std::string saveButton() { return tr({"Save", "Opslaan", "Speichern", "Enregistrer", "Guardar"}); }
std::string productFileFilter() {
  return tr({"Tarnwick products (*.twflash)", "Tarnwick-producten (*.twflash)",
             "Tarnwick-Produkte (*.twflash)", "Produits Tarnwick (*.twflash)",
             "Productos de Tarnwick (*.twflash)"});
}
std::string firmwareFileFilter() {
  return tr({"Firmware (*.bin *.hex)", "Firmware (*.bin *.hex)", "Firmware (*.bin *.hex)",
             "Micrologiciel (*.bin *.hex)", "Firmware (*.bin *.hex)"});
}
std::string textFileFilter() {
  return tr({"Text files (*.txt)", "Tekstbestanden (*.txt)", "Textdateien (*.txt)",
             "Fichiers texte (*.txt)", "Archivos de texto (*.txt)"});
}

std::string close() { return tr({"Close", "Sluiten", "Schließen", "Fermer", "Cerrar"}); }
std::string opensAfterRun(const std::string& file) {
  return file +
         tr({" opens when this run has finished.", " wordt geopend zodra het flashen klaar is.",
             " wird geöffnet, sobald das Flashen abgeschlossen ist.",
             " s’ouvrira à la fin du flashage.", " se abrirá cuando termine el flasheo."});
}

std::string trySimulatedBoard() {
  return tr({"&Try with a Simulated Board", "&Uitproberen met een gesimuleerd board",
             "Mit simuliertem Board &ausprobieren", "&Essayer avec une carte simulée",
             "&Probar con una placa simulada"});
}

std::string trySimulatedBoardTooltip() {
  return tr({"Plugs in a board that Tarnwick simulates itself, to try flashing without hardware. "
             "Without firmware yet, a demo product for the board is opened too.",
             "Sluit een board aan dat Tarnwick zelf simuleert, om flashen zonder hardware uit te "
             "proberen. Is er nog geen firmware, dan wordt er ook een demoproduct voor het board "
             "geopend.",
             "Schließt ein Board an, das Tarnwick selbst simuliert, um das Flashen ohne Hardware "
             "auszuprobieren. Gibt es noch keine Firmware, wird dazu ein Demo-Produkt für das "
             "Board geöffnet.",
             "Branche une carte que Tarnwick simule lui-même, pour essayer le flashage sans "
             "matériel. S’il n’y a pas encore de firmware, un produit de démonstration pour "
             "cette carte est ouvert aussi.",
             "Conecta una placa que simula el propio Tarnwick, para probar el flasheo sin "
             "hardware. Si aún no hay firmware, también se abre un producto de demostración "
             "para la placa."});
}

// Chips and Arduino boards are masculine where the words agree ("den ESP32", "l’Arduino Uno"),
// and every board's name starts with a vowel, so French elides the article before all of them.
std::string unplugSimulatedBoard(const std::string& board, const std::string& path) {
  const std::string port = " (" + path + ")";
  return tr({"Unplug Simulated ", "Gesimuleerde ", "Simulierten ", "Débrancher l’",
             "Desconectar el "}) +
         board + tr({"", "", "", " simulé", " simulado"}) + port +
         tr({"", " loskoppelen", " abziehen", "", ""});
}

} // namespace tarnwick::L10n::Window

namespace tarnwick::L10n::Find {
std::string findInLog() {
  return tr({"&Find in Log…", "&Zoeken in logboek…", "Im Protokoll &suchen …",
             "&Rechercher dans le journal…", "B&uscar en el registro…"});
}
std::string findNext() {
  return tr({"Find &Next", "&Volgende zoeken", "&Weitersuchen", "Rechercher le &suivant",
             "Buscar &siguiente"});
}
std::string findPrevious() {
  return tr({"Find &Previous", "Vo&rige zoeken", "&Rückwärts suchen", "Rechercher le &précédent",
             "Buscar &anterior"});
}
std::string placeholder() {
  return tr({"Find in the log", "Zoeken in het logboek", "Im Protokoll suchen",
             "Rechercher dans le journal", "Buscar en el registro"});
}
std::string previousTooltip() {
  return tr({"Previous match (Shift+F3)", "Vorige overeenkomst (Shift+F3)",
             "Vorheriger Treffer (Umschalt+F3)", "Occurrence précédente (Maj+F3)",
             "Coincidencia anterior (Mayúsculas+F3)"});
}
std::string nextTooltip() {
  return tr({"Next match (F3)", "Volgende overeenkomst (F3)", "Nächster Treffer (F3)",
             "Occurrence suivante (F3)", "Coincidencia siguiente (F3)"});
}
std::string matchOf(std::int64_t current, std::int64_t total) {
  return std::to_string(current) + tr({" of ", " van ", " von ", " sur ", " de "}) +
         std::to_string(total);
}
std::string noMatches() {
  return tr({"No matches", "Geen overeenkomsten", "Keine Treffer", "Aucune occurrence",
             "Sin coincidencias"});
}
} // namespace tarnwick::L10n::Find

namespace tarnwick::L10n::NetworkPorts {
std::string addNetworkPort() {
  return tr({"Add Network Port…", "Netwerkpoort toevoegen…", "Netzwerkport hinzufügen …",
             "Ajouter un port réseau…", "Añadir puerto de red…"});
}
std::string removeNetworkPort() {
  return tr({"Remove Network Port", "Netwerkpoort verwijderen", "Netzwerkport entfernen",
             "Retirer le port réseau", "Quitar el puerto de red"});
}
std::string dialogTitle() {
  return tr({"Add Network Port", "Netwerkpoort toevoegen", "Netzwerkport hinzufügen",
             "Ajouter un port réseau", "Añadir puerto de red"});
}
std::string explanation() {
  return tr({"A board on another computer, offered on the network by a serial server such as "
             "ser2net with RFC 2217. Enter the server's host and the board's TCP port, or paste "
             "an rfc2217:// address.",
             "Een board aan een andere computer, dat een seriële server zoals ser2net met RFC 2217 "
             "op het netwerk aanbiedt. Vul de host van de server en de TCP-poort van het board "
             "in, of plak een rfc2217://-adres.",
             "Ein Board an einem anderen Rechner, das ein serieller Server wie ser2net mit "
             "RFC 2217 im Netzwerk anbietet. Gib den Host des Servers und den TCP-Port des Boards "
             "ein oder füge eine rfc2217://-Adresse ein.",
             "Une carte branchée sur un autre ordinateur, qu’un serveur série comme ser2net offre "
             "sur le réseau en RFC 2217. Saisissez l’hôte du serveur et le port TCP de la carte, "
             "ou collez une adresse rfc2217://.",
             "Una placa conectada a otro equipo, que un servidor serie como ser2net ofrece en la "
             "red con RFC 2217. Escribe el host del servidor y el puerto TCP de la placa, o pega "
             "una dirección rfc2217://."});
}
std::string host() { return tr({"Host", "Host", "Host", "Hôte", "Host"}); }
std::string hostPlaceholder() {
  return tr({"for example rack3.local or 192.168.1.20", "bijvoorbeeld rack3.local of 192.168.1.20",
             "zum Beispiel rack3.local oder 192.168.1.20",
             "par exemple rack3.local ou 192.168.1.20", "por ejemplo rack3.local o 192.168.1.20"});
}
std::string tcpPort() {
  return tr({"TCP port", "TCP-poort", "TCP-Port", "Port TCP", "Puerto TCP"});
}
std::string add() { return tr({"Add", "Toevoegen", "Hinzufügen", "Ajouter", "Añadir"}); }
std::string notAHost(const std::string& host) {
  switch (currentLanguage()) {
  case Language::en: return "'" + host + "' is not a host name or IP address.";
  case Language::nl: return "'" + host + "' is geen hostnaam of IP-adres.";
  case Language::de: return "„" + host + "“ ist weder ein Hostname noch eine IP-Adresse.";
  case Language::fr: return "« " + host + " » n’est ni un nom d’hôte ni une adresse IP.";
  case Language::es: return "«" + host + "» no es un nombre de host ni una dirección IP.";
  }
  return {};
}
std::string notAPortNumber() {
  return tr(
      {"The TCP port is a number from 1 to 65535.", "De TCP-poort is een getal van 1 tot 65535.",
       "Der TCP-Port ist eine Zahl von 1 bis 65535.", "Le port TCP est un nombre de 1 à 65535.",
       "El puerto TCP es un número del 1 al 65535."});
}
std::string onlyRFC2217() {
  return tr({"Tarnwick needs an RFC 2217 port: rfc2217://HOST:PORT, or the host and port alone.",
             "Tarnwick heeft een RFC 2217-poort nodig: rfc2217://HOST:POORT, of alleen host en "
             "poort.",
             "Tarnwick braucht einen RFC-2217-Port: rfc2217://HOST:PORT oder nur Host und Port.",
             "Tarnwick a besoin d’un port RFC 2217 : rfc2217://HÔTE:PORT, ou seulement l’hôte et "
             "le port.",
             "Tarnwick necesita un puerto RFC 2217: rfc2217://HOST:PUERTO, o solo el host y el "
             "puerto."});
}
} // namespace tarnwick::L10n::NetworkPorts
