#pragma once
// Where the compiled-in images are found at run time.

#include <QString>

namespace tarnwick::assets {
/// The one-colour logo drawn behind the empty log.
inline const QString logoPath = QStringLiteral(":/tarnwick/logo.svg");
/// The application icon.
inline const QString iconPath = QStringLiteral(":/tarnwick/tarnwick.svg");
/// The resource path of a help screenshot by its name ("window-product" or "window-product.png")
/// as taken in `language` (a language code such as "de"), or in English when there is none in
/// that language; empty when no such image is compiled in.
QString screenshotPath(const QString& name, const QString& language);
} // namespace tarnwick::assets

namespace tarnwick::assets {
/// The resource path of one of the program's own icons by its name, for symbols the icon theme
/// has no picture for; empty when there is none.
QString iconResource(const QString& name);
} // namespace tarnwick::assets
