#pragma once
// The main window over the flasher model: header with port and run controls, the no-board
// notice, product and files, status line and log; the menus; the model's dialogs.

#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <QProgressBar>

#include "Tarnwick/Model/FlasherModel.hpp"
#include "Tarnwick/Views/HelpWindow.hpp"
#include "Tarnwick/Views/PortPicker.hpp"
#include "Tarnwick/Views/SettingsSheet.hpp"

class QAction;
class QCheckBox;
class QComboBox;
class QFrame;
class QLineEdit;
class QPushButton;
class QSplitter;
class QStackedWidget;
class QToolButton;

namespace tarnwick {

class FileListPanel;
class HelpWindow;
class LogFindBar;
class LogView;
class SettingsSheet;
class StationModel;
class StationPanel;

/// The coloured dot beside the port: the state of the run and of the last outcome, told by a
/// mark inside it as well as by its colour, and by its accessible name.
class StatusDot : public QWidget {
  Q_OBJECT
public:
  /// What the dot shows besides its colour.
  enum class Mark { none, running, succeeded, failed, stopped };

  explicit StatusDot(QWidget* parent = nullptr);
  /// Yellow while flashing; after a run green, red, or grey when it was stopped; grey before
  /// any.
  static QColor colourFor(bool flashing, const std::optional<FlashOutcome>& outcome);
  static Mark markFor(bool flashing, const std::optional<FlashOutcome>& outcome);
  /// The ring around a dot of colour `fill`, dark enough to show on the palette's window.
  static QColor ringColour(const QColor& fill, const QPalette& palette);
  /// Colour, mark and the words for them (accessible name and tooltip) for this state.
  void showState(bool flashing, const std::optional<FlashOutcome>& outcome);
  QColor color() const { return color_; }
  Mark mark() const { return mark_; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  QColor color_;
  Mark mark_ = Mark::none;
};

/// The status line's progress bar. It shows no text; the text assistive technology reads as its
/// value names the file being written with the percentage ("bootloader.bin, 45 %").
class RunProgress : public QProgressBar {
  Q_OBJECT
public:
  using QProgressBar::QProgressBar;
  /// Set before the value, so the change of value is announced with it.
  void setValueText(const QString& text) { valueText_ = text; }
  QString text() const override { return valueText_; }

private:
  QString valueText_;
};

/// The status line's text: onto a further line when the window is too narrow for it, never cut.
class StatusText : public QLabel {
  Q_OBJECT
public:
  using QLabel::QLabel;
  QSize minimumSizeHint() const override;
  QSize sizeHint() const override;
  bool hasHeightForWidth() const override;
  int heightForWidth(int width) const override;

protected:
  void paintEvent(QPaintEvent* event) override;
};

/// The pane below the splitter: the status line, the log and its find bar. Never lower than the
/// status line's lines need at the pane's width; collapsed to the status line alone while the log
/// is hidden.
class LowerPane : public QWidget {
  Q_OBJECT
public:
  using QWidget::QWidget;
  QSize minimumSizeHint() const override;
  void setCollapsed(bool collapsed);

protected:
  bool event(QEvent* event) override;

private:
  void fit();
  bool collapsed_ = false;
};

class MainWindow : public QMainWindow, public FlasherDialogs {
  Q_OBJECT
public:
  explicit MainWindow(FlasherModel& model, QWidget* parent = nullptr);
  ~MainWindow() override;

  FlasherModel& model() const { return model_; }
  StationModel& station() const { return *station_; }

  // The parts tests and the screenshot mode reach for.
  PortPicker* portPicker() const { return portPicker_; }
  QPushButton* flashButton() const { return flashButton_; }
  QAction* flashAction() const { return flashAction_; }
  QFrame* noBoardBanner() const { return banner_; }
  /// Help ▸ Try with a Simulated Board: one entry per board that can be simulated, then one per
  /// simulated board plugged in, to pull it out.
  QMenu* simulatedBoardMenu() const { return simulatedMenu_; }
  QComboBox* targetPicker() const { return targetPicker_; }
  FileListPanel* fileList() const { return fileList_; }
  SettingsSheet* settingsSheet();
  HelpWindow* helpWindow();
  StatusDot* statusDot() const { return statusDot_; }
  StatusText* statusText() const { return statusText_; }
  RunProgress* progressBar() const { return progress_; }
  /// The alert showing `errorMessage`, while it is open.
  QMessageBox* alertBox() const { return alert_; }
  LogFindBar* findBar() const { return findBar_; }
  bool logShown() const;
  void setLogShown(bool shown);
  StationPanel* stationPanel() const { return stationPanel_; }
  QAction* stationAction() const { return stationAction_; }
  /// The line over the product while the station runs.
  QLabel* productLockedNote() const { return lockedNote_; }
  /// Station mode: the file table gives way to the flashing station's table of boards, and
  /// Ctrl+R starts and stops the station. It is left only while the station is idle.
  bool stationMode() const;
  void setStationMode(bool on);

  // FlasherDialogs.
  std::optional<std::filesystem::path> chooseProductToOpen() override;
  std::optional<std::filesystem::path>
  chooseProductSaveLocation(const QString& proposedName) override;
  std::optional<std::filesystem::path> chooseLogSaveLocation(const QString& proposedName) override;
  SaveChangesAnswer askSaveChanges() override;
  void alert(const QString& message) override;

public slots:
  void showSettings();
  void showHelp();
  void showNotes();

protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

private:
  QWidget* buildHeader();
  QWidget* buildBanner();
  QWidget* buildProductPanel();
  QWidget* buildStatusLine();
  void buildMenus();
  void refreshRunControls();
  void refreshProduct();
  void refreshStatus();
  void refreshBanner();
  void refreshRecent();
  void refreshSimulatedBoards();
  void showErrorMessage();

  FlasherModel& model_;
  StationModel* station_ = nullptr;
  PortPicker* portPicker_ = nullptr;
  /// The header's controls of a single run, hidden in station mode.
  QList<QWidget*> singleRunControls_;
  QLabel* stationTitle_ = nullptr;
  StatusDot* statusDot_ = nullptr;
  QPushButton* flashButton_ = nullptr;
  QCheckBox* automatic_ = nullptr;
  QToolButton* settingsButton_ = nullptr;
  QFrame* banner_ = nullptr;
  bool bannerDismissed_ = false;
  QLineEdit* productName_ = nullptr;
  QComboBox* targetPicker_ = nullptr;
  QToolButton* notesButton_ = nullptr;
  QList<QWidget*> productButtons_;
  FileListPanel* fileList_ = nullptr;
  StationPanel* stationPanel_ = nullptr;
  QStackedWidget* pages_ = nullptr;
  QLabel* lockedNote_ = nullptr;
  StatusText* statusText_ = nullptr;
  RunProgress* progress_ = nullptr;
  QMenu* boardMenu_ = nullptr;
  QLabel* counters_ = nullptr;
  QToolButton* logToggle_ = nullptr;
  QPushButton* logOptions_ = nullptr;
  LogView* log_ = nullptr;
  LogFindBar* findBar_ = nullptr;
  QSplitter* splitter_ = nullptr;
  LowerPane* bottom_ = nullptr;
  QAction* flashAction_ = nullptr;
  QAction* stationAction_ = nullptr;
  QAction* autoFlashAction_ = nullptr;
  QAction* showLogAction_ = nullptr;
  QAction* autoscrollAction_ = nullptr;
  QAction* timestampsAction_ = nullptr;
  QAction* saveLogAction_ = nullptr;
  QAction* clearLogAction_ = nullptr;
  QMenu* recentMenu_ = nullptr;
  QMenu* simulatedMenu_ = nullptr;
  QList<QAction*> unplugActions_;
  QPushButton* trySimulated_ = nullptr;
  QList<QAction*> editActions_;
  QPointer<SettingsSheet> settings_;
  QPointer<HelpWindow> help_;
  QPointer<QMessageBox> alert_;
  /// The port of a new board that automatic flashing is about to take, said in the status line
  /// until its run starts.
  QString newBoard_;
};

} // namespace tarnwick
