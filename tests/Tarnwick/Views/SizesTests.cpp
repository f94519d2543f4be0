// The windows with a large font, as at 150 % or on a screen scaled twice: every control at least
// as large as it asks to be, no title or header cut. Measured with the fonts actually in use, so
// the test holds whatever fonts the machine has.
#include <cerrno>
#include <cstring>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QProgressBar>
#include <QSpinBox>
#include <QStyle>
#include <QTableView>

#include "Localization/GeneralTexts.hpp"
#include "Localization/Language.hpp"
#include "Localization/MainWindowTexts.hpp"
#include "Tarnwick/Views/HelpWindow.hpp"
#include "Tarnwick/Views/LogFindBar.hpp"
#include "Tarnwick/Views/NetworkPortDialog.hpp"
#include "Tarnwick/Views/PortPicker.hpp"
#include "Tarnwick/Views/SettingsSheet.hpp"
#include "Tarnwick/Views/StationPanel.hpp"
#include "Tarnwick/Views/ViewSupport.hpp"
#include "Tarnwick/Views/WindowFixture.hpp"

namespace tarnwick::testing {
namespace {

/// The application's font made larger for one test.
class LargeFont {
public:
  explicit LargeFont(double factor) : previous_(QApplication::font()) {
    QFont large = previous_;
    large.setPointSizeF(QFontInfo(previous_).pointSizeF() * factor);
    QApplication::setFont(large);
  }
  ~LargeFont() { QApplication::setFont(previous_); }
  LargeFont(const LargeFont&) = delete;
  LargeFont& operator=(const LargeFont&) = delete;

private:
  QFont previous_;
};

QString whereIs(QWidget* widget) {
  QString where;
  for (QWidget* up = widget; up != nullptr; up = up->parentWidget()) {
    QString part = QString::fromLatin1(up->metaObject()->className());
    if (!up->objectName().isEmpty()) part += u'#' + up->objectName();
    where = where.isEmpty() ? part : part + u'/' + where;
    if (up->isWindow()) break;
  }
  return where;
}

/// A control a person reads or operates, whose text would be cut if it were smaller than it
/// asks; not a container, whose layout gives its controls their room, nor the parts of a spin
/// box or picker, which their owner sizes.
bool isControl(QWidget* widget) {
  QWidget* parent = widget->parentWidget();
  if (qobject_cast<QAbstractSpinBox*>(parent) != nullptr || qobject_cast<QComboBox*>(parent))
    return false;
  if (auto* label = qobject_cast<QLabel*>(widget)) return !label->wordWrap();
  return qobject_cast<QAbstractButton*>(widget) != nullptr ||
         qobject_cast<QComboBox*>(widget) != nullptr ||
         qobject_cast<QLineEdit*>(widget) != nullptr ||
         qobject_cast<QAbstractSpinBox*>(widget) != nullptr ||
         qobject_cast<QProgressBar*>(widget) != nullptr;
}

/// What is too small in `window` as it is laid out now: a control smaller than its
/// minimumSizeHint (or one whose largest allowed size is smaller than that), wrapped text lower
/// than its lines, a table's column narrower than its title.
std::vector<std::string> tooSmall(QWidget* window) {
  std::vector<std::string> faults;
  QList<QWidget*> widgets = window->findChildren<QWidget*>();
  for (QWidget* widget : widgets) {
    if (!widget->isVisibleTo(window) || widget->isWindow() || !isControl(widget)) continue;
    const QSize wanted = widget->minimumSizeHint();
    if (!wanted.isValid()) continue;
    // What the layout grants: the hint within what the widget allows.
    const QSize granted = QLayout::closestAcceptableSize(widget, wanted);
    const QSize size = widget->size();
    if (size.width() < wanted.width() || size.height() < wanted.height())
      faults.push_back(whereIs(widget).toStdString() + ": " + std::to_string(size.width()) + "×" +
                       std::to_string(size.height()) + " < " + std::to_string(wanted.width()) +
                       "×" + std::to_string(wanted.height()) +
                       (granted != wanted ? " (its maximum size forbids more)" : ""));
  }
  // Text that wraps (the status line among it) gets the height its lines need at its width.
  for (QWidget* widget : widgets) {
    if (!widget->isVisibleTo(window) || widget->isWindow() || !widget->hasHeightForWidth())
      continue;
    if (qobject_cast<QLabel*>(widget) == nullptr) continue;
    const int needed = widget->heightForWidth(widget->width());
    if (widget->height() < needed)
      faults.push_back(whereIs(widget).toStdString() + ": " + std::to_string(widget->height()) +
                       " high, its lines need " + std::to_string(needed));
  }
  for (QHeaderView* header : window->findChildren<QHeaderView*>()) {
    if (!header->isVisibleTo(window) || header->orientation() != Qt::Horizontal) continue;
    const QAbstractItemModel* model = header->model();
    const int margin = 2 * header->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header);
    for (int section = 0; model != nullptr && section < header->count(); ++section) {
      if (header->isSectionHidden(section)) continue;
      const QString title = model->headerData(section, Qt::Horizontal).toString();
      // A selected row draws the titles above it in bold.
      QFont bold = header->font();
      bold.setBold(true);
      const int needed = QFontMetrics(bold).horizontalAdvance(title) + margin;
      if (header->sectionSize(section) < needed)
        faults.push_back(whereIs(header).toStdString() + ": the column " + title.toStdString() +
                         " is " + std::to_string(header->sectionSize(section)) + " wide, < " +
                         std::to_string(needed));
    }
  }
  return faults;
}

// With a font half as large again as the desktop's, in every language, the main window (with
// the file table, the log and the find bar, and as the station), the settings, the help and the
// network port dialog show every control whole.
TEST_F(WindowTest, WithALargeFontNoControlIsSmallerThanItAsksAndNoTitleIsCut) {
  LargeFont large(1.5);
  for (Language language : allLanguages) {
    SCOPED_TRACE(std::string(code(language)));
    LanguageOverride guard(language);
    MainWindow& w = open();
    load(*model, espProduct(ESPChip::esp32, 4096));
    w.setLogShown(true);
    w.findBar()->open();
    std::vector<std::string> faults;
    // As it opens, and made as small as it goes.
    for (bool station : {false, true})
      for (bool smallest : {false, true}) {
        w.setStationMode(station);
        // The smallest window also without its log: the lower pane is then the status line alone.
        w.setLogShown(!smallest);
        if (smallest) w.resize(w.minimumSizeHint());
        // A failure's reason, longer than the status line is wide.
        w.statusText()->setText(qt(L10n::Panel::lastFailure(
            L10n::Errors::cannotOpen("/dev/serial/by-id/usb-Silicon_Labs_CP2102N_0001-if00-port0",
                                      std::strerror(ENOENT)))));
        // Each layout passes what changed to the one around it by a posted event: the status
        // line, then the lower pane, then the splitter.
        for (int pass = 0; pass < 4; ++pass)
          QCoreApplication::processEvents();
        for (std::string& fault : tooSmall(&w))
          faults.push_back((station ? "station" : "window") +
                           std::string(smallest ? ", smallest" : "") + ": " + fault);
      }
    w.setStationMode(false);

    std::vector<QWidget*> others = {w.settingsSheet(), w.helpWindow()};
    w.portPicker()->askForNetworkPort();
    others.push_back(w.portPicker()->networkPortDialog());
    for (QWidget* other : others) {
      other->show();
      QCoreApplication::processEvents();
      for (std::string& fault : tooSmall(other))
        faults.push_back(fault);
      other->close();
    }
    EXPECT_EQ(faults, std::vector<std::string>{});
    window.reset();
  }
}

} // namespace
} // namespace tarnwick::testing
