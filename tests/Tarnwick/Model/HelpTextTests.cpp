#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>
#include <gtest/gtest.h>

#include "Localization/Help.hpp"
#include "Localization/Language.hpp"
#include "Tarnwick/Model/HelpText.hpp"

using namespace tarnwick;

namespace {

struct TextRun {
  QString text;
  bool bold;
  bool code;
};

// The runs of differently formatted text that a fragment puts into a document.
std::vector<TextRun> runsOf(const QTextDocumentFragment& fragment) {
  QTextDocument document;
  QTextCursor(&document).insertFragment(fragment);
  std::vector<TextRun> runs;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
    for (auto it = block.begin(); !it.atEnd(); ++it) {
      const QTextCharFormat format = it.fragment().charFormat();
      runs.push_back(
          {it.fragment().text(), format.fontWeight() >= QFont::Bold,
           format.fontFixedPitch() || format.fontFamilies().toStringList().contains("monospace")});
    }
  return runs;
}

HelpTopic topic(std::string id, std::string title, std::vector<HelpBlock> blocks) {
  return {std::move(id), std::move(title), "keyboard", std::move(blocks)};
}

} // namespace

TEST(HelpText, MarkdownEmphasisBecomesRichText) {
  const std::vector<TextRun> runs =
      runsOf(HelpText::fragment("Press **Flash** to write `firmware.bin`, <b>not</b> this."));
  ASSERT_EQ(runs.size(), 5u);
  EXPECT_EQ(runs[0].text, "Press ");
  EXPECT_FALSE(runs[0].bold || runs[0].code);
  EXPECT_EQ(runs[1].text, "Flash");
  EXPECT_TRUE(runs[1].bold);
  EXPECT_EQ(runs[3].text, "firmware.bin");
  EXPECT_TRUE(runs[3].code);
  // Markup inside a help text is shown as typed, never obeyed.
  EXPECT_EQ(runs[4].text, ", <b>not</b> this.");
  EXPECT_FALSE(runs[4].bold);

  EXPECT_EQ(HelpText::plainText("Hold **BOOT**, then `0x1000`."), "Hold BOOT, then 0x1000.");
  EXPECT_EQ(HelpText::plainText("Choose `.pio/build/<environment>`."),
            "Choose .pio/build/<environment>.");
  EXPECT_TRUE(HelpText::html("**bold**").contains("font-weight"));

  // Every text of the real help, in every language, leaves no emphasis mark unread: a mark that
  // Markdown does not take (a space inside it, a missing partner) would show up as asterisks.
  for (Language language : allLanguages) {
    LanguageOverride override(language);
    for (const HelpTopic& topic : L10n::Help::topics())
      for (const HelpBlock& block : topic.blocks) {
        const QString plain = HelpText::plainText(block.text());
        EXPECT_FALSE(plain.contains("**") || plain.contains('`'))
            << code(language) << " " << topic.id << ": " << plain.toStdString();
      }
  }
}

TEST(HelpText, SearchTrimsIgnoresCaseAndFollowsTheSelection) {
  const HelpText::Index index(
      {topic("start", "Getting started", {{HelpBlock::paragraph{"Press **Flash** now."}}}),
       topic("esp", "ESP32",
             {{HelpBlock::heading{"Reset"}},
              {HelpBlock::table{{{"Bootloader", "`0x1000` on ÄLTEREN chips"}}}}}),
       topic("shortcuts", "Keys", {{HelpBlock::screenshot{"help.png", "The help window"}}})},
      QLocale(QLocale::German, QLocale::Germany));

  using Listed = std::vector<std::size_t>;
  EXPECT_EQ(index.search(""), (Listed{0, 1, 2}));
  EXPECT_EQ(index.search("  \t"), (Listed{0, 1, 2}));
  EXPECT_EQ(index.search("  flash NOW "), (Listed{0}));      // emphasis marks are not text
  EXPECT_EQ(index.search("0X1000 on älteren"), (Listed{1})); // beyond ASCII, too
  EXPECT_EQ(index.search("reset bootloader"), (Listed{1}));  // across blocks, joined by spaces
  EXPECT_EQ(index.search("help window"), (Listed{2}));       // screenshot captions count
  EXPECT_EQ(index.search("help.png"), (Listed{}));           // image file names do not
  EXPECT_EQ(index.search("esp32 reset"), (Listed{1}));       // the title comes first
  EXPECT_EQ(index.search("xyz"), (Listed{}));

  EXPECT_EQ(index.selection({0, 1, 2}, "esp"), "esp");
  EXPECT_EQ(index.selection({0, 2}, "esp"), "start");
  EXPECT_EQ(index.selection({}, "esp"), std::nullopt);

  // The user's locale decides what a capital letter means: a Turkish dotless I is not an i.
  const HelpText::Index turkish({topic("t", "istanbul", {})}, QLocale(QLocale::Turkish));
  EXPECT_EQ(turkish.search("İSTANBUL"), (Listed{0}));
  EXPECT_EQ(turkish.search("ISTANBUL"), (Listed{}));

  // The real topics, in every language: a topic is found by its own title in capitals.
  for (Language language : allLanguages) {
    LanguageOverride override(language);
    const HelpText::Index real(L10n::Help::topics());
    for (std::size_t i = 0; i < real.topics().size(); ++i) {
      const Listed found = real.search(QString::fromStdString(real.topics()[i].title).toUpper());
      EXPECT_NE(std::find(found.begin(), found.end(), i), found.end())
          << code(language) << " " << real.topics()[i].id;
    }
  }
}
