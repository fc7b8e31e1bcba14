#include "console/windows/ScopePictures.h"

#include "ui/Naming.h"
#include "ui/Theme.h"

#include <QPainter>

#include <cmath>

namespace kelvo {
namespace {

constexpr double kLowestShown = -80;

struct Mark {
  double hertz;
  const char* words;
};
constexpr std::array kMarks{Mark{50, "50"},   Mark{100, "100"}, Mark{200, "200"}, Mark{500, "500"},
                            Mark{1000, "1k"}, Mark{2000, "2k"}, Mark{5000, "5k"}, Mark{10'000, "10k"}};

QFont SmallFont() {
  return Theme::Font(0.72);
}

}  // namespace

TracePicture::TracePicture(const Scope& scope, int index, QWidget* parent)
    : QWidget(parent), scope_(scope), index_(index) {
  SetNames(*this, QStringLiteral("TracePicture%1").arg(index), QStringLiteral("Scope3_%1").arg(index));
  setAccessibleName(index == 0 ? tr("Trace of the left side") : tr("Trace of the right side"));
  setAttribute(Qt::WA_OpaquePaintEvent);
  connect(&scope_, &Scope::Renewed, this, qOverload<>(&QWidget::update));
}

QSize TracePicture::minimumSizeHint() const {
  return {Scope::kFrames, fontMetrics().height() * 9 / 5};
}

std::array<QPointF, Scope::kFrames + 1> TracePicture::Points() const {
  const double step = static_cast<double>(width()) / Scope::kFrames;
  const double half = height() / 2.0;
  const double unit = static_cast<double>(height()) / Scope::kPictureHeight;
  std::array<QPointF, Scope::kFrames + 1> points;
  points[0] = {-step, half};
  const Scope::Trace& trace = scope_.TraceOf(static_cast<std::size_t>(index_));
  for (std::size_t x = 0; x < trace.size(); ++x)
    points[x + 1] = {static_cast<double>(x) * step, half - trace[x] * unit};
  return points;
}

void TracePicture::paintEvent(QPaintEvent*) {
  const Theme::Colours& colours = Theme::Palette();
  QPainter painter(this);
  painter.fillRect(rect(), colours.well);
  painter.fillRect(0, height() / 2, width(), 1, colours.line);
  if (scope_.Empty()) return;
  // As thin as the screen has it: drawn sixty times a second, that is much cheaper than any other line.
  painter.setPen(QPen(colours.ready, 0));
  const auto points = Points();
  painter.drawPolyline(points.data(), static_cast<int>(points.size()));
}

SpectrumPicture::SpectrumPicture(const Scope& scope, QWidget* parent) : QWidget(parent), scope_(scope) {
  setObjectName(QStringLiteral("SpectrumPicture"));
  setAccessibleName(tr("Spectrum"));
  setAttribute(Qt::WA_OpaquePaintEvent);
  connect(&scope_, &Scope::Renewed, this, qOverload<>(&QWidget::update));
}

QSize SpectrumPicture::minimumSizeHint() const {
  return {Scope::kFrames, fontMetrics().height() * 18 / 5};
}

QRect SpectrumPicture::Plot() const {
  return rect().adjusted(0, 0, 0, -QFontMetrics(SmallFont()).height());
}

QRect SpectrumPicture::BarOf(std::size_t band) const {
  const QRect plot = Plot();
  const auto place = [&](std::size_t edge) {
    return static_cast<int>(std::lround(static_cast<double>(edge * static_cast<std::size_t>(plot.width())) /
                                        SpectrumAnalyser::kBands));
  };
  const double share = 1 - double{scope_.Spectrum()[band]} / kLowestShown;
  const int high = static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * plot.height()));
  const int left = place(band);
  return {left, plot.bottom() + 1 - high, std::max(place(band + 1) - left - 1, 1), high};
}

void SpectrumPicture::DrawGround() {
  const Theme::Colours& colours = Theme::Palette();
  ground_ = QPixmap(size() * devicePixelRatio());
  ground_.setDevicePixelRatio(devicePixelRatio());
  ground_.fill(colours.well);
  QPainter painter(&ground_);
  painter.setFont(SmallFont());
  const QFontMetrics metrics(SmallFont());
  const QRect plot = Plot();
  int free = 0;
  for (const auto& [hertz, word] : kMarks) {
    const int x = static_cast<int>(SpectrumAnalyser::PlaceOf(hertz) * plot.width());
    painter.fillRect(x, 0, 1, plot.height(), colours.line);
    const QString words = QString::fromLatin1(word);
    const int wide = metrics.horizontalAdvance(words);
    if (x - wide / 2 < free) continue;
    painter.setPen(colours.muted);
    painter.drawText(x - wide / 2, height() - metrics.descent(), words);
    free = x + wide / 2 + metrics.height() / 2;
  }
  for (const int level : {-20, -40, -60}) {
    const int y = static_cast<int>(level / kLowestShown * plot.height());
    painter.fillRect(0, y, plot.width(), 1, colours.line);
    // A low picture has no room for more than one.
    if (y < metrics.ascent() || (level != -40 && plot.height() < 6 * metrics.height())) continue;
    painter.setPen(colours.muted);
    // On the right, where music is seldom loud.
    const QString words = QString::number(level);
    painter.drawText(width() - metrics.horizontalAdvance(words) - 2, y - 1, words);
  }
}

void SpectrumPicture::paintEvent(QPaintEvent*) {
  if (ground_.size() != size() * devicePixelRatio()) DrawGround();
  QPainter painter(this);
  painter.drawPixmap(0, 0, ground_);
  if (scope_.Empty()) return;
  std::array<QRect, SpectrumAnalyser::kBands> bars;
  for (std::size_t band = 0; band < bars.size(); ++band) bars[band] = BarOf(band);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Theme::Palette().ready);
  painter.drawRects(bars.data(), static_cast<int>(bars.size()));
}

}  // namespace kelvo
