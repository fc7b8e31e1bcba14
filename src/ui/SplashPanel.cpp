#include "ui/SplashPanel.h"

#include "ui/Theme.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kelvo {
namespace {

/// A record that turns: grooves, a sheen, a label in the colour of its deck.
void DrawRecord(QPainter& painter, QPointF centre, double radius, const QColor& label, double sheenAngle) {
  painter.save();
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(6, 8, 10));
  painter.drawEllipse(centre, radius, radius);
  painter.setBrush(Qt::NoBrush);
  for (int groove = 0; groove < 26; ++groove) {
    const double at = radius * (0.40 + 0.58 * groove / 26.0);
    // Two pauses between titles, as on a real side.
    const bool pause = groove == 9 || groove == 17;
    painter.setPen(QPen(QColor(255, 255, 255, pause ? 34 : 13), radius * (pause ? 0.008 : 0.004)));
    painter.drawEllipse(centre, at, at);
  }
  QConicalGradient sheen(centre, sheenAngle);
  for (const double side : {0.0, 0.5}) {
    sheen.setColorAt(side + 0.00, QColor(255, 255, 255, 0));
    sheen.setColorAt(side + 0.06, QColor(255, 255, 255, 44));
    sheen.setColorAt(side + 0.12, QColor(255, 255, 255, 0));
  }
  sheen.setColorAt(1.0, QColor(255, 255, 255, 0));
  painter.setPen(Qt::NoPen);
  painter.setBrush(sheen);
  painter.drawEllipse(centre, radius * 0.985, radius * 0.985);
  painter.setBrush(label);
  painter.drawEllipse(centre, radius * 0.34, radius * 0.34);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(Theme::Mix(label, Qt::black, 0.35), radius * 0.012));
  painter.drawEllipse(centre, radius * 0.29, radius * 0.29);
  painter.drawEllipse(centre, radius * 0.13, radius * 0.13);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Theme::Palette().window);
  painter.drawEllipse(centre, radius * 0.035, radius * 0.035);
  painter.restore();
}

/// The sound between the two: a run of bars that goes over from one colour to the other.
void DrawSound(QPainter& painter, const QRectF& area, const QColor& from, const QColor& to) {
  const int bars = static_cast<int>(area.width() / (area.height() * 0.05));
  const double step = area.width() / bars;
  painter.setPen(Qt::NoPen);
  for (int bar = 0; bar < bars; ++bar) {
    const double t = (bar + 0.5) / bars;
    const double swell = 0.35 + 0.65 * std::pow(std::sin(std::numbers::pi * t), 2.0);
    const double detail = 0.5 + 0.28 * std::sin(bar * 1.7) + 0.22 * std::sin(bar * 0.61 + 1);
    const double tall = area.height() * swell * std::clamp(detail, 0.08, 1.0);
    QColor colour = Theme::Mix(from, to, t);
    colour.setAlphaF(static_cast<float>(0.30 + 0.55 * swell));
    const QRectF box(area.left() + bar * step + step * 0.2, area.center().y() - tall / 2, step * 0.6, tall);
    painter.setBrush(colour);
    painter.drawRoundedRect(box, step * 0.3, step * 0.3);
  }
}

}  // namespace

SplashPanel::SplashPanel(QWidget* parent) : QWidget(parent) {
  setAccessibleName(title_);
}

void SplashPanel::SetTitle(const QString& title) {
  title_ = title;
  setAccessibleName(title);
  update();
}

void SplashPanel::SetVersionLine(const QString& line) {
  versionLine_ = line;
  update();
}

void SplashPanel::SetWordsLine(const QString& line) {
  wordsLine_ = line;
  update();
}

void SplashPanel::AppendStatus(const QString& line) {
  status_ += line;
  setAccessibleDescription(line);
  update();
}

QSize SplashPanel::sizeHint() const {
  const int em = fontMetrics().height();
  return {em * 40, em * 25};
}

void SplashPanel::mousePressEvent(QMouseEvent* event) {
  event->accept();
  Q_EMIT BackgroundClicked();
}

void SplashPanel::paintEvent(QPaintEvent*) {
  const Theme::Colours& colours = Theme::Palette();
  const QColor one = Theme::GroupColour(Group::Decks);
  const QColor two = Theme::GroupColour(Group::Console);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double w = width();
  const double h = height();
  const double em = fontMetrics().height();

  QLinearGradient ground(0, 0, 0, h);
  ground.setColorAt(0, Theme::Mix(colours.window, one, 0.14));
  ground.setColorAt(0.62, colours.window);
  ground.setColorAt(1, Theme::Mix(colours.window, Qt::black, 0.4));
  painter.fillRect(rect(), ground);

  DrawSound(painter, QRectF(w * 0.24, h * 0.10, w * 0.52, h * 0.34), one, two);
  DrawRecord(painter, QPointF(w * 0.10, h * 0.27), h * 0.36, one, 40);
  DrawRecord(painter, QPointF(w * 0.90, h * 0.27), h * 0.36, two, 110);

  // The words have a ground of their own, so that the artwork never takes their contrast.
  QLinearGradient veil(0, h * 0.44, 0, h * 0.62);
  QColor clear = colours.window;
  clear.setAlpha(0);
  veil.setColorAt(0, clear);
  veil.setColorAt(1, colours.window);
  painter.fillRect(QRectF(0, h * 0.44, w, h * 0.56), veil);

  const double margin = em * 2;
  QFont big = Theme::Font(3.2, QFont::Black);
  big.setLetterSpacing(QFont::PercentageSpacing, 98);
  painter.setFont(big);
  painter.setPen(Qt::white);
  const QFontMetricsF bigMetrics(big);
  const double titleBase = h * 0.615;
  painter.drawText(QPointF(margin, titleBase), title_);
  painter.setFont(Theme::Font(1.0, QFont::Medium));
  painter.setPen(colours.muted);
  const QRectF right(w * 0.5, titleBase - em * 2.6, w * 0.5 - margin, em * 3);
  painter.drawText(right, Qt::AlignRight | Qt::AlignBottom, versionLine_ + QLatin1Char('\n') + wordsLine_);

  // The cross-fader under the title is where the eye goes next; the findings follow below it.
  const double rail = titleBase + em * 1.1;
  QLinearGradient fade(margin, 0, w - margin, 0);
  fade.setColorAt(0, one);
  fade.setColorAt(1, two);
  painter.setPen(QPen(QBrush(fade), std::max(2.0, em * 0.14), Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(margin, rail), QPointF(w - margin, rail));
  const QRectF cap(w / 2 - em * 0.32, rail - em * 0.55, em * 0.64, em * 1.1);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colours.text);
  painter.drawRoundedRect(cap, 3, 3);
  painter.setPen(QPen(colours.window, 1.5));
  painter.drawLine(QPointF(w / 2, cap.top() + 3), QPointF(w / 2, cap.bottom() - 3));

  painter.setFont(Theme::Font(0.95));
  const QFontMetricsF metrics(painter.font());
  const double line = metrics.height() * 1.12;
  const double top = rail + em * 1.1;
  const auto room = static_cast<qsizetype>(std::max(1.0, (h - em * 0.8 - top) / line));
  const QStringList shown = status_.mid(std::max<qsizetype>(0, status_.size() - room));
  for (qsizetype index = 0; index < shown.size(); ++index) {
    painter.setPen(index + 1 == shown.size() ? colours.text : colours.muted);
    const double y = top + metrics.ascent() + static_cast<double>(index) * line;
    painter.drawText(QPointF(margin, y), metrics.elidedText(shown[index], Qt::ElideRight, w - 2 * margin));
  }
  painter.setPen(colours.line);
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

}  // namespace kelvo
