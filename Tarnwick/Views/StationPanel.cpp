#include "Tarnwick/Views/StationPanel.hpp"

#include <QApplication>
#include <QCheckBox>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QSpinBox>
#include <QSplitter>
#include <QStandardPaths>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>
#include <map>

#include "Localization/AccessibleTexts.hpp"
#include "Localization/StationTexts.hpp"
#include "Localization/StationWindowTexts.hpp"
#include "Tarnwick/Model/Colours.hpp"
#include "Tarnwick/Model/FlasherModel.hpp"
#include "Tarnwick/Model/OutputBuffer.hpp"
#include "Tarnwick/Model/StationModel.hpp"
#include "Tarnwick/Model/StationTable.hpp"
#include "Tarnwick/Views/LogView.hpp"
#include "Tarnwick/Views/TableFitting.hpp"
#include "Tarnwick/Views/ViewSupport.hpp"

namespace tarnwick {

namespace {

namespace T = L10n::StationWindow;
using Phase = StationModel::Phase;

/// A board's progress as a bar with its percentage.
class ProgressDelegate : public QStyledItemDelegate {
public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QWidget* widget = option.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    // The row's own background first, so a selected row stays marked under the bar.
    cell.text.clear();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, widget);
    QStyleOptionProgressBar bar;
    bar.rect = option.rect.adjusted(4, 3, -4, -3);
    bar.state = QStyle::State_Enabled | QStyle::State_Horizontal;
    bar.direction = option.direction;
    bar.palette = option.palette;
    bar.fontMetrics = option.fontMetrics;
    bar.minimum = 0;
    bar.maximum = 1000;
    bar.progress =
        static_cast<int>(index.data(StationTable::fractionRole).toDouble() * bar.maximum);
    bar.text = index.data().toString();
    bar.textVisible = true;
    bar.textAlignment = Qt::AlignCenter;
    style->drawControl(QStyle::CE_ProgressBar, &bar, painter, widget);
  }
};

/// The red tint of the record problem, light or dark as the palette is.
QPalette problemPalette(QPalette palette) {
  const bool dark = isDark(palette);
  palette.setColor(QPalette::Window, dark ? QColor(0x5A, 0x1E, 0x1E) : QColor(0xFD, 0xE2, 0xE2));
  palette.setColor(QPalette::WindowText,
                   dark ? QColor(0xFF, 0xE4, 0xE4) : QColor(0x6B, 0x0F, 0x0F));
  return palette;
}

} // namespace

StationPanel::StationPanel(FlasherModel& model, StationModel& station, QWidget* parent)
    : QWidget(parent), model_(model), station_(station) {
  setObjectName("stationPanel");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(buildTally());

  problem_ = new QFrame;
  problem_->setObjectName("recordProblem");
  problem_->setFrameShape(QFrame::StyledPanel);
  problem_->setAutoFillBackground(true);
  problem_->setPalette(problemPalette(problem_->palette()));
  auto* problemLayout = new QHBoxLayout(problem_);
  problemLayout->setContentsMargins(12, 6, 12, 6);
  auto* symbol = new QLabel;
  symbol->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxCritical).pixmap(20, 20));
  problemText_ = new QLabel;
  problemText_->setWordWrap(true);
  problemText_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  problemLayout->addWidget(symbol);
  problemLayout->addWidget(problemText_, 1);
  layout->addWidget(problem_);
  layout->addWidget(buildControls());

  auto* rows = new StationTable(station_, this);
  table_ = new QTableView;
  table_->setObjectName("stationTable");
  table_->setAccessibleName(qt(L10n::Accessible::stationTable()));
  table_->setModel(rows);
  table_->verticalHeader()->hide();
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setWordWrap(false);
  table_->setItemDelegateForColumn(StationTable::progress, new ProgressDelegate(table_));
  // Widths in average characters: what each column holds at most, and its share beyond that.
  const QFontMetrics metrics = table_->fontMetrics();
  const int character = metrics.averageCharWidth();
  auto wide = [&](const std::string& text) {
    return metrics.horizontalAdvance(qt(text)) + 2 * character;
  };
  const int mac = metrics.horizontalAdvance(QStringLiteral("AB:CD:12:34:56:78")) + 2 * character;
  int resultWidth = wide(T::resultColumn());
  for (const std::string& result :
       {T::running(), T::done(), T::failed(), T::stopped(), T::leftAlone()})
    resultWidth = std::max(resultWidth, wide(result));
  const std::pair<int, int> bounds[] = {
      {std::max(wide(T::portColumn()), 8 * character), 16 * character},
      {14 * character, 100000},
      {std::max(wide(T::serialNumberColumn()), 10 * character), 22 * character},
      {std::max(wide(T::chipColumn()), 9 * character), 12 * character},
      {std::max(wide(T::macColumn()), mac), std::max(wide(T::macColumn()), mac)},
      {14 * character, 100000},
      {std::max(wide(T::progressColumn()), 10 * character), 24 * character},
      {resultWidth, resultWidth + 6 * character},
      {std::max(wide(T::timeColumn()), 7 * character), 10 * character}};
  const int shares[] = {9, 22, 12, 9, 0, 24, 14, 12, 7};
  std::map<QString, std::pair<int, int>> fitted;
  for (int column = 0; column < StationTable::columns; ++column) {
    table_->setColumnWidth(column, std::max(bounds[column].first, shares[column] * character));
    fitted[QString::number(column)] = bounds[column];
  }
  new TableFitting(table_, fitted);

  auto* logPane = new QWidget;
  auto* logLayout = new QVBoxLayout(logPane);
  logLayout->setContentsMargins(0, 4, 0, 0);
  logLayout->setSpacing(2);
  boardLogTitle_ = new QLabel;
  boardLogTitle_->setObjectName("boardLogTitle");
  boardLines_ =
      new OutputBuffer(OutputBuffer::defaultMaxCharacters, OutputBuffer::defaultTrimTarget, this);
  boardLog_ = new LogView(*boardLines_);
  boardLog_->setObjectName("boardLog");
  boardLog_->setMinimumHeight(boardLog_->fontMetrics().lineSpacing() * 4);
  logLayout->addWidget(boardLogTitle_);
  logLayout->addWidget(boardLog_, 1);

  auto* split = new QSplitter(Qt::Vertical);
  split->addWidget(table_);
  split->addWidget(logPane);
  split->setStretchFactor(0, 3);
  split->setStretchFactor(1, 2);
  split->setChildrenCollapsible(false);
  layout->addWidget(split, 1);

  connect(&station_, &StationModel::phaseChanged, this, &StationPanel::refreshControls);
  connect(&station_, &StationModel::noticeChanged, this, &StationPanel::refreshControls);
  // Rows change up to 20 times a second: only what depends on them is looked at again.
  connect(&station_, &StationModel::rowsChanged, this, &StationPanel::refreshClearFinished);
  connect(&station_, &StationModel::rowsCleared, this, &StationPanel::refreshClearFinished);
  connect(&station_, &StationModel::optionsChanged, this, &StationPanel::refreshControls);
  connect(&station_, &StationModel::tallyChanged, this, &StationPanel::refreshTally);
  connect(&station_, &StationModel::recordPathChanged, this, &StationPanel::refreshRecord);
  connect(&station_, &StationModel::recordProblemChanged, this, &StationPanel::refreshRecord);
  connect(&station_, &StationModel::rowsChanged, this, &StationPanel::refreshBoardLog);
  connect(&station_, &StationModel::rowsCleared, this, &StationPanel::refreshBoardLog);
  connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &StationPanel::refreshBoardLog);
  // A product with an error cannot be started on; the state line says why.
  for (auto signal :
       {&FlasherModel::productChanged, &FlasherModel::filesChanged, &FlasherModel::stateChanged})
    connect(&model_, signal, this, &StationPanel::refreshControls);
  refreshControls();
  refreshTally();
  refreshRecord();
  refreshBoardLog();
}

StationPanel::~StationPanel() = default;

QWidget* StationPanel::buildTally() {
  auto* tally = new QFrame;
  tally->setObjectName("stationTally");
  auto* layout = new QHBoxLayout(tally);
  layout->setContentsMargins(4, 0, 4, 2);
  const std::string captions[] = {T::flashedCount(), T::failedCount(), T::runningCount(),
                                  T::boardsPerHour()};
  for (int i = 0; i < 4; ++i) {
    auto* block = new QVBoxLayout;
    block->setSpacing(0);
    figures_[i] = new QLabel(QStringLiteral("0"));
    figures_[i]->setObjectName(QStringLiteral("stationFigure%1").arg(i));
    figures_[i]->setAlignment(Qt::AlignHCenter | Qt::AlignBottom);
    auto* caption = new QLabel(qt(captions[i]));
    caption->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    figures_[i]->setAccessibleName(caption->text());
    block->addWidget(figures_[i]);
    block->addWidget(caption);
    layout->addLayout(block, 1);
  }
  styleFigures();
  return tally;
}

void StationPanel::styleFigures() {
  // Read from across the bench: about four times the text's height, and bold.
  QFont big = font();
  big.setPointSizeF(std::max(26.0, QFontInfo(font()).pointSizeF() * 3.2));
  big.setBold(true);
  for (QLabel* figure : figures_)
    figure->setFont(big);
  refreshTally();
}

QWidget* StationPanel::buildControls() {
  auto* controls = new QWidget;
  auto* layout = new QVBoxLayout(controls);
  layout->setContentsMargins(0, 4, 0, 4);
  auto* first = new QHBoxLayout;
  start_ = new QPushButton;
  start_->setObjectName("stationStart");
  start_->setMinimumWidth(start_->fontMetrics().horizontalAdvance(qt(T::stopNow())) + 48);
  QFont bold = start_->font();
  bold.setBold(true);
  start_->setFont(bold);
  connect(start_, &QPushButton::clicked, &station_, &StationModel::toggle);
  state_ = new QLabel;
  state_->setObjectName("stationState");
  state_->setWordWrap(true);
  clearFinished_ = new QPushButton(qt(T::clearFinished()));
  clearFinished_->setObjectName("clearFinished");
  connect(clearFinished_, &QPushButton::clicked, &station_, &StationModel::clearFinished);
  first->addWidget(start_);
  first->addSpacing(8);
  first->addWidget(state_, 1);
  first->addWidget(clearFinished_);
  layout->addLayout(first);

  auto* second = new QHBoxLayout;
  alsoConnected_ = new QCheckBox(qt(T::alsoConnected()));
  alsoConnected_->setObjectName("alsoConnected");
  alsoConnected_->setToolTip(qt(T::alsoConnectedTooltip()));
  connect(alsoConnected_, &QCheckBox::clicked, &station_, &StationModel::setAlsoConnected);
  auto* limitLabel = new QLabel(qt(T::limit()));
  limit_ = new QSpinBox;
  limit_->setObjectName("stationLimit");
  limit_->setRange(0, 100000);
  limit_->setSpecialValueText(qt(T::noLimit()));
  limit_->setToolTip(qt(T::limitTooltip()));
  limitLabel->setBuddy(limit_);
  // The spin box's field is what takes the focus, and is read out by itself.
  if (auto* field = limit_->findChild<QLineEdit*>()) field->setAccessibleName(limitLabel->text());
  connect(limit_, qOverload<int>(&QSpinBox::valueChanged), this, [this](int value) {
    station_.setLimit(value > 0 ? std::optional<std::int64_t>(value) : std::nullopt);
  });
  auto* recordLabel = new QLabel(qt(T::recordFile()));
  recordPath_ = new QLabel;
  recordPath_->setObjectName("recordPath");
  recordPath_->setToolTip(qt(T::recordFileTooltip()));
  recordLabel->setToolTip(recordPath_->toolTip());
  chooseRecord_ = new QPushButton(qt(T::chooseRecordFile()));
  chooseRecord_->setObjectName("chooseRecordFile");
  chooseRecord_->setToolTip(recordPath_->toolTip());
  connect(chooseRecord_, &QPushButton::clicked, this, &StationPanel::chooseRecordFile);
  // A small button beside the file: its text, long in some languages, is its tooltip.
  forgetRecord_ = new QToolButton;
  forgetRecord_->setObjectName("forgetRecordFile");
  forgetRecord_->setText(qt(T::forgetRecordFile()));
  forgetRecord_->setToolTip(forgetRecord_->text());
  forgetRecord_->setAccessibleName(forgetRecord_->text());
  forgetRecord_->setIcon(QIcon::fromTheme(QStringLiteral("edit-clear"),
                                          style()->standardIcon(QStyle::SP_DialogDiscardButton)));
  forgetRecord_->setToolButtonStyle(Qt::ToolButtonIconOnly);
  connect(forgetRecord_, &QPushButton::clicked, this, [this] { station_.setRecordPath({}); });
  second->addWidget(alsoConnected_);
  second->addSpacing(16);
  second->addWidget(limitLabel);
  second->addWidget(limit_);
  second->addSpacing(16);
  second->addWidget(recordLabel);
  second->addWidget(recordPath_, 1);
  second->addWidget(chooseRecord_);
  second->addWidget(forgetRecord_);
  layout->addLayout(second);
  return controls;
}

QString StationPanel::buttonText() const {
  switch (station_.phase()) {
  case Phase::idle: return qt(T::start());
  case Phase::running: return qt(T::stop());
  case Phase::finishing:
  case Phase::stopping: return qt(T::stopNow());
  }
  return {};
}

void StationPanel::refreshControls() {
  const Phase phase = station_.phase();
  const bool idle = phase == Phase::idle;
  const auto finding = model_.blockingFinding();
  start_->setText(buttonText());
  start_->setToolTip(qt(idle                      ? T::startTooltip()
                        : phase == Phase::running ? T::stopTooltip()
                                                  : T::stopNowTooltip()));
  start_->setEnabled(idle ? !finding && !model_.isFlashing() : phase != Phase::stopping);

  QString state;
  switch (phase) {
  case Phase::idle: state = qt(T::idleState()); break;
  case Phase::running: state = qt(T::runningState()); break;
  case Phase::finishing: state = qt(T::finishingState()); break;
  case Phase::stopping: state = qt(L10n::Station::stopping()); break;
  }
  if (!station_.notice().isEmpty()) state = station_.notice();
  // A product with an error says so until it is mended, whatever was said before.
  if (idle && finding) state = qt(*finding);
  state_->setText(state);

  alsoConnected_->setChecked(station_.alsoConnected());
  alsoConnected_->setEnabled(idle);
  {
    const QSignalBlocker quiet(limit_);
    limit_->setValue(static_cast<int>(station_.limit().value_or(0)));
  }
  limit_->setEnabled(idle);
  chooseRecord_->setEnabled(idle);
  forgetRecord_->setEnabled(idle && !station_.recordPath().isEmpty());
  refreshClearFinished();
  if (start_->text() != announcedText_ || start_->isEnabled() != announcedEnabled_) {
    announcedText_ = start_->text();
    announcedEnabled_ = start_->isEnabled();
    emit controlsChanged();
  }
}

void StationPanel::refreshClearFinished() {
  clearFinished_->setEnabled(std::ranges::any_of(station_.rows(), [](const StationRow& row) {
    return row.result != StationRow::Result::running;
  }));
}

void StationPanel::refreshTally() {
  const StationTally tally = station_.tally();
  const std::int64_t values[] = {tally.flashed, tally.failed, tally.running, tally.boardsPerHour};
  for (int i = 0; i < 4; ++i)
    figures_[i]->setText(QString::number(values[i]));
  // Failures stand out in red, in a shade that reads on the window's colour.
  QPalette palette = this->palette();
  if (tally.failed > 0)
    palette.setColor(QPalette::WindowText,
                     readableOn(failureRed, palette.color(QPalette::Window)));
  if (palette != figures_[1]->palette()) figures_[1]->setPalette(palette);
}

void StationPanel::refreshRecord() {
  const QString path = station_.recordPath();
  recordPath_->setText(path.isEmpty() ? qt(T::noRecordFile()) : QFileInfo(path).fileName());
  recordPath_->setToolTip(path.isEmpty() ? qt(T::recordFileTooltip()) : path);
  problemText_->setText(station_.recordProblem());
  problem_->setVisible(!station_.recordProblem().isEmpty());
  refreshControls();
}

void StationPanel::refreshBoardLog() {
  const QModelIndexList selected = table_->selectionModel()->selectedRows();
  const auto& rows = station_.rows();
  const StationRow* row = nullptr;
  if (!selected.isEmpty() && selected.front().row() < static_cast<int>(rows.size()))
    row = &rows[static_cast<std::size_t>(selected.front().row())];
  if (!row) {
    boardLogTitle_->setText(qt(T::boardLogPlaceholder()));
    if (!shownPath_.empty()) boardLines_->clear();
    shownPath_.clear();
    shownLines_ = 0;
    return;
  }
  // Another board, or the same port with a new board on it: its lines from the first.
  if (row->path != shownPath_ || row->run != shownRun_ || row->log.size() < shownLines_) {
    boardLines_->clear();
    shownPath_ = row->path;
    shownRun_ = row->run;
    shownLines_ = 0;
    boardLogTitle_->setText(qt(T::boardLogTitle(deviceName(row->path))));
  }
  for (; shownLines_ < row->log.size(); ++shownLines_)
    boardLines_->append(row->log[shownLines_]);
}

void StationPanel::chooseRecordFile() {
  const QString current = station_.recordPath();
  QString folder = current.isEmpty()
                       ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
                       : QFileInfo(current).absolutePath();
  const std::string product = model_.product().name.empty() ? "Station" : model_.product().name;
  const QString proposed = current.isEmpty() ? folder + u'/' + qt(product) + ".jsonl" : current;
  // Lines are added to an existing record, never written over it: no question about replacing.
  QString file = QFileDialog::getSaveFileName(this, qt(T::recordDialogTitle()), proposed,
                                              qt(T::recordFileFilter()), nullptr,
                                              QFileDialog::DontConfirmOverwrite);
  if (file.isEmpty()) return;
  if (QFileInfo(file).suffix().isEmpty()) file += QStringLiteral(".jsonl");
  station_.setRecordPath(file);
}

void StationPanel::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange && problem_ != nullptr) {
    problem_->setPalette(problemPalette(QApplication::palette()));
    refreshTally();
  }
  if (event->type() == QEvent::FontChange && figures_[0] != nullptr) styleFigures();
  QWidget::changeEvent(event);
}

} // namespace tarnwick
