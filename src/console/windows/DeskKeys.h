#pragma once

#include "platform/EventLoop.h"
#include "ui/KeyList.h"

#include <QObject>

#include <functional>
#include <map>

class QKeyEvent;
class QWidget;

namespace kelvo {

class ConfirmationPanel;
class PressToSpeak;
class Transitions;

/// The keys of the desk that work wherever the focus is in the console: F6 to F8 and F10 to F12 start
/// transitions (also from the windows beside it), 4 and 6 of the number pad move the slider, the space bar is
/// press-to-speak, in every window and also while a question is open. A box that takes text keeps its own
/// keys; an empty filter box takes no space. While the desk asks, Return and Enter answer yes. Owned by the
/// console window; GUI thread.
class DeskKeys : public QObject {
  Q_OBJECT
 public:
  /// What the keys command. All outlive it.
  struct Parts {
    EventLoop& loop;
    ConfirmationPanel& panel;
    PressToSpeak& speak;
    Transitions& fades;
    std::function<bool()> closed;  ///< the screen is locked, or waits for the catalogue
  };
  /// Watches the whole application for keys meant for `window`.
  DeskKeys(Parts parts, QWidget& window);

  /// Those of its keys that no control of the console shows.
  [[nodiscard]] static std::vector<KeyLine> OwnKeys();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool Press(const QKeyEvent& event, bool typing);
  /// The keys that are held do what their release means a moment later: a key that repeats comes as a release
  /// and a press that cannot always be distinguished from those of a finger.
  [[nodiscard]] bool Release(int key);
  void LetGo(int key);
  void LetGoOfAll();

  Parts desk_;
  QWidget& window_;
  std::map<int, Timer> held_;  ///< keys that are down; a timer that runs is their release
};

}  // namespace kelvo
