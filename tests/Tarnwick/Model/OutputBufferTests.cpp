#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTextBlock>
#include <QTextDocument>
#include <gtest/gtest.h>

#include <memory>

#include "Tarnwick/Model/Colours.hpp"
#include "Tarnwick/Model/OutputBuffer.hpp"

using namespace tarnwick;
using Kind = LogSegment::Kind;

namespace {

constexpr Kind allKinds[] = {Kind::text,     Kind::timestamp, Kind::meta,  Kind::request,
                             Kind::response, Kind::warning,   Kind::error, Kind::system};

// The format of the text at `position` (the character just after it).
QTextCharFormat formatAt(QTextDocument* document, int position) {
  QTextCursor cursor(document);
  cursor.setPosition(position + 1);
  return cursor.charFormat();
}

// Made on first use, once the application (whose palette is the light one) exists.
const QPalette& light() {
  static const QPalette palette = QGuiApplication::palette();
  return palette;
}
const QPalette& dark() {
  static const QPalette palette = darkPalette();
  return palette;
}

// Restores the application palette even when an assertion fails half way.
struct PaletteGuard {
  QPalette saved = QGuiApplication::palette();
  ~PaletteGuard() { QGuiApplication::setPalette(saved); }
};

} // namespace

TEST(OutputBuffer, EachKindHasItsColourAndFont) {
  PaletteGuard guard;
  QGuiApplication::setPalette(light());
  OutputBuffer buffer;
  EXPECT_TRUE(buffer.autoscroll());
  EXPECT_EQ(buffer.maxCharacters(), 2'000'000);
  EXPECT_EQ(buffer.trimTarget(), 1'500'000);

  buffer.append(
      {{Kind::timestamp, "12:00:01.250  "}, {Kind::request, "→ app.bin to 0x10000 (1 MB)"}});
  EXPECT_EQ(buffer.plainText(), "12:00:01.250  → app.bin to 0x10000 (1 MB)\n");
  QTextDocument* document = buffer.storage();
  EXPECT_EQ(formatAt(document, 0).foreground().color(), logColour(Kind::timestamp, light()));
  EXPECT_EQ(formatAt(document, 14).foreground().color(), logColour(Kind::request, light()));

  buffer.clear();
  for (Kind kind : allKinds)
    buffer.append({{kind, "x"}});
  QTextBlock block = document->begin();
  for (Kind kind : allKinds) {
    QTextCharFormat format = formatAt(document, block.position());
    EXPECT_EQ(format.foreground().color(), logColour(kind, light())) << int(kind);
    QFont font = format.font();
    // What the program asks for: the system's fixed font. Whether fontconfig's pick for it
    // reports itself as fixed-pitch depends on the fonts installed, not on the program.
    EXPECT_EQ(font.family(), QFontDatabase::systemFont(QFontDatabase::FixedFont).family())
        << int(kind);
    EXPECT_DOUBLE_EQ(font.pointSizeF(), kind == Kind::system ? 11 : 12) << int(kind);
    EXPECT_EQ(font.weight(), kind == Kind::system ? QFont::Medium : QFont::Normal) << int(kind);
    block = block.next();
  }

  // Plain and answered text wear the palette's text colour; the others stand apart from it (how
  // well they read on the window's backgrounds is checked with the window's other colours).
  for (const QPalette& palette : {light(), dark()}) {
    const QColor text = palette.color(QPalette::Text);
    EXPECT_EQ(logColour(Kind::text, palette), text);
    EXPECT_EQ(logColour(Kind::response, palette), text);
    for (Kind kind :
         {Kind::timestamp, Kind::meta, Kind::request, Kind::warning, Kind::error, Kind::system})
      EXPECT_NE(logColour(kind, palette), text) << int(kind);
    // Secondary text is the stronger of the two faint ones.
    EXPECT_GT(contrastRatio(logColour(Kind::timestamp, palette), palette.color(QPalette::Base)),
              contrastRatio(logColour(Kind::meta, palette), palette.color(QPalette::Base)));
  }
}

TEST(OutputBuffer, OneEditPerLineAndSizesInUTF16Units) {
  OutputBuffer buffer(20, 10);
  // A view lays the document out; the layout is told of each edit batch once.
  buffer.storage()->documentLayout();
  QSignalSpy changes(buffer.storage(), &QTextDocument::contentsChange);
  buffer.append({{Kind::meta, "a"}, {Kind::text, "b"}, {Kind::response, "c"}});
  EXPECT_EQ(changes.count(), 1);
  // One character outside the basic plane counts twice, as the limits are counted.
  buffer.append({{Kind::text, "\xF0\x9F\x98\x80"}});
  EXPECT_EQ(buffer.size(), 4 + 3);
  EXPECT_EQ(buffer.plainText(), QString::fromUtf8("abc\n\xF0\x9F\x98\x80\n"));
  // An append that trims is still one batch.
  buffer.append({{Kind::text, "0123456789abcd"}});
  EXPECT_EQ(buffer.plainText(), "0123456789abcd\n");
  EXPECT_EQ(changes.count(), 3);
  buffer.clear();
  EXPECT_EQ(buffer.plainText(), "");
  EXPECT_EQ(buffer.size(), 0);
  buffer.append({{Kind::error, "✕ Stopped."}});
  EXPECT_EQ(buffer.plainText(), "✕ Stopped.\n");
}

// Errors and warnings are not told by colour alone: a line without a mark of its own gets one,
// after its timestamp; one marked anywhere (a board's line in the station) keeps its own.
TEST(OutputBuffer, ErrorAndWarningLinesCarryAMark) {
  struct Case {
    std::vector<LogSegment> line;
    const char* shown;
  };
  const Case cases[] = {
      {{{Kind::error, "The record file cannot be written."}},
       "✕ The record file cannot be written."},
      {{{Kind::warning, "The board is only partly written."}},
       "⚠ The board is only partly written."},
      {{{Kind::timestamp, "09:00:00.000  "}, {Kind::error, "No answer."}},
       "09:00:00.000  ✕ No answer."},
      {{{Kind::error, "✕ No answer."}}, "✕ No answer."},
      {{{Kind::warning, "✕ Stopped."}}, "✕ Stopped."},
      {{{Kind::error, "ttyUSB0: ✕ No answer."}}, "ttyUSB0: ✕ No answer."},
      {{{Kind::meta, "Connecting…"}}, "Connecting…"},
      {{{Kind::response, "✓ app.bin verified"}}, "✓ app.bin verified"},
  };
  for (const Case& each : cases) {
    OutputBuffer buffer;
    buffer.append(each.line);
    EXPECT_EQ(buffer.plainText(), QString::fromUtf8(each.shown) + u'\n');
  }
}

TEST(OutputBuffer, TrimsToTheTargetAtALineStart) {
  // Small limits walk every cut position; the real ones check the numbers the model uses.
  struct Case {
    qsizetype max, target;
    int lines;
  };
  for (Case c : {Case{100, 60, 400}, Case{1000, 1, 300},
                 Case{OutputBuffer::defaultMaxCharacters, OutputBuffer::defaultTrimTarget, 1200}}) {
    OutputBuffer buffer(c.max, c.target);
    QString everything;
    bool trimmed = false;
    for (int i = 0; i < c.lines; ++i) {
      // Line lengths vary so that the cut point falls everywhere inside a line.
      const int width = c.max > 10'000 ? 1999 + i % 7 : 3 + (i * 7) % 23;
      std::string text =
          std::to_string(i) + ":" + std::string(static_cast<std::size_t>(width), 'x');
      const qsizetype before = buffer.size();
      buffer.append({{Kind::timestamp, "t  "}, {Kind::text, text}});
      everything += QString::fromStdString("t  " + text + "\n");
      ASSERT_LE(buffer.size(), c.max);
      // Compare the whole text only where it can have changed shape: after a cut, and at the end.
      if (buffer.size() == before + qsizetype(text.size()) + 4 && i + 1 < c.lines) continue;
      const QString kept = buffer.plainText();
      ASSERT_TRUE(everything.endsWith(kept)) << i;
      if (kept.size() < everything.size()) {
        const qsizetype start = everything.size() - kept.size();
        ASSERT_EQ(everything[start - 1], '\n') << i;
        if (!trimmed) {
          // The first trim falls back to the target, not just below the limit; a target smaller
          // than a line still keeps the newest line whole.
          EXPECT_LE(kept.size(), std::max(c.target, qsizetype(text.size()) + 4));
          trimmed = true;
        }
      }
    }
    EXPECT_TRUE(trimmed) << c.max;
    // The kept lines still carry their styles.
    EXPECT_EQ(formatAt(buffer.storage(), 0).property(QTextFormat::UserProperty + 1).toInt(),
              int(Kind::timestamp));
  }
}

TEST(OutputBuffer, ViewAttachedLateShowsEverythingAndScrollsWhenAsked) {
  OutputBuffer buffer;
  buffer.append({{Kind::system, "--- Flashing Lamp on ttyUSB0 ---"}});
  auto view = std::make_unique<QObject>();
  QTextDocument* shown = nullptr;
  int scrolls = 0;
  buffer.attach(view.get(), {[&](QTextDocument* storage) { shown = storage; }, [&] { ++scrolls; }});
  EXPECT_EQ(shown, buffer.storage());
  EXPECT_EQ(shown->toPlainText(), "--- Flashing Lamp on ttyUSB0 ---\n");
  EXPECT_EQ(buffer.textView(), view.get());

  const int before = scrolls;
  buffer.append({{Kind::meta, "Connecting to the bootloader…"}});
  EXPECT_EQ(scrolls, before + 1);
  buffer.setAutoscroll(false);
  buffer.append({{Kind::meta, "Speed 460800 baud"}});
  EXPECT_EQ(scrolls, before + 1);
  buffer.setAutoscroll(true);

  // A view that is gone is no longer scrolled; the text stays for the next one.
  view.reset();
  EXPECT_EQ(buffer.textView(), nullptr);
  buffer.append({{Kind::response, "✓ app.bin verified"}});
  EXPECT_EQ(scrolls, before + 1);
  EXPECT_TRUE(buffer.plainText().endsWith("✓ app.bin verified\n"));
}

TEST(OutputBuffer, FollowsAPaletteChange) {
  PaletteGuard guard;
  QGuiApplication::setPalette(light());
  OutputBuffer buffer;
  buffer.append({{Kind::error, "✕ No answer"}});
  buffer.append({{Kind::timestamp, "09:00:00.000  "}, {Kind::system, "--- Done in 3.4 s ---"}});
  QTextDocument* document = buffer.storage();
  const int second = document->begin().next().position();
  ASSERT_EQ(formatAt(document, 0).foreground().color(), logColour(Kind::error, light()));

  QGuiApplication::setPalette(dark());
  EXPECT_EQ(formatAt(document, 0).foreground().color(), logColour(Kind::error, dark()));
  EXPECT_EQ(formatAt(document, second).foreground().color(), logColour(Kind::timestamp, dark()));
  const QTextCharFormat system = formatAt(document, second + 14);
  EXPECT_EQ(system.foreground().color(), logColour(Kind::system, dark()));
  EXPECT_EQ(system.font().weight(), QFont::Medium);
  // New lines take the new colours as well.
  buffer.append({{Kind::warning, "✕ Stopped."}});
  EXPECT_EQ(formatAt(document, document->lastBlock().previous().position()).foreground().color(),
            logColour(Kind::warning, dark()));
}
