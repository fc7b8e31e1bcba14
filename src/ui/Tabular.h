#pragma once

#include <QStyledItemDelegate>

class QPainter;
class QFontMetricsF;

namespace kelvo {

/// Text whose digits all take the same width, whatever the font: counting times do not tremble, columns of
/// times are aligned.
[[nodiscard]] qreal TabularWidth(const QFontMetricsF& metrics, const QString& text);
/// Draws one line with the painter's font and pen.
void DrawTabular(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text);

/// For lists with times and numbers. Owned by its view's window; paints the display text with even digits. A
/// row that has a colour of its own keeps it while it is selected.
class TabularDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

}  // namespace kelvo
