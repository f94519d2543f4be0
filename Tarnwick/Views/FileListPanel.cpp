#include "Tarnwick/Views/FileListPanel.hpp"

#include <QAbstractTextDocumentLayout>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QVBoxLayout>
#include <set>

#include "FlashCore/ESPImage.hpp"
#include "FlashCore/ProductCheck.hpp"
#include "FlashCore/ProductPackage.hpp"
#include "FlashCore/VisibleText.hpp"
#include "Localization/AccessibleTexts.hpp"
#include "Localization/MainWindowTexts.hpp"
#include "Localization/ProductTexts.hpp"
#include "Localization/RunTexts.hpp"
#include "Localization/SettingsTexts.hpp"
#include "Localization/WindowTexts.hpp"
#include "Tarnwick/Model/Colours.hpp"
#include "Tarnwick/Model/FlasherModel.hpp"
#include "Tarnwick/Model/OutputBuffer.hpp"
#include "Tarnwick/Views/Accessibility.hpp"
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

/// Per line of a "Location and checks" cell, the kind of text it is: plain, warning or error.
constexpr int lineKindsRole = Qt::UserRole + 1;

/// Draws each line of a "Location and checks" cell in its own colour, wrapped to the column.
class FindingsDelegate : public QStyledItemDelegate {
public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    // The item's own text: the option's has its line breaks turned into line separators.
    const QString text = index.data(Qt::DisplayRole).toString();
    item.text.clear();
    const QWidget* widget = option.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, widget);
    const QRect area = textArea(option);
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    std::unique_ptr<QTextDocument> document = layout(text, index, option, selected, area.width());
    painter->save();
    const qreal height = document->size().height();
    painter->translate(area.left(), area.top() + std::max<qreal>(0, (area.height() - height) / 2));
    painter->setClipRect(QRectF(0, 0, area.width(), area.height()));
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette = option.palette;
    document->documentLayout()->draw(painter, context);
    painter->restore();
  }

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const int width = option.rect.width() > 0 ? textArea(option).width() : 100000;
    auto document = layout(index.data(Qt::DisplayRole).toString(), index, item, false, width);
    const QSize margins = option.rect.size() - textArea(option).size();
    return QSize(static_cast<int>(document->idealWidth()) + margins.width(),
                 static_cast<int>(std::ceil(document->size().height())) + 4);
  }

private:
  static QRect textArea(const QStyleOptionViewItem& option) {
    const QWidget* widget = option.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, widget) + 1;
    return option.rect.adjusted(margin, 0, -margin, 0);
  }

  static std::unique_ptr<QTextDocument> layout(const QString& text, const QModelIndex& index,
                                               const QStyleOptionViewItem& option, bool selected,
                                               int width) {
    auto document = std::make_unique<QTextDocument>();
    document->setDefaultFont(option.font);
    document->setDocumentMargin(0);
    const QVariantList kinds = index.data(lineKindsRole).toList();
    QTextCursor cursor(document.get());
    const QStringList lines = text.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
      if (i > 0) cursor.insertBlock();
      QTextCharFormat format;
      const auto kind = static_cast<LogSegment::Kind>(
          i < kinds.size() ? kinds[i].toInt() : static_cast<int>(LogSegment::Kind::text));
      format.setForeground(findingColour(kind, option.palette, selected));
      cursor.insertText(lines[i], format);
    }
    document->setTextWidth(width);
    return document;
  }
};

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

QColor findingColour(LogSegment::Kind kind, const QPalette& palette, bool selected) {
  const QColor background = palette.color(selected ? QPalette::Highlight : QPalette::Base);
  if (kind != LogSegment::Kind::warning && kind != LogSegment::Kind::error)
    return palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
  // The log's colour for the same kind of news, kept readable on this background.
  return readableOn(logColour(kind, palette), background);
}

QPalette withSoftSelection(QPalette palette) {
  // A selected row keeps the normal text colour on a tint of the selection colour, so warnings
  // and errors keep their colours on it.
  for (auto group : {QPalette::Active, QPalette::Inactive}) {
    const QColor base = palette.color(group, QPalette::Base);
    palette.setColor(group, QPalette::Highlight,
                     blend(palette.color(group, QPalette::Highlight), base, 0.3));
    palette.setColor(group, QPalette::HighlightedText, palette.color(group, QPalette::Text));
  }
  return palette;
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
  table_->setAccessibleName(qt(L10n::Accessible::fileTable()));
  // Tab leaves the table for the controls of its rows; the arrow keys move within it.
  table_->setTabKeyNavigation(false);
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
  // The Kind box whole in its column, whatever the font and the language.
  QComboBox sample;
  for (FirmwareImage::Role each : allRoles)
    sample.addItem(roleName(each));
  const int roleWidth = std::max(110, sample.minimumSizeHint().width() + 4);
  fitting_ = new TableFitting(table_, {{"enabled", {36, 36}},
                                       {"file", {100, 100000}},
                                       {"role", {roleWidth, std::max(220, roleWidth)}},
                                       {"address", {100, 160}},
                                       {"size", {70, 120}},
                                       {"location", {120, 100000}}});
  table_->setItemDelegateForColumn(locationColumn, new FindingsDelegate(table_));
  table_->setPalette(withSoftSelection(QApplication::palette(table_)));
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

QWidget* FileListPanel::centred(QWidget* control, Qt::Alignment alignment) {
  // In a cell of its own a control would grow to the row's height, which a long finding in
  // another column sets; inside a holder it keeps its own.
  auto* holder = new QWidget;
  auto* layout = new QHBoxLayout(holder);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setAlignment(alignment);
  layout->addWidget(control);
  return holder;
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
  // The column of boxes shows no title; it is read out as what its boxes do.
  table_->horizontalHeaderItem(enabledColumn)
      ->setData(Qt::AccessibleTextRole, qt(L10n::Images::flashThisFile()));
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
  // Tab visits the rows' controls right after the table, row by row, before what follows it.
  QWidget* previous = table_;
  auto follow = [&](QWidget* control) {
    QWidget::setTabOrder(previous, control);
    previous = control;
    // The row of the control with the focus is the selected one, the one Delete removes.
    control->installEventFilter(this);
  };
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
    connect(box, &QCheckBox::toggled, this, [editImage](bool on) {
      editImage([on](FirmwareImage& image) { image.enabled = on; });
    });
    table_->setCellWidget(row, enabledColumn, centred(box, Qt::AlignCenter));
    follow(box);

    auto* role = new QComboBox;
    for (FirmwareImage::Role each : allRoles)
      role->addItem(roleName(each), static_cast<int>(each));
    connect(role, qOverload<int>(&QComboBox::activated), this, [editImage, role](int index) {
      auto chosen = static_cast<FirmwareImage::Role>(role->itemData(index).toInt());
      editImage([chosen](FirmwareImage& image) { image.role = chosen; });
    });
    table_->setCellWidget(row, roleColumn, centred(role));
    follow(role);

    auto* address = new AddressField;
    address->setToolTip(qt(L10n::Images::addressTooltip()));
    address->setFrame(false);
    connect(address, &AddressField::addressEdited, this, [editImage](std::uint32_t value) {
      editImage([value](FirmwareImage& image) { image.offset = value; });
    });
    table_->setCellWidget(row, addressColumn, centred(address));
    follow(address);
    // The cell reads as the field does, while an address is typed too.
    connect(address, &QLineEdit::textChanged, this, [this, row](const QString& text) {
      if (QTableWidgetItem* cell = table_->item(row, addressColumn))
        cell->setData(Qt::AccessibleTextRole, text);
    });

    // Every cell has an item: those under a control carry what it holds as their text for
    // assistive technology, which reads the table by its cells.
    for (int column = 0; column < table_->columnCount(); ++column)
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

  // The controls are named after their file, as a screen reader reaches each on its own; the
  // cells under them say what they hold.
  const std::string name = visible(image.fileName);
  if (auto* box = cellControl<QCheckBox>(row, enabledColumn)) {
    QSignalBlocker quiet(box);
    box->setChecked(image.enabled);
    renameAccessibly(box, qt(L10n::Accessible::flashFile(name)));
  }
  table_->item(row, enabledColumn)
      ->setData(Qt::AccessibleTextRole, qt(L10n::Accessible::flashThisFileAnswer(image.enabled)));
  if (auto* role = cellControl<QComboBox>(row, roleColumn)) {
    QSignalBlocker quiet(role);
    role->setCurrentIndex(role->findData(static_cast<int>(image.role)));
    renameAccessibly(role, qt(L10n::Accessible::ofFile(L10n::Images::kind(), name)));
  }
  table_->item(row, roleColumn)->setData(Qt::AccessibleTextRole, roleName(image.role));
  if (auto* address = cellControl<AddressField>(row, addressColumn)) {
    address->setAddress(image.offset);
    renameAccessibly(address, qt(L10n::Accessible::ofFile(L10n::Images::address(), name)));
    table_->item(row, addressColumn)->setData(Qt::AccessibleTextRole, address->text());
  }
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
  QVariantList kinds(lines.size(), static_cast<int>(LogSegment::Kind::text));
  for (const ProductIssue& issue : issues)
    if (issue.imageID == image.id) {
      // The mark says the severity as well as the colour does.
      lines << QString::fromUtf8(issue.isError() ? "✕ " : "⚠ ") + qt(issue.message());
      kinds << static_cast<int>(issue.isError() ? LogSegment::Kind::error
                                                : LogSegment::Kind::warning);
    }
  QTableWidgetItem* location = table_->item(row, locationColumn);
  location->setText(lines.join(u'\n'));
  location->setToolTip(lines.join(u'\n'));
  location->setData(lineKindsRole, kinds);
  location->setData(Qt::AccessibleTextRole,
                    lines.isEmpty() ? qt(L10n::Accessible::nothingToReport()) : QVariant());
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
  QString file =
      QFileDialog::getOpenFileName(this, withoutMnemonic(L10n::Images::chooseAnotherFile()),
                                   QString(), qt(W::firmwareFileFilter()));
  if (!file.isEmpty()) model_.replaceFile(id, file.toStdString());
}

void FileListPanel::showContextMenu(const QPoint& position) {
  if (model_.productLocked()) return;
  std::vector<UUID> ids = selectedIDs();
  if (ids.empty()) return;
  QMenu menu(this);
  menu.addAction(removeAction_);
  menu.addAction(anotherFileAction_);
  anotherFileAction_->setEnabled(ids.size() == 1);
  menu.exec(table_->viewport()->mapToGlobal(position));
}

bool FileListPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn) {
    auto* control = static_cast<QWidget*>(watched);
    const QModelIndex index =
        table_->indexAt(control->mapTo(table_->viewport(), control->rect().center()));
    if (index.isValid()) {
      table_->setCurrentIndex(index);
      table_->selectRow(index.row());
      table_->scrollTo(index);
    }
  }
  return QWidget::eventFilter(watched, event);
}

void FileListPanel::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange)
    table_->setPalette(withSoftSelection(QApplication::palette(table_)));
  QWidget::changeEvent(event);
}

void FileListPanel::setDragHighlight(bool on) {
  if (!on) {
    setPalette(QPalette());
    return;
  }
  // The whole list lights up: the table or the empty view, and the strip with the buttons.
  QPalette tint = QApplication::palette(this);
  const QColor highlight = tint.color(QPalette::Highlight);
  for (auto role : {QPalette::Window, QPalette::Base})
    tint.setColor(role, blend(highlight, tint.color(role), 0.22));
  setPalette(tint);
}

void FileListPanel::dragEnterEvent(QDragEnterEvent* event) {
  if (!model_.productLocked() && !localFiles(event->mimeData()).empty()) {
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
