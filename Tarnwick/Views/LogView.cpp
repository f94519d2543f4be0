#include "Tarnwick/Views/LogView.hpp"

#include <QEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSvgRenderer>

#include "Assets/AssetsLookup.hpp"
#include "Localization/RunTexts.hpp"
#include "Tarnwick/Model/OutputBuffer.hpp"
#include "Tarnwick/Views/ViewSupport.hpp"

namespace tarnwick {

namespace {
constexpr double logoOpacity = 0.07;
constexpr int logoMaximum = 460;
constexpr double logoShareOfPane = 0.6;
} // namespace

LogView::LogView(OutputBuffer& buffer, QWidget* parent) : QTextEdit(parent) {
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setAcceptRichText(false);
  setUndoRedoEnabled(false);
  setFrameShape(QFrame::NoFrame);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  setLineWrapMode(QTextEdit::WidgetWidth);
  viewport()->setAutoFillBackground(false);
  setViewportMargins(6, 6, 6, 6);
  setFont(buffer.font());
  setAccessibleName(qt(L10n::Log::log()));
  buffer.attach(this, {[this](QTextDocument* storage) {
                         // The view shows the buffer's document itself; it must not delete it.
                         setDocument(storage);
                         connect(storage, &QTextDocument::contentsChanged, viewport(),
                                 qOverload<>(&QWidget::update));
                       },
                       [this] {
                         if (!scrollingHeld_)
                           verticalScrollBar()->setValue(verticalScrollBar()->maximum());
                       }});
}

void LogView::renderLogo() {
  QSize pane = viewport()->size();
  int side = std::min<int>(
      logoMaximum, static_cast<int>(std::min(pane.width(), pane.height()) * logoShareOfPane));
  QSize wanted(side, side);
  if (side <= 0 || (wanted == logoFor_ && !logo_.isNull())) return;
  logoFor_ = wanted;
  qreal ratio = devicePixelRatioF();
  QPixmap pixmap(wanted * ratio);
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  QSvgRenderer(assets::logoPath).render(&painter, QRectF(0, 0, side, side));
  // The logo is one colour; tinting it with the text colour keeps it faint on light and dark.
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(QRectF(0, 0, side, side), palette().color(QPalette::Text));
  logo_ = pixmap;
}

void LogView::paintEvent(QPaintEvent* event) {
  if (document()->isEmpty()) {
    renderLogo();
    if (!logo_.isNull()) {
      QPainter painter(viewport());
      painter.setOpacity(logoOpacity);
      QSize size = logo_.deviceIndependentSize().toSize();
      QRect area = viewport()->rect();
      painter.drawPixmap(area.center().x() - size.width() / 2,
                         area.center().y() - size.height() / 2, logo_);
    }
  }
  QTextEdit::paintEvent(event);
}

void LogView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) logo_ = QPixmap();
  QTextEdit::changeEvent(event);
}

} // namespace tarnwick
