#pragma once
// The header's port picker: the model's ports, the local ones first and the network ones marked,
// then the entries that add a network port and forget the selected one. Those entries are reached
// in the open list only: stepping through the closed picker with the arrow keys or the wheel
// chooses among ports and never opens a dialog or forgets a port on the way.

#include <QComboBox>
#include <QPointer>

namespace tarnwick {

class FlasherModel;
class NetworkPortDialog;

class PortPicker : public QComboBox {
  Q_OBJECT
public:
  /// The entries that do something rather than name a port.
  enum class Command { addNetworkPort = 1, removeNetworkPort };

  explicit PortPicker(FlasherModel& model, QWidget* parent = nullptr);

  /// The row of `command`'s entry; -1 when it is not offered.
  int rowOf(Command command) const;
  /// The dialog of "Add Network Port…" while it is open.
  NetworkPortDialog* networkPortDialog() const;
  /// Asks for a network port; the one given is added and selected.
  void askForNetworkPort();

  void showPopup() override;
  void hidePopup() override;

private:
  void refresh();
  void choose(int row);
  void enableCommands(bool enabled);

  FlasherModel& model_;
  QPointer<NetworkPortDialog> dialog_;
  bool listOpen_ = false;
};

} // namespace tarnwick
