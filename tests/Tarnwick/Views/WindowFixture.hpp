#pragma once
// The main window over a flasher model in a scratch folder, shown on the offscreen platform, with
// scripted dialogs; and drops as the desktop delivers them.

#include <QDragEnterEvent>
#include <QMimeData>
#include <QTest>
#include <fstream>

#include "Tarnwick/Model/ModelFixture.hpp"
#include "Tarnwick/Views/FileListPanel.hpp"
#include "Tarnwick/Views/MainWindow.hpp"

namespace tarnwick::testing {

class WindowTest : public ModelTest {
protected:
  MainWindow& open(std::vector<std::string> testDevices = {}) {
    model = makeModel(std::move(testDevices));
    window = std::make_unique<MainWindow>(*model);
    // The real dialogs would wait for a person; the scripted ones answer at once.
    model->setDialogs(&dialogs);
    window->show();
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    return *window;
  }
  void TearDown() override {
    window.reset();
    model.reset();
    ModelTest::TearDown();
  }

  void drop(const std::vector<std::filesystem::path>& locations) {
    QMimeData data;
    QList<QUrl> urls;
    for (const auto& location : locations)
      urls << QUrl::fromLocalFile(QString::fromStdString(location.string()));
    data.setUrls(urls);
    FileListPanel* target = window->fileList();
    QPoint middle = target->rect().center();
    QDragEnterEvent enter(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &enter);
    ASSERT_TRUE(enter.isAccepted());
    QDropEvent event(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &event);
  }

  std::filesystem::path writeFile(const std::string& name, const Bytes& bytes) {
    auto location = path(name);
    std::ofstream(location, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return location;
  }

  std::vector<std::string> fileNames() const {
    std::vector<std::string> names;
    for (const auto& image : model->product().images)
      names.push_back(image.fileName);
    return names;
  }

  std::unique_ptr<FlasherModel> model;
  std::unique_ptr<MainWindow> window;
};

} // namespace tarnwick::testing
