// What happens around the window: where drops go, the hand-over from a second start, and the
// log's shortcuts.
#include <QSettings>
#include <QTest>
#include <fstream>

#include "FlashCore/ProductPackage.hpp"
#include "Localization/Language.hpp"
#include "Simulator/SimulatedESP.hpp"
#include "Tarnwick/Model/ModelFixture.hpp"
#include "Tarnwick/Model/OutputBuffer.hpp"
#include "Tarnwick/Views/FileListPanel.hpp"
#include "Tarnwick/Views/MainWindow.hpp"
#include "Tarnwick/Views/TarnwickApp.hpp"

namespace tarnwick::testing {
namespace {

/// A model in a scratch folder, as the window tests use it.
class ApplicationTest : public ModelTest {};

TEST_F(ApplicationTest, DropsGoWhereTheirKindSays) {
  std::filesystem::create_directories(path("Lamp.twflash"));
  std::filesystem::create_directories(path("build"));
  std::ofstream(path("Sensor.TWFLASH")) << "zip";
  std::ofstream(path("app.bin")) << "bin";
  using Kind = DropAction::Kind;
  struct Case {
    std::vector<std::filesystem::path> dropped;
    Kind kind;
  };
  const std::vector<Case> cases = {
      {{}, Kind::none},
      {{path("Lamp.twflash")}, Kind::openProduct},   // a product in its folder form
      {{path("Sensor.TWFLASH")}, Kind::openProduct}, // the single file, any case
      {{path("build")}, Kind::importFolder},
      {{path("app.bin")}, Kind::addFiles},
      {{path("build"), path("app.bin")}, Kind::addFiles},
      {{path("Lamp.twflash"), path("app.bin")}, Kind::addFiles},
  };
  for (const Case& c : cases) {
    DropAction action = dropActionFor(c.dropped);
    EXPECT_EQ(action.kind, c.kind) << (c.dropped.empty() ? "" : c.dropped.front().string());
    if (c.kind != Kind::none) {
      EXPECT_EQ(action.locations, c.dropped);
    }
  }
}

TEST(TarnwickApp, ASecondStartHandsItsFilesToTheFirstAndEnds) {
  CommandLine first;
  TarnwickApp running(first);
  ASSERT_TRUE(running.claimInstance());

  CommandLine second;
  second.files = {"/tmp/Lamp.twflash", "relative.twflash"};
  TarnwickApp late(second);
  EXPECT_FALSE(late.claimInstance());
  ASSERT_TRUE(QTest::qWaitFor([&] { return !running.pendingFiles().isEmpty(); }, 5000));
  // Without a model yet the files wait; paths arrive absolute, in their order.
  ASSERT_EQ(running.pendingFiles().size(), 2);
  EXPECT_EQ(running.pendingFiles()[0], "/tmp/Lamp.twflash");
  EXPECT_TRUE(running.pendingFiles()[1].endsWith("/relative.twflash"));
  EXPECT_TRUE(running.pendingFiles()[1].startsWith('/'));
}

// A product double-clicked while a board is being flashed is not lost: the last one handed over
// opens when the run ends, after the usual question about unsaved changes.
TEST_F(ApplicationTest, AFileHandedOverDuringARunOpensWhenTheRunEnds) {
  LanguageOverride english(Language::en);
  simulator::SimulatedESP board;
  for (const char* name : {"Lamp", "Desk"}) {
    auto product = espProduct(ESPChip::esp32, 4096);
    product.product.name = name;
    ProductPackage::write({product.product, product.files}, path(std::string(name) + ".twflash"));
  }
  using Answer = FlasherDialogs::SaveChangesAnswer;
  struct Case {
    Answer answer;
    std::string opened;
  };
  for (const Case& c : {Case{Answer::dontSave, "Desk"}, Case{Answer::cancel, "Edited"}}) {
    SCOPED_TRACE(c.opened);
    TarnwickApp app(CommandLine{});
    app.start(modelOptions({board.path()}));
    FlasherModel& model = *app.model();
    ScriptedDialogs questions;
    questions.questionAnswers = {c.answer};
    model.setDialogs(&questions);
    auto edited = espProduct(ESPChip::esp32, 4096);
    edited.product.name = "Edited";
    load(model, edited);
    ASSERT_TRUE(model.hasUnsavedChanges());

    model.toggleFlash();
    ASSERT_TRUE(model.isFlashing());
    app.openFiles({QString::fromStdString(path("Lamp.twflash").string())});
    app.openFiles({QString::fromStdString(path("Desk.twflash").string())});
    EXPECT_EQ(model.product().name, "Edited");
    EXPECT_TRUE(model.output().plainText().contains("Desk.twflash opens when this run has "
                                                    "finished."));
    model.toggleFlash();
    ASSERT_TRUE(waitUntilIdle(model));
    ASSERT_TRUE(QTest::qWaitFor([&] { return app.waitingFile().isEmpty(); }, 5000));
    EXPECT_EQ(questions.questions, 1);
    EXPECT_EQ(model.product().name, c.opened);
  }
}

TEST_F(ApplicationTest, LogShortcutsShowTheLogAndClearItWithTheCounters) {
  LanguageOverride english(Language::en);
  auto model = makeModel();
  {
    MainWindow window(*model);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    ASSERT_FALSE(window.logShown());
    QTest::keyClick(&window, Qt::Key_L, Qt::ControlModifier);
    EXPECT_TRUE(window.logShown());
    EXPECT_TRUE(QSettings().value("showLog").toBool());

    // Saving is offered, from the File menu and from the log options alike, only when the log
    // holds something.
    auto saveCommands = [&] {
      std::vector<bool> enabled;
      for (QAction* action : window.findChildren<QAction*>())
        if (action->text() == "Save Log…" || action->text() == "Save…")
          enabled.push_back(action->isEnabled());
      return enabled;
    };
    EXPECT_EQ(saveCommands(), (std::vector<bool>{false, false}));
    model->appendLog({{LogSegment::Kind::text, "line"}});
    ASSERT_FALSE(model->outputIsEmpty());
    EXPECT_EQ(saveCommands(), (std::vector<bool>{true, true}));
    QTest::keyClick(&window, Qt::Key_K, Qt::ControlModifier);
    EXPECT_TRUE(model->outputIsEmpty());
    EXPECT_EQ(saveCommands(), (std::vector<bool>{false, false}));
    QTest::keyClick(&window, Qt::Key_L, Qt::ControlModifier);
    EXPECT_FALSE(window.logShown());
  }
  // The choice is remembered for the next window.
  QSettings().setValue("showLog", true);
  MainWindow again(*model);
  EXPECT_TRUE(again.logShown());
}

} // namespace
} // namespace tarnwick::testing
