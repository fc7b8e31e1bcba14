#pragma once

#include <QBoxLayout>
#include <QWidget>

#include <initializer_list>

namespace kelvo {

/// A part of a line: a widget and its share of the room that is left over; without a widget, room.
struct Piece {
  Piece(QWidget* piece, int share = 0) : widget(piece), share(share) {}  // NOLINT: a widget is a piece
  QWidget* widget;
  int share;
};

/// Room that takes what the widgets of a line leave.
inline const Piece kRoom{nullptr, 1};

/// Puts pieces side by side. The layout belongs to the one that it is added to.
[[nodiscard]] inline QHBoxLayout* Line(std::initializer_list<Piece> pieces) {
  auto* line = new QHBoxLayout;
  for (const Piece& piece : pieces) {
    if (piece.widget == nullptr) {
      line->addStretch(piece.share);
    } else {
      line->addWidget(piece.widget, piece.share);
    }
  }
  return line;
}

}  // namespace kelvo
