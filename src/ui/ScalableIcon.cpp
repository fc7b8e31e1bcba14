#include "ui/ScalableIcon.h"

#include "ui/Theme.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <array>
#include <cmath>
#include <memory>

namespace kelvo {
namespace {

constexpr std::array<const char*, iconCount> fileNames{
    "load",     "play",        "stop",      "pause",    "rewind",     "forward",    "skip-start",
    "skip-end", "up",          "down",      "cut",      "clear",      "edit",       "add",
    "search",   "lock",        "unlock",    "timer",    "microphone", "headphones", "settings",
    "warning",  "information", "question",  "critical", "close",      "check",      "folder",
    "save",     "queue",       "crossfade", "disc",     "volume",     "undo"};

QByteArray Drawing(Icon icon) {
  QFile file(QStringLiteral(":/ui/icons/%1.svg")
                 .arg(QLatin1StringView(fileNames.at(static_cast<std::size_t>(icon)))));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Renders the drawing at `pixels` device pixels; the result is kept in the process's pixmap cache.
QPixmap Render(Icon icon, const QColor& colour, const QSize& pixels) {
  const QString key = QStringLiteral("kelvo-icon-%1-%2-%3x%4")
                          .arg(static_cast<int>(icon))
                          .arg(colour.rgba(), 8, 16)
                          .arg(pixels.width())
                          .arg(pixels.height());
  QPixmap pixmap;
  if (QPixmapCache::find(key, &pixmap)) return pixmap;
  pixmap = QPixmap(pixels);
  pixmap.fill(Qt::transparent);
  QSvgRenderer renderer(Drawing(icon).replace("currentColor", colour.name().toLatin1()));
  renderer.setAspectRatioMode(Qt::KeepAspectRatio);
  QPainter painter(&pixmap);
  renderer.render(&painter);
  painter.end();
  QPixmapCache::insert(key, pixmap);
  return pixmap;
}

class TintedEngine : public QIconEngine {
 public:
  TintedEngine(Icon icon, QColor colour) : icon_(icon), colour_(std::move(colour)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const qreal ratio = painter->device()->devicePixelRatio();
    painter->drawPixmap(rect, pixmap(rect.size() * ratio, mode, state));
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return Render(icon_, Tint(mode, state), size);
  }
  QIconEngine* clone() const override { return std::make_unique<TintedEngine>(icon_, colour_).release(); }
  QString key() const override { return QStringLiteral("kelvo"); }

 private:
  QColor Tint(QIcon::Mode mode, QIcon::State state) const {
    const Theme::Colours& colours = Theme::Palette();
    if (mode == QIcon::Disabled) return colours.dim;
    if (colour_.isValid()) return colour_;
    return state == QIcon::On ? Theme::TextOn(colours.accent) : colours.text;
  }

  Icon icon_;
  QColor colour_;
};

}  // namespace

QIcon ScalableIcon(Icon icon, const QColor& colour) {
  return QIcon(std::make_unique<TintedEngine>(icon, colour).release());
}

QPixmap IconPixmap(Icon icon, const QColor& colour, int side, qreal ratio) {
  const int pixels = static_cast<int>(std::lround(side * ratio));
  QPixmap pixmap = Render(icon, colour, QSize(pixels, pixels));
  pixmap.setDevicePixelRatio(ratio);
  return pixmap;
}

}  // namespace kelvo
