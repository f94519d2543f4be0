#include "Tarnwick/Model/StationTable.hpp"

#include <QGuiApplication>
#include <QPalette>

#include "FlashCore/VisibleText.hpp"
#include "FlashSerial/PortScanner.hpp"
#include "Localization/AccessibleTexts.hpp"
#include "Localization/RunTexts.hpp"
#include "Localization/StationWindowTexts.hpp"
#include "Tarnwick/Model/Colours.hpp"
#include "Tarnwick/Model/StationModel.hpp"

namespace tarnwick {

namespace {

namespace T = L10n::StationWindow;

QString qs(const std::string& text) { return QString::fromStdString(text); }
QString qs(const std::optional<std::string>& text) {
  return text ? QString::fromStdString(visible(*text)) : QString();
}

QString resultText(const StationRow& row) {
  switch (row.result) {
  case StationRow::Result::running: return qs(T::running());
  case StationRow::Result::done: return qs(T::done());
  case StationRow::Result::failed: return qs(T::failed());
  case StationRow::Result::stopped: return qs(T::stopped());
  case StationRow::Result::leftAlone: return qs(T::leftAlone());
  }
  return {};
}

// Green for done and red for failed, as the status dot has them, dark or light enough to read
// on the palette's base; the word says it too.
QVariant resultColour(StationRow::Result result) {
  const QColor base = QGuiApplication::palette().color(QPalette::Base);
  switch (result) {
  case StationRow::Result::done: return readableOn(successGreen, base);
  case StationRow::Result::failed: return readableOn(failureRed, base);
  default: return {};
  }
}

} // namespace

StationTable::StationTable(StationModel& station, QObject* parent)
    : QAbstractTableModel(parent), station_(station),
      shown_(static_cast<int>(station.rows().size())) {
  connect(&station_, &StationModel::rowsChanged, this, &StationTable::rowsChanged);
  connect(&station_, &StationModel::rowsCleared, this, [this] {
    beginResetModel();
    shown_ = static_cast<int>(station_.rows().size());
    endResetModel();
  });
}

void StationTable::rowsChanged() {
  // Rows are only ever added at the end or changed in place between two clears.
  const int count = static_cast<int>(station_.rows().size());
  if (count > shown_) {
    beginInsertRows({}, shown_, count - 1);
    shown_ = count;
    endInsertRows();
  }
  if (shown_ > 0) emit dataChanged(index(0, 0), index(shown_ - 1, Column::columns - 1));
}

int StationTable::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : shown_;
}

int StationTable::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : Column::columns;
}

QVariant StationTable::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= shown_) return {};
  const StationRow& row = station_.rows()[static_cast<std::size_t>(index.row())];
  if (role == resultRole) return static_cast<int>(row.result);
  if (role == fractionRole) {
    if (row.total <= 0) return 0.0;
    return std::clamp(static_cast<double>(row.done) / static_cast<double>(row.total), 0.0, 1.0);
  }
  if (role == Qt::ForegroundRole && index.column() == Column::result)
    return resultColour(row.result);
  if (role == Qt::ToolTipRole) {
    // The whole text of the columns that may be cut: a failure's reason, a long name.
    if (index.column() == Column::result && !row.message.isEmpty()) return row.message;
    if (index.column() == Column::stage || index.column() == Column::board)
      return data(index, Qt::DisplayRole);
    return {};
  }
  if (role == Qt::TextAlignmentRole && index.column() == Column::time)
    return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
  if (role == Qt::AccessibleTextRole) {
    // An empty cell is read out as what it means: a board still running has no time yet, one
    // without a serial number (or not yet read) has an unknown one.
    if (!data(index, Qt::DisplayRole).toString().isEmpty()) return {};
    if (index.column() == Column::time) return resultText(row);
    return qs(L10n::Accessible::unknown());
  }
  if (role != Qt::DisplayRole) return {};
  switch (index.column()) {
  case Column::port: return qs(deviceName(row.path));
  case Column::board: return row.boardName;
  case Column::serialNumber: return qs(row.serialNumber);
  case Column::chip: return qs(row.chip);
  case Column::mac: return qs(row.mac);
  case Column::stage:
    // A board that has ended shows why, where there is a reason.
    return row.result == StationRow::Result::running || row.message.isEmpty() ? row.stage
                                                                              : row.message;
  case Column::progress: {
    const double share = data(index, fractionRole).toDouble();
    return qs(T::percent(static_cast<std::int64_t>(share * 100)));
  }
  case Column::result: return resultText(row);
  case Column::time:
    return row.result == StationRow::Result::running ? QString() : qs(formatSeconds(row.seconds));
  }
  return {};
}

QVariant StationTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  switch (section) {
  case Column::port: return qs(T::portColumn());
  case Column::board: return qs(T::boardColumn());
  case Column::serialNumber: return qs(T::serialNumberColumn());
  case Column::chip: return qs(T::chipColumn());
  case Column::mac: return qs(T::macColumn());
  case Column::stage: return qs(T::stageColumn());
  case Column::progress: return qs(T::progressColumn());
  case Column::result: return qs(T::resultColumn());
  case Column::time: return qs(T::timeColumn());
  }
  return {};
}

} // namespace tarnwick
