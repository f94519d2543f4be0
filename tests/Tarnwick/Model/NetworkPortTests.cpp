// Ports on other computers in the desktop model: added by name, remembered across starts, listed
// after the local ports, never taken for a board just plugged in, and flashed through as any port.
#include <QSettings>
#include <QSignalSpy>

#include "FlashSerial/FlashPortError.hpp"
#include "Localization/Language.hpp"
#include "ModelFixture.hpp"
#include "Simulator/NetworkSerialServer.hpp"
#include "Simulator/SimulatedESP.hpp"
#include "Tarnwick/Model/OutputBuffer.hpp"
#include "support/Ser2net.hpp"

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace tarnwick::simulator;

namespace {

SerialPortInfo usbPort(const std::string& path) { return {path, "USB Serial", 0x1A86, 0x7523}; }
SerialPortInfo uart(const std::string& path) { return {path, {}, {}, {}}; }

std::vector<std::string> pathsOf(const FlasherModel& model) {
  std::vector<std::string> paths;
  for (const auto& port : model.ports())
    paths.push_back(port.path);
  return paths;
}

} // namespace

TEST_F(ModelTest, NetworkPortsAreRememberedAndListedAfterTheLocalOnes) {
  auto model = makeModel();
  load(*model, espProduct(ESPChip::esp32, 16 * 1024));
  model->setAutoFlash(true);
  model->portsChanged({usbPort("/dev/ttyUSB0"), uart("/dev/ttyS0")});
  ASSERT_EQ(model->selectedPath(), "/dev/ttyUSB0");
  QSignalSpy scheduled(model.get(), &FlasherModel::autoFlashScheduled);

  struct Case {
    const char* typed;
    const char* listed; // empty: refused, nothing changes
  };
  const Case cases[] = {
      {"rfc2217://pi-rack-1:4001", "rfc2217://pi-rack-1:4001"},
      {"RFC2217://[fd00::3]:2000", "rfc2217://[fd00::3]:2000"}, // the scheme in any case
      {"rfc2217://pi-rack-1:4001", "rfc2217://pi-rack-1:4001"}, // again: selected, not doubled
      {"rfc2217://pi rack:4001", ""},
      {"rfc2217://pi-rack-1:0", ""},
      {"rfc2217://pi-rack-1", ""},
      {"pi-rack-1:4001", ""},
      {"/dev/ttyUSB3", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.typed);
    const QString before = model->selectedPath();
    EXPECT_EQ(model->addNetworkPort(c.typed), c.listed);
    EXPECT_EQ(model->selectedPath(), *c.listed ? QString(c.listed) : before);
  }
  const QStringList added = {"rfc2217://pi-rack-1:4001", "rfc2217://[fd00::3]:2000"};
  EXPECT_EQ(model->networkPorts(), added);
  EXPECT_EQ(QSettings().value("networkPorts").toStringList(), added);
  EXPECT_EQ(QSettings().value("port").toString(), "rfc2217://pi-rack-1:4001");
  EXPECT_TRUE(model->canFlash());
  EXPECT_FALSE(model->isFlashing()); // automatic flashing is for boards plugged in

  // Named by its address and marked as a network port, in every language.
  std::set<QString> labels;
  for (Language language : allLanguages) {
    LanguageOverride override(language);
    const QString label = model->portLabel("rfc2217://pi-rack-1:4001");
    EXPECT_TRUE(label.startsWith("rfc2217://pi-rack-1:4001 (")) << label.toStdString();
    labels.insert(label);
  }
  EXPECT_EQ(labels.size(), 5u);

  // The scanner's lists come and go; the network ports stay last and keep the selection, and
  // only a USB board plugged in is a new board.
  const std::vector<std::vector<SerialPortInfo>> lists = {
      {usbPort("/dev/ttyUSB0")},
      {usbPort("/dev/ttyUSB0"), uart("/dev/ttyS1")},
      {uart("/dev/ttyS0")}};
  for (const auto& list : lists) {
    model->portsChanged(list);
    std::vector<std::string> expected;
    for (const auto& port : list)
      expected.push_back(port.path);
    expected.insert(expected.end(), {"rfc2217://pi-rack-1:4001", "rfc2217://[fd00::3]:2000"});
    EXPECT_EQ(pathsOf(*model), expected);
    EXPECT_EQ(model->selectedPath(), "rfc2217://pi-rack-1:4001");
  }
  EXPECT_EQ(scheduled.count(), 0);
  model->setAutoFlash(false);
  model->portsChanged({usbPort("/dev/ttyUSB1"), uart("/dev/ttyS0")});
  EXPECT_EQ(model->selectedPath(), "/dev/ttyUSB1");
  model->setSelectedPath("rfc2217://[fd00::3]:2000");

  // After a restart they are listed before the scanner has looked, and the selection holds
  // through its first list. Entries that name no network port are dropped from the settings.
  QSettings().setValue("networkPorts", added + QStringList{"rfc2217://pi-rack-1:4001", "junk"});
  model = makeModel();
  EXPECT_EQ(model->networkPorts(), added);
  EXPECT_EQ(pathsOf(*model),
            (std::vector<std::string>{"rfc2217://pi-rack-1:4001", "rfc2217://[fd00::3]:2000"}));
  EXPECT_EQ(model->selectedPath(), "rfc2217://[fd00::3]:2000");
  model->portsChanged({usbPort("/dev/ttyUSB0")});
  EXPECT_EQ(model->selectedPath(), "rfc2217://[fd00::3]:2000");

  // Removing one: the selection goes to the first USB board, or to nothing without one.
  QSignalSpy changed(model.get(), &FlasherModel::networkPortsChanged);
  model->removeNetworkPort("rfc2217://pi-rack-1:9999"); // never added
  model->removeNetworkPort("rfc2217://[fd00::3]:2000");
  EXPECT_EQ(model->selectedPath(), "/dev/ttyUSB0");
  EXPECT_EQ(QSettings().value("networkPorts").toStringList(), added.mid(0, 1));
  model->portsChanged({});
  model->setSelectedPath("rfc2217://pi-rack-1:4001");
  model->removeNetworkPort("rfc2217://pi-rack-1:4001");
  EXPECT_TRUE(model->selectedPath().isEmpty());
  EXPECT_TRUE(model->ports().empty());
  EXPECT_FALSE(QSettings().contains("networkPorts"));
  EXPECT_EQ(changed.count(), 2);
  model = makeModel();
  EXPECT_TRUE(model->networkPorts().isEmpty());
}

// A run through a network port goes through the engine's network link, with the engine's
// messages when the server cannot be reached.
TEST_F(ModelTest, FlashesThroughANetworkPortAndSaysWhyOneFails) {
  LanguageOverride english(Language::en);
  SimulatedESP board;
  NetworkSerialServer server(board.path(), ResetWiring::espAutoReset,
                             [&](BoardStart how) { board.start(how); });
  auto model = makeModel();
  model->portsChanged({});
  const auto p = espProduct(ESPChip::esp32, 64 * 1024);
  load(*model, p);
  const QString name = model->addNetworkPort(QString::fromStdString(server.portName()));
  ASSERT_EQ(name.toStdString(), server.portName());
  ASSERT_TRUE(model->canFlash());
  model->startFlash();
  ASSERT_TRUE(model->isFlashing());
  EXPECT_FALSE(model->runTriesUSBJTAGFirst());
  EXPECT_TRUE(model->addNetworkPort("rfc2217://pi-rack-1:4001").isEmpty()); // not during a run
  model->removeNetworkPort(name);
  EXPECT_EQ(model->networkPorts(), QStringList{name});
  ASSERT_TRUE(waitUntilIdle(*model));
  ASSERT_TRUE(model->outcome());
  ASSERT_TRUE(std::holds_alternative<FlashOutcome::Success>(model->outcome()->value))
      << model->output().plainText().toStdString();
  EXPECT_TRUE(flashHoldsPlan(board.flash(), p, ESPChip::esp32));
  EXPECT_TRUE(
      model->output().plainText().contains("--- Flashing Sensor on " + name + " (network) ---"));

  // Nothing listens on that port: refused, said as the engine says it.
  const std::string closed = "127.0.0.1:" + std::to_string(freeTCPPort());
  model->addNetworkPort(QString::fromStdString("rfc2217://" + closed));
  model->startFlash();
  ASSERT_TRUE(waitUntilIdle(*model));
  const std::string refused = FlashPortError::connectionRefused(closed).message();
  EXPECT_EQ(model->outcome(), (FlashOutcome{FlashOutcome::Failure{refused}}));
  EXPECT_EQ(model->stageText(), "Failed");
  EXPECT_TRUE(model->output().plainText().endsWith(QString::fromStdString("✕ " + refused + "\n")));
  EXPECT_EQ(model->statistics(), (FlashStatistics{1, 1, model->statistics().lastSeconds}));
}
