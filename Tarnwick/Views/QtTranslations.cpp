#include "Tarnwick/Views/QtTranslations.hpp"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>
#include <memory>

namespace tarnwick {

bool installQtTranslations(Language language) {
  static std::unique_ptr<QTranslator> installed;
  if (installed) {
    QCoreApplication::removeTranslator(installed.get());
    installed.reset();
  }
  if (language == Language::en) return true;
  auto translator = std::make_unique<QTranslator>();
  const QString name =
      QStringLiteral("qtbase_") +
      QString::fromLatin1(code(language).data(), static_cast<qsizetype>(code(language).size()));
  if (!translator->load(name, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) return false;
  QCoreApplication::installTranslator(translator.get());
  installed = std::move(translator);
  return true;
}

} // namespace tarnwick
