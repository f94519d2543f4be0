#include "Tarnwick/Model/HelpText.hpp"

#include <QTextDocument>

namespace tarnwick::HelpText {

namespace {
void readMarkdown(QTextDocument& document, const std::string& text) {
  // Help texts are inline prose: HTML in them is shown as typed, never interpreted.
  const QTextDocument::MarkdownFeatures features =
      QTextDocument::MarkdownFeatures(QTextDocument::MarkdownDialectGitHub) |
      QTextDocument::MarkdownNoHTML;
  document.setMarkdown(QString::fromStdString(text), features);
}
} // namespace

QTextDocumentFragment fragment(const std::string& text) {
  QTextDocument document;
  readMarkdown(document, text);
  return QTextDocumentFragment(&document);
}

QString html(const std::string& text) { return fragment(text).toHtml(); }

QString plainText(const std::string& text) {
  QTextDocument document;
  readMarkdown(document, text);
  return document.toPlainText();
}

Index::Index(std::vector<HelpTopic> topics, QLocale locale)
    : topics_(std::move(topics)), locale_(std::move(locale)) {
  searchable_.reserve(topics_.size());
  for (const HelpTopic& topic : topics_) {
    QString joined = plainText(topic.title);
    for (const HelpBlock& block : topic.blocks)
      joined += u' ' + plainText(block.text());
    searchable_.push_back(locale_.toLower(joined));
  }
}

std::vector<std::size_t> Index::search(const QString& text) const {
  const QString wanted = locale_.toLower(text.trimmed());
  std::vector<std::size_t> listed;
  for (std::size_t i = 0; i < topics_.size(); ++i)
    if (wanted.isEmpty() || searchable_[i].contains(wanted)) listed.push_back(i);
  return listed;
}

std::optional<std::string> Index::selection(const std::vector<std::size_t>& listed,
                                            const std::string& selectedId) const {
  for (std::size_t i : listed)
    if (topics_.at(i).id == selectedId) return selectedId;
  if (listed.empty()) return std::nullopt;
  return topics_.at(listed.front()).id;
}

} // namespace tarnwick::HelpText
