#include "Tarnwick/Views/Mnemonics.hpp"

#include <QAction>
#include <QMenu>
#include <QSet>

#include "Tarnwick/Views/ViewSupport.hpp"

namespace tarnwick {

namespace {
/// The position of the character a text's "&" marks; -1 when there is none.
qsizetype markedPosition(const QString& text) {
  for (qsizetype i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != u'&') continue;
    if (text[i + 1] != u'&') return i + 1;
    ++i;
  }
  return -1;
}
} // namespace

QString withoutMnemonic(const QString& text) {
  QString plain;
  plain.reserve(text.size());
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i] == u'&' && i + 1 < text.size()) ++i;
    plain += text[i];
  }
  return plain;
}

std::optional<QChar> mnemonicOf(const QString& text) {
  const qsizetype at = markedPosition(text);
  if (at < 0) return std::nullopt;
  return text[at].toUpper();
}

QString escapeMnemonics(const QString& name) {
  QString escaped = name;
  return escaped.replace(u'&', QStringLiteral("&&"));
}

void giveMnemonics(QMenu* menu) {
  QSet<QChar> taken;
  QList<QAction*> unmarked;
  for (QAction* action : menu->actions()) {
    if (action->isSeparator()) continue;
    if (auto letter = mnemonicOf(action->text()))
      taken.insert(*letter);
    else
      unmarked << action;
  }
  for (QAction* action : unmarked) {
    const QString text = action->text();
    // The escaped text's "&&" pairs are skipped, so a mark never lands inside one.
    auto candidate = [&](qsizetype i) {
      if (text[i] == u'&') return false;
      if (i > 0 && text[i - 1] == u'&') return false;
      return text[i].isLetterOrNumber() && !taken.contains(text[i].toUpper());
    };
    qsizetype chosen = -1;
    for (qsizetype i = 0; i < text.size() && chosen < 0; ++i)
      if ((i == 0 || !text[i - 1].isLetterOrNumber()) && candidate(i)) chosen = i;
    for (qsizetype i = 0; i < text.size() && chosen < 0; ++i)
      if (candidate(i)) chosen = i;
    if (chosen < 0) continue;
    taken.insert(text[chosen].toUpper());
    action->setText(text.left(chosen) + u'&' + text.mid(chosen));
  }
}

} // namespace tarnwick
