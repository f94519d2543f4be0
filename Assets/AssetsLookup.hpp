#pragma once
// Where the compiled-in images are found at run time.

#include <QString>

namespace tarnwick::assets {
/// The one-colour logo drawn behind the empty log.
inline const QString logoPath = QStringLiteral(":/tarnwick/logo.svg");
/// The application icon.
inline const QString iconPath = QStringLiteral(":/tarnwick/tarnwick.svg");
/// The resource path of a help screenshot by its name ("window-product" or "window-product.png");
/// empty when no such image is compiled in.
QString screenshotPath(const QString& name);
} // namespace tarnwick::assets
