#pragma once
// The station's rows as a table for item views: one row per board, a column per fact.

#include <QAbstractTableModel>

namespace tarnwick {

class StationModel;

class StationTable : public QAbstractTableModel {
  Q_OBJECT
public:
  enum Column { port, board, serialNumber, chip, mac, stage, progress, result, time, columns };
  /// The share done, 0 to 1, of the progress column; the result, as StationRow::Result, of any.
  enum Role { fractionRole = Qt::UserRole + 1, resultRole };

  explicit StationTable(StationModel& station, QObject* parent = nullptr);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation,
                      int role = Qt::DisplayRole) const override;

private:
  void rowsChanged();

  StationModel& station_;
  /// The rows the views know of.
  int shown_ = 0;
};

} // namespace tarnwick
