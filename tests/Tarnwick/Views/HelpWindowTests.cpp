// The help window's search, as typed into its field.
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QStackedWidget>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextDocument>
#include <gtest/gtest.h>
#include <set>

#include "Assets/AssetsLookup.hpp"
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

  // Each topic shows a picture of its own, the same under any icon theme or none.
  std::set<qint64> pictures;
  for (int row = 0; row < help.topicList()->count(); ++row) {
    const QImage picture = help.topicList()->item(row)->icon().pixmap(20, 20).toImage();
    ASSERT_FALSE(picture.isNull()) << row;
    pictures.insert(qHashBits(picture.constBits(), static_cast<size_t>(picture.sizeInBytes())));
  }
  EXPECT_EQ(pictures.size(), 9u);
}

/// The pictures of the page shown: their formats, in order.
std::vector<QTextImageFormat> pictures(const HelpWindow& help) {
  std::vector<QTextImageFormat> found;
  for (QTextBlock block = help.page()->document()->begin(); block.isValid(); block = block.next())
    for (auto it = block.begin(); !it.atEnd(); ++it)
      if (it.fragment().charFormat().isImageFormat())
        found.push_back(it.fragment().charFormat().toImageFormat());
  return found;
}

TEST(HelpWindow, PicturesShowInTheReadersLanguageAsLargeAsTakenAndOpenWhole) {
  // Taken in each language; a language without its own pictures gets the English ones.
  EXPECT_EQ(assets::screenshotPath("window-empty", "de"),
            ":/tarnwick/screenshots/de/window-empty.png");
  EXPECT_EQ(assets::screenshotPath("window-empty.png", "it"),
            ":/tarnwick/screenshots/en/window-empty.png");
  EXPECT_TRUE(assets::screenshotPath("no-such-picture", "de").isEmpty());

  for (Language language : {Language::en, Language::de}) {
    SCOPED_TRACE(std::string(code(language)));
    LanguageOverride guard(language);
    HelpWindow help;
    help.resize(1300, 800);
    help.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&help));
    help.selectTopic("start");
    const std::vector<QTextImageFormat> shown = pictures(help);
    ASSERT_FALSE(shown.empty());
    const QString name = shown.front().name();
    const QImage image =
        help.page()->document()->resource(QTextDocument::ImageResource, QUrl(name)).value<QImage>();
    const QString file = name.mid(name.indexOf(u':') + 1);
    EXPECT_EQ(image, QImage(assets::screenshotPath(file, QString::fromLatin1(code(language)))));
    // On a page wide enough, as large as taken: its text reads as in the window.
    EXPECT_DOUBLE_EQ(shown.front().width(), image.width());
    EXPECT_EQ(shown.front().anchorHref(), name);

    // A click opens it at full size.
    help.showPicture(QUrl(name));
    ASSERT_NE(help.pictureViewer(), nullptr);
    auto* whole = help.pictureViewer()->findChild<QLabel*>("fullSizePicture");
    ASSERT_NE(whole, nullptr);
    EXPECT_EQ(whole->pixmap().size(), image.size());

    // A narrow page scales it down to fit.
    help.resize(700, 600);
    QCoreApplication::processEvents();
    const std::vector<QTextImageFormat> narrow = pictures(help);
    ASSERT_FALSE(narrow.empty());
    EXPECT_LE(narrow.front().width(), help.page()->viewport()->width());
    EXPECT_LT(narrow.front().width(), image.width());
  }
}

} // namespace
} // namespace tarnwick
