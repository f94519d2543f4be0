#pragma once
// A flasher model in a scratch folder with recorded sounds, scripted dialogs, short delays and
// clean preferences.

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include <deque>

#include "FlashCore/FirmwareImport.hpp"
#include "Tarnwick/Model/FlasherModel.hpp"
#include "Tarnwick/Model/SoundSink.hpp"
#include "support/Products.hpp"

namespace tarnwick::testing {

class RecordingSoundSink : public SoundSink {
public:
  void play(const std::string& eventID) override { played.push_back(eventID); }
  std::vector<std::string> played;
};

/// Answers every panel and question from queues; an empty queue is a cancelled dialog.
class ScriptedDialogs : public FlasherDialogs {
public:
  std::optional<std::filesystem::path> chooseProductToOpen() override {
    ++openPanels;
    return next(openAnswers);
  }
  std::optional<std::filesystem::path> chooseProductSaveLocation(const QString& name) override {
    proposedNames.push_back(name);
    return next(saveAnswers);
  }
  std::optional<std::filesystem::path> chooseLogSaveLocation(const QString& name) override {
    proposedNames.push_back(name);
    return next(saveAnswers);
  }
  SaveChangesAnswer askSaveChanges() override {
    ++questions;
    return next(questionAnswers).value_or(SaveChangesAnswer::cancel);
  }
  void alert(const QString& message) override { alerts.push_back(message); }

  std::deque<std::filesystem::path> openAnswers;
  std::deque<std::filesystem::path> saveAnswers;
  std::deque<SaveChangesAnswer> questionAnswers;
  std::vector<QString> proposedNames;
  std::vector<QString> alerts;
  int openPanels = 0;
  int questions = 0;

private:
  template <typename T> static std::optional<T> next(std::deque<T>& queue) {
    if (queue.empty()) return std::nullopt;
    T answer = queue.front();
    queue.pop_front();
    return answer;
  }
};

class ModelTest : public ::testing::Test {
protected:
  void SetUp() override {
    QSettings().clear();
    ASSERT_TRUE(folder.isValid());
  }
  void TearDown() override { QSettings().clear(); }

  std::filesystem::path path(const std::string& name) const {
    return std::filesystem::path(folder.path().toStdString()) / name;
  }
  std::filesystem::path autosavePath() const { return path("Current.twflash"); }

  /// What a model of this fixture is made from: the scratch folder, the recorded sounds, the
  /// fixture's delays.
  FlasherModel::Options modelOptions(std::vector<std::string> testDevices = {}) {
    FlasherModel::Options options;
    options.testDevices = std::move(testDevices);
    options.sounds = sounds;
    options.autosaveLocation = autosavePath();
    options.autosaveDelaySeconds = autosaveDelay;
    options.autoFlashDelaySeconds = autoFlashDelay;
    options.quietSeconds = quietSeconds;
    options.progressIntervalSeconds = progressInterval;
    options.paceSimulatedBoards = false;
    return options;
  }

  std::unique_ptr<FlasherModel> makeModel(std::vector<std::string> testDevices = {}) {
    auto model = std::make_unique<FlasherModel>(modelOptions(std::move(testDevices)));
    model->setDialogs(&dialogs);
    return model;
  }

  /// Puts a ready-made product with its files into the model.
  static void load(FlasherModel& model, const ProductWithFiles& p) {
    std::vector<FirmwareImport::Imported> imported;
    for (const auto& image : p.product.images)
      imported.push_back({image, p.files.at(image.id)});
    model.setImages(imported);
    Product product = p.product;
    model.setProduct(product);
  }

  /// Runs the event loop until the run has ended.
  static bool waitUntilIdle(FlasherModel& model, int milliseconds = 20000) {
    return QTest::qWaitFor([&] { return !model.isFlashing(); }, milliseconds);
  }

  QTemporaryDir folder;
  std::shared_ptr<RecordingSoundSink> sounds = std::make_shared<RecordingSoundSink>();
  ScriptedDialogs dialogs;
  double autosaveDelay = 0.05;
  double autoFlashDelay = 0.1;
  double quietSeconds = 6.0;
  double progressInterval = 0.05;
};

} // namespace tarnwick::testing
