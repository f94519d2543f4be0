#include "Tarnwick/Views/FileListPanel.hpp"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QStackedWidget>
#include <QTableWidget>
#include <QVBoxLayout>
#include <set>

#include "FlashCore/ESPImage.hpp"
#include "FlashCore/ProductCheck.hpp"
#include "FlashCore/ProductPackage.hpp"
#include "Localization/MainWindowTexts.hpp"
#include "Localization/ProductTexts.hpp"
#include "Localization/RunTexts.hpp"
#include "Localization/SettingsTexts.hpp"
#include "Localization/WindowTexts.hpp"
#include "Tarnwick/Model/FlasherModel.hpp"
#include "Tarnwick/Views/AddressField.hpp"
#include "Tarnwick/Views/TableFitting.hpp"
#include "Tarnwick/Views/ViewSupport.hpp"

namespace tarnwick {

namespace {
namespace W = L10n::Window;

QString roleName(FirmwareImage::Role role) {
  switch (role) {
  case FirmwareImage::Role::bootloader: return qt(L10n::Images::bootloader());
  case FirmwareImage::Role::partitionTable: return qt(L10n::Images::partitionTable());
  case FirmwareImage::Role::otaData: return qt(L10n::Images::otaData());
  case FirmwareImage::Role::application: return qt(L10n::Images::application());
  case FirmwareImage::Role::fileSystem: return qt(L10n::Images::fileSystem());
  case FirmwareImage::Role::other: break;
  }
  return qt(L10n::Images::other());
}

bool isProductLocation(const std::filesystem::path& location) {
  std::string extension = location.extension().string();
  for (char& c : extension)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return extension == "." + std::string(ProductPackage::fileExtension);
}

std::vector<std::filesystem::path> localFiles(const QMimeData* data) {
  std::vector<std::filesystem::path> locations;
  if (data == nullptr || !data->hasUrls()) return locations;
  for (const QUrl& url : data->urls())
    if (url.isLocalFile()) locations.emplace_back(url.toLocalFile().toStdString());
  return locations;
}
} // namespace

DropAction dropActionFor(const std::vector<std::filesystem::path>& locations) {
  if (locations.empty()) return {};
  if (locations.size() == 1) {
    std::error_code error;
    const auto& location = locations.front();
    if (isProductLocation(location)) return {DropAction::Kind::openProduct, locations};
    if (std::filesystem::is_directory(location, error))
      return {DropAction::Kind::importFolder, locations};
  }
  return {DropAction::Kind::addFiles, locations};
}

FileListPanel::FileListPanel(FlasherModel& model, QWidget* parent)
    : QWidget(parent), model_(model) {
  setAcceptDrops(true);
  setAutoFillBackground(true);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);

  auto* buttons = new QHBoxLayout;
  auto* files = new QPushButton(qt(L10n::Images::addFiles()));
  files->setToolTip(qt(L10n::Images::addFilesTooltip()));
  auto* folder = new QPushButton(qt(L10n::Images::buildFolder()));
  folder->setToolTip(qt(L10n::Images::buildFolderTooltip()));
  connect(files, &QPushButton::clicked, this, &FileListPanel::chooseFiles);
  connect(folder, &QPushButton::clicked, this, &FileListPanel::chooseBuildFolder);
  files->setObjectName("addFilesButton");
  folder->setObjectName("buildFolderButton");
  buttons->addWidget(files);
  buttons->addWidget(folder);
  buttons->addStretch();
  topButtons_ = new QWidget;
  topButtons_->setLayout(buttons);
  buttons->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(topButtons_);

  stack_ = new QStackedWidget;
  layout->addWidget(stack_, 1);

  // The empty view: what to do first, with the same two buttons at hand.
  auto* empty = new QWidget;
  auto* emptyLayout = new QVBoxLayout(empty);
  emptyLayout->addStretch();
  emptyTitle_ = new QLabel(qt(L10n::Images::noFirmwareYet()));
  QFont titleFont = emptyTitle_->font();
  titleFont.setPointSizeF(titleFont.pointSizeF() * 1.3);
  titleFont.setBold(true);
  emptyTitle_->setFont(titleFont);
  emptyTitle_->setAlignment(Qt::AlignCenter);
  emptyHint_ = new QLabel;
  emptyHint_->setWordWrap(true);
  emptyHint_->setAlignment(Qt::AlignCenter);
  emptyHint_->setForegroundRole(QPalette::PlaceholderText);
  emptyHint_->setFixedWidth(480);
  emptyLayout->addWidget(emptyTitle_);
  emptyLayout->addWidget(emptyHint_, 0, Qt::AlignHCenter);
  auto* emptyButtons = new QHBoxLayout;
  auto* emptyFiles = new QPushButton(qt(L10n::Images::addFiles()));
  emptyFiles->setToolTip(qt(L10n::Images::addFilesTooltip()));
  auto* emptyFolder = new QPushButton(qt(L10n::Images::buildFolder()));
  emptyFolder->setToolTip(qt(L10n::Images::buildFolderTooltip()));
  connect(emptyFiles, &QPushButton::clicked, this, &FileListPanel::chooseFiles);
  connect(emptyFolder, &QPushButton::clicked, this, &FileListPanel::chooseBuildFolder);
  emptyButtons->addStretch();
  emptyButtons->addWidget(emptyFiles);
  emptyButtons->addWidget(emptyFolder);
  emptyButtons->addStretch();
  emptyLayout->addLayout(emptyButtons);
  emptyLayout->addStretch();
  stack_->addWidget(empty);

  table_ = new QTableWidget(0, 6);
  table_->setObjectName("fileTable");
  table_->verticalHeader()->hide();
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setContextMenuPolicy(Qt::CustomContextMenu);
  table_->setWordWrap(true);
  table_->setAcceptDrops(false);
  table_->viewport()->setAcceptDrops(false);
  const char* ids[] = {"enabled", "file", "role", "address", "size", "location"};
  for (int column = 0; column < 6; ++column) {
    auto* item = new QTableWidgetItem;
    item->setData(Qt::UserRole, QString::fromLatin1(ids[column]));
    table_->setHorizontalHeaderItem(column, item);
  }
  const int widths[] = {36, 200, 130, 110, 80, 260};
  for (int column = 0; column < 6; ++column)
    table_->setColumnWidth(column, widths[column]);
  fitting_ = new TableFitting(table_, {{"enabled", {36, 36}},
                                       {"file", {100, 100000}},
                                       {"role", {110, 220}},
                                       {"address", {100, 160}},
                                       {"size", {70, 120}},
                                       {"location", {120, 100000}}});
  connect(table_, &QWidget::customContextMenuRequested, this, &FileListPanel::showContextMenu);
  stack_->addWidget(table_);

  // Delete removes the selected files while the list has the focus; the context menu shows the
  // same action, so it names the key.
  removeAction_ = new QAction(qt(L10n::Images::remove()), table_);
  removeAction_->setShortcut(Shortcuts::removeFiles());
  removeAction_->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  connect(removeAction_, &QAction::triggered, this, &FileListPanel::removeSelected);
  table_->addAction(removeAction_);
  anotherFileAction_ = new QAction(qt(L10n::Images::chooseAnotherFile()), table_);
  connect(anotherFileAction_, &QAction::triggered, this, [this] {
    std::vector<UUID> ids = selectedIDs();
    if (ids.size() == 1) chooseAnotherFile(ids.front());
  });

  connect(&model_, &FlasherModel::productChanged, this, &FileListPanel::refresh);
  connect(&model_, &FlasherModel::filesChanged, this, &FileListPanel::refresh);
  refresh();
}

std::vector<UUID> FileListPanel::selectedIDs() const {
  std::set<int> rows;
  for (const QModelIndex& index : table_->selectionModel()->selectedRows())
    rows.insert(index.row());
  std::vector<UUID> ids;
  for (int row : rows)
    if (row >= 0 && row < static_cast<int>(rowIDs_.size())) ids.push_back(rowIDs_[row]);
  return ids;
}

void FileListPanel::retitle() {
  table_->horizontalHeaderItem(enabledColumn)->setText(QString());
  table_->horizontalHeaderItem(enabledColumn)->setToolTip(qt(L10n::Images::flashThisFile()));
  table_->horizontalHeaderItem(fileColumn)
      ->setText(qt(arduino_ ? L10n::Images::sketch() : L10n::Images::file()));
  table_->horizontalHeaderItem(roleColumn)->setText(qt(L10n::Images::kind()));
  table_->horizontalHeaderItem(addressColumn)->setText(qt(L10n::Images::address()));
  table_->horizontalHeaderItem(sizeColumn)->setText(qt(L10n::Images::size()));
  table_->horizontalHeaderItem(locationColumn)->setText(qt(L10n::Images::locationAndChecks()));
  emptyHint_->setText(qt(arduino_ ? L10n::Images::addSketchHint() : L10n::Images::addFilesHint()));
  emptyHint_->setFixedHeight(emptyHint_->heightForWidth(emptyHint_->width()));
}

void FileListPanel::refresh() {
  const Product& product = model_.product();
  arduino_ = !product.target.isESP();
  retitle();
  bool addressShown = !table_->isColumnHidden(addressColumn);
  table_->setColumnHidden(addressColumn, arduino_);
  if (addressShown == arduino_) fitting_->fit();
  std::vector<UUID> ids;
  for (const FirmwareImage& image : product.images)
    ids.push_back(image.id);
  stack_->setCurrentIndex(ids.empty() ? 0 : 1);
  // The empty view has the same buttons in its middle.
  topButtons_->setVisible(!ids.empty());
  // Rows are rebuilt only when entries come or go: rebuilding under an address being typed would
  // take the field away from the user's fingers.
  if (ids != rowIDs_) {
    rowIDs_ = ids;
    rebuildRows();
  }
  // The check and the partition table serve every row: read them once per refresh.
  const FileBytesMap& files = model_.files();
  const std::vector<ProductIssue> issues = ProductCheck::check(product, files);
  std::optional<std::vector<Partition>> partitions;
  if (product.target.isESP())
    for (const FirmwareImage& image : product.images)
      if (image.role == FirmwareImage::Role::partitionTable)
        if (auto bytes = files.find(image.id); bytes != files.end()) {
          partitions = Partition::parseTable(bytes->second);
          break;
        }
  for (int row = 0; row < table_->rowCount(); ++row)
    updateRow(row, issues, partitions);
  table_->resizeRowsToContents();
}

void FileListPanel::rebuildRows() {
  table_->clearContents();
  table_->setRowCount(static_cast<int>(rowIDs_.size()));
  for (int row = 0; row < table_->rowCount(); ++row) {
    UUID id = rowIDs_[row];
    auto editImage = [this, id](auto change) {
      Product product = model_.product();
      for (FirmwareImage& image : product.images)
        if (image.id == id) change(image);
      model_.setProduct(product);
    };

    auto* box = new QCheckBox;
    box->setToolTip(qt(L10n::Images::flashThisFile()));
    auto* boxCell = new QWidget;
    auto* boxLayout = new QHBoxLayout(boxCell);
    boxLayout->setContentsMargins(0, 0, 0, 0);
    boxLayout->setAlignment(Qt::AlignCenter);
    boxLayout->addWidget(box);
    connect(box, &QCheckBox::toggled, this, [editImage](bool on) {
      editImage([on](FirmwareImage& image) { image.enabled = on; });
    });
    table_->setCellWidget(row, enabledColumn, boxCell);

    auto* role = new QComboBox;
    for (FirmwareImage::Role each : allRoles)
      role->addItem(roleName(each), static_cast<int>(each));
    connect(role, qOverload<int>(&QComboBox::activated), this, [editImage, role](int index) {
      auto chosen = static_cast<FirmwareImage::Role>(role->itemData(index).toInt());
      editImage([chosen](FirmwareImage& image) { image.role = chosen; });
    });
    table_->setCellWidget(row, roleColumn, role);

    auto* address = new AddressField;
    address->setToolTip(qt(L10n::Images::addressTooltip()));
    address->setFrame(false);
    connect(address, &AddressField::addressEdited, this, [editImage](std::uint32_t value) {
      editImage([value](FirmwareImage& image) { image.offset = value; });
    });
    table_->setCellWidget(row, addressColumn, address);

    for (int column : {int(fileColumn), int(sizeColumn), int(locationColumn)})
      table_->setItem(row, column, new QTableWidgetItem);
  }
}

void FileListPanel::updateRow(int row, const std::vector<ProductIssue>& issues,
                              const std::optional<std::vector<Partition>>& partitions) {
  const Product& product = model_.product();
  auto found = std::find_if(product.images.begin(), product.images.end(),
                            [&](const FirmwareImage& image) { return image.id == rowIDs_[row]; });
  if (found == product.images.end()) return;
  const FirmwareImage& image = *found;

  if (auto* cell = table_->cellWidget(row, enabledColumn)) {
    auto* box = cell->findChild<QCheckBox*>();
    QSignalBlocker quiet(box);
    box->setChecked(image.enabled);
  }
  if (auto* role = qobject_cast<QComboBox*>(table_->cellWidget(row, roleColumn))) {
    QSignalBlocker quiet(role);
    role->setCurrentIndex(role->findData(static_cast<int>(image.role)));
  }
  if (auto* address = qobject_cast<AddressField*>(table_->cellWidget(row, addressColumn)))
    address->setAddress(image.offset);
  table_->item(row, fileColumn)->setText(qt(image.fileName));
  table_->item(row, fileColumn)->setToolTip(qt(image.fileName));
  table_->item(row, sizeColumn)->setText(qt(formatByteCount(image.size)));
  table_->item(row, sizeColumn)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);

  // Where the file lands in the partition table, and what the check says of it.
  QStringList lines;
  const FileBytesMap& files = model_.files();
  if (image.role == FirmwareImage::Role::partitionTable && files.count(image.id) != 0) {
    if (auto own = Partition::parseTable(files.at(image.id)))
      lines << qt(L10n::Images::partitionCount(static_cast<std::int64_t>(own->size())));
  } else if (partitions) {
    for (const Partition& partition : *partitions)
      if (image.offset >= partition.offset && image.offset < partition.end() &&
          partition.size > 0) {
        int percent = static_cast<int>((image.size * 100 + partition.size - 1) / partition.size);
        lines << qt(L10n::Images::partitionUsage(partition.label, formatByteCount(partition.size),
                                                 std::to_string(percent)));
        break;
      }
  }
  bool error = false;
  bool warning = false;
  for (const ProductIssue& issue : issues)
    if (issue.imageID == image.id) {
      lines << QString::fromUtf8(issue.isError() ? "✕ " : "⚠ ") + qt(issue.message());
      (issue.isError() ? error : warning) = true;
    }
  QTableWidgetItem* location = table_->item(row, locationColumn);
  location->setText(lines.join(u'\n'));
  location->setToolTip(lines.join(u'\n'));
  if (error)
    location->setForeground(QColor(0xD7, 0x30, 0x27));
  else if (warning)
    location->setForeground(QColor(0xE0, 0x82, 0x0A));
  else
    location->setData(Qt::ForegroundRole, QVariant());
}

void FileListPanel::chooseFiles() {
  QStringList chosen = QFileDialog::getOpenFileNames(
      this, qt(arduino_ ? L10n::Images::chooseSketch() : L10n::Images::chooseFirmwareFiles()),
      QString(), qt(W::firmwareFileFilter()));
  std::vector<std::filesystem::path> locations;
  for (const QString& file : chosen)
    locations.emplace_back(file.toStdString());
  if (!locations.empty()) model_.addFiles(locations);
}

void FileListPanel::chooseBuildFolder() {
  QString folder = QFileDialog::getExistingDirectory(this, qt(L10n::Images::chooseBuildFolder()));
  if (!folder.isEmpty()) model_.importFolder(folder.toStdString());
}

void FileListPanel::removeSelected() {
  std::vector<UUID> ids = selectedIDs();
  if (!ids.empty()) model_.removeImages(std::set<UUID>(ids.begin(), ids.end()));
}

void FileListPanel::chooseAnotherFile(const UUID& id) {
  QString file = QFileDialog::getOpenFileName(this, qt(L10n::Images::chooseAnotherFile()),
                                              QString(), qt(W::firmwareFileFilter()));
  if (!file.isEmpty()) model_.replaceFile(id, file.toStdString());
}

void FileListPanel::showContextMenu(const QPoint& position) {
  if (model_.isFlashing()) return;
  std::vector<UUID> ids = selectedIDs();
  if (ids.empty()) return;
  QMenu menu(this);
  menu.addAction(removeAction_);
  menu.addAction(anotherFileAction_);
  anotherFileAction_->setEnabled(ids.size() == 1);
  menu.exec(table_->viewport()->mapToGlobal(position));
}

void FileListPanel::setDragHighlight(bool on) {
  QPalette shade = palette();
  shade.setColor(QPalette::Window, on ? palette().color(QPalette::Highlight).lighter(170)
                                      : QPalette().color(QPalette::Window));
  setBackgroundRole(QPalette::Window);
  setPalette(on ? shade : QPalette());
}

void FileListPanel::dragEnterEvent(QDragEnterEvent* event) {
  if (!model_.isFlashing() && !localFiles(event->mimeData()).empty()) {
    event->acceptProposedAction();
    setDragHighlight(true);
  }
}

void FileListPanel::dragLeaveEvent(QDragLeaveEvent* event) {
  setDragHighlight(false);
  QWidget::dragLeaveEvent(event);
}

void FileListPanel::dropEvent(QDropEvent* event) {
  setDragHighlight(false);
  DropAction action = dropActionFor(localFiles(event->mimeData()));
  switch (action.kind) {
  case DropAction::Kind::none: return;
  case DropAction::Kind::openProduct: model_.openProduct(action.locations.front()); break;
  case DropAction::Kind::importFolder: model_.importFolder(action.locations.front()); break;
  case DropAction::Kind::addFiles: model_.addFiles(action.locations); break;
  }
  event->acceptProposedAction();
}

} // namespace tarnwick
