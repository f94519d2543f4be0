#pragma once
// Fits the columns of the file table to its width, so it never scrolls sideways while each
// column keeps its share of the width the user gave it.

#include <QObject>
#include <QString>
#include <map>
#include <optional>
#include <vector>

class QTableView;

namespace tarnwick {

/// One visible column as the fitting sees it.
struct FittedColumn {
  double current = 0;
  /// The width the column had when the user last set it; its share is proportional to this.
  double base = 0;
  double minimum = 0;
  double maximum = 1e9;
  bool operator==(const FittedColumn&) const = default;
};

/// The widths that fill `available`: each column gets its share in proportion to its base width,
/// a column pushed beyond its bounds gets the bound and the rest is shared again. None when
/// nothing needs to change (no room at all, or the columns already fill it within one pixel).
std::optional<std::vector<double>> fitColumns(const std::vector<FittedColumn>& columns,
                                              double available);

/// Keeps a table's columns fitted to its viewport. Base widths are recorded by column identifier
/// (the model's header text in Qt::UserRole, or the column number when there is none), so a
/// column that is hidden for one target keeps its share for when it comes back.
class TableFitting : public QObject {
  Q_OBJECT
public:
  TableFitting(QTableView* table, std::map<QString, std::pair<int, int>> bounds = {});
  /// Fits now; called on resizes, and by the owner after columns were shown or hidden.
  void fit();

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  QString identifier(int column) const;
  /// The width `column` needs to show its title whole.
  int titleWidth(int column) const;
  void userResized();

  QTableView* table_;
  std::map<QString, std::pair<int, int>> bounds_;
  std::map<QString, double> base_;
  bool fitting_ = false;
};

} // namespace tarnwick
