#include <gtest/gtest.h>

#include "FlashEngine/RunNarration.hpp"
#include "Localization/Language.hpp"
#include "Localization/RunTexts.hpp"

using namespace tarnwick;
using Kind = LogSegment::Kind;

TEST(RunNarration, EventsBecomeStageTextsAndLogLines) {
  LanguageOverride english(Language::en);
  NumericLocaleOverride c("C");
  using namespace FlashEvents;
  auto step = [](const FlashEvent& e, bool avr = false) { return RunNarration::narrate(e, avr); };

  EXPECT_EQ(step(Connecting{1, false}),
            (NarratedStep{"Connecting to the bootloader…",
                          LogSegment{Kind::meta, "Connecting to the bootloader…"}}));
  EXPECT_EQ(step(Connecting{3, false}),
            (NarratedStep{"Connecting to the bootloader… (attempt 3)", std::nullopt}));
  // In manual mode the instruction comes back every five attempts.
  EXPECT_EQ(step(Connecting{1, true}).stage, "Hold BOOT and briefly press RESET…");
  EXPECT_TRUE(step(Connecting{6, true}).line);
  EXPECT_FALSE(step(Connecting{5, true}).line);
  EXPECT_FALSE(step(Connecting{6, false}).line);

  EXPECT_EQ(step(Connected{"ESP32", "24:0A:C4:12:34:56"}).line,
            (LogSegment{Kind::response, "Chip: ESP32 · MAC 24:0A:C4:12:34:56"}));
  EXPECT_EQ(step(Connected{"ATmega328P", std::nullopt}).line->text, "Chip: ATmega328P");
  EXPECT_EQ(step(PortChanged{"/dev/ttyACM1"}).line->text, "Bootloader on ttyACM1");
  EXPECT_EQ(step(BaudRate{460800}).line->text, "Speed 460800 baud");
  EXPECT_EQ(
      step(Writing{"app.bin", 0x10000, 1024 * 1024}),
      (NarratedStep{"Writing app.bin…", LogSegment{Kind::request, "→ app.bin to 0x10000 (1 MB)"}}));
  EXPECT_EQ(step(Writing{"Blink.hex", 0, 2000}, true).line->text, "→ Blink.hex (2 KB)");
  EXPECT_EQ(step(Written{"app.bin", 2.04}).line->text, "← app.bin written in 2.0 s");
  EXPECT_EQ(step(Verifying{"app.bin"}), (NarratedStep{"Verifying app.bin…", std::nullopt}));
  EXPECT_EQ(step(Verified{"app.bin"}).line, (LogSegment{Kind::response, "✓ app.bin verified"}));
  EXPECT_EQ(step(Resetting{}), (NarratedStep{"Restarting the board…", std::nullopt}));
  EXPECT_EQ(step(Progress{1, 2}), NarratedStep{});
  EXPECT_EQ(step(LinesUnconfirmed{}),
            (NarratedStep{std::nullopt,
                          LogSegment{Kind::meta, "The serial server does not confirm DTR/RTS "
                                                 "changes; they are sent without waiting for it."}}));

  EXPECT_EQ(RunNarration::opening("", "ttyUSB0").text, "--- Flashing New product on ttyUSB0 ---");
  EXPECT_EQ(RunNarration::succeeded(FlashSummary{"ESP32", std::nullopt, 1, 3.44, "p"}),
            (NarratedStep{"Done", LogSegment{Kind::system, "--- Done in 3.4 s ---"}}));
  EXPECT_EQ(step(Connected{"ESP8266", std::nullopt}).note->text,
            "The ESP8266 ROM cannot verify (its bootloader checks every block) and flashes at "
            "115200 baud.");
  EXPECT_EQ(RunNarration::failed("Stopped.", true),
            (NarratedStep{
                "Stopped", LogSegment{Kind::warning, "✕ Stopped."},
                LogSegment{Kind::warning, "The board was restarted and is only partly written."}}));

  // The AVR loader connects after the write began; the first progress shows the write again.
  RunNarrator avr(true);
  std::vector<std::optional<std::string>> stages;
  for (FlashEvent e : std::vector<FlashEvent>{Writing{"Blink.hex", 0, 2000}, Connecting{1, false},
                                              Progress{0, 4000}, Progress{1, 4000}})
    stages.push_back(avr.narrate(e).stage);
  EXPECT_EQ(stages, (std::vector<std::optional<std::string>>{"Writing Blink.hex…",
                                                             "Connecting to the bootloader…",
                                                             "Writing Blink.hex…", std::nullopt}));
  EXPECT_EQ(RunNarration::failed("Stopped.", true, false).note->text,
            "It was stopped before the board answered: nothing was written.");
  EXPECT_EQ(RunNarration::failed("No answer.", false).line,
            (LogSegment{Kind::error, "✕ No answer."}));

  LanguageOverride german(Language::de);
  NumericLocaleOverride germany("de_DE.UTF-8");
  EXPECT_EQ(RunNarration::succeeded(FlashSummary{"ESP32", std::nullopt, 1, 3.44, "p"}).line->text,
            "--- Fertig in 3,4 s ---");
}

TEST(RunNarration, NamesFromProductsAndDevicesAreShownNotObeyed) {
  LanguageOverride english(Language::en);
  using namespace FlashEvents;
  const std::string hostile = "a\x1B]0;owned\a\u202Egnp.bin";
  const std::string shown = "a\\x1B]0;owned\\x07\\u202Egnp.bin";
  RunNarrator avr(true);
  avr.narrate(Writing{hostile, 0, 10});
  const std::vector<std::pair<const char*, NarratedStep>> steps = {
      {"writing", RunNarration::narrate(Writing{hostile, 0x10000, 10}, false)},
      {"written", RunNarration::narrate(Written{hostile, 1.0}, false)},
      {"verifying", RunNarration::narrate(Verifying{hostile}, false)},
      {"verified", RunNarration::narrate(Verified{hostile}, false)},
      {"chip", RunNarration::narrate(Connected{hostile, std::nullopt}, false)},
      {"port", RunNarration::narrate(PortChanged{"/dev/" + hostile}, false)},
      {"AVR write shown again", avr.narrate(Progress{1, 10})},
      {"opening", {std::nullopt, RunNarration::opening(hostile, hostile)}},
      {"failure", RunNarration::failed("No answer from " + hostile + ".\nCheck it.", false)},
  };
  for (const auto& [what, step] : steps) {
    SCOPED_TRACE(what);
    const std::string text = step.stage.value_or("") + "|" + (step.line ? step.line->text : "");
    EXPECT_NE(text.find(shown), std::string::npos) << text;
    EXPECT_EQ(text.find_first_of("\x1B\a"), std::string::npos) << text;
    EXPECT_EQ(text.find("\u202E"), std::string::npos) << text;
  }
  // A message of several lines keeps its line breaks.
  EXPECT_EQ(RunNarration::failed("one\ntwo", false).line->text, "✕ one\ntwo");
}
