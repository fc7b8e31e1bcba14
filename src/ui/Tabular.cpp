#include "ui/Tabular.h"

#include "ui/Theme.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

/// Pixels on each side of a cell's text, beside the style's own margin.
constexpr int kFree = 3;

qreal DigitWidth(const QFontMetricsF& metrics) {
  qreal widest = 0;
  for (char16_t digit = u'0'; digit <= u'9'; ++digit)
    widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
  return widest;
}

bool IsDigit(QChar c) {
  return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

/// Calls `piece(text, width)` for every digit by itself and for every run of other characters as a whole, so
/// that letters keep their kerning and their shapes.
template <typename Piece>
void ForEachPiece(const QFontMetricsF& metrics, const QString& text, Piece piece) {
  const qreal digit = DigitWidth(metrics);
  qsizetype from = 0;
  while (from < text.size()) {
    qsizetype to = from + 1;
    if (!IsDigit(text[from])) {
      while (to < text.size() && !IsDigit(text[to])) ++to;
    }
    const QString part = text.mid(from, to - from);
    piece(part, IsDigit(text[from]) ? digit : metrics.horizontalAdvance(part));
    from = to;
  }
}

}  // namespace

qreal TabularWidth(const QFontMetricsF& metrics, const QString& text) {
  qreal width = 0;
  ForEachPiece(metrics, text, [&width](const QString&, qreal own) { width += own; });
  return width;
}

void DrawTabular(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text) {
  if (text.isRightToLeft()) {
    painter.drawText(rect, static_cast<int>(alignment), text);
    return;
  }
  const QFontMetricsF metrics(painter.font(), painter.device());
  const qreal width = TabularWidth(metrics, text);
  qreal x = rect.left();
  if (alignment & Qt::AlignRight) x = rect.right() - width;
  if (alignment & Qt::AlignHCenter) x = rect.center().x() - width / 2;
  qreal baseline = rect.center().y() + (metrics.ascent() - metrics.descent()) / 2;
  if (alignment & Qt::AlignTop) baseline = rect.top() + metrics.ascent();
  if (alignment & Qt::AlignBottom) baseline = rect.bottom() - metrics.descent();
  ForEachPiece(metrics, text, [&](const QString& part, qreal cell) {
    const qreal own = part.size() == 1 ? metrics.horizontalAdvance(part) : cell;
    painter.drawText(QPointF(x + (cell - own) / 2, baseline), part);
    x += cell;
  });
}

void TabularDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
  QStyleOptionViewItem item(option);
  initStyleOption(&item, index);
  const QString text = std::exchange(item.text, QString());
  const QStyle& style = *(item.widget ? item.widget->style() : QApplication::style());
  style.drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
  // A row's own ground shows on a selected row too, where the style would paint over it.
  const QVariant ground = index.data(Qt::BackgroundRole);
  if (ground.isValid()) painter->fillRect(item.rect, ground.value<QColor>());
  const bool enabled = item.state & QStyle::State_Enabled;
  const bool selected = item.state & QStyle::State_Selected;
  QColor ink = item.palette.color(enabled ? QPalette::Active : QPalette::Disabled, QPalette::Text);
  if (selected) ink = enabled ? item.palette.color(QPalette::HighlightedText) : Theme::Palette().muted;
  painter->save();
  painter->setFont(item.font);
  painter->setPen(ink);
  const int margin = style.pixelMetric(QStyle::PM_FocusFrameHMargin, &item, item.widget) + kFree;
  painter->setClipRect(item.rect);
  const bool hasSign = item.features & QStyleOptionViewItem::HasDecoration;
  const int sign = hasSign ? item.decorationSize.width() + margin : 0;
  const QRect room = item.rect.adjusted(margin + sign, 0, -margin, 0);
  const QString shown = item.fontMetrics.elidedText(text, item.textElideMode, room.width());
  DrawTabular(*painter, room, item.displayAlignment, shown);
  painter->restore();
}

void TabularDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  const QVariant colour = index.data(Qt::ForegroundRole);
  if (colour.isValid()) option->palette.setColor(QPalette::HighlightedText, colour.value<QColor>());
}

QSize TabularDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  QStyleOptionViewItem item(option);
  initStyleOption(&item, index);
  QSize size = QStyledItemDelegate::sizeHint(option, index);
  const QFontMetricsF metrics(item.font);
  const qreal more = TabularWidth(metrics, item.text) - metrics.horizontalAdvance(item.text);
  // The style has counted one of the free pixels on each side.
  size.rwidth() += std::max(0, static_cast<int>(std::ceil(more))) + 2 * (kFree - 1);
  return size;
}

}  // namespace kelvo
