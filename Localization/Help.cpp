#include "Localization/Help.hpp"

#include <algorithm>

#include "Localization/HelpContent.hpp"
#include "Localization/Text.hpp"

namespace tarnwick {

std::string HelpBlock::text() const {
  auto joined = [](const std::vector<std::string>& parts) {
    std::string result;
    for (const std::string& part : parts) {
      if (!result.empty()) result += ' ';
      result += part;
    }
    return result;
  };
  return std::visit(
      [&](const auto& block) -> std::string {
        using Block = std::decay_t<decltype(block)>;
        if constexpr (std::is_same_v<Block, bullets>) {
          return joined(block.items);
        } else if constexpr (std::is_same_v<Block, table>) {
          std::vector<std::string> cells;
          for (const HelpRow& row : block.rows) {
            cells.push_back(row.key);
            cells.push_back(row.value);
          }
          return joined(cells);
        } else if constexpr (std::is_same_v<Block, screenshot>) {
          return block.caption;
        } else {
          return block.text;
        }
      },
      value);
}

} // namespace tarnwick

namespace tarnwick::L10n::Help {

std::vector<HelpTopic> topics() {
  return {content::start(),           content::products(),   content::esp(),
          content::arduino(),         content::production(), content::network(),
          content::troubleshooting(), content::privacy(),    content::shortcuts()};
}

HelpIcon icon(std::string_view symbol) {
  // Drawn for the application in one style: icon themes differ, and a bare session has none.
  static constexpr struct {
    std::string_view symbol;
    std::string_view name;
  } icons[] = {
      {"play.circle", "tarnwick-help-start"},
      {"shippingbox", "tarnwick-help-products"},
      {"cpu", "tarnwick-help-cpu"},
      {"memorychip", "tarnwick-help-memorychip"},
      {"square.stack.3d.up", "tarnwick-help-series"},
      {"network", "tarnwick-help-network"},
      {"wrench.and.screwdriver", "tarnwick-help-troubleshooting"},
      {"lock.shield", "tarnwick-help-privacy"},
      {"keyboard", "tarnwick-help-shortcuts"},
  };
  for (const auto& entry : icons)
    if (entry.symbol == symbol) return {std::string(entry.name), true};
  return {"help-browser", false};
}

std::vector<std::string> screenshotNames() {
  std::vector<std::string> names;
  for (const HelpTopic& topic : topics())
    for (const HelpBlock& block : topic.blocks)
      if (const auto* shot = std::get_if<HelpBlock::screenshot>(&block.value))
        if (std::find(names.begin(), names.end(), shot->name) == names.end())
          names.push_back(shot->name);
  return names;
}

std::string windowTitle() {
  return tr({"Tarnwick &Help", "Tarnwick-&help", "Tarnwick-&Hilfe", "&Aide de Tarnwick",
             "&Ayuda de Tarnwick"});
}
std::string searchPlaceholder() {
  return tr({"Search help", "Zoek in help", "Hilfe durchsuchen", "Rechercher dans l’aide",
             "Buscar en la ayuda"});
}
std::string noTopicsFound() {
  return tr({"No topics found", "Geen onderwerpen gevonden", "Keine Themen gefunden",
             "Aucune rubrique trouvée", "No se han encontrado temas"});
}
std::string tipLabel() { return tr({"Tip", "Tip", "Tipp", "Astuce", "Consejo"}); }
std::string fullSizeHint() {
  return tr({"Click to see the picture at full size",
             "Klik om de afbeelding op ware grootte te zien",
             "Klicken, um das Bild in voller Größe zu sehen",
             "Cliquez pour voir l’image en taille réelle",
             "Haz clic para ver la imagen a tamaño completo"});
}

} // namespace tarnwick::L10n::Help
