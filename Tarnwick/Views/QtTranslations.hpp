#pragma once
// Qt's own texts (file dialogs, context menus, key names such as "Strg+Umschalt+S") in the
// language the program speaks.

#include "Localization/Language.hpp"

namespace tarnwick {

/// Installs Qt's translations for `language` in the application, replacing those installed
/// before; English needs none. False when the system has none for it (Debian's
/// qt6-translations-l10n is not installed): Qt's texts then stay English.
bool installQtTranslations(Language language);

} // namespace tarnwick
