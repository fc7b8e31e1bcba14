#pragma once

#include "app/WindowLine.h"
#include "platform/EventLoop.h"
#include "platform/Prompter.h"

#include <QObject>

#include <vector>

namespace kelvo {

class DataManagerAccess;

/// The windows beside the console and the rules that all of them obey: when one may open, which of the
/// console's forms is open, what is asked before the program ends, the screen lock. A window is one line of
/// it. Owned by DeskWindows; logic thread.
class WindowTable : public QObject {
  Q_OBJECT

 public:
  /// What the desk is at, as far as the guards go.
  struct DeskFacts {
    bool locked = false;
    bool catalogueLoaded = false;
    QString whyBusy;  ///< why the desk is not idle; empty when it is
  };
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    DataManagerAccess& access;
    std::function<DeskFacts()> facts;
  };

  WindowTable(Services services, std::vector<WindowLine> lines);
  /// Takes the windows off the screen and drops them. What still runs in one is stopped.
  ~WindowTable() override;

  [[nodiscard]] const std::vector<WindowLine>& Lines() const { return lines_; }
  /// Why the window can't be opened now, in words for the operator; empty when it can.
  [[nodiscard]] QString WhyClosed(const WindowLine& line) const;

  /// Makes the window at first, and brings it to the front, when its guard lets it; after the password, where
  /// it has one. The operator gets a message of a refusal.
  /// `files` are what it is to work on: those that the operator dropped.
  void Open(const QString& id, const QStringList& files = {});
  /// Files were dropped on the console: the first line that takes them has them, else the window `otherwise`.
  void TakeDrop(const QStringList& files, const QString& otherwise);
  /// Follows the screen lock.
  void SetLocked(bool locked);
  /// Whether the program may end: asks for what is busy and for what is not saved.
  [[nodiscard]] Job<bool> MayClose();
  /// Takes the windows off the screen.
  void Close();
  /// Whether `window` is one of the table's.
  [[nodiscard]] bool Owns(const QObject* window) const;

 private:
  void OpenGuarded(std::size_t index, const QStringList& files);
  void TellPutAway(const WindowLine& line, const BesideWindow& window);

  Services services_;
  std::vector<WindowLine> lines_;
  ChildWindows children_;
  std::vector<std::unique_ptr<BesideWindow>> windows_;  ///< of each line; none before it was asked for
};

}  // namespace kelvo
