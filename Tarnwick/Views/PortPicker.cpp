#include "Tarnwick/Views/PortPicker.hpp"

#include <QStandardItemModel>

#include "Assets/AssetsLookup.hpp"
#include "Localization/MainWindowTexts.hpp"
#include "Localization/WindowTexts.hpp"
#include "Tarnwick/Model/FlasherModel.hpp"
#include "Tarnwick/Views/NetworkPortDialog.hpp"
#include "Tarnwick/Views/ViewSupport.hpp"

namespace tarnwick {

namespace {
/// Where an entry keeps its command; a port's path is its plain item data.
constexpr int commandRole = Qt::UserRole + 1;
} // namespace

PortPicker::PortPicker(FlasherModel& model, QWidget* parent) : QComboBox(parent), model_(model) {
  setObjectName("portPicker");
  setMinimumContentsLength(24);
  setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  connect(this, qOverload<int>(&QComboBox::activated), this, &PortPicker::choose);
  connect(&model_, &FlasherModel::portListChanged, this, &PortPicker::refresh);
  connect(&model_, &FlasherModel::selectedPathChanged, this, &PortPicker::refresh);
  refresh();
}

int PortPicker::rowOf(Command command) const {
  return findData(static_cast<int>(command), commandRole);
}

void PortPicker::refresh() {
  QSignalBlocker quiet(this);
  clear();
  const auto& ports = model_.ports();
  const QString selected = model_.selectedPath();
  if (ports.empty() && selected.isEmpty()) {
    addItem(qt(L10n::Header::noPortsFound()));
  } else if (selected.isEmpty()) {
    addItem(qt(L10n::Header::selectPort()));
  }
  // The help topic's symbol: the same picture wherever network ports are spoken of.
  const QIcon network(assets::iconResource(QStringLiteral("tarnwick-help-network")));
  bool listed = false;
  for (const SerialPortInfo& port : ports) {
    const QString path = QString::fromStdString(port.path);
    if (FlasherModel::isNetworkPort(path))
      addItem(network, model_.portLabel(path), path);
    else
      addItem(model_.portLabel(path), path);
    listed = listed || path == selected;
  }
  if (!selected.isEmpty() && !listed)
    insertItem(0, qt(L10n::Board::notConnected(selected.toStdString())), selected);
  insertSeparator(count());
  addItem(qt(L10n::NetworkPorts::addNetworkPort()));
  setItemData(count() - 1, static_cast<int>(Command::addNetworkPort), commandRole);
  // Only a port the user added can be forgotten; an announced one stays while it is announced.
  if (listed && model_.networkPorts().contains(selected)) {
    addItem(qt(L10n::NetworkPorts::removeNetworkPort()));
    setItemData(count() - 1, static_cast<int>(Command::removeNetworkPort), commandRole);
  }
  enableCommands(listOpen_);
  const int index = selected.isEmpty() ? 0 : findData(selected);
  setCurrentIndex(std::max(index, 0));
}

void PortPicker::choose(int row) {
  const auto command = static_cast<Command>(itemData(row, commandRole).toInt());
  if (command == Command::addNetworkPort) {
    // The picker goes back to the port chosen; the dialog's port becomes the new choice.
    refresh();
    askForNetworkPort();
  } else if (command == Command::removeNetworkPort) {
    model_.removeNetworkPort(model_.selectedPath());
    refresh();
  } else if (const QString path = itemData(row).toString(); !path.isEmpty()) {
    model_.setSelectedPath(path);
  }
}

NetworkPortDialog* PortPicker::networkPortDialog() const { return dialog_; }

void PortPicker::askForNetworkPort() {
  if (dialog_) {
    dialog_->raise();
    dialog_->activateWindow();
    return;
  }
  dialog_ = new NetworkPortDialog(window());
  dialog_->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog_, &QDialog::accepted, this,
          [this, dialog = dialog_] { model_.addNetworkPort(dialog->portName()); });
  // Answered, it is gone for the picker at once, though deleted only later.
  connect(dialog_, &QDialog::finished, this, [this] { dialog_.clear(); });
  dialog_->open();
}

void PortPicker::showPopup() {
  listOpen_ = true;
  enableCommands(true);
  QComboBox::showPopup();
}

void PortPicker::hidePopup() {
  QComboBox::hidePopup();
  listOpen_ = false;
  enableCommands(false);
}

void PortPicker::enableCommands(bool enabled) {
  // The closed picker steps over disabled entries, by key, by wheel and by typed letters alike.
  auto* items = qobject_cast<QStandardItemModel*>(model());
  if (!items) return;
  for (Command command : {Command::addNetworkPort, Command::removeNetworkPort}) {
    if (QStandardItem* item = items->item(rowOf(command))) item->setEnabled(enabled);
  }
}

} // namespace tarnwick
