#include "Localization/ModelTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Model {

std::string testDevice(const std::string& path) {
  return tr({"Test device (", "Testapparaat (", "Testgerät (", "Appareil de test (",
             "Dispositivo de prueba ("}) +
         path + ")";
}

// Chips and Arduino boards are masculine in German, French and Spanish ("der ESP32", "l’Arduino
// Uno"), so one agreement fits every board.
std::string simulatedBoard(const std::string& board, const std::string& path) {
  return tr({"Simulated ", "Gesimuleerde ", "Simulierter ", "", ""}) + board +
         tr({"", "", "", " simulé", " simulado"}) + " (" + path + ")";
}

std::string simulatedBoardPluggedIn(const std::string& port) {
  return port + tr({" plugged in", " aangesloten", " angeschlossen", " branché", " conectado"});
}

std::string simulatedBoardUnplugged(const std::string& port) {
  return port + tr({" unplugged", " losgekoppeld", " abgezogen", " débranché", " desconectado"});
}

std::string demoProduct(const std::string& board) {
  return tr({"", "Demo voor ", "Demo für ", "Démo pour ", "Demo para "}) + board +
         tr({" demo", "", "", "", ""});
}

std::string networkPort(const std::string& name) {
  return name + tr({" (network)", " (netwerk)", " (Netzwerk)", " (réseau)", " (red)"});
}

} // namespace tarnwick::L10n::Model
