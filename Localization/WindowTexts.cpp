#include "Localization/WindowTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Window {

std::string fileMenu() { return tr({"&File", "&Bestand", "&Datei", "&Fichier", "&Archivo"}); }
std::string boardMenu() { return tr({"&Board", "B&ord", "&Board", "&Carte", "&Placa"}); }
std::string viewMenu() { return tr({"&View", "Beel&d", "&Ansicht", "&Affichage", "&Ver"}); }
std::string helpMenu() { return tr({"&Help", "&Help", "&Hilfe", "Ai&de", "Ay&uda"}); }
std::string openRecent() {
  return tr({"Open Recent", "Recent geopend", "Zuletzt geöffnet", "Ouvrir un fichier récent",
             "Abrir reciente"});
}
std::string clearRecent() {
  return tr({"Clear Menu", "Menu wissen", "Liste leeren", "Effacer la liste", "Borrar la lista"});
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

} // namespace tarnwick::L10n::Window
