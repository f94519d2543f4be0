#include <gtest/gtest.h>

#include "FlashCore/VisibleText.hpp"

using namespace tarnwick;

TEST(VisibleText, ControlsAndDirectionMarksAreShownNotObeyed) {
  struct Case {
    std::string text;
    std::string shown;
  };
  const std::vector<Case> cases = {
      {"app.bin", "app.bin"},
      {"Größe ½ – ok", "Größe ½ – ok"},
      {"\x1B]0;owned\a", "\\x1B]0;owned\\x07"},
      {"\x1B[2J", "\\x1B[2J"},
      {"a\177b", "a\\x7Fb"},
      {"\u009B31m", "\\u009B31m"},
      {"evil\u202Egnp.exe", "evil\\u202Egnp.exe"},
      {"\u2066x\u2069", "\\u2066x\\u2069"},
      {"\u202A\u202D\u2067\u2068", "\\u202A\\u202D\\u2067\\u2068"},
      {"\u2028 and \u2065 stay", "\u2028 and \u2065 stay"},
      {"bad \xFF byte", "bad \uFFFD byte"},
      {"two\nlines", "two\\x0Alines"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(visible(c.text), c.shown) << c.text;
    EXPECT_EQ(visible(visible(c.text)), c.shown) << "escaping twice: " << c.text;
  }
  EXPECT_EQ(visibleLines("one\x1B\ntwo\n"), "one\\x1B\ntwo\n");
}
