#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "Localization/Help.hpp"
#include "Localization/Language.hpp"

using namespace tarnwick;
namespace Help = tarnwick::L10n::Help;

namespace {

std::vector<HelpTopic> topicsIn(Language language) {
  LanguageOverride override(language);
  return Help::topics();
}

// Calls `visit` with every text a reader sees in a topic, title included.
void forEachText(const HelpTopic& topic, const std::function<void(const std::string&)>& visit) {
  visit(topic.title);
  for (const HelpBlock& block : topic.blocks) {
    if (const auto* list = std::get_if<HelpBlock::bullets>(&block.value)) {
      for (const std::string& item : list->items)
        visit(item);
    } else if (const auto* table = std::get_if<HelpBlock::table>(&block.value)) {
      for (const HelpRow& row : table->rows) {
        visit(row.key);
        visit(row.value);
      }
    } else {
      visit(block.text());
    }
  }
}

std::size_t count(const std::string& text, std::string_view what) {
  std::size_t found = 0;
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size()))
    ++found;
  return found;
}

} // namespace

TEST(Help, TopicsKeepIdsSymbolsAndShapeInEveryLanguage) {
  const std::vector<HelpTopic> english = topicsIn(Language::en);
  const std::vector<std::pair<std::string, std::string>> expected = {
      {"start", "play.circle"},
      {"products", "shippingbox"},
      {"esp", "cpu"},
      {"arduino", "memorychip"},
      {"production", "square.stack.3d.up"},
      {"network", "network"},
      {"troubleshooting", "wrench.and.screwdriver"},
      {"privacy", "lock.shield"},
      {"shortcuts", "keyboard"}};
  ASSERT_EQ(english.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(english[i].id, expected[i].first);
    EXPECT_EQ(english[i].symbol, expected[i].second);
    EXPECT_FALSE(english[i].blocks.empty()) << english[i].id;
  }
  EXPECT_EQ(english[0].title, "Getting started");
  EXPECT_EQ(english[5].title, "Boards on other computers");
  EXPECT_EQ(english[7].title, "Privacy and security");

  for (Language language : allLanguages) {
    SCOPED_TRACE(std::string(code(language)));
    const std::vector<HelpTopic> topics = topicsIn(language);
    ASSERT_EQ(topics.size(), english.size());
    for (std::size_t t = 0; t < topics.size(); ++t) {
      const HelpTopic& topic = topics[t];
      const HelpTopic& original = english[t];
      SCOPED_TRACE(topic.id);
      EXPECT_EQ(topic.id, original.id);
      EXPECT_EQ(topic.symbol, original.symbol);
      ASSERT_EQ(topic.blocks.size(), original.blocks.size());
      for (std::size_t b = 0; b < topic.blocks.size(); ++b) {
        const HelpBlock::Kind& kind = topic.blocks[b].value;
        const HelpBlock::Kind& originalKind = original.blocks[b].value;
        ASSERT_EQ(kind.index(), originalKind.index()) << "block " << b;
        if (const auto* list = std::get_if<HelpBlock::bullets>(&kind)) {
          EXPECT_EQ(list->items.size(), std::get<HelpBlock::bullets>(originalKind).items.size());
        }
        if (const auto* table = std::get_if<HelpBlock::table>(&kind)) {
          EXPECT_EQ(table->rows.size(), std::get<HelpBlock::table>(originalKind).rows.size());
        }
        if (const auto* shot = std::get_if<HelpBlock::screenshot>(&kind)) {
          EXPECT_EQ(shot->name, std::get<HelpBlock::screenshot>(originalKind).name);
        }
        // Sentences are translated; names, keys and addresses may read the same.
        if (language != Language::en && (std::holds_alternative<HelpBlock::paragraph>(kind) ||
                                         std::holds_alternative<HelpBlock::tip>(kind))) {
          EXPECT_NE(topic.blocks[b].text(), original.blocks[b].text()) << "block " << b;
        }
      }
      forEachText(topic, [&](const std::string& text) {
        EXPECT_FALSE(text.empty());
        // Unbalanced emphasis would spill bold or code over the rest of the text.
        EXPECT_EQ(count(text, "**") % 2, 0u) << text;
        EXPECT_EQ((count(text, "`") - 2 * count(text, "``")) % 2, 0u) << text;
        if (language == Language::fr) {
          for (std::string_view loose : {" :", " ;", " ?", " !", "« ", " »"}) {
            EXPECT_EQ(text.find(loose), std::string::npos) << "no-break space missing: " << text;
          }
        }
      });
    }
  }
}

TEST(Help, WindowTextsIconsAndScreenshots) {
  const std::vector<std::function<std::string()>> texts = {
      Help::windowTitle, Help::searchPlaceholder, Help::noTopicsFound, Help::tipLabel,
      Help::fullSizeHint};
  std::vector<std::string> english;
  {
    LanguageOverride override(Language::en);
    for (const auto& text : texts)
      english.push_back(text());
  }
  EXPECT_EQ(english, (std::vector<std::string>{"Tarnwick &Help", "Search help", "No topics found",
                                               "Tip", "Click to see the picture at full size"}));
  for (Language language : allLanguages)
    for (std::size_t i = 0; i < texts.size(); ++i) {
      LanguageOverride override(language);
      EXPECT_FALSE(texts[i]().empty());
      // "Tip" is also Dutch; every other text reads differently outside English.
      if (language != Language::en && !(language == Language::nl && i == 3)) {
        EXPECT_NE(texts[i](), english[i]) << code(language);
      }
    }

  // Every topic has an icon of its own: the generic fallback means a symbol was misspelt.
  for (const HelpTopic& topic : topicsIn(Language::en)) {
    const HelpIcon icon = Help::icon(topic.symbol);
    EXPECT_NE(icon.name, Help::icon("no.such.symbol").name) << topic.symbol;
    EXPECT_EQ(icon.own, icon.name.starts_with("tarnwick-")) << topic.symbol;
  }

  // The screenshots the window captures; the help names each once, whatever the language.
  const std::vector<std::string> names = Help::screenshotNames();
  EXPECT_EQ(names, (std::vector<std::string>{
                       "window-empty.png", "window-product.png", "window-flashing.png",
                       "window-success.png", "settings-esp.png", "settings-arduino.png",
                       "station-running.png", "station-finished.png", "network-port.png",
                       "window-failure.png", "help.png"}));
}

TEST(Help, BlockTextJoinsEverythingTheReaderSees) {
  EXPECT_EQ((HelpBlock{HelpBlock::bullets{{"one", "two"}}}.text()), "one two");
  EXPECT_EQ((HelpBlock{HelpBlock::table{{{"Ctrl+R", "Flash"}, {"F1", "Help"}}}}.text()),
            "Ctrl+R Flash F1 Help");
  EXPECT_EQ((HelpBlock{HelpBlock::screenshot{"help.png", "The help"}}.text()), "The help");
  EXPECT_EQ((HelpBlock{HelpBlock::tip{"Save it"}}.text()), "Save it");
}
