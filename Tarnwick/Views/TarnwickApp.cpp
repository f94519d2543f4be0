#include "Tarnwick/Views/TarnwickApp.hpp"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <utility>

#include "Localization/WindowTexts.hpp"
#include "Simulator/SimulatedBoard.hpp"
#include "Tarnwick/Model/FlasherModel.hpp"
#include "Tarnwick/Model/OutputBuffer.hpp"
#include "Tarnwick/Model/SoundSink.hpp"
#include "Tarnwick/Views/FileListPanel.hpp"
#include "Tarnwick/Views/MainWindow.hpp"

namespace tarnwick {

namespace {
class SilentSounds : public SoundSink {
public:
  void play(const std::string&) override {}
};

/// How long a second instance waits for the first to take its files.
constexpr int handOverTimeoutMilliseconds = 3000;

QStringList absoluteFiles(const std::vector<std::string>& files) {
  QStringList absolute;
  for (const std::string& file : files)
    absolute << QFileInfo(QString::fromStdString(file)).absoluteFilePath();
  return absolute;
}
} // namespace

TarnwickApp::TarnwickApp(CommandLine line, QObject* parent)
    : QObject(parent), line_(std::move(line)) {}

TarnwickApp::~TarnwickApp() {
  // The window refers to the model; it goes first.
  window_.reset();
  model_.reset();
}

QString TarnwickApp::instanceName() {
  // Under the user's runtime directory the socket is private to the session; the name is a path.
  QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  QString user = qEnvironmentVariable("USER", QStringLiteral("user"));
  if (runtime.isEmpty()) return QStringLiteral("tarnwick-") + user;
  return runtime + QStringLiteral("/tarnwick-") + QCoreApplication::applicationName() +
         QStringLiteral(".socket");
}

bool TarnwickApp::claimInstance() {
  QString name = instanceName();
  {
    QLocalSocket running;
    running.connectToServer(name);
    if (running.waitForConnected(handOverTimeoutMilliseconds / 3)) {
      // One file per line; an empty message only raises the running window.
      QByteArray message = absoluteFiles(line_.files).join(u'\n').toUtf8() + '\n';
      running.write(message);
      running.waitForBytesWritten(handOverTimeoutMilliseconds);
      running.disconnectFromServer();
      if (running.state() != QLocalSocket::UnconnectedState)
        running.waitForDisconnected(handOverTimeoutMilliseconds);
      return false;
    }
  }
  // Nobody answered: a socket left by a crashed instance is stale.
  QLocalServer::removeServer(name);
  server_ = std::make_unique<QLocalServer>();
  server_->setSocketOptions(QLocalServer::UserAccessOption);
  if (server_->listen(name))
    connect(server_.get(), &QLocalServer::newConnection, this, &TarnwickApp::acceptConnection);
  // Without the socket the program still runs; it just cannot take files from a second start.
  return true;
}

void TarnwickApp::acceptConnection() {
  while (QLocalSocket* socket = server_->nextPendingConnection()) {
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
      if (!socket->canReadLine()) return;
      QByteArray all = socket->readAll();
      QStringList files;
      for (const QByteArray& line : all.split('\n'))
        if (!line.isEmpty()) files << QString::fromUtf8(line);
      openFiles(files);
      if (window_) {
        window_->show();
        window_->raise();
        window_->activateWindow();
      }
    });
  }
}

void TarnwickApp::start() {
  FlasherModel::Options options;
  options.testDevices = line_.testDevices;
  options.portSource = makeScannerPortSource();
  if (!line_.screenshotFolder.empty()) {
    // Pictures are taken from a clean slate and leave the user's own work alone.
    scratch_ = std::make_unique<QTemporaryDir>();
    options.autosaveLocation = scratch_->filePath(QStringLiteral("Current.twflash")).toStdString();
    options.sounds = std::make_shared<SilentSounds>();
  }
  start(std::move(options));
}

void TarnwickApp::start(FlasherModel::Options options) {
  model_ = std::make_unique<FlasherModel>(std::move(options));
  window_ = std::make_unique<MainWindow>(*model_);
  // Queued: the question about unsaved changes is not asked from inside the end of the run.
  connect(model_.get(), &FlasherModel::stateChanged, this, &TarnwickApp::openAfterRun,
          Qt::QueuedConnection);
  // The screenshot mode takes its file itself, between two pictures.
  if (line_.screenshotFolder.empty()) openFiles(absoluteFiles(line_.files));
  // After the files: a product given on the command line is what the board is for, and only
  // without one does a demo come with the board.
  for (const std::string& name : line_.simulatedBoards) {
    using simulator::SimulatedBoard;
    model_->plugInSimulatedBoard(SimulatedBoard::fromShortName(name).value_or(
        SimulatedBoard::suggestedFor(model_->product().target)));
  }
  connect(qApp, &QCoreApplication::aboutToQuit, model_.get(), &FlasherModel::saveWorkNow);
  if (line_.station) window_->setStationMode(true);
}

void TarnwickApp::openFiles(const QStringList& files) {
  pending_ << files;
  if (!model_ || pending_.isEmpty()) return;
  QString first = pending_.front();
  pending_.clear();
  // A run in progress, or the station, keeps its product; the latest file handed over waits for
  // its end.
  if (model_->productLocked()) {
    waiting_ = first;
    model_->appendLog({{LogSegment::Kind::meta,
                        L10n::Window::opensAfterRun(QFileInfo(first).fileName().toStdString())}});
    return;
  }
  open(first);
}

void TarnwickApp::openAfterRun() {
  if (waiting_.isEmpty() || model_->productLocked()) return;
  QString file = std::exchange(waiting_, QString());
  // The file came while the user was busy with a run: work changed since is not dropped unasked.
  if (dropActionFor({file.toStdString()}).kind == DropAction::Kind::openProduct &&
      !model_->confirmDiscard())
    return;
  open(file);
}

void TarnwickApp::open(const QString& file) {
  // A build folder or a firmware file given instead of a product is taken as a drop would be.
  DropAction action = dropActionFor({file.toStdString()});
  if (action.kind == DropAction::Kind::importFolder)
    model_->importFolder(action.locations.front());
  else if (file.endsWith(QLatin1String(".bin"), Qt::CaseInsensitive) ||
           file.endsWith(QLatin1String(".hex"), Qt::CaseInsensitive))
    model_->addFiles(action.locations);
  else
    model_->openProduct(file.toStdString());
}

} // namespace tarnwick
