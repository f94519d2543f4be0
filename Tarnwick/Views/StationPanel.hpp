#pragma once
// The flashing station in the main window: the tally in large figures, the Start/Stop button
// with the station's options and record file, the table of boards, and the log lines of the
// board clicked in it.

#include <QWidget>

class QCheckBox;
class QFrame;
class QLabel;
class QPushButton;
class QSpinBox;
class QTableView;
class QToolButton;

namespace tarnwick {

class FlasherModel;
class LogView;
class OutputBuffer;
class StationModel;

class StationPanel : public QWidget {
  Q_OBJECT
public:
  StationPanel(FlasherModel& model, StationModel& station, QWidget* parent = nullptr);
  ~StationPanel() override;

  // The parts tests and the screenshot tour reach for.
  QPushButton* startButton() const { return start_; }
  QTableView* table() const { return table_; }
  /// The tally's figures: flashed, failed, running, boards per hour.
  QLabel* figure(int index) const { return figures_[index]; }
  QLabel* stateText() const { return state_; }
  QFrame* recordProblem() const { return problem_; }
  QCheckBox* alsoConnectedSwitch() const { return alsoConnected_; }
  QSpinBox* limitField() const { return limit_; }
  /// The lines of the board clicked in the table.
  LogView* boardLog() const { return boardLog_; }
  QLabel* boardLogTitle() const { return boardLogTitle_; }
  /// The text the Start/Stop button shows in the station's present phase.
  QString buttonText() const;

  /// Lets the person pick the record file with a save dialog.
  void chooseRecordFile();

signals:
  /// The Start/Stop button changed its text or whether it can be pressed.
  void controlsChanged();

protected:
  void changeEvent(QEvent* event) override;

private:
  QWidget* buildTally();
  QWidget* buildControls();
  void refreshControls();
  void refreshClearFinished();
  void refreshTally();
  void refreshRecord();
  void refreshBoardLog();
  void styleFigures();

  FlasherModel& model_;
  StationModel& station_;
  QLabel* figures_[4] = {};
  QLabel* state_ = nullptr;
  QFrame* problem_ = nullptr;
  QLabel* problemText_ = nullptr;
  QPushButton* start_ = nullptr;
  QCheckBox* alsoConnected_ = nullptr;
  QSpinBox* limit_ = nullptr;
  QLabel* recordPath_ = nullptr;
  QPushButton* chooseRecord_ = nullptr;
  QToolButton* forgetRecord_ = nullptr;
  QPushButton* clearFinished_ = nullptr;
  QTableView* table_ = nullptr;
  QLabel* boardLogTitle_ = nullptr;
  LogView* boardLog_ = nullptr;
  OutputBuffer* boardLines_ = nullptr;
  /// The Start/Stop button as `controlsChanged` last told it.
  QString announcedText_;
  bool announcedEnabled_ = false;
  /// The board whose lines are shown: its port, the run of its row and how many lines are in.
  std::string shownPath_;
  int shownRun_ = 0;
  std::size_t shownLines_ = 0;
};

} // namespace tarnwick
