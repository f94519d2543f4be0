// The flashing station of the desktop program, through its model, against simulated boards on
// pseudo-terminals: rows, the tally, the two stops, the record file and the locked product.
#include <QSignalSpy>

#include <filesystem>
#include <fstream>

#include <nlohmann/json.hpp>

#include "Localization/StationWindowTexts.hpp"
#include "ModelFixture.hpp"
#include "Simulator/NetworkSerialServer.hpp"
#include "Simulator/SimulatedESP.hpp"
#include "Tarnwick/Model/OutputBuffer.hpp"
#include "Tarnwick/Model/StationModel.hpp"
#include "Tarnwick/Model/StationTable.hpp"
#include "support/Boards.hpp"
#include "support/Ser2net.hpp"

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace tarnwick::simulator;
using Result = StationRow::Result;
namespace fs = std::filesystem;

namespace {

// A port the test plugs in and pulls out through the model's port list: a link to a simulated
// board, behind a CH340 as far as the station can tell.
SerialPortInfo adapterPort(const fs::path& link) {
  return {link.string(), "USB Serial", 0x1A86, 0x7523};
}

class StationModelTest : public ModelTest {
protected:
  StationModel::Options stationOptions() {
    StationModel::Options options;
    options.settleSeconds = 0.1;
    options.quietSeconds = 1.0;
    options.clock = [this] { return now; };
    return options;
  }
  std::unique_ptr<StationModel> makeStation(FlasherModel& model) {
    return std::make_unique<StationModel>(model, stationOptions());
  }
  static bool waitUntilIdle(StationModel& station, int milliseconds = 30000) {
    return QTest::qWaitFor([&] { return !station.isRunning(); }, milliseconds);
  }
  static const StationRow* row(const StationModel& station, const std::string& path) {
    for (const auto& r : station.rows())
      if (r.path == path) return &r;
    return nullptr;
  }
  static std::string joined(const std::vector<std::vector<LogSegment>>& lines) {
    std::string text;
    for (const auto& line : lines) {
      for (const auto& segment : line)
        if (segment.kind != LogSegment::Kind::timestamp) text += segment.text;
      text += "\n";
    }
    return text;
  }
  static std::string describe(const StationModel& station) {
    std::string text;
    for (const auto& r : station.rows())
      text += r.path + " " + std::to_string(static_cast<int>(r.result)) + " " +
              r.stage.toStdString() + " " + r.message.toStdString() + "\n";
    return text + station.notice().toStdString();
  }

  StationModel::Clock::time_point now = StationModel::Clock::now();
};

} // namespace

// The test devices are flashed when the station starts, side by side; a board that fails stalls
// no other; each row shows its board, chip, MAC, result and time, and keeps the board's own log
// lines, which the main log holds too, after the port. The tally counts them, boards per hour
// from the last ten minutes; each board gets its sound. A board plugged in later gets a row of its
// own, and a port used again shows its new board in the same row; Clear Finished empties the
// table of finished boards only.
TEST_F(StationModelTest, FlashesSeveralBoardsAndKeepsTheirRowsUntilReusedOrCleared) {
  SimulatedESP a(pacedESP32()), b(pacedESP32());
  SimulatedESPOptions mute;
  mute.silent = true;
  SimulatedESP silent(mute), c, d;
  auto model = makeModel({a.path(), b.path(), silent.path()});
  load(*model, espProduct(ESPChip::esp32, 64 * 1024));
  model->setPlaySounds(true);
  auto station = makeStation(*model);
  QSignalSpy tallies(station.get(), &StationModel::tallyChanged);
  StationTable table(*station);
  QSignalSpy inserted(&table, &QAbstractItemModel::rowsInserted);
  QSignalSpy reset(&table, &QAbstractItemModel::modelReset);

  station->start();
  ASSERT_TRUE(station->isRunning());
  ASSERT_TRUE(QTest::qWaitFor([&] { return station->tally().flashed == 2; }, 30000))
      << describe(*station);
  ASSERT_TRUE(QTest::qWaitFor([&] { return station->tally().failed == 1; }, 30000))
      << describe(*station);
  EXPECT_GT(tallies.count(), 0);

  ASSERT_EQ(station->rows().size(), 3u) << describe(*station);
  for (const auto* board : {&a, &b}) {
    const StationRow* r = row(*station, board->path());
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(r->result, Result::done);
    EXPECT_EQ(r->chip, "ESP32");
    EXPECT_EQ(r->mac, "AB:CD:12:34:56:78");
    EXPECT_EQ(r->boardName, "Test device"); // the port has a column of its own
    EXPECT_GT(r->seconds, 0.0);
    EXPECT_EQ(r->done, r->total);
    const std::string own = joined(r->log);
    EXPECT_NE(own.find("--- Flashing"), std::string::npos) << own;
    EXPECT_NE(own.find("Chip: ESP32"), std::string::npos) << own;
    EXPECT_NE(own.find("--- Done in"), std::string::npos) << own;
    EXPECT_EQ(own.find(silent.path()), std::string::npos) << "another board's line: " << own;
  }
  const StationRow* failed = row(*station, silent.path());
  ASSERT_NE(failed, nullptr);
  EXPECT_EQ(failed->result, Result::failed);
  EXPECT_FALSE(failed->message.isEmpty());
  // The main log: the second slow board started before the first was done.
  const QString log = model->output().plainText();
  const auto portOf = [](const SimulatedESP& board) {
    return QString::fromStdString(deviceName(board.path()));
  };
  const auto firstDone =
      std::min(log.indexOf(portOf(a) + ": --- Done"), log.indexOf(portOf(b) + ": --- Done"));
  EXPECT_LT(std::max(log.indexOf(portOf(a) + ": --- Flashing"),
                     log.indexOf(portOf(b) + ": --- Flashing")),
            firstDone)
      << log.toStdString();
  // Every board's lines are there, each after its port.
  for (const auto* board : {&a, &b, &silent})
    EXPECT_TRUE(log.contains(portOf(*board) + ": --- Flashing")) << log.toStdString();
  EXPECT_EQ(std::ranges::count(sounds->played, std::string(SoundSink::successSound)), 2);
  EXPECT_EQ(std::ranges::count(sounds->played, std::string(SoundSink::failureSound)), 1);

  // The table the window shows: a row per board, added as the boards come.
  ASSERT_EQ(table.rowCount(), 3);
  EXPECT_GE(inserted.count(), 1);
  EXPECT_EQ(table.columnCount(), StationTable::columns);
  EXPECT_EQ(table.headerData(StationTable::mac, Qt::Horizontal).toString(), "MAC Address");
  for (int r = 0; r < table.rowCount(); ++r) {
    auto cell = [&](int column, int role = Qt::DisplayRole) {
      return table.index(r, column).data(role);
    };
    const std::string path = "/dev/" + cell(StationTable::port).toString().toStdString();
    const StationRow& shown = *row(*station, path);
    EXPECT_EQ(cell(StationTable::board).toString(), "Test device");
    if (shown.result == Result::done) {
      EXPECT_EQ(cell(StationTable::result).toString(), "Done");
      EXPECT_EQ(cell(StationTable::progress).toString(), "100%");
      EXPECT_EQ(cell(StationTable::progress, StationTable::fractionRole).toDouble(), 1.0);
      EXPECT_EQ(cell(StationTable::mac).toString(), "AB:CD:12:34:56:78");
      EXPECT_TRUE(cell(StationTable::time).toString().endsWith(" s"));
    } else {
      // A failed board shows why where its stage was, and in the result's tooltip.
      EXPECT_EQ(cell(StationTable::result).toString(), "Failed");
      EXPECT_EQ(cell(StationTable::stage).toString(), shown.message);
      EXPECT_EQ(cell(StationTable::result, Qt::ToolTipRole).toString(), shown.message);
      EXPECT_TRUE(cell(StationTable::chip).toString().isEmpty());
    }
  }

  StationTally tally = station->tally();
  EXPECT_EQ(tally, (StationTally{2, 1, 0, 18}));
  now += std::chrono::minutes(9);
  EXPECT_EQ(station->tally().boardsPerHour, 18);
  now += std::chrono::seconds(61);
  EXPECT_EQ(station->tally().boardsPerHour, 0);
  now -= std::chrono::seconds(61 + 9 * 60);

  // A board plugged in while it runs gets a row after the others; one put on a port used before
  // takes that port's row.
  const fs::path slot = path("slot");
  fs::create_symlink(c.path(), slot);
  model->portsChanged({adapterPort(slot)});
  ASSERT_TRUE(QTest::qWaitFor([&] { return station->tally().flashed == 3; }, 30000))
      << describe(*station);
  ASSERT_EQ(station->rows().size(), 4u);
  EXPECT_EQ(station->rows().back().path, slot.string());
  model->portsChanged({});
  fs::remove(slot);
  fs::create_symlink(d.path(), slot);
  model->portsChanged({adapterPort(slot)});
  ASSERT_TRUE(QTest::qWaitFor([&] { return station->tally().flashed == 4; }, 30000))
      << describe(*station);
  EXPECT_EQ(station->rows().size(), 4u);
  EXPECT_EQ(station->rows().back().result, Result::done);
  EXPECT_GT(d.requests(ESPCommand::flashDeflateBegin), 0);
  EXPECT_EQ(joined(station->rows().back().log).find("--- Flashing"),
            joined(station->rows().back().log).rfind("--- Flashing"))
      << "the row kept the last board's lines";

  station->stop();
  ASSERT_TRUE(waitUntilIdle(*station)) << describe(*station);
  EXPECT_FALSE(model->productLocked());
  EXPECT_TRUE(model->output().plainText().contains("--- Flashed 4 · Failed 1. ---"))
      << model->output().plainText().toStdString();
  QSignalSpy cleared(station.get(), &StationModel::rowsCleared);
  station->clearFinished();
  EXPECT_EQ(cleared.count(), 1);
  EXPECT_TRUE(station->rows().empty());
  EXPECT_EQ(reset.count(), 1);
  EXPECT_EQ(table.rowCount(), 0);
}

// Boards connected before Start are left alone unless "Also flash the boards already connected"
// is on; the limit ends the station by itself once that many are flashed. Both options are kept
// for the next start of the program.
TEST_F(StationModelTest, TheBoardsAlreadyConnectedAndTheLimitAreOptions) {
  auto model = makeModel();
  load(*model, espProduct(ESPChip::esp32, 16 * 1024));
  const Target esp32 = Target::esp(ESPChip::esp32);
  const QString present = model->plugInSimulatedBoard(esp32);
  ASSERT_FALSE(present.isEmpty()) << model->errorMessage().toStdString();
  {
    auto station = makeStation(*model);
    station->start();
    // One plugged in after Start is taken; by the time it is done, the one that was there
    // would have been started too, had it been taken.
    const QString later = model->plugInSimulatedBoard(esp32);
    ASSERT_TRUE(QTest::qWaitFor([&] { return station->tally().flashed == 1; }, 20000))
        << describe(*station);
    EXPECT_EQ(station->rows().size(), 1u);
    EXPECT_EQ(station->rows().front().path, later.toStdString());
    EXPECT_EQ(station->rows().front().boardName, "Simulated ESP32");
    station->stop();
    ASSERT_TRUE(waitUntilIdle(*station));
    station->setAlsoConnected(true);
    station->setLimit(2);
  }
  model->plugInSimulatedBoard(esp32);
  auto station = makeStation(*model);
  EXPECT_TRUE(station->alsoConnected());
  EXPECT_EQ(station->limit(), 2);
  station->start();
  // Three boards are there; two are flashed and the station ends by itself.
  ASSERT_TRUE(waitUntilIdle(*station)) << describe(*station);
  EXPECT_EQ(station->tally().flashed, 2);
  EXPECT_EQ(station->rows().size(), 2u);
  EXPECT_EQ(station->notice().toStdString(), "Flashed 2 · Failed 0.");
  EXPECT_TRUE(model->output().plainText().contains("Limit of 2 reached: no new boards are taken."));
  station->setLimit(std::nullopt);
  EXPECT_FALSE(makeStation(*model)->limit());
}

// While the station runs the product stays as it is, no single board is flashed, and quitting is
// refused with the reason; once it has stopped all of it is possible again.
TEST_F(StationModelTest, TheProductIsLockedWhileTheStationRuns) {
  SimulatedESP board(pacedESP32());
  auto model = makeModel({board.path()});
  const auto p = espProduct(ESPChip::esp32, 64 * 1024);
  load(*model, p);
  auto station = makeStation(*model);
  station->start();
  ASSERT_TRUE(station->isRunning());
  EXPECT_TRUE(model->productLocked());
  EXPECT_FALSE(model->canFlash());

  const Product before = model->product();
  Product renamed = before;
  renamed.name = "Changed";
  model->setProduct(renamed);
  model->removeImages({before.images.front().id});
  model->newProduct();
  model->addFiles({path("missing.bin")});
  EXPECT_EQ(model->product(), before);
  EXPECT_TRUE(model->errorMessage().isEmpty()) << model->errorMessage().toStdString();
  model->startFlash();
  EXPECT_FALSE(model->isFlashing());
  EXPECT_FALSE(model->requestQuit());
  ASSERT_EQ(dialogs.alerts.size(), 1u);
  EXPECT_EQ(dialogs.alerts[0].toStdString(), L10n::StationWindow::stopBeforeQuitting());

  station->stopNow();
  ASSERT_TRUE(waitUntilIdle(*station));
  EXPECT_FALSE(model->productLocked());
  model->setProduct(renamed);
  EXPECT_EQ(model->product().name, "Changed");
  EXPECT_TRUE(model->requestQuit());
}

// The first Stop takes no new boards and lets the running ones finish; the second stops them, and
// they count as failed without a sound. A board plugged in after the first Stop is left alone,
// and the log says so.
TEST_F(StationModelTest, FirstStopLetsBoardsFinishSecondStopsThem) {
  for (const int stops : {1, 2}) {
    SCOPED_TRACE(stops);
    SimulatedESP a(pacedESP32()), b(pacedESP32()), late;
    auto model = makeModel({a.path(), b.path()});
    load(*model, espProduct(ESPChip::esp32, 96 * 1024));
    model->setPlaySounds(true);
    auto station = makeStation(*model);
    QSignalSpy phases(station.get(), &StationModel::phaseChanged);
    station->start();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
          return station->rows().size() == 2 && station->rows()[0].chip && station->rows()[1].chip;
        },
        20000))
        << describe(*station);
    station->stop();
    EXPECT_EQ(station->phase(), StationModel::Phase::finishing);
    model->portsChanged({adapterPort(late.path())});
    if (stops == 2) {
      station->stop();
      EXPECT_EQ(station->phase(), StationModel::Phase::stopping);
    }
    ASSERT_TRUE(waitUntilIdle(*station)) << describe(*station);
    EXPECT_EQ(station->rows().size(), 2u) << describe(*station);
    EXPECT_EQ(late.requests(ESPCommand::sync), 0);
    const QString log = model->output().plainText();
    EXPECT_TRUE(log.contains(QString::fromStdString(L10n::StationWindow::finishing(2))))
        << log.toStdString();
    EXPECT_TRUE(log.contains("Left alone: the station takes no new boards.")) << log.toStdString();
    for (const auto& r : station->rows())
      EXPECT_EQ(r.result, stops == 1 ? Result::done : Result::stopped) << describe(*station);
    EXPECT_EQ(station->tally(),
              (StationTally{stops == 1 ? 2 : 0, stops == 1 ? 0 : 2, 0, stops == 1 ? 12 : 0}));
    EXPECT_EQ(sounds->played.size(), stops == 1 ? 2u : 0u);
    EXPECT_EQ(phases.count(), stops == 1 ? 3 : 4); // running, finishing, (stopping,) idle
    sounds->played.clear();
  }
}

// The record file is chosen per product file and remembered with it; a product never saved has
// none until one is chosen. Its lines are those of the command line's station. One that cannot be
// opened keeps the station from starting and says why; one that cannot be written any more stops
// the station taking boards, says so on screen, and the board without its line counts as failed.
TEST_F(StationModelTest, TheRecordFileIsTheProductsAndAProblemWithItIsShown) {
  SimulatedESP board;
  auto model = makeModel({board.path()});
  auto p = espProduct(ESPChip::esp32, 8192);
  p.product.name = "Sensor";
  load(*model, p);
  auto station = makeStation(*model);
  EXPECT_TRUE(station->recordPath().isEmpty());

  model->saveProductTo(path("Sensor.twflash"));
  const QString record = QString::fromStdString(path("boards.jsonl").string());
  station->setRecordPath(record);
  model->saveProductTo(path("Other.twflash"));
  EXPECT_TRUE(station->recordPath().isEmpty()) << "another product file, another record";
  model->openProduct(path("Sensor.twflash"));
  EXPECT_EQ(station->recordPath(), record);
  {
    auto again = makeStation(*model);
    EXPECT_EQ(again->recordPath(), record) << "not remembered";
  }
  model->newProduct();
  EXPECT_TRUE(station->recordPath().isEmpty());
  model->openProduct(path("Sensor.twflash"));

  station->start();
  ASSERT_TRUE(QTest::qWaitFor([&] { return station->tally().flashed == 1; }, 20000))
      << describe(*station);
  station->stop();
  ASSERT_TRUE(waitUntilIdle(*station));
  std::ifstream lines(record.toStdString());
  std::string line;
  ASSERT_TRUE(std::getline(lines, line));
  const auto written = nlohmann::json::parse(line);
  EXPECT_EQ(written.at("port"), board.path());
  EXPECT_EQ(written.at("name"), "Test device (" + board.path() + ")");
  EXPECT_EQ(written.at("product"), "Sensor");
  EXPECT_EQ(written.at("productSHA256").get<std::string>().size(), 64u);
  EXPECT_EQ(written.at("result"), "done");
  EXPECT_EQ(written.at("mac"), "AB:CD:12:34:56:78");
  EXPECT_FALSE(std::getline(lines, line));

  // A folder that is not there: nothing starts, nothing is touched.
  const int syncs = board.requests(ESPCommand::sync);
  station->setRecordPath(QString::fromStdString(path("no/such/boards.jsonl").string()));
  station->start();
  EXPECT_FALSE(station->isRunning());
  EXPECT_FALSE(model->productLocked());
  EXPECT_TRUE(station->recordProblem().startsWith("Cannot open the record file"))
      << station->recordProblem().toStdString();
  EXPECT_EQ(board.requests(ESPCommand::sync), syncs);

  // A full disk: the board's line is lost, so it failed; the station takes no new boards and,
  // with none running, ends by itself.
  station->setRecordPath(QStringLiteral("/dev/full"));
  EXPECT_TRUE(station->recordProblem().isEmpty());
  station->start();
  ASSERT_TRUE(station->isRunning());
  ASSERT_TRUE(waitUntilIdle(*station)) << describe(*station);
  EXPECT_EQ(station->tally().failed, 1);
  EXPECT_TRUE(station->recordProblem().startsWith("This board is missing from /dev/full"))
      << station->recordProblem().toStdString();
  EXPECT_TRUE(station->recordProblem().contains("No new boards are taken"));
}

// However many boards report, the rows are updated at most once per update interval, and still
// each board's end shows.
TEST_F(StationModelTest, UpdatesAreGatheredToAFewASecond) {
  std::vector<std::unique_ptr<SimulatedESP>> boards;
  std::vector<std::string> paths;
  for (int i = 0; i < 4; ++i) {
    boards.push_back(std::make_unique<SimulatedESP>());
    paths.push_back(boards.back()->path());
  }
  auto model = makeModel(paths);
  load(*model, espProduct(ESPChip::esp32, 1024 * 1024));
  StationModel::Options options = stationOptions();
  options.updateIntervalSeconds = 0.25;
  StationModel station(*model, options);
  QSignalSpy updates(&station, &StationModel::rowsChanged);
  const auto started = std::chrono::steady_clock::now();
  station.start();
  ASSERT_TRUE(QTest::qWaitFor([&] { return station.tally().flashed == 4; }, 30000))
      << describe(station);
  const double elapsed =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
  // Far more events than that came: every block of every board is a progress report.
  EXPECT_LE(updates.count(), static_cast<int>(elapsed / 0.25) + 2) << elapsed;
  EXPECT_EQ(station.updates(), updates.count());
  for (const auto& r : station.rows())
    EXPECT_EQ(r.result, Result::done);
  station.stop();
  ASSERT_TRUE(waitUntilIdle(station));
}

// A network port added to the port list is watched by the station: a server out of reach is
// said in the log once, and the board its server then serves is flashed through it, in a row
// named by the port's address.
TEST_F(StationModelTest, TheNetworkPortsOfThePortList) {
  auto model = makeModel();
  const auto product = espProduct(ESPChip::esp32, 16 * 1024);
  load(*model, product);
  const std::uint16_t tcp = freeTCPPort();
  const std::string port = "rfc2217://127.0.0.1:" + std::to_string(tcp);
  ASSERT_EQ(model->addNetworkPort(QString::fromStdString(port)).toStdString(), port);
  auto station = makeStation(*model);
  station->start();
  ASSERT_TRUE(station->isRunning());
  const QString refused = QString::fromStdString("Cannot reach " + port + ": ");
  ASSERT_TRUE(
      QTest::qWaitFor([&] { return model->output().plainText().contains(refused); }, 10000));

  SimulatedESP board;
  NetworkSerialServer server(
      board.path(), ResetWiring::espAutoReset, [&](BoardStart how) { board.start(how); },
      "127.0.0.1", tcp);
  ASSERT_TRUE(QTest::qWaitFor([&] { return station->tally().flashed == 1; }, 30000))
      << describe(*station);
  // The connection that found the board is the one it was flashed through (the server takes
  // one client at a time); at most one more has been made since, to watch the board.
  EXPECT_LE(server.clientsServed(), 2);
  const StationRow* r = row(*station, port);
  ASSERT_NE(r, nullptr) << describe(*station);
  EXPECT_EQ(r->result, Result::done);
  EXPECT_TRUE(r->boardName.startsWith(QString::fromStdString(port))) << r->boardName.toStdString();
  EXPECT_EQ(r->mac, "AB:CD:12:34:56:78");
  EXPECT_TRUE(flashHoldsPlan(board.flash(), product, ESPChip::esp32));
  EXPECT_EQ(model->output().plainText().count(refused), 1);
  station->stop();
  EXPECT_TRUE(waitUntilIdle(*station));
}
