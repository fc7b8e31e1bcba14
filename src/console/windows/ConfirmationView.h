#pragma once

#include "console/decks/ConfirmationPanel.h"
#include "ui/Panel.h"

class QLabel;
class QPushButton;

namespace kelvo {

/// The confirmation panel on the screen: it lies over the deck that it asks about. Owned by the console
/// window; GUI thread.
class ConfirmationView : public Panel {
  Q_OBJECT
 public:
  ConfirmationView(ConfirmationPanel& panel, QWidget* parent);

  /// Lies over the middle of `place`, in the parent's coordinates.
  void ShowOver(const QRect& place);
  /// The word over the question.
  void SetCaution(const QString& words);

 private:
  ConfirmationPanel& panel_;
  QLabel* caution_;
  QLabel* text_;
  QPushButton* act_;
  QPushButton* cancel_;
};

}  // namespace kelvo
