#pragma once
// The product's files: a table with enable boxes, roles, live addresses, sizes and what the
// product check says of each, or an empty view; both take dropped files and folders.

#include <QPalette>
#include <QTableWidget>
#include <QWidget>
#include <filesystem>
#include <optional>
#include <vector>

#include "FlashCore/ESPImage.hpp"
#include "FlashCore/ProductCheck.hpp"
#include "FlashCore/UUID.hpp"
#include "FlashEngine/RunNarration.hpp"

class QAction;
class QLabel;
class QPushButton;
class QStackedWidget;
class QMimeData;

namespace tarnwick {

class FlasherModel;
class TableFitting;

/// What a drop onto the file list does with its locations.
struct DropAction {
  enum class Kind { none, openProduct, importFolder, addFiles };
  Kind kind = Kind::none;
  std::vector<std::filesystem::path> locations;
  bool operator==(const DropAction&) const = default;
};

/// A single folder is a product when named *.twflash and a build folder otherwise; a single
/// product file opens; anything else is added as firmware files.
DropAction dropActionFor(const std::vector<std::filesystem::path>& locations);

/// The colour of one line of a "Location and checks" cell: a warning or an error in its own
/// colour, readable on the row's background (selected or not), other lines in the text colour.
QColor findingColour(LogSegment::Kind kind, const QPalette& palette, bool selected);

class FileListPanel : public QWidget {
  Q_OBJECT
public:
  enum Column { enabledColumn, fileColumn, roleColumn, addressColumn, sizeColumn, locationColumn };

  explicit FileListPanel(FlasherModel& model, QWidget* parent = nullptr);

  QTableWidget* table() const { return table_; }
  /// The control of type T in a row's cell (enable box, kind, address); null when none.
  template <typename T> T* cellControl(int row, int column) const {
    QWidget* cell = table_->cellWidget(row, column);
    return cell ? cell->findChild<T*>() : nullptr;
  }
  /// The ids of the selected rows.
  std::vector<UUID> selectedIDs() const;
  /// Asks for firmware files / a build folder and hands them to the model.
  void chooseFiles();
  void chooseBuildFolder();
  void removeSelected();

protected:
  void changeEvent(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

private:
  void refresh();
  void rebuildRows();
  void updateRow(int row, const std::vector<ProductIssue>& issues,
                 const std::optional<std::vector<Partition>>& partitions);
  void retitle();
  void showContextMenu(const QPoint& position);
  void chooseAnotherFile(const UUID& id);
  void setDragHighlight(bool on);
  static QWidget* centred(QWidget* control, Qt::Alignment alignment = Qt::AlignVCenter);

  FlasherModel& model_;
  QWidget* topButtons_;
  QStackedWidget* stack_;
  QTableWidget* table_;
  QLabel* emptyTitle_;
  QLabel* emptyHint_;
  TableFitting* fitting_;
  QAction* removeAction_;
  QAction* anotherFileAction_;
  std::vector<UUID> rowIDs_;
  bool arduino_ = false;
};

} // namespace tarnwick
