#include "Assets/AssetsLookup.hpp"

#include <QFile>

namespace tarnwick::assets {
QString screenshotPath(const QString& name) {
  QString file = name.endsWith(QLatin1String(".png")) ? name : name + QLatin1String(".png");
  QString path = QStringLiteral(":/tarnwick/screenshots/") + file;
  return QFile::exists(path) ? path : QString();
}
} // namespace tarnwick::assets

namespace tarnwick::assets {
QString iconResource(const QString& name) {
  QString path = QStringLiteral(":/tarnwick/icons/") + name + QStringLiteral(".svg");
  return QFile::exists(path) ? path : QString();
}
} // namespace tarnwick::assets
