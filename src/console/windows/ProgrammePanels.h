#pragma once

#include "console/scope/ProgrammeView.h"

#include <QObject>

class QAction;
class QMenu;
class QWidget;

namespace kelvo {

class Panel;

/// Meters and scope on the console: their entries in a menu, which of them is shown, and whether the scope
/// has room beside the other panels of its row. Owned by the console window; GUI thread.
class ProgrammePanels : public QObject {
  Q_OBJECT
 public:
  /// `row` is the widget in whose layout the scope is placed.
  ProgrammePanels(ProgrammeView& programme, ProgramSettings settings, QWidget& row);

  /// To be placed by the owner; they belong to the widgets that they are placed in.
  [[nodiscard]] QWidget* Meters() const { return meters_; }
  [[nodiscard]] Panel* OnScope() const { return scope_; }
  void AddEntries(QMenu& menu);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Arrange();
  [[nodiscard]] bool HasRoom() const;

  ProgrammeView& programme_;
  ProgramSettings settings_;
  QWidget& row_;
  QWidget* meters_;
  Panel* scope_;
  QAction* showMeters_ = nullptr;
  QAction* showScope_ = nullptr;
};

}  // namespace kelvo
