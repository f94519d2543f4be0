#include "Tarnwick/Views/LogFindBar.hpp"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QStyle>
#include <QTextDocument>
#include <QToolButton>

#include "Localization/WindowTexts.hpp"
#include "Tarnwick/Model/Colours.hpp"
#include "Tarnwick/Views/LogView.hpp"
#include "Tarnwick/Views/ViewSupport.hpp"

namespace tarnwick {

namespace {
/// How long the search waits for more lines after one has arrived.
constexpr int refreshMilliseconds = 150;
} // namespace

LogFindBar::LogFindBar(LogView* log, QWidget* parent) : QWidget(parent), log_(log) {
  setObjectName("logFindBar");
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(8, 3, 8, 3);
  field_ = new QLineEdit;
  field_->setObjectName("logFindField");
  field_->setPlaceholderText(qt(L10n::Find::placeholder()));
  field_->setClearButtonEnabled(true);
  field_->installEventFilter(this);
  field_->setMaximumWidth(field_->fontMetrics().averageCharWidth() * 40);
  count_ = new QLabel;
  count_->setObjectName("logFindCount");
  count_->setForegroundRole(QPalette::WindowText);
  auto button = [](const std::string& tip) {
    auto* b = new QToolButton;
    b->setToolTip(qt(tip));
    b->setAccessibleName(qt(tip));
    b->setAutoRaise(true);
    return b;
  };
  previous_ = button(L10n::Find::previousTooltip());
  previous_->setIcon(style()->standardIcon(QStyle::SP_ArrowUp));
  next_ = button(L10n::Find::nextTooltip());
  next_->setIcon(style()->standardIcon(QStyle::SP_ArrowDown));
  // A drawn cross in the text colour: the style's close icon is dark on a dark palette.
  close_ = button(L10n::Window::close());
  close_->setText(QString::fromUtf8("✕"));
  connect(previous_, &QToolButton::clicked, this, &LogFindBar::previous);
  connect(next_, &QToolButton::clicked, this, &LogFindBar::next);
  connect(close_, &QToolButton::clicked, this, &LogFindBar::dismiss);
  layout->addWidget(field_, 1);
  layout->addWidget(previous_);
  layout->addWidget(next_);
  layout->addWidget(count_);
  layout->addStretch();
  layout->addWidget(close_);

  connect(field_, &QLineEdit::textChanged, this, [this] { search(true); });
  refresh_.setSingleShot(true);
  refresh_.setInterval(refreshMilliseconds);
  // New lines add their matches but leave the view where the reader has it.
  connect(&refresh_, &QTimer::timeout, this, [this] { search(false); });
  connect(log_->document(), &QTextDocument::contentsChanged, this, [this] {
    if (isVisible() && !field_->text().isEmpty()) refresh_.start();
  });
  hide();
}

int LogFindBar::currentPosition() const {
  return current_ >= 0 ? matches_[current_].selectionStart() : -1;
}

void LogFindBar::open() {
  show();
  field_->setFocus(Qt::ShortcutFocusReason);
  field_->selectAll();
  search(true);
}

void LogFindBar::dismiss() {
  refresh_.stop();
  matches_.clear();
  current_ = -1;
  log_->setExtraSelections({});
  log_->holdScrolling(false);
  hide();
  log_->setFocus();
}

void LogFindBar::next() {
  if (!isVisible()) open();
  if (!matches_.isEmpty()) showMatch((current_ + 1) % static_cast<int>(matches_.size()));
}

void LogFindBar::previous() {
  if (!isVisible()) open();
  const int count = static_cast<int>(matches_.size());
  if (count > 0) showMatch(current_ <= 0 ? count - 1 : current_ - 1);
}

void LogFindBar::search(bool moveView) {
  const QString text = field_->text();
  // The match to stay with: the one shown, or else the first line the log shows; typing more
  // of the word therefore stays near where the reader is.
  const int anchor = current_ >= 0 ? matches_[current_].selectionStart()
                                   : log_->cursorForPosition(QPoint(0, 0)).position();
  matches_.clear();
  current_ = -1;
  if (!text.isEmpty()) {
    QTextCursor found = log_->document()->find(text, 0);
    while (!found.isNull() && matches_.size() < matchLimit) {
      matches_ << found;
      found = log_->document()->find(text, found);
    }
  }
  int start = -1;
  for (qsizetype i = 0; i < matches_.size() && start < 0; ++i)
    if (matches_[i].selectionStart() >= anchor) start = static_cast<int>(i);
  if (start < 0 && !matches_.isEmpty()) start = 0;
  if (start >= 0 && moveView) {
    showMatch(start);
  } else {
    current_ = start;
    paintMatches();
  }
}

void LogFindBar::showMatch(int index) {
  current_ = index;
  QTextCursor at = matches_[index];
  // Reading a match while the board keeps talking: the view stays on it.
  log_->holdScrolling(true);
  QTextCursor caret(at);
  caret.setPosition(at.selectionStart());
  log_->setTextCursor(caret);
  log_->ensureCursorVisible();
  paintMatches();
}

void LogFindBar::paintMatches() {
  const QPalette palette = log_->palette();
  const QColor highlight = palette.color(QPalette::Highlight);
  QTextCharFormat every;
  every.setBackground(blend(highlight, palette.color(QPalette::Base), 0.35));
  QTextCharFormat shown;
  shown.setBackground(highlight);
  shown.setForeground(palette.color(QPalette::HighlightedText));
  QList<QTextEdit::ExtraSelection> selections;
  for (qsizetype i = 0; i < matches_.size(); ++i)
    selections << QTextEdit::ExtraSelection{matches_[i], i == current_ ? shown : every};
  log_->setExtraSelections(selections);
  if (field_->text().isEmpty())
    count_->clear();
  else if (matches_.isEmpty())
    count_->setText(qt(L10n::Find::noMatches()));
  else
    count_->setText(qt(L10n::Find::matchOf(current_ + 1, matches_.size())) +
                    (matches_.size() >= matchLimit ? QStringLiteral("+") : QString()));
  previous_->setEnabled(!matches_.isEmpty());
  next_->setEnabled(!matches_.isEmpty());
}

void LogFindBar::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    dismiss();
    return;
  }
  QWidget::keyPressEvent(event);
}

bool LogFindBar::eventFilter(QObject* watched, QEvent* event) {
  // In the field Return goes on to the next match, Shift+Return back; Escape closes the bar.
  if (watched == field_ && event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
      key->modifiers().testFlag(Qt::ShiftModifier) ? previous() : next();
      return true;
    }
    if (key->key() == Qt::Key_Escape) {
      dismiss();
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

} // namespace tarnwick
