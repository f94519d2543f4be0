// Colours that carry news: each finding of the file table in its own colour on plain and
// selected rows, and every log and status colour readable in the light and the dark palette.
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QStyle>
#include <QStyleFactory>
#include <climits>
#include <memory>

#include "Localization/Language.hpp"
#include "Tarnwick/Model/Colours.hpp"
#include "Tarnwick/Model/OutputBuffer.hpp"
#include "Tarnwick/Views/LogView.hpp"
#include "Tarnwick/Views/WindowFixture.hpp"

namespace tarnwick::testing {
namespace {

using Kind = LogSegment::Kind;

/// Puts the application's palette back however the test ends.
struct PaletteGuard {
  QPalette saved = QApplication::palette();
  ~PaletteGuard() { QApplication::setPalette(saved); }
};

QPalette fusionLight() {
  std::unique_ptr<QStyle> fusion(QStyleFactory::create(QStringLiteral("Fusion")));
  return fusion->standardPalette();
}

int distance(const QColor& a, const QColor& b) {
  const int r = a.red() - b.red(), g = a.green() - b.green(), bl = a.blue() - b.blue();
  return static_cast<int>(std::sqrt(r * r + g * g + bl * bl));
}

// An application at 0x10800: inside app0 (the partition line), not aligned (an error), not at
// a partition's start (a warning). Its row shows three lines, each in its own colour.
TEST_F(WindowTest, EachFindingInTheFileTableHasItsOwnColourOnPlainAndSelectedRows) {
  LanguageOverride english(Language::en);
  MainWindow& w = open();
  auto product = espProduct(ESPChip::esp32, 64 * 1024);
  for (auto& image : product.product.images)
    if (image.role == FirmwareImage::Role::application) image.offset = 0x10800;
  load(*model, product);
  QTableWidget* table = w.fileList()->table();
  const auto& images = model->product().images;
  const int row = static_cast<int>(
      std::find_if(images.begin(), images.end(),
                   [](const FirmwareImage& image) { return image.offset == 0x10800; }) -
      images.begin());
  QTableWidgetItem* cell = table->item(row, FileListPanel::locationColumn);
  const QStringList lines = cell->text().split(u'\n');
  ASSERT_EQ(lines.size(), 3) << cell->text().toStdString();
  EXPECT_TRUE(lines[0].startsWith("app0 (")) << lines[0].toStdString();
  EXPECT_TRUE(lines[1].startsWith("✕ ")) << lines[1].toStdString();
  EXPECT_TRUE(lines[2].startsWith("⚠ ")) << lines[2].toStdString();

  // The Kind box keeps a box's height in the taller row.
  auto* kind = w.fileList()->cellControl<QComboBox>(row, FileListPanel::roleColumn);
  ASSERT_NE(kind, nullptr);
  EXPECT_GT(table->rowHeight(row), kind->sizeHint().height() + 8);
  EXPECT_EQ(kind->height(), kind->sizeHint().height());

  for (bool selected : {false, true}) {
    SCOPED_TRACE(selected ? "selected" : "not selected");
    if (selected) table->selectRow(row);
    QCoreApplication::processEvents();
    const QPalette& palette = table->palette();
    const QColor text = findingColour(Kind::text, palette, selected);
    const QColor error = findingColour(Kind::error, palette, selected);
    const QColor warning = findingColour(Kind::warning, palette, selected);
    EXPECT_GE(distance(error, warning), 40);
    const QImage image = table->viewport()->grab(table->visualItemRect(cell)).toImage();
    // The rows of pixels each colour is found in: text above errors above warnings.
    int textLast = -1, errorFirst = INT_MAX, errorLast = -1, warningFirst = INT_MAX;
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x) {
        const QColor pixel = image.pixelColor(x, y);
        if (distance(pixel, text) < 30) textLast = std::max(textLast, y);
        if (distance(pixel, error) < 30) {
          errorFirst = std::min(errorFirst, y);
          errorLast = std::max(errorLast, y);
        }
        if (distance(pixel, warning) < 30) warningFirst = std::min(warningFirst, y);
      }
    ASSERT_GE(textLast, 0);
    ASSERT_GE(errorLast, 0);
    ASSERT_LT(warningFirst, INT_MAX);
    EXPECT_LT(textLast, errorFirst);
    EXPECT_LT(errorLast, warningFirst);
  }
}

// Every colour that tells something keeps 4.5:1 on its background (the status dot, a symbol,
// 3:1 for its ring), computed from the colours of the light Fusion palette and of the dark one.
TEST_F(WindowTest, LogAndStatusColoursReadOnTheirBackgroundsInLightAndDarkPalettes) {
  PaletteGuard guard;
  struct Palette {
    const char* name;
    QPalette palette;
  };
  for (const Palette& each : {Palette{"light", fusionLight()}, Palette{"dark", darkPalette()}}) {
    SCOPED_TRACE(each.name);
    QApplication::setPalette(each.palette);
    MainWindow& w = open();
    auto check = [](const char* what, const QColor& colour, const QColor& background,
                    double least) {
      EXPECT_GE(contrastRatio(colour, background), least)
          << what << ": " << colour.name().toStdString() << " on "
          << background.name().toStdString();
    };
    const QPalette log = w.findChild<LogView*>()->palette();
    for (Kind kind : {Kind::text, Kind::timestamp, Kind::meta, Kind::request, Kind::response,
                      Kind::warning, Kind::error, Kind::system}) {
      check("log", logColour(kind, log), log.color(QPalette::Base), 4.5);
      check("log", logColour(kind, log), log.color(QPalette::Window), 4.5);
    }
    const QPalette table = w.fileList()->table()->palette();
    for (Kind kind : {Kind::text, Kind::warning, Kind::error}) {
      check("file table", findingColour(kind, table, false), table.color(QPalette::Base), 4.5);
      check("selected row", findingColour(kind, table, true), table.color(QPalette::Highlight),
            4.5);
    }
    const QPalette banner = w.noBoardBanner()->palette();
    check("banner", banner.color(QPalette::WindowText), banner.color(QPalette::Window), 4.5);
    const QPalette status = w.statusText()->palette();
    check("status line", status.color(QPalette::WindowText), status.color(QPalette::Window), 4.5);
    const std::vector<std::optional<FlashOutcome>> outcomes = {
        std::nullopt, FlashOutcome{FlashOutcome::Success{}},
        FlashOutcome{FlashOutcome::Failure{"r"}}, FlashOutcome{FlashOutcome::Cancelled{}}};
    for (bool flashing : {false, true})
      for (const auto& outcome : outcomes)
        check("status dot",
              StatusDot::ringColour(StatusDot::colourFor(flashing, outcome), w.palette()),
              w.palette().color(QPalette::Window), 3.0);
    window.reset();
  }
}

// The status dot is not read by its colour alone: two states of different colours differ in the
// mark drawn inside and in the words it is named by (also its tooltip).
TEST_F(WindowTest, TheStatusDotsStatesDifferInMarkAndWordsNotOnlyInColour) {
  LanguageOverride english(Language::en);
  MainWindow& w = open();
  StatusDot* dot = w.statusDot();
  struct Shown {
    QColor colour;
    StatusDot::Mark mark;
    QString name;
  };
  std::vector<Shown> states;
  const std::vector<std::optional<FlashOutcome>> outcomes = {
      std::nullopt, FlashOutcome{FlashOutcome::Success{}}, FlashOutcome{FlashOutcome::Failure{"r"}},
      FlashOutcome{FlashOutcome::Cancelled{}}};
  for (bool flashing : {false, true})
    for (const auto& outcome : outcomes) {
      dot->showState(flashing, outcome);
      states.push_back({dot->color(), dot->mark(), dot->accessibleName()});
      EXPECT_FALSE(dot->accessibleName().isEmpty());
      EXPECT_EQ(dot->toolTip(), dot->accessibleName());
    }
  for (std::size_t i = 0; i < states.size(); ++i)
    for (std::size_t j = i + 1; j < states.size(); ++j) {
      if (states[i].colour == states[j].colour) continue;
      EXPECT_NE(states[i].mark, states[j].mark) << states[i].name.toStdString();
      EXPECT_NE(states[i].name, states[j].name) << states[i].name.toStdString();
    }
}

} // namespace
} // namespace tarnwick::testing
