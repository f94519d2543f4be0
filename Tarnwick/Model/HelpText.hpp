#pragma once
// The help topics as the help window shows them: inline Markdown turned into rich text by Qt's
// own Markdown reader, and the sidebar's search.

#include <QLocale>
#include <QString>
#include <QTextDocumentFragment>
#include <optional>
#include <string>
#include <vector>

#include "Localization/Help.hpp"

namespace tarnwick::HelpText {

/// A help text with its Markdown emphasis (**bold**, `code`, *italic*) as rich text, ready to be
/// inserted at a cursor of the help view's document.
QTextDocumentFragment fragment(const std::string& text);

/// The same as HTML, for a label or a cell that takes rich text.
QString html(const std::string& text);

/// What the reader sees of a help text, without the emphasis marks.
QString plainText(const std::string& text);

/// The search of the help window's sidebar over one set of topics.
class Index {
public:
  /// `locale` decides how letters are compared regardless of case (the user's locale).
  explicit Index(std::vector<HelpTopic> topics, QLocale locale = QLocale::system());

  const std::vector<HelpTopic>& topics() const { return topics_; }

  /// The positions in `topics()` listed for a search text, in topic order. The text is trimmed;
  /// empty, it lists every topic. Otherwise a topic is listed when its title and all its block
  /// texts, joined with spaces, contain the text, compared without regard to case.
  std::vector<std::size_t> search(const QString& text) const;

  /// The topic to show after the list changed: the one with `selectedId` while it is listed,
  /// otherwise the first listed topic; nothing when the list is empty.
  std::optional<std::string> selection(const std::vector<std::size_t>& listed,
                                       const std::string& selectedId) const;

private:
  std::vector<HelpTopic> topics_;
  QLocale locale_;
  /// Per topic: what the reader sees of it, lower-cased in `locale_`.
  std::vector<QString> searchable_;
};

} // namespace tarnwick::HelpText
