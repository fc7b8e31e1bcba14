#pragma once

#include "console/scope/Scope.h"

#include <QWidget>

class QMenu;
class QStackedLayout;

namespace kelvo {

/// The scope: two traces or the spectrum. What it shows and of which sound is chosen in its menu, by the
/// right button or Enter. The sound is looked at while it is on the screen. Owned by panel or window; GUI
/// thread.
class ScopeView : public QWidget {
  Q_OBJECT
 public:
  explicit ScopeView(Scope& scope, QWidget* parent = nullptr);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void OpenMenu(const QPoint& place);
  void AddSources(QMenu& menu);
  void ShowChoice();

  Scope& scope_;
  QStackedLayout* pages_;
  std::shared_ptr<void> watch_;
};

}  // namespace kelvo
