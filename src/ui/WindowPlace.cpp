#include "ui/WindowPlace.h"

#include "platform/SettingsStore.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>
#include <optional>

namespace kelvo {
namespace {

QList<QRect> Screens() {
  QList<QRect> screens;
  for (const QScreen* each : QGuiApplication::screens()) screens += each->availableGeometry();
  return screens;
}

}  // namespace

PlaceKeys PlaceKeys::Of(const QString& title, const QString& section, const QString& prefix) {
  return {title,
          section,
          prefix + QLatin1StringView("Posx"),
          prefix + QLatin1StringView("Posy"),
          prefix + QLatin1StringView("Width"),
          prefix + QLatin1StringView("Height")};
}

QRect ClampToScreens(QRect wanted, const QList<QRect>& screens) {
  if (screens.isEmpty()) return wanted;
  const auto overlap = [&wanted](const QRect& screen) {
    const QRect common = screen.intersected(wanted);
    return static_cast<qint64>(common.width()) * common.height();
  };
  const QRect screen = *std::max_element(screens.begin(), screens.end(), [&](const QRect& a, const QRect& b) {
    return overlap(a) < overlap(b);
  });
  wanted.setSize(wanted.size().boundedTo(screen.size()));
  wanted.moveLeft(std::clamp(wanted.left(), screen.left(), screen.right() - wanted.width() + 1));
  wanted.moveTop(std::clamp(wanted.top(), screen.top(), screen.bottom() - wanted.height() + 1));
  return wanted;
}

WindowPlace::WindowPlace(QWidget& window, SettingsStore& store, PlaceKeys keys)
    : window_(&window), store_(store), keys_(std::move(keys)) {
  Restore();
  window.installEventFilter(this);
}

void WindowPlace::Restore() {
  const auto number = [this](const QString& key) -> std::optional<int> {
    if (key.isEmpty()) return std::nullopt;
    bool known = false;
    const int value = store_.GetSetting(keys_.title, keys_.section, key).trimmed().toInt(&known);
    // Nonsense in the file must not overflow the geometry.
    return known && std::abs(value) < 100000 ? std::optional(value) : std::nullopt;
  };
  const std::optional<int> width = number(keys_.width);
  const std::optional<int> height = number(keys_.height);
  if (width && height && *width > 0 && *height > 0) {
    QSize size = QSize(*width, *height).expandedTo(window_->minimumSize());
    if (!Screens().isEmpty()) size = ClampToScreens(QRect(window_->pos(), size), Screens()).size();
    window_->resize(size);
  }
  const std::optional<int> x = number(keys_.x);
  const std::optional<int> y = number(keys_.y);
  if (x && y) window_->move(ClampToScreens(QRect(QPoint(*x, *y), window_->size()), Screens()).topLeft());
}

void WindowPlace::Save() {
  // A maximised or full-screen window is remembered as it was before.
  if (!window_) return;
  const bool normal =
      !(window_->windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen | Qt::WindowMinimized));
  const QPoint place = normal ? window_->pos() : window_->normalGeometry().topLeft();
  const QSize size = normal ? window_->size() : window_->normalGeometry().size();
  if (!size.isValid()) return;
  const auto save = [this](const QString& key, int value) {
    if (!key.isEmpty()) store_.SaveSetting(keys_.title, keys_.section, key, QString::number(value));
  };
  save(keys_.x, place.x());
  save(keys_.y, place.y());
  save(keys_.width, size.width());
  save(keys_.height, size.height());
}

bool WindowPlace::eventFilter(QObject* watched, QEvent* event) {
  // A hide that comes from the window system (minimised, another desktop) is no change of place.
  if (event->type() == QEvent::Hide && !event->spontaneous()) Save();
  return QObject::eventFilter(watched, event);
}

}  // namespace kelvo
