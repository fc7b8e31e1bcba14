#pragma once

#include "playlists/GroupClips.h"
#include "playlists/GroupEditor.h"

#include <QAbstractScrollArea>

namespace kelvo {

/// A group playlist drawn along its time: a lane for each deck with the tracks that are heard on it, their
/// fades as slopes, a mark for each element, and a line where the run is. A mark is dragged with the mouse,
/// all later ones move along; Escape takes a drag back. Left and Right go to the next element, Home and End
/// to the first and last, Enter edits; Shift+Left and Shift+Right move the element by a second, Shift+Page Up
/// and Down ten later and earlier. Plus, minus and Ctrl with the wheel zoom, 0 shows all. Owned by the
/// editor's window; GUI thread.
class GroupTimeView : public QAbstractScrollArea {
  Q_OBJECT
 public:
  GroupTimeView(GroupEditor& editor, QWidget* parent);

  /// Where the mark of a row is, in the coordinates of the viewport.
  [[nodiscard]] QPoint MarkOf(int row) const;
  /// Pixels that a second takes.
  [[nodiscard]] double Scale() const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  bool event(QEvent* event) override;

 private:
  struct Drag {
    int row;
    int seconds;  ///< of the row, as it was
    double x;
    bool moves = false;
    bool all = false;  ///< all was shown when it began
  };
  void TakeRows();
  void ShowSelected();
  void SetRange();
  void ZoomTo(double zoom, double x);
  [[nodiscard]] int First() const;
  [[nodiscard]] double X(double seconds) const;
  [[nodiscard]] QRect LaneOf(int deck) const;
  [[nodiscard]] int HeadHeight() const;
  /// The row whose mark is there; -1 for none.
  [[nodiscard]] int RowAt(QPointF point) const;
  void PaintTimes(QPainter& painter) const;
  void PaintClip(QPainter& painter, const DeckClip& clip) const;
  void PaintMark(QPainter& painter, int row) const;
  void EndDrag(bool keep);

  GroupEditor& editor_;
  std::vector<DeckClip> clips_;
  int last_ = 0;     ///< the end of what is heard
  double zoom_ = 0;  ///< pixels that a second takes; 0: as many as show all
  std::optional<Drag> drag_;
};

}  // namespace kelvo
