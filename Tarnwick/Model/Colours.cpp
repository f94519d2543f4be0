#include "Tarnwick/Model/Colours.hpp"

#include <algorithm>
#include <cmath>

namespace tarnwick {

double luminance(const QColor& colour) {
  auto channel = [](double c) {
    return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * channel(colour.redF()) + 0.7152 * channel(colour.greenF()) +
         0.0722 * channel(colour.blueF());
}

double contrastRatio(const QColor& a, const QColor& b) {
  const double la = luminance(a), lb = luminance(b);
  return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

QColor blend(const QColor& front, const QColor& back, double frontShare) {
  auto mix = [&](double f, double b) { return frontShare * f + (1.0 - frontShare) * b; };
  return QColor::fromRgbF(static_cast<float>(mix(front.redF(), back.redF())),
                          static_cast<float>(mix(front.greenF(), back.greenF())),
                          static_cast<float>(mix(front.blueF(), back.blueF())));
}

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::Active, QPalette::Base).lightnessF() < 0.5;
}

QColor readableOn(const QColor& colour, const QColor& background, double ratio) {
  // Towards black on a light background, towards white on a dark one: one of the two always
  // reaches 4.5:1, since black and white stand at least 4.58:1 from any colour.
  const QColor goal = luminance(background) > 0.18 ? QColor(Qt::black) : QColor(Qt::white);
  QColor result = colour;
  for (int step = 1; step <= 50 && contrastRatio(result, background) < ratio; ++step)
    result = blend(goal, colour, step / 50.0);
  return result;
}

QPalette darkPalette() {
  const QColor window(0x2B, 0x2B, 0x2E), base(0x1E, 0x1E, 0x20), text(0xE8, 0xE8, 0xEA);
  const QColor button(0x38, 0x38, 0x3C), highlight(0x3D, 0x7F, 0xD8);
  QPalette palette(button, window);
  for (auto group : {QPalette::Active, QPalette::Inactive}) {
    palette.setColor(group, QPalette::Window, window);
    palette.setColor(group, QPalette::WindowText, text);
    palette.setColor(group, QPalette::Base, base);
    palette.setColor(group, QPalette::AlternateBase, window);
    palette.setColor(group, QPalette::Text, text);
    palette.setColor(group, QPalette::Button, button);
    palette.setColor(group, QPalette::ButtonText, text);
    palette.setColor(group, QPalette::BrightText, Qt::white);
    palette.setColor(group, QPalette::Highlight, highlight);
    palette.setColor(group, QPalette::HighlightedText, Qt::white);
    palette.setColor(group, QPalette::ToolTipBase, button);
    palette.setColor(group, QPalette::ToolTipText, text);
    palette.setColor(group, QPalette::PlaceholderText, QColor(0x9A, 0x9A, 0xA0));
    palette.setColor(group, QPalette::Link, QColor(0x78, 0xAE, 0xF5));
    palette.setColor(group, QPalette::Light, button.lighter(140));
    palette.setColor(group, QPalette::Midlight, button.lighter(120));
    palette.setColor(group, QPalette::Mid, button.darker(120));
    palette.setColor(group, QPalette::Dark, button.darker(160));
    palette.setColor(group, QPalette::Shadow, Qt::black);
  }
  // Disabled controls: faint, yet still legible.
  const QColor disabled(0x80, 0x80, 0x86);
  for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                    QPalette::HighlightedText, QPalette::PlaceholderText})
    palette.setColor(QPalette::Disabled, role, disabled);
  palette.setColor(QPalette::Disabled, QPalette::Window, window);
  palette.setColor(QPalette::Disabled, QPalette::Base, window);
  palette.setColor(QPalette::Disabled, QPalette::Button, button);
  palette.setColor(QPalette::Disabled, QPalette::Highlight, button.lighter(130));
  return palette;
}

} // namespace tarnwick
