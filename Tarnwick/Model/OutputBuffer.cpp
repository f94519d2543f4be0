#include "Tarnwick/Model/OutputBuffer.hpp"

#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QTextBlock>
#include <QTextCursor>
#include <algorithm>

#include "Tarnwick/Model/Colours.hpp"

namespace tarnwick {

namespace {

using Kind = LogSegment::Kind;

// The segment's kind travels with its text, so a palette change can recolour text already in
// the log without parsing it again.
constexpr int kindProperty = QTextFormat::UserProperty + 1;

QFont fixedFont(double points, QFont::Weight weight) {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setPointSizeF(points);
  font.setWeight(weight);
  return font;
}

} // namespace

QColor logColour(Kind kind, const QPalette& palette) {
  const QColor text = palette.color(QPalette::Active, QPalette::Text);
  const QColor base = palette.color(QPalette::Active, QPalette::Base);
  const QColor window = palette.color(QPalette::Active, QPalette::Window);
  // Deeper accents on a light background and lighter ones on a dark background; whatever the
  // palette, each reads at 4.5:1 or better on the base and window colours the log may show.
  // The tertiary grey is the faintest that still does.
  auto readable = [&](const QColor& colour) {
    return readableOn(readableOn(colour, base), window);
  };
  const bool dark = isDark(palette);
  switch (kind) {
  case Kind::text:
  case Kind::response: return text;
  case Kind::timestamp: return readable(blend(text, base, 0.7));
  case Kind::meta: return readable(blend(text, base, 0.45));
  case Kind::request: return readable(dark ? QColor(0x78, 0xAE, 0xF5) : QColor(0x1A, 0x5F, 0xB4));
  case Kind::warning: return readable(dark ? QColor(0xFF, 0xA3, 0x48) : QColor(0xA8, 0x4B, 0x00));
  case Kind::error: return readable(dark ? QColor(0xFF, 0x7B, 0x72) : QColor(0xC0, 0x1C, 0x28));
  case Kind::system: return readable(dark ? QColor(0x4F, 0xD1, 0xD9) : QColor(0x00, 0x72, 0x7A));
  }
  return text;
}

OutputBuffer::OutputBuffer(qsizetype maxCharacters, qsizetype trimTarget, QObject* parent)
    : QObject(parent), storage_(new QTextDocument(this)), maxCharacters_(maxCharacters),
      trimTarget_(trimTarget), font_(fixedFont(12, QFont::Normal)),
      systemFont_(fixedFont(11, QFont::Medium)) {
  // An undo history of a log would only double its memory.
  storage_->setUndoRedoEnabled(false);
  storage_->setDefaultFont(font_);
  updateFormats();
  if (qApp) qApp->installEventFilter(this);
}

OutputBuffer::~OutputBuffer() = default;

QTextCharFormat OutputBuffer::format(Kind kind) const {
  return formats_[static_cast<std::size_t>(kind)];
}

void OutputBuffer::updateFormats() {
  const QPalette palette = QGuiApplication::palette();
  for (std::size_t i = 0; i < formats_.size(); ++i) {
    const auto kind = static_cast<Kind>(i);
    QTextCharFormat& format = formats_[i];
    format = QTextCharFormat();
    format.setFont(kind == Kind::system ? systemFont_ : font_);
    format.setForeground(logColour(kind, palette));
    format.setProperty(kindProperty, static_cast<int>(kind));
  }
}

qsizetype OutputBuffer::size() const {
  // The document counts one more character than it holds: the end of its last block.
  return storage_->characterCount() - 1;
}

void OutputBuffer::append(const std::vector<LogSegment>& segments) {
  QTextCursor cursor(storage_);
  cursor.movePosition(QTextCursor::End);
  cursor.beginEditBlock();
  // An error or a warning is told by a mark as well as by its colour: a line of one that has
  // none of its own (a station's record lost, a stopped run's second line) gets one.
  bool marked = std::ranges::any_of(segments, [](const LogSegment& segment) {
    return segment.text.find("✕") != std::string::npos ||
           segment.text.find("⚠") != std::string::npos;
  });
  for (const LogSegment& segment : segments) {
    if (segment.text.empty()) continue;
    if (!marked && (segment.kind == Kind::error || segment.kind == Kind::warning)) {
      cursor.insertText(QString::fromUtf8(segment.kind == Kind::error ? "✕ " : "⚠ "),
                        format(segment.kind));
      marked = true;
    }
    cursor.insertText(QString::fromStdString(segment.text), format(segment.kind));
  }
  cursor.insertBlock(QTextBlockFormat(), format(Kind::text));
  trimIfNeeded(cursor);
  cursor.endEditBlock();
  if (autoscroll_ && textView_ && hooks_.scrollToEnd) hooks_.scrollToEnd();
}

void OutputBuffer::trimIfNeeded(QTextCursor& cursor) {
  const qsizetype length = size();
  if (length <= maxCharacters_) return;
  // Cut just after the first line end at or after the cut point, so the kept text starts a line.
  // Every character of a block up to its end belongs to it, so that line end is the end of the
  // block holding the cut point; the next block begins right after it.
  const qsizetype cutFrom = length - trimTarget_;
  const QTextBlock block = storage_->findBlock(static_cast<int>(cutFrom));
  qsizetype cut = block.position() + block.length();
  // The line just added is the one a reader is looking for: a line longer than the target is
  // kept whole rather than cut away with everything before it.
  const QTextBlock newest = storage_->lastBlock().previous();
  if (newest.isValid()) cut = std::min<qsizetype>(cut, newest.position());
  if (cut <= 0) return;
  cursor.setPosition(0);
  cursor.setPosition(static_cast<int>(cut), QTextCursor::KeepAnchor);
  cursor.removeSelectedText();
}

void OutputBuffer::clear() { storage_->clear(); }

QString OutputBuffer::plainText() const {
  // Lines end in paragraph separators inside the document; saved logs need line feeds.
  return storage_->toPlainText();
}

void OutputBuffer::attach(QObject* view, ViewHooks hooks) {
  textView_ = view;
  hooks_ = std::move(hooks);
  if (view && hooks_.show) hooks_.show(storage_);
  if (autoscroll_ && view && hooks_.scrollToEnd) hooks_.scrollToEnd();
}

bool OutputBuffer::eventFilter(QObject* watched, QEvent* event) {
  if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) restyle();
  return QObject::eventFilter(watched, event);
}

void OutputBuffer::restyle() {
  updateFormats();
  // Collect first: recolouring may merge neighbouring fragments under a live iterator.
  struct Run {
    int position, length;
    Kind kind;
  };
  std::vector<Run> runs;
  for (QTextBlock block = storage_->begin(); block.isValid(); block = block.next()) {
    for (auto it = block.begin(); !it.atEnd(); ++it) {
      const QTextFragment fragment = it.fragment();
      const QVariant kind = fragment.charFormat().property(kindProperty);
      if (kind.isValid())
        runs.push_back({fragment.position(), fragment.length(), Kind(kind.toInt())});
    }
  }
  QTextCursor cursor(storage_);
  cursor.beginEditBlock();
  for (const Run& run : runs) {
    cursor.setPosition(run.position);
    cursor.setPosition(run.position + run.length, QTextCursor::KeepAnchor);
    cursor.setCharFormat(format(run.kind));
  }
  cursor.endEditBlock();
}

} // namespace tarnwick
