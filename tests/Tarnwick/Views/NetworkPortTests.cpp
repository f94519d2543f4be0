// Adding a port on another computer as a user does: the port picker's entries, and the dialog
// that checks the host and port as they are typed or pasted.
#include <QClipboard>
#include <QFrame>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "Localization/Language.hpp"
#include "Tarnwick/Views/NetworkPortDialog.hpp"
#include "Tarnwick/Views/WindowFixture.hpp"

namespace tarnwick::testing {
namespace {

enum class Marked { none, host, port };

TEST(NetworkPortDialog, ChecksWhatIsTypedOrPasted) {
  LanguageOverride english(Language::en);
  struct Case {
    const char* host;
    const char* port;
    bool pasted;      // else typed key by key
    const char* name; // empty: Add stays off
    const char* problem;
    Marked marked;
    const char* portShown; // the port field, which follows a port given with the host
  };
  const Case cases[] = {
      {"rack3.local", "2000", false, "rfc2217://rack3.local:2000", "", Marked::none, "2000"},
      {"rfc2217://pi-rack-1:4001", "", true, "rfc2217://pi-rack-1:4001", "", Marked::none, "4001"},
      {"RFC2217://pi-rack-1:4001\n", "", true, "rfc2217://pi-rack-1:4001", "", Marked::none,
       "4001"},
      {"pi-rack-1:4001", "2000", false, "rfc2217://pi-rack-1:4001", "", Marked::none, "4001"},
      {" 192.168.1.20 ", "2000", true, "rfc2217://192.168.1.20:2000", "", Marked::none, "2000"},
      {"fd00::3", "2000", false, "rfc2217://[fd00::3]:2000", "", Marked::none, "2000"},
      {"[fd00::3]:2000", "", true, "rfc2217://[fd00::3]:2000", "", Marked::none, "2000"},
      {"[fd00::3]", "2000", false, "rfc2217://[fd00::3]:2000", "", Marked::none, "2000"},
      // Half typed: nothing to add yet, and nothing wrong either.
      {"rack3.local", "", false, "", "", Marked::none, ""},
      {"", "2000", false, "", "", Marked::none, "2000"},
      {"rfc2217://pi-rack-1:", "2000", false, "", "", Marked::none, ""},
      {"pi rack", "2000", false, "", "'pi rack' is not a host name or IP address.", Marked::host,
       "2000"},
      {"10.0.0", "2000", false, "", "'10.0.0' is not a host name or IP address.", Marked::host,
       "2000"},
      {"fe80::1%eth0", "2000", false, "", "'fe80::1%eth0' is not a host name or IP address.",
       Marked::host, "2000"},
      {"[fd00::3", "2000", false, "", "'[fd00::3' is not a host name or IP address.", Marked::host,
       "2000"},
      {"rack3.local", "70000", false, "", "The TCP port is a number from 1 to 65535.", Marked::port,
       "70000"},
      {"rack3.local", "20a0", false, "", "The TCP port is a number from 1 to 65535.", Marked::port,
       "20a0"},
      // A port given with the host is marked there.
      {"rfc2217://pi-rack-1:0", "", true, "", "The TCP port is a number from 1 to 65535.",
       Marked::host, "0"},
      {"socket://pi-rack-1:4001", "", true, "",
       "Tarnwick needs an RFC 2217 port: rfc2217://HOST:PORT, or the host and port alone.",
       Marked::host, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.host) + " / " + c.port);
    NetworkPortDialog dialog;
    dialog.show();
    QTest::keyClicks(dialog.portField(), c.port);
    dialog.hostField()->setFocus();
    if (c.pasted) {
      QGuiApplication::clipboard()->setText(c.host);
      QTest::keySequence(dialog.hostField(), QKeySequence::Paste);
    } else {
      QTest::keyClicks(dialog.hostField(), c.host);
    }
    EXPECT_EQ(dialog.portName().toStdString(), c.name);
    EXPECT_EQ(dialog.addButton()->isEnabled(), *c.name != '\0');
    EXPECT_EQ(dialog.problem().toStdString(), c.problem);
    EXPECT_EQ(dialog.isMarked(dialog.hostField()), c.marked == Marked::host);
    EXPECT_EQ(dialog.isMarked(dialog.portField()), c.marked == Marked::port);
    EXPECT_EQ(dialog.portField()->text().toStdString(), c.portShown);
    // Enter adds only a port that can be opened.
    QTest::keyClick(dialog.hostField(), Qt::Key_Return);
    EXPECT_EQ(dialog.result() == QDialog::Accepted, *c.name != '\0');
    EXPECT_EQ(dialog.isVisible(), *c.name == '\0');
  }

  // The port typed into its own field comes back once the host no longer brings one.
  NetworkPortDialog dialog;
  dialog.show();
  QTest::keyClicks(dialog.portField(), "2000");
  QTest::keyClicks(dialog.hostField(), "pi-rack-1:4001");
  EXPECT_FALSE(dialog.portField()->isEnabled());
  for (int i = 0; i < 5; ++i)
    QTest::keyClick(dialog.hostField(), Qt::Key_Backspace);
  EXPECT_TRUE(dialog.portField()->isEnabled());
  EXPECT_EQ(dialog.portField()->text(), "2000");
  EXPECT_EQ(dialog.portName(), "rfc2217://pi-rack-1:2000");
  // Escape answers Cancel.
  QTest::keyClick(dialog.hostField(), Qt::Key_Escape);
  EXPECT_EQ(dialog.result(), QDialog::Rejected);
  EXPECT_FALSE(dialog.isVisible());

  // Every language says what is wrong in its own words.
  std::set<QString> problems;
  for (Language language : allLanguages) {
    LanguageOverride override(language);
    NetworkPortDialog translated;
    translated.hostField()->setText("pi rack");
    EXPECT_TRUE(translated.problem().contains("pi rack"));
    problems.insert(translated.problem());
  }
  EXPECT_EQ(problems.size(), 5u);
}

/// Chooses the picker's row `row` as from its open list: the closed picker's keys step over
/// the entries that are no ports.
void chooseFromList(QComboBox* picker, int row) {
  ASSERT_GE(row, 0);
  picker->showPopup();
  picker->view()->setCurrentIndex(picker->model()->index(row, 0));
  QTest::keyClick(picker->view(), Qt::Key_Return);
}

TEST_F(WindowTest, PortPickerAddsAndRemovesNetworkPorts) {
  LanguageOverride english(Language::en);
  MainWindow& w = open();
  PortPicker* picker = w.portPicker();
  load(*model, espProduct(ESPChip::esp32, 16 * 1024));
  model->portsChanged({{"/dev/ttyS0", {}, {}, {}}});
  model->setSelectedPath("/dev/ttyS0");
  EXPECT_TRUE(w.noBoardBanner()->isVisible());
  const int add = picker->rowOf(PortPicker::Command::addNetworkPort);
  ASSERT_GE(add, 0);
  EXPECT_EQ(picker->itemText(add), "Add Network Port…");
  EXPECT_EQ(picker->rowOf(PortPicker::Command::removeNetworkPort), -1);

  // Stepping through the closed picker stays on the ports.
  picker->setFocus();
  for (int key : {Qt::Key_Down, Qt::Key_End, Qt::Key_PageDown, Qt::Key_A})
    QTest::keyClick(picker, static_cast<Qt::Key>(key));
  EXPECT_EQ(picker->networkPortDialog(), nullptr);
  EXPECT_EQ(model->selectedPath(), "/dev/ttyS0");

  // Chosen from the list: the dialog asks, and Escape leaves everything as it was.
  chooseFromList(picker, add);
  ASSERT_NE(picker->networkPortDialog(), nullptr);
  EXPECT_TRUE(picker->networkPortDialog()->isVisible());
  EXPECT_EQ(picker->currentData().toString(), "/dev/ttyS0");
  QTest::keyClick(picker->networkPortDialog()->hostField(), Qt::Key_Escape);
  EXPECT_EQ(picker->networkPortDialog(), nullptr);
  EXPECT_TRUE(model->networkPorts().isEmpty());

  // Typed and confirmed with Enter: listed after the local port, marked, selected, flashable.
  chooseFromList(picker, add);
  ASSERT_NE(picker->networkPortDialog(), nullptr);
  QTest::keyClicks(picker->networkPortDialog()->hostField(), "pi-rack-1:4001");
  QTest::keyClick(picker->networkPortDialog()->hostField(), Qt::Key_Return);
  EXPECT_EQ(model->networkPorts(), QStringList{"rfc2217://pi-rack-1:4001"});
  EXPECT_EQ(picker->currentText(), "rfc2217://pi-rack-1:4001 (network)");
  EXPECT_EQ(picker->currentIndex(), 1);
  EXPECT_FALSE(picker->itemIcon(1).isNull());
  EXPECT_TRUE(picker->itemIcon(0).isNull());
  EXPECT_FALSE(w.noBoardBanner()->isVisible());
  EXPECT_TRUE(w.flashButton()->isEnabled());

  // Forgotten again from the same list; the selection falls back, and the banner comes back.
  const int remove = picker->rowOf(PortPicker::Command::removeNetworkPort);
  EXPECT_EQ(picker->itemText(remove), "Remove Network Port");
  chooseFromList(picker, remove);
  EXPECT_TRUE(model->networkPorts().isEmpty());
  EXPECT_EQ(picker->currentText(), "Select a port…");
  EXPECT_TRUE(w.noBoardBanner()->isVisible());
  EXPECT_FALSE(w.flashButton()->isEnabled());
}

// A port a serial server announces is listed and marked as a network port under the name it is
// announced under; it is never chosen for the user (not even with automatic flashing), only
// when the user chooses it, and it cannot be forgotten, as it is not the user's own.
TEST_F(WindowTest, PortPickerOffersAnnouncedPorts) {
  LanguageOverride english(Language::en);
  MainWindow& w = open();
  PortPicker* picker = w.portPicker();
  load(*model, espProduct(ESPChip::esp32, 16 * 1024));
  model->setAutoFlash(true);
  const std::string announced = "rfc2217://10.217.0.1:40817";
  model->portsChanged({{"/dev/ttyS0", {}, {}, {}}});
  model->setSelectedPath("/dev/ttyS0");
  model->portsChanged({{"/dev/ttyS0", {}, {}, {}}, {announced, "bench-one", {}, {}}});
  EXPECT_EQ(model->selectedPath(), "/dev/ttyS0");
  EXPECT_EQ(model->state(), FlasherState::idle);
  const int row = picker->findData(QString::fromStdString(announced));
  ASSERT_GE(row, 0);
  EXPECT_EQ(picker->itemText(row),
            "\u201C" "bench-one\u201D on the network (rfc2217://10.217.0.1:40817)");
  EXPECT_FALSE(picker->itemIcon(row).isNull());

  chooseFromList(picker, row);
  EXPECT_EQ(model->selectedPath(), QString::fromStdString(announced));
  EXPECT_EQ(picker->rowOf(PortPicker::Command::removeNetworkPort), -1);
  EXPECT_TRUE(w.flashButton()->isEnabled());
  // Added by hand as well: still one entry.
  model->addNetworkPort(QString::fromStdString(announced));
  EXPECT_EQ(model->ports().size(), 2u);
}

} // namespace
} // namespace tarnwick::testing
