// The help names what the window shows: its bold names are texts of the interface and its
// shortcuts are the ones the actions really have, written as the menus write them, in every
// language with Qt's own translations loaded as the program loads them.
#include <QAbstractButton>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableView>
#include <QToolButton>
#include <functional>
#include <set>

#include "Localization/EngineTexts.hpp"
#include "Localization/Help.hpp"
#include "Localization/MainWindowTexts.hpp"
#include "Localization/PortTexts.hpp"
#include "Localization/RunTexts.hpp"
#include "Localization/StationWindowTexts.hpp"
#include "Localization/WindowTexts.hpp"
#include "Tarnwick/Views/HelpWindow.hpp"
#include "Tarnwick/Views/LogView.hpp"
#include "Tarnwick/Views/QtTranslations.hpp"
#include "Tarnwick/Views/ViewSupport.hpp"
#include "Tarnwick/Views/WindowFixture.hpp"

namespace tarnwick::testing {
namespace {

/// A text as the reader sees it: no mnemonic marks, no-break spaces as spaces.
QString seen(const QString& shown) {
  QString text = withoutMnemonic(shown);
  text.replace(QChar(0x00A0), u' ');
  text.replace(QChar(0x202F), u' ');
  return text.trimmed();
}

QString seen(const std::string& text) { return seen(QString::fromStdString(text)); }

/// Every text a window and its children show, with the shortcuts their actions name.
void collectTexts(QWidget* root, std::set<QString>& texts) {
  auto add = [&](const QString& text) {
    QString plain = seen(text);
    if (plain.isEmpty()) return;
    texts.insert(plain);
    // Composed lines name their parts: "Flashed 3 · Failed 1", "Flashing failed: reason".
    for (QString part : plain.split(QStringLiteral(" · "))) {
      part.remove(QRegularExpression(QStringLiteral("[\\s:]*\\d+$")));
      texts.insert(part);
      texts.insert(part.section(u':', 0, 0).trimmed());
    }
  };
  add(root->windowTitle());
  for (QWidget* widget : root->findChildren<QWidget*>()) {
    if (auto* label = qobject_cast<QLabel*>(widget)) add(label->text());
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) add(button->text());
    if (auto* group = qobject_cast<QGroupBox*>(widget)) add(group->title());
    if (auto* field = qobject_cast<QLineEdit*>(widget)) add(field->placeholderText());
    if (auto* picker = qobject_cast<QComboBox*>(widget))
      for (int i = 0; i < picker->count(); ++i)
        add(picker->itemText(i));
    if (auto* list = qobject_cast<QListWidget*>(widget))
      for (int i = 0; i < list->count(); ++i)
        add(list->item(i)->text());
    if (auto* table = qobject_cast<QTableView*>(widget); table && table->model())
      for (int i = 0; i < table->model()->columnCount(); ++i)
        add(table->model()->headerData(i, Qt::Horizontal).toString());
  }
  for (QAction* action : root->findChildren<QAction*>()) {
    add(action->text());
    for (const QKeySequence& keys : action->shortcuts())
      add(keys.toString(QKeySequence::NativeText));
  }
}

/// Every text of a topic as written, emphasis marks included.
std::vector<std::string> writtenTexts(const HelpTopic& topic) {
  std::vector<std::string> texts = {topic.title};
  for (const HelpBlock& block : topic.blocks) {
    std::visit(
        [&](const auto& content) {
          using Block = std::decay_t<decltype(content)>;
          if constexpr (std::is_same_v<Block, HelpBlock::bullets>) {
            texts.insert(texts.end(), content.items.begin(), content.items.end());
          } else if constexpr (std::is_same_v<Block, HelpBlock::table>) {
            for (const HelpRow& row : content.rows) {
              texts.push_back(row.key);
              texts.push_back(row.value);
            }
          } else if constexpr (std::is_same_v<Block, HelpBlock::screenshot>) {
            texts.push_back(content.caption);
          } else {
            texts.push_back(content.text);
          }
        },
        block.value);
  }
  return texts;
}

class InterfaceNamesTest : public WindowTest {
protected:
  /// Runs `check` on a window in each of `languages`, Qt's own texts loaded for it as the program
  /// loads them, and puts Qt's English back at the end.
  void inEachLanguage(std::initializer_list<Language> languages,
                      const std::function<void(MainWindow&)>& check) {
    for (Language language : languages) {
      SCOPED_TRACE(std::string(code(language)));
      LanguageOverride guard(language);
      if (!installQtTranslations(language)) {
        ADD_FAILURE() << "Qt's translations are missing: install qt6-translations-l10n "
                         "(scripts/setup.sh)";
        break;
      }
      check(open());
      window.reset();
    }
    installQtTranslations(Language::en);
  }

  /// The window in the states the help describes: a product with files, a network port chosen,
  /// the settings of both board families, the help's own topic list.
  std::set<QString> interfaceTexts() {
    std::set<QString> texts;
    load(*model, espProduct(ESPChip::esp32, 4096));
    model->addNetworkPort("rfc2217://rack3.local:2000");
    MainWindow& window = *this->window;
    collectTexts(&window, texts);
    SettingsSheet* sheet = window.settingsSheet();
    collectTexts(sheet, texts);
    Product arduino = model->product();
    arduino.target = Target::avr(AVRBoard::uno);
    model->setProduct(arduino);
    collectTexts(&window, texts);
    collectTexts(sheet, texts);
    collectTexts(window.helpWindow(), texts);
    return texts;
  }
};

/// The shortcuts of the window named in a text: a modifier joined by "+" to the rest, up to a
/// space or a mark, or a function key. Keys typed into a terminal are written as code and are not
/// the window's.
std::vector<QString> shortcutsIn(QString text) {
  static const QRegularExpression code(QStringLiteral("`[^`]*`"));
  static const QRegularExpression named(
      QStringLiteral("\\b(?:Ctrl|Strg|Control|Shift|Umschalt|Maj|Mayúsculas|Alt)\\+[^\\s(),;]*"
                     "[^\\s(),;.]|\\bF\\d{1,2}\\b"));
  text.remove(code);
  std::vector<QString> found;
  for (const auto& match : named.globalMatch(text))
    found.push_back(match.captured());
  return found;
}

TEST_F(InterfaceNamesTest, EveryBoldNameInTheHelpIsATextTheInterfaceShows) {
  inEachLanguage(
      {Language::en, Language::nl, Language::de, Language::fr, Language::es}, [&](MainWindow&) {
        std::set<QString> shown = interfaceTexts();
        // Messages the help quotes, with its own examples; the window shows them after failed runs.
        const std::vector<QString> messages = {
            seen(L10n::Errors::portOpenFailed("/dev/ttyUSB0", "Permission denied")),
            seen(L10n::Errors::portBusy("…")),
            seen(L10n::Errors::bootloaderPortNotFound()),
        };
        // The status line after a failed run, and the Flash button while a run goes.
        shown.insert(seen(L10n::Panel::flashingFailed()));
        shown.insert(seen(L10n::Header::stop()));
        // The station's button after its first Stop.
        shown.insert(seen(L10n::StationWindow::stopNow()));
        auto isShown = [&](const QString& name) {
          if (shown.count(name) != 0) return true;
          // A message may be quoted by its first sentences.
          return std::any_of(messages.begin(), messages.end(), [&](const QString& message) {
            return message == name || message.startsWith(name + u' ');
          });
        };
        static const QRegularExpression bold(QStringLiteral("\\*\\*(.+?)\\*\\*"));
        for (const HelpTopic& topic : L10n::Help::topics()) {
          for (const std::string& text : writtenTexts(topic)) {
            for (const auto& match : bold.globalMatch(QString::fromStdString(text))) {
              const QString name = seen(match.captured(1));
              EXPECT_TRUE(isShown(name)) << topic.id << ": **" << name.toStdString() << "**";
            }
          }
        }
      });
}

// Every shortcut the help names is one an action of the window really has, written as the menus
// show it in that language; the shortcut table lists them all; each tooltip that names a
// shortcut names its command's.
TEST_F(InterfaceNamesTest, TheHelpAndTheTooltipsNameTheActionsShortcutsInEveryLanguage) {
  inEachLanguage(
      {Language::en, Language::nl, Language::de, Language::fr, Language::es}, [&](MainWindow& w) {
        std::set<QString> bound;
        auto shortcutOf = [&](const std::string& command) {
          for (QAction* action : w.findChildren<QAction*>())
            if (seen(action->text()) == seen(command) && !action->shortcut().isEmpty())
              return action->shortcut().toString(QKeySequence::NativeText);
          ADD_FAILURE() << "no action " << command;
          return QString();
        };
        for (QAction* action : w.findChildren<QAction*>())
          for (const QKeySequence& keys : action->shortcuts())
            bound.insert(keys.toString(QKeySequence::NativeText));

        std::set<QString> tabled;
        for (const HelpTopic& topic : L10n::Help::topics()) {
          for (const std::string& text : writtenTexts(topic))
            for (const QString& keys : shortcutsIn(seen(text)))
              EXPECT_EQ(bound.count(keys), 1u) << topic.id << ": " << keys.toStdString();
          if (topic.id != "shortcuts") continue;
          for (const HelpBlock& block : topic.blocks)
            if (auto* table = std::get_if<HelpBlock::table>(&block.value))
              for (const HelpRow& row : table->rows)
                for (const QString& keys : seen(row.key).split(QStringLiteral(" / ")))
                  tabled.insert(keys);
        }
        auto joined = [](const std::set<QString>& keys) {
          return QStringList(keys.begin(), keys.end()).join(QStringLiteral(", ")).toStdString();
        };
        EXPECT_EQ(joined(tabled), joined(bound));

        struct Tooltip {
          std::string text;
          std::string command;
        };
        const std::vector<Tooltip> tooltips = {
            {L10n::Header::flashTooltip(), L10n::State::flash()},
            {L10n::Header::stopTooltip(), L10n::State::flash()},
            // Ctrl+R starts and stops the station too, in station mode.
            {L10n::StationWindow::startTooltip(), L10n::State::flash()},
            {L10n::StationWindow::stopTooltip(), L10n::State::flash()},
            {L10n::StationWindow::stopNowTooltip(), L10n::State::flash()},
            {L10n::Footer::showLogTooltip(), L10n::Footer::showLog()},
            {L10n::Footer::saveTooltip(), L10n::Menu::saveLog()},
            {L10n::Footer::clearLogTooltip(), L10n::Menu::clearLog()},
            {L10n::Find::nextTooltip(), L10n::Find::findNext()},
            {L10n::Find::previousTooltip(), L10n::Find::findPrevious()},
        };
        for (const Tooltip& tooltip : tooltips) {
          const std::vector<QString> named = shortcutsIn(seen(tooltip.text));
          EXPECT_EQ(named, std::vector<QString>{shortcutOf(tooltip.command)}) << tooltip.text;
        }
      });
}

// Qt's own texts speak the program's language: the log's context menu and the file dialog (as
// Qt draws it where the desktop offers none) read differently from English in every other one.
TEST_F(InterfaceNamesTest, QtsOwnTextsSpeakTheChosenLanguage) {
  auto qtTexts = [](MainWindow& w) {
    QStringList texts;
    std::unique_ptr<QMenu> menu(w.findChild<LogView*>()->createStandardContextMenu());
    for (QAction* action : menu->actions())
      if (!action->isSeparator()) texts << seen(action->text());
    QFileDialog dialog;
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    for (QLabel* label : dialog.findChildren<QLabel*>())
      if (!label->text().isEmpty()) texts << seen(label->text());
    for (QPushButton* button : dialog.findChildren<QPushButton*>())
      texts << seen(button->text());
    return texts;
  };
  QStringList english;
  inEachLanguage({Language::en}, [&](MainWindow& w) { english = qtTexts(w); });
  ASSERT_GE(english.size(), 4);
  inEachLanguage({Language::nl, Language::de, Language::fr, Language::es}, [&](MainWindow& w) {
    const QStringList translated = qtTexts(w);
    ASSERT_EQ(translated.size(), english.size());
    for (qsizetype i = 0; i < english.size(); ++i)
      EXPECT_NE(translated[i], english[i]) << english[i].toStdString();
  });
}

} // namespace
} // namespace tarnwick::testing
