#include "Tarnwick/Views/TableFitting.hpp"

#include <QEvent>
#include <QHeaderView>
#include <QScrollBar>
#include <QStyle>
#include <QTableView>
#include <algorithm>
#include <cmath>
#include <numeric>

namespace tarnwick {

std::optional<std::vector<double>> fitColumns(const std::vector<FittedColumn>& columns,
                                              double available) {
  if (available <= 0 || columns.empty()) return std::nullopt;
  double current = 0;
  for (const FittedColumn& column : columns)
    current += column.current;
  if (std::abs(current - available) <= 1.0) return std::nullopt;

  std::vector<double> widths(columns.size(), 0);
  std::vector<bool> fixed(columns.size(), false);
  double remaining = available;
  for (;;) {
    double baseSum = 0;
    std::size_t open = 0;
    for (std::size_t i = 0; i < columns.size(); ++i)
      if (!fixed[i]) {
        baseSum += std::max(columns[i].base, 0.0);
        ++open;
      }
    if (open == 0) break;
    bool clamped = false;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (fixed[i]) continue;
      // Columns without a base share equally rather than vanishing.
      double share = baseSum > 0 ? std::max(columns[i].base, 0.0) * remaining / baseSum
                                 : remaining / static_cast<double>(open);
      if (share < columns[i].minimum || share > columns[i].maximum) {
        widths[i] = std::clamp(share, columns[i].minimum, columns[i].maximum);
        fixed[i] = true;
        clamped = true;
      } else {
        widths[i] = share;
      }
    }
    if (!clamped) break;
    remaining = available;
    for (std::size_t i = 0; i < columns.size(); ++i)
      if (fixed[i]) remaining -= widths[i];
  }
  return widths;
}

TableFitting::TableFitting(QTableView* table, std::map<QString, std::pair<int, int>> bounds)
    : QObject(table), table_(table), bounds_(std::move(bounds)) {
  table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  table->horizontalHeader()->setStretchLastSection(false);
  table->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
  table->viewport()->installEventFilter(this);
  table->installEventFilter(this);
  connect(table->horizontalHeader(), &QHeaderView::sectionResized, this, [this] {
    if (!fitting_) userResized();
  });
}

QString TableFitting::identifier(int column) const {
  if (table_->model() != nullptr) {
    QVariant id = table_->model()->headerData(column, Qt::Horizontal, Qt::UserRole);
    if (id.isValid()) return id.toString();
  }
  return QString::number(column);
}

void TableFitting::userResized() {
  // A hand-made width is the new proportion; fitting afterwards keeps it as a share.
  QHeaderView* header = table_->horizontalHeader();
  for (int column = 0; column < header->count(); ++column)
    if (!header->isSectionHidden(column)) base_[identifier(column)] = header->sectionSize(column);
  fit();
}

int TableFitting::titleWidth(int column) const {
  QHeaderView* header = table_->horizontalHeader();
  if (table_->model() == nullptr) return 0;
  const QString title = table_->model()->headerData(column, Qt::Horizontal).toString();
  if (title.isEmpty()) return 0;
  QFont bold = header->font();
  bold.setBold(true);
  const int margin = header->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header);
  return QFontMetrics(bold).horizontalAdvance(title) + 2 * margin + 2;
}

void TableFitting::fit() {
  QHeaderView* header = table_->horizontalHeader();
  std::vector<int> visible;
  std::vector<FittedColumn> columns;
  for (int column = 0; column < header->count(); ++column) {
    if (header->isSectionHidden(column)) continue;
    QString id = identifier(column);
    FittedColumn fitted;
    fitted.current = header->sectionSize(column);
    // The first width a column is seen with is its proportion until the user drags it.
    fitted.base = base_.try_emplace(id, fitted.current).first->second;
    auto bound = bounds_.find(id);
    fitted.minimum = bound != bounds_.end() ? bound->second.first : header->minimumSectionSize();
    fitted.maximum = bound != bounds_.end() ? bound->second.second : 1e9;
    // Never narrower than its title, whatever the font: as wide as the title is drawn in bold,
    // as it is while the row under it is selected.
    fitted.minimum = std::max(fitted.minimum, static_cast<double>(titleWidth(column)));
    fitted.maximum = std::max(fitted.maximum, fitted.minimum);
    visible.push_back(column);
    columns.push_back(fitted);
  }
  auto widths = fitColumns(columns, table_->viewport()->width());
  if (!widths) return;
  fitting_ = true;
  // Rounding each share down and giving the pixels left over to the last column keeps the sum
  // exact, so no sideways scrolling ever appears.
  int left = table_->viewport()->width();
  for (std::size_t i = 0; i < visible.size(); ++i) {
    int width =
        i + 1 == visible.size() ? std::max(left, 1) : static_cast<int>(std::floor((*widths)[i]));
    header->resizeSection(visible[i], width);
    left -= width;
  }
  fitting_ = false;
}

bool TableFitting::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize || event->type() == QEvent::Show) fit();
  return QObject::eventFilter(watched, event);
}

} // namespace tarnwick
