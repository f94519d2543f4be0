#include "Tarnwick/Views/HelpWindow.hpp"

#include <QAction>
#include <QDialog>
#include <QHBoxLayout>
#include <QIcon>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QStackedWidget>
#include <QStyle>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextCursor>
#include <QTextFrame>
#include <QTextList>
#include <QTextTable>
#include <QVBoxLayout>

#include "Assets/AssetsLookup.hpp"
#include "Localization/AccessibleTexts.hpp"
#include "Localization/Language.hpp"
#include "Tarnwick/Views/Accessibility.hpp"
#include "Tarnwick/Views/ViewSupport.hpp"

namespace tarnwick {

namespace {
QIcon topicIcon(const std::string& symbol, const QStyle* style) {
  HelpIcon icon = L10n::Help::icon(symbol);
  QString name = QString::fromStdString(icon.name);
  if (icon.own) {
    QString path = assets::iconResource(name);
    if (!path.isEmpty()) return QIcon(path);
  }
  return QIcon::fromTheme(name, style->standardIcon(QStyle::SP_MessageBoxInformation));
}

/// How much wider or narrower the page must become before its pictures are laid out again.
constexpr int relayoutStep = 24;
} // namespace

HelpWindow::HelpWindow(QWidget* parent)
    : QWidget(parent, Qt::Window), index_(L10n::Help::topics()) {
  setObjectName("help");
  setWindowTitle(withoutMnemonic(L10n::Help::windowTitle()));
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* splitter = new QSplitter;
  layout->addWidget(splitter);

  auto* side = new QWidget;
  auto* sideLayout = new QVBoxLayout(side);
  sideLayout->setContentsMargins(8, 8, 4, 8);
  search_ = new QLineEdit;
  search_->setObjectName("helpSearch");
  search_->setPlaceholderText(qt(L10n::Help::searchPlaceholder()));
  search_->setClearButtonEnabled(true);
  search_->setAccessibleName(search_->placeholderText());
  nameClearButton(search_);
  // The arrow keys in the field step through the topics found, as in the list itself.
  search_->installEventFilter(this);
  sidebar_ = new QStackedWidget;
  list_ = new QListWidget;
  list_->setObjectName("helpTopics");
  list_->setAccessibleName(qt(L10n::Accessible::helpTopics()));
  list_->setIconSize(QSize(20, 20));
  nothing_ = new QLabel(qt(L10n::Help::noTopicsFound()));
  nothing_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  nothing_->setForegroundRole(QPalette::PlaceholderText);
  sidebar_->addWidget(list_);
  sidebar_->addWidget(nothing_);
  sideLayout->addWidget(search_);
  sideLayout->addWidget(sidebar_, 1);
  splitter->addWidget(side);

  page_ = new QTextBrowser;
  page_->setObjectName("helpPage");
  page_->setOpenExternalLinks(false);
  page_->setOpenLinks(false);
  connect(page_, &QTextBrowser::anchorClicked, this, &HelpWindow::showPicture);
  page_->setFrameShape(QFrame::NoFrame);
  page_->document()->setDocumentMargin(18);
  splitter->addWidget(page_);
  // Ctrl+F searches the help from anywhere in its window.
  auto* find = new QAction(this);
  find->setShortcut(QKeySequence::Find);
  connect(find, &QAction::triggered, this, [this] {
    search_->setFocus(Qt::ShortcutFocusReason);
    search_->selectAll();
  });
  addAction(find);
  splitter->setStretchFactor(0, 0);
  splitter->setStretchFactor(1, 1);
  splitter->setSizes({230, 620});

  connect(search_, &QLineEdit::textChanged, this, &HelpWindow::searchChanged);
  connect(list_, &QListWidget::currentRowChanged, this, [this](int row) {
    if (row < 0) return;
    std::size_t position = list_->item(row)->data(Qt::UserRole).toULongLong();
    const HelpTopic& topic = index_.topics()[position];
    if (topic.id == selected_) return;
    selected_ = topic.id;
    render(topic);
  });
  // Wide enough for the pictures to show at the size they were taken, where the screen allows.
  QSize wanted(1200, 780);
  if (const QScreen* shown = screen()) wanted = wanted.boundedTo(shown->availableSize() * 9 / 10);
  resize(wanted);
  splitter->setSizes({230, wanted.width() - 230});
  searchChanged();
}

bool HelpWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == search_ && event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    const int step = key->key() == Qt::Key_Down ? 1 : key->key() == Qt::Key_Up ? -1 : 0;
    if (step != 0 && list_->count() > 0) {
      list_->setCurrentRow(std::clamp(list_->currentRow() + step, 0, list_->count() - 1));
      return true;
    }
    // Return reads the topic found: the page takes the focus.
    if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) && !selected_.empty()) {
      page_->setFocus(Qt::OtherFocusReason);
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

void HelpWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  rerenderForWidth();
}

void HelpWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  rerenderForWidth();
}

void HelpWindow::rerenderForWidth() {
  if (selected_.empty() || std::abs(page_->viewport()->width() - renderedWidth_) < relayoutStep)
    return;
  for (const HelpTopic& topic : index_.topics())
    if (topic.id == selected_) {
      QScrollBar* bar = page_->verticalScrollBar();
      const double at = bar->maximum() > 0 ? double(bar->value()) / bar->maximum() : 0;
      render(topic);
      bar->setValue(static_cast<int>(at * bar->maximum()));
    }
}

void HelpWindow::showPicture(const QUrl& url) {
  if (url.scheme() != QLatin1String("help-image")) return;
  const QImage image =
      page_->document()->resource(QTextDocument::ImageResource, url).value<QImage>();
  if (image.isNull()) return;
  if (picture_) picture_->close();
  picture_ = new QDialog(this);
  picture_->setAttribute(Qt::WA_DeleteOnClose);
  picture_->setWindowTitle(captions_.value(url.toString()));
  auto* layout = new QVBoxLayout(picture_);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* area = new QScrollArea;
  area->setFrameShape(QFrame::NoFrame);
  area->setAlignment(Qt::AlignCenter);
  auto* shown = new QLabel;
  shown->setObjectName("fullSizePicture");
  shown->setPixmap(QPixmap::fromImage(image));
  area->setWidget(shown);
  layout->addWidget(area);
  QSize wanted = image.size() + QSize(4, 4);
  if (const QScreen* screen = this->screen())
    wanted = wanted.boundedTo(screen->availableSize() * 9 / 10);
  picture_->resize(wanted);
  picture_->show();
}

void HelpWindow::selectTopic(const std::string& id) {
  auto selectListed = [&] {
    for (int row = 0; row < list_->count(); ++row) {
      std::size_t position = list_->item(row)->data(Qt::UserRole).toULongLong();
      if (index_.topics()[position].id == id) {
        list_->setCurrentRow(row);
        return true;
      }
    }
    return false;
  };
  // A topic the search hides is shown by clearing the search; an id that is no topic is ignored.
  if (selectListed()) return;
  search_->clear();
  selectListed();
}

void HelpWindow::searchChanged() {
  std::vector<std::size_t> listed = index_.search(search_->text());
  std::optional<std::string> keep = index_.selection(listed, selected_);
  QSignalBlocker quiet(list_);
  list_->clear();
  int current = -1;
  for (std::size_t position : listed) {
    const HelpTopic& topic = index_.topics()[position];
    auto* item = new QListWidgetItem(topicIcon(topic.symbol, style()), qt(topic.title));
    item->setData(Qt::UserRole, qulonglong(position));
    list_->addItem(item);
    if (keep && topic.id == *keep) current = list_->count() - 1;
  }
  sidebar_->setCurrentWidget(listed.empty() ? static_cast<QWidget*>(nothing_) : list_);
  list_->setCurrentRow(current);
  if (!keep) {
    selected_.clear();
    page_->clear();
    renameAccessibly(page_, nothing_->text());
    return;
  }
  if (*keep != selected_) {
    selected_ = *keep;
    render(index_.topics()[listed[static_cast<std::size_t>(current)]]);
  }
}

void HelpWindow::render(const HelpTopic& topic) {
  QTextDocument* document = page_->document();
  document->clear();
  captions_.clear();
  const QString languageCode = QString::fromLatin1(
      code(currentLanguage()).data(), static_cast<qsizetype>(code(currentLanguage()).size()));
  // The width the page gives a picture, framed, with room for a scroll bar that a long topic
  // brings in.
  const int scrollBar = page_->verticalScrollBar()->isVisible()
                            ? 0
                            : style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, page_);
  const double room =
      std::max(120.0, page_->viewport()->width() - scrollBar - 2 * document->documentMargin() - 6);
  renderedWidth_ = page_->viewport()->width();
  renameAccessibly(page_, qt(topic.title));
  QTextCursor cursor(document);
  QTextBlockFormat body;
  body.setBottomMargin(8);
  body.setLineHeight(115, QTextBlockFormat::ProportionalHeight);
  QTextCharFormat plain;

  auto heading = [&](const std::string& text, double scale, bool first) {
    QTextBlockFormat format;
    format.setTopMargin(first ? 0 : 12);
    format.setBottomMargin(6);
    format.setHeadingLevel(scale > 1.4 ? 1 : 2);
    if (!first)
      cursor.insertBlock(format, plain);
    else
      cursor.setBlockFormat(format);
    QTextCharFormat title;
    title.setFontWeight(QFont::Bold);
    title.setFontPointSize(page_->font().pointSizeF() * scale);
    cursor.insertText(qt(text), title);
  };
  heading(topic.title, 1.6, true);

  for (const HelpBlock& block : topic.blocks) {
    std::visit(
        [&](const auto& content) {
          using Block = std::decay_t<decltype(content)>;
          if constexpr (std::is_same_v<Block, HelpBlock::heading>) {
            heading(content.text, 1.2, false);
          } else if constexpr (std::is_same_v<Block, HelpBlock::paragraph>) {
            cursor.insertBlock(body, plain);
            cursor.insertFragment(HelpText::fragment(content.text));
          } else if constexpr (std::is_same_v<Block, HelpBlock::bullets>) {
            QTextListFormat list;
            list.setStyle(QTextListFormat::ListDisc);
            list.setIndent(1);
            QTextList* items = nullptr;
            for (const std::string& item : content.items) {
              cursor.insertBlock(body, plain);
              if (items == nullptr)
                items = cursor.createList(list);
              else
                items->add(cursor.block());
              cursor.insertFragment(HelpText::fragment(item));
            }
          } else if constexpr (std::is_same_v<Block, HelpBlock::table>) {
            cursor.insertBlock(body, plain);
            QTextTableFormat format;
            format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
            format.setBorder(0.5);
            format.setBorderBrush(palette().color(QPalette::Mid));
            format.setCellPadding(5);
            format.setCellSpacing(0);
            format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
            format.setColumnWidthConstraints({QTextLength(QTextLength::PercentageLength, 32),
                                              QTextLength(QTextLength::PercentageLength, 68)});
            QTextTable* table =
                cursor.insertTable(static_cast<int>(content.rows.size()), 2, format);
            for (int row = 0; row < table->rows(); ++row) {
              const HelpRow& data = content.rows[static_cast<std::size_t>(row)];
              QTextCursor key = table->cellAt(row, 0).firstCursorPosition();
              QTextCharFormat bold;
              bold.setFontWeight(QFont::DemiBold);
              key.setCharFormat(bold);
              key.insertFragment(HelpText::fragment(data.key));
              table->cellAt(row, 1).firstCursorPosition().insertFragment(
                  HelpText::fragment(data.value));
            }
            cursor.movePosition(QTextCursor::End);
          } else if constexpr (std::is_same_v<Block, HelpBlock::tip>) {
            cursor.insertBlock(body, plain);
            QTextFrameFormat frame;
            frame.setBackground(
                palette()
                    .color(QPalette::Highlight)
                    .lighter(palette().color(QPalette::Base).value() > 128 ? 185 : 60));
            frame.setPadding(8);
            frame.setBorder(0);
            frame.setMargin(2);
            cursor.insertFrame(frame);
            QTextCharFormat label;
            label.setFontWeight(QFont::Bold);
            cursor.insertText(qt(L10n::Help::tipLabel()) + QStringLiteral("  "), label);
            cursor.insertFragment(HelpText::fragment(content.text));
            cursor.movePosition(QTextCursor::End);
          } else if constexpr (std::is_same_v<Block, HelpBlock::screenshot>) {
            const QString name = QString::fromStdString(content.name);
            const QString path = assets::screenshotPath(name, languageCode);
            if (!path.isEmpty()) {
              // Decoded once: a page laid out again for a new width uses the same pictures.
              auto cached = pictures_.find(path);
              if (cached == pictures_.end()) cached = pictures_.insert(path, QImage(path));
              const QImage& image = *cached;
              const QString url = QStringLiteral("help-image:") + name;
              document->addResource(QTextDocument::ImageResource, QUrl(url), image);
              QTextImageFormat picture;
              picture.setName(url);
              // As large as taken, so its text reads as in the window, unless the page is
              // narrower; a click opens it whole either way.
              const double width = std::min<double>(image.width(), room);
              picture.setWidth(width);
              picture.setHeight(width * image.height() / std::max(1, image.width()));
              picture.setAnchor(true);
              picture.setAnchorHref(url);
              picture.setToolTip(qt(L10n::Help::fullSizeHint()));
              // Centred in a thin frame that tells the picture from the page around it.
              cursor.insertBlock(body, plain);
              QTextTableFormat frame;
              frame.setAlignment(Qt::AlignHCenter);
              frame.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
              frame.setBorder(1);
              frame.setBorderBrush(palette().color(QPalette::Mid));
              frame.setCellPadding(0);
              frame.setCellSpacing(0);
              frame.setBorderCollapse(true);
              QTextTable* holder = cursor.insertTable(1, 1, frame);
              holder->cellAt(0, 0).firstCursorPosition().insertImage(picture);
              cursor.movePosition(QTextCursor::End);
              captions_[url] = HelpText::plainText(content.caption);
            }
            QTextBlockFormat caption = body;
            caption.setAlignment(Qt::AlignHCenter);
            cursor.insertBlock(caption, plain);
            QTextCharFormat small;
            small.setFontItalic(true);
            small.setForeground(palette().color(QPalette::PlaceholderText));
            cursor.insertText(HelpText::plainText(content.caption), small);
          }
        },
        block.value);
  }
  page_->moveCursor(QTextCursor::Start);
}

} // namespace tarnwick
