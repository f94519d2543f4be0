// Finding text in the log as a user does: Ctrl+F, typing, Return and Shift+Return, F3, lines that
// arrive while the bar is open, and Escape.
#include <QLabel>
#include <QLineEdit>
#include <QTextEdit>

#include "Localization/Language.hpp"
#include "Tarnwick/Views/LogFindBar.hpp"
#include "Tarnwick/Views/LogView.hpp"
#include "Tarnwick/Views/WindowFixture.hpp"

namespace tarnwick::testing {
namespace {

TEST_F(WindowTest, TheLogFindBarHighlightsEveryMatchStepsThroughThemAndFollowsNewLines) {
  LanguageOverride english(Language::en);
  MainWindow& w = open();
  auto* log = w.findChild<LogView*>();
  for (const char* line : {"Connecting to the bootloader…", "→ app.bin to 0x10000", "Chip: ESP32",
                           "← APP.bin written in 1.2 s"})
    model->appendLog({{LogSegment::Kind::text, line}});
  ASSERT_FALSE(w.logShown());

  QTest::keyClick(&w, Qt::Key_F, Qt::ControlModifier);
  LogFindBar* bar = w.findBar();
  auto count = [&] { return bar->countLabel()->text().toStdString(); };
  ASSERT_TRUE(bar->isVisible());
  EXPECT_TRUE(w.logShown());
  EXPECT_TRUE(bar->field()->hasFocus());

  // Incremental and regardless of case; the shown match is where the log's caret is.
  QTest::keyClicks(bar->field(), "app");
  EXPECT_EQ(bar->matchCount(), 2);
  EXPECT_EQ(log->extraSelections().size(), 2);
  EXPECT_EQ(count(), "1 of 2");
  const int first = bar->currentPosition();
  EXPECT_EQ(log->textCursor().position(), first);
  QTest::keyClicks(bar->field(), ".bin w");
  EXPECT_EQ(count(), "1 of 1");
  EXPECT_GT(bar->currentPosition(), first);
  // Taking letters back keeps the match being read.
  for (int i = 0; i < 6; ++i)
    QTest::keyClick(bar->field(), Qt::Key_Backspace);
  EXPECT_EQ(count(), "2 of 2");

  struct Step {
    const char* what;
    std::function<void()> press;
    std::string count;
  };
  const std::vector<Step> steps = {
      {"Return wraps", [&] { QTest::keyClick(bar->field(), Qt::Key_Return); }, "1 of 2"},
      {"Return", [&] { QTest::keyClick(bar->field(), Qt::Key_Return); }, "2 of 2"},
      {"Shift+Return", [&] { QTest::keyClick(bar->field(), Qt::Key_Return, Qt::ShiftModifier); },
       "1 of 2"},
      {"Shift+F3 wraps back", [&] { QTest::keyClick(&w, Qt::Key_F3, Qt::ShiftModifier); },
       "2 of 2"},
      {"F3 wraps", [&] { QTest::keyClick(&w, Qt::Key_F3); }, "1 of 2"},
  };
  for (const Step& step : steps) {
    step.press();
    EXPECT_EQ(count(), step.count) << step.what;
  }

  // A line that arrives is searched too; the match being read stays the one shown.
  const int shown = bar->currentPosition();
  model->appendLog({{LogSegment::Kind::text, "✓ app.bin verified"}});
  ASSERT_TRUE(QTest::qWaitFor([&] { return bar->matchCount() == 3; }, 3000));
  EXPECT_EQ(log->extraSelections().size(), 3);
  EXPECT_EQ(count(), "1 of 3");
  EXPECT_EQ(bar->currentPosition(), shown);

  QTest::keyClicks(bar->field(), "xyz");
  EXPECT_EQ(count(), "No matches");
  EXPECT_TRUE(log->extraSelections().isEmpty());

  QTest::keyClick(bar->field(), Qt::Key_Escape);
  EXPECT_FALSE(bar->isVisible());
  EXPECT_TRUE(log->extraSelections().isEmpty());
}

} // namespace
} // namespace tarnwick::testing
