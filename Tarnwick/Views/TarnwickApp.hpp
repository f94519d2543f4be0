#pragma once
// The running application: one instance per user session, the model and its window, product
// files handed over by the desktop, and the screenshot mode.

#include <QObject>
#include <QString>
#include <memory>

#include "Tarnwick/Model/FlasherModel.hpp"
#include "Tarnwick/Views/CommandLine.hpp"

class QLocalServer;
class QTemporaryDir;

namespace tarnwick {

class MainWindow;

class TarnwickApp : public QObject {
  Q_OBJECT
public:
  explicit TarnwickApp(CommandLine line, QObject* parent = nullptr);
  ~TarnwickApp() override;

  /// The name of the session's instance socket.
  static QString instanceName();

  /// Becomes the session's instance. When another one is running it gets this command line's
  /// files (or is raised) and false is returned: this process should end.
  bool claimInstance();
  /// Creates the model and the window and opens the first file given.
  void start();
  /// The same with a model made from `options` (tests: scratch folders, test devices).
  void start(FlasherModel::Options options);
  /// Drives the window through its main states and saves a picture of each; the exit code.
  int takeScreenshots();

  FlasherModel* model() const { return model_.get(); }
  /// Files handed over before the model exists.
  const QStringList& pendingFiles() const { return pending_; }
  MainWindow* window() const { return window_.get(); }

  /// Opens the first of `files` as a product handed over by the desktop: no unsaved-changes
  /// question. Files that arrive before the model exists wait for it; during a run the last one
  /// handed over waits for its end and then asks about unsaved changes as File ▸ Open does.
  void openFiles(const QStringList& files);
  /// The file waiting for the run to end; empty when none is.
  const QString& waitingFile() const { return waiting_; }

private:
  void acceptConnection();
  void openAfterRun();
  void open(const QString& file);

  CommandLine line_;
  QStringList pending_;
  QString waiting_;
  std::unique_ptr<QLocalServer> server_;
  std::unique_ptr<QTemporaryDir> scratch_;
  std::unique_ptr<FlasherModel> model_;
  std::unique_ptr<MainWindow> window_;
};

} // namespace tarnwick
