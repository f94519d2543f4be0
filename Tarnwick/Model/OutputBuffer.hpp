#pragma once
// The log's text: styled lines in a QTextDocument that the log view shows directly, bounded in
// size by cutting whole lines off the top.

#include <QColor>
#include <QFont>
#include <QObject>
#include <QPalette>
#include <QPointer>
#include <QString>
#include <QTextCharFormat>
#include <QTextDocument>
#include <array>
#include <functional>
#include <vector>

#include "FlashEngine/RunNarration.hpp"

namespace tarnwick {

/// The colour of a log segment's kind under `palette`: the palette's own text roles for plain,
/// secondary and tertiary text, and accents chosen for the palette's background, light or dark.
QColor logColour(LogSegment::Kind kind, const QPalette& palette);

/// The log of the flasher model. Main thread only; the model is its one writer.
class OutputBuffer : public QObject {
  Q_OBJECT

public:
  /// What the buffer needs of a log view, which lives in the widgets library this one must not
  /// link: how to make it show the storage, and how to scroll it to the end.
  struct ViewHooks {
    /// Makes the view display `storage` itself (no copy). A view that needs its own document
    /// layout installs it here.
    std::function<void(QTextDocument* storage)> show;
    std::function<void()> scrollToEnd;
  };

  static constexpr qsizetype defaultMaxCharacters = 2'000'000;
  static constexpr qsizetype defaultTrimTarget = 1'500'000;

  explicit OutputBuffer(qsizetype maxCharacters = defaultMaxCharacters,
                        qsizetype trimTarget = defaultTrimTarget, QObject* parent = nullptr);
  ~OutputBuffer() override;

  /// Adds one line: the segments in their kinds' styles, then a line feed. An error or warning
  /// line without a mark ("✕", "⚠") gets one before its first error or warning segment.
  void append(const std::vector<LogSegment>& segments);
  /// Removes all text.
  void clear();
  /// The text without styling, each line ended by a line feed: what "Save log" writes.
  QString plainText() const;
  /// Shows the storage in `view` and remembers the view weakly; a view attached late shows
  /// everything appended before.
  void attach(QObject* view, ViewHooks hooks);

  QTextDocument* storage() const { return storage_; }
  /// The attached view, or null when none is attached or it has been destroyed.
  QObject* textView() const { return textView_.data(); }
  bool autoscroll() const { return autoscroll_; }
  void setAutoscroll(bool on) { autoscroll_ = on; }
  qsizetype maxCharacters() const { return maxCharacters_; }
  qsizetype trimTarget() const { return trimTarget_; }
  /// The 12-point monospaced font of every kind but `system`.
  const QFont& font() const { return font_; }
  /// Characters held, in UTF-16 code units, line feeds included.
  qsizetype size() const;
  /// The character format a segment of `kind` gets under the current application palette.
  QTextCharFormat format(LogSegment::Kind kind) const;

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  void updateFormats();
  void restyle();
  void trimIfNeeded(QTextCursor& cursor);

  QTextDocument* storage_;
  QPointer<QObject> textView_;
  ViewHooks hooks_;
  bool autoscroll_ = true;
  qsizetype maxCharacters_;
  qsizetype trimTarget_;
  QFont font_;
  QFont systemFont_;
  // One format per kind, rebuilt when the palette changes.
  std::array<QTextCharFormat, 8> formats_;
};

} // namespace tarnwick
