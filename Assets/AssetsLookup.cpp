#include "Assets/AssetsLookup.hpp"

#include <QFile>

namespace tarnwick::assets {
QString screenshotPath(const QString& name, const QString& language) {
  const QString file = name.endsWith(QLatin1String(".png")) ? name : name + QLatin1String(".png");
  for (const QString& taken : {language, QStringLiteral("en")}) {
    const QString path = QStringLiteral(":/tarnwick/screenshots/") + taken + u'/' + file;
    if (QFile::exists(path)) return path;
  }
  return {};
}
} // namespace tarnwick::assets

namespace tarnwick::assets {
QString iconResource(const QString& name) {
  QString path = QStringLiteral(":/tarnwick/icons/") + name + QStringLiteral(".svg");
  return QFile::exists(path) ? path : QString();
}
} // namespace tarnwick::assets
