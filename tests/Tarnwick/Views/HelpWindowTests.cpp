// The help window's search, as typed into its field.
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QStackedWidget>
#include <QTest>
#include <QTextBrowser>
#include <gtest/gtest.h>

#include "Localization/Language.hpp"
#include "Tarnwick/Views/HelpWindow.hpp"

namespace tarnwick {
namespace {

QStringList listed(const HelpWindow& help) {
  QStringList titles;
  for (int row = 0; row < help.topicList()->count(); ++row)
    titles << help.topicList()->item(row)->text();
  return titles;
}

TEST(HelpWindow, SearchListsMatchingTopicsKeepsTheSelectionAndSaysWhenNoneMatch) {
  LanguageOverride german(Language::de);
  HelpWindow help;
  help.show();
  ASSERT_EQ(help.topicList()->count(), 9);
  EXPECT_EQ(help.selectedID(), "start");
  EXPECT_TRUE(help.page()->toPlainText().startsWith(help.topicList()->item(0)->text()));

  help.selectTopic("arduino");
  QString arduinoPage = help.page()->toPlainText();
  help.selectTopic("no-such-topic"); // ignored, not chased forever
  EXPECT_EQ(help.selectedID(), "arduino");
  QTest::keyClicks(help.searchField(), "  caterina ");
  QStringList found = listed(help);
  ASSERT_FALSE(found.isEmpty());
  EXPECT_LT(found.size(), 9);
  EXPECT_TRUE(found.contains("Arduino (AVR)"));
  EXPECT_EQ(help.selectedID(), "arduino"); // still listed, still shown
  EXPECT_EQ(help.page()->toPlainText(), arduinoPage);

  QTest::keyClicks(help.searchField(), "xyzzy");
  EXPECT_EQ(help.topicList()->count(), 0);
  EXPECT_FALSE(help.topicList()->isVisible());
  auto* nothing = help.findChild<QStackedWidget*>()->currentWidget();
  EXPECT_EQ(qobject_cast<QLabel*>(nothing)->text(), "Keine Themen gefunden");
  EXPECT_TRUE(help.selectedID().empty());

  help.searchField()->clear();
  EXPECT_EQ(help.topicList()->count(), 9);
  EXPECT_EQ(help.selectedID(), "start");
}

} // namespace
} // namespace tarnwick
