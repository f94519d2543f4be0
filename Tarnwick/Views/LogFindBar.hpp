#pragma once
// Finding text in the log: a bar under it that highlights every match as the text is typed,
// steps from match to match, and keeps up with lines that arrive while it is open.

#include <QList>
#include <QTextCursor>
#include <QTimer>
#include <QWidget>

class QLabel;
class QLineEdit;
class QToolButton;

namespace tarnwick {

class LogView;

class LogFindBar : public QWidget {
  Q_OBJECT
public:
  /// At most this many matches are highlighted; the count says when there are more.
  static constexpr int matchLimit = 5000;

  explicit LogFindBar(LogView* log, QWidget* parent = nullptr);

  QLineEdit* field() const { return field_; }
  /// "3 of 12", "No matches", or nothing while the field is empty.
  QLabel* countLabel() const { return count_; }
  int matchCount() const { return static_cast<int>(matches_.size()); }
  /// The position of the shown match in the log's document; -1 when none is shown.
  int currentPosition() const;

  /// Shows the bar with the field focused and its text selected.
  void open();
  /// Hides the bar; the log shows no more highlights and follows new lines again.
  void dismiss();
  void next();
  void previous();

protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  /// Finds every match again; `moveView` brings the chosen one into view.
  void search(bool moveView);
  void showMatch(int index);
  void paintMatches();

  LogView* log_;
  QLineEdit* field_;
  QLabel* count_;
  QToolButton* previous_;
  QToolButton* next_;
  QToolButton* close_;
  QList<QTextCursor> matches_;
  int current_ = -1;
  /// Lines arriving in a burst are searched once.
  QTimer refresh_;
};

} // namespace tarnwick
