#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QString>

class QWidget;

namespace kelvo {

class SettingsStore;

/// Where a window's place is kept in the settings.
struct PlaceKeys {
  QString title;    ///< the program's title
  QString section;  ///< "Startup"
  QString x;        ///< "SearchPosx"
  QString y;        ///< "SearchPosy"
  QString width;    ///< empty: the size is not kept
  QString height;

  /// prefix + "Posx", "Posy", "Width", "Height".
  [[nodiscard]] static PlaceKeys Of(const QString& title, const QString& section, const QString& prefix);
};

/// `wanted`, made to fit a screen: on the one that it overlaps most (the first if none), not larger than it,
/// whole on it.
[[nodiscard]] QRect ClampToScreens(QRect wanted, const QList<QRect>& screens);

/// Remembers the place and size of one window: puts it back when made, writes it when the window is hidden or
/// closed. A place on a screen that is gone is brought onto one that is there. Owned by the window or beside
/// it; the store must outlive it. GUI thread.
class WindowPlace : public QObject {
  Q_OBJECT
 public:
  WindowPlace(QWidget& window, SettingsStore& store, PlaceKeys keys);

  /// Writes the present place.
  void Save();

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Restore();

  QPointer<QWidget> window_;
  SettingsStore& store_;
  PlaceKeys keys_;
};

}  // namespace kelvo
