// The window as assistive technology meets it: every control named in the user's language, read
// through Qt's accessibility interfaces as a screen reader reads them.
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTimer>
#include <functional>
#include <map>

#include "FlashCore/ProductPackage.hpp"
#include "Localization/Language.hpp"
#include "Localization/MainWindowTexts.hpp"
#include "Simulator/SimulatedESP.hpp"
#include "Tarnwick/Model/StationModel.hpp"
#include "Tarnwick/Views/AccessibilityProbe.hpp"
#include "Tarnwick/Views/AddressField.hpp"
#include "Tarnwick/Views/LogFindBar.hpp"
#include "Tarnwick/Views/Mnemonics.hpp"
#include "Tarnwick/Views/NetworkPortDialog.hpp"
#include "Tarnwick/Views/PortPicker.hpp"
#include "Tarnwick/Views/StationPanel.hpp"
#include "Tarnwick/Views/ViewSupport.hpp"
#include "Tarnwick/Views/WindowFixture.hpp"

namespace tarnwick::testing {
namespace {

class AccessibilityTest : public WindowTest {
protected:
  void SetUp() override {
    WindowTest::SetUp();
    QAccessible::setActive(true);
  }

  /// The window with a product, a simulated board plugged in and a product in Open Recent, so
  /// every kind of entry is there.
  MainWindow& openFull() {
    MainWindow& w = open();
    auto product = espProduct(ESPChip::esp32, 4096);
    product.product.name = "R&D lamp";
    ProductPackage::write({product.product, product.files}, path("R&D lamp.twflash"));
    model->openProduct(path("R&D lamp.twflash"));
    model->plugInSimulatedBoard(Target::esp(ESPChip::esp32));
    w.setLogShown(true);
    w.findBar()->open();
    // An address typed wrong, with its mark, and what a run shows.
    auto* address = w.fileList()->cellControl<AddressField>(0, FileListPanel::addressColumn);
    address->setFocus();
    address->selectAll();
    QTest::keyClicks(address, "0x1G");
    w.progressBar()->show();
    return w;
  }
};

/// Runs `inside` on the modal dialog `open` shows, once it shows; `inside` closes it.
void whileModal(const std::function<void()>& open, const std::function<void(QWidget*)>& inside) {
  bool seen = false;
  std::function<void()> look;
  look = [&] {
    if (QWidget* dialog = QApplication::activeModalWidget()) {
      seen = true;
      inside(dialog);
    } else {
      QTimer::singleShot(10, look);
    }
  };
  QTimer::singleShot(0, look);
  open();
  EXPECT_TRUE(seen);
}

// Every window, dialog and menu, walked as a screen reader walks them, in two languages: each
// control has a name (and names that change with the language do change).
TEST_F(AccessibilityTest, EveryControlOfEveryWindowIsNamedInTheUsersLanguage) {
  std::map<Language, std::map<QString, QString>> names;
  std::set<QString> frenchShown;
  for (Language language : {Language::en, Language::fr}) {
    SCOPED_TRACE(std::string(code(language)));
    LanguageOverride guard(language);
    MainWindow& w = openFull();
    std::vector<AccessibleNode> nodes;
    // Reads `window` as it is now: its names, and in French the texts it shows (menus included),
    // for the comparison below.
    auto read = [&](QWidget* window) {
      for (AccessibleNode& node : accessibleNodes(window))
        nodes.push_back(node);
      if (language != Language::fr) return;
      frenchShown.merge(shownTexts(window));
      for (QMenu* menu : window->findChildren<QMenu*>())
        frenchShown.merge(shownTexts(menu));
    };
    read(&w);
    // The station in the window, with the row of a board it flashed; the address typed wrong is
    // mended first.
    auto* address = w.fileList()->cellControl<AddressField>(0, FileListPanel::addressColumn);
    address->selectAll();
    QTest::keyClicks(address, "0x1000");
    QTest::keyClick(address, Qt::Key_Return);
    ASSERT_FALSE(model->blockingFinding()) << *model->blockingFinding();
    w.setStationMode(true);
    w.station().setAlsoConnected(true);
    w.station().start();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
          const auto& rows = w.station().rows();
          return !rows.empty() && rows.front().result != StationRow::Result::running;
        },
        60000));
    w.station().stop();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !w.station().isRunning(); }, 60000));
    w.stationPanel()->table()->selectRow(0);
    read(&w);
    w.setStationMode(false);
    SettingsSheet* sheet = w.settingsSheet();
    sheet->show();
    for (const Target& target : {Target::esp(), Target::avr(AVRBoard::uno)}) {
      Product product = model->product();
      product.target = target;
      model->setProduct(product);
      read(sheet);
    }
    HelpWindow* help = w.helpWindow();
    help->show();
    read(help);
    // The dialogs that wait for an answer are read while they wait.
    whileModal([&] { w.askSaveChanges(); },
               [&](QWidget* dialog) {
                 read(dialog);
                 dialog->close();
               });
    whileModal([&] { w.showNotes(); },
               [&](QWidget* dialog) {
                 read(dialog);
                 dialog->close();
               });
    // The dialog that adds a board on another computer, with a reason shown.
    w.portPicker()->askForNetworkPort();
    NetworkPortDialog* networkPort = w.portPicker()->networkPortDialog();
    ASSERT_NE(networkPort, nullptr);
    QTest::keyClicks(networkPort->findChild<QLineEdit*>("networkHost"), "bad host");
    read(networkPort);
    networkPort->reject();

    for (const AccessibleNode& node : nodes) {
      EXPECT_TRUE(!node.needsName || !node.name.isEmpty()) << node.where.toStdString();
      names[language][node.where] = node.name;
    }
    help->close();
    window.reset();
  }
  // A name that reads the same in French as in English is one the French window shows too: a
  // file, a chip, a word both languages share, a row number. A name written in English alone is
  // not.
  for (const auto& [where, english] : names[Language::en]) {
    auto french = names[Language::fr].find(where);
    static const QRegularExpression number(QStringLiteral("^\\d+$"));
    if (french == names[Language::fr].end() || french->second != english || english.isEmpty() ||
        number.match(english).hasMatch())
      continue;
    EXPECT_EQ(frenchShown.count(english), 1u)
        << where.toStdString() << ": " << english.toStdString();
  }
}

/// The controls of `window` that Tab should reach: shown, enabled, taking focus by Tab.
std::vector<QWidget*> tabbable(QWidget* window) {
  std::vector<QWidget*> controls;
  for (QWidget* widget : window->findChildren<QWidget*>())
    if (widget->isVisible() && widget->isEnabled() && widget->window() == window &&
        (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr)
      controls.push_back(widget);
  return controls;
}

std::string nameOf(QWidget* widget) {
  if (widget == nullptr) return "(none)";
  QAccessibleInterface* node = QAccessible::queryAccessibleInterface(widget);
  return std::string(widget->metaObject()->className()) + " '" +
         (node ? node->text(QAccessible::Name) : QString()).toStdString() + "'";
}

/// The controls focus visits pressing `key` from `first` until it comes back to it.
std::vector<QWidget*> tabRound(QWidget* first, Qt::Key key, std::size_t limit) {
  first->setFocus(Qt::TabFocusReason);
  EXPECT_EQ(QApplication::focusWidget(), first) << nameOf(QApplication::focusWidget());
  std::vector<QWidget*> stops = {QApplication::focusWidget()};
  // Within a control Tab may step first (the links of the help's page); it must leave in the end.
  int inside = 0;
  while (stops.size() <= limit) {
    QTest::keyClick(QApplication::focusWidget(), key);
    QWidget* now = QApplication::focusWidget();
    if (now == stops.back()) {
      if (++inside < 100) continue;
      ADD_FAILURE() << "Tab never leaves " << nameOf(now);
      break;
    }
    inside = 0;
    if (now == stops.front()) break;
    stops.push_back(now);
  }
  return stops;
}

/// Whether `next` comes after `previous` in reading order: inside it, below it, or on the same
/// line to its right.
bool readsAfter(QWidget* previous, QWidget* next) {
  QWidget* window = previous->window();
  const QRect a(previous->mapTo(window, QPoint(0, 0)), previous->size());
  const QRect b(next->mapTo(window, QPoint(0, 0)), next->size());
  const int slack = 4;
  if (a.contains(b)) return true;
  if (b.top() >= a.bottom() - slack) return true;
  const bool sameLine = b.top() < a.bottom() && a.top() < b.bottom();
  return sameLine && b.left() >= a.right() - slack;
}

/// Tab visits every control of `window` once, in reading order, and Shift+Tab the same way
/// back.
void expectTabOrder(QWidget* window) {
  const std::vector<QWidget*> controls = tabbable(window);
  ASSERT_FALSE(controls.empty());
  std::vector<QWidget*> forward = tabRound(controls.front(), Qt::Key_Tab, controls.size() * 2);
  // Start where reading starts: at the stop every other one reads after.
  auto start = std::find_if(forward.begin(), forward.end(), [&](QWidget* stop) {
    return std::all_of(forward.begin(), forward.end(),
                       [&](QWidget* other) { return other == stop || readsAfter(stop, other); });
  });
  EXPECT_NE(start, forward.end()) << "no control comes first";
  if (start != forward.end()) std::rotate(forward.begin(), start, forward.end());
  std::vector<std::string> visited, expected;
  for (QWidget* stop : forward)
    visited.push_back(nameOf(stop));
  EXPECT_EQ(std::set<QWidget*>(forward.begin(), forward.end()).size(), forward.size());
  for (QWidget* control : controls)
    EXPECT_EQ(std::count(forward.begin(), forward.end(), control), 1)
        << nameOf(control) << " in " << ::testing::PrintToString(visited);
  for (std::size_t i = 1; i < forward.size(); ++i)
    EXPECT_TRUE(readsAfter(forward[i - 1], forward[i]))
        << nameOf(forward[i - 1]) << " then " << nameOf(forward[i]);
  std::vector<QWidget*> backward = tabRound(forward.front(), Qt::Key_Backtab, controls.size() * 2);
  std::reverse(backward.begin() + 1, backward.end());
  EXPECT_EQ(backward, forward);
}

// With the keyboard alone every control is reached, once each, in the order it is read: the
// main window with its files, the log and the find bar, the settings and the help.
TEST_F(AccessibilityTest, TabVisitsEveryControlOnceInReadingOrder) {
  LanguageOverride english(Language::en);
  MainWindow& w = open();
  load(*model, espProduct(ESPChip::esp32, 4096));
  w.setLogShown(true);
  w.findBar()->open();
  QTest::keyClicks(w.findBar()->field(), "x");
  w.resize(1100, 800);
  expectTabOrder(&w);
  w.setStationMode(true);
  expectTabOrder(&w);
  w.setStationMode(false);

  w.portPicker()->askForNetworkPort();
  NetworkPortDialog* networkPort = w.portPicker()->networkPortDialog();
  ASSERT_NE(networkPort, nullptr);
  QApplication::setActiveWindow(networkPort);
  QTest::keyClicks(networkPort->findChild<QLineEdit*>("networkHost"), "localhost");
  QTest::keyClicks(networkPort->findChild<QLineEdit*>("networkPort"), "4000");
  expectTabOrder(networkPort);
  networkPort->reject();

  SettingsSheet* sheet = w.settingsSheet();
  sheet->show();
  QApplication::setActiveWindow(sheet);
  expectTabOrder(sheet);
  sheet->hide();

  HelpWindow* help = w.helpWindow();
  help->show();
  QApplication::setActiveWindow(help);
  expectTabOrder(help);
  help->close();
}

// Without a mouse: Tab reaches a file's controls and so selects its row, which Delete then
// removes; in the help Ctrl+F goes to the search, the arrow keys choose among the topics found
// and Return takes the focus to the page, named after the topic shown.
TEST_F(AccessibilityTest, FilesAreRemovedAndHelpTopicsChosenWithTheKeyboardAlone) {
  LanguageOverride english(Language::en);
  MainWindow& w = open();
  load(*model, espProduct(ESPChip::esp32, 4096));
  const std::vector<std::string> before = fileNames();
  ASSERT_GE(before.size(), 2u);
  QTableWidget* table = w.fileList()->table();
  table->setFocus(Qt::TabFocusReason);
  // The second row's check box: after the first row's box, kind and address.
  for (int i = 0; i < 4; ++i)
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  ASSERT_EQ(QApplication::focusWidget(),
            w.fileList()->cellControl<QCheckBox>(1, FileListPanel::enabledColumn));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
  std::vector<std::string> expected = before;
  expected.erase(expected.begin() + 1);
  EXPECT_EQ(fileNames(), expected);

  HelpWindow* help = w.helpWindow();
  help->show();
  QApplication::setActiveWindow(help);
  ASSERT_TRUE(QTest::qWaitForWindowActive(help));
  auto* search = help->findChild<QLineEdit*>("helpSearch");
  auto* topics = help->findChild<QListWidget*>("helpTopics");
  auto* page = help->findChild<QWidget*>("helpPage");
  page->setFocus();
  QTest::keyClick(page, Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(QApplication::focusWidget(), search);
  QTest::keyClicks(search, "board");
  ASSERT_GE(topics->count(), 2);
  const int first = topics->currentRow();
  QTest::keyClick(search, Qt::Key_Down);
  EXPECT_EQ(topics->currentRow(), first + 1);
  EXPECT_EQ(QApplication::focusWidget(), search);
  QTest::keyClick(search, Qt::Key_Up);
  EXPECT_EQ(topics->currentRow(), first);
  QTest::keyClick(search, Qt::Key_Down);
  QTest::keyClick(search, Qt::Key_Return);
  EXPECT_EQ(QApplication::focusWidget(), page);
  EXPECT_EQ(page->accessibleName(), topics->currentItem()->text());
  help->close();
}

/// What is wrong with the mnemonics of `entries`, one menu's: an entry without one, or a letter
/// two entries share.
std::vector<std::string> mnemonicFaults(const QList<QAction*>& entries, const QString& menu) {
  std::vector<std::string> faults;
  std::map<QChar, QString> taken;
  auto take = [&](const QString& title, std::map<QChar, QString>& letters) {
    const auto letter = mnemonicOf(title);
    if (!letter)
      faults.push_back((menu + ": no mnemonic in " + title).toStdString());
    else if (auto [other, fresh] = letters.emplace(*letter, title); !fresh)
      faults.push_back(
          (menu + ": " + title + " and " + other->second + " share " + *letter).toStdString());
  };
  QAction* flash = nullptr;
  for (QAction* entry : entries) {
    if (entry->isSeparator()) continue;
    take(entry->text(), taken);
    if (entry->objectName() == QLatin1String("flashAction")) flash = entry;
  }
  // The flash command's other title meets the same neighbours.
  if (flash != nullptr) {
    std::map<QChar, QString> others = taken;
    others.erase(*mnemonicOf(flash->text()));
    take(qt(L10n::Header::stop()), others);
  }
  return faults;
}

// In every language every menu entry has a mnemonic and no two entries of one menu share it:
// the menu bar, each menu and submenu (products in Open Recent and simulated boards included),
// the log options and the file table's context menu.
TEST_F(AccessibilityTest, EveryMenuEntryHasAMnemonicOfItsOwnInEveryLanguage) {
  for (Language language : allLanguages) {
    SCOPED_TRACE(std::string(code(language)));
    LanguageOverride guard(language);
    MainWindow& w = openFull();
    std::vector<std::string> faults;
    auto check = [&](const QList<QAction*>& entries, const QString& menu) {
      for (const std::string& fault : mnemonicFaults(entries, menu))
        faults.push_back(fault);
    };
    check(w.menuBar()->actions(), QStringLiteral("menu bar"));
    for (QMenu* menu : w.findChildren<QMenu*>())
      check(menu->actions(), withoutMnemonic(menu->title()));
    QList<QAction*> contextMenu;
    for (QAction* action :
         w.fileList()->table()->findChildren<QAction*>(Qt::FindDirectChildrenOnly))
      contextMenu << action;
    ASSERT_EQ(contextMenu.size(), 2);
    check(contextMenu, QStringLiteral("file table"));
    // In the station the flash command starts and stops it, under the station's words.
    w.setStationMode(true);
    for (QMenu* menu : w.findChildren<QMenu*>())
      if (menu->actions().contains(w.flashAction()))
        check(menu->actions(), withoutMnemonic(menu->title()) + " (station)");
    w.setStationMode(false);
    EXPECT_EQ(faults, std::vector<std::string>{});
    window.reset();
  }
}

/// What assistive technology is told while it listens: the changed names and values, with the
/// text it then reads.
class Announcements {
public:
  struct Heard {
    QObject* object;
    QAccessible::Event type;
    QString text;
  };

  Announcements() {
    listening = this;
    previous_ = QAccessible::installUpdateHandler(&Announcements::hear);
  }
  ~Announcements() {
    QAccessible::installUpdateHandler(previous_);
    listening = nullptr;
  }
  Announcements(const Announcements&) = delete;
  Announcements& operator=(const Announcements&) = delete;

  /// The texts announced for `object` as changes of `type`, in order.
  QStringList of(QObject* object, QAccessible::Event type) const {
    QStringList texts;
    for (const Heard& heard : heard_)
      if (heard.object == object && heard.type == type) texts << heard.text;
    return texts;
  }
  void clear() { heard_.clear(); }

private:
  static void hear(QAccessibleEvent* event) {
    if (listening == nullptr) return;
    const QAccessible::Event type = event->type();
    if (type != QAccessible::NameChanged && type != QAccessible::ValueChanged) return;
    QAccessibleInterface* node = event->accessibleInterface();
    if (node == nullptr) return;
    listening->heard_.push_back(
        {event->object(), type,
         node->text(type == QAccessible::NameChanged ? QAccessible::Name : QAccessible::Value)});
  }

  static inline Announcements* listening = nullptr;
  QAccessible::UpdateHandler previous_ = nullptr;
  std::vector<Heard> heard_;
};

// Qt hands changes to listeners only while a platform bridge is active, which the offscreen
// platform has none of: these tests run on a virtual display with the AT-SPI bus
// (tests/support/accessibility-session.sh), as CTest runs them.
class AccessibilityBusTest : public AccessibilityTest {
protected:
  void SetUp() override {
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
      GTEST_SKIP()
          << "needs the accessibility bus: run under tests/support/accessibility-session.sh";
    AccessibilityTest::SetUp();
    ASSERT_TRUE(QTest::qWaitFor([] { return QAccessible::isActive(); }, 10000))
        << "Qt did not join the accessibility bus";
  }
};

// A run reaches a screen reader as it happens: each stage and the end in the status line's name,
// the progress with the file being written in the progress bar's value, the state in the dot's
// name; a failed run with its reason; a new board that automatic flashing is about to take.
TEST_F(AccessibilityBusTest, TheStagesAndTheEndOfARunAndANewBoardAreAnnounced) {
  LanguageOverride english(Language::en);
  // Each change is said once: the same words again would be read out again.
  auto expectSaidOnce = [](const QStringList& names) {
    for (qsizetype i = 1; i < names.size(); ++i)
      EXPECT_NE(names[i], names[i - 1]) << names.join(" | ").toStdString();
  };
  simulator::SimulatedESPOptions paced;
  paced.paceLine = true; // as long as a real line takes, so the progress is seen moving
  simulator::SimulatedESP board(paced);
  simulator::SimulatedESPOptions mute;
  mute.silent = true;
  simulator::SimulatedESP silent(mute);
  MainWindow& w = open({board.path(), silent.path()});
  model->setSelectedPath(QString::fromStdString(board.path()));
  load(*model, espProduct(ESPChip::esp32, 64 * 1024));
  {
    Announcements heard;
    QTest::keyClick(&w, Qt::Key_R, Qt::ControlModifier);
    ASSERT_TRUE(waitUntilIdle(*model, 60000));
    const QStringList status = heard.of(w.statusText(), QAccessible::NameChanged);
    ASSERT_GE(status.size(), 4) << status.join(" | ").toStdString();
    expectSaidOnce(status);
    EXPECT_EQ(status.front(), "Connecting to the bootloader…");
    for (const char* stage : {"Writing bootloader.bin…", "Writing firmware.bin…",
                              "Verifying firmware.bin…", "Restarting the board…"})
      EXPECT_TRUE(status.contains(stage)) << stage << " in " << status.join(" | ").toStdString();
    EXPECT_TRUE(status.back().startsWith("Last flash succeeded · ESP32 · "))
        << status.back().toStdString();

    const QStringList progress = heard.of(w.progressBar(), QAccessible::ValueChanged);
    ASSERT_GE(progress.size(), 3) << progress.join(" | ").toStdString();
    // The percentage alone until the first file is named.
    static const QRegularExpression value(QStringLiteral("^(?:(\\S+), )?(\\d+) %$"));
    int last = -1;
    std::set<QString> files;
    for (const QString& text : progress) {
      const auto match = value.match(text);
      ASSERT_TRUE(match.hasMatch()) << text.toStdString();
      if (match.hasCaptured(1)) files.insert(match.captured(1));
      EXPECT_GE(match.captured(2).toInt(), last) << text.toStdString();
      last = match.captured(2).toInt();
    }
    EXPECT_EQ(last, 100);
    EXPECT_TRUE(files.count("firmware.bin") == 1 && files.size() >= 2)
        << progress.join(" | ").toStdString();
    EXPECT_EQ(w.progressBar()->accessibleName(), "Progress");

    EXPECT_EQ(heard.of(w.statusDot(), QAccessible::NameChanged),
              (QStringList{"Flashing", "Last flash succeeded"}));
  }

  // A board that does not answer: the end names the reason.
  {
    model->setSelectedPath(QString::fromStdString(silent.path()));
    Announcements heard;
    model->startFlash();
    ASSERT_TRUE(waitUntilIdle(*model, 60000));
    const QStringList status = heard.of(w.statusText(), QAccessible::NameChanged);
    ASSERT_FALSE(status.isEmpty());
    expectSaidOnce(status);
    EXPECT_TRUE(status.back().startsWith("Flashing failed: No connection with the bootloader."))
        << status.back().toStdString();
    EXPECT_EQ(heard.of(w.statusDot(), QAccessible::NameChanged).back(), "Last flash failed");
  }

  // Automatic flashing takes a board that is plugged in: it is said before its run starts.
  {
    model->setAutoFlash(true);
    Announcements heard;
    const QString path = model->plugInSimulatedBoard(Target::esp(ESPChip::esp32));
    ASSERT_FALSE(path.isEmpty());
    ASSERT_TRUE(QTest::qWaitFor([&] { return model->isFlashing(); }, 10000));
    ASSERT_TRUE(waitUntilIdle(*model, 60000));
    const QStringList status = heard.of(w.statusText(), QAccessible::NameChanged);
    const QString newBoard = "New board on Simulated ESP32 (" + path + "): flashing automatically";
    ASSERT_TRUE(status.contains(newBoard)) << status.join(" | ").toStdString();
    expectSaidOnce(status);
    EXPECT_EQ(status.indexOf(newBoard) + 1, status.indexOf("Connecting to the bootloader…"));
    EXPECT_TRUE(status.back().startsWith("Last flash succeeded")) << status.back().toStdString();
  }
}

} // namespace
} // namespace tarnwick::testing
