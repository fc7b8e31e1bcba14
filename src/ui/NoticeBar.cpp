#include "ui/NoticeBar.h"

#include "ui/ScalableIcon.h"
#include "ui/Theme.h"

#include <QPainter>

#include <algorithm>

namespace kelvo {
namespace {

struct Look {
  Icon icon;
  QColor colour;
};

Look LookOf(NoticeBar::Severity severity) {
  const Theme::Colours& colours = Theme::Palette();
  switch (severity) {
    case NoticeBar::Severity::Information:
      return {Icon::Information, colours.accent};
    case NoticeBar::Severity::Good:
      return {Icon::Check, colours.ready};
    case NoticeBar::Severity::Warning:
      return {Icon::Warning, colours.amber};
    case NoticeBar::Severity::Critical:
      break;
  }
  return {Icon::Critical, Theme::Mix(colours.onAir, Qt::white, 0.25)};
}

}  // namespace

NoticeBar::NoticeBar(QWidget* parent) : QFrame(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void NoticeBar::Show(const QString& key, Severity severity, const QString& text) {
  std::erase_if(facts_, [&key](const Fact& each) { return each.key == key; });
  facts_.push_back({key, severity, text});
  Changed();
}

void NoticeBar::Clear(const QString& key) {
  if (std::erase_if(facts_, [&key](const Fact& each) { return each.key == key; }) > 0) Changed();
}

const NoticeBar::Fact* NoticeBar::Foremost() const {
  const auto grave = [](const Fact& a, const Fact& b) { return a.severity <= b.severity; };
  const Fact* foremost = nullptr;
  for (const Fact& each : facts_) {
    if (!foremost || grave(*foremost, each)) foremost = &each;
  }
  return foremost;
}

QString NoticeBar::Text() const {
  const Fact* fact = Foremost();
  return fact ? fact->text : QString();
}

void NoticeBar::Changed() {
  QStringList all;
  for (const Fact& each : facts_) all += each.text.toHtmlEscaped();
  setToolTip(facts_.empty() ? QString() : QLatin1StringView("<p>") + all.join(QLatin1StringView("</p><p>")));
  setAccessibleName(Text());
  update();
}

QSize NoticeBar::sizeHint() const {
  return {fontMetrics().height() * 20, fontMetrics().height() * 7 / 4};
}

QSize NoticeBar::minimumSizeHint() const {
  return {fontMetrics().height() * 6, sizeHint().height()};
}

void NoticeBar::paintEvent(QPaintEvent*) {
  const Fact* fact = Foremost();
  if (!fact) return;
  const auto [icon, colour] = LookOf(fact->severity);
  const Theme::Colours& colours = Theme::Palette();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setPen(Theme::Mix(colours.window, colour, 0.55));
  painter.setBrush(Theme::Mix(colours.window, colour, fact->severity == Severity::Critical ? 0.30 : 0.16));
  painter.drawRoundedRect(frame, 5, 5);

  const int em = fontMetrics().height();
  const int side = em * 11 / 10;
  painter.drawPixmap(QPointF(em * 0.55, (height() - side) / 2.0),
                     IconPixmap(icon, colour, side, devicePixelRatioF()));
  QRectF words = frame.adjusted(em * 0.95 + side, 0, -em * 0.6, 0);
  painter.setFont(font());
  if (facts_.size() > 1) {
    const QString more = tr("+ %1 more").arg(facts_.size() - 1);
    painter.setPen(colours.muted);
    painter.drawText(words, Qt::AlignRight | Qt::AlignVCenter, more);
    words.setRight(words.right() - fontMetrics().horizontalAdvance(more) - em);
  }
  painter.setPen(colours.text);
  painter.drawText(words, Qt::AlignLeft | Qt::AlignVCenter,
                   fontMetrics().elidedText(fact->text, Qt::ElideRight, static_cast<int>(words.width())));
}

}  // namespace kelvo
