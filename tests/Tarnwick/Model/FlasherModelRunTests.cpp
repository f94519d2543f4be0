// Whole runs through the model against simulated boards on pseudo-terminals, and the automatic
// flashing of boards as they are plugged in.
#include <QRegularExpression>
#include <QSettings>
#include <QSignalSpy>
#include <fstream>

#include "FlashEngine/FlashEvent.hpp"
#include "Localization/Language.hpp"
#include "Localization/SimulatorTexts.hpp"
#include "ModelFixture.hpp"
#include "Simulator/SimulatedAVR.hpp"
#include "Simulator/SimulatedBoard.hpp"
#include "Simulator/SimulatedESP.hpp"
#include "Tarnwick/Model/OutputBuffer.hpp"
#include "support/TerminalProbe.hpp"

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace tarnwick::simulator;
using Kind = LogSegment::Kind;

namespace {

// Everything a run shows, as the views would see it.
struct RunRecording {
  explicit RunRecording(FlasherModel& model) {
    QObject::connect(&model, &FlasherModel::stageTextChanged,
                     [&] { stages.push_back(model.stageText().toStdString()); });
    QObject::connect(&model, &FlasherModel::progressChanged,
                     [&] { progress.emplace_back(model.progressDone(), model.progressTotal()); });
    QObject::connect(&model, &FlasherModel::logLineAppended, [&](const std::vector<LogSegment>& l) {
      LogSegment line{l.back().kind, {}};
      for (const auto& segment : l)
        (segment.kind == Kind::timestamp ? timestamps.emplace_back() : line.text) += segment.text;
      lines.push_back(line);
    });
  }
  bool hasLine(Kind kind, const std::string& start) const {
    return std::ranges::any_of(
        lines, [&](const LogSegment& l) { return l.kind == kind && l.text.starts_with(start); });
  }

  std::vector<std::string> stages;
  std::vector<std::pair<qint64, qint64>> progress;
  std::vector<LogSegment> lines;
  std::vector<std::string> timestamps;
};

SerialPortInfo usbPort(const std::string& path, int vendor = 0x1A86) {
  return {path, "USB Serial", vendor, 0x7523};
}

} // namespace

TEST_F(ModelTest, FlashesAnESP32AndAnUnoEndToEnd) {
  LanguageOverride english(Language::en);
  SimulatedESP esp;
  SimulatedAVR uno;
  auto model = makeModel({esp.path(), uno.path()});
  // The first test device is selected at start, and listed without a vendor id.
  EXPECT_EQ(model->selectedPath().toStdString(), esp.path());
  ASSERT_EQ(model->ports().size(), 2u);
  EXPECT_FALSE(model->ports()[0].vendorID);
  for (Language language : {Language::en, Language::nl, Language::de, Language::fr, Language::es}) {
    LanguageOverride override(language);
    QString label = model->portLabel(QString::fromStdString(esp.path()));
    EXPECT_TRUE(label.endsWith(QString::fromStdString(" (" + esp.path() + ")")));
    EXPECT_EQ(label.startsWith("Test device"), language == Language::en);
  }

  auto p = espProduct(ESPChip::esp32, 64 * 1024);
  load(*model, p);
  ASSERT_TRUE(model->canFlash());
  RunRecording run(*model);
  QSignalSpy states(model.get(), &FlasherModel::stateChanged);
  model->startFlash();
  EXPECT_TRUE(model->isFlashing());
  EXPECT_FALSE(model->canQuit());
  model->startFlash(); // a second start while running does nothing
  ASSERT_TRUE(waitUntilIdle(*model));
  EXPECT_EQ(states.count(), 2);

  ASSERT_TRUE(model->outcome());
  auto* success = std::get_if<FlashOutcome::Success>(&model->outcome()->value);
  ASSERT_TRUE(success);
  EXPECT_EQ(success->summary.chip, "ESP32");
  EXPECT_EQ(model->statistics(), (FlashStatistics{1, 0, success->summary.seconds}));
  EXPECT_EQ(sounds->played, std::vector<std::string>{"complete"});

  ASSERT_GE(run.stages.size(), 3u);
  EXPECT_EQ(run.stages.front(), "Connecting to the bootloader…");
  EXPECT_NE(std::ranges::find(run.stages, "Writing firmware.bin…"), run.stages.end());
  EXPECT_EQ(run.stages[run.stages.size() - 2], "Restarting the board…");
  EXPECT_EQ(run.stages.back(), "Done");

  EXPECT_EQ(run.lines.front(), (LogSegment{Kind::system, "--- Flashing Sensor on Test device (" +
                                                             esp.path() + ") ---"}));
  EXPECT_TRUE(run.hasLine(Kind::meta, "Connecting to the bootloader…"));
  EXPECT_TRUE(run.hasLine(Kind::response, "Chip: ESP32 · MAC "));
  EXPECT_TRUE(run.hasLine(Kind::request, "→ firmware.bin to 0x10000 ("));
  EXPECT_TRUE(run.hasLine(Kind::response, "← firmware.bin written in "));
  EXPECT_TRUE(run.hasLine(Kind::response, "✓ partitions.bin verified"));
  EXPECT_TRUE(run.hasLine(Kind::system, "--- Done in "));
  // Every line carries its time, "HH:mm:ss.zzz" and two spaces.
  EXPECT_EQ(run.timestamps.size(), run.lines.size());
  QRegularExpression clock("^\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d  $");
  for (const auto& stamp : run.timestamps)
    EXPECT_TRUE(clock.match(QString::fromStdString(stamp)).hasMatch());
  EXPECT_TRUE(
      model->output().plainText().endsWith(QString::fromStdString(run.lines.back().text + "\n")));
  EXPECT_FALSE(model->outputIsEmpty());
  // Progress starts at nothing and ends full.
  ASSERT_GE(run.progress.size(), 3u);
  EXPECT_EQ(run.progress.front().first, 0);
  EXPECT_EQ(run.progress.back().first, run.progress.back().second);
  EXPECT_DOUBLE_EQ(model->progressFraction(), 1.0);

  // The Uno, with the timestamps switched off: the sketch has no address.
  model->setShowTimestamps(false);
  model->setSelectedPath(QString::fromStdString(uno.path()));
  load(*model, avrProduct(AVRBoard::uno, 3000));
  RunRecording avrRun(*model);
  model->toggleFlash();
  ASSERT_TRUE(waitUntilIdle(*model));
  ASSERT_TRUE(model->outcome() &&
              std::holds_alternative<FlashOutcome::Success>(model->outcome()->value));
  EXPECT_EQ(model->statistics().flashed, 2);
  EXPECT_TRUE(avrRun.timestamps.empty());
  EXPECT_TRUE(avrRun.hasLine(Kind::request, "→ Blink.ino.hex ("));
  EXPECT_TRUE(avrRun.hasLine(Kind::response, "✓ Blink.ino.hex verified"));
  EXPECT_EQ(sounds->played, (std::vector<std::string>{"complete", "complete"}));
}

TEST_F(ModelTest, FailedAndCancelledRuns) {
  LanguageOverride english(Language::en);
  SimulatedESP board; // an ESP32 where the product wants an ESP32-S3
  SimulatedESPOptions mute;
  mute.silent = true;
  SimulatedESP silent(mute);
  auto model = makeModel({board.path(), silent.path()});
  load(*model, espProduct(ESPChip::esp32s3, 16 * 1024));

  RunRecording run(*model);
  model->startFlash();
  ASSERT_TRUE(waitUntilIdle(*model));
  ASSERT_TRUE(model->outcome());
  auto* failure = std::get_if<FlashOutcome::Failure>(&model->outcome()->value);
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->message, FlashError::wrongChip("ESP32", "ESP32-S3").message());
  EXPECT_EQ(model->stageText(), "Failed");
  EXPECT_EQ(run.lines.back(), (LogSegment{Kind::error, "✕ " + failure->message}));
  EXPECT_EQ(model->statistics(), (FlashStatistics{0, 1, std::nullopt}));
  EXPECT_EQ(sounds->played, std::vector<std::string>{"dialog-error"});
  EXPECT_TRUE(model->errorMessage().isEmpty()); // run failures are the outcome, never an alert

  // Without sounds a failure is silent.
  model->setPlaySounds(false);
  model->startFlash();
  ASSERT_TRUE(waitUntilIdle(*model));
  EXPECT_EQ(model->statistics().failed, 2);
  EXPECT_EQ(sounds->played.size(), 1u);

  // A board that never answers, stopped while connecting.
  model->setPlaySounds(true);
  model->setSelectedPath(QString::fromStdString(silent.path()));
  QSignalSpy lines(model.get(), &FlasherModel::logLineAppended);
  model->startFlash();
  ASSERT_TRUE(model->isFlashing());
  ASSERT_TRUE(QTest::qWaitFor([&] { return lines.count() >= 2; }, 5000)); // opening, connecting
  // While flashing, quitting is refused with the reason, and port lists change nothing else.
  EXPECT_FALSE(model->requestQuit());
  ASSERT_EQ(dialogs.alerts.size(), 1u);
  EXPECT_EQ(dialogs.alerts[0], model->quitRefusedText());
  model->portsChanged({usbPort("/dev/ttyUSB0")});
  EXPECT_EQ(model->selectedPath().toStdString(), silent.path());
  model->toggleFlash();
  EXPECT_TRUE(model->isFlashing()); // stopping is asynchronous
  ASSERT_TRUE(waitUntilIdle(*model, 5000));
  EXPECT_EQ(model->outcome(), FlashOutcome{FlashOutcome::Cancelled{}});
  EXPECT_EQ(model->stageText(), "Stopped");
  ASSERT_GE(run.lines.size(), 2u);
  EXPECT_EQ(run.lines[run.lines.size() - 2], (LogSegment{Kind::warning, "✕ Stopped."}));
  // The same note as on the command line; this board never answered, so nothing was written.
  EXPECT_EQ(run.lines.back().text, "It was stopped before the board answered: nothing was written.");
  EXPECT_EQ(model->statistics(), (FlashStatistics{0, 2, std::nullopt}));
  EXPECT_EQ(sounds->played.size(), 1u);

  // Clearing the log resets the counters too.
  model->clearLog();
  EXPECT_TRUE(model->outputIsEmpty());
  EXPECT_TRUE(model->output().plainText().isEmpty());
  EXPECT_EQ(model->statistics(), FlashStatistics{});
}

TEST_F(ModelTest, StartChecksAndTheUSBJTAGReset) {
  LanguageOverride english(Language::en);
  auto model = makeModel();
  model->startFlash();
  EXPECT_EQ(model->errorMessage(), "Select a serial port first.");
  model->setSelectedPath("/dev/ttyACM3");
  model->startFlash(); // the empty product has errors
  EXPECT_NE(model->errorMessage(), "Select a serial port first.");
  EXPECT_FALSE(model->errorMessage().isEmpty());
  EXPECT_FALSE(model->isFlashing());

  load(*model, espProduct(ESPChip::esp32s3, 16 * 1024));
  // No device is behind the path; the job is looked at before its failure arrives.
  for (int vendor : {FlasherModel::espressifVendorID, 0x1A86}) {
    model->portsChanged({usbPort("/dev/ttyACM3", vendor)});
    model->startFlash();
    ASSERT_TRUE(model->isFlashing());
    EXPECT_EQ(model->runTriesUSBJTAGFirst(), vendor == FlasherModel::espressifVendorID);
    ASSERT_TRUE(waitUntilIdle(*model));
  }
  // The real sound sink on a machine without sound: silence, no error.
  makeSystemSoundSink()->play(SoundSink::failureSound);
}

TEST_F(ModelTest, ProgressIsThrottledButEachFileEndShows) {
  SimulatedESPOptions mute;
  mute.silent = true;
  SimulatedESP silent(mute);
  // An interval longer than any machine has been up: "never published" must not be read as
  // the steady clock's zero, which is the boot time.
  for (double interval : {1e9, 0.0}) {
    progressInterval = interval;
    auto owned = makeModel({silent.path()});
    FlasherModel& model = *owned;
    load(model, espProduct(ESPChip::esp32, 16 * 1024));
    model.handle(FlashEvents::Progress{10, 100}); // ignored while idle
    EXPECT_EQ(model.progressDone(), 0);
    model.startFlash();
    ASSERT_TRUE(model.isFlashing());
    std::vector<qint64> shown;
    QObject::connect(&model, &FlasherModel::progressChanged,
                     [&] { shown.push_back(model.progressDone()); });
    for (qint64 done : {10, 20, 30, 100, 0, 50})
      model.handle(FlashEvents::Progress{done, 100});
    model.handle(FlashEvents::Progress{0, 0}); // a total below 1 counts as 1
    EXPECT_EQ(model.progressTotal(), 1);
    if (interval > 0) {
      // The first value publishes, the next within the interval do not, the file's end does.
      EXPECT_EQ(shown, (std::vector<qint64>{10, 100, 0})) << interval;
    } else {
      EXPECT_EQ(shown, (std::vector<qint64>{10, 20, 30, 100, 0, 50, 0})) << interval;
    }
    model.toggleFlash();
    ASSERT_TRUE(waitUntilIdle(model, 5000));
  }
}

TEST_F(ModelTest, NewBoardsAreFlashedAutomatically) {
  LanguageOverride english(Language::en);
  auto model = makeModel();
  load(*model, espProduct(ESPChip::esp32, 16 * 1024));
  model->setAutoFlash(true);
  QSignalSpy scheduled(model.get(), &FlasherModel::autoFlashScheduled);
  QSignalSpy states(model.get(), &FlasherModel::stateChanged);

  // The first list only picks a selection: the first port with a vendor id.
  model->portsChanged({{"/dev/ttyS0", {}, {}, {}}, usbPort("/dev/ttyUSB0")});
  EXPECT_EQ(model->selectedPath(), "/dev/ttyUSB0");
  EXPECT_EQ(scheduled.count(), 0);

  // A port without a vendor id is no board.
  model->portsChanged(
      {{"/dev/ttyS0", {}, {}, {}}, {"/dev/ttyS1", {}, {}, {}}, usbPort("/dev/ttyUSB0")});
  EXPECT_EQ(scheduled.count(), 0);

  // Plugged in and pulled out again before the delay: not flashed.
  model->portsChanged({usbPort("/dev/ttyUSB0"), usbPort("/dev/ttyUSB1")});
  EXPECT_EQ(model->selectedPath(), "/dev/ttyUSB1");
  EXPECT_EQ(scheduled.count(), 1);
  model->portsChanged({usbPort("/dev/ttyUSB0")});
  // Plugged in, then the person chose another port: not flashed either.
  model->portsChanged({usbPort("/dev/ttyUSB0"), usbPort("/dev/ttyUSB2")});
  EXPECT_EQ(scheduled.count(), 2);
  model->setSelectedPath("/dev/ttyUSB0");
  QTest::qWait(static_cast<int>(autoFlashDelay * 1000 * 3));
  EXPECT_EQ(states.count(), 0);

  // A board that stays is flashed after the delay (it has no device here, so the run fails).
  model->portsChanged({usbPort("/dev/ttyUSB0"), usbPort("/dev/ttyUSB2"), usbPort("/dev/ttyACM0")});
  EXPECT_EQ(model->selectedPath(), "/dev/ttyACM0");
  EXPECT_TRUE(model->output().plainText().contains(
      "New board on " + model->portLabel("/dev/ttyACM0") + ": flashing automatically"));
  EXPECT_FALSE(model->isFlashing());
  ASSERT_TRUE(QTest::qWaitFor([&] { return states.count() >= 1; }, 5000));
  ASSERT_TRUE(waitUntilIdle(*model));
  EXPECT_EQ(model->statistics().failed, 1);

  // Within the quiet time after that run a board on its own USB that cannot be told from the
  // one just flashed is neither selected nor flashed, and the log says so…
  SerialPortInfo restarting{"/dev/ttyACM1", std::nullopt, espressifVendorID, 0x1001};
  model->portsChanged({usbPort("/dev/ttyUSB0"), usbPort("/dev/ttyUSB2"), usbPort("/dev/ttyACM0"),
                       restarting});
  EXPECT_EQ(model->selectedPath(), "/dev/ttyACM0");
  EXPECT_EQ(scheduled.count(), 3);
  EXPECT_TRUE(model->output().plainText().contains(
      "Left alone: taken for the board whose run just ended, restarting"));
  // …unless the selection vanished, and then only by the fallback rule.
  model->portsChanged({usbPort("/dev/ttyUSB0"), restarting});
  EXPECT_EQ(model->selectedPath(), "/dev/ttyUSB0");
  EXPECT_EQ(scheduled.count(), 3);
  // Behind a USB-serial chip a board coming right after the run is the next one.
  model->portsChanged({usbPort("/dev/ttyUSB0"), restarting, usbPort("/dev/ttyUSB4")});
  EXPECT_EQ(model->selectedPath(), "/dev/ttyUSB4");
  EXPECT_EQ(scheduled.count(), 4);
}

// A board on its own USB without a serial number that comes back right after a run: automatic
// flashing connects and compares MAC addresses, as the station does. The board just flashed is
// restarted into its firmware and neither written nor counted; its return from that restart is
// left alone; another board is flashed.
TEST_F(ModelTest, AutomaticFlashingTellsABoardByItsMAC) {
  LanguageOverride english(Language::en);
  SimulatedESPOptions otherMAC;
  otherMAC.macWord0 = 0x0BADF00D;
  SimulatedESP a, b(otherMAC);
  DeviceAlias alias(a.path());
  if (!alias.created()) GTEST_SKIP() << "cannot create a device name in /dev (needs root)";
  auto model = makeModel();
  load(*model, espProduct(ESPChip::esp32, 16 * 1024));
  model->setAutoFlash(true);
  const SerialPortInfo ownUSB{alias.path(), std::nullopt, espressifVendorID, 0x1001};
  model->portsChanged({ownUSB});
  model->startFlash();
  ASSERT_TRUE(waitUntilIdle(*model));
  ASSERT_EQ(model->statistics().flashed, 1) << model->output().plainText().toStdString();
  const int writes = a.requests(ESPCommand::flashDeflateBegin);

  struct Step {
    const char* what;
    const SimulatedESP* board;
    bool flashes;  // else left alone
    bool connects; // to compare
    const char* line;
  };
  const std::vector<Step> steps = {
      {"the same board", &a, false, true,
       "Left alone: the board whose run just ended (same MAC address); restarted into its "
       "firmware."},
      {"its return from that restart", &a, false, false,
       "Left alone: taken for the board whose run just ended, restarting"},
      {"another board", &b, true, true, nullptr},
  };
  for (const Step& step : steps) {
    SCOPED_TRACE(step.what);
    QSignalSpy scheduled(model.get(), &FlasherModel::autoFlashScheduled);
    const auto statistics = model->statistics();
    alias.retarget(step.board->path());
    model->portsChanged({});
    model->portsChanged({ownUSB});
    EXPECT_EQ(scheduled.count(), step.connects ? 1 : 0);
    if (step.connects) {
      ASSERT_TRUE(QTest::qWaitFor([&] { return model->isFlashing(); }, 5000));
      ASSERT_TRUE(waitUntilIdle(*model));
    }
    EXPECT_EQ(model->statistics().flashed, statistics.flashed + (step.flashes ? 1 : 0));
    EXPECT_EQ(model->statistics().failed, statistics.failed);
    if (step.line) {
      EXPECT_TRUE(model->output().plainText().contains(step.line))
          << model->output().plainText().toStdString();
    }
  }
  EXPECT_EQ(a.requests(ESPCommand::flashDeflateBegin), writes) << "the same board was written";
  EXPECT_EQ(b.requests(ESPCommand::flashDeflateBegin), writes);

  // A board with a USB serial number whose port is gone when its run ends (it restarts): its
  // return is told by the number the port had when the run began, without connecting.
  const SerialPortInfo numbered{alias.path(), std::nullopt, espressifVendorID, 0x1001, "S-B"};
  model->setAutoFlash(false);
  model->portsChanged({});
  model->portsChanged({numbered});
  model->startFlash();
  ASSERT_TRUE(model->isFlashing());
  model->portsChanged({});
  ASSERT_TRUE(waitUntilIdle(*model));
  model->setAutoFlash(true);
  QSignalSpy scheduled(model.get(), &FlasherModel::autoFlashScheduled);
  model->portsChanged({numbered});
  EXPECT_EQ(scheduled.count(), 0);
  EXPECT_TRUE(model->output().plainText().contains(
      "Left alone: the board whose run just ended, restarting (same USB serial number)."));
}

TEST_F(ModelTest, NewBoardAfterTheQuietTimeButNeverWithProductErrors) {
  quietSeconds = 0.05;
  auto model = makeModel();
  load(*model, espProduct(ESPChip::esp32, 16 * 1024));
  model->setAutoFlash(true);
  QSignalSpy scheduled(model.get(), &FlasherModel::autoFlashScheduled);
  model->portsChanged({usbPort("/dev/ttyUSB8")});
  model->startFlash(); // no device behind the path: a quick failure starts the quiet time
  ASSERT_TRUE(waitUntilIdle(*model));
  QTest::qWait(150);
  model->portsChanged({usbPort("/dev/ttyUSB8"), usbPort("/dev/ttyUSB9")});
  EXPECT_EQ(scheduled.count(), 1);
  model->setAutoFlash(false); // switched off before the delay ends: no run
  QTest::qWait(static_cast<int>(autoFlashDelay * 1000 * 3));
  EXPECT_EQ(model->statistics().failed, 1);

  // A product with errors: the board is selected but not flashed.
  model->setAutoFlash(true);
  std::set<UUID> all;
  for (const auto& image : model->product().images)
    all.insert(image.id);
  model->removeImages(all);
  model->portsChanged({usbPort("/dev/ttyUSB8"), usbPort("/dev/ttyUSB9"), usbPort("/dev/ttyUSB10")});
  EXPECT_EQ(model->selectedPath(), "/dev/ttyUSB10");
  EXPECT_EQ(scheduled.count(), 1);
}

// Help ▸ Try with a Simulated Board: boards simulated inside the program behave as USB boards
// behind an adapter do, several at once, and bring a demo when there is nothing to flash.
TEST_F(ModelTest, SimulatedBoardsArePluggedInAndPulledOutLikeUSBBoards) {
  LanguageOverride english(Language::en);
  auto model = makeModel();
  model->portsChanged({usbPort("/dev/ttyUSB0")});
  QSignalSpy boardsChanged(model.get(), &FlasherModel::simulatedBoardsChanged);
  QSignalSpy scheduled(model.get(), &FlasherModel::autoFlashScheduled);
  auto listed = [&](const QString& path) {
    return std::ranges::find(model->ports(), path.toStdString(), &SerialPortInfo::path);
  };
  auto logged = [&](const QString& line) { return model->output().plainText().contains(line); };

  // The first board, into an empty product: a demo for it opens, and it is the new board.
  const QString first = model->plugInSimulatedBoard(Target::esp(ESPChip::esp32));
  ASSERT_TRUE(first.startsWith("/dev/pts/"));
  EXPECT_EQ(model->selectedPath(), first);
  EXPECT_EQ(model->product().name, "ESP32 demo");
  EXPECT_EQ(model->product().target, Target::esp(ESPChip::esp32));
  EXPECT_EQ(model->product().images.size(), 4u);
  EXPECT_FALSE(model->hasUnsavedChanges());
  EXPECT_TRUE(model->canFlash());
  EXPECT_EQ(scheduled.count(), 0); // automatic flashing is off
  // Listed, but never remembered as the port for the next start.
  ASSERT_NE(listed(first), model->ports().end());
  EXPECT_EQ(QSettings().value("port").toString(), "/dev/ttyUSB0");
  EXPECT_TRUE(logged("Simulated ESP32 (" + first + ") plugged in"));
  // Named as simulated in every language.
  std::set<QString> labels;
  for (Language language : allLanguages) {
    LanguageOverride override(language);
    const QString label = model->portLabel(first);
    EXPECT_TRUE(label.contains("ESP32") && label.endsWith(" (" + first + ")"))
        << label.toStdString();
    labels.insert(label);
  }
  EXPECT_EQ(labels.size(), 5u);
  // The scanner's next list keeps it, after the USB ports and before the rest.
  model->portsChanged({usbPort("/dev/ttyUSB0"), {"/dev/ttyS0", {}, {}, {}}});
  EXPECT_EQ(model->selectedPath(), first);
  std::vector<std::string> order;
  for (const auto& port : model->ports())
    order.push_back(port.path);
  EXPECT_EQ(order, (std::vector<std::string>{"/dev/ttyUSB0", first.toStdString(), "/dev/ttyS0"}));

  // A second one beside it is flashed automatically, with the product there is.
  model->setAutoFlash(true);
  const auto images = model->product().images;
  const QString second = model->plugInSimulatedBoard(Target::esp(ESPChip::esp32));
  EXPECT_EQ(model->selectedPath(), second);
  EXPECT_EQ(model->product().images, images);
  EXPECT_EQ(model->simulatedBoards(), (std::vector<FlasherModel::SimulatedPort>{
                                          {first.toStdString(), Target::esp(ESPChip::esp32)},
                                          {second.toStdString(), Target::esp(ESPChip::esp32)}}));
  ASSERT_EQ(scheduled.count(), 1);
  EXPECT_EQ(scheduled[0][0].toString(), second);
  RunRecording run(*model);
  ASSERT_TRUE(QTest::qWaitFor([&] { return model->isFlashing(); }, 5000));
  ASSERT_TRUE(waitUntilIdle(*model));
  ASSERT_TRUE(model->outcome() &&
              std::holds_alternative<FlashOutcome::Success>(model->outcome()->value));
  EXPECT_EQ(run.lines.front().text,
            "--- Flashing ESP32 demo on Simulated ESP32 (" + second.toStdString() + ") ---");

  // Pulled out, and one plugged in again within the quiet time (often on the same path): behind
  // an adapter that is the next board.
  model->unplugSimulatedBoard(second);
  EXPECT_EQ(listed(second), model->ports().end());
  EXPECT_TRUE(logged("Simulated ESP32 (" + second + ") unplugged"));
  const QString third = model->plugInSimulatedBoard(Target::esp(ESPChip::esp32));
  EXPECT_EQ(model->selectedPath(), third);
  ASSERT_EQ(scheduled.count(), 2);
  ASSERT_TRUE(QTest::qWaitFor([&] { return model->isFlashing(); }, 5000));
  ASSERT_TRUE(waitUntilIdle(*model));
  EXPECT_EQ(model->statistics().flashed, 2);

  // Pulled out halfway through a run: it fails as with a pulled cable, and nothing hangs.
  model->setAutoFlash(false);
  model->startFlash();
  ASSERT_TRUE(model->isFlashing());
  model->unplugSimulatedBoard(third);
  ASSERT_TRUE(waitUntilIdle(*model));
  ASSERT_TRUE(model->outcome() &&
              std::holds_alternative<FlashOutcome::Failure>(model->outcome()->value));
  EXPECT_EQ(model->statistics().failed, 1);
  EXPECT_EQ(model->simulatedBoards().size(), 1u);
  EXPECT_EQ(boardsChanged.count(), 5); // three in, two out

  // A board that restarts its bootloader on a new port cannot be simulated, and says so.
  EXPECT_TRUE(model->plugInSimulatedBoard(Target::avr(AVRBoard::leonardo)).isEmpty());
  EXPECT_EQ(model->errorMessage().toStdString(),
            L10n::Simulator::cannotSimulate("Arduino Leonardo"));
  EXPECT_EQ(model->simulatedBoards().size(), 1u);
}

TEST_F(ModelTest, EverySimulatedBoardComesWithADemoThatFlashesOntoIt) {
  auto model = makeModel();
  model->portsChanged({});
  const auto boards = simulator::SimulatedBoard::simulable();
  for (const Target& target : boards) {
    SCOPED_TRACE(target.text());
    model->newProduct();
    const QString path = model->plugInSimulatedBoard(target);
    ASSERT_FALSE(path.isEmpty()) << model->errorMessage().toStdString();
    EXPECT_EQ(model->product().target, target);
    EXPECT_EQ(model->selectedPath(), path);
    // Shown as a real board of its kind is: behind an adapter, never as the other family.
    auto port = std::ranges::find(model->ports(), path.toStdString(), &SerialPortInfo::path);
    ASSERT_NE(port, model->ports().end());
    EXPECT_EQ(portKind(*port), PortKind::adapter);
    EXPECT_NE(boardFamily(*port), target.isESP() ? BoardFamily::avr : BoardFamily::esp);
    model->startFlash();
    ASSERT_TRUE(waitUntilIdle(*model));
    ASSERT_TRUE(model->outcome());
    EXPECT_TRUE(std::holds_alternative<FlashOutcome::Success>(model->outcome()->value))
        << std::get<FlashOutcome::Failure>(model->outcome()->value).message;
    model->unplugSimulatedBoard(path);
  }
  EXPECT_EQ(model->statistics().flashed, static_cast<int>(boards.size()));

  // A demo that cannot be written is said, and the board is plugged in all the same.
  LanguageOverride english(Language::en);
  const QByteArray temporary = qgetenv("TMPDIR");
  std::ofstream(path("file")) << "not a folder";
  qputenv("TMPDIR", path("file").string().c_str());
  model->newProduct();
  const QString path = model->plugInSimulatedBoard(Target::avr(AVRBoard::uno));
  qputenv("TMPDIR", temporary);
  EXPECT_TRUE(model->product().images.empty());
  EXPECT_TRUE(model->errorMessage().startsWith("Cannot write the demo build into "));
  EXPECT_TRUE(model->errorMessage().endsWith(": part of the path is not a folder."))
      << model->errorMessage().toStdString();
  EXPECT_EQ(model->selectedPath(), path);
}
