// Fitting the file table's columns to its width.
#include <QHeaderView>
#include <QStandardItemModel>
#include <QTableView>
#include <gtest/gtest.h>
#include <numeric>

#include "Tarnwick/Views/TableFitting.hpp"

namespace tarnwick {
namespace {

double sum(const std::vector<double>& widths) {
  return std::accumulate(widths.begin(), widths.end(), 0.0);
}

TEST(TableFitting, SharesTheWidthByBaseAndClampsAtTheBounds) {
  // Proportional growth.
  auto grown = fitColumns({{100, 100, 0, 1e9}, {300, 300, 0, 1e9}}, 800);
  ASSERT_TRUE(grown);
  EXPECT_DOUBLE_EQ((*grown)[0], 200);
  EXPECT_DOUBLE_EQ((*grown)[1], 600);

  // A column capped at its maximum gives the rest to the others.
  auto capped = fitColumns({{50, 50, 20, 60}, {50, 50, 20, 1e9}, {100, 100, 20, 1e9}}, 400);
  ASSERT_TRUE(capped);
  EXPECT_DOUBLE_EQ((*capped)[0], 60);
  EXPECT_NEAR((*capped)[1], 340.0 / 3, 1e-9);
  EXPECT_NEAR(sum(*capped), 400, 1e-9);

  // Shrinking below a minimum holds the minimum; the clamp can cascade to a second pass.
  auto shrunk = fitColumns({{100, 100, 80, 1e9}, {100, 100, 10, 1e9}, {800, 800, 10, 1e9}}, 200);
  ASSERT_TRUE(shrunk);
  EXPECT_DOUBLE_EQ((*shrunk)[0], 80);
  EXPECT_NEAR(sum(*shrunk), 200, 1e-9);

  // Nothing to do: no room, or already within a pixel.
  EXPECT_FALSE(fitColumns({{100, 100, 0, 1e9}}, 0));
  EXPECT_FALSE(fitColumns({{100, 100, 0, 1e9}}, -5));
  EXPECT_FALSE(fitColumns({{100, 50, 0, 1e9}, {299.5, 10, 0, 1e9}}, 400));
  EXPECT_FALSE(fitColumns({}, 400));

  // Columns without any base share equally.
  auto equal = fitColumns({{0, 0, 0, 1e9}, {0, 0, 0, 1e9}}, 300);
  ASSERT_TRUE(equal);
  EXPECT_DOUBLE_EQ((*equal)[0], 150);
}

TEST(TableFitting, KeepsATableFilledWithoutSidewaysScrolling) {
  QStandardItemModel model(3, 4);
  QTableView table;
  table.setModel(&model);
  table.horizontalHeader()->resizeSection(0, 40);
  table.horizontalHeader()->resizeSection(1, 120);
  table.horizontalHeader()->resizeSection(2, 60);
  table.horizontalHeader()->resizeSection(3, 180);
  auto* fitting = new TableFitting(&table);
  table.resize(700, 300);
  table.show();
  auto total = [&] {
    int width = 0;
    for (int column = 0; column < 4; ++column)
      if (!table.isColumnHidden(column)) width += table.columnWidth(column);
    return width;
  };
  EXPECT_EQ(total(), table.viewport()->width());
  int first = table.horizontalHeader()->sectionSize(0);
  int last = table.horizontalHeader()->sectionSize(3);
  EXPECT_NEAR(static_cast<double>(last) / first, 180.0 / 40, 0.2);

  table.resize(500, 300);
  EXPECT_EQ(total(), table.viewport()->width());

  // A hidden column's room goes to the others.
  table.setColumnHidden(1, true);
  fitting->fit();
  EXPECT_EQ(total(), table.viewport()->width());
  EXPECT_EQ(table.horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
}

} // namespace
} // namespace tarnwick
