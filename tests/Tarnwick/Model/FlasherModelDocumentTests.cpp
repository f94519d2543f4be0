// The product's life on disk through the model: autosave and restore, open, save, the
// unsaved-changes question with each answer, the log file, imports and the preferences.
#include <QRegularExpression>
#include <QSignalSpy>

#include <csignal>
#include <fstream>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

#include "FlashCore/ProductPackage.hpp"
#include "Localization/Language.hpp"
#include "ModelFixture.hpp"
#include "Tarnwick/Model/OutputBuffer.hpp"

using namespace tarnwick;
using namespace tarnwick::testing;
using Answer = FlasherDialogs::SaveChangesAnswer;

namespace {

void writeBytes(const std::filesystem::path& location, const Bytes& bytes) {
  std::ofstream(location, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

Product renamed(Product product, const std::string& name) {
  product.name = name;
  return product;
}

} // namespace

TEST_F(ModelTest, AutosaveIsDebouncedAndRestoredAtStart) {
  auto p = espProduct(ESPChip::esp32c3, 8 * 1024);
  {
    auto model = makeModel();
    load(*model, p);
    model->setProduct(renamed(model->product(), "Sensor 2"));
    model->setProduct(renamed(model->product(), "Sensor 3"));
    // Nothing is written while changes keep coming.
    EXPECT_FALSE(std::filesystem::exists(autosavePath()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(autosavePath()); }, 5000));
    auto saved = ProductPackage::read(autosavePath());
    EXPECT_EQ(saved.product.name, "Sensor 3");
    EXPECT_EQ(saved.files, p.files);
    model->setProduct(renamed(model->product(), "Sensor 4"));
    EXPECT_TRUE(model->requestQuit()); // saves at once on the way out
    EXPECT_EQ(ProductPackage::read(autosavePath()).product.name, "Sensor 4");
  }
  auto restored = makeModel();
  EXPECT_EQ(restored->product().name, "Sensor 4");
  EXPECT_EQ(restored->files(), p.files);
  EXPECT_FALSE(restored->productURL()); // ⌘S asks where to save
  EXPECT_TRUE(restored->hasUnsavedChanges());
  EXPECT_TRUE(restored->errorMessage().isEmpty());

  // A damaged or missing autosave gives a new product for an ESP chip found on connecting.
  LanguageOverride english(Language::en);
  for (bool damaged : {true, false}) {
    std::filesystem::remove_all(autosavePath());
    if (damaged) writeBytes(autosavePath(), {'P', 'K', 3, 4, 0, 0});
    auto fresh = makeModel();
    EXPECT_EQ(fresh->product().name, "New product");
    EXPECT_EQ(fresh->product().target, Target::esp());
    EXPECT_TRUE(fresh->product().images.empty());
    EXPECT_TRUE(fresh->errorMessage().isEmpty());
  }

  // A place where nothing can be written: the autosave fails without a word.
  writeBytes(path("blocker"), {1});
  FlasherModel::Options options;
  options.sounds = sounds;
  options.autosaveLocation = path("blocker") / "Current.twflash";
  FlasherModel blocked(std::move(options));
  blocked.saveWorkNow();
  EXPECT_TRUE(blocked.errorMessage().isEmpty());
}

TEST_F(ModelTest, KillingTheWriterLeavesTheOldOrTheNewAutosave) {
  auto a = espProduct(ESPChip::esp32, 32 * 1024);
  auto b = espProduct(ESPChip::esp32s3, 48 * 1024);
  ProductPackage first{a.product, a.files}, second{b.product, b.files};
  ProductPackage::write(first, autosavePath());
  std::mt19937 random(7);
  for (int round = 0; round < 12; ++round) {
    pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      for (int i = 0;; ++i) {
        try {
          ProductPackage::write(i % 2 ? first : second, autosavePath());
        } catch (...) {
          _exit(2);
        }
      }
    }
    // The kill lands at an arbitrary moment of some write.
    usleep(std::uniform_int_distribution<useconds_t>(1000, 40000)(random));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the writer failed by itself";
    auto found = ProductPackage::read(autosavePath());
    EXPECT_TRUE(found == first || found == second) << round;
  }
}

TEST_F(ModelTest, EachPreferenceWithItsDefaultAndItsTypeRule) {
  struct Case {
    const char* key;
    const char* property;
    std::optional<QVariant> stored;
    QVariant expected;
  };
  const Case cases[] = {
      {"port", "selectedPath", {}, QString()},
      {"port", "selectedPath", QString("/dev/ttyUSB3"), QString("/dev/ttyUSB3")},
      {"autoFlash", "autoFlash", {}, false},
      {"autoFlash", "autoFlash", true, true},
      {"sounds", "playSounds", {}, true},
      {"sounds", "playSounds", false, false},
      {"sounds", "playSounds", QString("banana"), true}, // not a bool: the default
      {"sounds", "playSounds", 0, true},
      {"timestamps", "showTimestamps", {}, true},
      {"timestamps", "showTimestamps", false, false},
      {"timestamps", "showTimestamps", QString("no"), true},
      {"autoscroll", "autoscroll", {}, true},
      {"autoscroll", "autoscroll", false, false},
      {"autoscroll", "autoscroll", 0.0, true},
      {"unsaved", "hasUnsavedChanges", {}, false},
      {"unsaved", "hasUnsavedChanges", true, true},
  };
  for (const auto& c : cases) {
    QSettings().clear();
    if (c.stored) QSettings().setValue(c.key, *c.stored);
    auto model = makeModel();
    EXPECT_EQ(model->property(c.property), c.expected) << c.key << " " << c.stored.has_value();
    EXPECT_EQ(model->output().autoscroll(), model->autoscroll());
  }

  // Each switch is stored at once, through the settings file, and read back by the next start.
  QSettings().clear();
  const std::pair<const char*, QVariant> changes[] = {{"selectedPath", QString("/dev/ttyACM1")},
                                                      {"autoFlash", true},
                                                      {"playSounds", false},
                                                      {"showTimestamps", false},
                                                      {"autoscroll", false}};
  {
    auto model = makeModel();
    for (const auto& [property, value] : changes)
      EXPECT_TRUE(model->setProperty(property, value));
    model->setProduct(renamed(model->product(), "Changed"));
  }
  QSettings().sync();
  auto next = makeModel();
  for (const auto& [property, value] : changes)
    EXPECT_EQ(next->property(property), value);
  EXPECT_FALSE(next->output().autoscroll());
  EXPECT_TRUE(next->hasUnsavedChanges());

  // A test device is never remembered as the user's port: a normal start would offer it gone.
  {
    auto withTestDevice = makeModel({"/dev/pts/3"});
    EXPECT_EQ(withTestDevice->selectedPath(), "/dev/pts/3");
    withTestDevice->setSelectedPath("/dev/pts/3");
  }
  QSettings().sync();
  EXPECT_EQ(makeModel()->selectedPath(), "/dev/ttyACM1");
}

TEST_F(ModelTest, SaveSaveAsOpenAndRecentDocuments) {
  LanguageOverride english(Language::en);
  auto model = makeModel();
  load(*model, espProduct(ESPChip::esp32, 8 * 1024));
  EXPECT_EQ(model->windowTitle(), "Sensor (edited)");

  model->saveProduct(); // no location yet: asks, and the panel is cancelled
  ASSERT_EQ(dialogs.proposedNames.size(), 1u);
  EXPECT_EQ(dialogs.proposedNames[0], "Sensor.twflash");
  EXPECT_TRUE(model->hasUnsavedChanges());

  dialogs.saveAnswers = {path("Sensor.twflash")};
  model->saveProduct();
  EXPECT_FALSE(model->hasUnsavedChanges());
  EXPECT_FALSE(QSettings().value("unsaved").toBool());
  EXPECT_EQ(model->productURL(), path("Sensor.twflash"));
  EXPECT_EQ(model->windowTitle(), "Sensor");
  EXPECT_EQ(model->recentDocuments().value(0).toStdString(), path("Sensor.twflash").string());

  // With a location, saving asks nothing.
  model->setProduct(renamed(model->product(), "Sensor B"));
  model->saveProduct();
  EXPECT_EQ(dialogs.proposedNames.size(), 2u);
  EXPECT_EQ(ProductPackage::read(path("Sensor.twflash")).product.name, "Sensor B");

  // A failed save says why and keeps the changes.
  model->setProduct(renamed(model->product(), "Sensor C"));
  writeBytes(path("blocker"), {1});
  model->saveProductTo(path("blocker") / "x.twflash");
  // Named, with the cause in the user's language.
  EXPECT_EQ(model->errorMessage().toStdString(),
            "Saving failed: " + (path("blocker") / "x.twflash").string() +
                ": part of the path is not a folder.");
  {
    LanguageOverride german(Language::de);
    model->saveProductTo(path("blocker") / "x.twflash");
    EXPECT_TRUE(model->errorMessage().endsWith("x.twflash: ein Teil des Pfads ist kein Ordner."))
        << model->errorMessage().toStdString();
  }
  EXPECT_TRUE(model->hasUnsavedChanges());
  EXPECT_EQ(model->productURL(), path("Sensor.twflash"));

  // Opening a product straight away (handed over by the desktop) asks nothing.
  model->clearErrorMessage();
  auto other = espProduct(ESPChip::esp32s2, 4 * 1024);
  other.product.name = "Other";
  ProductPackage::write({other.product, other.files}, path("Other.twflash"));
  QSignalSpy lines(model.get(), &FlasherModel::logLineAppended);
  model->openProduct(path("Other.twflash"));
  EXPECT_EQ(dialogs.questions, 0);
  EXPECT_EQ(model->product(), other.product);
  EXPECT_EQ(model->files(), other.files);
  EXPECT_FALSE(model->hasUnsavedChanges());
  EXPECT_FALSE(model->outcome());
  ASSERT_EQ(lines.count(), 1);
  EXPECT_EQ(model->output().plainText().endsWith("--- Opened product Other ---\n"), true);
  EXPECT_EQ(model->recentDocuments(),
            (QStringList{QString::fromStdString(path("Other.twflash").string()),
                         QString::fromStdString(path("Sensor.twflash").string())}));

  // A file that is no product, and one that is gone.
  writeBytes(path("bad.twflash"), {'n', 'o'});
  model->openProduct(path("bad.twflash"));
  EXPECT_EQ(model->errorMessage(),
            "Cannot open bad.twflash: it is not a product file of this app.");
  EXPECT_EQ(model->product(), other.product);
  model->clearErrorMessage();
  model->openRecent(QString::fromStdString(path("gone.twflash").string()));
  EXPECT_TRUE(model->errorMessage().startsWith("Cannot open gone.twflash: "));

  // File ▸ Open Recent asks first when there are changes.
  model->setProduct(renamed(model->product(), "Other edited"));
  dialogs.questionAnswers = {Answer::cancel};
  model->openRecent(model->recentDocuments().value(1));
  EXPECT_EQ(model->product().name, "Other edited");
  dialogs.questionAnswers = {Answer::dontSave};
  model->openRecent(model->recentDocuments().value(1));
  EXPECT_EQ(model->product().name, "Sensor B");
  model->clearRecentDocuments();
  EXPECT_TRUE(model->recentDocuments().isEmpty());
}

TEST_F(ModelTest, TheUnsavedChangesQuestionWithEveryAnswer) {
  LanguageOverride english(Language::en);
  // Nothing to lose: no question.
  auto model = makeModel();
  EXPECT_TRUE(model->confirmDiscard());
  model->setProduct(renamed(model->product(), "Only a name"));
  EXPECT_TRUE(model->hasUnsavedChanges());
  EXPECT_TRUE(model->confirmDiscard()); // changed, but without images
  EXPECT_EQ(dialogs.questions, 0);

  struct Case {
    const char* what;
    Answer answer;
    bool hasLocation;
    std::optional<std::string> saveTo;
    bool expected;
  };
  const Case cases[] = {
      {"cancel keeps everything", Answer::cancel, false, {}, false},
      {"don't save discards", Answer::dontSave, false, {}, true},
      {"save to the known location", Answer::save, true, {}, true},
      {"save, but the save panel is cancelled", Answer::save, false, {}, false},
      {"save to a chosen location", Answer::save, false, "Chosen.twflash", true},
      {"save fails", Answer::save, false, "blocker/x.twflash", false},
  };
  writeBytes(path("blocker"), {1});
  for (const auto& c : cases) {
    auto m = makeModel();
    load(*m, espProduct(ESPChip::esp32, 4 * 1024));
    if (c.hasLocation) {
      dialogs.saveAnswers = {path("Known.twflash")};
      m->saveProductAs();
      m->setProduct(renamed(m->product(), "Known, edited"));
    }
    dialogs.saveAnswers.clear();
    if (c.saveTo) dialogs.saveAnswers = {path(*c.saveTo)};
    dialogs.questionAnswers = {c.answer};
    int asked = dialogs.questions;
    EXPECT_EQ(m->confirmDiscard(), c.expected) << c.what;
    EXPECT_EQ(dialogs.questions, asked + 1) << c.what;
    if (c.answer == Answer::save && c.expected) {
      EXPECT_FALSE(m->hasUnsavedChanges()) << c.what;
    }
    if (c.hasLocation) {
      EXPECT_EQ(ProductPackage::read(path("Known.twflash")).product.name, "Known, edited");
    }
  }

  // Through File ▸ New and File ▸ Open….
  load(*model, espProduct(ESPChip::esp32c6, 4 * 1024));
  Product edited = model->product();
  dialogs.questionAnswers = {Answer::cancel, Answer::cancel};
  model->newProduct();
  model->openProductWithPanel();
  EXPECT_EQ(model->product(), edited);
  EXPECT_EQ(dialogs.openPanels, 0);

  dialogs.questionAnswers = {Answer::dontSave};
  model->openProductWithPanel(); // the open panel is cancelled
  EXPECT_EQ(dialogs.openPanels, 1);
  EXPECT_EQ(model->product(), edited);

  dialogs.questionAnswers = {Answer::dontSave};
  dialogs.openAnswers = {path("Chosen.twflash")};
  model->openProductWithPanel();
  EXPECT_EQ(model->productURL(), path("Chosen.twflash"));
  EXPECT_EQ(model->product().target, Target::esp(ESPChip::esp32));

  model->setProduct(renamed(model->product(), "Edited again"));
  dialogs.questionAnswers = {Answer::dontSave};
  model->newProduct();
  EXPECT_EQ(model->product().name, "New product");
  EXPECT_EQ(model->product().target, Target::esp(ESPChip::esp32)); // the target is kept
  EXPECT_TRUE(model->product().images.empty());
  EXPECT_TRUE(model->files().empty());
  EXPECT_FALSE(model->productURL());
  EXPECT_FALSE(model->hasUnsavedChanges());
  EXPECT_EQ(model->windowTitle(), "New product");
}

TEST_F(ModelTest, SavingTheLog) {
  auto model = makeModel();
  model->appendLog({{LogSegment::Kind::meta, "first line"}});
  model->appendLog({{LogSegment::Kind::error, "second"}, {LogSegment::Kind::text, " line"}});
  model->saveLog(); // cancelled
  ASSERT_EQ(dialogs.proposedNames.size(), 1u);
  EXPECT_TRUE(QRegularExpression("^Tarnwick \\d{4}-\\d\\d-\\d\\d \\d\\d\\.\\d\\d\\.\\d\\d\\.txt$")
                  .match(dialogs.proposedNames[0])
                  .hasMatch())
      << dialogs.proposedNames[0].toStdString();

  dialogs.saveAnswers = {path("log.txt")};
  model->saveLog();
  std::ifstream file(path("log.txt"));
  std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  EXPECT_EQ(QString::fromStdString(text), model->output().plainText());
  EXPECT_NE(text.find("second line\n"), std::string::npos);
}

// A product or a log that cannot be saved says where and why in the user's language, never
// only the system's English.
TEST_F(ModelTest, SavingFailuresNameTheFileAndTheCause) {
  auto model = makeModel();
  load(*model, espProduct(ESPChip::esp32, 4096));
  model->appendLog({{LogSegment::Kind::text, "line"}});
  writeBytes(path("blocker"), {1});
  std::filesystem::create_directories(path("folder") / "inside");
  struct Case {
    Language language;
    std::filesystem::path location;
    std::string cause;
    /// A product replaces a folder in its place (an older product saved as a folder).
    bool product = true;
  };
  const std::vector<Case> cases = {
      {Language::en, path("missing") / "x", ": the folder does not exist."},
      {Language::en, path("blocker") / "x", ": part of the path is not a folder."},
      {Language::en, path("folder"), ": a folder of that name is in the way.", false},
      {Language::de, path("missing") / "x", ": der Ordner existiert nicht."},
  };
  for (const Case& c : cases) {
    LanguageOverride language(c.language);
    const std::string start =
        c.language == Language::de ? "Speichern fehlgeschlagen: " : "Saving failed: ";
    const std::string expected = start + c.location.string() + c.cause;
    if (c.product) {
      model->saveProductTo(c.location);
      EXPECT_EQ(model->errorMessage().toStdString(), expected) << "product";
      EXPECT_TRUE(model->hasUnsavedChanges());
      model->clearErrorMessage();
    }
    dialogs.saveAnswers = {c.location};
    model->saveLog();
    EXPECT_EQ(model->errorMessage().toStdString(), expected) << "log";
    model->clearErrorMessage();
  }
}

TEST_F(ModelTest, NamesFromProductFilesAndDevicesReachTheLogAndLabelsEscaped) {
  LanguageOverride english(Language::en);
  auto model = makeModel();
  // A device of no vendor known here is named by what it reports.
  model->portsChanged({{"/dev/ttyUSB0", "Evil\x1B]0;owned\a\u202Eadapter", 0x1234, 0x5678}});
  const std::string label = model->portLabel("/dev/ttyUSB0").toStdString();
  EXPECT_NE(label.find("Evil\\x1B]0;owned\\x07\\u202Eadapter"), std::string::npos) << label;

  auto p = espProduct(ESPChip::esp32, 4 * 1024);
  const auto hostile = path("Lamp\x1B[2J\u2066.twflash");
  ProductPackage::write({p.product, p.files}, hostile);
  model->openProduct(hostile);
  model->appendLog({{LogSegment::Kind::error, "from a board: \u009B31m\u202D"}});
  const std::string log = model->output().plainText().toStdString();
  EXPECT_NE(log.find("--- Opened product Lamp\\x1B[2J\\u2066 ---\n"), std::string::npos) << log;
  EXPECT_NE(log.find("from a board: \\u009B31m\\u202D\n"), std::string::npos) << log;
  for (const std::string& text : {label, log}) {
    EXPECT_EQ(text.find('\x1B'), std::string::npos);
    for (const char* control : {"\u202E", "\u202D", "\u2066", "\u009B"})
      EXPECT_EQ(text.find(control), std::string::npos) << control;
  }
}

TEST_F(ModelTest, AddingReplacingAndRemovingFiles) {
  LanguageOverride english(Language::en);
  auto p = espProduct(ESPChip::esp32, 4 * 1024);
  for (const auto& image : p.product.images)
    writeBytes(path(image.fileName), p.files.at(image.id));
  writeBytes(path("empty.bin"), {});
  auto model = makeModel();
  model->addFiles(
      {path("bootloader.bin"), path("empty.bin"), path("firmware.bin"), path("missing.bin")});
  ASSERT_EQ(model->product().images.size(), 2u);
  EXPECT_EQ(model->product().images[1].role, FirmwareImage::Role::application);
  EXPECT_EQ(model->product().images[1].offset, 0x10000u);
  EXPECT_EQ(model->files().size(), 2u);
  QStringList lines = model->errorMessage().split('\n');
  ASSERT_EQ(lines.size(), 2);
  EXPECT_EQ(lines[0], "Cannot use empty.bin: the file is empty.");
  EXPECT_TRUE(lines[1].startsWith("Cannot use missing.bin: "));
  EXPECT_TRUE(model->hasUnsavedChanges());

  // A new file for an entry keeps its id, place and address.
  UUID id = model->product().images[1].id;
  model->replaceFile(id, path("littlefs.bin"));
  const FirmwareImage& replaced = model->product().images[1];
  EXPECT_TRUE(replaced.id == id && replaced.offset == 0x10000u &&
              replaced.fileName == "littlefs.bin");
  EXPECT_EQ(model->files().at(id), p.files.at(p.product.images[3].id));
  model->removeImages({id});
  EXPECT_EQ(model->product().images.size(), 1u);
  EXPECT_EQ(model->files().size(), 1u);

  // An Arduino board takes one sketch: the last file given.
  Product avr = model->product();
  avr.target = Target::avr(AVRBoard::uno);
  model->setProduct(avr);
  model->addFiles({path("firmware.bin"), path("partitions.bin")});
  ASSERT_EQ(model->product().images.size(), 1u);
  EXPECT_EQ(model->product().images[0].fileName, "partitions.bin");

  // A build folder replaces every entry and logs what it found.
  std::filesystem::create_directories(path("build"));
  writeBytes(path("build") / "firmware.bin", p.files.at(p.product.images[2].id));
  Product esp = model->product();
  esp.target = Target::esp();
  model->setProduct(esp);
  model->importFolder(path("build"));
  ASSERT_EQ(model->product().images.size(), 1u);
  EXPECT_EQ(model->product().images[0].fileName, "firmware.bin");
  EXPECT_TRUE(model->output().plainText().contains("1 file from build"));
  model->clearErrorMessage();
  model->importFolder(path("nothing here"));
  EXPECT_TRUE(model->errorMessage().startsWith("Cannot use nothing here: "));
}
