#include "Tarnwick/Views/MainWindow.hpp"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QStandardPaths>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include "Assets/AssetsLookup.hpp"
#include "FlashCore/ProductPackage.hpp"
#include "Localization/AVRTexts.hpp"
#include "Localization/AccessibleTexts.hpp"
#include "Localization/GeneralTexts.hpp"
#include "Localization/Help.hpp"
#include "Localization/MainWindowTexts.hpp"
#include "Localization/ProductTexts.hpp"
#include "Localization/RunTexts.hpp"
#include "Localization/SettingsTexts.hpp"
#include "Localization/StationWindowTexts.hpp"
#include "Localization/WindowTexts.hpp"
#include "Simulator/SimulatedBoard.hpp"
#include "Tarnwick/Model/Colours.hpp"
#include "Tarnwick/Model/StationModel.hpp"
#include "Tarnwick/Views/Accessibility.hpp"
#include "Tarnwick/Views/FileListPanel.hpp"
#include "Tarnwick/Views/HelpWindow.hpp"
#include "Tarnwick/Views/LogFindBar.hpp"
#include "Tarnwick/Views/LogView.hpp"
#include "Tarnwick/Views/Mnemonics.hpp"
#include "Tarnwick/Views/SettingsSheet.hpp"
#include "Tarnwick/Views/StationPanel.hpp"
#include "Tarnwick/Views/ViewSupport.hpp"

namespace tarnwick {

namespace {
namespace W = L10n::Window;

/// The stored view preference: whether the log pane is shown.
const QString showLogKey = QStringLiteral("showLog");

QString targetName(const Target& target) {
  if (auto board = target.avrBoard()) return qt(L10n::Product::boardName(*board));
  if (auto chip = target.espChip()) return QString::fromUtf8(displayName(*chip).data());
  return qt(L10n::Product::espDetectAutomatically());
}

/// The banner's warm tint, light or dark as the palette is.
QPalette bannerPalette(QPalette palette) {
  palette.setColor(QPalette::Window, palette.color(QPalette::Window).value() > 128
                                         ? QColor(0xFF, 0xF4, 0xD6)
                                         : QColor(0x4A, 0x3B, 0x12));
  return palette;
}
} // namespace

QColor StatusDot::colourFor(bool flashing, const std::optional<FlashOutcome>& outcome) {
  if (flashing) return {0xF2, 0xC0, 0x1E};
  if (outcome && std::holds_alternative<FlashOutcome::Success>(outcome->value))
    return successGreen;
  if (outcome && std::holds_alternative<FlashOutcome::Failure>(outcome->value))
    return failureRed;
  return {0x9A, 0x9A, 0x9A};
}

StatusDot::Mark StatusDot::markFor(bool flashing, const std::optional<FlashOutcome>& outcome) {
  if (flashing) return Mark::running;
  if (!outcome) return Mark::none;
  if (std::holds_alternative<FlashOutcome::Success>(outcome->value)) return Mark::succeeded;
  if (std::holds_alternative<FlashOutcome::Failure>(outcome->value)) return Mark::failed;
  return Mark::stopped;
}

QColor StatusDot::ringColour(const QColor& fill, const QPalette& palette) {
  // A symbol, not text (the status line says the same in words): its ring stands 3:1 from the
  // window, so a light dot on a light window or a dark one on a dark window still shows.
  return readableOn(fill.darker(130), palette.color(QPalette::Window), 3.0);
}

StatusDot::StatusDot(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  // A picture with a name: screen readers say the state the colour and the mark show.
  setAccessibleRole(this, QAccessible::Graphic);
}

QSize StatusDot::sizeHint() const {
  // As tall as a line of text, so the mark inside stays legible with a large font.
  const int side = std::max(14, fontMetrics().height());
  return {side, side};
}

void StatusDot::showState(bool flashing, const std::optional<FlashOutcome>& outcome) {
  const QColor colour = colourFor(flashing, outcome);
  const Mark mark = markFor(flashing, outcome);
  std::string words;
  switch (mark) {
  case Mark::none: words = L10n::State::ready(); break;
  case Mark::running: words = L10n::State::flashing(); break;
  case Mark::succeeded: words = L10n::State::lastFlashSucceeded(); break;
  case Mark::failed: words = L10n::State::lastFlashFailed(); break;
  case Mark::stopped: words = L10n::Stage::stopped(); break;
  }
  renameAccessibly(this, qt(words));
  setToolTip(qt(words));
  if (colour == color_ && mark == mark_) return;
  color_ = colour;
  mark_ = mark;
  update();
}

void StatusDot::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const qreal side = std::min(width(), height());
  const QRectF dot = QRectF((width() - side) / 2, (height() - side) / 2, side, side)
                         .adjusted(1.5, 1.5, -1.5, -1.5);
  painter.setPen(QPen(ringColour(color_, palette()), 1.5));
  painter.setBrush(color_);
  painter.drawEllipse(dot);
  if (mark_ == Mark::none) return;
  // The mark in black or white, whichever stands out more from the dot.
  const QColor ink = contrastRatio(Qt::black, color_) >= contrastRatio(Qt::white, color_)
                         ? QColor(Qt::black)
                         : QColor(Qt::white);
  const QPointF c = dot.center();
  const qreal r = dot.width() / 2;
  painter.setPen(
      QPen(ink, std::max<qreal>(1.5, r / 4), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  switch (mark_) {
  case Mark::none: break;
  case Mark::running: {
    // A play triangle: under way.
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    const QPointF points[] = {c + QPointF(-0.3 * r, -0.45 * r), c + QPointF(0.5 * r, 0),
                              c + QPointF(-0.3 * r, 0.45 * r)};
    painter.drawPolygon(points, 3);
    break;
  }
  case Mark::succeeded: {
    const QPointF points[] = {c + QPointF(-0.45 * r, 0.0), c + QPointF(-0.12 * r, 0.35 * r),
                              c + QPointF(0.48 * r, -0.35 * r)};
    painter.drawPolyline(points, 3);
    break;
  }
  case Mark::failed:
    painter.drawLine(c + QPointF(-0.38 * r, -0.38 * r), c + QPointF(0.38 * r, 0.38 * r));
    painter.drawLine(c + QPointF(-0.38 * r, 0.38 * r), c + QPointF(0.38 * r, -0.38 * r));
    break;
  case Mark::stopped:
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawRect(QRectF(c - QPointF(0.32 * r, 0.32 * r), QSizeF(0.64 * r, 0.64 * r)));
    break;
  }
}

// The status line wraps onto further lines rather than cut its text: a failure's reason is read
// in full where it is shown, at any scale and font size.
constexpr int statusTextFlags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap;

QSize StatusText::minimumSizeHint() const {
  // A few words a line; the height follows the width.
  return {fontMetrics().averageCharWidth() * 12, fontMetrics().height()};
}

QSize StatusText::sizeHint() const {
  return {fontMetrics().horizontalAdvance(text()), fontMetrics().height()};
}

bool StatusText::hasHeightForWidth() const { return true; }

int StatusText::heightForWidth(int width) const {
  const QMargins margins = contentsMargins();
  const int inner = std::max(1, width - margins.left() - margins.right());
  const QRect needed =
      fontMetrics().boundingRect(QRect(0, 0, inner, QWIDGETSIZE_MAX), statusTextFlags, text());
  return std::max(needed.height(), fontMetrics().height()) + margins.top() + margins.bottom();
}

void StatusText::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  style()->drawItemText(&painter, contentsRect(), statusTextFlags, palette(), isEnabled(), text(),
                        foregroundRole());
}

QSize LowerPane::minimumSizeHint() const {
  // A splitter asks a pane for its smallest size without a width; the status line's lines at
  // the pane's present width are what the pane needs at least.
  const QSize plain = QWidget::minimumSizeHint();
  const QLayout* box = layout();
  if (box == nullptr) return plain;
  const QMargins margins = box->contentsMargins();
  const int width = std::max(1, this->width() - margins.left() - margins.right());
  int height = margins.top() + margins.bottom();
  int shown = 0;
  for (int i = 0; i < box->count(); ++i) {
    QLayoutItem* item = box->itemAt(i);
    if (item->isEmpty()) continue;
    height += item->hasHeightForWidth() ? item->heightForWidth(width) : item->minimumSize().height();
    ++shown;
  }
  height += std::max(0, shown - 1) * std::max(0, box->spacing());
  return {plain.width(), std::max(plain.height(), height)};
}

void LowerPane::setCollapsed(bool collapsed) {
  collapsed_ = collapsed;
  fit();
}

bool LowerPane::event(QEvent* event) {
  const bool handled = QWidget::event(event);
  // A status line that wraps onto another line, or back, changes what the pane needs.
  if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize) fit();
  return handled;
}

void LowerPane::fit() {
  const int most = collapsed_ ? minimumSizeHint().height() : QWIDGETSIZE_MAX;
  if (maximumHeight() != most) setMaximumHeight(most);
  updateGeometry();
}

MainWindow::MainWindow(FlasherModel& model, QWidget* parent)
    : QMainWindow(parent), model_(model), station_(new StationModel(model, this)) {
  installAccessibleInterfaces();
  setObjectName("mainWindow");
  setWindowIcon(QIcon(assets::iconPath));
  setAcceptDrops(false);

  auto* central = new QWidget;
  auto* layout = new QVBoxLayout(central);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(buildHeader());
  layout->addWidget(buildBanner());

  auto* top = new QWidget;
  auto* topLayout = new QVBoxLayout(top);
  topLayout->setContentsMargins(10, 8, 10, 4);
  topLayout->addWidget(buildProductPanel());
  lockedNote_ = new QLabel(qt(L10n::StationWindow::productLocked()));
  lockedNote_->setObjectName("productLockedNote");
  lockedNote_->setWordWrap(true);
  lockedNote_->hide();
  topLayout->addWidget(lockedNote_);
  fileList_ = new FileListPanel(model_);
  stationPanel_ = new StationPanel(model_, *station_);
  pages_ = new QStackedWidget;
  pages_->addWidget(fileList_);
  pages_->addWidget(stationPanel_);
  topLayout->addWidget(pages_, 1);

  log_ = new LogView(model_.output());
  log_->setObjectName("logView");
  log_->setMinimumHeight(80);
  splitter_ = new QSplitter(Qt::Vertical);
  splitter_->addWidget(top);
  bottom_ = new LowerPane;
  auto* bottomLayout = new QVBoxLayout(bottom_);
  bottomLayout->setContentsMargins(0, 0, 0, 0);
  bottomLayout->setSpacing(0);
  bottomLayout->addWidget(buildStatusLine());
  bottomLayout->addWidget(log_, 1);
  findBar_ = new LogFindBar(log_);
  bottomLayout->addWidget(findBar_);
  splitter_->addWidget(bottom_);
  splitter_->setStretchFactor(0, 3);
  splitter_->setStretchFactor(1, 2);
  splitter_->setChildrenCollapsible(false);
  layout->addWidget(splitter_, 1);
  setCentralWidget(central);

  buildMenus();

  model_.setDialogs(this);
  connect(&model_, &FlasherModel::portListChanged, this, &MainWindow::refreshBanner);
  connect(&model_, &FlasherModel::selectedPathChanged, this, &MainWindow::refreshBanner);
  connect(&model_, &FlasherModel::stateChanged, this, &MainWindow::refreshRunControls);
  connect(&model_, &FlasherModel::stateChanged, this, &MainWindow::refreshBanner);
  connect(&model_, &FlasherModel::canFlashChanged, this, &MainWindow::refreshRunControls);
  connect(&model_, &FlasherModel::productChanged, this, &MainWindow::refreshProduct);
  for (auto signal : {&FlasherModel::stateChanged, &FlasherModel::progressChanged,
                      &FlasherModel::stageTextChanged, &FlasherModel::outcomeChanged,
                      &FlasherModel::statisticsChanged, &FlasherModel::productChanged,
                      &FlasherModel::selectedPathChanged, &FlasherModel::filesChanged})
    connect(&model_, signal, this, &MainWindow::refreshStatus);
  connect(&model_, &FlasherModel::windowTitleChanged, this,
          [this] { setWindowTitle(model_.windowTitle()); });
  connect(&model_, &FlasherModel::autoFlashChanged, this, &MainWindow::refreshRunControls);
  // A board that automatic flashing is about to take is said in the status line, so it reaches
  // a screen reader as well as the log.
  connect(&model_, &FlasherModel::autoFlashScheduled, this, [this](const QString& path) {
    newBoard_ = path;
    refreshStatus();
  });
  connect(&model_, &FlasherModel::stateChanged, this, [this] { newBoard_.clear(); });
  connect(&model_, &FlasherModel::autoscrollChanged, this,
          [this] { autoscrollAction_->setChecked(model_.autoscroll()); });
  connect(&model_, &FlasherModel::showTimestampsChanged, this,
          [this] { timestampsAction_->setChecked(model_.showTimestamps()); });
  connect(&model_, &FlasherModel::outputIsEmptyChanged, this, [this] {
    saveLogAction_->setEnabled(!model_.outputIsEmpty());
    log_->viewport()->update();
  });
  connect(&model_, &FlasherModel::recentDocumentsChanged, this, &MainWindow::refreshRecent);
  connect(&model_, &FlasherModel::simulatedBoardsChanged, this,
          &MainWindow::refreshSimulatedBoards);
  connect(&model_, &FlasherModel::productChanged, this, &MainWindow::refreshSimulatedBoards);
  connect(station_, &StationModel::phaseChanged, this, &MainWindow::refreshRunControls);
  connect(stationPanel_, &StationPanel::controlsChanged, this, &MainWindow::refreshRunControls);
  // The alert comes from the event loop so a message set inside another dialog's handler does
  // not stack a modal loop inside it.
  connect(&model_, &FlasherModel::errorMessageChanged, this, &MainWindow::showErrorMessage,
          Qt::QueuedConnection);

  setWindowTitle(model_.windowTitle());
  autoscrollAction_->setChecked(model_.autoscroll());
  timestampsAction_->setChecked(model_.showTimestamps());
  saveLogAction_->setEnabled(!model_.outputIsEmpty());
  setLogShown(QSettings().value(showLogKey, false).toBool());
  refreshProduct();
  refreshRunControls();
  refreshStatus();
  refreshBanner();
  refreshRecent();
  refreshSimulatedBoards();
  if (!model_.errorMessage().isEmpty())
    QMetaObject::invokeMethod(this, &MainWindow::showErrorMessage, Qt::QueuedConnection);
  resize(980, 720);
}

MainWindow::~MainWindow() {
  model_.setDialogs(nullptr);
  // A station still running is stopped while the window can still hear of it: its panel goes
  // first, then the station, whose end unlocks the product; the rest of the window no longer
  // listens.
  disconnect(&model_, nullptr, this, nullptr);
  delete stationPanel_;
  delete station_;
}

QWidget* MainWindow::buildHeader() {
  auto* header = new QFrame;
  header->setObjectName("header");
  header->setFrameShape(QFrame::StyledPanel);
  auto* layout = new QHBoxLayout(header);
  layout->setContentsMargins(10, 8, 10, 8);
  auto* portLabel = new QLabel(qt(L10n::Header::serialPort()));
  portPicker_ = new PortPicker(model_);
  portLabel->setBuddy(portPicker_);
  statusDot_ = new StatusDot;
  statusDot_->setObjectName("statusDot");
  flashButton_ = new QPushButton;
  flashButton_->setObjectName("flashButton");
  flashButton_->setDefault(true);
  flashButton_->setMinimumWidth(96);
  connect(flashButton_, &QPushButton::clicked, &model_, &FlasherModel::toggleFlash);
  automatic_ = new QCheckBox(qt(L10n::Header::automatic()));
  automatic_->setObjectName("automaticSwitch");
  automatic_->setToolTip(qt(L10n::Settings::flashAutomaticallyExplanation()));
  connect(automatic_, &QCheckBox::clicked, &model_, &FlasherModel::setAutoFlash);
  settingsButton_ = new QToolButton;
  settingsButton_->setObjectName("settingsButton");
  settingsButton_->setIcon(QIcon::fromTheme(
      "preferences-system", style()->standardIcon(QStyle::SP_FileDialogDetailedView)));
  settingsButton_->setText(qt(L10n::Settings::connection()));
  settingsButton_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  connect(settingsButton_, &QToolButton::clicked, this, &MainWindow::showSettings);
  layout->addWidget(portLabel);
  layout->addWidget(portPicker_, 1);
  layout->addWidget(statusDot_);
  layout->addSpacing(8);
  layout->addWidget(flashButton_);
  layout->addSpacing(8);
  layout->addWidget(automatic_);
  // In station mode the station takes every port; the title says what the window is now.
  auto* stationTitle = new QLabel(withoutMnemonic(L10n::StationWindow::menuItem()));
  stationTitle->setObjectName("stationTitle");
  QFont title = stationTitle->font();
  title.setBold(true);
  title.setPointSizeF(title.pointSizeF() * 1.3);
  stationTitle->setFont(title);
  stationTitle->hide();
  layout->addWidget(stationTitle, 1);
  layout->addWidget(settingsButton_);
  singleRunControls_ = {portLabel, portPicker_, statusDot_, flashButton_, automatic_};
  stationTitle_ = stationTitle;
  return header;
}

QWidget* MainWindow::buildBanner() {
  banner_ = new QFrame;
  banner_->setObjectName("noBoardBanner");
  banner_->setFrameShape(QFrame::StyledPanel);
  banner_->setAutoFillBackground(true);
  banner_->setPalette(bannerPalette(banner_->palette()));
  auto* layout = new QHBoxLayout(banner_);
  layout->setContentsMargins(12, 6, 12, 6);
  auto* symbol = new QLabel;
  symbol->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(20, 20));
  auto* text = new QLabel(qt(L10n::Notice::noUSBBoard()));
  text->setWordWrap(true);
  // The way out for someone without a board at hand; its menu is made with the Help menu.
  trySimulated_ = new QPushButton(withoutMnemonic(W::trySimulatedBoard()));
  trySimulated_->setObjectName("trySimulatedBoard");
  trySimulated_->setToolTip(qt(W::trySimulatedBoardTooltip()));
  auto* dismiss = new QPushButton(qt(L10n::Notice::dismiss()));
  dismiss->setFlat(true);
  connect(dismiss, &QPushButton::clicked, this, [this] {
    bannerDismissed_ = true;
    refreshBanner();
  });
  layout->addWidget(symbol);
  layout->addWidget(text, 1);
  layout->addWidget(trySimulated_);
  layout->addWidget(dismiss);
  return banner_;
}

QWidget* MainWindow::buildProductPanel() {
  auto* panel = new QGroupBox(qt(L10n::Product::panelTitle()));
  panel->setObjectName("productPanel");
  auto* layout = new QHBoxLayout(panel);
  auto* nameLabel = new QLabel(qt(L10n::Product::productName()));
  productName_ = new QLineEdit;
  productName_->setObjectName("productName");
  productName_->setPlaceholderText(qt(L10n::Product::newProduct()));
  // However narrow the window, a name of a few words stays readable; the window's minimum size
  // follows from the controls' own.
  productName_->setMinimumWidth(productName_->fontMetrics().averageCharWidth() * 22);
  nameLabel->setBuddy(productName_);
  connect(productName_, &QLineEdit::textEdited, this, [this](const QString& text) {
    Product product = model_.product();
    product.name = text.toStdString();
    model_.setProduct(product);
  });
  auto* targetLabel = new QLabel(qt(L10n::Product::target()));
  targetPicker_ = new QComboBox;
  targetPicker_->setObjectName("targetPicker");
  targetPicker_->setToolTip(qt(L10n::Product::targetTooltip()));
  targetLabel->setBuddy(targetPicker_);
  for (const Target& target : Target::all())
    targetPicker_->addItem(targetName(target), QString::fromStdString(target.text()));
  connect(targetPicker_, qOverload<int>(&QComboBox::activated), this, [this](int index) {
    auto target = Target::parse(targetPicker_->itemData(index).toString().toStdString());
    if (!target) return;
    Product product = model_.product();
    product.target = *target;
    model_.setProduct(product);
  });
  notesButton_ = new QToolButton;
  notesButton_->setText(qt(L10n::Product::notes()));
  notesButton_->setToolTip(qt(L10n::Product::notesPlaceholder()));
  connect(notesButton_, &QToolButton::clicked, this, &MainWindow::showNotes);

  auto productButton = [this](const std::string& text, QStyle::StandardPixmap icon, auto slot) {
    auto* button = new QToolButton;
    button->setText(qt(text));
    button->setIcon(style()->standardIcon(icon));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setToolTip(qt(L10n::Product::productButtonsTooltip()));
    connect(button, &QToolButton::clicked, &model_, slot);
    productButtons_ << button;
    return button;
  };
  layout->addWidget(nameLabel);
  layout->addWidget(productName_, 2);
  layout->addWidget(targetLabel);
  layout->addWidget(targetPicker_, 1);
  layout->addWidget(notesButton_);
  layout->addSpacing(12);
  layout->addWidget(productButton(W::newButton(), QStyle::SP_FileIcon, &FlasherModel::newProduct));
  layout->addWidget(productButton(W::openButton(), QStyle::SP_DialogOpenButton,
                                  &FlasherModel::openProductWithPanel));
  layout->addWidget(
      productButton(W::saveButton(), QStyle::SP_DialogSaveButton, &FlasherModel::saveProduct));
  return panel;
}

QWidget* MainWindow::buildStatusLine() {
  auto* line = new QFrame;
  line->setObjectName("statusLine");
  line->setFrameShape(QFrame::StyledPanel);
  // The status bar a screen reader's command reads out.
  setAccessibleRole(line, QAccessible::StatusBar);
  line->setAccessibleName(qt(L10n::Accessible::statusLine()));
  auto* layout = new QHBoxLayout(line);
  layout->setContentsMargins(10, 4, 10, 4);
  statusText_ = new StatusText;
  statusText_->setObjectName("statusText");
  progress_ = new RunProgress;
  progress_->setObjectName("progressBar");
  progress_->setAccessibleName(qt(L10n::Accessible::progress()));
  progress_->setRange(0, 1000);
  progress_->setTextVisible(false);
  progress_->setMaximumHeight(12);
  counters_ = new QLabel;
  counters_->setObjectName("counters");
  logToggle_ = new QToolButton;
  logToggle_->setObjectName("logToggle");
  logToggle_->setCheckable(true);
  logToggle_->setText(qt(L10n::Log::log()));
  logToggle_->setToolTip(qt(L10n::Footer::showLogTooltip()));
  connect(logToggle_, &QToolButton::clicked, this, &MainWindow::setLogShown);
  logOptions_ = new QPushButton(qt(L10n::Footer::logOptions()));
  logOptions_->setObjectName("logOptions");
  logOptions_->setToolTip(qt(L10n::Footer::logOptions()));
  logOptions_->setAutoDefault(false);
  layout->addWidget(statusText_, 1);
  layout->addWidget(progress_, 2);
  layout->addWidget(counters_);
  layout->addSpacing(8);
  layout->addWidget(logToggle_);
  layout->addWidget(logOptions_);
  return line;
}

void MainWindow::buildMenus() {
  QMenu* file = menuBar()->addMenu(qt(W::fileMenu()));
  auto add = [this](QMenu* menu, const std::string& text, auto slot, QKeySequence keys = {}) {
    QAction* action = menu->addAction(qt(text));
    if (!keys.isEmpty()) action->setShortcut(keys);
    connect(action, &QAction::triggered, this, slot);
    return action;
  };
  editActions_ << add(
      file, L10n::Menu::newProduct(), [this] { model_.newProduct(); }, Shortcuts::newProduct());
  editActions_ << add(
      file, L10n::Menu::openProduct(), [this] { model_.openProductWithPanel(); },
      Shortcuts::openProduct());
  recentMenu_ = file->addMenu(qt(W::openRecent()));
  editActions_ << recentMenu_->menuAction();
  file->addSeparator();
  add(
      file, L10n::Menu::saveProduct(), [this] { model_.saveProduct(); }, Shortcuts::saveProduct());
  add(
      file, L10n::Menu::saveProductAs(), [this] { model_.saveProductAs(); },
      Shortcuts::saveProductAs());
  saveLogAction_ = add(
      file, L10n::Menu::saveLog(), [this] { model_.saveLog(); }, Shortcuts::saveLog());
  saveLogAction_->setToolTip(qt(L10n::Footer::saveTooltip()));
  file->addSeparator();
  QAction* quit = add(
      file, W::quit(), [this] { close(); }, Shortcuts::quit());
  quit->setMenuRole(QAction::QuitRole);

  QMenu* board = boardMenu_ = menuBar()->addMenu(qt(W::boardMenu()));
  flashAction_ = add(
      board, L10n::State::flash(),
      [this] {
        if (stationMode())
          station_->toggle();
        else
          model_.toggleFlash();
      },
      Shortcuts::flash());
  flashAction_->setObjectName("flashAction");
  autoFlashAction_ = board->addAction(qt(L10n::Settings::flashAutomatically()));
  autoFlashAction_->setCheckable(true);
  connect(autoFlashAction_, &QAction::triggered, &model_, &FlasherModel::setAutoFlash);
  editActions_ << autoFlashAction_;

  QMenu* view = menuBar()->addMenu(qt(W::viewMenu()));
  stationAction_ = view->addAction(qt(L10n::StationWindow::menuItem()));
  stationAction_->setObjectName("stationAction");
  stationAction_->setCheckable(true);
  stationAction_->setToolTip(qt(L10n::StationWindow::menuItemTooltip()));
  connect(stationAction_, &QAction::triggered, this, &MainWindow::setStationMode);
  view->addSeparator();
  showLogAction_ = view->addAction(qt(L10n::Footer::showLog()));
  showLogAction_->setCheckable(true);
  showLogAction_->setShortcut(Shortcuts::showLog());
  connect(showLogAction_, &QAction::triggered, this, &MainWindow::setLogShown);
  clearLogAction_ = add(
      view, L10n::Menu::clearLog(), [this] { model_.clearLog(); }, Shortcuts::clearLog());
  clearLogAction_->setToolTip(qt(L10n::Footer::clearLogTooltip()));
  view->addSeparator();
  // Each finds in the log, which is shown for it.
  struct FindCommand {
    std::string text;
    QKeySequence keys;
    void (*find)(LogFindBar&);
  };
  const FindCommand commands[] = {
      {L10n::Find::findInLog(), Shortcuts::findInLog(), [](LogFindBar& bar) { bar.open(); }},
      {L10n::Find::findNext(), Shortcuts::findNext(), [](LogFindBar& bar) { bar.next(); }},
      {L10n::Find::findPrevious(), Shortcuts::findPrevious(),
       [](LogFindBar& bar) { bar.previous(); }},
  };
  for (const FindCommand& command : commands)
    add(
        view, command.text,
        [this, find = command.find] {
          setLogShown(true);
          find(*findBar_);
        },
        command.keys);
  view->addSeparator();
  autoscrollAction_ = view->addAction(qt(L10n::Footer::autoscroll()));
  autoscrollAction_->setCheckable(true);
  connect(autoscrollAction_, &QAction::triggered, &model_, &FlasherModel::setAutoscroll);
  timestampsAction_ = view->addAction(qt(L10n::Footer::timestamps()));
  timestampsAction_->setCheckable(true);
  connect(timestampsAction_, &QAction::triggered, &model_, &FlasherModel::setShowTimestamps);

  QMenu* help = menuBar()->addMenu(qt(W::helpMenu()));
  add(
      help, L10n::Help::windowTitle(), [this] { showHelp(); }, Shortcuts::help());
  help->addSeparator();
  simulatedMenu_ = help->addMenu(qt(W::trySimulatedBoard()));
  simulatedMenu_->setObjectName("simulatedBoardMenu");
  simulatedMenu_->menuAction()->setToolTip(qt(W::trySimulatedBoardTooltip()));
  simulatedMenu_->setToolTipsVisible(true);
  for (const Target& target : simulator::SimulatedBoard::simulable()) {
    QAction* action = simulatedMenu_->addAction(escapeMnemonics(targetName(target)));
    action->setData(QString::fromStdString(target.text()));
    action->setToolTip(qt(W::trySimulatedBoardTooltip()));
    connect(action, &QAction::triggered, this,
            [this, target] { model_.plugInSimulatedBoard(target); });
  }
  // The board the product is for is the one offered: Enter takes it.
  connect(simulatedMenu_, &QMenu::aboutToShow, this,
          [this] { simulatedMenu_->setActiveAction(simulatedMenu_->defaultAction()); });
  // A plain button that opens the menu below it: Fusion draws a menu button's arrow against its
  // text.
  connect(trySimulated_, &QPushButton::clicked, this, [this] {
    simulatedMenu_->popup(trySimulated_->mapToGlobal(trySimulated_->rect().bottomLeft()));
  });

  // The log options popover of the status line: the same actions as the menu.
  auto* options = new QMenu(logOptions_);
  options->addAction(autoscrollAction_);
  options->addAction(timestampsAction_);
  options->addSeparator();
  QAction* saveLog =
      options->addAction(qt(L10n::Footer::save()), this, [this] { model_.saveLog(); });
  saveLog->setToolTip(saveLogAction_->toolTip());
  // An empty log has nothing to save, wherever the command is given.
  connect(saveLogAction_, &QAction::enabledChanged, saveLog, &QAction::setEnabled);
  QAction* clearLog =
      options->addAction(qt(L10n::Footer::clearLog()), this, [this] { model_.clearLog(); });
  clearLog->setToolTip(clearLogAction_->toolTip());
  options->setToolTipsVisible(true);
  logOptions_->setMenu(options);
  // The style fits text and arrow edge to edge; a little more width parts them.
  logOptions_->setMinimumWidth(logOptions_->sizeHint().width() +
                               2 * logOptions_->fontMetrics().averageCharWidth());
}

SettingsSheet* MainWindow::settingsSheet() {
  if (!settings_) settings_ = new SettingsSheet(model_, this);
  return settings_;
}

HelpWindow* MainWindow::helpWindow() {
  if (!help_) {
    help_ = new HelpWindow;
    help_->setAttribute(Qt::WA_DeleteOnClose);
    help_->setWindowIcon(windowIcon());
  }
  return help_;
}

void MainWindow::showSettings() {
  SettingsSheet* sheet = settingsSheet();
  sheet->show();
  sheet->raise();
  sheet->activateWindow();
}

void MainWindow::showHelp() {
  HelpWindow* help = helpWindow();
  help->show();
  help->raise();
  help->activateWindow();
}

void MainWindow::showNotes() {
  QDialog sheet(this);
  sheet.setWindowTitle(qt(L10n::Product::notes()));
  auto* layout = new QVBoxLayout(&sheet);
  auto* notes = new QPlainTextEdit;
  // Tab goes on to Close: the notes need no tab characters, the keyboard a way out.
  notes->setTabChangesFocus(true);
  notes->setAccessibleName(qt(L10n::Product::notes()));
  notes->setPlaceholderText(qt(L10n::Product::notesPlaceholder()));
  notes->setPlainText(qt(model_.product().notes));
  notes->setReadOnly(model_.productLocked());
  layout->addWidget(notes);
  auto* buttons = new QDialogButtonBox;
  buttons->addButton(qt(W::close()), QDialogButtonBox::AcceptRole);
  connect(buttons, &QDialogButtonBox::accepted, &sheet, &QDialog::accept);
  layout->addWidget(buttons);
  connect(notes, &QPlainTextEdit::textChanged, this, [this, notes] {
    Product product = model_.product();
    product.notes = notes->toPlainText().toStdString();
    model_.setProduct(product);
  });
  sheet.resize(480, 280);
  sheet.exec();
}

bool MainWindow::logShown() const { return log_->isVisible() || !log_->isHidden(); }

void MainWindow::setLogShown(bool shown) {
  bool wasShown = !log_->isHidden();
  log_->setVisible(shown);
  if (!shown && findBar_->isVisible()) findBar_->dismiss();
  // Without the log the lower pane is just the status line; the files get the rest.
  bottom_->setCollapsed(!shown);
  if (shown && !wasShown) {
    // The log opens at a useful height: about two fifths of the window.
    int total = splitter_->height();
    splitter_->setSizes({total * 3 / 5, total * 2 / 5});
  }
  logToggle_->setChecked(shown);
  showLogAction_->setChecked(shown);
  QSettings().setValue(showLogKey, shown);
}

void MainWindow::refreshRunControls() {
  const bool station = stationMode();
  const bool stationRunning = station_->isRunning();
  const bool flashing = model_.isFlashing();
  QString flashTip = qt(L10n::Header::flashTooltip());
  QString stopTip = qt(L10n::Header::stopTooltip());
  const std::string title = flashing ? L10n::Header::stop() : L10n::State::flash();
  // The menu's mnemonic would clash with the menu bar's as a button's.
  flashButton_->setText(withoutMnemonic(title));
  flashButton_->setToolTip(flashing ? stopTip : flashTip);
  flashButton_->setEnabled(flashing || model_.canFlash());
  // One key for both: Ctrl+R flashes a board, or starts and stops the station, whichever the
  // window shows.
  QPushButton* start = stationPanel_->startButton();
  flashAction_->setText(station ? start->text() : qt(title));
  // The station's words carry no mark of their own: they take a letter free in the menu.
  if (station) giveMnemonics(boardMenu_);
  flashAction_->setEnabled(station ? start->isEnabled() : flashButton_->isEnabled());
  automatic_->setChecked(model_.autoFlash());
  autoFlashAction_->setChecked(model_.autoFlash());
  for (QWidget* control : singleRunControls_)
    control->setVisible(!station);
  stationTitle_->setVisible(station);
  stationAction_->setChecked(station);
  // The station is left only when it stands still, and a single run is not left for it.
  stationAction_->setEnabled(!stationRunning && !flashing);
  lockedNote_->setVisible(stationRunning);

  // While a run or the station goes, nothing that would change it may be touched; the tooltip
  // says why.
  const bool locked = flashing || stationRunning;
  QString wait = qt(flashing ? L10n::Header::waitUntilFlashingFinished()
                             : L10n::StationWindow::productLocked());
  auto guard = [&](QWidget* widget, const QString& normal) {
    widget->setEnabled(!locked);
    widget->setToolTip(locked ? wait : normal);
  };
  guard(portPicker_, QString());
  guard(automatic_, qt(L10n::Settings::flashAutomaticallyExplanation()));
  guard(settingsButton_, qt(L10n::Header::connectionSettingsTooltip()));
  guard(productName_, QString());
  guard(targetPicker_, qt(L10n::Product::targetTooltip()));
  for (QWidget* button : productButtons_)
    guard(button, qt(L10n::Product::productButtonsTooltip()));
  fileList_->setEnabled(!locked);
  for (QAction* action : editActions_)
    action->setEnabled(!locked);
  if (settings_) settings_->setEnabled(!locked);
}

bool MainWindow::stationMode() const { return pages_->currentWidget() == stationPanel_; }

void MainWindow::setStationMode(bool on) {
  // A running station stays on screen; a single run is not left for the station.
  if (!on && station_->isRunning()) on = true;
  if (on && model_.isFlashing()) on = false;
  const bool entering = on && !stationMode();
  pages_->setCurrentWidget(on ? static_cast<QWidget*>(stationPanel_) : fileList_);
  if (entering && logShown()) {
    // The table of boards wants the room: the log keeps about a quarter of the window.
    const int total = splitter_->height();
    splitter_->setSizes({total * 3 / 4, total / 4});
  }
  refreshRunControls();
  refreshStatus();
  if (on) stationPanel_->startButton()->setFocus();
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
  // Escape leaves a station that stands still; the find bar and dialogs take theirs first.
  if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier && stationMode() &&
      !station_->isRunning()) {
    setStationMode(false);
    event->accept();
    return;
  }
  QMainWindow::keyPressEvent(event);
}

void MainWindow::refreshProduct() {
  const Product& product = model_.product();
  if (productName_->text().toStdString() != product.name) productName_->setText(qt(product.name));
  int index = targetPicker_->findData(QString::fromStdString(product.target.text()));
  targetPicker_->setCurrentIndex(index);
  QFont font = notesButton_->font();
  font.setItalic(!product.notes.empty());
  notesButton_->setFont(font);
}

void MainWindow::refreshStatus() {
  statusDot_->showState(model_.isFlashing(), model_.outcome());
  const FlashStatistics& counts = model_.statistics();
  counters_->setText(qt(L10n::Footer::counters(counts.flashed, counts.failed)));
  bool flashing = model_.isFlashing();
  const bool station = stationMode();
  progress_->setVisible(flashing && !station);
  // The station has its own counts above its table.
  counters_->setVisible(!station);
  // Each new text of the status line is announced (a changed name), so the stage of a run, its
  // end and a new board reach a screen reader as they happen.
  if (flashing && !station) {
    statusText_->setText(model_.stageText());
    const double fraction = model_.progressFraction();
    progress_->setValueText(qt(L10n::Accessible::progressValue(model_.progressFile().toStdString(),
                                                               static_cast<int>(fraction * 100))));
    progress_->setValue(static_cast<int>(fraction * 1000));
    return;
  }
  if (!station && !newBoard_.isEmpty()) {
    statusText_->setText(qt(L10n::Log::newBoardOn(model_.portLabel(newBoard_).toStdString())));
    return;
  }
  // The files are gathered only for the texts that name them, not on every step of a run.
  const auto images = model_.product().enabledImages();
  auto addresses = [&] {
    if (!model_.product().target.isESP()) return std::string();
    std::uint32_t first = UINT32_MAX, end = 0;
    for (const auto& image : images) {
      first = std::min(first, image.offset);
      end = std::max(end, image.end());
    }
    return L10n::Panel::addressRange(formatAddress(first), formatAddress(end > 0 ? end - 1 : 0));
  };
  if (station) {
    // What every board gets; the station's own state is shown above its table.
    if (model_.product().images.empty())
      statusText_->setText(qt(L10n::Panel::addFirmwareToBegin()));
    else if (auto finding = model_.blockingFinding())
      statusText_->setText(qt(*finding));
    else
      statusText_->setText(qt(L10n::Panel::fileCount(static_cast<std::int64_t>(images.size()))) +
                           (images.empty() ? QString() : QStringLiteral(" · ") + qt(addresses())));
    return;
  }
  QString text;
  const auto& outcome = model_.outcome();
  if (outcome && std::holds_alternative<FlashOutcome::Success>(outcome->value)) {
    // What the board got, so a series can be checked at a glance.
    const FlashSummary& summary = std::get<FlashOutcome::Success>(outcome->value).summary;
    text = qt(L10n::State::lastFlashSucceeded()) + QStringLiteral(" · ") +
           qt(L10n::Panel::lastSuccess(summary.chip, formatByteCount(summary.bytes),
                                       formatSeconds(summary.seconds)));
  } else if (outcome && std::holds_alternative<FlashOutcome::Failure>(outcome->value)) {
    // The reason on screen, not only in the log.
    text = qt(L10n::Panel::lastFailure(std::get<FlashOutcome::Failure>(outcome->value).message));
  } else if (model_.product().images.empty()) {
    text = qt(L10n::Panel::addFirmwareToBegin());
  } else if (auto finding = model_.blockingFinding()) {
    // Flash is disabled: say why, findings about the whole product included.
    text = qt(*finding);
  } else {
    // The run the Flash button would start: how many files, where they go, onto which port.
    const std::string range = addresses();
    const QString port = model_.selectedPath().isEmpty() ? qt(L10n::Panel::noPort())
                                                         : model_.portLabel(model_.selectedPath());
    const QString state = model_.selectedPath().isEmpty() || !model_.canFlash()
                              ? qt(L10n::State::ready())
                              : qt(L10n::Panel::readyToFlash());
    text = state + QStringLiteral(" · ") +
           qt(L10n::Panel::plannedRun(static_cast<std::int64_t>(images.size()), range,
                                      port.toStdString()));
  }
  statusText_->setText(text);
}

void MainWindow::refreshBanner() {
  bool usbBoard = std::any_of(model_.ports().begin(), model_.ports().end(),
                              [](const SerialPortInfo& port) { return port.vendorID.has_value(); });
  // Pseudo-terminals are only ever listed when given with --test-device: the simulated board
  // the user asked for is the board, so the advice about cables would be wrong.
  bool testDevice =
      std::any_of(model_.ports().begin(), model_.ports().end(),
                  [](const SerialPortInfo& port) { return port.path.rfind("/dev/pts/", 0) == 0; });
  // A board on another computer is as deliberate a choice: no cable to check here.
  bool networkBoard = FlasherModel::isNetworkPort(model_.selectedPath());
  if (usbBoard) bannerDismissed_ = false;
  banner_->setVisible(!model_.isFlashing() && !usbBoard && !testDevice && !networkBoard &&
                      !bannerDismissed_);
}

void MainWindow::refreshRecent() {
  recentMenu_->clear();
  QStringList recent = model_.recentDocuments();
  for (const QString& location : recent) {
    QAction* action =
        recentMenu_->addAction(escapeMnemonics(QFileInfo(location).completeBaseName()));
    action->setToolTip(location);
    connect(action, &QAction::triggered, this, [this, location] { model_.openRecent(location); });
  }
  recentMenu_->addSeparator();
  QAction* clear =
      recentMenu_->addAction(qt(W::clearRecent()), &model_, &FlasherModel::clearRecentDocuments);
  clear->setEnabled(!recent.isEmpty());
  recentMenu_->setToolTipsVisible(true);
  giveMnemonics(recentMenu_);
}

void MainWindow::refreshSimulatedBoards() {
  const QString offered = QString::fromStdString(
      simulator::SimulatedBoard::suggestedFor(model_.product().target).text());
  for (QAction* action : simulatedMenu_->actions()) {
    if (action->data().toString() == offered) simulatedMenu_->setDefaultAction(action);
  }
  // An entry may be the one being triggered right now: it goes once its signal has returned.
  for (QAction* action : unplugActions_) {
    simulatedMenu_->removeAction(action);
    action->deleteLater();
  }
  unplugActions_.clear();
  const auto boards = model_.simulatedBoards();
  if (!boards.empty()) unplugActions_ << simulatedMenu_->addSeparator();
  for (const auto& board : boards) {
    const QString path = QString::fromStdString(board.path);
    QAction* action = simulatedMenu_->addAction(escapeMnemonics(qt(W::unplugSimulatedBoard(
        simulator::SimulatedBoard::displayName(board.target), board.path))));
    action->setData(path);
    connect(action, &QAction::triggered, this, [this, path] { model_.unplugSimulatedBoard(path); });
    unplugActions_ << action;
  }
  giveMnemonics(simulatedMenu_);
}

void MainWindow::showErrorMessage() {
  QString message = model_.errorMessage();
  if (message.isEmpty()) {
    if (alert_) alert_->close();
    return;
  }
  if (alert_) {
    // One alert at a time: a newer message replaces the one not yet read.
    alert_->setText(message);
    return;
  }
  alert_ = new QMessageBox(QMessageBox::Warning, qt(L10n::Errors::somethingWentWrong()), message,
                           QMessageBox::NoButton, this);
  alert_->setObjectName("errorAlert");
  alert_->addButton(qt(L10n::Errors::ok()), QMessageBox::AcceptRole);
  alert_->setAttribute(Qt::WA_DeleteOnClose);
  connect(alert_, &QMessageBox::finished, this, [this] {
    alert_ = nullptr;
    model_.clearErrorMessage();
  });
  alert_->open();
}

std::optional<std::filesystem::path> MainWindow::chooseProductToOpen() {
  QString file = QFileDialog::getOpenFileName(this, withoutMnemonic(L10n::Menu::openProduct()),
                                              QString(), qt(W::productFileFilter()));
  if (file.isEmpty()) return std::nullopt;
  return std::filesystem::path(file.toStdString());
}

std::optional<std::filesystem::path>
MainWindow::chooseProductSaveLocation(const QString& proposedName) {
  QString folder = model_.productURL()
                       ? QString::fromStdString(model_.productURL()->parent_path().string())
                       : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  QString file =
      QFileDialog::getSaveFileName(this, withoutMnemonic(L10n::Menu::saveProductAs()),
                                   folder + u'/' + proposedName, qt(W::productFileFilter()));
  if (file.isEmpty()) return std::nullopt;
  const QString extension =
      QString::fromStdString("." + std::string(ProductPackage::fileExtension));
  if (!file.endsWith(extension, Qt::CaseInsensitive)) file += extension;
  return std::filesystem::path(file.toStdString());
}

std::optional<std::filesystem::path>
MainWindow::chooseLogSaveLocation(const QString& proposedName) {
  QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  QString file =
      QFileDialog::getSaveFileName(this, withoutMnemonic(L10n::Menu::saveLog()),
                                   folder + u'/' + proposedName, qt(W::textFileFilter()));
  if (file.isEmpty()) return std::nullopt;
  return std::filesystem::path(file.toStdString());
}

FlasherDialogs::SaveChangesAnswer MainWindow::askSaveChanges() {
  QMessageBox question(QMessageBox::Question, qt(L10n::Product::saveQuestion()),
                       qt(L10n::Product::saveQuestion()), QMessageBox::NoButton, this);
  question.setInformativeText(qt(L10n::Product::unsavedChanges()));
  QPushButton* save = question.addButton(qt(L10n::Product::saveButton()), QMessageBox::AcceptRole);
  QPushButton* dontSave =
      question.addButton(qt(L10n::Product::dontSave()), QMessageBox::DestructiveRole);
  question.addButton(qt(L10n::Product::cancel()), QMessageBox::RejectRole);
  question.setDefaultButton(save);
  question.exec();
  if (question.clickedButton() == save) return SaveChangesAnswer::save;
  if (question.clickedButton() == dontSave) return SaveChangesAnswer::dontSave;
  return SaveChangesAnswer::cancel;
}

void MainWindow::alert(const QString& message) {
  QMessageBox box(QMessageBox::Information, QApplication::applicationDisplayName(), message,
                  QMessageBox::NoButton, this);
  box.addButton(qt(L10n::Product::cancel()), QMessageBox::RejectRole);
  box.exec();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!model_.requestQuit()) {
    event->ignore();
    return;
  }
  if (help_) help_->close();
  event->accept();
}

void MainWindow::changeEvent(QEvent* event) {
  // The banner's tint is picked for the palette; a switch between light and dark repaints it.
  if (event->type() == QEvent::PaletteChange && banner_ != nullptr) {
    banner_->setPalette(bannerPalette(QApplication::palette()));
    refreshStatus();
  }
  QMainWindow::changeEvent(event);
}

} // namespace tarnwick
