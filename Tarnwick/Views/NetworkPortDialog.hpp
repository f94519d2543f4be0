#pragma once
// Asks for a port on another computer: the serial server's host and the board's TCP port, or a
// whole rfc2217:// address pasted into the host field. Checked as it is typed; Add is offered
// only for a port that can be opened.

#include <QDialog>

class QAction;
class QLabel;
class QLineEdit;
class QPushButton;

namespace tarnwick {

class NetworkPortDialog : public QDialog {
  Q_OBJECT
public:
  explicit NetworkPortDialog(QWidget* parent = nullptr);

  /// The port the fields name ("rfc2217://HOST:PORT"); empty while they name none.
  QString portName() const { return portName_; }
  /// What is wrong with the text typed; empty when nothing is, or too little is typed to tell.
  QString problem() const;

  QLineEdit* hostField() const { return host_; }
  QLineEdit* portField() const { return port_; }
  QPushButton* addButton() const { return add_; }
  /// Whether `field` is marked as holding the text that is wrong.
  bool isMarked(const QLineEdit* field) const;

protected:
  void changeEvent(QEvent* event) override;

private:
  void check();
  void showProblem(const QString& text, QLineEdit* field);
  void colourProblem();

  QLineEdit* host_ = nullptr;
  QLineEdit* port_ = nullptr;
  QAction* hostMark_ = nullptr;
  QAction* portMark_ = nullptr;
  QLabel* problem_ = nullptr;
  QPushButton* add_ = nullptr;
  QString portName_;
  /// What the user typed into the port field, shown again once the host field no longer names a
  /// port of its own.
  QString ownPort_;
};

} // namespace tarnwick
