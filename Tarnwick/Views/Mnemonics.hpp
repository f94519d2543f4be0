#pragma once
// Mnemonics of menu entries: the catalogue marks the letter of every fixed entry in each
// language; entries made of names (recent products, boards) get the first free letter of their
// own text, so no two entries of a menu share one.

#include <QChar>
#include <QString>
#include <optional>

class QMenu;

namespace tarnwick {

/// The letter a text's "&" marks, upper case; none when it marks none ("&&" is a plain "&").
std::optional<QChar> mnemonicOf(const QString& text);

/// A name shown as a menu entry: its own "&" doubled, so it is shown and not taken as a mark.
QString escapeMnemonics(const QString& name);

/// Gives every entry of `menu` without a mnemonic the first letter or digit of its text that no
/// other entry uses, at the start of a word where one is free.
void giveMnemonics(QMenu* menu);

} // namespace tarnwick
