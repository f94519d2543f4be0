#include "Localization/ModelTexts.hpp"

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Model {

std::string testDevice(const std::string& path) {
  return tr({"Test device (", "Testapparaat (", "Testgerät (", "Appareil de test (",
             "Dispositivo de prueba ("}) +
         path + ")";
}

} // namespace tarnwick::L10n::Model
