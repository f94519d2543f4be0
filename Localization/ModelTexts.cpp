#include "Localization/ModelTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Model {

std::string testDevice(const std::string& path) {
  return tr({"Test device (", "Testapparaat (", "Testgerät (", "Appareil de test (",
             "Dispositivo de prueba ("}) +
         path + ")";
}

std::string quitRefused() {
  return tr({"Wait until flashing has finished. Stopping halfway leaves a board that does not "
             "start.",
             "Wacht tot het flashen klaar is. Halverwege stoppen laat een board achter dat niet "
             "opstart.",
             "Warte, bis das Flashen abgeschlossen ist. Ein Abbruch mittendrin hinterlässt ein "
             "Board, das nicht startet.",
             "Attendez la fin du flashage. Un arrêt en cours de route laisse une carte qui ne "
             "démarre pas.",
             "Espera a que termine el flasheo. Detenerlo a medias deja una placa que no arranca."});
}

std::string editedSuffix() {
  return tr({" (edited)", " (gewijzigd)", " (bearbeitet)", " (modifié)", " (editado)"});
}

} // namespace tarnwick::L10n::Model
