#include "Localization/EngineTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Errors {

std::string wrongChip(const std::string& found, const std::string& expected) {
  return found +
         tr({" is connected, but this product is for an ",
             " is aangesloten, maar dit product is voor een ",
             " ist angeschlossen, aber dieses Produkt ist für einen ",
             " est connecté, mais ce produit est destiné à un ",
             " está conectado, pero este producto es para un "}) +
         expected + ".";
}
std::string commandRefused(std::uint8_t command, std::uint8_t code) {
  return tr({"The bootloader refused command ", "De bootloader weigerde opdracht ",
             "Der Bootloader hat den Befehl ", "Le bootloader a refusé la commande ",
             "El bootloader rechazó la orden "}) +
         hexByte(command) +
         tr({" (error ", " (fout ", " abgelehnt (Fehler ", " (erreur ", " (error "}) +
         hexByte(code) + ").";
}
std::string noAnswer(std::uint8_t command) {
  return tr({"No answer from the bootloader to command ",
             "Geen antwoord van de bootloader op opdracht ",
             "Keine Antwort des Bootloaders auf den Befehl ",
             "Pas de réponse du bootloader à la commande ",
             "El bootloader no respondió a la orden "}) +
         hexByte(command) + ".";
}
std::string verifyFailed(const std::string& name) {
  return tr({"Verification failed: ", "Controle mislukt: ", "Überprüfung fehlgeschlagen: ",
             "Échec de la vérification : ", "La verificación falló: "}) +
         name +
         tr({" is not correct in flash memory.", " staat niet correct in het flashgeheugen.",
             " steht nicht korrekt im Flash-Speicher.", " n’est pas correct dans la mémoire flash.",
             " no es correcto en la memoria flash."});
}
std::string wrongSignature(const std::string& signature, const std::string& expected) {
  return tr({"Wrong chip: signature ", "Verkeerde chip: signatuur ", "Falscher Chip: Signatur ",
             "Mauvaise puce : signature ", "Chip incorrecto: firma "}) +
         signature +
         tr({", expected an ", ", verwacht een ", ", erwartet wurde ein ",
             ", attendu : ", ", se esperaba un "}) +
         expected +
         tr({". Choose the right board.", ". Kies het juiste board.", ". Wähle das richtige Board.",
             ". Choisissez la bonne carte.", ". Elige la placa correcta."});
}
std::string sketchTooLarge(std::int64_t size, std::int64_t max) {
  return tr({"The sketch is ", "De sketch is ", "Der Sketch ist ", "Le sketch fait ",
             "El sketch ocupa "}) +
         std::to_string(size) +
         tr({" bytes; this board holds ", " bytes; dit board biedt plaats aan ",
             " Byte groß; dieses Board fasst ", " octets ; cette carte en contient ",
             " bytes; esta placa admite "}) +
         std::to_string(max) + tr({" bytes.", " bytes.", " Byte.", ".", " bytes."});
}
std::string noSync() {
  return tr({"No connection with the bootloader. Check the port and the cable, or hold BOOT and "
             "briefly press RESET (EN).",
             "Geen verbinding met de bootloader. Controleer de poort en de kabel, of houd BOOT "
             "ingedrukt en druk kort op RESET (EN).",
             "Keine Verbindung zum Bootloader. Prüfe Schnittstelle und Kabel oder halte BOOT "
             "gedrückt und drücke kurz RESET (EN).",
             "Pas de connexion avec le bootloader. Vérifiez le port et le câble, ou maintenez BOOT "
             "et appuyez brièvement sur RESET (EN).",
             "No hay conexión con el bootloader. Comprueba el puerto y el cable, o mantén pulsado "
             "BOOT y pulsa brevemente RESET (EN)."});
}
std::string bootloaderPortNotFound() {
  return tr({"The bootloader did not appear. Press the reset button twice quickly and flash again "
             "at once.",
             "De bootloader verscheen niet. Druk twee keer snel op de resetknop en flash meteen "
             "opnieuw.",
             "Der Bootloader ist nicht erschienen. Drücke zweimal schnell die Reset-Taste und "
             "flashe sofort erneut.",
             "Le bootloader n’est pas apparu. Appuyez deux fois rapidement sur le bouton reset et "
             "relancez aussitôt le flashage.",
             "El bootloader no apareció. Pulsa dos veces rápido el botón de reinicio y vuelve a "
             "flashear enseguida."});
}
std::string avrNoResponse() {
  return tr({"No answer from the bootloader. Is the board right (and the old or new bootloader "
             "for a Nano)?",
             "Geen antwoord van de bootloader. Is het juiste board gekozen (en bij een Nano de "
             "oude of nieuwe bootloader)?",
             "Keine Antwort vom Bootloader. Ist das richtige Board gewählt (und beim Nano der "
             "alte oder neue Bootloader)?",
             "Pas de réponse du bootloader. La carte choisie est-elle la bonne (et, pour une Nano, "
             "l’ancien ou le nouveau bootloader) ?",
             "El bootloader no responde. ¿Es la placa correcta (y, en un Nano, el bootloader "
             "antiguo o el nuevo)?"});
}
std::string cancelled() {
  return tr({"Stopped.", "Gestopt.", "Gestoppt.", "Arrêté.", "Detenido."});
}
std::string needsLocalPort(const std::string& board) {
  switch (currentLanguage()) {
  case Language::en:
    return board + " boards cannot be flashed over the network: their bootloader comes up as "
                   "another USB device, which the serial server does not pass on. Connect the "
                   "board to this computer.";
  case Language::nl:
    return board + "-boards kunnen niet via het netwerk worden geflasht: hun bootloader "
                   "verschijnt als een ander USB-apparaat, dat de seriële server niet doorgeeft. "
                   "Sluit het board op deze computer aan.";
  case Language::de:
    return board + "-Boards lassen sich nicht über das Netzwerk flashen: Ihr Bootloader "
                   "erscheint als anderes USB-Gerät, das der serielle Server nicht weitergibt. "
                   "Schließe das Board an diesen Rechner an.";
  case Language::fr:
    return "Les cartes " + board +
           " ne peuvent pas être flashées par le réseau : leur bootloader apparaît comme un "
           "autre périphérique USB, que le serveur série ne transmet pas. Branchez la carte sur "
           "cet ordinateur.";
  case Language::es:
    return "Las placas " + board +
           " no se pueden flashear por la red: su bootloader aparece como otro dispositivo USB, "
           "que el servidor serie no transmite. Conecta la placa a este equipo.";
  }
  return {};
}

} // namespace tarnwick::L10n::Errors
