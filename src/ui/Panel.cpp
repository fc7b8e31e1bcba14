#include "ui/Panel.h"

#include "ui/ScalableIcon.h"
#include "ui/Tabular.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace kelvo {
namespace {

constexpr double headerScale = 0.88;

QFont HeaderFont(const QWidget& widget) {
  QFont font = widget.font();
  font.setPointSizeF(font.pointSizeF() * headerScale);
  font.setWeight(QFont::Bold);
  font.setLetterSpacing(QFont::PercentageSpacing, 104);
  return font;
}

}  // namespace

Panel::Panel(Group group, const QString& title, QWidget* parent) : QFrame(parent), group_(group) {
  SetTitle(title);
}

void Panel::SetTitle(const QString& title) {
  title_ = title;
  setAccessibleName(title);
  ArrangeMargins();
  update();
}

void Panel::SetNote(const QString& note) {
  if (note == note_) return;
  note_ = note;
  setAccessibleDescription(note);
  update(HeaderRect());
}

int Panel::HeaderHeight() const {
  const int em = fontMetrics().height();
  return title_.isEmpty() ? std::max(3, em / 5) : em * 5 / 4;
}

QRect Panel::HeaderRect() const {
  return {0, 0, width(), HeaderHeight()};
}

void Panel::ArrangeMargins() {
  const int gap = std::max(6, fontMetrics().height() / 2);
  const QMargins margins(gap, HeaderHeight() + gap, gap, gap);
  if (contentsMargins() != margins) setContentsMargins(margins);
}

bool Panel::event(QEvent* event) {
  // A style sheet takes the margins for its own when it dresses the frame.
  if (event->type() == QEvent::ContentsRectChange) ArrangeMargins();
  return QFrame::event(event);
}

void Panel::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) ArrangeMargins();
  if (event->type() == QEvent::EnabledChange) update();
}

void Panel::paintEvent(QPaintEvent*) {
  const Theme::Colours& colours = Theme::Palette();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  const double radius = 6;
  QPainterPath outline;
  outline.addRoundedRect(frame, radius, radius);

  const QColor head = isEnabled() ? Theme::GroupColour(group_)
                                  : Theme::Mix(colours.surface, Theme::GroupColour(group_), 0.25);
  painter.fillPath(outline, isEnabled() ? Theme::GroupGround(group_) : colours.surface);
  const QRectF header(HeaderRect());
  painter.save();
  painter.setClipRect(header);
  painter.fillPath(outline, head);
  painter.restore();
  painter.setPen(isEnabled() ? Theme::GroupEdge(group_) : colours.line);
  painter.drawPath(outline);
  if (title_.isEmpty()) return;

  const bool calm = !isEnabled() && Theme::Contrast(head, colours.muted) >= 4.5;
  const QColor ink = calm ? colours.muted : Theme::TextOn(head);
  painter.setPen(ink);
  painter.setFont(HeaderFont(*this));
  const int margin = std::max(7, fontMetrics().height() / 2);
  QRectF words = header.adjusted(margin, 0, -margin, 0);
  if (!isEnabled()) {
    const int side = static_cast<int>(header.height() * 0.72);
    painter.drawPixmap(QPointF(words.right() - side, (header.height() - side) / 2),
                       IconPixmap(Icon::Lock, ink, side, devicePixelRatioF()));
    words.setRight(words.right() - side - margin);
  }
  if (!note_.isEmpty()) {
    DrawTabular(painter, words, Qt::AlignRight | Qt::AlignVCenter, note_);
    words.setRight(words.right() - TabularWidth(QFontMetricsF(painter.font()), note_) - margin);
  }
  painter.drawText(words, Qt::AlignLeft | Qt::AlignVCenter,
                   QFontMetricsF(painter.font()).elidedText(title_, Qt::ElideRight, words.width()));
}

}  // namespace kelvo
