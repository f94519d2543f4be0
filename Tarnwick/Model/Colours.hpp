#pragma once
// Colours that must stay readable whatever the palette: contrast as the accessibility guidelines
// measure it, and the dark palette offered where the desktop gives Qt none.

#include <QColor>
#include <QPalette>

namespace tarnwick {

/// The program's colours for a board that was flashed and one that failed, as the status dot
/// shows them; text in them goes through readableOn.
inline const QColor successGreen{0x2E, 0xB8, 0x4B};
inline const QColor failureRed{0xE0, 0x3A, 0x3A};

/// The relative luminance of a colour, 0 for black to 1 for white (WCAG 2).
double luminance(const QColor& colour);
/// How far two colours stand apart, from 1:1 (the same) to 21:1 (black on white); text wants 4.5.
double contrastRatio(const QColor& a, const QColor& b);
/// `front` laid over `back` with the given share of `front`.
QColor blend(const QColor& front, const QColor& back, double frontShare);
/// The palette's text area is dark.
bool isDark(const QPalette& palette);
/// `colour`, made darker on a light background or lighter on a dark one just as far as it needs
/// to read at `ratio`:1 on `background`; its hue stays.
QColor readableOn(const QColor& colour, const QColor& background, double ratio = 4.5);

/// A dark palette for the Fusion style. Qt 6.4 follows no desktop colour scheme by itself, so the
/// program offers this one (tarnwick --dark), and the screenshot tour and tests use it.
QPalette darkPalette();

} // namespace tarnwick
