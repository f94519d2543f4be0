#pragma once
// Building blocks of the help topics: every block is written once with its five languages side by
// side, so the structure of a topic cannot differ between languages.

#include <initializer_list>
#include <utility>

#include "Localization/Help.hpp"
#include "Localization/Text.hpp"

namespace tarnwick::L10n::Help::content {

/// A text that reads the same in every language: file names, addresses, board names.
constexpr Texts same(std::string_view text) { return {text, text, text, text, text}; }

inline HelpBlock paragraph(const Texts& text) { return {HelpBlock::paragraph{tr(text)}}; }
inline HelpBlock heading(const Texts& text) { return {HelpBlock::heading{tr(text)}}; }
inline HelpBlock tip(const Texts& text) { return {HelpBlock::tip{tr(text)}}; }
inline HelpBlock screenshot(std::string_view name, const Texts& caption) {
  return {HelpBlock::screenshot{std::string(name), tr(caption)}};
}
inline HelpBlock bullets(std::initializer_list<Texts> items) {
  HelpBlock::bullets block;
  for (const Texts& item : items)
    block.items.push_back(tr(item));
  return {std::move(block)};
}
inline HelpBlock table(std::initializer_list<std::pair<Texts, Texts>> rows) {
  HelpBlock::table block;
  for (const auto& [key, value] : rows)
    block.rows.push_back({tr(key), tr(value)});
  return {std::move(block)};
}

HelpTopic start();
HelpTopic products();
HelpTopic esp();
HelpTopic arduino();
HelpTopic production();
HelpTopic network();
HelpTopic troubleshooting();
HelpTopic privacy();
HelpTopic shortcuts();

} // namespace tarnwick::L10n::Help::content
