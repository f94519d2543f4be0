#pragma once
// The log pane: shows the log buffer's own document, with the faint logo while it is empty.

#include <QTextEdit>

namespace tarnwick {

class OutputBuffer;

class LogView : public QTextEdit {
  Q_OBJECT
public:
  explicit LogView(OutputBuffer& buffer, QWidget* parent = nullptr);
  /// While held, new lines do not scroll the view to the end (a match being read stays put).
  void holdScrolling(bool held) { scrollingHeld_ = held; }

protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

private:
  void renderLogo();
  QPixmap logo_;
  QSize logoFor_;
  bool scrollingHeld_ = false;
};

} // namespace tarnwick
