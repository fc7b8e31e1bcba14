#pragma once

#include "ui/Theme.h"

#include <QFrame>

namespace kelvo {

/// A titled piece of the desk. Its header carries the operator's colour of its group, with a text colour that
/// reads on it; its ground is a calm tint of the same. Lay out the content with a layout set on the panel
/// itself: the header has its place in the margins. A disabled panel loses its colour and shows a lock, so
/// that a locked console is seen as one. Without a title there is no header, only the coloured top edge. GUI
/// thread.
class Panel : public QFrame {
  Q_OBJECT
 public:
  Panel(Group group, const QString& title, QWidget* parent = nullptr);

  void SetTitle(const QString& title);
  [[nodiscard]] const QString& Title() const { return title_; }
  /// Words at the right end of the header ("12   00:45:10"), digits of even width.
  void SetNote(const QString& note);
  [[nodiscard]] const QString& Note() const { return note_; }
  /// The header as a place for small widgets of the owner, in the panel's coordinates.
  [[nodiscard]] QRect HeaderRect() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool event(QEvent* event) override;

 private:
  [[nodiscard]] int HeaderHeight() const;
  void ArrangeMargins();

  Group group_;
  QString title_;
  QString note_;
};

}  // namespace kelvo
