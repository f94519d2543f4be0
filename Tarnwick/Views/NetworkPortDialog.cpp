#include "Tarnwick/Views/NetworkPortDialog.hpp"

#include <QAction>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <optional>
#include <string>

#include "FlashSerial/NetworkPort.hpp"
#include "Localization/SettingsTexts.hpp"
#include "Localization/WindowTexts.hpp"
#include "Tarnwick/Model/Colours.hpp"
#include "Tarnwick/Model/OutputBuffer.hpp"
#include "Tarnwick/Views/AddressField.hpp"
#include "Tarnwick/Views/ViewSupport.hpp"

namespace tarnwick {

namespace {
namespace T = L10n::NetworkPorts;

/// The host field read as people fill it: a host alone, "HOST:PORT", "[IPv6]:PORT", or a whole
/// address with its scheme.
struct HostField {
  /// The host as written, brackets included.
  std::string host;
  /// A port written after the host; empty when the colon has nothing after it yet.
  std::optional<std::string> port;
  /// An address of another kind ("socket://", "telnet://").
  bool otherScheme = false;
};

HostField readHostField(std::string text) {
  HostField field;
  if (looksLikeNetworkPort(text)) {
    text.erase(0, networkPortScheme.size());
  } else if (text.find("://") != std::string::npos) {
    field.otherScheme = true;
    return field;
  }
  // A bare IPv6 address has several colons and no port; with a port it is in brackets.
  std::size_t colon = std::string::npos;
  if (text.starts_with('[')) {
    const std::size_t close = text.find(']');
    if (close != std::string::npos && close + 1 < text.size() && text[close + 1] == ':')
      colon = close + 1;
  } else if (std::ranges::count(text, ':') == 1) {
    colon = text.find(':');
  }
  if (colon != std::string::npos) {
    field.port = text.substr(colon + 1);
    text.resize(colon);
  }
  field.host = std::move(text);
  return field;
}

/// The network port's name for a host as written and a port.
std::string nameOf(const std::string& host, const std::string& port) {
  const bool bare = host.find(':') != std::string::npos && !host.starts_with('[');
  return std::string(networkPortScheme) + (bare ? "[" + host + "]" : host) + ":" + port;
}

bool isHost(const std::string& host) { return parseNetworkPort(nameOf(host, "1")).has_value(); }
bool isPortNumber(const std::string& port) {
  return parseNetworkPort(nameOf("localhost", port)).has_value();
}
} // namespace

NetworkPortDialog::NetworkPortDialog(QWidget* parent) : QDialog(parent) {
  setObjectName("networkPortDialog");
  setWindowTitle(qt(T::dialogTitle()));
  auto* layout = new QVBoxLayout(this);
  auto* explanation = new QLabel(qt(T::explanation()));
  explanation->setWordWrap(true);
  layout->addWidget(explanation);

  auto* form = new QFormLayout;
  host_ = new QLineEdit;
  host_->setObjectName("networkHost");
  host_->setPlaceholderText(qt(T::hostPlaceholder()));
  host_->setMinimumWidth(host_->fontMetrics().averageCharWidth() * 36);
  port_ = new QLineEdit;
  port_->setObjectName("networkPort");
  port_->setPlaceholderText(QStringLiteral("2000"));
  port_->setMaximumWidth(port_->fontMetrics().averageCharWidth() * 12);
  hostMark_ = host_->addAction(invalidMarkIcon(), QLineEdit::TrailingPosition);
  portMark_ = port_->addAction(invalidMarkIcon(), QLineEdit::TrailingPosition);
  form->addRow(qt(T::host()), host_);
  form->addRow(qt(T::tcpPort()), port_);
  layout->addLayout(form);

  problem_ = new QLabel;
  problem_->setObjectName("networkPortProblem");
  problem_->setWordWrap(true);
  problem_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  // Room for the longest reason, so the dialog does not jump as one comes and goes.
  problem_->setMinimumHeight(problem_->fontMetrics().lineSpacing() * 2);
  layout->addWidget(problem_);

  auto* buttons = new QDialogButtonBox;
  add_ = buttons->addButton(qt(T::add()), QDialogButtonBox::AcceptRole);
  add_->setDefault(true);
  buttons->addButton(qt(L10n::Product::cancel()), QDialogButtonBox::RejectRole);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);

  connect(host_, &QLineEdit::textChanged, this, &NetworkPortDialog::check);
  connect(port_, &QLineEdit::textChanged, this, [this](const QString& text) {
    ownPort_ = text;
    check();
  });
  colourProblem();
  check();
}

QString NetworkPortDialog::problem() const { return problem_->text(); }

bool NetworkPortDialog::isMarked(const QLineEdit* field) const {
  return (field == host_ && hostMark_->isVisible()) || (field == port_ && portMark_->isVisible());
}

void NetworkPortDialog::check() {
  const HostField field = readHostField(host_->text().trimmed().toStdString());
  // A port written in the host field is the one used: the port field shows it and waits.
  port_->setEnabled(!field.port);
  const QString shownPort = field.port ? QString::fromStdString(*field.port) : ownPort_;
  // Setting the same text again would move the cursor of someone typing there.
  if (port_->text() != shownPort) {
    const QSignalBlocker shownOnly(port_);
    port_->setText(shownPort);
  }
  const std::string port = field.port ? *field.port : port_->text().trimmed().toStdString();
  QLineEdit* portShownIn = field.port ? host_ : port_;

  portName_.clear();
  if (field.otherScheme) {
    showProblem(qt(T::onlyRFC2217()), host_);
  } else if (!field.host.empty() && !isHost(field.host)) {
    showProblem(qt(T::notAHost(field.host)), host_);
  } else if (!port.empty() && !isPortNumber(port)) {
    showProblem(qt(T::notAPortNumber()), portShownIn);
  } else {
    // Half typed is no fault: Add waits for both.
    showProblem({}, nullptr);
    if (!field.host.empty() && !port.empty())
      portName_ = QString::fromStdString(parseNetworkPort(nameOf(field.host, port))->name());
  }
  add_->setEnabled(!portName_.isEmpty());
}

void NetworkPortDialog::showProblem(const QString& text, QLineEdit* field) {
  problem_->setText(text);
  hostMark_->setVisible(field == host_);
  portMark_->setVisible(field == port_);
  // The mark's button is named after its action: it says the reason too, when hovered or read.
  hostMark_->setText(field == host_ ? text : QString());
  portMark_->setText(field == port_ ? text : QString());
  // A screen reader hears the reason with the field, not only the mark.
  host_->setAccessibleDescription(field == host_ ? text : QString());
  port_->setAccessibleDescription(field == port_ ? text : QString());
}

void NetworkPortDialog::colourProblem() {
  QPalette palette = problem_->palette();
  palette.setColor(QPalette::WindowText, readableOn(logColour(LogSegment::Kind::error, palette),
                                                    palette.color(QPalette::Window)));
  problem_->setPalette(palette);
}

void NetworkPortDialog::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange && problem_ != nullptr) colourProblem();
  QDialog::changeEvent(event);
}

} // namespace tarnwick
