#include "quiz/windows/SnippetBarView.h"

#include "platform/Words.h"
#include "ui/Theme.h"

#include <QPainter>

#include <algorithm>

namespace kelvo {

SnippetBarView::SnippetBarView(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("SnippetBar"));
  setProperty("fixedName", QStringLiteral("Picture9"));
  setAccessibleName(tr("What sounds"));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize SnippetBarView::sizeHint() const {
  const int line = fontMetrics().height();
  return {line * 10, line * 7 / 4};
}

void SnippetBarView::Show(const std::optional<SnippetBar>& bar) {
  const QString words = bar ? bar->words : QString();
  if (accessibleDescription() != words) setAccessibleDescription(words);
  bar_ = bar;
  update();
}

void SnippetBarView::paintEvent(QPaintEvent*) {
  const Theme::Colours& colours = Theme::Palette();
  QPainter painter(this);
  painter.fillRect(rect(), colours.well);
  painter.setPen(colours.line);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  if (!bar_) return;
  const int span = std::max(bar_->span.end - bar_->span.start, 1);
  const auto placeOf = [this, span](double second) {
    return static_cast<int>((second - bar_->span.start) * (width() - 1) / span);
  };
  const int from = placeOf(bar_->inner.start);
  const int to = std::min(placeOf(bar_->inner.end), width() - 1);
  painter.fillRect(QRect(QPoint(from, 1), QPoint(to, height() - 2)),
                   Theme::Mix(colours.well, colours.accent, 0.25));
  // One line a second, as far as they can be told apart.
  const int step = std::max(1, span * 4 / std::max(width(), 1));
  painter.setPen(colours.line);
  for (int second = step; second < span; second += step) {
    const int place = placeOf(bar_->span.start + second);
    painter.drawLine(place, height() / 2, place, height() - 2);
  }
  const int marker = std::clamp(placeOf(bar_->position), 0, width() - 1);
  painter.fillRect(QRect(marker - 1, 0, 3, height()), colours.onAir);
  painter.setPen(colours.text);
  painter.drawText(rect().adjusted(8, 0, -8, 0), Qt::AlignVCenter | Qt::AlignLeft, bar_->words);
  painter.drawText(
      rect().adjusted(8, 0, -8, 0), Qt::AlignVCenter | Qt::AlignRight,
      QStringLiteral("%1 / %2").arg(MinutesSeconds(std::max(bar_->position - bar_->span.start, 0.0)),
                                    MinutesSeconds(span)));
}

}  // namespace kelvo
